#pragma once

#include <string>

/// A function's name and argument types as people write them: "vexo_mp_to_usp(Mp const&, Usp&)",
/// with lists as "list<Mp>" and strings as "string".
std::string wording(const std::string& symbol);
