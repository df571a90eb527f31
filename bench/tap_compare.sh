#!/usr/bin/env bash
# tap_compare.sh BUILD [ROUNDS]: what stands between two TAPs, compared in one run: the card
# (build/bench/tap_card), a bare copy loop (build/bench/tap_relay) and Open vSwitch's userspace
# datapath. Every round takes each in turn, because a machine's speed drifts; only the medians of
# one run compare. Needs root, openvswitch-switch, iproute2, ethtool and iputils-ping.
#   SECONDS_EACH=3   how long each rate is measured
#   PACES="..."      offered rates of which the best delivered one counts; 0 is unlimited
set -euo pipefail
seconds=${SECONDS_EACH:-3}
paces=${PACES:-0 300000 600000 800000}

if [ -z "${VEXO_COMPARE_INSIDE:-}" ]; then
    [ $# -ge 1 ] || { echo "usage: tap_compare.sh BUILD [ROUNDS]" >&2; exit 2; }
    [ "$(id -u)" -eq 0 ] || { echo "tap_compare.sh: needs root" >&2; exit 1; }
    build=$(realpath "$1")
    VEXO_COMPARE_INSIDE=1 exec unshare --mount --net --pid --fork --kill-child --mount-proc \
        "$0" "$build" "${2:-5}"
fi

# Namespaces, daemons and TAPs are this process's own and end with it.
bench=$1/bench
rounds=$2
for program in tap_card tap_relay frame_source; do
    [ -x "$bench/$program" ] || { echo "tap_compare.sh: $bench/$program is not built" >&2; exit 1; }
done
mount -t tmpfs none /run
mkdir -p /run/netns
export OVS_RUNDIR=/run/ovs OVS_LOGDIR=/run/ovs OVS_DBDIR=/run/ovs OVS_SYSCONFDIR=/run/ovs
mac_a=02:00:00:00:0a:01
mac_b=02:00:00:00:0b:01
declare -A rate=() ping=() pids=()

quiet() { sysctl -qw net.ipv6.conf.all.disable_ipv6=1 net.ipv6.conf.default.disable_ipv6=1; }

host() { # host NAME TAP MAC ADDRESS: takes over one of the TAPs
    until ip link show "$2" >/dev/null 2>&1; do sleep 0.05; done
    ip netns add "$1"
    ip netns exec "$1" sysctl -qw net.ipv6.conf.all.disable_ipv6=1 \
        net.ipv6.conf.default.disable_ipv6=1
    ip link set "$2" netns "$1"
    ip -n "$1" link set "$2" address "$3" up
    ip -n "$1" addr add "$4" dev "$2"
    ip netns exec "$1" ethtool -K "$2" tx off tso off gso off gro off >/dev/null 2>&1 || true
}

start() { # start WHAT
    case $1 in
    card) "$bench/tap_card" ta tb & ;;
    relay) "$bench/tap_relay" ta tb & ;;
    ovs) start_ovs & ;;
    esac
    pids[$1]=$!
    [ "$1" != ovs ] || wait "${pids[$1]}"
    host a ta $mac_a 203.0.113.1/24
    host b tb $mac_b 203.0.113.2/24
    # Both addresses become known, or nothing is worth measuring.
    local tries=50
    until ip netns exec a ping -q -c 1 -W 1 203.0.113.2 >/dev/null; do
        [ $((--tries)) -gt 0 ] || break
    done
    [ "$tries" -eq 0 ] || return 0
    echo "tap_compare.sh: $1 does not forward" >&2
    exit 1
}

start_ovs() {
    rm -rf "$OVS_RUNDIR"
    mkdir -p "$OVS_RUNDIR"
    ovsdb-tool create "$OVS_DBDIR/conf.db" /usr/share/openvswitch/vswitch.ovsschema
    ovsdb-server --remote="punix:$OVS_RUNDIR/db.sock" --pidfile --detach --no-chdir --log-file \
        "$OVS_DBDIR/conf.db" 2>/dev/null
    ovs-vsctl --no-wait init
    ovs-vswitchd --pidfile --detach --no-chdir --log-file 2>/dev/null
    ovs-vsctl add-br br0 -- set bridge br0 datapath_type=netdev fail-mode=standalone \
        -- add-port br0 ta -- set interface ta type=tap \
        -- add-port br0 tb -- set interface tb type=tap
}

stop() {
    if [ "$1" = ovs ]; then
        local name pid
        for name in ovs-vswitchd ovsdb-server; do
            pid=$(cat "$OVS_RUNDIR/$name.pid")
            kill "$pid"
            while [ -d "/proc/$pid" ]; do sleep 0.05; done
        done
    else
        kill "${pids[$1]}"
        wait "${pids[$1]}" 2>/dev/null || true
    fi
    ip netns del a
    ip netns del b
    while ip link show ta >/dev/null 2>&1 || ip link show tb >/dev/null 2>&1; do sleep 0.05; done
}

received() { ip -n b -s -j link show tb | sed 's/.*"rx":{"bytes":[0-9]*,"packets":\([0-9]*\).*/\1/'; }

best_rate() { # frames delivered a second, the best over the offered rates
    local pace before sent best=0 got
    for pace in $paces; do
        before=$(received)
        sent=$(ip netns exec a "$bench/frame_source" ta $mac_b $mac_a "$seconds" "$pace")
        sleep 0.3
        got=$(awk -v n=$(($(received) - before)) -v t="${sent#* }" 'BEGIN { printf "%.0f", n / t }')
        [ "$got" -le "$best" ] || best=$got
    done
    echo "$best"
}

ping_time() { # mean round trip in microseconds
    ip netns exec a ping -q -c 1000 -i 0.002 203.0.113.2 |
        sed -n 's#.*= [0-9.]*/\([0-9.]*\)/.*#\1#p' | awk '{ printf "%.1f", 1000 * $1 }'
}

median() { tr ' ' '\n' <<<"$1" | grep . | sort -n | awk '{ a[NR] = $1 } END { print (NR % 2) ? a[(NR + 1) / 2] : (a[NR / 2] + a[NR / 2 + 1]) / 2 }'; }

quiet
ip link set lo up
all="card relay ovs"
command -v ovs-vswitchd >/dev/null || { echo "no Open vSwitch here: left out"; all="card relay"; }
for round in $(seq "$rounds"); do
    for what in $all; do
        start "$what"
        frames=$(best_rate)
        time=$(ping_time)
        stop "$what"
        rate[$what]+="$frames "
        ping[$what]+="$time "
        echo "round $round: $what $frames frames/s, ping $time us"
    done
done
for what in $all; do
    echo "median $what: $(median "${rate[$what]}") frames/s, ping $(median "${ping[$what]}") us"
done
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.2f", a / b }'; }
echo "card/relay: $(ratio "$(median "${rate[card]}")" "$(median "${rate[relay]}")") of the rate," \
    "$(ratio "$(median "${ping[card]}")" "$(median "${ping[relay]}")") of the ping time"
[ "$all" = "card relay" ] ||
    echo "card/ovs: $(ratio "$(median "${rate[card]}")" "$(median "${rate[ovs]}")") of the rate"
