#!/usr/bin/env bash
# setup.sh GROUP...: installs the Debian 12 packages of these groups that are not there yet. Says
# nothing when there is nothing to do. Without the right to install, names what is missing and the
# command that installs it, and fails.
set -euo pipefail

packages_of() {
    case $1 in
    build)
        echo g++ cmake ninja-build pkg-config googletest libgtest-dev libpcap-dev libedit-dev libcli11-dev \
            nlohmann-json3-dev
        ;;
    lab) echo iproute2 iputils-ping ;;
    hosts)
        echo iproute2 iputils-ping tcpdump tshark lldpd openvswitch-switch python3-jsonschema \
            groff-base
        ;;
    ci) echo g++-powerpc-linux-gnu qemu-user clang-format clang-tidy doxygen ;;
    fuzz) echo clang-14 libclang-rt-14-dev ;;
    package) echo lintian dpkg-dev file ;;
    bench) echo libbenchmark-dev valgrind iproute2 iputils-ping openvswitch-switch ;;
    capture) echo iproute2 iputils-ping ethtool tcpdump socat lldpd openvswitch-switch ;;
    *)
        echo "setup.sh: no package group '$1' (there are: build lab hosts ci fuzz package bench capture)" >&2
        return 2
        ;;
    esac
}

is_installed() {
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

wanted=()
for group in "$@"; do
    names=$(packages_of "$group")
    read -r -a names <<<"$names"
    wanted+=("${names[@]}")
done

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    echo "This is not Debian, so nothing is installed. What is needed is in Debian 12's packages:"
    echo "    ${wanted[*]}"
    exit 0
fi

missing=()
for package in "${wanted[@]}"; do
    [[ " ${missing[*]} " == *" $package "* ]] || is_installed "$package" || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    if command -v sudo >/dev/null && { [ -t 0 ] || sudo -n true 2>/dev/null; }; then
        as_root=(sudo)
    else
        echo "Missing packages: ${missing[*]}" >&2
        echo "Install them as root, then run this again:" >&2
        echo "    apt-get install --no-install-recommends ${missing[*]}" >&2
        exit 1
    fi
fi

log=$(mktemp)
trap 'rm -f "$log"' EXIT
apt() {
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -q -y -o DPkg::Lock::Timeout=300 "$@" </dev/null >"$log" 2>&1 || {
        tail -n 30 "$log" >&2
        echo "apt-get $1 failed; its last lines are above." >&2
        exit 1
    }
}
[ ${#as_root[@]} -eq 0 ] || sudo -v
# Services that come with packages (lldpd, Open vSwitch) are for tests to start, not for the machine.
policy=/usr/sbin/policy-rc.d
if [ ! -e $policy ]; then
    trap '"${as_root[@]}" rm -f $policy "$log"' EXIT
    printf '#!/bin/sh\nexit 101\n' | "${as_root[@]}" tee $policy >/dev/null
    "${as_root[@]}" chmod 755 $policy
fi
echo "Installing ${#missing[@]} packages (this may take some minutes): ${missing[*]}"
apt update
apt install --no-install-recommends "${missing[@]}"
if command -v systemctl >/dev/null; then
    for package in lldpd openvswitch-switch; do
        case " ${missing[*]} " in
        *" $package "*) "${as_root[@]}" systemctl -q disable "$package" 2>/dev/null || true ;;
        esac
    done
fi
