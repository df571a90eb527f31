// How long a bring-up takes, and how much memory the started card holds. A card is brought up once
// per process, so this program starts itself again for every run. Fails above the limits.
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "core/factory.h"
#include "vexosim/board.h"
#include "vexosim/clock.h"

namespace {

constexpr int runs = 51;
constexpr double limit_ms = 20;
constexpr double limit_mib = 32;

struct Run {
    double ms;
    double mib;
};

/// Resident size of this process.
double resident_mib()
{
    std::FILE* statm = std::fopen("/proc/self/statm", "r");
    long size = 0;
    long resident = 0;
    if (statm == nullptr || std::fscanf(statm, "%ld %ld", &size, &resident) != 2)
        std::exit(2);
    std::fclose(statm);
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

/// Whether the card that was created is up: its trap group exists, and is not made twice.
bool is_up()
{
    return bcm_sdk->create_vlan(2) && !bcm_sdk->init_filter_group_no_udf();
}

int run_once()
{
    vexosim::use_manual_clock();
    vexosim::board::enable();
    const auto start = std::chrono::steady_clock::now();
    vexosdk_create_sdk_instance();
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    const double resident = resident_mib();
    if (!is_up())
        return 2;
    std::printf("%.3f %.2f\n", took.count(), resident);
    return 0;
}

Run run_in_a_process(const std::string& command)
{
    Run run = {};
    std::FILE* child = popen(command.c_str(), "r");
    const bool read = child != nullptr && std::fscanf(child, "%lf %lf", &run.ms, &run.mib) == 2;
    if (child == nullptr || pclose(child) != 0 || !read) {
        std::fprintf(stderr, "bringup_bench: a run failed\n");
        std::exit(2);
    }
    return run;
}

template <class Field>
double median(std::vector<Run> all, Field field)
{
    std::nth_element(all.begin(), all.begin() + runs / 2, all.end(),
                     [&](const Run& a, const Run& b) { return a.*field < b.*field; });
    return all[runs / 2].*field;
}

std::string own_command()
{
    char path[4096] = {};
    if (readlink("/proc/self/exe", path, sizeof path - 1) <= 0)
        std::exit(2);
    return "'" + std::string(path) + "' --once";
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && std::strcmp(argv[1], "--once") == 0)
        return run_once();
    const std::string command = own_command();
    std::vector<Run> all;
    for (int i = 0; i < runs; ++i)
        all.push_back(run_in_a_process(command));
    const double ms = median(all, &Run::ms);
    const double mib = median(all, &Run::mib);
    std::printf("bring-up: %.2f ms (at most %.0f)\n", ms, limit_ms);
    std::printf("resident, card started: %.1f MiB (at most %.0f)\n", mib, limit_mib);
    return ms < limit_ms && mib < limit_mib ? 0 : 1;
}
