#pragma once

#include "sim/card/card.h"
#include "tests/flow/flow_fixture.h"

constexpr of_action_param_s param(uint32_t type, uint16_t number = 0)
{
    of_action_param_s param = {};
    param.type = type;
    param.value.number = number;
    return param;
}

inline of_action_param_s mac_param(uint32_t type)
{
    of_action_param_s param = {};
    param.type = type;
    param.value.mac[0] = 2;
    param.value.mac[5] = 0xc;
    return param;
}

inline std::string reinstall(int entry)
{
    return "bcmx_field_entry_reinstall(" + std::to_string(entry) + ")\n";
}

/// Flow 0 is entry 1, flow 1 is entry 2; the tests are about flow 1.
struct FlowActions : FlowCard {
    FlowActions()
    {
        add_flow(flow_of(0x0004));
        add_flow(flow_of(0x0004));
        clear_calls();
    }

    /// Changes flow 1, and keeps what that printed in `text`.
    bool change(bool add, int action, of_action_param_s param, const Mp& port = mp(3))
    {
        const auto kind = static_cast<of_action_t>(action);
        bool done = false;
        text = printed([&] {
            done = add ? sdk().add_of_flow_action(1, kind, param, port)
                       : sdk().delete_of_flow_action(1, kind, param, port);
        });
        return done;
    }
    bool add(int action, of_action_param_s p = param(0), const Mp& port = mp(3))
    {
        return change(true, action, p, port);
    }
    bool remove(int action, of_action_param_s p = param(0), const Mp& port = mp(3))
    {
        return change(false, action, p, port);
    }

    /// The actions of entry 2 by number, as programmed or as they act on frames.
    static std::vector<int> programmed() { return actions(entry_2().rule); }
    static std::vector<int> acting() { return actions(*entry_2().installed); }

private:
    static FieldEntry entry_2()
    {
        const ChipLock chip;
        return *chip->field.find(2);
    }
    static std::vector<int> actions(const FieldRule& rule)
    {
        std::vector<int> numbers;
        for (const FieldAction& action : rule.actions)
            numbers.push_back(action.action);
        return numbers;
    }
};
