#!/bin/bash
# usage: refusals.sh BUILD_DIRECTORY
# What cannot be played as it is meant is one clear line with its place, and exit status 2.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../../tools/session/wine_session.sh
. "$here/../../../tools/session/wine_session.sh"
test_session "$1" gnu || exit 1
failed=0

# refused INPUT LINE WANTED TEXT...: the scenario of these lines ends in LINE with this message.
refused() {
    local input=$1 line=$2 wanted=$3 output status
    shift 3
    printf '%s\n' "$@" 'expect nothing' >"$work/play.scn"
    output=$(run_wine "$program" play "${where[@]}" --input "$input" "$work/play.scn" 2>&1 >/dev/null)
    status=$?
    if [ $status -ne 2 ] || [[ $output != *"play.scn:$line: $wanted"* ]] ||
        [ "$(grep -c . <<<"$output")" -ne 1 ]; then
        printf '%s, %s input: status %s, output:\n%s\n' "$*" "$input" "$status" "$output" >&2
        failed=1
    fi
}

for input in virtual real; do
    refused $input 2 'the window unwrap is not open' start 'reenter unwrap on'
    refused $input 1 '"5,0" should be a size WIDTHxHEIGHT' 'screen 5,0 1280x1024' start
    refused $input 1 'the main monitor, which begins at 0,0, gets less than' 'screen -1000,0 1280x1024' start
    refused $input 2 '"maybe" should be on or off' start 'busy maybe'
    refused $input 2 '"wheel" should be left, right or middle' start 'doubleclick wheel'
    refused $input 2 '"menus" should be toolbar' start 'rebuild menus'
    refused $input 2 'missing a number MS' start 'scripts take'
    refused $input 2 '"x" should be a number N' start 'code x'
done
refused real 1 "the system's screen does not begin at -1280,0" 'screen -1280,0 2560x1024' start
refused real 3 'peek and reenter together need virtual input' start 'peek on' 'reenter main on'
exit $failed
