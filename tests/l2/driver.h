#pragma once

#include <algorithm>
#include <list>
#include <string>
#include <vector>

#include "core/factory.h"
#include "platform/mp.h"
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

using Mps = std::list<Mp>;

inline Mp port(unsigned user_port)
{
    return Mp(user_port == 53 ? 3 : user_port < 49 ? 0 : 2, user_port);
}

inline Mps ports(const std::vector<unsigned>& user_ports)
{
    Mps list;
    for (const unsigned user_port : user_ports)
        list.push_back(port(user_port));
    return list;
}

inline std::string text(const Mps& list)
{
    std::string result;
    for (const Mp& mp : list)
        result += std::to_string(mp.module()) + "/" + std::to_string(mp.port()) + " ";
    return result;
}

/// Results of the SDK, one that is not a code and one above 0 included.
inline std::vector<int> codes_except(std::vector<int> tolerated)
{
    std::vector<int> codes;
    for (int code = -1; code >= -20; --code) {
        if (std::find(tolerated.begin(), tolerated.end(), code) == tolerated.end())
            codes.push_back(code);
    }
    codes.push_back(1);
    return codes;
}

inline void fail_next(const std::string& call, int code = -1, unsigned nth = 1)
{
    vexosim::clear_faults();
    vexosim::inject({.call = call, .nth = nth, .code = code});
}
