#!/bin/bash
# usage: own_report_test.sh BUILD_DIRECTORY ABI
# Has the stand-in make reports of itself, in situations that together tell all that is assumed of the
# host, and wants each assumption confirmed.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../tools/session/wine_session.sh
. "$here/../../tools/session/wine_session.sh"
test_session "$1" "$2" || exit 1
reports=()
for scenario in everything_open another_tool brush; do
    folder=$work/$scenario
    mkdir "$folder"
    run_wine "$program" play "${where[@]}" --strict --diagnostics \
        --config-dir "Z:${folder//\//\\}" "$here/$scenario.scn" >"$folder.trace" || exit 1
    reports+=("$folder/KarvelReport.txt")
done
"$here/../../tools/report/compare_report.py" "${reports[@]}" >"$work/told"
status=$?
if [ $status -ne 0 ] || ! grep -qx 'not told: 0' "$work/told"; then
    cat "$work/told"
    exit 1
fi
