#!/bin/bash
# usage: calls_test.sh BUILD_DIRECTORY...
# Holds the calls of the built plug-in, that of 2012 first, against the names that `fail` takes.
set -u
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
names=$(mktemp "${TMPDIR:-/tmp}/karvel-names.XXXXXX")
trap 'rm -f "$names"' EXIT
"$root/tools/session/run_under_wine.sh" "$root/build/gnu/bin/standin.exe" faults >"$names" || exit 1
/usr/bin/python3 "$here/calls_test.py" "$names" "${@/%//plugin/KarvelMax.gup}"
