// The system layer: start, chip-reachable memory, properties.
#include <sal/config.h>
#include <sal/core.h>

#include <algorithm>
#include <cstdlib>

#include "sim/card/bus.h"
#include "sim/sdk/gate.h"

namespace {

using namespace vexosim;

constexpr int kFailed = -1; // this layer's codes are no result codes of the switch layer

void* allocate(std::size_t size)
{
    void* const memory = std::malloc(std::max<std::size_t>(size, 1));
    if (memory != nullptr)
        ++card().dma_buffers;
    return memory;
}

int set(const char* name, const char* value)
{
    if (name == nullptr || *name == '\0')
        return kFailed;
    if (value == nullptr)
        card().properties.remove(name);
    else
        card().properties.set(name, value);
    return 0;
}

int start_application()
{
    return card().core_started ? 0 : kFailed;
}

} // namespace

extern "C" int sal_core_init(void)
{
    return local_call("sal_core_init", args(), [] {
        card().core_started = true;
        return 0;
    });
}

extern "C" int sal_appl_init(void)
{
    return local_call("sal_appl_init", args(), start_application);
}

extern "C" void* sal_dma_alloc(size_t size, const char* description)
{
    return pointer_call("sal_dma_alloc", args(size, description), [&] { return allocate(size); });
}

extern "C" void sal_dma_free(void* memory)
{
    sure_call("sal_dma_free", CallClass::local, args(memory), [&] {
        if (memory != nullptr)
            --card().dma_buffers;
        std::free(memory);
    });
}

extern "C" int sal_memory_check(uintptr_t address)
{
    return local_call("sal_memory_check", args(Address{address}),
                      [&] { return bus_answers(address) ? 0 : kFailed; });
}

extern "C" char* sal_config_get(const char* name)
{
    return pointer_call("sal_config_get", args(name),
                        [&] { return name == nullptr ? nullptr : card().properties.find(name); });
}

extern "C" int sal_config_set(const char* name, const char* value)
{
    return local_call("sal_config_set", args(name, value), [&] { return set(name, value); });
}
