#pragma once

#include <string>
#include <vector>

namespace vexosh {

/// Lines that say what a card is made to do by a script of commands, as `save` says it. The script
/// runs on a fresh card of its own, in another process. Throws BadInput with the script's error.
std::vector<std::string> saved_by_script(const std::string& path);

/// The program that has the card of its own; the one that runs, unless told otherwise.
void set_card_program(std::string path);

/// Lines of one that are missing in the other, in their order: "- line" for those of `before`,
/// "+ line" for those of `after`. A line counts as often as it is there.
std::vector<std::string> differences(const std::vector<std::string>& before,
                                     const std::vector<std::string>& after);

} // namespace vexosh
