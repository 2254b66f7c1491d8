#!/bin/bash
# usage: fault_table.sh BUILD_DIRECTORY ABI [OPTION...]
# Plays the table of faults (fault_table.py, whose options these are) with one build of the plug-in.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../tools/session/wine_session.sh
. "$here/../../tools/session/wine_session.sh"
wine_session_ends_with_script

built=$1
abi=$2
shift 2
choose_build "$built" "$abi"

# One session for all of it: each play joins this one.
wine_session_begin null || exit 1
mkdir -p "$karvel_root/build/faults"
names=$karvel_root/build/faults/names.$abi
run_wine "$program" faults >"$names" || exit 1
/usr/bin/python3 "$here/fault_table.py" --faults "$names" "$@" -- \
    "$karvel_root/tools/session/run_under_wine.sh" "$program" play "${where[@]}" \
    --jobs 1
