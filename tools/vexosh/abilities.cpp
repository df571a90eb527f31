#include "tools/vexosh/abilities.h"

#include <span>

#include "tools/vexosh/input.h"

namespace vexosh {
namespace {

struct Bit {
    const char* name;
    unsigned bits;
};

constexpr Bit kAbilities[] = {
    {"10-half", PORT_ABILITY_10M_HALF},    {"10-full", PORT_ABILITY_10M_FULL},
    {"100-half", PORT_ABILITY_100M_HALF},  {"100-full", PORT_ABILITY_100M_FULL},
    {"1000-half", PORT_ABILITY_1G_HALF},   {"1000-full", PORT_ABILITY_1G_FULL},
    {"10000-half", PORT_ABILITY_10G_HALF}, {"10000-full", PORT_ABILITY_10G_FULL},
    {"copper", PORT_ABILITY_COPPER},       {"fibre", PORT_ABILITY_FIBRE},
    {"autoneg", PORT_ABILITY_AUTONEG},     {"pause-tx", PORT_ABILITY_PAUSE_TX},
    {"pause-rx", PORT_ABILITY_PAUSE_RX},   {"pause-asymmetric", PORT_ABILITY_PAUSE_ASYMMETRIC},
};

constexpr Bit kFloods[] = {
    {"broadcast", FLOOD_BLOCK_BROADCAST},
    {"unknown-unicast", FLOOD_BLOCK_UNKNOWN_UNICAST},
    {"known-multicast", FLOOD_BLOCK_KNOWN_MULTICAST},
    {"unknown-multicast", FLOOD_BLOCK_UNKNOWN_MULTICAST},
};

unsigned parse_bit(std::span<const Bit> bits, std::string_view word, const char* what)
{
    std::string wanted;
    for (const Bit& bit : bits) {
        if (word == bit.name) {
            return bit.bits;
        }
        wanted += (wanted.empty() ? "" : ", ") + std::string(bit.name);
    }
    throw BadInput(std::string("bad ") + what + " '" + std::string(word) + "': one of " + wanted +
                   " is wanted");
}

std::string text_of(std::span<const Bit> bits, unsigned value, const char* separator)
{
    std::string result;
    for (const Bit& bit : bits) {
        if ((value & bit.bits) != 0) {
            result += (result.empty() ? "" : separator) + std::string(bit.name);
        }
    }
    return result;
}

} // namespace

port_ability_type_t parse_abilities(std::string_view word)
{
    unsigned abilities = 0;
    if (word == "-") {
        return PORT_ABILITY_NONE;
    }
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = word.find(',');
        abilities |= parse_bit(kAbilities, word.substr(0, end), "ability");
        word.remove_prefix(end == std::string_view::npos ? word.size() : end + 1);
    }
    return static_cast<port_ability_type_t>(abilities);
}

std::string text(port_ability_type_t abilities)
{
    const std::string result = text_of(kAbilities, abilities, ",");
    return result.empty() ? "-" : result;
}

flood_block_type_t parse_flood(std::string_view word)
{
    if (word == "none" || word == "all") {
        return static_cast<flood_block_type_t>(word == "all" ? 0xF : 0);
    }
    return static_cast<flood_block_type_t>(parse_bit(kFloods, word, "kind of flood"));
}

std::string text(flood_block_type_t floods)
{
    return text_of(kFloods, floods, ", ");
}

} // namespace vexosh
