#pragma once

#include <map>
#include <string>

/// The chip's field entries, for which the driver has no operations.
namespace vexosh {

struct FieldEntryText {
    std::string group, priority, state, packets, match, actions;
};

/// By entry, as they are now. One that does not exist reads as one without match and actions.
class FieldEntries {
public:
    FieldEntries();
    bool contains(int entry) const { return entries_.contains(entry); }
    const FieldEntryText& operator[](int entry) const;
    auto begin() const { return entries_.begin(); }
    auto end() const { return entries_.end(); }

private:
    std::map<int, FieldEntryText> entries_;
};

} // namespace vexosh
