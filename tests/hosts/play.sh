#!/bin/bash
# usage: play.sh BUILD_DIRECTORY GENERATION
# Plays what hosts before this generation do not have: the scenarios of the folder of its name, and of
# those of the later hosts before it.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../tools/session/wine_session.sh
. "$here/../../tools/session/wine_session.sh"
wine_session_ends_with_script
choose_build "$1" "msvc-$2"
wine_session_begin null || exit 1
files=()
for folder in "$here"/20*/; do
    if [ "$(basename "$folder")" -le "$2" ]; then files+=("$folder"*.scn); fi
done
run_wine "$program" play "${where[@]}" --strict --trace /dev/null "${files[@]}"
