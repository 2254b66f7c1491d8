#!/bin/bash
# usage: round_trip.sh BUILD_DIRECTORY ABI
# The tour and twenty walks are recorded while they are played. The recordings, played without the
# report plug-in, have the same effects.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../../tools/session/wine_session.sh
. "$here/../../../tools/session/wine_session.sh"
test_session "$1" "$2" || exit 1
cd "$karvel_root" || exit 1

mkdir "$work/played" "$work/recorded"
for file in standin/player/tour/*.scn; do
    sed 's/^start$/start\nscript "kvr_record true"/' "$file" >"$work/played/$(basename "$file")"
    echo 'script "kvr_record false"' >>"$work/played/$(basename "$file")"
done
run_wine "$(dirname "$program")/../tests_bin/write_walks.exe" "$work/played" 20 300 || exit 1

# One after the other, so that the numbers of the files are those of the recordings.
printf '%s\n' "$work"/played/*.scn >"$work/played.list"
# A walk also moves over windows that are not open.
run_wine "$program" play "${where[@]}" --diagnostics --forgiving --jobs 1 \
    --config-dir "Z:${work//\//\\}\\recorded" --trace "$work/played.trace" \
    --files-from "$work/played.list" 2>"$work/messages" || {
    cat "$work/messages"
    exit 1
}
printf '%s\n' "$work"/recorded/*.scn | sort -V >"$work/recorded.list"
run_wine "$program" play "${where[@]}" --strict --trace "$work/recorded.trace" \
    --files-from "$work/recorded.list" || exit 1
/usr/bin/python3 "$here/compare_effects.py" "$work/played.trace" "$work/recorded.trace"
