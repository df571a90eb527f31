// What the search finds is what looking at every entry finds, whatever comes and goes.
#include <array>
#include <map>
#include <random>

#include "tests/sim/field_path.h"

namespace vexosim {

namespace {

constexpr FieldUdf kUdfs[] = {{0, 1}, {0x380, 0}, {0x388, 2}, {0x80, 3}, {0, 4}};

constexpr int udf(int id)
{
    return FieldMatch::kUdf + id;
}

/// What each group may match.
const std::vector<int> kSets[] = {
    {bcmFieldQualifySrcMac, bcmFieldQualifyDstMac},
    {bcmFieldQualifySrcIp, bcmFieldQualifyDstIp, bcmFieldQualifyL4SrcPort, bcmFieldQualifyL4DstPort,
     bcmFieldQualifyIpProtocol, bcmFieldQualifyTos, bcmFieldQualifyIpType},
    {udf(0), udf(1), udf(2), udf(3), udf(4)},
    {bcmFieldQualifyInPort, bcmFieldQualifyOuterVlanId, bcmFieldQualifyOuterVlanPri,
     bcmFieldQualifyEtherType, bcmFieldQualifySrcMac, udf(0), udf(3)},
};
constexpr int kGroups = std::size(kSets);

int bits_of(int field)
{
    switch (field) {
    case bcmFieldQualifySrcMac:
    case bcmFieldQualifyDstMac:
        return 48;
    case bcmFieldQualifyOuterVlanId:
        return 12;
    case bcmFieldQualifyOuterVlanPri:
        return 3;
    case bcmFieldQualifyL4SrcPort:
    case bcmFieldQualifyL4DstPort:
    case bcmFieldQualifyEtherType:
        return 16;
    case bcmFieldQualifySrcIp:
    case bcmFieldQualifyDstIp:
        return 32;
    default:
        return field >= FieldMatch::kUdf ? 32 : 8;
    }
}

/// A frame as the field processor sees it, in terms of its own.
struct Seen {
    std::map<int, std::uint64_t> fields;
    Frame bytes;
    unsigned tags = 0;
    std::uint32_t kind = 0;

    FieldValues values() const
    {
        FieldValues result;
        result.frame = bytes;
        result.tags = tags;
        result.kind = kind;
        for (const auto& [field, value] : fields)
            result.set(field, value);
        return result;
    }
    bool agrees(const FieldMatch& m) const
    {
        if (m.mask == 0)
            return true;
        if (m.field >= FieldMatch::kUdf)
            return agrees(m, kUdfs[m.field - FieldMatch::kUdf]);
        const auto field = fields.find(m.field);
        return field != fields.end() && ((field->second ^ m.data) & m.mask) == 0;
    }

private:
    bool agrees(const FieldMatch& m, const FieldUdf& where) const
    {
        if (where.flags != 0 &&
            (tags != (where.flags & 8) / 8 || (where.flags & kind & 0x380) == 0))
            return false;
        for (int i = 0; i < 4; ++i) {
            const auto data = static_cast<std::uint8_t>(m.data >> (24 - 8 * i));
            const auto mask = static_cast<std::uint8_t>(m.mask >> (24 - 8 * i));
            const long at = 4 * static_cast<long>(where.word) - 2 + i;
            const bool there = at >= 0 && at < static_cast<long>(bytes.size());
            if (mask != 0 && (!there || ((bytes[static_cast<std::size_t>(at)] ^ data) & mask) != 0))
                return false;
        }
        return true;
    }
};

struct FieldSearching : FieldPath {
    FieldSearching()
    {
        for (int id = 0; id < static_cast<int>(std::size(kUdfs)); ++id)
            EXPECT_EQ(chip.field.create_udf(id, kUdfs[id]), 0);
        for (std::size_t i = 0; i < kGroups; ++i) {
            FieldSet set;
            for (int field : kSets[i]) {
                const bool user = field >= FieldMatch::kUdf;
                if (user)
                    set.udfs.set(static_cast<std::size_t>(field - FieldMatch::kUdf));
                else
                    set.fields.set(static_cast<std::size_t>(field));
            }
            int id = 0;
            EXPECT_EQ(chip.field.create_group(set, i == 0 ? 1 : 2, &id), 0);
            groups.push_back(id);
        }
    }

    std::size_t pick(std::size_t below) { return static_cast<std::size_t>(random() % below); }
    /// Low bits, the top bit, both or, of user-defined fields, small bytes.
    std::uint64_t some_value(int field)
    {
        if (field == bcmFieldQualifyIpType)
            return 8 + pick(2);
        if (field >= FieldMatch::kUdf)
            return pick(3) << 24 | pick(3) << 16 | pick(3) << 8 | pick(3);
        return pick(bits_of(field) < 8 ? 4 : 32) | std::uint64_t{pick(2)} << (bits_of(field) - 1);
    }
    std::uint64_t some_mask(int field)
    {
        const std::uint64_t all = ~std::uint64_t{0} >> (64 - bits_of(field));
        const std::uint64_t masks[] = {
            0,       1,  2, 3, 0x10, 0x13, 0xff, 0xff00, 0xff0000, 0x01ff0000, all ^ (all >> 1),
            all ^ 1, all};
        return masks[pick(std::size(masks))] & all;
    }

