// The records that cross to the SDK, by position: what an entry of the access vectors reaches is
// the bus operation of a number, not of a name.
#include "platform/bus_access.h"

#include <gtest/gtest.h>
#include <sal/config.h>

#include <cstring>
#include <sstream>
#include <string>

#include "platform/sysconf.h"
#include "vexosim/card.h"
#include "vexosim/clock.h"

namespace {

std::string noted;

template <class... Values>
void note(int operation, Values... values)
{
    std::ostringstream line;
    line << operation << ":";
    ((line << ' ' << values), ...);
    noted += line.str() + "\n";
}

constexpr uintptr_t base_word = 0x1234000;

int operation_1(int type)
{
    note(1, type);
    return 7;
}

const ibde_dev_t* operation_2(int dev)
{
    static const ibde_dev_t record = {0x5654, 1, 0, base_word};
    note(2, dev);
    return &record;
}

uint32_t operation_4(int dev, uint32_t address)
{
    note(4, dev, address);
    return 104;
}

int operation_5(int dev, uint32_t address, uint32_t data)
{
    note(5, dev, address, data);
    return 105;
}

void operation_6(int dev, int*, int*, int*)
{
    note(6, dev);
}

uint32_t operation_7(int dev, uint32_t address)
{
    note(7, dev, address);
    return 107;
}

int operation_8(int dev, uint32_t address, uint32_t data)
{
    note(8, dev, address, data);
    return 108;
}

char memory[8];

void* operation_9(int dev, int size, const char* name)
{
    note(9, dev, size, name);
    return memory;
}

void operation_10(int dev, void* address)
{
    note(10, dev, address == memory + 1);
}

int operation_11(int dev, void* address, int length)
{
    note(11, dev, address == memory + 2, length);
    return 111;
}

int operation_12(int dev, void* address, int length)
{
    note(12, dev, address == memory + 3, length);
    return 112;
}

void handler(void*) {}

int operation_13(int dev, void (*given)(void*), void* data)
{
    note(13, dev, given == handler, data == memory + 4);
    return 113;
}

uintptr_t operation_15(int dev, void* address)
{
    note(15, dev, address == memory + 5);
    return 115;
}

void* operation_16(int dev, uintptr_t address)
{
    note(16, dev, address);
    return memory + 6;
}

template <class Record, class Entry>
void set_at(Record& record, std::size_t position, Entry entry)
{
    static_assert(sizeof entry == sizeof(void*));
    std::memcpy(reinterpret_cast<char*>(&record) + position * sizeof entry, &entry, sizeof entry);
}

/// The entry of a record at a position counted from 1.
template <class Entry, class Record>
Entry entry_at(const Record& record, std::size_t position)
{
    Entry entry = {};
    static_assert(sizeof entry == sizeof(void*));
    std::memcpy(&entry, reinterpret_cast<const char*>(&record) + (position - 1) * sizeof entry,
                sizeof entry);
    return entry;
}

/// A bus of this test's own.
struct BusAccess : testing::Test {
    BusAccess()
    {
        static_assert(sizeof(ibde_t) == 17 * sizeof(void*));
        static_assert(sizeof(soc_cm_device_vectors_t) == 14 * sizeof(void*));
        vexosim::use_manual_clock();
        set_at(bus, 1, operation_1);
        set_at(bus, 2, operation_2);
        set_at(bus, 4, operation_4);
        set_at(bus, 5, operation_5);
        set_at(bus, 6, operation_6);
        set_at(bus, 7, operation_7);
        set_at(bus, 8, operation_8);
        set_at(bus, 9, operation_9);
        set_at(bus, 10, operation_10);
        set_at(bus, 11, operation_11);
        set_at(bus, 12, operation_12);
        set_at(bus, 13, operation_13);
        set_at(bus, 15, operation_15);
        set_at(bus, 16, operation_16);
        bde = &bus;
        vectors = vexolc::bus_access_vectors(5);
        EXPECT_EQ(noted, "2: 5\n");
        noted.clear();
    }

