#!/bin/bash
# usage: walk.sh BUILD_DIRECTORY gnu|msvc OPTION...
# Random walks with one build of the plug-in; the options are those of ./dev fuzz.
set -u
here=$(cd "$(dirname "$0")" && pwd)
built=$1
abi=$2
shift 2
# The stand-in itself is always the gnu build's.
exec "$here/../../tools/run_under_wine.sh" "$(dirname "$built")/gnu/bin/standin.exe" fuzz \
    --abi "$abi" --host-dir "$built/host" --plugin "$built/plugin/KarvelMax.gup" \
    --map "$built/plugin/KarvelMax.map" "$@"
