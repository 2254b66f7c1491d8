#!/bin/bash
# usage: record_test.sh BUILD_DIRECTORY ABI
# Records sessions in the stand-in and looks what is in the files.
set -u
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=../../../tools/session/wine_session.sh
. "$here/../../../tools/session/wine_session.sh"
test_session "$1" "$2" || exit 1

# record STATUS FILE.scn: into a settings folder of its own
record() {
    local name status
    name=$(basename "$2" .scn)
    mkdir -p "$work/$name"
    run_wine "$program" play "${where[@]}" --diagnostics --config-dir "Z:${work//\//\\}\\$name" \
        --trace "$work/$name.trace" "$2" 2>"$work/$name.messages"
    status=$?
    [ $status -eq "$1" ] && return
    echo "$name ends with $status:" >&2
    cat "$work/$name.messages" >&2
    exit 1
}
for name in typed answers once_more ten_minutes; do
    record 0 "$here/recorded/$name.scn"
done

# Whatever the host does not have, what the hands do is recorded, if there is a folder for it.
{
    printf 'ini flinderPopup=\nstart\n'
    for call in GetMAXHWnd GetActionManager GetCommandMode GetCUIFrameMgr GetViewport FindTable \
        GetAction GetICustButton GetSelNodeCount GetSelNode GetCommandStackSize GetSubObjectLevel \
        GetSnapState the_listener EnumChildWindows GetClassNameA SetWindowsHookExA GetDir; do
        printf 'fail %s\nscript "kvr_record true"\n' "$call"
        case $call in
            SetWindowsHookExA) told='*, ended because the system refused to have it look on' ;;
            GetDir) told='KarvelRecording could not be written' ;;
            *) told= ;;
        esac
        [ -z "$told" ] || printf 'expect …\nexpect listener "Karvel recording: %s\\n"\n' "$told"
        printf '%s\n' 'select Box001' 'move viewport.persp 20 20' 'key down alt' 'down right' \
            'move by 3 3' 'up right' 'key up alt' 'command 15' 'move viewport.persp 30 30' \
            'script "kvr_record false"' "fail $call off"
    done
    cat "$here/recorded/windows_that_go.scn"
} >"$work/no_host.scn"
record 0 "$work/no_host.scn"
record 3 "$here/recorded/crash.scn"

# The disk has no room for more: a file may have 20 KB. What changes in the host fills it.
{
    printf 'ini flinderPopup=\nstart\nscript "kvr_record true"\n'
    for i in $(seq 60); do
        state=$([ $((i % 2)) -eq 0 ] && echo off || echo on)
        for action in 230 380 480 2020 2030 2040; do echo "action 1 $action $state"; done
        for action in 07 08 09 33 34 35 36 87; do echo "action 2077580866 400$action $state"; done
        for id in 50067 50069 50073 50075 80000 80001 80002 80005; do
            echo "action 1259304063 $id $state"
        done
        if [ "$state" = on ]; then echo 'down left'; else echo 'up left'; fi
    done
    printf 'script "kvr_record false"\nexpect out true\nexpect nothing\n'
} >"$work/full_disk.scn"
(
    trap '' XFSZ
    ulimit -f 20
    record 0 "$work/full_disk.scn"
) || exit 1

# All of them are scenarios again, even those that were cut short.
run_wine "$program" play "${where[@]}" --strict --trace "$work/replays.trace" \
    "$work"/{typed,answers,ten_minutes,crash,full_disk}/KarvelRecording.scn || exit 1
/usr/bin/python3 "$here/record_test.py" "$work"
