#include "tests/hosts/lab.h"

#include <cstdlib>
#include <filesystem>

#include "vexosim/state.h"
#include "vexosim/wire.h"

std::string mac_of(int port)
{
    return vexosh::text(vexosh::Mac{2, 0, 0, 0, 0, static_cast<unsigned char>(port)});
}

void Lab::SetUp()
{
    HostTest::SetUp();
    if (IsSkipped() || HasFailure()) {
        return;
    }
    session_.emplace();
    session_->follow_all(session_->follow([this](const auto& event) { hear(event); }), true);
    shell_.emplace(*session_, console_);
    vexosim::start_wires();
    build();
}

void Lab::TearDown()
{
    vexosim::stop_wires();
    vexosim::detach_all();
}

std::string Lab::sh(const std::string& line)
{
    out_.str("");
    try {
        shell_->run_line(line);
    } catch (const vexosh::BadInput& problem) {
        ADD_FAILURE() << line << ": " << problem.what();
    }
    return out_.str();
}

Host& Lab::host(int port, const std::string& address)
{
    Host& added = hosts_.emplace_back();
    plug(added, port, address);
    return added;
}

void Lab::plug(Host& host, int port, const std::string& address)
{
    const std::string number = std::to_string(port);
    sh("attach " + number + "=tap:h" + number);
    run("ip link set h" + number + " address " + mac_of(port));
    host.take("h" + number, address);
}

void Lab::hear(const vexosh::Event& event)
{
    if (event.data["event"] == "link") {
        const std::lock_guard lock(mutex_);
        const int port = event.data["port"];
        event.data["up"] ? void(linked_.insert(port)) : void(linked_.erase(port));
    }
}

void Lab::wait_for_links(const std::string& ports)
{
    for (const int port : vexosh::parse_user_ports(ports)) {
        EXPECT_TRUE(comes_true([&] {
            const std::lock_guard lock(mutex_);
            return linked_.contains(port);
        })) << "port "
            << port;
    }
}

void Lab::wait_for_ports(const std::string& ports)
{
    wait_for_links(ports); // the driver has blocked them
    for (const Mp& port : vexosh::parse_ports(ports)) {
        EXPECT_TRUE(comes_true([&] {
            stp_state_t state = STP_BLOCKING;
            return session_->driver()->get_port_stp_state(port, state) && state == STP_FORWARDING;
        })) << "port "
            << vexosh::text(port);
    }
}

std::uint64_t Lab::counter(int port, const std::string& name)
{
    for (const auto& row : vexosim::port_counters_table(port, true).rows) {
        if (row[0] == name) {
            return std::stoull(row[1]);
        }
    }
    ADD_FAILURE() << "no counter " << name;
    return 0;
}

bool reaches(const Host& host, const std::string& address)
{
    // An address that could not be resolved a moment ago ends a ping at once.
    return comes_true([&] { return host.run("ping -q -c 1 -i 0.2 -w 20 " + address).status == 0; });
}

bool reaches_at_once(const Host& host, const std::string& address)
{
    return host.run("ping -q -c 1 -W 1 " + address).status == 0;
}

bool is_cut_off(const Host& host, const std::string& address)
{
    const Ran ping = host.run("ping -q -c 3 -i 0.1 -W 0.3 " + address);
    return ping.output.find(" 0 received") != std::string::npos;
}

OpenSwitch::OpenSwitch(Host& host) : host_(host)
{
    std::string pattern = std::filesystem::temp_directory_path() / "vexo_switch_XXXXXX";
    directory_ = ::mkdtemp(pattern.data()) == nullptr ? "" : pattern;
    const std::string database = directory_ + "/db";
    const Ran made =
        run("ovsdb-tool create " + database + " /usr/share/openvswitch/vswitch.ovsschema");
    EXPECT_EQ(made.status, 0) << made.output << "\nneeds the package openvswitch-switch";
    host_.start(environment() + " ovsdb-server --remote=punix:" + directory_ +
                "/db.sock --no-chdir --unixctl=" + directory_ + "/server.ctl " + database);
    host_.start(environment() + " ovs-vswitchd --no-chdir --unixctl=" + directory_ +
                "/switch.ctl unix:" + directory_ + "/db.sock");
    EXPECT_TRUE(comes_true([&] { return std::filesystem::exists(directory_ + "/db.sock"); }));
    set("--no-wait init");
    set("add-br br0 -- set bridge br0 datapath_type=netdev");
}

OpenSwitch::~OpenSwitch()
{
    host_.stop_all();
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

std::string OpenSwitch::environment() const
{
    std::string result;
    for (const char* what : {"OVS_RUNDIR", "OVS_LOGDIR", "OVS_DBDIR", "OVS_SYSCONFDIR"}) {
        result += std::string(what) + "=" + directory_ + " ";
    }
    return result;
}

void OpenSwitch::set(const std::string& arguments)
{
    const Ran ran = host_.run("env " + environment() + "ovs-vsctl --timeout=20 " + arguments);
    EXPECT_EQ(ran.status, 0) << arguments << ": " << ran.output;
}

std::string OpenSwitch::ask(const std::string& arguments)
{
    return host_.run("ovs-appctl --timeout=20 -t " + directory_ + "/switch.ctl " + arguments)
        .output;
}
