// A bring-up in which one call fails, for every call in turn. Each happens in a process of its own,
// because a card is brought up once per process.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <map>
#include <sstream>
#include <vector>

#include "core/factory.h"
#include "tests/core/bring_up_calls.h"
#include "vexosim/board.h"
#include "vexosim/calls.h"
#include "vexosim/clock.h"
#include "vexosim/faults.h"

namespace {

using Lines = std::vector<std::string>;

Lines lines_of(const std::string& text)
{
    std::istringstream in(text);
    Lines lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

std::string read_all(int fd)
{
    std::string text;
    char buffer[4096];
    for (ssize_t n = 0; (n = read(fd, buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(n));
    return text;
}

void write_all(int fd, const std::string& text)
{
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t n = write(fd, text.data() + done, text.size() - done);
        if (n <= 0)
            _exit(2);
        done += static_cast<std::size_t>(n);
    }
}

/// What `body` returns when it runs in a copy of this process.
std::string in_a_child(const std::function<std::string()>& body)
{
    int ends[2];
    if (pipe(ends) != 0)
        return "no pipe";
    const pid_t child = fork();
    if (child == 0) {
        write_all(ends[1], body());
        _exit(0);
    }
    close(ends[1]);
    const std::string text = read_all(ends[0]);
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? text : "the child ended badly";
}

constexpr int failure = -11;
constexpr int positive = 11;

/// The calls of a bring-up in which the `nth` call that can fail reports `code`, with results, and
/// a line "hit" when there was such a call.
Lines bring_up_with(unsigned nth, int code)
{
    return lines_of(in_a_child([&] {
        vexosim::board::enable();
        vexosim::use_manual_clock();
        vexosim::log_calls(true);
        vexosim::inject({.call = "", .nth = nth, .code = code});
        vexosdk_create_sdk_instance();
        return calls_of_interest(true) + (vexosim::faults_hit() != 0 ? "hit\n" : "");
    }));
}

std::string without_result(const std::string& line)
{
    return line.substr(0, line.rfind(") = ") + 1);
}

/// Index of the line that reports `code`, or the number of lines.
std::size_t failed_line(const Lines& lines, int code)
{
    const std::string end = ") = " + std::to_string(code);
    std::size_t i = 0;
    while (i < lines.size() && (lines[i].size() < end.size() ||
                                lines[i].compare(lines[i].size() - end.size(), end.size(), end)))
        ++i;
    return i;
}

enum class After { stops, goes_on, skips_device, skips_next, loses_ports };

/// What a bring-up does after a call failed.
After after_failure(const std::string& call)
{
    static const std::map<std::string, After> special = {
        {"sysconf_chip_override(0, out, out)", After::goes_on},
        {"soc_cm_device_supported(0x5654, 1)", After::skips_device},
        {"soc_cm_get_id_driver(0x5654, 1, out, out)", After::goes_on},
        {"sal_memory_check(pointer)", After::skips_device},
        {"soc_cm_get_id(0, out, out)", After::goes_on},
        {"sal_config_set(\"pbmp_xport_xe.0\", \"0x3c000000\")", After::goes_on},
        {"soc_property_get_str(0, \"bcm_linkscan_pbmp\")", After::goes_on},
        {"bcmx_uport_create_callback_set(vexo_uport_create_cb)", After::loses_ports},
        {"soc_ledproc_config(0, 021d2860c0671e021c2860c0671e021b2860c0671e021a2860c0671e3a1012a0f8"
         "151a0075373208d7873200d7873201d787320fd787573208d787320ed787320ed787320ed78757, 72)",
         After::goes_on},
        {"bcmx_switch_control_set(225, 6)", After::goes_on},
        {"bcm_switch_control_set(0, 204, 1)", After::goes_on},
        {"bcm_switch_control_set(0, 21, 0)", After::goes_on},
        {"bcm_rx_queue_channel_set(0, 3, 3)", After::goes_on},
        {"bcm_rx_queue_channel_set(0, 7, 2)", After::goes_on},
        {"bcmx_mirror_init()", After::skips_next},
        {"bcmx_mirror_pfmt_set(1)", After::goes_on},
        {"bcmx_field_init()", After::goes_on},
    };
    const auto known = special.find(call);
    return known != special.end() ? known->second : After::stops;
}

std::size_t first_port_default(const Lines& good)
{
    std::size_t i = 0;
    while (good[i].rfind("bcmx_port_autoneg_set", 0) != 0)
        ++i;
    return i;
}

/// The calls that follow when call `i` of a good bring-up fails.
Lines expected_calls(const Lines& good, std::size_t i)
{
    const auto at = [&](std::size_t n) { return good.begin() + static_cast<std::ptrdiff_t>(n); };
    Lines calls(good.begin(), at(i + 1));
    switch (after_failure(good[i])) {
    case After::stops:
        break;
    case After::goes_on:
        calls.insert(calls.end(), at(i + 1), good.end());
        break;
    case After::skips_next:
        calls.insert(calls.end(), at(i + 2), good.end());
        break;
    case After::loses_ports: // goes on until the first port gets its defaults
        calls.insert(calls.end(), at(i + 1), at(first_port_default(good)));
        calls.emplace_back("bcmx_port_autoneg_set(lport:-1, 1)");
        break;
    case After::skips_device: // the unit is missing when it is to get its vectors
        for (const char* call :
             {"soc_cm_get_id(0, out, out)", "sal_config_set(\"pbmp_xport_xe.0\", \"0x3c000000\")",
              "soc_cm_device_init(0, pointer)"})
            calls.emplace_back(call);
        break;
    }
    return calls;
}

Lines calls_in(const Lines& lines)
{
    Lines calls;
    for (const std::string& line : lines)
        calls.push_back(line.find(") = ") != std::string::npos ? without_result(line) : line);
    return calls;
}

/// Runs `check` for every call with a result code. A look-up of a property that finds nothing
/// instead changes nothing.
void for_each_failure(int code, const std::function<void(const Lines&, std::size_t)>& check)
{
    const Lines good = lines_of(bring_up_calls());
    std::size_t checked = 0;
    for (unsigned nth = 1; !testing::Test::HasFailure(); ++nth) {
        Lines lines = bring_up_with(nth, code);
        if (lines.empty() || lines.back() != "hit")
            break;
        lines.pop_back();
        const std::size_t failed = failed_line(lines, code);
        if (failed == lines.size())
            EXPECT_EQ(calls_in(lines), good) << "failure " << nth;
        else
            check(lines, failed);
        checked += failed != lines.size() ? 1 : 0;
    }
    EXPECT_GT(checked, 350u);
}

TEST(BringUpFaults, EachFailureLeavesWhatWasDoneAndDoesNothingMoreUnlessItIsIgnored)
{
    const Lines good = lines_of(bring_up_calls());
    for_each_failure(failure, [&](const Lines& lines, std::size_t failed) {
        ASSERT_LT(failed, good.size());
        EXPECT_EQ(calls_in(lines), expected_calls(good, failed)) << good[failed];
    });
}

bool starts_with_any(const std::string& call, std::initializer_list<const char*> names)
{
    for (const char* name : names) {
        if (call.rfind(name, 0) == 0)
            return true;
    }
    return false;
}

/// What a bring-up does after a call returned a positive number without doing anything. Of some the
/// chip then misses the effect, one or more calls later.
void expect_after_positive(const Lines& calls, const Lines& good, std::size_t i)
{
    const std::string& call = good[i];
    if (starts_with_any(call, {"soc_l2x_start(", "bcm_linkscan_mode_set(", "bcm_stat_clear(",
                               "bcm_linkscan_enable_set(", "sal_memory_check("})) {
        EXPECT_EQ(calls, good) << call;
    } else if (starts_with_any(call, {"soc_cm_device_init(", "soc_reset_init(", "soc_misc_init(",
                                      "soc_mmu_init(", "bcm_init("})) {
        ASSERT_GT(calls.size(), i + 1) << call;
        EXPECT_EQ(calls[i + 1], good[i + 1]) << call;
    } else {
        EXPECT_EQ(calls, expected_calls(good, i)) << call;
    }
}

TEST(BringUpFaults, APositiveResultIsAFailureExceptWhereOnlyNegativeOnesAre)
{
    const Lines good = lines_of(bring_up_calls());
    for_each_failure(positive, [&](const Lines& lines, std::size_t failed) {
        ASSERT_LT(failed, good.size());
        expect_after_positive(calls_in(lines), good, failed);
    });
}

} // namespace
