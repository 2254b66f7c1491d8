#!/bin/bash
# usage: report_test.sh BUILD_DIRECTORY ABI
# Makes reports in the stand-in, by the report plug-in itself, and looks what they say.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../../tools/session/wine_session.sh
. "$here/../../../tools/session/wine_session.sh"
test_session "$1" "$2" || exit 1

# play NAME: into a settings folder of its own
play() {
    mkdir -p "$work/$1"
    local folder=$work/$1
    run_wine "$program" play "${where[@]}" --diagnostics --config-dir "Z:${folder//\//\\}" \
        --trace "$work/$1.trace" "$here/$1.scn"
}
mkdir -p "$work/refused/KarvelReport.txt"
for name in report input faults refused; do
    play $name || exit 1
done

# A sample of what users do, with both plug-ins loaded and with the product alone.
cd "$karvel_root" || exit 1
files=(tests/scenarios/{navigation/orbit,hooks/auto_focus,assists/sticky,shell/menu}/*.scn)
for beside in "" --diagnostics; do
    # shellcheck disable=SC2086  # no word at all, the first time
    run_wine "$program" play "${where[@]}" $beside --trace "$work/alone$beside.trace" "${files[@]}" ||
        exit 1
done
if ! cmp "$work/alone.trace" "$work/alone--diagnostics.trace"; then
    diff -u "$work/alone.trace" "$work/alone--diagnostics.trace" | head -n 60
    exit 1
fi

/usr/bin/python3 "$here/report_test.py" "$work" "$here"
