#!/bin/bash
# usage: compare_traces.sh NAME ABI.INPUT ABI.INPUT
# The same scenarios must give the same traces, whatever compiled the plug-in and however the input
# came.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
one=$root/build/traces/$1.$2.trace
other=$root/build/traces/$1.$3.trace
for trace in "$one" "$other"; do
    if [ ! -s "$trace" ]; then
        echo "$trace is missing; the scenario tests write it: ./dev test" >&2
        exit 1
    fi
done
# What a later host does not have, with the reasons, is not compared.
host=${3%%.*}
differences=$root/tests/scenarios/host_${host#msvc-}.txt
if [ -f "$differences" ]; then
    kept=$(mktemp -d)
    trap 'rm -rf "$kept"' EXIT
    lines=$(sed -n 's/^line //p' "$differences" | paste -sd '|')
    blocks=$(sed -n 's/^block //p' "$differences" | paste -sd '|')
    for trace in "$one" "$other"; do
        awk -v blocks="${blocks:-^$}" '
             NR == FNR { if ($1 == "without") left_out["# " $2]; next }
             /^# .*\.scn$/ { skipped = $0 in left_out; in_block = 0 }
             $0 ~ blocks { in_block = 1 }
             !skipped && !in_block
             /^ *out / { in_block = 0 }' "$differences" "$trace" |
            grep -vE "$lines" >"$kept/${trace##*/}"
    done
    one=$kept/${one##*/}
    other=$kept/${other##*/}
fi
if ! difference=$(diff -u --label "$2" --label "$3" "$one" "$other"); then
    echo "the traces differ:"
    head -n 60 <<<"$difference"
    exit 1
fi
echo "$(wc -l <"$one") equal lines"
