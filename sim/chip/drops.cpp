#include "vexosim/drops.h"

#include <numeric>

namespace vexosim {

namespace {

struct Text {
    const char* name;
    const char* text;
};

constexpr std::array<Text, kDropReasons> kTexts = {{{"none", ""},
#define X(name, text) {#name, text},
                                                    VEXOSIM_DROP_REASONS(X)
#undef X
}};

std::uint64_t sum(const std::array<std::uint64_t, kDropReasons>& values)
{
    return std::accumulate(values.begin(), values.end(), std::uint64_t{0});
}

} // namespace

const char* drop_name(DropReason reason)
{
    return kTexts[static_cast<std::size_t>(reason)].name;
}

const char* drop_text(DropReason reason)
{
    return kTexts[static_cast<std::size_t>(reason)].text;
}

std::uint64_t DropCounters::frame_drops() const
{
    return sum(frames);
}

std::uint64_t DropCounters::copy_drops() const
{
    return sum(copies);
}

std::uint64_t DropCounters::mirror_drops() const
{
    return sum(mirrors);
}

bool DropCounters::balanced() const
{
    return frames_in == frames_delivered + frame_drops() &&
           copies_meant == copies_sent + copies_to_cpu + copy_drops() &&
           mirrors_meant == mirrors_sent + mirror_drops();
}

} // namespace vexosim
