#!/bin/bash
# usage: settings_file_test.sh BUILD_DIRECTORY ABI
# Puts unusual settings files behind the windows and looks at what the plug-in makes of them and
# what is left of them.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../../tools/session/wine_session.sh
. "$here/../../../tools/session/wine_session.sh"
test_session "$1" "$2" || exit 1

/usr/bin/python3 "$here/settings_file_test.py" prepare "$work" || exit 1
for folder in "$work"/*/; do
    folder=${folder%/}
    run_wine "$program" play "${where[@]}" \
        --config-dir "Z:${folder//\//\\}" --trace "$folder.trace" "$here/settings_file.scn"
    echo $? >"$folder.status"
done
/usr/bin/python3 "$here/settings_file_test.py" check "$work"
