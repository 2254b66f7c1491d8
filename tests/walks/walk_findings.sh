#!/bin/bash
# usage: walk_findings.sh BUILD_DIRECTORY
# Walks what walks have found before, each in its shortest form, with the checks of a walk.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../tools/session/wine_session.sh
. "$here/../../tools/session/wine_session.sh"
wine_session_ends_with_script
choose_build "$1" gnu

cd "$karvel_root" || exit 1
wine_session_begin null || exit 1
run_wine "$walks" play "${where[@]}" tests/walks/found/*.scn
