#!/bin/bash
# usage: walk.sh BUILD_DIRECTORY gnu|msvc OPTION...
# Random walks with one build of the plug-in; the options are those of ./dev fuzz.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../tools/session/wine_session.sh
. "$here/../../tools/session/wine_session.sh"
choose_build "$1" "$2"
shift 2
exec "$karvel_root/tools/session/run_under_wine.sh" "$walks" "${where[@]}" "$@"
