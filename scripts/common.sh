# What the scripts share; sourced, not run. Gives $root, the project's folder.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
jobs=$(nproc 2>/dev/null || echo 2)

# ccache needs a folder that can be written to; without a usable home it gets one in the build folder.
if [ ! -w "${HOME:-/nonexistent}" ]; then
    export CCACHE_DIR="${CCACHE_DIR:-$root/build/ccache}"
fi

say() { printf '%s\n' "$*"; }

die() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# quietly LOG COMMAND...: shows what the command printed only when it fails.
quietly() {
    local log=$1
    shift
    mkdir -p "$(dirname "$log")"
    "$@" >"$log" 2>&1 </dev/null || {
        local status=$?
        cat "$log" >&2
        return "$status"
    }
}

# build PRESET: configures and builds one preset; warnings and errors are shown, progress only on a terminal.
build() {
    local preset=$1 quiet=(-- --quiet)
    [ -t 1 ] && quiet=()
    quietly "$root/build/$preset/configure.log" cmake -S "$root" --preset "$preset"
    cmake --build "$root/build/$preset" --parallel "$jobs" "${quiet[@]}"
}
