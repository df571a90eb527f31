#pragma once

#include <bcmx/link.h>

#include <array>
#include <optional>
#include <vector>

#include "sim/card/task.h"
#include "sim/chip/port_table.h"

namespace vexosim {

/// Link scan: looks at the wires of the scanned ports every so often, tells the chip what became of
/// the links, and the handlers which came up or went down. Everything but run() is called under the
/// chip's lock.
class LinkScan : public Task {
public:
    static constexpr int kDefaultPeriodUs = 250000;

    /// PARAM: unknown mode.
    int set_mode(int chip_port, int mode);
    /// 0 stops; negative keeps the period and starts.
    void enable(int period_us);
    /// Reports to handlers from now on, also of links that are up already.
    void add_unit() { reporting_ = true; }
    /// EXISTS; PARAM.
    int add_handler(bcmx_linkscan_handler_t handler);
    bool running() const { return running_; }
    /// No port is scanned, no link is up; handlers stay.
    void reset();

    std::uint64_t due_us() override;
    void run() override;

private:
    /// What a look at the wires shows, by chip-local port.
    struct FarEnds {
        PortSet carrier;
        std::array<std::optional<PortAbility>, kPortCount> partners; ///< empty: the port's twin
    };
    struct Change {
        bcmx_lport_t lport;
        bcm_port_info_t info;
    };

    static FarEnds look();
    /// @return the ports whose partners have nothing in common with them.
    PortSet follow(const FarEnds& far_ends);
    std::vector<Change> take_changes();

    PortSet scanned_, reported_up_, wires_on_ = PortSet::front();
    std::vector<bcmx_linkscan_handler_t> handlers_;
    std::uint64_t last_us_ = 0;
    int period_us_ = kDefaultPeriodUs;
    bool running_ = false;
    bool reporting_ = false;
};

} // namespace vexosim
