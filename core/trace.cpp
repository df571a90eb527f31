// Trace control: one switch for the driver's own diagnostics, under two keywords.
#include "core/trace.h"

#include <cstdio>

#include "core/bcm_sdk.h"

unsigned char hw_util_dbg = 0;

namespace vexolc {
bool sdk_trace_enabled = false;
}

bool VexoBcmSdk::set_trace(const std::string& keyword, bool on)
{
    using namespace vexolc::trace_keyword;
    if (keyword != level_all && keyword != level_sdk)
        return false;
    vexolc::sdk_trace_enabled = on;
    return true;
}

void VexoBcmSdk::dump_bytes(const unsigned char* bytes, unsigned length) const
{
    if (vexolc::sdk_trace_enabled)
        vexolc::print_bytes(bytes, length);
}

void vexolc::print_bytes(const unsigned char* bytes, unsigned length)
{
    for (unsigned i = 0; i < length; ++i) {
        std::printf("%02x ", bytes[i]);
        if (i % 16 == 15)
            std::printf("\n");
    }
    if (length % 16 != 0)
        std::printf("\n");
    std::printf("\n");
}
