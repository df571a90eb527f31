#include "sim/chip/field_table.h"

namespace vexosim {

namespace {

template <class Values>
void add_all(Digest& d, const Values& values)
{
    d.add(values.size());
    for (const auto& value : values)
        d.add(value);
}

template <class Value>
void add_all(Digest& d, const std::map<int, Value>& values)
{
    d.add(values.size());
    for (const auto& [id, value] : values) {
        d.add(id);
        d.add(value);
    }
}

template <class Value>
void add_optional(Digest& d, const std::optional<Value>& value)
{
    d.add(value.has_value());
    if (value)
        d.add(*value);
}

void add_bits(Digest& d, const std::bitset<96>& bits)
{
    for (std::size_t bit = 0; bit < bits.size(); ++bit) {
        if (bits[bit])
            d.add(bit);
    }
    d.add(bits.size()); // an end mark, no bit has this number
}

} // namespace

void FieldSet::digest(Digest& d) const
{
    add_bits(d, fields);
    add_bits(d, udfs);
}

void FieldGroup::digest(Digest& d) const
{
    d.add(priority);
    d.add(set);
    d.add(entries);
}

void FieldMatch::digest(Digest& d) const
{
    d.add(field);
    d.add(data);
    d.add(mask);
}

void FieldAction::digest(Digest& d) const
{
    d.add(action);
    d.add(param0);
    d.add(param1);
    d.add(mac);
    d.add(ports);
}

void FieldRule::digest(Digest& d) const
{
    add_all(d, matches);
    add_all(d, actions);
}

void FieldEntry::digest(Digest& d) const
{
    d.add(group);
    d.add(priority);
    d.add(rule);
    add_optional(d, installed);
    add_optional(d, packets);
}

void FieldUdf::digest(Digest& d) const
{
    d.add(flags);
    d.add(word);
}

void FieldTable::digest(Digest& d) const
{
    add_all(d, groups_);
    add_all(d, entries_);
    for (const std::optional<FieldUdf>& udf : udfs_)
        add_optional(d, udf);
    add_all(d, controls_);
    d.add(next_entry_);
}

} // namespace vexosim
