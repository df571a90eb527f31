#include <dlfcn.h>
#include <elf.h>
#include <gtest/gtest.h>
#include <link.h>

#include <cstring>
#include <string>
#include <type_traits>

#include "core/factory.h"
#include "tests/core/elf_file.h"
#include "tests/core/wording.h"

namespace {

constexpr std::size_t table_header = 2; // offset to top, type information

void* library()
{
    return dlopen("libvexolc.so.0", RTLD_NOW | RTLD_NOLOAD);
}

void* const* dispatch_table()
{
    return static_cast<void* const*>(dlsym(library(), "_ZTV10VexoBcmSdk"));
}

// The functions in a slot, one per line. There are several when the compiler found that they do the
// same.
std::string functions_at(void* address)
{
    static const ElfFile library = ElfFile::of_loaded("libvexolc.so.0");
    Dl_info info = {};
    std::string text;
    if (dladdr(address, &info) == 0)
        return text;
    const auto distance = static_cast<char*>(address) - static_cast<char*>(info.dli_fbase);
    for (const std::string& symbol : library.functions_at(static_cast<std::size_t>(distance)))
        text += wording(symbol) + "\n";
    return text;
}

// The slot that a call through the interface uses: 1 + its offset in the table.
template <class Function>
std::size_t slot_of(Function VexoSdkBase::*function)
{
    std::size_t word = 0;
    std::memcpy(&word, &function, sizeof word);
    return (word - 1) / sizeof(void*);
}

template <class Result, class... Arguments>
constexpr bool returns_bool(Result (VexoSdkBase::*)(Arguments...))
{
    return std::is_same_v<Result, bool>;
}

struct Slot {
    const char* name;
    const char* arguments;
    std::size_t called;
    bool returns_bool;
};

const Slot slots[] = {
#define SLOT(name, arguments)                                                                      \
    {#name, arguments, slot_of(&VexoSdkBase::name), returns_bool(&VexoSdkBase::name)},
#include "tests/core/slots.inc"
#undef SLOT
};
constexpr std::size_t slot_count = sizeof slots / sizeof slots[0];
static_assert(slot_count == 179);

} // namespace

TEST(DispatchTable, EverySlotHoldsTheOperationOfTheSlotTable)
{
    ASSERT_NE(dispatch_table(), nullptr);
    for (std::size_t i = 0; i < slot_count; ++i) {
        const std::string expected =
            std::string("VexoBcmSdk::") + slots[i].name + "(" + slots[i].arguments + ")\n";
        EXPECT_NE(functions_at(dispatch_table()[table_header + i]).find(expected),
                  std::string::npos)
            << "slot " << i << " is not " << expected;
    }
}

TEST(DispatchTable, HoldsTheOperationsAndNothingElse)
{
    Dl_info info = {};
    const ElfW(Sym)* symbol = nullptr;
    dladdr1(dispatch_table(), &info, reinterpret_cast<void**>(const_cast<ElfW(Sym)**>(&symbol)),
            RTLD_DL_SYMENT);
    ASSERT_NE(symbol, nullptr);
    EXPECT_EQ(symbol->st_size, (table_header + slot_count) * sizeof(void*));
}

TEST(DispatchTable, CallsThroughTheInterfaceUseTheSameSlots)
{
    for (std::size_t i = 0; i < slot_count; ++i)
        EXPECT_EQ(slots[i].called, i) << slots[i].name;
}

TEST(DispatchTable, OnlyTheWalkOfTheMacTableReturnsNothing)
{
    static_assert(
        std::is_same_v<decltype(&VexoSdkBase::traverse_mac_table), void (VexoSdkBase::*)(void*)>);
    for (std::size_t i = 0; i < slot_count; ++i)
        EXPECT_EQ(slots[i].returns_bool, i != 145) << slots[i].name;
}
