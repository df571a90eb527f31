#!/usr/bin/env bash
# check_vendor_sdk.sh: builds the driver against SDK headers that lie elsewhere and lay out every
# record in another way, as a vendor's do, and runs some of its tests. Against these headers the
# simulated card is built too, in the place of the vendor's SDK. Builds into build-vendor-sdk/.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh

headers=$PWD/build-vendor-sdk/sdk
rm -rf "$headers"
mkdir -p "$headers"
cp -r sdk/include/. "$headers"

# Reverses the members of each record and puts another in front. A member that takes several lines
# ends with the line that has its semicolon or ends the comment behind it.
lay_out_anew='
/^(typedef )?struct [a-z0-9_]* \{$/ { print; print "    long vendors_own;"; inside = 1; next }
inside && /^\}/ { for (; n > 0; --n) printf "%s", members[n]; inside = 0 }
inside {
    member = member $0 "\n"; code = $0; sub(/\/\*.*/, "", code)
    if (code ~ /;/ && ($0 !~ /\/\*/ || /\*\//)) { members[++n] = member; member = "" }
    next
}
{ print }'
changed=0
while IFS= read -r file; do
    awk "$lay_out_anew" "$file" >"$file.new"
    cmp -s "$file" "$file.new" || changed=$((changed + 1))
    mv "$file.new" "$file"
done < <(find "$headers" -name '*.h')
say "$changed SDK headers have records that are laid out anew"
[ "$changed" -gt 0 ]

quietly cmake -S . -B build-vendor-sdk -G Ninja -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_CXX_FLAGS_DEBUG=-O0 -DVEXOLC_SDK_INCLUDE_DIR="$headers" -DVEXOLC_BUILD_SIM=ON \
    -DVEXOLC_BUILD_TOOLS=OFF -DVEXOLC_CHECK_HEADERS=OFF
tests=(core_line_card_init flow_flow_forwarding l2_fdb l2_vlan l3_route pktio_events)
build build-vendor-sdk "${tests[@]/#/test_}"
ctest --test-dir build-vendor-sdk -E 'NOT_BUILT|^Install|^Readme' --no-tests=error -j "$jobs" \
    --output-on-failure >build-vendor-sdk/tests.log 2>&1 || {
    grep -v -e '^ *Start ' -e ' Passed ' build-vendor-sdk/tests.log
    exit 1
}
grep 'tests passed' build-vendor-sdk/tests.log
