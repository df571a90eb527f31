#!/usr/bin/env bash
# check_tidy.sh [PATH...]: clang-tidy on every source that the build compiles from here, or on
# those under the given paths (check_tidy.sh l2 tests/l2).
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh

quietly cmake --preset tidy
compiled=$(sed -n "s|^ *\"file\": \"$PWD/\(.*\)\".*|\1|p" build-tidy/compile_commands.json | sort -u)
mapfile -t files < <(sources '*.cpp' "${@:-.}" | grep -Fx -f <(echo "$compiled"))
if [ ${#files[@]} -eq 0 ]; then
    echo "check_tidy.sh: nothing to check" >&2
    exit 1
fi

# "N warnings generated" counts those in system headers, which are not shown.
check_one() {
    local out status=0
    out=$(clang-tidy -p build-tidy --quiet "$1" 2>&1) || status=$?
    [ "$status" -eq 0 ] || grep -v '^[0-9]* warnings\? \(and [0-9]* errors\? \)\?generated' <<<"$out"
    return "$status"
}
export -f check_one
printf '%s\0' "${files[@]}" | xargs -0 -n 1 -P "$jobs" bash -c 'check_one "$0"'
echo "${#files[@]} files are clean"
