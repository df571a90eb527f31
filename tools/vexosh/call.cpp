#include "tools/vexosh/call.h"

#include <unordered_map>

#include "tools/vexosh/call_operation.h"

namespace vexosh {

const std::vector<Operation>& operations()
{
    static const std::vector<Operation> all = [] {
        std::vector<Operation> list;
        add_l2_operations(list);
        add_port_operations(list);
        add_flow_operations(list);
        add_l3_operations(list);
        return list;
    }();
    return all;
}

const Operation* find_operation(const std::string& name)
{
    static const auto by_name = [] {
        std::unordered_map<std::string, const Operation*> map;
        for (const Operation& operation : operations()) {
            map.emplace(operation.name, &operation);
        }
        return map;
    }();
    const auto found = by_name.find(name);
    return found == by_name.end() ? nullptr : found->second;
}

} // namespace vexosh
