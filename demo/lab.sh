#!/usr/bin/env bash
# lab.sh BUILD_FOLDER [VEXOSH_ARGUMENT...]: eight hosts and a second card around a card, and the
# card's prompt; or with arguments, e.g. -c 'show vlans', these instead of a prompt. Needs root and
# iproute2, iputils-ping. All of it lives in namespaces of the script's own, which are gone when the
# script is, whatever ended it; so there may be several labs.
set -euo pipefail

# ---- The card's network: hN is a Linux host at port N of the card, h5 and h6 at the far card. ----

picture() {
    cat <<'MAP'

    VLAN 10: 10.0.10.0/24          VLAN 20: 10.0.20.0/24
      h1            h2               h3            h4
   10.0.10.1     10.0.10.2        10.0.20.3     10.0.20.4
      |1            |2               |3            |4
  +---+-------------+----------------+-------------+---+
  |                     the card                       |
  +---+-------------+----------------+-------------+---+
      |5            :6               |7            |8
 VLAN |10, 20       : cable t2       |             |
 tag- |ged,         : is out      10.0.30.7     10.0.40.8
 cable|t1           :                h7            h8
  +---+-------------+---+          VLAN 30:      VLAN 40:
  |     far card        |       10.0.30.0/24  10.0.40.0/24
  +---+-------------+---+    The card routes between these two,
      |1            |2       as .254, and 2001:db8:30::/64 to
      h5            h6       2001:db8:40::/64.
   10.0.10.5     10.0.20.6
MAP
}

# connect HOST VLAN [CARD]: the TAP of that name, made by a card, goes to its host.
connect() {
    local n=${1#h} card=(${3:+-n "$3"}) host=(-n "$1") on=(dev "$1") router=02:00:00:00:$2:fe
    ip "${card[@]}" link set "$1" address "02:00:00:00:00:0$n" netns "$1"
    ip "${host[@]}" link set "$1" up
    ip "${host[@]}" addr add "10.0.$2.$n/24" "${on[@]}"
    ip "${host[@]}" addr add "2001:db8:$2::$n/64" "${on[@]}" nodad
    [ "$2" -ge 30 ] || return 0
    # The card answers no ARP: its hosts are told the router's address.
    ip "${host[@]}" neigh add "10.0.$2.254" lladdr "$router" "${on[@]}" nud permanent
    ip "${host[@]}" neigh add "2001:db8:$2::fe" lladdr "$router" "${on[@]}" nud permanent
    ip "${host[@]}" route add default via "10.0.$2.254"
    ip "${host[@]}" -6 route add default via "2001:db8:$2::fe"
}

connect_all() {
    connect h1 10
    connect h2 10
    connect h3 20
    connect h4 20
    connect h7 30
    connect h8 40
}

# far_card: starts it, beyond the trunk, with a LAG of both cables.
far_card() {
    ip netns exec far "$vexosh" --listen /run/far.sock "$here/lab_far.vsh" >/run/far.log 2>&1 \
        </dev/null &
    until grep -q '^serving' /run/far.log 2>/dev/null; do
        kill -0 $! 2>/dev/null || fail "the far card does not come up: $(cat /run/far.log)"
        sleep 0.05
    done
    connect h5 10 far
    connect h6 20 far
}

# answers HOST ADDRESS: within ten seconds.
answers() {
    for _ in {1..50}; do
        ! ip netns exec "$1" ping -q -c 1 -W 0.2 "$2" >/dev/null 2>&1 || return 0
        sleep 0.1
    done
    echo "lab.sh: $1 gets no answer from $2" >&2
    return 1
}

ready() {
    answers h1 10.0.10.2
    answers h3 10.0.20.4
    answers h5 10.0.10.1
    answers h6 10.0.20.3
    answers h7 10.0.40.8
    answers h7 2001:db8:40::8
    [ -n "${VEXO_LAB_PROMPT:-}" ] || return 0
    picture
    cat <<HINT

Have a host do something:   shell h1 ping -c 3 10.0.10.2
From another terminal:      nsenter -t $VEXO_LAB_PID -m -n ip netns exec h1 bash
The walk-through:           docs/walk_through.md       The end of the lab:  quit
HINT
}

# ---- The lab's own world. ----

fail() {
    echo "lab.sh: $*" >&2
    exit 1
}

check() {
    [ "$(id -u)" -eq 0 ] || fail "needs root"
    local tool
    for tool in ip ping unshare setpriv; do
        command -v $tool >/dev/null || fail "needs $tool (packages iproute2, iputils-ping)"
    done
    [ -c /dev/net/tun ] || fail "/dev/net/tun is missing; load the module tun"
    [ -x "$vexosh" ] || fail "there is no $vexosh"
}

# The first process of the lab's process namespace: when it ends, all others do.
inside() {
    trap 'exit 130' INT TERM HUP
    read -r VEXO_LAB_PID _ </proc/self/stat # as the rest of the system knows it
    mount -t proc proc /proc
    mount -t tmpfs none /run
    mkdir /run/netns /run/bin
    export PATH=/run/bin:$PATH
    sysctl -qw net.ipv6.conf.all.disable_ipv6=1 net.ipv6.conf.default.disable_ipv6=1
    local name prompt=()
    for name in h1 h2 h3 h4 h5 h6 h7 h8 far; do
        ip netns add "$name"
        ip -n "$name" link set lo up
        # A host's name runs a command there.
        printf '#!/bin/sh\nexec ip netns exec %s "$@"\n' "$name" >"/run/bin/$name"
        chmod 755 "/run/bin/$name"
    done
    ip netns exec far sysctl -qw net.ipv6.conf.all.disable_ipv6=1 \
        net.ipv6.conf.default.disable_ipv6=1
    for name in t1 t2; do
        ip link add "$name" type veth peer name "$name" netns far
    done
    if [ $# -eq 0 ]; then
        VEXO_LAB_PROMPT=yes
        prompt=(--interactive)
    fi
    far_card
    ip link set t1 up
    export VEXO_LAB_PID VEXO_LAB_PROMPT VEXO_LAB_STEP="$self $build"
    "$vexosh" "${prompt[@]}" "$here/lab.vsh" "$@"
}

self=$(realpath "$0")
build=$(realpath "$1")
vexosh=$build/tools/vexosh/vexosh
shift
here=$(dirname "$self")
case ${VEXO_LAB_INSIDE-}${1-} in
yesstep:connect) connect_all ;;
yesstep:ready) ready ;;
yes*)
    inside "$@"
    ;;
*)
    check
    [ $# -gt 0 ] || echo "bringing up two cards and eight hosts"
    # Whoever kills this script kills unshare, and with it the whole lab.
    VEXO_LAB_INSIDE=yes setpriv --pdeathsig KILL unshare --mount --net --pid --fork --kill-child \
        "$self" "$build" "$@"
    exit
    ;;
esac
