#!/usr/bin/env bash
# run.sh BUILD_FOLDER [VEXOSH_ARGUMENT...]: the demonstration. Leaves what each port sent in out/.
set -euo pipefail
build=$(cd "$1" && pwd)
shift
cd "$(dirname "$0")/.."
mkdir -p out
interactive=()
if [ -t 0 ] && [ -t 1 ]; then
    interactive=(--interactive)
fi
exec "$build/tools/vexosh/vexosh" --manual-clock "${interactive[@]}" "$@" demo/demo.vsh
