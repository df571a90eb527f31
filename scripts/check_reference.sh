#!/usr/bin/env bash
# check_reference.sh [DIR]: makes the API reference into DIR/html (build-reference/html) with
# Doxygen. Fails when a comment is not in order.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh

if ! command -v doxygen >/dev/null; then
    echo "check_reference.sh: no doxygen; scripts/setup.sh ci installs it" >&2
    exit 1
fi
export VEXOLC_REFERENCE_DIR=${1:-build-reference}
rm -rf "$VEXOLC_REFERENCE_DIR"
mkdir -p "$VEXOLC_REFERENCE_DIR"
quietly doxygen docs/Doxyfile
[ -s "$VEXOLC_REFERENCE_DIR/html/classVexoSdkBase.html" ]
say "$VEXOLC_REFERENCE_DIR/html/index.html"
