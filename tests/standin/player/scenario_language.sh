#!/bin/bash
# usage: scenario_language.sh BUILD_DIRECTORY
# A scenario that can not be read, or whose play could show no fault, is told in one line that names
# the place and the remedy. Words that no other scenario has do what they say.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../../tools/session/wine_session.sh
. "$here/../../../tools/session/wine_session.sh"
test_session "$1" gnu || exit 1
failed=0

# says STATUS PLAYED TEXT LINE [OPTION...]: the scenario TEXT (for printf) is played, or not, and the
# messages are LINE, in which FILE stands for its name.
says() {
    local status=$1 played=$2 text=$3 line=$4 got output messages file=$work/scenario.scn
    shift 4
    # shellcheck disable=SC2059  # bytes that are no text
    printf "$text" >"$file"
    output=$(run_wine "$program" play "${where[@]}" "$@" "$file" 2>"$work/messages")
    got=$?
    messages=$(sed "s|^$file|FILE|" "$work/messages")
    if [ "$got" -ne "$status" ] || [ "$messages" != "$line" ] ||
        { [ "$played" = yes ] && [[ $output != *in\ start* ]]; } ||
        { [ "$played" = no ] && [ -n "$output" ]; }; then
        printf '%s %s\nexpected status %s, "%s"; got %s, "%s", trace:\n%s\n' \
            "$text" "$*" "$status" "$line" "$got" "$messages" "$output" >&2
        failed=1
    fi
}

no_expect='FILE: there is no expect, so nothing that happens can be wrong'
says 0 yes 'start\nkey down alt\n' "$no_expect"
says 2 no 'start\nkey down alt\n' "$no_expect" --strict
says 2 no 'key down alt\nexpect nothing\n' \
    'FILE: there is no start, so the plug-in is not loaded' --strict
says 0 yes 'start\nexpect …\nkey down alt\nexpect out pass\n' '' --strict
says 0 yes 'start\n' '' --forgiving
# Names that only the world knows are proposed, too.
says 2 no 'start\nclick viewport.pers\n' \
    'FILE:2: "viewport.pers" should be a control (as options.1007), most likely viewport.persp'
says 2 no 'start\nfail SendInputs\n' \
    'FILE:2: "SendInputs" should be a call that can fail (docs/scenarios.md lists them), most likely SendInput'
says 2 no 'start\n# f\374r\n' \
    'FILE:2: the byte 0xFC is no UTF-8 in column 4, save the file as UTF-8'
says 2 no '\377\376s\0t\0' 'FILE:1: the file is UTF-16, save it as UTF-8'
says 2 no 'start\n\0\n' 'FILE:2: there is a NUL byte in column 1, save the file as UTF-8'
says 2 no 'script "open\n' 'FILE:1: the quoted text is not closed, end it with "'

run_wine "$program" play "${where[@]}" --strict "$here/rare_words.scn" >"$work/trace" || {
    cat "$work/trace"
    failed=1
}

exit $failed
