#pragma once

#include <map>
#include <string>
#include <vector>

#include "vexosim/state.h"

namespace vexosh {

/// How many there are of each kind, in the order in which the kinds came.
class KindCounts {
public:
    void count(const std::string& kind)
    {
        if (counts_[kind]++ == 0) {
            order_.push_back(kind);
        }
    }
    vexosim::TextTable table(const char* what) const
    {
        vexosim::TextTable table{{"count", what}, {}};
        for (const std::string& kind : order_) {
            table.rows.push_back({std::to_string(counts_.at(kind)), kind});
        }
        return table;
    }
    /// A line for each, the count in front.
    std::string text() const
    {
        std::string lines;
        for (const std::string& kind : order_) {
            const std::string number = std::to_string(counts_.at(kind));
            lines += std::string(number.size() < 6 ? 6 - number.size() : 0, ' ') + number + "  " +
                     kind + "\n";
        }
        return lines;
    }

private:
    std::map<std::string, std::size_t> counts_;
    std::vector<std::string> order_;
};

} // namespace vexosh
