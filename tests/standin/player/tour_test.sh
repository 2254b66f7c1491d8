#!/bin/bash
# usage: tour_test.sh BUILD_DIRECTORY ABI
# Plays the tour as ./dev run does, with the mouse of a display: every stop happens as it is written
# there, none of them a second time, and the moving picture is made. The pictures stay in build/tour_test.
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
if ! grep -q 'events were injected' "$kept/transcript.txt"; then status=1; fi

# The moving picture, small enough for a page, with nothing left of its steps.
"$karvel_root/tools/artwork/make_tour_gif.sh" "$kept" || exit 1
size=$(stat -c %s "$kept/tour.gif") || exit 1
if [ "$size" -gt 1048576 ] || [ "$size" -lt 100000 ]; then
    echo "tour.gif has $size bytes" >&2
    status=1
fi
if ls "$kept"/film-*.png 2>/dev/null; then status=1; fi
exit $status
