#include "sim/chip/trunk_table.h"

#include <bcmx/trunk.h>

#include <algorithm>
#include <utility>

namespace vexosim {

namespace {

bool are_front_ports(const std::vector<int>& ports)
{
    return std::all_of(ports.begin(), ports.end(),
                       [](int port) { return is_chip_port(port) && port != kCpuPort; });
}

bool is_criterion(int criterion)
{
    return criterion >= BCM_TRUNK_PSC_SRCMAC && criterion <= BCM_TRUNK_PSC_SRCDSTIP;
}

void drop_unless_member(int& port, const std::vector<int>& members)
{
    if (std::find(members.begin(), members.end(), port) == members.end())
        port = Trunk::kNoPort;
}

} // namespace

TrunkTable::TrunkTable(std::size_t capacity) : trunks_(std::min(capacity, kCapacity))
{
    trunk_of_port_.fill(-1);
    for (int port = 0; port < kPortCount; ++port)
        companions_[static_cast<std::size_t>(port)] = {port};
}

int TrunkTable::create(int* id)
{
    if (id == nullptr)
        return BCM_E_PARAM;
    const auto free = std::find_if(trunks_.begin(), trunks_.end(),
                                   [](const Trunk& trunk) { return !trunk.exists; });
    if (free == trunks_.end())
        return BCM_E_FULL;
    *id = static_cast<int>(free - trunks_.begin());
    free->exists = true;
    return BCM_E_NONE;
}

int TrunkTable::create_id(int id)
{
    const int rc = check(id);
    if (rc != BCM_E_NOT_FOUND)
        return rc == BCM_E_NONE ? BCM_E_EXISTS : rc;
    trunks_[static_cast<std::size_t>(id)].exists = true;
    return BCM_E_NONE;
}

int TrunkTable::destroy(int id)
{
    if (const int rc = check(id); rc != BCM_E_NONE)
        return rc;
    leave(at(id));
    trunks_[static_cast<std::size_t>(id)] = Trunk{};
    return BCM_E_NONE;
}

int TrunkTable::set(int id, Trunk trunk)
{
    if (const int rc = check(id); rc != BCM_E_NONE)
        return rc;
    if (trunk.members.empty() || trunk.members.size() > BCM_TRUNK_MAX_PORTCNT ||
        !is_criterion(trunk.criterion))
        return BCM_E_PARAM;
    if (!are_front_ports(trunk.members))
        return BCM_E_PORT;
    if (taken_elsewhere(id, trunk.members))
        return BCM_E_RESOURCE;
    for (int* port : {&trunk.dlf_port, &trunk.mc_port, &trunk.ipmc_port})
        drop_unless_member(*port, trunk.members);
    trunk.exists = true;
    leave(at(id));
    join(id, trunk);
    trunks_[static_cast<std::size_t>(id)] = std::move(trunk);
    return BCM_E_NONE;
}

int TrunkTable::set_criterion(int id, int criterion)
{
    if (const int rc = check(id); rc != BCM_E_NONE)
        return rc;
    if (!is_criterion(criterion))
        return BCM_E_PARAM;
    trunks_[static_cast<std::size_t>(id)].criterion = criterion;
    return BCM_E_NONE;
}

int TrunkTable::check(int id) const
{
    if (id < 0 || id >= static_cast<int>(trunks_.size()))
        return BCM_E_PARAM;
    return at(id).exists ? BCM_E_NONE : BCM_E_NOT_FOUND;
}

bool TrunkTable::taken_elsewhere(int id, const std::vector<int>& ports) const
{
    return std::any_of(ports.begin(), ports.end(),
                       [&](int port) { return trunk_of(port) != -1 && trunk_of(port) != id; });
}

void TrunkTable::join(int id, const Trunk& trunk)
{
    const PortSet ports = trunk.ports();
    for (int port : ports) {
        trunk_of_port_[static_cast<std::size_t>(port)] = static_cast<std::int16_t>(id);
        companions_[static_cast<std::size_t>(port)] = ports;
    }
    for (std::size_t i = 0; i < kTrunkFloods; ++i)
        not_designated_[i] |= ports - PortSet{trunk.designated(static_cast<TrunkFlood>(i))};
}

void TrunkTable::leave(const Trunk& trunk)
{
    const PortSet ports = trunk.ports();
    for (int port : ports) {
        trunk_of_port_[static_cast<std::size_t>(port)] = -1;
        companions_[static_cast<std::size_t>(port)] = {port};
    }
    for (PortSet& set : not_designated_)
        set -= ports;
}

PortSet Trunk::ports() const
{
    PortSet set;
    for (int port : members)
        set.set(port);
    return set;
}

int Trunk::designated(TrunkFlood kind) const
{
    const std::array<int, kTrunkFloods> chosen = {dlf_port, mc_port, ipmc_port};
    const int port = chosen[static_cast<std::size_t>(kind)];
    return port == kNoPort ? members.front() : port;
}

void Trunk::digest(Digest& d) const
{
    d.add(exists);
    d.add(criterion);
    d.add(members.size());
    for (int port : members)
        d.add(port);
    for (int port : {dlf_port, mc_port, ipmc_port})
        d.add(port);
}

void TrunkTable::digest(Digest& d) const
{
    for (const Trunk& trunk : trunks_)
        d.add(trunk);
}

} // namespace vexosim
