#!/bin/bash
# usage: play_scenarios.sh BUILD_DIRECTORY gnu|msvc|msvc-GENERATION virtual|real NAME ROOM/AREA...
# Plays all scenarios of these folders of tests/scenarios in one process and holds their expectations. The
# trace stays in build/traces/NAME.ABI.INPUT.trace.
set -u
here=$(cd "$(dirname "$0")" && pwd)
. "$here/wine_session.sh"
. "$here/host_differences.sh"
wine_session_ends_with_script

built=$1
abi=$2
input=$3
name=$4
cd "$karvel_root" || exit 1

choose_build "$built" "$abi"

shopt -s nullglob
files=()
for folder in "${@:5}"; do
    found=(tests/scenarios/"$folder"/*.scn)
    if [ ${#found[@]} -eq 0 ]; then
        echo "tests/scenarios/$folder holds no scenario: a test of nothing" >&2
        exit 1
    fi
    files+=("${found[@]}")
done
differences=$(host_differences "$abi")
for file in $(files_of 'without|differs|apart' <<<"$differences"); do
    [ -f "$file" ] || { echo "host_*.txt names $file, which is not there" >&2; exit 1; }
done
mapfile -t files < <(printf '%s\n' "${files[@]}" | grep -vxFf <(files_of without <<<"$differences"))
mapfile -t differing < <(printf '%s\n' "${files[@]}" |
    grep -xFf <(files_of 'differs|apart' <<<"$differences"))
mapfile -t files < <(printf '%s\n' "${files[@]}" |
    grep -vxFf <(files_of 'differs|apart' <<<"$differences"))
if [ ${#files[@]} -eq 0 ]; then
    echo "$name holds no scenario: a test of nothing" >&2
    exit 1
fi

# Real input, too, needs no display.
wine_session_begin null || exit 1

traces=$(dirname "$built")/traces
mkdir -p "$traces"
trace=$traces/$name.$abi.$input.trace
rm -f "$trace"
list=$traces/$name.$abi.files
messages=$traces/$name.$abi.$input.messages
printf '%s\n' "${files[@]}" >"$list"
run_wine "$program" play "${where[@]}" --strict --input "$input" \
    --jobs 1 --trace "$trace" --files-from "$list" 2>"$messages"
status=$?
cat "$messages" >&2
if [ ${#differing[@]} -gt 0 ]; then
    # Their expectations are those of 2012; compare_traces.sh looks at their traces.
    printf '%s\n' "${differing[@]}" >"$list"
    run_wine "$program" play "${where[@]}" --input "$input" --jobs 1 --trace "$trace.differing" \
        --files-from "$list" 2>"$messages.differing"
    differing_status=$?
    if [ $differing_status -gt 1 ]; then status=$differing_status; fi
    for file in $(printf '%s\n' "${differing[@]}" | grep -xFf <(files_of apart <<<"$differences")); do
        grep -q "^$file:" "$messages.differing" && continue
        echo "$file has what it expects on this host: take it out of tests/scenarios/host_*.txt" >&2
        status=1
    done
    rm -f "$messages.differing"
    # One alone has no line that names it.
    if [ ${#differing[@]} -eq 1 ]; then echo "# ${differing[0]}" >>"$trace"; fi
    cat "$trace.differing" >>"$trace"
    rm -f "$trace.differing"
fi

if [ ! -s "$trace" ]; then
    echo "no trace was written to $trace" >&2
    if [ $status -eq 0 ]; then status=1; fi
fi
if [ $status -ne 0 ] && [ -s "$trace" ]; then
    # What a machine far away saw is gone with it otherwise.
    echo "the failing traces, from $trace:"
    failing=$(sed -n 's/^\([^ :]*\.scn\):\([0-9]*:\)\? .*/\1/p' "$messages" | sort -u | head -n 3)
    for file in $failing; do
        awk -v wanted="# $file" '/^# .*\.scn$/ { on = $0 == wanted } on' "$trace" | head -n 150
    done
fi
echo "${#files[@]} scenarios of $name, $abi, $input input: status $status"
exit $status
