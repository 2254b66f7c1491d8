#!/bin/bash
# usage: compare_traces.sh AREA ABI.INPUT ABI.INPUT
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
if ! difference=$(diff -u --label "$2" --label "$3" "$one" "$other"); then
    echo "the traces differ:"
    head -n 60 <<<"$difference"
    exit 1
fi
echo "$(wc -l <"$one") equal lines"
