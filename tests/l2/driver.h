#pragma once

#include <stdexcept>
#include <string>

#include "core/factory.h"
#include "vexosim/calls.h"
#include "vexosim/clock.h"
#include "vexosim/faults.h"

/// A card that is up, on the manual clock, with the log of chip calls running and empty.
inline VexoBcmSdk& driver_with_log()
{
    vexosim::use_manual_clock();
    vexosdk_create_sdk_instance();
    vexosim::log_calls(true);
    vexosim::clear_calls();
    return *bcm_sdk;
}

/// The chip calls since the last time, one per line.
inline std::string calls_made()
{
    std::string text = vexosim::calls();
    vexosim::clear_calls();
    return text;
}

/// While it lives, every SDK call answers `code` without doing anything.
class EveryCallAnswers {
public:
    explicit EveryCallAnswers(int code)
    {
        vexosim::inject({.call = "", .sticky = true, .code = code, .do_nothing = code >= 0});
    }
    ~EveryCallAnswers() { vexosim::clear_faults(); }
    EveryCallAnswers(const EveryCallAnswers&) = delete;
    EveryCallAnswers& operator=(const EveryCallAnswers&) = delete;
};
