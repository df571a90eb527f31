#!/usr/bin/env bash
# package.sh [--try]: makes the Debian packages in build-package/ out of what build/ has, and has
# lintian check them. With --try, as root on a machine that may be changed, also installs them, runs
# vexosh, removes them, and sees that nothing is left.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh

scripts/setup.sh build package
say "building the driver, the simulated card and vexosh into build/"
quietly cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_INSTALL_LIBDIR="lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)"
build build vexolc vexo_companion vexosim vexoboard vexokit vexosh vexosh_manual_page
gzip -9n <build/package/changelog >build/package/changelog.Debian.gz

say "making the packages in build-package/"
rm -rf build-package
quietly cpack --config build/CPackConfig.cmake -B build-package
rm -rf build-package/_CPack_Packages
packages=(build-package/*.deb)
ls -1 "${packages[@]}"
say "lintian"
lintian --allow-root --fail-on error "${packages[@]}"

[ "${1:-}" = --try ] || exit 0
say "installing and removing them"
names=()
for package in "${packages[@]}"; do
    names+=("$(dpkg-deb -f "$package" Package)")
done
if dpkg-query -W "${names[@]}" >/dev/null 2>&1; then
    echo "package.sh: the packages are installed already; remove them first" >&2
    exit 1
fi
files=$(for package in "${packages[@]}"; do dpkg-deb --fsys-tarfile "$package" | tar -t; done |
    sed -n 's|^\.\(/.*[^/]\)$|\1|p' | sort -u)
remove() { quietly dpkg --purge "${names[@]}"; }
trap remove EXIT
quietly dpkg -i "${packages[@]}"
[ "$(vexosh -c 'show vlans' | grep -c '^ *1 ')" -eq 1 ]
trap - EXIT
remove
while IFS= read -r file; do
    if [ -e "$file" ] || [ -L "$file" ]; then
        echo "package.sh: $file is left behind" >&2
        exit 1
    fi
done <<<"$files"
say "installed, ran, and left nothing behind"