    ibde_t bus = {};
    soc_cm_device_vectors_t vectors = {};
    soc_cm_dev_t dev = {3, nullptr};
};

TEST_F(BusAccess, AttachUsesOperations1And6And2)
{
    vexo_sysconf_attach(6);
    EXPECT_EQ(noted, "1: 0\n6: 6\n2: 6\n");
    noted.clear();
    EXPECT_EQ(vexo_sysconf_attach(7), -1); // seven devices
    EXPECT_EQ(vexo_sysconf_detach(7), -1);
    EXPECT_EQ(noted, "1: 0\n1: 0\n");
}

TEST_F(BusAccess, Entry1LooksUpAPropertyOfTheStore)
{
    vexosim::set_property("colour", "blue");
    const auto get = entry_at<char* (*)(soc_cm_dev_t*, const char*)>(vectors, 1);
    EXPECT_STREQ(get(&dev, "colour"), "blue");
}

TEST_F(BusAccess, Entry2ConnectsByOperation13AndEntry3LeavesConnected)
{
    const auto connect = entry_at<int (*)(soc_cm_dev_t*, void (*)(void*), void*)>(vectors, 2);
    EXPECT_EQ(connect(&dev, handler, memory + 4), 113);
    EXPECT_EQ(noted, "13: 3 1 1\n");
    EXPECT_EQ(entry_at<int (*)(soc_cm_dev_t*)>(vectors, 3)(&dev), 0);
    EXPECT_EQ(noted, "13: 3 1 1\n");
}

TEST_F(BusAccess, Entry4IsTheBaseAddressOfTheDevice)
{
    EXPECT_EQ(entry_at<uintptr_t>(vectors, 4), base_word);
}

TEST_F(BusAccess, Entries5To8AreOperations7And8And4And5)
{
    using Read = uint32_t (*)(soc_cm_dev_t*, uint32_t);
    using Write = int (*)(soc_cm_dev_t*, uint32_t, uint32_t);
    EXPECT_EQ(entry_at<Read>(vectors, 5)(&dev, 11), 107u);
    EXPECT_EQ(entry_at<Write>(vectors, 6)(&dev, 12, 21), 108);
    EXPECT_EQ(entry_at<Read>(vectors, 7)(&dev, 13), 104u);
    EXPECT_EQ(entry_at<Write>(vectors, 8)(&dev, 14, 22), 105);
    EXPECT_EQ(noted, "7: 3 11\n8: 3 12 21\n4: 3 13\n5: 3 14 22\n");
}

TEST_F(BusAccess, Entries9And10AllocateAndFreeByOperations9And10)
{
    using Allocate = void* (*)(soc_cm_dev_t*, int, const char*);
    EXPECT_EQ(entry_at<Allocate>(vectors, 9)(&dev, 64, "ring"), memory);
    entry_at<void (*)(soc_cm_dev_t*, void*)>(vectors, 10)(&dev, memory + 1);
    EXPECT_EQ(noted, "9: 3 64 ring\n10: 3 1\n");
}

TEST_F(BusAccess, Entries11And12FlushAndInvalidateByOperations11And12)
{
    using Cache = int (*)(soc_cm_dev_t*, void*, int);
    EXPECT_EQ(entry_at<Cache>(vectors, 11)(&dev, memory + 2, 31), 111);
    EXPECT_EQ(entry_at<Cache>(vectors, 12)(&dev, memory + 3, 32), 112);
    EXPECT_EQ(noted, "11: 3 1 31\n12: 3 1 32\n");
}

TEST_F(BusAccess, Entries13And14TranslateByOperations15And16)
{
    EXPECT_EQ(entry_at<uintptr_t (*)(soc_cm_dev_t*, void*)>(vectors, 13)(&dev, memory + 5), 115u);
    EXPECT_EQ(entry_at<void* (*)(soc_cm_dev_t*, uintptr_t)>(vectors, 14)(&dev, 44), memory + 6);
    EXPECT_EQ(noted, "15: 3 1\n16: 3 44\n");
}

TEST_F(BusAccess, EachOfTheFourThatTheBusMayLackIsLookedAtOnItsOwn)
{
    using Cache = int (*)(soc_cm_dev_t*, void*, int);
    const auto flush = entry_at<Cache>(vectors, 11);
    const auto invalidate = entry_at<Cache>(vectors, 12);
    const auto to_physical = entry_at<uintptr_t (*)(soc_cm_dev_t*, void*)>(vectors, 13);
    const auto to_logical = entry_at<void* (*)(soc_cm_dev_t*, uintptr_t)>(vectors, 14);
    for (const std::size_t lacking : {11U, 12U, 15U, 16U}) {
        const ibde_t whole = bus;
        set_at(bus, lacking, static_cast<void*>(nullptr));
        EXPECT_EQ(flush(&dev, memory, 1), lacking == 11 ? 0 : 111);
        EXPECT_EQ(invalidate(&dev, memory, 1), lacking == 12 ? 0 : 112);
        EXPECT_EQ(to_physical(&dev, memory), lacking == 15 ? 0u : 115u);
        EXPECT_EQ(to_logical(&dev, 4), lacking == 16 ? nullptr : memory + 6);
        bus = whole;
    }
}

} // namespace
