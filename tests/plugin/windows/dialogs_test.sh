#!/bin/bash
# usage: dialogs_test.sh BUILD_DIRECTORY ABI
# Opens the plug-in's windows in the stand-in, takes pictures of them and holds layout and looks
# against what they are to be. The pictures stay in build/dialogs/ABI.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../../tools/session/wine_session.sh
. "$here/../../../tools/session/wine_session.sh"
wine_session_ends_with_script

built=$1
abi=$2
choose_build "$built" "$abi"
pictures=$(dirname "$built")/dialogs/$abi
rm -rf "$pictures"
mkdir -p "$pictures"

# Windows are drawn without a display too, and then by nothing but Wine itself.
wine_session_begin null || exit 1
run_wine "$program" play "${where[@]}" --shots "$pictures" --trace "$pictures/trace" \
    "$here/dialogs.scn" || exit 1
/usr/bin/python3 "$here/dialogs_test.py" "$pictures"
