#pragma once

#include <algorithm>
#include <cctype>
#include <tuple>
#include <utility>

#include "tools/vexosh/call.h"
#include "tools/vexosh/call_args.h"

/// Makes an Operation from a member function: its argument types say what is read, and how.
namespace vexosh {

template <class... Args, std::size_t... I>
CallResult run_operation(const std::vector<std::string>& names,
                         const std::vector<std::string>& words, auto&& call,
                         std::index_sequence<I...>)
{
    std::tuple<Arg<Args>...> args;
    std::size_t next = 0;
    [[maybe_unused]] const auto read = [&](auto& arg, std::size_t index) {
        if constexpr (std::remove_reference_t<decltype(arg)>::kInput) {
            arg.read(words[next++], names[index]);
        }
    };
    (read(std::get<I>(args), I), ...);
    CallResult result{call(std::get<I>(args).get()...), {}};
    [[maybe_unused]] const auto show = [&](const auto& arg, std::size_t index) {
        if (const std::string text = arg.show(); result.done && !text.empty()) {
            result.outputs.push_back(names[index] + " = " + text);
        }
    };
    (show(std::get<I>(args), I), ...);
    return result;
}

/// @param Args how to treat each argument, mostly its own type.
/// @param names the arguments' names, separated by blanks.
template <class... Args, class R, class... Parameters>
Operation operation_as(const char* name, R (VexoSdkBase::*function)(Parameters...),
                       const char* names)
{
    std::vector<std::string> upper = split_words(names);
    for (std::string& word : upper) {
        std::ranges::transform(word, word.begin(), [](unsigned char c) { return std::toupper(c); });
    }
    Operation operation{name, {}, (std::size_t{Arg<Args>::kInput} + ... + 0), {}};
    std::size_t index = 0;
    ((operation.usage += Arg<Args>::kInput ? " " + upper[index] : "", ++index), ...);
    operation.run = [function, upper](VexoSdkBase& sdk, const std::vector<std::string>& words) {
        const auto call = [&](auto&&... args) {
            if constexpr (std::is_void_v<R>) {
                (sdk.*function)(std::forward<decltype(args)>(args)...);
                return true;
            } else {
                return (sdk.*function)(std::forward<decltype(args)>(args)...);
            }
        };
        return run_operation<Args...>(upper, words, call, std::index_sequence_for<Args...>{});
    };
    return operation;
}

template <class R, class... Parameters>
Operation operation(const char* name, R (VexoSdkBase::*function)(Parameters...),
                    const char* names = "")
{
    return operation_as<Parameters...>(name, function, names);
}

/// The operations, a piece of the slot order each.
void add_l2_operations(std::vector<Operation>& operations);
void add_port_operations(std::vector<Operation>& operations);
void add_flow_operations(std::vector<Operation>& operations);
void add_l3_operations(std::vector<Operation>& operations);

} // namespace vexosh
