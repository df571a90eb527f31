#!/usr/bin/env bash
# wrapper_cost.sh BUILD_DIR: the driver's own instructions per call of an operation, averaged over
# all 54 ports: those executed in libvexolc, without what the SDK does beneath. Fails when one costs
# more than 200.
set -euo pipefail

limit=200
ports=54
program=${1:?usage: wrapper_cost.sh BUILD_DIR}/bench/wrapper_cost
[ -x "$program" ] || { echo "wrapper_cost.sh: no $program: build it with VEXOLC_BUILD_BENCH=ON" >&2; exit 2; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Sums the instructions of one object in a callgrind profile. A line after "calls=" is the cost of a
# callee, which has lines of its own.
driver_instructions() {
    awk '
        /^ob=/ {
            id = $1; sub(/^ob=/, "", id)
            if (NF > 1) driver[id] = $0 ~ /libvexolc\.so/
            mine = driver[id]
        }
        /^cob=/ { id = $1; sub(/^cob=/, "", id); if (NF > 1) driver[id] = $0 ~ /libvexolc\.so/ }
        /^calls=/ { skip = 1; next }
        /^[0-9+*-]/ { if (!skip && mine) sum += $NF; skip = 0 }
        END { print sum + 0 }' "$1"
}

status=0
total=0
count=0
for operation in $("$program"); do
    # Bound beforehand, so that the dynamic linker's work is not counted.
    LD_BIND_NOW=1 valgrind --tool=callgrind --callgrind-out-file="$work/profile" \
        --toggle-collect=measured_region "$program" "$operation" >"$work/out" 2>&1 ||
        { cat "$work/out" >&2; exit 1; }
    sum=$(driver_instructions "$work/profile")
    [ "$sum" -gt 0 ] || { echo "wrapper_cost.sh: nothing counted for $operation" >&2; exit 1; }
    mean=$(((sum + ports / 2) / ports))
    printf '%-32s %4d\n' "$operation" "$mean"
    [ "$mean" -le "$limit" ] || status=1
    total=$((total + mean))
    count=$((count + 1))
done
printf '%-32s %4d instructions per call (limit %d)\n' "mean of $count operations" \
    $((total / count)) "$limit"
exit $status
