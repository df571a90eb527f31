/// A card, a shell that manages it, and hosts around it.
#pragma once

#include <chrono>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <thread>

#include "tests/hosts/network.h"
#include "tests/kit/comes_true.h"
#include "tools/vexosh/shell.h"

/// The MAC address of the interface that is plugged into a port.
std::string mac_of(int port);

/// A live card with the shell as its manager. Ports get hosts; commands and tables are the shell's.
class Lab : public HostTest {
protected:
    void SetUp() override;
    void TearDown() override;
    /// Plugs a test's hosts in; nobody unless overridden.
    virtual void build() {}

    /// What a line of commands prints. One that fails fails the test.
    std::string sh(const std::string& line);

    /// A host whose interface `hPORT` is the far end of a port.
    Host& host(int port, const std::string& address = {});
    /// Plugs `hPORT` of a host into a port.
    void plug(Host& host, int port, const std::string& address = {});
    /// Waits until the manager has been told that ports have a link.
    void wait_for_links(const std::string& ports);
    /// Waits until they also forward.
    void wait_for_ports(const std::string& ports);

    /// A counter of a port, by its name in `show counters PORT all`.
    std::uint64_t counter(int port, const std::string& name);
    std::uint64_t out_octets(int port) { return counter(port, "snmpIfHCOutOctets"); }

    vexosh::Session& session() { return *session_; }

private:
    void hear(const vexosh::Event& event);

    std::ostringstream out_;
    vexosh::StreamConsole console_{out_};
    std::mutex mutex_;
    std::set<int> linked_; // ports, as the driver has told
    std::optional<vexosh::Session> session_;
    std::optional<vexosh::Shell> shell_;
    std::list<Host> hosts_;
};

/// Hosts 192.0.2.1 and 192.0.2.2 in ports 1 and 2.
class TwoHosts : public Lab {
protected:
    void build() override
    {
        a = &host(1, "192.0.2.1/24");
        b = &host(2, "192.0.2.2/24");
    }

    Host* a = nullptr;
    Host* b = nullptr;
};

/// Whether a host gets an answer within twenty seconds, asking five times a second.
bool reaches(const Host& host, const std::string& address);
/// Whether the very first question of a host is answered.
bool reaches_at_once(const Host& host, const std::string& address);
/// No answer to any of three questions.
bool is_cut_off(const Host& host, const std::string& address);

/// Open vSwitch in a host: a switch, a bond or tagged interfaces that are not ours.
class OpenSwitch {
public:
    explicit OpenSwitch(Host& host);
    OpenSwitch(const OpenSwitch&) = delete;
    OpenSwitch& operator=(const OpenSwitch&) = delete;
    ~OpenSwitch();

    /// Runs ovs-vsctl; a failure fails the test.
    void set(const std::string& arguments);
    /// Runs a command of the running switch.
    std::string ask(const std::string& arguments);

private:
    std::string environment() const;

    Host& host_;
    std::string directory_;
};