    /// Adds an entry that is installed.
    void add()
    {
        const std::size_t g = pick(kGroups);
        int id = 0;
        ASSERT_EQ(chip.field.create_entry(groups[g], &id), 0);
        requalify(id);
        ASSERT_EQ(chip.field.install(id), 0);
        ids.push_back(id);
    }
    void requalify(int id)
    {
        const auto g = static_cast<std::size_t>(
            std::ranges::find(groups, chip.field.find(id)->group) - groups.begin());
        for (int field : kSets[g]) {
            const FieldMatch match{field, some_value(field), some_mask(field)};
            const bool wanted = pick(3) != 0;
            ASSERT_EQ(wanted ? chip.field.qualify(id, match) : 0, 0);
        }
        chip.field.set_priority(id, static_cast<int>(pick(4)));
    }
    void change()
    {
        const std::size_t place = pick(ids.size());
        const int id = ids[place];
        switch (pick(6)) {
        case 0:
            chip.field.remove(id);
            break;
        case 1:
        case 2:
            requalify(id);
            break;
        case 3:
            chip.field.install(id);
            break;
        default:
            chip.field.destroy_entry(id);
            ids.erase(ids.begin() + static_cast<long>(place));
        }
    }

    /// Fields are absent now and then, and the frame ends in the middle of words.
    Seen some_frame()
    {
        Seen seen;
        for (const auto& set : kSets) {
            for (int field : set) {
                if (field < FieldMatch::kUdf && pick(8) != 0)
                    seen.fields[field] = some_value(field);
            }
        }
        seen.bytes.resize(pick(24));
        for (std::uint8_t& byte : seen.bytes)
            byte = static_cast<std::uint8_t>(pick(3));
        seen.tags = static_cast<unsigned>(pick(3));
        seen.kind = 0x80u << pick(3);
        return seen;
    }
    /// The best entry of a group by looking at all; 0 when none matches.
    int expected(int g, const Seen& seen) const
    {
        int best = 0, priority = 0;
        for (const auto& [id, e] : chip.field.entries()) {
            const auto agrees = [&](const FieldMatch& m) { return seen.agrees(m); };
            if (e.group != g || !e.installed || (best != 0 && e.priority <= priority) ||
                !std::ranges::all_of(e.installed->matches, agrees))
                continue;
            best = id;
            priority = e.priority;
        }
        return best;
    }
    static const FieldHit* find(const FieldGroupSearch& search, const FieldValues& values)
    {
        std::array<std::uint64_t, FieldGroupSearch::kMaxTuples> hashes;
        search.start(values, hashes.data());
        const std::uint64_t* next = hashes.data();
        return search.find(values, next);
    }
    static int found(const FieldTable& table, int g, const Seen& seen)
    {
        for (const FieldGroupSearch& search : table.search().groups()) {
            if (search.id() == g) {
                const FieldHit* hit = find(search, seen.values());
                return hit != nullptr ? hit->id : 0;
            }
        }
        return 0;
    }
    void check(const FieldTable& table)
    {
        for (int i = 0; i < 8; ++i) {
            const Seen seen = some_frame();
            for (std::size_t g = 0; g < kGroups; ++g) {
                const int wanted = expected(groups[g], seen);
                ASSERT_EQ(found(table, groups[g], seen), wanted) << "group " << groups[g];
                ++(wanted != 0 ? hits : misses)[g];
            }
        }
    }

    std::mt19937_64 random{1};
    std::vector<int> groups;
    std::vector<int> ids;
    std::array<int, kGroups> hits{}, misses{};
};

TEST_F(FieldSearching, FindsTheBestEntryOfEachGroup)
{
    for (std::size_t most : {60u, 1500u}) {
        for (int i = 0; i < 4000; ++i) {
            if (ids.size() < most)
                add();
            if (pick(2) == 0 && !ids.empty())
                change();
            if (i % 16 == 0)
                check(chip.field);
        }
    }
    while (!ids.empty()) {
        chip.field.destroy_entry(ids.back());
        ids.pop_back();
        if (ids.size() % 64 == 0)
            check(chip.field);
    }
    EXPECT_TRUE(chip.field.search().empty());
    for (std::size_t g = 0; g < kGroups; ++g) {
        EXPECT_GT(hits[g], 50) << "group " << groups[g];
        EXPECT_GT(misses[g], 50) << "group " << groups[g];
    }
}

TEST_F(FieldSearching, ACopyFindsItsOwnEntries)
{
    for (int i = 0; i < 200; ++i)
        add();
    entry(groups[1], {}, {});
    FieldTable copy = chip.field;
    EXPECT_EQ(copy, chip.field);
    check(copy);
    const FieldHit* hit = find(copy.search().groups()[0], FieldValues());
    ASSERT_NE(hit, nullptr);
    EXPECT_EQ(hit->entry, copy.find(hit->id)) << "not the original's";
    const FieldTable moved = std::move(copy);
    check(moved);
    EXPECT_EQ(chip.field.init(), 0);
    EXPECT_TRUE(chip.field.search().empty());
}

TEST_F(FieldSearching, GroupsAreAskedByPriorityAndThenById)
{
    for (int g : groups)
        entry(g, {}, {});
    std::vector<int> order;
    for (const FieldGroupSearch& search : chip.field.search().groups())
        order.push_back(search.id());
    EXPECT_EQ(order, (std::vector<int>{2, 3, 4, 1}));
}

} // namespace

} // namespace vexosim
