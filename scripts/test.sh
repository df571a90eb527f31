#!/usr/bin/env bash
# test.sh [CTEST_ARGUMENT...]: builds everything into build/ and runs every test, or those that the
# ctest arguments choose (test.sh -R Vlan). Tests with real hosts need root; without it they are
# reported as skipped.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh

scripts/setup.sh build
[ "$(id -u)" -ne 0 ] || scripts/setup.sh hosts
say "building the driver, the simulated card, vexosh and the tests into build/"
quietly cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release
build build
say "running the tests"
exec ctest --test-dir build --output-on-failure --no-tests=error -j "$jobs" "$@"
