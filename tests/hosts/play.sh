#!/bin/bash
# usage: play.sh BUILD_DIRECTORY GENERATION
# Plays what only the hosts of this generation have: the scenarios of the folder of its name.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../tools/session/wine_session.sh
. "$here/../../tools/session/wine_session.sh"
wine_session_ends_with_script
choose_build "$1" "msvc-$2"
wine_session_begin null || exit 1
run_wine "$program" play "${where[@]}" --strict --trace /dev/null "$here/$2"/*.scn
