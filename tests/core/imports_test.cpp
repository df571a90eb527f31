#include <dlfcn.h>
#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <string>

#include "tests/core/elf_file.h"

namespace {

// Everything the driver may ask of the SDK. An operation that calls more adds its calls here.
const std::set<std::string> sdk_calls = {
#include "tests/core/sdk_calls.inc"
};

// Compilers add these in instrumented builds.
bool is_instrumentation(const std::string& name)
{
    for (const char* prefix : {"__asan_", "__ubsan_", "__tsan_", "__sanitizer_", "__gcov_"}) {
        if (name.rfind(prefix, 0) == 0)
            return true;
    }
    return false;
}

// The C runtime comes with the C++ runtime.
bool is_of_companion_or_runtime(const std::string& name)
{
    for (const char* library : {"libvexocompanion.so.0", "libstdc++.so.6", "libgcc_s.so.1"}) {
        void* handle = dlopen(library, RTLD_NOW | RTLD_NOLOAD);
        if (handle != nullptr && dlsym(handle, name.c_str()) != nullptr)
            return true;
    }
    return false;
}

std::set<std::string> foreign_imports()
{
    std::set<std::string> names;
    for (const std::string& name : ElfFile::of_loaded("libvexolc.so.0").imports()) {
        if (!is_instrumentation(name) && !is_of_companion_or_runtime(name))
            names.insert(name);
    }
    return names;
}

std::string only_in(const std::set<std::string>& a, const std::set<std::string>& b)
{
    std::string names;
    for (const std::string& name : a) {
        if (b.count(name) == 0)
            names += name + "\n";
    }
    return names;
}

} // namespace

TEST(Imports, TheDriverNeedsTheSdkCallsItMayMakeTheRuntimeAndTheCompanionOnly)
{
    EXPECT_EQ(only_in(foreign_imports(), sdk_calls), "");
}

TEST(Imports, TheDriverMakesEverySdkCallOfTheList)
{
    EXPECT_EQ(only_in(sdk_calls, foreign_imports()), "");
}

TEST(Imports, TheLibraryIsNamedForItsClients)
{
    EXPECT_EQ(ElfFile::of_loaded("libvexolc.so.0").soname(), "libvexolc.so.0");
}
