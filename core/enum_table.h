#pragma once

#include <cstddef>

/// Enum values of the interface and the SDK's values for them, read both ways. A value that is in
/// no row is refused; where several rows have a value, the first one counts.
namespace vexolc {

template <class Ours, std::size_t N>
struct EnumTable {
    struct Row {
        Ours ours;
        int sdk;
    };
    Row rows[N];

    constexpr bool to_sdk(Ours ours, int& sdk) const
    {
        for (const Row& row : rows) {
            if (row.ours == ours) {
                sdk = row.sdk;
                return true;
            }
        }
        return false;
    }

    constexpr bool from_sdk(int sdk, Ours& ours) const
    {
        for (const Row& row : rows) {
            if (row.sdk == sdk) {
                ours = row.ours;
                return true;
            }
        }
        return false;
    }

    /// True when every value reads back as itself, both ways.
    constexpr bool two_way() const
    {
        for (const Row& row : rows) {
            Ours ours{};
            int sdk = 0;
            if (!to_sdk(row.ours, sdk) || sdk != row.sdk)
                return false;
            if (!from_sdk(row.sdk, ours) || ours != row.ours)
                return false;
        }
        return true;
    }
};

} // namespace vexolc
