// TAPs and packet sockets against the kernel's own network.

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <numeric>

#include "sim/wire/fd.h"
#include "sim/wire/interface.h"
#include "sim/wire/io_ring.h"
#include "tests/hosts/network.h"
#include "tests/sim/wire_frames.h"

using namespace vexosim;

namespace {

std::unique_ptr<Wire> opened(const std::string& spec)
{
    OpenedWire wire = open_wire(spec);
    EXPECT_EQ(wire.error, "");
    return std::move(wire.wire);
}

// Whether it is one of the test's frames, tagged or not; the kernel sends some of its own.
bool is_ours(FrameView bytes)
{
    for (const std::size_t at : {12U, 16U, 20U}) {
        if (bytes.size() > at + 1 && bytes[at] == 0x88 && bytes[at + 1] == 0xb5) {
            return true;
        }
    }
    return false;
}

// The next frames of the test, as many as wanted, or those that came within ten seconds.
std::vector<Bytes> collect(Wire& wire, std::size_t wanted)
{
    std::vector<Bytes> frames;
    FrameBatch batch;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (frames.size() < wanted && std::chrono::steady_clock::now() < end) {
        readable(wire, 100);
        batch.clear();
        wire.receive(batch);
        for (const FrameView bytes : batch.frames()) {
            if (is_ours(bytes)) {
                frames.emplace_back(bytes.begin(), bytes.end());
            }
        }
    }
    return frames;
}

// All frames of the test that are waiting now.
std::size_t read_all(Wire& wire)
{
    std::size_t frames = 0;
    for (FrameBatch batch; readable(wire); batch.clear()) {
        wire.receive(batch);
        for (const FrameView bytes : batch.frames()) {
            frames += is_ours(bytes) ? 1 : 0;
        }
    }
    return frames;
}

void send_one(Wire& wire, const Bytes& bytes)
{
    const std::vector<FrameView> frames{bytes};
    wire.send(frames);
}

bool has_carrier(const std::string& name)
{
    const Fd socket(::socket(AF_INET, SOCK_DGRAM, 0));
    return interface_has_link(socket.get(), name);
}

std::string marks_of(const std::vector<int>& numbers)
{
    std::string text;
    for (const int number : numbers) {
        text += (text.empty() ? "" : " ") + std::to_string(number);
    }
    return text;
}

// From now on this process has no such system call.
bool forbid(long call)
{
    std::array<sock_filter, 4> program{{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(call), 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    }};
    const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

// A TAP and its far end, and a pair whose ends are both wires.
struct Ends {
    std::unique_ptr<Wire> near, far;
};

Ends tap()
{
    auto near = opened("tap:t0");
    return {std::move(near), opened("veth:t0")};
}

Ends pair()
{
    EXPECT_EQ(run("ip link add name p0 type veth peer name p1").status, 0);
    auto near = opened("veth:p0");
    auto far = opened("veth:p1");
    EXPECT_TRUE(near->carrier());
    EXPECT_TRUE(far->carrier());
    return {std::move(near), std::move(far)};
}

} // namespace

class WireLive : public HostTest {};

TEST_F(WireLive, CarriesFramesInOrderBothWays)
{
    for (auto make : {tap, pair}) {
        const Ends ends = make();
        send(*ends.near, {1, 2, 3});
        EXPECT_EQ(marks(collect(*ends.far, 3)), "1 2 3");
        send(*ends.far, {4, 5, 6});
        EXPECT_EQ(marks(collect(*ends.near, 3)), "4 5 6");
    }
}

TEST_F(WireLive, CarriesLongBurstsInOrderBothWays)
{
    std::vector<int> all(200);
    std::iota(all.begin(), all.end(), 0);
    for (auto make : {tap, pair}) {
        const Ends ends = make();
        send(*ends.near, all);
        EXPECT_EQ(marks(collect(*ends.far, all.size())), marks_of(all));
        send(*ends.far, all);
        EXPECT_EQ(marks(collect(*ends.near, all.size())), marks_of(all));
    }
}

// As in a container that forbids it, or on an older kernel.
TEST_F(WireLive, ATapCarriesBurstsWithoutIoUringToo)
{
    ASSERT_TRUE(forbid(SYS_io_uring_setup));
    ASSERT_EQ(IoRing::of_this_thread(), nullptr);
    const Ends ends = tap();
    send(*ends.near, {1, 2, 3});
    EXPECT_EQ(marks(collect(*ends.far, 3)), "1 2 3");
    send(*ends.far, {4, 5, 6});
    EXPECT_EQ(marks(collect(*ends.near, 3)), "4 5 6");
}

TEST_F(WireLive, KeepsFramesAndTheirTagsByteForByte)
{
    const std::vector<Bytes> kinds{
        frame(1, 60),
        frame(2, 1514),
        with_tag(frame(3), 0x8100, 0x700a),
        with_tag(frame(4), 0x8100, 0),
        with_tag(frame(5), 0x88a8, 20),
        with_tag(with_tag(frame(6), 0x8100, 10), 0x88a8, 20),
        with_tag(frame(7, 1514), 0x8100, 0xefff),
    };
    for (auto make : {tap, pair}) {
        const Ends ends = make();
        for (const Bytes& bytes : kinds) {
            send_one(*ends.near, bytes);
            EXPECT_EQ(collect(*ends.far, 1), std::vector<Bytes>(1, bytes));
            send_one(*ends.far, bytes);
            EXPECT_EQ(collect(*ends.near, 1), std::vector<Bytes>(1, bytes));
        }
    }
}

TEST_F(WireLive, APacketSocketDoesNotSeeWhatItSends)
{
    const Ends ends = pair();
    send(*ends.near, {1, 2});
    EXPECT_EQ(collect(*ends.far, 2).size(), 2U);
    EXPECT_EQ(read_all(*ends.near), 0U);
}

TEST_F(WireLive, APacketSocketTakesFramesForOtherStations)
{
    Ends ends = pair();
    Bytes bytes = frame(9);
    bytes[5] = 0x77;
    send_one(*ends.far, bytes);
    EXPECT_EQ(collect(*ends.near, 1), std::vector<Bytes>(1, bytes));
    EXPECT_NE(run("ip -d link show p0").output.find("promiscuity 1"), std::string::npos);
    ends.near.reset();
    EXPECT_NE(run("ip -d link show p0").output.find("promiscuity 0"), std::string::npos);
}

TEST_F(WireLive, ATapsHostSeesThePortsLink)
{
    const auto wire = opened("tap:t0");
    wire->set_carrier(false);
    EXPECT_FALSE(has_carrier("t0"));
    wire->set_carrier(true);
    EXPECT_TRUE(has_carrier("t0"));
}

TEST_F(WireLive, APortSeesItsTapsHostGoDownAndUp)
{
    const auto wire = opened("tap:t0");
    EXPECT_TRUE(wire->carrier());
    run("ip link set t0 down");
    EXPECT_FALSE(wire->carrier());
    run("ip link set t0 up");
    EXPECT_TRUE(wire->carrier());
}

TEST_F(WireLive, APortSeesItsTapInAnotherNamespace)
{
    const auto wire = opened("tap:t0");
    Host host;
    host.take("t0", "");
    EXPECT_TRUE(wire->carrier());
    host.run("ip link set t0 down");
    EXPECT_FALSE(wire->carrier());
}

TEST_F(WireLive, APortSeesItsPairsFarEndGoDownAndUp)
{
    const Ends ends = pair();
    EXPECT_TRUE(ends.near->carrier());
    run("ip link set p1 down");
    EXPECT_FALSE(ends.near->carrier());
    run("ip link set p1 up");
    EXPECT_TRUE(ends.near->carrier());
}

TEST_F(WireLive, CountsFramesForAHostThatIsDown)
{
    const auto wire = opened("tap:t0");
    run("ip link set t0 down");
    send(*wire, {1, 2, 3});
    EXPECT_EQ(wire->counters().send_drops, 3U);
    EXPECT_EQ(wire->counters().sent, 0U);
}

TEST_F(WireLive, CountsFramesForAPairThatIsDown)
{
    const Ends ends = pair();
    run("ip link set p0 down");
    send(*ends.near, {1, 2, 3});
    EXPECT_EQ(ends.near->counters().send_drops, 3U);
    run("ip link set p0 up");
    EXPECT_TRUE(ends.near->carrier());
    EXPECT_TRUE(ends.far->carrier());
    send(*ends.near, {4});
    EXPECT_EQ(marks(collect(*ends.far, 1)), "4");
    send(*ends.far, {5});
    EXPECT_EQ(marks(collect(*ends.near, 1)), "5");
}

TEST_F(WireLive, EveryFrameThatWasSentIsReadOrCountedAsOverflow)
{
    constexpr std::size_t kFlood = 65536;
    for (auto make : {tap, pair}) {
        const Ends ends = make();
        run("ip link set t0 txqueuelen 100");
        for (std::size_t i = 0; i < kFlood; i += 8) {
            send(*ends.far, {1, 2, 3, 4, 5, 6, 7, 8});
        }
        const std::size_t read = read_all(*ends.near);
        const auto refused = ends.far->counters().send_drops;
        EXPECT_GT(ends.near->counters().receive_overflow + refused, 0U);
        EXPECT_EQ(read + ends.near->counters().receive_overflow + refused, kFlood);
    }
}

TEST_F(WireLive, CountsATapsOverflowInAnotherNamespace)
{
    const auto wire = opened("tap:t0");
    run("ip link set t0 txqueuelen 50");
    Host host;
    host.take("t0", "192.0.2.1/24");
    host.run("ip neigh add 192.0.2.2 lladdr 02:00:00:00:00:02 dev t0 nud permanent");
    const Ran flood = host.run("ping -q -f -l 500 -c 500 -w 1 192.0.2.2");
    std::size_t read = 0;
    FrameBatch batch;
    for (; readable(*wire); batch.clear()) {
        wire->receive(batch);
        read += batch.size();
    }
    EXPECT_GT(read, 0U);
    EXPECT_GT(wire->counters().receive_overflow, 0U) << flood.output << read;
    EXPECT_EQ(wire->counters().received, read);
}

TEST_F(WireLive, CountsFramesThatAreTooLong)
{
    for (auto make : {tap, pair}) {
        const Ends ends = make();
        run("ip link set t0 mtu 20000; ip link set p0 mtu 20000; ip link set p1 mtu 20000");
        send_one(*ends.far, frame(1, FrameBatch::kMaxFrameBytes + 1));
        send_one(*ends.far, frame(2, FrameBatch::kMaxFrameBytes));
        EXPECT_EQ(marks(collect(*ends.near, 1)), "2");
        EXPECT_EQ(ends.near->counters().receive_too_long, 1U);
    }
}

TEST_F(WireLive, AnInterfaceThatIsDeletedEndsItsWire)
{
    for (const std::string name : {"t0", "p0"}) {
        const auto wire = name == "t0" ? opened("tap:t0") : pair().near;
        FrameBatch batch;
        EXPECT_TRUE(wire->receive(batch));
        EXPECT_EQ(run("ip link del " + name).status, 0);
        EXPECT_FALSE(wire->receive(batch)) << name;
        EXPECT_FALSE(wire->carrier());
        EXPECT_TRUE(batch.empty());
        send(*wire, {1});
        EXPECT_EQ(wire->counters().send_drops, 1U);
    }
}

// Such a descriptor polls readable for ever; watching it on would occupy the thread.
TEST_F(WireLive, TheThreadForgetsAnInterfaceThatIsDeleted)
{
    ASSERT_EQ(attach(1, "tap:t0"), "");
    start_wires();
    EXPECT_EQ(run("ip link del t0").status, 0);
    const auto used = [] {
        rusage usage{};
        ::getrusage(RUSAGE_SELF, &usage);
        return usage.ru_utime.tv_sec * 1000 + usage.ru_utime.tv_usec / 1000 +
               usage.ru_stime.tv_sec * 1000 + usage.ru_stime.tv_usec / 1000;
    };
    const auto before = used();
    run("sleep 0.5");
    EXPECT_LT(used() - before, 100);
    stop_wires();
    EXPECT_EQ(detach(1), "");
}

TEST_F(WireLive, ATapIsGoneWithItsWire)
{
    auto wire = opened("tap:t0");
    EXPECT_EQ(run("ip link show t0").status, 0);
    wire.reset();
    EXPECT_NE(run("ip link show t0").status, 0);
}

TEST_F(WireLive, AnExistingTapIsUsedAndKept)
{
    EXPECT_EQ(run("ip tuntap add t0 mode tap").status, 0);
    EXPECT_EQ(attach(1, "tap:t0"), "");
    EXPECT_TRUE(wire_carrier(1));
    EXPECT_EQ(detach(1), "");
    EXPECT_EQ(run("ip link show t0").status, 0);
}

TEST_F(WireLive, WhatCannotBeAttachedSaysWhyAndLeavesNothing)
{
    run("ip link add name p0 type veth peer name p1");
    EXPECT_EQ(attach(1, "veth:none"), "port 1: veth:none: no such interface; create it with: ip "
                                      "link add none type veth peer name PEER");
    EXPECT_EQ(attach(1, "veth:lo"), "port 1: veth:lo: not an Ethernet interface");
    EXPECT_EQ(attach(1, "tap:p0"), "port 1: tap:p0: exists and is not a single-queue TAP; name "
                                   "another interface");
    EXPECT_EQ(attach(1, "tap:a234567890123456"), "port 1: tap:a234567890123456: the interface "
                                                 "name is too long; at most 15 characters are "
                                                 "allowed");
    for (const std::string name : {"a/b", "a b", "t%d", "a:b", ".", ".."}) {
        EXPECT_EQ(open_wire("tap:" + name).error, "tap:" + name + ": not an interface name");
        EXPECT_EQ(open_wire("veth:" + name).error, "veth:" + name + ": not an interface name");
    }
    EXPECT_EQ(open_wire("tap:").error, "tap:: an interface name is missing");
    EXPECT_TRUE(attachments().empty());
    EXPECT_EQ(run("ip -o link | wc -l").output, "3\n");
}

TEST_F(WireLive, AnInterfaceBelongsToOnePort)
{
    run("ip link add name p0 type veth peer name p1");
    EXPECT_EQ(attach(1, "tap:t0"), "");
    EXPECT_EQ(attach(2, "tap:t0"), "port 2: tap:t0: in use, by another port or another program");
    EXPECT_EQ(attach(3, "veth:p0"), "");
    EXPECT_EQ(attach(4, "veth:p0"), "port 4: veth:p0 is already attached to port 3");
    EXPECT_EQ(attachments().size(), 2U);
}

TEST_F(WireLive, WithoutPermissionNothingIsOpened)
{
    run("ip link add name p0 type veth peer name p1");
    ASSERT_EQ(::seteuid(65534), 0);
    const std::string for_tap = open_wire("tap:t0").error, for_veth = open_wire("veth:p0").error;
    ASSERT_EQ(::seteuid(0), 0);
    EXPECT_EQ(for_tap.substr(0, 22), "tap:t0: no permission ");
    EXPECT_EQ(for_veth, "veth:p0: no permission for packet sockets; run as root");
    EXPECT_EQ(run("ip -o link | wc -l").output, "3\n");
}

TEST_F(WireLive, TheThreadRelaysBetweenTwoHosts)
{
    for (const std::string name : {"t0", "t1"}) {
        ASSERT_EQ(attach(name == "t0" ? 0 : 1, "tap:" + name), "");
    }
    on_wire_receive(
        [](int port, std::span<const FrameView> frames) { send_to_wire(1 - port, frames); });
    start_wires();
    Host one, two;
    one.take("t0", "192.0.2.1/24");
    two.take("t1", "192.0.2.2/24");
    const Ran ping = one.run("ping -q -c 3 -i 0.05 -W 5 192.0.2.2");
    stop_wires();
    EXPECT_EQ(ping.status, 0) << ping.output;
}
