#!/usr/bin/env bash
# install_test.sh STEP BUILD_DIR TREE FLAGS: one step of what happens to an installed tree. `install`
# comes first; the other steps use the tree that it leaves.
set -euo pipefail
step=$1 build=$2 tree=$3 flags=$4
examples=$(cd "$(dirname "$0")/../../examples" && pwd)
prefix=$tree/moved
unset DESTDIR

if [ "$step" != install ]; then # pkg-config knows of the tree alone
    PKG_CONFIG_LIBDIR=$(find "$prefix" -type d -name pkgconfig)
    export PKG_CONFIG_LIBDIR
    libdir=$(dirname "$PKG_CONFIG_LIBDIR")
fi

expect_same() { # FILE COMMAND...
    local file=$1
    shift
    "$@" | diff "$file" -
}

configure() { # EXAMPLE
    cmake -S "$examples/$1" -B "$tree/$1" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_FLAGS="$flags" \
        --fresh >/dev/null
    grep -q "^vexolc_DIR:PATH=$prefix/" "$tree/$1/CMakeCache.txt"
    cmake --build "$tree/$1" >"$tree/log" 2>&1 || {
        cat "$tree/log"
        return 1
    }
}

case $step in
install)
    rm -rf "$tree"
    mkdir -p "$tree"
    cmake --install "$build" --prefix "$tree/first" >/dev/null
    mv "$tree/first" "$prefix"
    # Nothing in it knows where it was built or installed.
    ! grep -rIlF -e "$tree" -e "$build" "$prefix"
    ;;
find_package)
    configure manager
    expect_same "$examples/manager/expected.txt" "$tree/manager/manager"
    ;;
pkg_config) # the command of the example's README
    command=$(sed -n 's/^    \(c++ .*\)$/\1/p' "$examples/manager/README.md")
    command=${command/#c++/"$CXX" $flags}
    command=${command/manager.cpp -o manager/"$examples/manager/manager.cpp" -o "$tree/by_pkg_config"}
    eval "$command"
    LD_LIBRARY_PATH=$libdir expect_same "$examples/manager/expected.txt" "$tree/by_pkg_config"
    ;;
own_tests)
    configure own_tests
    ctest --test-dir "$tree/own_tests" --output-on-failure --no-tests=error
    ;;
headers) # of each package, with the flags that a user gets: none needs what is not installed
    for package in vexolc vexolc-sdk vexosim; do
        folders=$(pkg-config --cflags-only-I "$package" | sed 's/-I//g')
        [ "$package" != vexosim ] || folders=$prefix/include/vexosim
        for folder in $folders; do
            find "$folder" -name '*.h' -printf '#include "%p"\n'
        done | "$CXX" -std=c++20 -fsyntax-only $(pkg-config --cflags "$package") -x c++ -
    done
    ;;
vexosh)
    env -u LD_LIBRARY_PATH "$prefix/bin/vexosh" -c 'show vlans' >"$tree/log"
    grep -q '^ *1 ' "$tree/log"
    ;;
*)
    echo "install_test.sh: no step '$step'" >&2
    exit 2
    ;;
esac
