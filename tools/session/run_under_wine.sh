#!/bin/bash
# usage: run_under_wine.sh PROGRAM.exe ARGUMENT...
# Runs a program of the build under Wine without a display; its output and status become this
# script's. Inside a session of ./dev it takes a few hundredths of a second.
set -u
. "$(dirname "$0")/wine_session.sh"
wine_session_ends_with_script
wine_session_begin null || exit 1
run_wine "$@"
