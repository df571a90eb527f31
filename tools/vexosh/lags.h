#pragma once

#include <map>
#include <set>

#include "core/sdk_base.h"

namespace vexosh {

/// LAGs as a manager keeps them: the driver's trunk operations together with its bookkeeping of
/// configured members and names, and the trunk's active members in step with the links. Every
/// function is called with the driver held; what fails throws BadInput.
class Lags {
public:
    static constexpr std::size_t kMostMembers = 8;

    /// Creates a LAG and its name, the Usp 1/2/NUMBER.
    /// @param number 0 is the id and one.
    /// @return its id.
    unsigned create(VexoSdkBase& sdk, unsigned number);
    void destroy(VexoSdkBase& sdk, unsigned id);
    /// Configures ports into a LAG; those with a link become active.
    void add_ports(VexoSdkBase& sdk, unsigned id, const std::list<Mp>& ports);
    /// Takes ports out; the driver leaves those that were active blocking.
    void remove_ports(VexoSdkBase& sdk, unsigned id, std::list<Mp> ports);
    void set_criterion(VexoSdkBase& sdk, unsigned id, lag_psc_t criterion);
    /// The bookkeeping alone, as recorded calls need it: who is configured, and the Usp's number.
    void book(unsigned id, unsigned number, std::list<Mp> ports);
    void unbook(unsigned id);
    /// What is in the bookkeeping, as `lag book` and `lag unbook` take it.
    static std::string booking(unsigned id);
    /// Reads from the chip which members are active.
    void read_active();
    /// A configured member joins the active ones when its link comes up and leaves when it goes.
    /// @return false when the driver refused.
    bool link_changed(VexoSdkBase& sdk, const Mp& port, bool up);

private:
    bool activate(VexoSdkBase& sdk, unsigned id, const std::list<Mp>& members);
    void keep_criterion(VexoSdkBase& sdk, unsigned id);

    std::set<Mp> active_;
    std::map<unsigned, lag_psc_t> criteria_; ///< those that were set
};

} // namespace vexosh
