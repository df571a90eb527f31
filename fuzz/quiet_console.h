#pragma once

#include "tools/vexosh/console.h"

/// Takes what commands print, and forgets it.
class QuietConsole : public vexosh::Console {
public:
    void print(std::string_view) override {}
    void tell(const vexosh::Event&) override {}
};
