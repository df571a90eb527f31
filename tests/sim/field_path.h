/// @file
/// Frames that meet field entries, on a chip value. Ports 1 to 4 are untagged in VLAN 1, which has
/// no others; every frame floods unless an entry acts.
#pragma once

#include <bcm/field.h>

#include <initializer_list>
#include <utility>

#include "tests/sim/path.h"

namespace vexosim {

inline FieldAction act(int action, std::uint32_t param0 = 0)
{
    FieldAction made;
    made.action = action;
    made.param0 = param0;
    return made;
}
inline FieldAction act_on(int action, PortSet ports)
{
    FieldAction made = act(action);
    made.ports = ports;
    return made;
}
inline FieldAction set_mac(int action, MacAddress mac)
{
    FieldAction made = act(action);
    made.mac = mac;
    return made;
}
inline const FieldAction kDropIt = act(bcmFieldActionDrop), kTrapIt = act(bcmFieldActionTrapToCpu),
                         kCountIt = act(bcmFieldActionUpdateCounter);
inline FieldAction redirect(PortSet ports)
{
    return act_on(bcmFieldActionRedirectPbmp, ports);
}

inline FieldMatch is(int field, std::uint64_t data, std::uint64_t mask = 0)
{
    static constexpr int kBits[] = {48, 48, 0, 32, 32, 0, 8};
    const int bits = field == bcmFieldQualifyOuterVlanId    ? 12
                     : field == bcmFieldQualifyOuterVlanPri ? 3
                     : field >= FieldMatch::kUdf            ? 32
                     : field <= bcmFieldQualifyInPort       ? kBits[field - 6]
                     : field >= bcmFieldQualifyIpProtocol   ? 8
                                                            : 16;
    return {field, data, mask != 0 ? mask : (std::uint64_t{1} << bits) - 1};
}

struct FieldPath : testing::Test, Path {
    FieldPath() { only({1, 2, 3, 4}); }

    /// A group for these fields and, from FieldMatch::kUdf on, user-defined fields.
    int group(std::initializer_list<int> fields, int priority = 0)
    {
        FieldSet set;
        for (int field : fields) {
            if (field >= FieldMatch::kUdf)
                set.udfs.set(static_cast<std::size_t>(field - FieldMatch::kUdf));
            else
                set.fields.set(static_cast<std::size_t>(field));
        }
        int id = 0;
        EXPECT_EQ(chip.field.create_group(set, priority, &id), 0);
        return id;
    }
    /// An installed entry with a counter.
    int entry(int group, std::initializer_list<FieldMatch> matches,
              std::initializer_list<FieldAction> actions, int priority = 0)
    {
        int id = 0;
        EXPECT_EQ(chip.field.create_entry(group, &id), 0);
        for (const FieldMatch& match : matches)
            EXPECT_EQ(chip.field.qualify(id, match), 0) << match.field;
        for (const FieldAction& action : actions)
            EXPECT_EQ(chip.field.add_action(id, action), 0) << action.action;
        EXPECT_EQ(chip.field.add_action(id, kCountIt), 0);
        EXPECT_EQ(chip.field.create_counter(id), 0);
        EXPECT_EQ(chip.field.set_priority(id, priority), 0);
        EXPECT_EQ(chip.field.install(id), 0);
        return id;
    }
    /// An installed entry in a group of its own.
    int entry(const FieldMatch& match, std::initializer_list<FieldAction> actions)
    {
        return entry(group({match.field}), {match}, actions);
    }
    std::uint64_t counted(int id) const
    {
        std::uint64_t packets = 0;
        EXPECT_EQ(chip.field.count(id, 0, &packets), 0);
        return packets;
    }
    /// What leaves at one port when a frame arrives at port 1.
    Frame sent(FrameView arrives, int port = 2)
    {
        send(1, arrives);
        const auto frames = outputs.frames(port);
        return frames.empty() ? Frame() : Frame(frames[0].begin(), frames[0].end());
    }
    /// Whether a frame that arrives at port 1 is dropped by an entry.
    bool matches(FrameView arrives) { return send(1, arrives) == "drop:field_drop"; }

    const TestFrame frame{kHostB, kHostA};
};

} // namespace vexosim
