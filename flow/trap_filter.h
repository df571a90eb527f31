#pragma once

#include <cstdint>

/// The field group of the IP-protocol and L4-port trap filters. The id -1 is the group's own, not
/// a sign that it is missing.
extern const int32_t filter_group_no_udf;
