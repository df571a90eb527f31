// The bus driver: what is on the card's bus, and how to reach it. Device 0 is the switch chip; the
// registers of any other device are nothing but memory of its own.
#include <bcm/error.h>

#include <array>
#include <cstdlib>
#include <map>

#include "sim/card/bus.h"
#include "sim/sdk/gate.h"

namespace {

using namespace vexosim;

struct Bus {
    linux_bde_bus_t byte_order{};
    ibde_t operations{};
    std::vector<ibde_dev_t> records;
    /// PCI configuration words that were written, by device and address.
    std::map<std::pair<int, std::uint32_t>, std::uint32_t> config;
    std::array<std::uint32_t, 64> other_registers{};
};

Bus& bus()
{
    static Bus& the_bus = *new Bus;
    return the_bus;
}

bool present(int dev)
{
    return dev >= 0 && static_cast<std::size_t>(dev) < bus().records.size();
}

template <class... A, class Body>
auto answer(const char* name, const Arguments<A...>& arguments, Body&& body)
{
    return sure_call(name, CallClass::local, arguments, std::forward<Body>(body));
}

const char* name()
{
    return answer("bde.name", args(), [] { return "vexo-bus"; });
}

int num_devices(int type)
{
    return answer("bde.num_devices", args(type),
                  [] { return static_cast<int>(bus().records.size()); });
}

const ibde_dev_t* get_dev(int dev)
{
    return answer("bde.get_dev", args(dev), [&]() -> const ibde_dev_t* {
        return present(dev) ? &bus().records[static_cast<std::size_t>(dev)] : nullptr;
    });
}

std::uint32_t get_dev_type(int dev)
{
    return answer("bde.get_dev_type", args(dev), [&] { return present(dev) ? 1u : 0u; });
}

std::uint32_t read_config(int dev, std::uint32_t address)
{
    if (!present(dev))
        return 0xFFFFFFFFu;
    const auto written = bus().config.find({dev, address});
    if (written != bus().config.end())
        return written->second;
    constexpr std::uint32_t kVendor = 0x5658;
    const std::uint32_t device = bus().records[static_cast<std::size_t>(dev)].device;
    return address == 0 ? device << 16 | kVendor : 0;
}

std::uint32_t pci_conf_read(int dev, std::uint32_t address)
{
    return answer("bde.pci_conf_read", args(dev, Flags{address}),
                  [&] { return read_config(dev, address); });
}

int pci_conf_write(int dev, std::uint32_t address, std::uint32_t data)
{
    return local_call("bde.pci_conf_write", args(dev, Flags{address}, Flags{data}), [&] {
        if (!present(dev))
            return -1;
        bus().config[{dev, address}] = data;
        return 0;
    });
}

void pci_bus_features(int dev, int* be_pio, int* be_packet, int* be_other)
{
    answer("bde.pci_bus_features", args(dev, Out{be_pio}, Out{be_packet}, Out{be_other}), [&] {
        *be_pio = bus().byte_order.be_pio;
        *be_packet = bus().byte_order.be_packet;
        *be_other = bus().byte_order.be_other;
    });
}

std::uint32_t read(int dev, std::uint32_t address)
{
    return answer("bde.read", args(dev, Flags{address}),
                  [&] { return dev == 0 ? card().registers.read(address) : 0; });
}

int write(int dev, std::uint32_t address, std::uint32_t data)
{
    return local_call("bde.write", args(dev, Flags{address}, Flags{data}),
                      [&] { return dev == 0 && card().registers.write(address, data) ? 0 : -1; });
}

void* salloc(int dev, int size, const char* label)
{
    return pointer_call("bde.salloc", args(dev, size, label), [&]() -> void* {
        if (!present(dev) || size <= 0)
            return nullptr;
        ++card().dma_buffers;
        return std::malloc(static_cast<std::size_t>(size));
    });
}

void sfree(int dev, void* memory)
{
    answer("bde.sfree", args(dev, memory), [&] {
        if (memory != nullptr)
            --card().dma_buffers;
        std::free(memory);
    });
}

int sflush(int dev, void* address, int length)
{
    return local_call("bde.sflush", args(dev, address, length), [] { return 0; });
}

int sinval(int dev, void* address, int length)
{
    return local_call("bde.sinval", args(dev, address, length), [] { return 0; });
}

int interrupt_connect(int dev, void (*handler)(void*), void* data)
{
    return local_call("bde.interrupt_connect", args(dev, Handler{handler}, data),
                      [&] { return present(dev) ? 0 : -1; });
}

int interrupt_disconnect(int dev)
{
    return local_call("bde.interrupt_disconnect", args(dev), [&] { return present(dev) ? 0 : -1; });
}

// Memory that the chip can reach has one address on this card.
std::uintptr_t l2p(int dev, void* logical)
{
    return answer("bde.l2p", args(dev, logical),
                  [&] { return reinterpret_cast<std::uintptr_t>(logical); });
}

void* p2l(int dev, std::uintptr_t physical)
{
    return answer("bde.p2l", args(dev, Address{physical}), [&] {
        return reinterpret_cast<void*>(physical); // NOLINT(performance-no-int-to-ptr)
    });
}

std::uintptr_t base_address(std::size_t dev, const BusDevice& device)
{
    if (!device.registers_mapped)
        return 0;
    return dev == 0 ? card().registers.base()
                    : reinterpret_cast<std::uintptr_t>(&bus().other_registers[dev % 64]);
}

void list_devices(const std::vector<BusDevice>& devices)
{
    bus().records.clear();
    for (const BusDevice& device : devices) {
        ibde_dev_t record = {};
        record.device = device.id;
        record.rev = device.revision;
        record.base_address = base_address(bus().records.size(), device);
        bus().records.push_back(record);
    }
}

ibde_t operations(const Profile& profile)
{
    ibde_t bde = {};
    bde.name = name;
    bde.num_devices = num_devices;
    bde.get_dev = get_dev;
    bde.get_dev_type = get_dev_type;
    bde.pci_conf_read = pci_conf_read;
    bde.pci_conf_write = pci_conf_write;
    bde.pci_bus_features = pci_bus_features;
    bde.read = read;
    bde.write = write;
    bde.salloc = salloc;
    bde.sfree = sfree;
    bde.sflush = profile.bus_sflush ? sflush : nullptr;
    bde.sinval = profile.bus_sinval ? sinval : nullptr;
    bde.interrupt_connect = interrupt_connect;
    bde.interrupt_disconnect = interrupt_disconnect;
    bde.l2p = profile.bus_l2p ? l2p : nullptr;
    bde.p2l = profile.bus_p2l ? p2l : nullptr;
    return bde;
}

} // namespace

bool vexosim::bus_answers(std::uintptr_t address)
{
    const std::vector<BusDevice>& devices = card().profile.devices;
    for (std::size_t dev = 0; dev < devices.size(); ++dev)
        if (base_address(dev, devices[dev]) == address)
            return address != 0 && devices[dev].answers;
    return false;
}

extern "C" int linux_bde_create(linux_bde_bus_t* description, ibde_t** bde)
{
    return gated("linux_bde_create", CallClass::chip, args(description, Out{bde}), [&] {
        if (card().profile.bus_create_result != 0)
            return card().profile.bus_create_result;
        if (description == nullptr || bde == nullptr)
            return -1;
        bus().byte_order = *description;
        bus().operations = operations(card().profile);
        list_devices(card().profile.devices);
        *bde = &bus().operations;
        return 0;
    });
}
