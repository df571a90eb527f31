#pragma once

#include <bcm/field.h>

#include <cstdint>
#include <vector>

#include "flow/udf_match.h"

/// The chip's qualifier set of a new group. Each returns 0 or the SDK's result; what was made
/// before a failure stays.

/// Makes a UDF for each word, adds it to `qset` and stores its id in the word. `ip_level` UDFs are
/// for frames of every format, others for every layer-3 kind. Prints a line for each UDF. Without
/// words nothing is asked for. BCM_E_PARAM: no qset; BCM_E_RESOURCE: not enough free ids.
int qset_add_udfs(bcm_field_qset_t* qset, std::vector<bcm_udf_s>& words, bool ip_level);

/// Fills `qset` anew with the fields that flow qualifier flags ask for; with `OF_QUALIFY_UDF` makes
/// the UDFs of `words`, too. BCM_E_PARAM: no qset.
int flow_flags_to_qset(unsigned flags, bcm_field_qset_t* qset, std::vector<bcm_udf_s>& words);
