#!/usr/bin/env bash
# Fails, naming the files, when a source file is not as .clang-format lays it out; `--fix` lays all
# of them out.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh

mapfile -t files < <(sources '*.h' . && sources '*.cpp' .)
if [ "${1:-}" = --fix ]; then
    clang-format -i "${files[@]}"
    exit
fi
if ! warnings=$(clang-format --dry-run -Werror "${files[@]}" 2>&1); then
    sed -n 's/^\([^ ]*\):[0-9]*:[0-9]*: error: .*/\1/p' <<<"$warnings" | sort | uniq -c
    echo "Lines to lay out anew in these files; scripts/check_format.sh --fix does it." >&2
    exit 1
fi
