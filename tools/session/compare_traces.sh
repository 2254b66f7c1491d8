#!/bin/bash
# usage: compare_traces.sh NAME ABI.INPUT ABI.INPUT
# The same scenarios must give the same traces, whatever compiled the plug-in and however the input
# came.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
. "$root/tools/session/host_differences.sh"
one=$root/build/traces/$1.$2.trace
other=$root/build/traces/$1.$3.trace
for trace in "$one" "$other"; do
    if [ ! -s "$trace" ]; then
        echo "$trace is missing; the scenario tests write it: ./dev test" >&2
        exit 1
    fi
done
differences=$(host_differences "${3%%.*}")
if [ -n "$differences" ]; then
    kept=$(mktemp -d)
    trap 'rm -rf "$kept"' EXIT
    lines=$(sed -n 's/^line //p' <<<"$differences" | paste -sd '|')
    blocks=$(sed -n 's/^block //p' <<<"$differences" | paste -sd '|')
    for trace in "$one" "$other"; do
        grep -vE "${lines:-^$}" "$trace" |
            awk -v kept="$kept/${trace##*/}" -v blocks="${blocks:-^$}" '
                NR == FNR { word["# " $2] = $1; next }
                /^# .*\.scn$/ {
                    in_block = 0
                    to = kept
                    if (word[$0] == "without") to = "/dev/null"
                    if (word[$0] ~ /differs|apart/) { to = $2; gsub("/", ":", to); to = kept "." to }
                }
                $0 ~ blocks { in_block = 1 }
                !in_block { print >to }
                /^ *out / { in_block = 0 }
            ' <(grep -E '^(without|differs|apart) ' <<<"$differences") -
    done
    one=$kept/${one##*/}
    other=$kept/${other##*/}
    for trace in "$one".tests:*; do
        [ -f "$trace" ] || continue
        file=${trace#"$one".}
        file=${file//:/\/}
        if files_of apart <<<"$differences" | grep -qxF "$file"; then
            cat "$trace" >>"$one"
            cat "$other${trace#"$one"}" >>"$other"
        elif cmp -s "$trace" "$other${trace#"$one"}"; then
            echo "$file is no different on this host: take it out of tests/scenarios/host_*.txt"
            exit 1
        fi
    done
    touch "$one" "$other"
fi
if ! difference=$(diff -u --label "$2" --label "$3" "$one" "$other"); then
    echo "the traces differ:"
    head -n 60 <<<"$difference"
    exit 1
fi
echo "$(wc -l <"$one") equal lines"
