// What the search finds is what looking at every entry finds, whatever comes and goes.
#include <optional>
#include <random>

#include "tests/sim/field_path.h"

namespace vexosim {

namespace {

constexpr int kGroups = 3;

struct FieldSearching : FieldPath {
    FieldSearching()
    {
        for (int priority : {1, 2, 2})
            groups.push_back(group({bcmFieldQualifySrcMac, bcmFieldQualifyDstMac}, priority));
    }

    std::size_t pick(std::size_t below) { return static_cast<std::size_t>(random() % below); }
    std::uint64_t some_mask()
    {
        static constexpr std::uint64_t kMasks[] = {0, 1, 2, 3, 0x10, 0x13, 0xff, 0xffffffffffff};
        return kMasks[pick(std::size(kMasks))];
    }

    /// Adds an entry that is installed.
    void add()
    {
        const int g = groups[pick(kGroups)];
        int id = 0;
        ASSERT_EQ(chip.field.create_entry(g, &id), 0);
        requalify(id);
        ASSERT_EQ(chip.field.install(id), 0);
        ids.push_back(id);
    }
    void requalify(int id)
    {
        chip.field.qualify(id, {bcmFieldQualifySrcMac, pick(32), some_mask()});
        chip.field.qualify(id, {bcmFieldQualifyDstMac, pick(32), some_mask()});
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

    static bool agrees(const FieldRule& rule, std::uint64_t src, std::uint64_t dst)
    {
        return std::ranges::all_of(rule.matches, [&](const FieldMatch& m) {
            const std::uint64_t value = m.field == bcmFieldQualifySrcMac ? src : dst;
            return ((value ^ m.data) & m.mask) == 0;
        });
    }
    /// The best entry of a group by looking at all; 0 when none matches.
    int expected(int g, std::uint64_t src, std::uint64_t dst) const
    {
        int best = 0, priority = 0;
        for (const auto& [id, e] : chip.field.entries()) {
            if (e.group != g || !e.installed || !agrees(*e.installed, src, dst) ||
                (best != 0 && e.priority <= priority))
                continue;
            best = id;
            priority = e.priority;
        }
        return best;
    }
    static int found(const FieldTable& table, int g, std::uint64_t src, std::uint64_t dst)
    {
        FieldValues values;
        values.set(bcmFieldQualifySrcMac, src);
        values.set(bcmFieldQualifyDstMac, dst);
        for (const FieldGroupSearch& search : table.search().groups()) {
            if (search.id() == g) {
                const FieldHit* hit = search.find(values);
                return hit != nullptr ? hit->id : 0;
            }
        }
        return 0;
    }
    void check(const FieldTable& table)
    {
        for (int i = 0; i < 8; ++i) {
            const std::uint64_t src = pick(32), dst = pick(32);
            for (int g : groups)
                ASSERT_EQ(found(table, g, src, dst), expected(g, src, dst))
                    << g << ": " << src << " " << dst;
        }
    }

    std::mt19937_64 random{1};
    std::vector<int> groups;
    std::vector<int> ids;
};

TEST_F(FieldSearching, FindsTheBestEntryOfEachGroup)
{
    for (std::size_t most : {40u, 1500u}) {
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
}

TEST_F(FieldSearching, ACopyFindsItsOwnEntries)
{
    for (int i = 0; i < 200; ++i)
        add();
    FieldTable copy = chip.field;
    EXPECT_EQ(copy, chip.field);
    check(copy);
    FieldValues nothing;
    nothing.set(bcmFieldQualifySrcMac, 0);
    nothing.set(bcmFieldQualifyDstMac, 0);
    const FieldHit* hit = copy.search().groups()[0].find(nothing);
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
    EXPECT_EQ(order, (std::vector<int>{2, 3, 1}));
}

} // namespace

} // namespace vexosim
