#!/bin/bash
# usage: end_killed_calls.sh RECORD
# Waits until the call of ./dev with this record is over, and ends what it has left when it was killed.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
build=$root/build
. "$root/tools/session/wine_session.sh"
. "$root/tools/dev/hold_call.sh"

exec {lock}<"$1" || exit 0
flock -x "$lock"
exec {lock}<&-
exec {gate}>"$calls.lock"
flock -x "$gate"
end_killed_calls {gate}>&-
