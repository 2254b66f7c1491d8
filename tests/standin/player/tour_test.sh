#!/bin/bash
# usage: tour_test.sh BUILD_DIRECTORY ABI
# Plays the tour as ./dev run does, with the mouse of a display: every stop happens as it is written
# there, none of them a second time. The pictures stay in build/tour_test.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../../tools/session/wine_session.sh
. "$here/../../../tools/session/wine_session.sh"
wine_session_ends_with_script
choose_build "$1" "$2"
kept=$(dirname "$1")/tour_test
wine_session_begin x11 1280x1024 || exit 1
rm -rf "$kept"
mkdir -p "$kept"
run_wine "$program" tour --out "$kept" "${where[@]}" >"$kept/transcript.txt" 2>"$kept/messages.txt"
status=$?
tail -n 1 "$kept/transcript.txt"
cat "$kept/messages.txt" >&2
if [ -s "$kept/messages.txt" ] && [ $status -eq 0 ]; then status=1; fi
pictures=$(find "$kept" -name '*.png' | wc -l)
if [ "$pictures" -lt 40 ]; then
    echo "the tour left $pictures pictures in $kept" >&2
    status=1
fi
exit $status
