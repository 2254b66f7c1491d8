#!/bin/bash
# Unpacks the archive, copies the plug-in into a plugins folder as INSTALL.txt says, and plays the
# tour with it: what a user downloads works, without the rest of the build beside it.
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
run_wine "$karvel_root/build/gnu/bin/standin.exe" tour --out "$directory/tour" --abi msvc \
    --host-dir "$directory/host" --plugin "$directory/host/plugins/KarvelMax.gup" >tour.txt || {
    status=$?
    cat tour.txt
    exit "$status"
}
# The tour tells at its end how many events the plug-in kept to itself.
tail -n 3 tour.txt
grep -q 'events were injected' tour.txt || exit 1

# The moving picture, small enough for a page, with nothing left of its steps.
"$karvel_root/tools/artwork/make_tour_gif.sh" "$directory/tour" || exit 1
size=$(stat -c %s "$directory/tour/tour.gif") || exit 1
if [ "$size" -gt 1048576 ] || [ "$size" -lt 100000 ]; then
    echo "tour.gif has $size bytes"
    exit 1
fi
if ls "$directory"/tour/film-*.png 2>/dev/null; then exit 1; fi
