#!/bin/bash
# usage: workers.sh BUILD_DIRECTORY
# One process plays many scenarios. What one of them leaves must not reach the next; a play that dies
# says which it was, and another process plays the rest.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../../tools/session/wine_session.sh
. "$here/../../../tools/session/wine_session.sh"
test_session "$1" gnu || exit 1
failed=0

# Whatever a play can leave behind: keys and buttons held, the capture taken, windows open in the
# middle of something, another owner of a window's messages, faults, settings, time.
cat >"$work/untidy.scn" <<'SCENARIO'
ini useMayaStyle=1
ini altLeftArcRotate=0
start
command 5
click options.1007
open trackview
open vertexpaint
swap on
clock +5000
mode push 3
select Box001
hide Cone001
action 0 40105 off
fail LoadCursorA
busy on
move viewport.persp 200 150
key down lshift
key down rshift
key down alt
down left
move by 10 5
busy off
code 3
peek on
SCENARIO
# All that there is to be seen of the start of a play.
cat >"$work/first.scn" <<'SCENARIO'
show keys
show clock
start
show all
show windows
show settings
show leaks
show capture
move viewport.persp 200 150
key down alt
down left
move by 10 5
up left
key up alt
show keys
show plugin
SCENARIO
# The window procedure that the plug-in hands messages on to is none.
cat >"$work/dies.scn" <<'SCENARIO'
start
poke g_prevMainWndProc 16
accelerator 1
SCENARIO

# play INPUT NAME...: plays them one after the other. Sets `status`, `messages`, `processes` that
# played and `desktops` that were made, the session's own among them; the traces go to
# $work/NUMBER.trace.
play() {
    local input=$1 name files=() output=$work/output
    shift
    for name in "$@"; do files+=("$work/$name.scn"); done
    status=0
    rm -f "$work"/*.trace
    WINEDEBUG=-all,+process run_wine "$program" play "${where[@]}" --input "$input" --jobs 1 \
        --queries --facts --trace "$output" "${files[@]}" >/dev/null 2>"$work/errors" || status=$?
    processes=$(grep -c 'CreateProcessInternalW.*standin\.exe.* worker ' "$work/errors")
    desktops=$(grep -c 'NtCreateUserProcess.*explorer\.exe.* pid ' "$work/errors")
    messages=$(grep '\.scn' "$work/errors" | grep -v ':process:')
    awk -v folder="$work" '/^# .*\.scn$/ { file = folder "/" ++n ".trace"; next } { print >file }' \
        "$output"
}

complain() {
    printf '%s input: %s\n' "$input" "$*" >&2
    grep -v ':trace:' "$work/errors" >&2
    failed=1
}

for input in virtual real; do
    play $input first first
    cp "$work/1.trace" "$work/alone"
    cmp "$work/alone" "$work/2.trace" >&2 || complain 'the second play differs from the first'
    play $input untidy first untidy first
    [ "$status" = 0 ] || complain "status $status: $messages"
    [ "$processes" = 1 ] || complain "$processes processes played what one can"
    [ "$desktops" -le 2 ] || complain "$desktops desktops where one can be put in order"
    for number in 2 4; do
        diff "$work/alone" "$work/$number.trace" >&2 ||
            complain "the play before reaches play $number"
    done
    play $input first dies first first
    [ "$status" = 3 ] || complain "status $status after a play that died"
    [[ $messages == *"dies.scn:3: crashed with exception C0000005 at "* ]] ||
        complain "the message of a play that died is: $messages"
    [ "$processes" = 2 ] || complain "$processes processes where one died"
    for number in 1 3 4; do
        cmp "$work/alone" "$work/$number.trace" >&2 ||
            complain "play $number beside one that dies differs"
    done
done
exit $failed
