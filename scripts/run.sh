#!/usr/bin/env bash
# run.sh [VEXOSH_ARGUMENT...]: builds vexosh into build/ and runs the demonstration: the card comes
# up and a capture of real traffic crosses it. On a terminal it leaves you at vexosh's prompt.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh

scripts/setup.sh build
say "building the driver, the simulated card and vexosh into build/"
quietly cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release
build build vexosh
say "running the demonstration"
exec demo/run.sh build "$@"
