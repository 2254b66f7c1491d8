#!/bin/bash
# usage: walk_options.sh BUILD_DIRECTORY
# An option that makes no sense is one clear line and exit status 2, and nothing is walked.
set -u
here=$(cd "$(dirname "$0")" && pwd)
built=$1
failed=0

# refused WANTED OPTION...: a run with these options is refused with a line that has this text.
refused() {
    local wanted=$1 output status
    shift
    output=$("$here/walk.sh" "$built" gnu "$@" 2>&1)
    status=$?
    if [ $status -ne 2 ] || [[ $output != *"$wanted"* ]] || [[ $output == *seed\ * ]] ||
        [ "$(grep -c . <<<"$output")" -ne 1 ]; then
        printf 'fuzz %s: status %s, output:\n%s\n' "$*" "$status" "$output" >&2
        failed=1
    fi
}

refused '"0" is no value for --events' --events 0
refused '"many" is no value for --events' --events many
refused '"-5" is no value for --events' --events -5
refused '"x" is no value for --seed' --seed x
refused '"3" is no value for --length' --length 3
refused '"0" is no value for --jobs' --jobs 0
refused 'missing a value after --seed' --seed
refused 'unknown option --sed' --sed 4
refused '"file.scn" is too much' file.scn
exit $failed
