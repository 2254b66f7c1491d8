#!/bin/bash
# usage: fault_table.sh BUILD_DIRECTORY ABI [OPTION...]
# Plays the table of faults (fault_table.py, whose options these are) with one build of the plug-in.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../tools/wine_session.sh
. "$here/../../tools/wine_session.sh"
trap wine_session_end EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

built=$1
abi=$2
shift 2
program=$karvel_root/build/gnu/bin/standin.exe
if [ "$abi" = gnu ]; then program=$built/bin/standin.exe; fi

# One session for all of it: each play joins this one.
wine_session_begin null || exit 1
mkdir -p "$karvel_root/build/faults"
names=$karvel_root/build/faults/names.$abi
run_wine "$program" faults >"$names" || exit 1
python3 "$here/fault_table.py" --faults "$names" "$@" -- \
    "$karvel_root/tools/run_under_wine.sh" "$program" play --abi "$abi" --host-dir "$built/host" \
    --plugin "$built/plugin/KarvelMax.gup" --map "$built/plugin/KarvelMax.map" \
    --jobs "${KARVEL_JOBS:-1}"
