#!/usr/bin/env bash
# Builds everything and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build -G Ninja
ninja -C build
ctest --test-dir build --output-on-failure -j"$(nproc)"
