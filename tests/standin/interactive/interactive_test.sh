#!/bin/bash
# usage: interactive_test.sh BUILD_DIRECTORY ABI
# Opens the stand-in on a virtual display and lets interactive_test.py work it with the mouse and
# keyboard of that display. Trace, settings file and pictures stay in build/interactive.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../../tools/session/wine_session.sh
. "$here/../../../tools/session/wine_session.sh"
wine_session_ends_with_script

built=$1
abi=$2
choose_build "$built" "$abi"
kept=$(dirname "$built")/interactive
command -v xdotool >/dev/null || { echo "xdotool is missing, install its package" >&2; exit 1; }
wine_session_begin x11 1280x1024 || exit 1
# Inside the session, which one user has at a time.
rm -rf "$kept"
mkdir -p "$kept/settings"
printf '[main]\r\nflinderPopup=\r\n' >"$kept/settings/Karvel.ini"

run_wine "$program" interactive "${where[@]}" --config-dir "$kept/settings" \
    --trace "$kept/trace" --watch >"$kept/messages" 2>&1 &
stand_in=$!
# When the test fails the stand-in is still open; it ends with the session.
if ! /usr/bin/python3 "$here/interactive_test.py" "$kept"; then
    cat "$kept/messages" >&2
    exit 1
fi
wait "$stand_in" || { echo "the stand-in ended with status $?" >&2; exit 1; }
