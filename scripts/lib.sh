# Sourced by the other scripts. Every function fails with the log of what failed, and is otherwise
# short: a line for what it does, and ninja's progress.

jobs=$(nproc)

if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1
fi

say() {
    printf '== %s\n' "$*"
}

# sources NAME_PATTERN PATH...: our own files below the paths, build folders left out.
sources() {
    local pattern=$1
    shift
    find "$@" \( -path './build*' -o -path ./out -o -name '.?*' \) -prune \
        -o -type f -name "$pattern" -print | sed 's|^\./||' | sort
}

# quietly COMMAND...: its output only when it fails.
quietly() {
    local log status=0
    log=$(mktemp)
    "$@" >"$log" 2>&1 </dev/null || status=$?
    [ "$status" -eq 0 ] || cat "$log" >&2
    rm -f "$log"
    return "$status"
}

# show_tenths: of ninja's status lines on standard input, one for each tenth of the work.
show_tenths() {
    local count total rest shown=0
    while IFS='[/]' read -r _ count total rest; do
        [[ $count =~ ^[0-9]+$ && $total =~ ^[0-9]+$ && $total -ge 10 ]] || continue
        if [ $((10 * count / total)) -gt "$shown" ]; then
            shown=$((10 * count / total))
            echo "   $count of $total"
        fi
    done
}

# build DIR TARGET...: on a terminal ninja keeps one status line; elsewhere a line shows each tenth.
build() {
    local dir=$1 log status=0
    shift
    if [ -t 1 ]; then
        ninja -C "$dir" -j "$jobs" "$@"
        return
    fi
    log=$(mktemp)
    NINJA_STATUS='[%f/%t] ' ninja -C "$dir" -j "$jobs" "$@" 2>&1 </dev/null |
        tee "$log" | show_tenths || status=$?
    [ "$status" -eq 0 ] || grep -v '^\[[0-9]*/[0-9]*\]' "$log" >&2
    rm -f "$log"
    return "$status"
}
