#include "tests/core/wording.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

namespace {

void replace_all(std::string& text, const std::string& from, const std::string& to)
{
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at))
        text.replace(at, from.size(), to);
}

std::string demangle(const char* name)
{
    const std::unique_ptr<char, decltype(&std::free)> text(
        abi::__cxa_demangle(name, nullptr, nullptr, nullptr), &std::free);
    return text ? text.get() : name;
}

} // namespace

std::string wording(const std::string& symbol)
{
    std::string text = demangle(symbol.c_str());
    for (const std::string type : {"Mp", "Usp", "LagNode", "StatCounter64", "StatCounter32",
                                   "BriefStatCounter64", "BriefStatCounter32"}) {
        std::string allocator = ", std::allocator<";
        allocator.append(type).append("> >");
        replace_all(text, allocator, ">");
    }
    replace_all(text, "std::__cxx11::list<", "list<");
    replace_all(text,
                "std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >",
                "string");
    return text;
}
