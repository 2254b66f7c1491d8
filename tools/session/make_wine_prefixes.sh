#!/bin/bash
# usage: make_wine_prefixes.sh DIRECTORY
# Makes two 64-bit Wine prefixes in which programs behave the same every time: DIRECTORY-null has no
# display at all, DIRECTORY-x11 draws on $DISPLAY.
set -eu

directory=$1
here=$(cd "$(dirname "$0")" && pwd)
. "$here/wine_session.sh"
wine=$karvel_wine
wineserver=$karvel_wineserver

export WINEARCH=win64 WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe="
# Where the servers of all of them can be found (wine_session.sh).
export TMPDIR=$karvel_wine_folder
unset DISPLAY

# Built beside its place and moved there when complete: an interrupted run leaves no half prefix.
partial=$directory.partial
rm -rf "$partial"*
mkdir -p "$TMPDIR"
export WINEPREFIX=$partial
trap '"$wineserver" -k >/dev/null 2>&1 || true' EXIT

set_value() {
    "$wine" reg add "$@" /f >/dev/null 2>&1 </dev/null
}

"$wine" wineboot -i >/dev/null 2>&1 </dev/null
# Debian's Wine does not look into the folder of its own font package; without Tahoma the dialogs
# come out wider than on Windows. There the dialog font is Sans Serif, in which texts are a tenth
# narrower than in Tahoma, Wine's choice: the welcome window's lines fit in the one only.
cp /usr/share/wine/fonts/*.ttf /usr/share/wine/fonts/sserife.fon "$partial/drive_c/windows/Fonts/"
set_value 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\FontSubstitutes' \
    /v 'MS Shell Dlg' /d 'MS Sans Serif'
x86_64-w64-mingw32-gcc-posix -Os -s -static -mwindows -o "$partial/drive_c/keep_alive.exe" \
    "$here/keep_alive.c"
# A crash ends the program instead of showing a dialog that nobody can answer.
set_value 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0
# Relative mouse movements arrive as they were sent.
set_value 'HKCU\Control Panel\Mouse' /v MouseSpeed /d 0
set_value 'HKCU\Control Panel\Mouse' /v MouseThreshold1 /d 0
set_value 'HKCU\Control Panel\Mouse' /v MouseThreshold2 /d 0
# Under X there is no window manager: Wine draws title bars itself, and the cursor is its own.
set_value 'HKCU\Software\Wine\X11 Driver' /v Managed /d N
set_value 'HKCU\Software\Wine\X11 Driver' /v UseXInput2 /d N
set_value 'HKCU\Software\Wine\Drivers' /v Graphics /d x11
"$wineserver" -k || true
"$wineserver" -w

karvel_copy_prefix "$partial" "$partial-x11"
set_value 'HKCU\Software\Wine\Drivers' /v Graphics /d null
"$wineserver" -k || true
"$wineserver" -w

# Half removed they are none.
rm -f "$directory"-*/karvel-stamp
rm -rf "$directory-null" "$directory-x11"
mv "$partial-x11" "$directory-x11"
mv "$partial" "$directory-null"
