#!/usr/bin/env bash
# lab.sh [VEXOSH_ARGUMENT...]: builds vexosh into build/ and a network of real hosts around a
# simulated card, in namespaces that vanish with it, and leaves you at the card's prompt. With
# arguments, e.g. -c 'show vlans', these instead of a prompt. Needs root.
set -euo pipefail
here=$PWD
cd "$(dirname "$0")/.."
root=$PWD
. scripts/lib.sh

[ "$(id -u)" -eq 0 ] || { echo "lab.sh: needs root" >&2; exit 1; }
scripts/setup.sh build lab
say "building the driver, the simulated card and vexosh into build/"
quietly cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release
build build vexosh
cd "$here"
exec "$root/demo/lab.sh" "$root/build" "$@"
