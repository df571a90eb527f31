#!/usr/bin/env bash
# capture_demo_traffic.sh [DIRECTORY]: captures what real Linux hosts send, one file per host, into
# demo/ or the directory named. h1 and h2 are in VLAN 10, h3 and h4 in VLAN 20; h5 has both, tagged.
# They live in namespaces of this script's own, joined by Open vSwitch, and vanish with it.
# Needs root and tcpdump, lldpd, socat, ethtool, iproute2, iputils-ping, openvswitch-switch.
set -euo pipefail
out=$(realpath -m "${1:-$(dirname "$0")/../demo}")

if [ -z "${VEXO_CAPTURE_INSIDE:-}" ]; then
    [ "$(id -u)" -eq 0 ] || { echo "capture_demo_traffic.sh: needs root" >&2; exit 1; }
    for tool in tcpdump lldpd socat ethtool ip ping ovs-vsctl; do
        command -v "$tool" >/dev/null || { echo "capture_demo_traffic.sh: needs $tool" >&2; exit 1; }
    done
    mkdir -p "$out"
    VEXO_CAPTURE_INSIDE=1 exec unshare --mount --net --uts --pid --fork --kill-child --mount-proc \
        "$0" "$out"
fi

mkdir -p /run/netns
mount -t tmpfs none /run
mkdir -p /run/netns /run/lldpd
work=$(mktemp -d /run/capture.XXXX)
chmod 755 "$work"
printf '127.0.0.1 localhost\n127.0.1.1 h1\n127.0.1.4 h4\n' >"$work/hosts"
mount --bind "$work/hosts" /etc/hosts # lldpd announces its host's name only if that resolves

on() { # on HOST COMMAND...
    local host=$1
    shift
    ip netns exec "$host" "$@"
}

plug() { # plug NAME INTERFACE MAC BRIDGE PORT VLAN: into an untagged port of a bridge
    ip link add name "$5" type veth peer name "$2" netns "$1"
    on "$1" ip link set "$2" address "$3"
    # A capture must show the checksums that a network card would have put in.
    on "$1" ethtool -K "$2" tx off tso off gso off gro off >/dev/null
    ip link set "$5" up
    on "$1" ip link set "$2" up
    ovs-vsctl add-port "$4" "$5" tag="$6"
}

new_host() {
    ip netns add "$1"
    on "$1" sysctl -qw net.ipv6.conf.all.disable_ipv6=1 net.ipv6.conf.default.disable_ipv6=1
}

start_switches() { # Open vSwitch's userspace datapath, with all its files below $work
    export OVS_RUNDIR=$work OVS_LOGDIR=$work OVS_DBDIR=$work OVS_SYSCONFDIR=$work
    ovsdb-tool create "$work/conf.db" /usr/share/openvswitch/vswitch.ovsschema
    ovsdb-server --remote="punix:$work/db.sock" --pidfile --detach --no-chdir --log-file \
        "$work/conf.db" 2>/dev/null
    ovs-vsctl --no-wait init
    ovs-vswitchd --pidfile --detach --no-chdir --log-file 2>/dev/null
    for bridge in switch uplink; do
        ovs-vsctl add-br $bridge -- set bridge $bridge datapath_type=netdev
    done
}

capture() { # capture NAME INTERFACE COMMAND_PREFIX...: what it sends, until the script ends
    "${@:3}" tcpdump -q -n -i "$2" -Q out -U --immediate-mode -s 0 -Z root -w "$work/$1.pcap" \
        2>"$work/$1.log" &
    captures+=($!)
    until grep -q 'listening on' "$work/$1.log"; do sleep 0.05; done
}

ip link set lo up
sysctl -qw net.ipv6.conf.all.disable_ipv6=1 net.ipv6.conf.default.disable_ipv6=1
start_switches
captures=()
for number in 1 2 3 4; do
    new_host "h$number"
    plug "h$number" eth0 "02:00:00:00:00:0$number" switch "s$number" $((number < 3 ? 10 : 20))
    capture "h$number" eth0 ip netns exec "h$number"
done
# h5 has an interface in each VLAN; its own bridge tags what leaves through the uplink.
new_host h5
plug h5 v10 02:00:00:00:05:0a uplink s10 10
plug h5 v20 02:00:00:00:05:14 uplink s20 20
ip link add name u5 type veth peer name s5
ip link set u5 up
ip link set s5 up
ovs-vsctl add-port uplink u5 -- add-port switch s5
capture h5 u5
on h1 ip addr add 192.0.2.1/24 dev eth0
on h2 ip addr add 192.0.2.2/24 dev eth0
on h3 ip addr add 198.51.100.3/24 dev eth0
on h4 ip addr add 198.51.100.4/24 dev eth0
on h5 ip addr add 192.0.2.5/24 dev v10
on h5 ip addr add 198.51.100.5/24 dev v20
sleep 1

# Each host tells its neighbours who it is.
for name in h1 h4; do
    on "$name" unshare --uts sh -c "hostname $name; exec lldpd -d -I eth0 -u $work/$name.lldp \
        -S 'a Linux host' -P Linux" >"$work/$name.lldpd" 2>&1 &
done
sleep 3 # its first announcements

ping_from() { on "$1" ping -n -q -c "$3" -i 0.3 -W 1 "$2" >/dev/null; }

echo "ping within VLAN 10, within VLAN 20, and from the host with both"
ping_from h1 192.0.2.2 3
ping_from h3 198.51.100.4 3
ping_from h5 192.0.2.1 2
ping_from h5 198.51.100.3 2

echo "a host with an address of the other VLAN: nobody answers"
on h4 ip addr add 192.0.2.4/24 dev eth0
ping_from h4 192.0.2.1 1 && { echo "VLAN 20 reached VLAN 10" >&2; exit 1; }
on h4 ip addr del 192.0.2.4/24 dev eth0

echo "TCP"
on h1 socat -u TCP4-LISTEN:7777,reuseaddr OPEN:"$work/received",creat &
listener=$!
until on h1 ss -Hltn | grep -q 7777; do sleep 0.05; done
head -c 4000 /dev/zero | tr '\0' 'v' | on h2 socat -u - TCP4:192.0.2.1:7777
wait "$listener"
[ "$(stat -c %s "$work/received")" -eq 4000 ] || { echo "TCP lost bytes" >&2; exit 1; }

echo "multicast, with a member in each VLAN"
for name in h2 h3; do
    on "$name" ip route add 224.0.0.0/4 dev eth0
    on "$name" timeout 3 socat -u "UDP4-RECVFROM:5007,ip-add-membership=233.252.0.1:eth0" \
        CREATE:"$work/$name.heard" &
done
sleep 1.5
on h1 ip route add 224.0.0.0/4 dev eth0
for _ in 1 2 3; do
    echo "to the group" | on h1 socat -u - "UDP4-DATAGRAM:233.252.0.1:5007,ip-multicast-ttl=1"
    sleep 0.2
done
sleep 0.5
for name in h1 h4; do
    tcpdump -r "$work/$name.pcap" ether proto 0x88cc 2>/dev/null | grep -q . ||
        { echo "no LLDP from $name" >&2; cat "$work/$name.lldpd" >&2; exit 1; }
done
[ -s "$work/h2.heard" ] || { echo "the multicast did not arrive" >&2; exit 1; }

kill "${captures[@]}"
wait "${captures[@]}" || true
for name in h1 h2 h3 h4 h5; do
    install -m 644 "$work/$name.pcap" "$out/$name.pcap"
    echo "$name sent $(tcpdump -n -r "$work/$name.pcap" 2>/dev/null | wc -l) frames: $out/$name.pcap"
done
