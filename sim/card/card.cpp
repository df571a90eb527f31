#include "sim/card/card.h"

namespace vexosim {

struct Chip {};

Card::Card() : chip_(std::make_unique<Chip>()) {}

Card::~Card() = default;

Card& card()
{
    static Card& the_card = *new Card;
    return the_card;
}

ChipLock::~ChipLock()
{
    card().chip_mutex.unlock();
}

} // namespace vexosim
