#!/bin/bash
# Unpacks the archive, copies the plug-in into a plugins folder as INSTALL.txt says, and plays the
# tour's scenarios with it: what a user downloads works, without the rest of the build beside it.
set -u
. "$(dirname "$0")/../../tools/session/wine_session.sh"

directory=$(mktemp -d "${TMPDIR:-/tmp}/karvel-installed.XXXXXX")
wine_session_ends_with_script "rm -rf '$directory'"

cd "$directory" || exit 1
"$karvel_root/tests/package/complete_builds.py" "$karvel_root/build" builds || exit 1
"$karvel_root/tools/package/make_package.py" --builds builds --output package.zip || exit 1
/usr/bin/python3 -m zipfile -e package.zip unpacked || exit 1
(cd unpacked/KarvelMax && sha256sum --quiet -c SHA256SUMS) || exit 1
mkdir -p host/plugins
cp unpacked/KarvelMax/2012/KarvelMax.gup host/plugins/
cp "$karvel_root"/build/msvc/host/*.dll host/

wine_session_begin null || exit 1
run_wine "$karvel_root/build/gnu/bin/standin.exe" play --input real --abi msvc \
    --host-dir "$directory/host" --plugin "$directory/host/plugins/KarvelMax.gup" \
    --trace "$directory/tour.trace" "$karvel_root"/standin/player/tour/*.scn || exit
# What the plug-in kept to itself is there.
grep -q '^out swallow' tour.trace
