#!/bin/bash
# usage: check_cost.sh BUILD_DIRECTORY
# Counts the calls, allocations and memory of each kind of message with the plug-in of that build.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
. "$root/tools/session/wine_session.sh"
wine_session_ends_with_script

built=$1
# The program itself is always the gnu build's.
program=$root/build/gnu/bench/bench.exe
if [ ! -f "$program" ]; then
    echo "$program is missing, build the gnu preset" >&2
    exit 1
fi
wine_session_begin null || exit 1
run_wine "$program" check --host-dir "$built/host" --plugin "$built/plugin/KarvelMax.gup" \
    --map "$built/plugin/KarvelMax.map" --bounds "$root/tests/benchmarks/bounds.txt"
