#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "flow/flow_types.h"
#include "flow/udf_match.h"

/// Flow id to the chip's field entry: the only record of which flows are installed.
extern std::map<unsigned, int> fid_fe_map;

/// The id of the next flow that is installed. Ids are never used twice.
extern uint32_t next_flow_id;

/// Has `entry` match what the flow's flags ask for, in the order of the flags, each after a line
/// that says so. `words` hold the UDFs' ids. 0, or the result of the first qualifier that failed;
/// BCM_E_PARAM for an ingress port that does not exist.
int qualify_flow_entry(const of_flow_mp_s& flow, int entry, const std::vector<bcm_udf_s>& words);

namespace vexolc {

/// Writes the entry of a flow. False when there is no such flow.
bool find_flow(unsigned flow_id, int& entry);

} // namespace vexolc
