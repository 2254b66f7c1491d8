# shellcheck shell=bash
# To be sourced. A Wine session is a prefix with its processes running:
#
#   wine_session_begin null              no display; several users share it
#   wine_session_begin x11 WxH           a virtual X display of that size; one user at a time
#   wine_session_begin x11 existing      the display in $DISPLAY; one user at a time
#   run_wine PROGRAM.exe ARGUMENT...     runs a program in it; its output and status are run_wine's
#   run_wine_live PROGRAM.exe ...        the same, with its output shown while it runs
#   wine_session_end                     the last user ends the processes; a virtual display too
#   wine_session_ends_with_script        sees to it that the script ends the session
#   wine_sessions_end_unused             ends what killed users have left
#   choose_build BUILD_DIRECTORY ABI     what the stand-in is to load
#   test_session BUILD_DIRECTORY ABI     a session without a display, for the script of a test
#
# There are as many sessions without a display as anybody wants, each on a processor of its own as far
# as there are processors: ctest says which, from 0, for a test that asks it for one (cmake/tests.cmake),
# KARVEL_LANE for others. A script that is called inside a session joins it: KARVEL_HELD_SESSIONS names
# those that a caller holds.

karvel_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
karvel_wine=/usr/lib/wine/wine64
karvel_wineserver=/usr/lib/wine/wineserver64
# Wine finds its server through $TMPDIR, which therefore is the same for all who share one.
karvel_wine_folder=$karvel_root/build/wine-tmp
karvel_prefix=$karvel_root/build/wine-prefix
# What the prefixes are copies of; nothing runs in these.
karvel_made=$karvel_root/build/wine-made
karvel_session_owned=
karvel_x_server=
karvel_program=
karvel_processor=0

wine_session_begin() {
    local graphics=$1 screen=${2:-} lane=${CTEST_RESOURCE_GROUP_0_WINE:-id:${KARVEL_LANE:-0},} name
    lane=${lane#id:}
    lane=${lane%%,*}

    mkdir -p "$karvel_wine_folder"
    export WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all}
    export WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe="
    karvel_processor=$(karvel_processor_of "$lane")
    if [ "$graphics" = x11 ]; then lane=display; fi
    name=$graphics-$lane
    export WINEPREFIX=$karvel_prefix-$lane
    if [ "$graphics" = null ]; then unset DISPLAY; fi

    if [[ " ${KARVEL_HELD_SESSIONS:-} " == *" $name "* ]]; then return 0; fi

    karvel_make_prefix "$graphics" || return 1

    # Descriptor 8 holds the session. It must not leak into Wine's processes, which would go on
    # holding it.
    exec 8>"$WINEPREFIX.users"
    if [ "$graphics" = x11 ]; then
        if ! flock -n -x 8; then
            echo "waiting: another ./dev run, or a test with a display, has the session" >&2
            flock -x 8
        fi
        karvel_end_leftovers "$WINEPREFIX"
        if [ "$screen" != existing ]; then
            karvel_start_x_server "$screen" || return 1
        fi
    else
        if flock -n -x 8; then karvel_end_leftovers "$WINEPREFIX"; fi
        flock -s 8
    fi
    karvel_session_owned=$name
    export KARVEL_HELD_SESSIONS="${KARVEL_HELD_SESSIONS:-} $name"
    karvel_start_keep_alive
}

# karvel_processor_of LANE: the processors that this process may use, in turn.
karvel_processor_of() {
    local range first last processors=()
    while read -r range; do
        IFS=- read -r first last <<<"$range"
        mapfile -t -O ${#processors[@]} processors < <(seq "$first" "${last:-$first}")
    done < <(taskset -cp $BASHPID | sed 's/.*: //' | tr , '\n')
    echo "${processors[$1 % ${#processors[@]}]}"
}

# wine_session_ends_with_script [COMMAND]: the session ends however the script ends, and COMMAND runs
# after it.
wine_session_ends_with_script() {
    # shellcheck disable=SC2064  # the command is known now
    trap "wine_session_end; ${1:-}" EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM
}

# choose_build BUILD_DIRECTORY gnu|msvc|msvc-GENERATION: sets `program` to the stand-in and `walks` to the
# program of the walks, which are always the gnu build's, and `where` to the options that name what
# they load.
choose_build() {
    local built=$1 abi=$2
    local programs=$karvel_root/build/gnu
    if [ "$abi" = gnu ]; then programs=$built; fi
    program=$programs/bin/standin.exe
    # shellcheck disable=SC2034  # for the caller
    walks=$programs/walks/walks.exe
    # shellcheck disable=SC2034  # for the caller
    where=(--abi "${abi%%-*}" --host-dir "$built/host"
        --plugin "$built/plugin/KarvelMax.gup" --map "$built/plugin/KarvelMax.map")
}

# test_session BUILD_DIRECTORY ABI: begins a session that ends with the script, chooses the build, and
# sets `work` to a folder that goes with the script as well.
test_session() {
    work=$(mktemp -d "${TMPDIR:-/tmp}/karvel-test.XXXXXX")
    wine_session_ends_with_script "rm -rf '$work'"
    choose_build "$1" "$2"
    wine_session_begin null
}

wine_session_end() {
    # After a signal the program may still be running, in a session that others go on using.
    if [ -n "$karvel_program" ]; then
        kill "$karvel_program" 2>/dev/null || true
        karvel_program=
    fi
    if [ -z "$karvel_session_owned" ]; then return 0; fi
    karvel_session_owned=
    # Only the last user gets the lock for itself alone.
    if flock -n -x 8; then
        karvel_without_locks "$karvel_wineserver" -k >/dev/null 2>&1 || true
        karvel_without_locks timeout 60 "$karvel_wineserver" -w >/dev/null 2>&1 || true
        karvel_end_leftovers "$WINEPREFIX"
    fi
    if [ -n "$karvel_x_server" ]; then
        kill "$karvel_x_server" 2>/dev/null || true
        wait "$karvel_x_server" 2>/dev/null || true
        karvel_x_server=
    fi
    exec 8>&-
}

# Wine's helpers may outlive the program and keep its output open, so a pipe behind it would never
# end: the output goes to files first.
run_wine() {
    local out err status=0
    out=$(mktemp "$WINEPREFIX.out.XXXXXX")
    err=$(mktemp "$WINEPREFIX.err.XXXXXX")
    local tries=0
    # Seldom Wine does not get a program going at all. Ours never end in failure without a word, so
    # nothing was begun then and starting again is safe.
    while :; do
        status=0
        karvel_start_program "$out" "$err" "$@"
        wait "$karvel_program" || status=$?
        karvel_program=
        tries=$((tries + 1))
        if [ "$status" = 0 ] || [ -s "$out" ] || [ -s "$err" ] || [ "$tries" = 3 ]; then
            break
        fi
    done
    cat "$out"
    cat "$err" >&2
    if [ "$status" = 0 ] && karvel_says_crash "$err"; then status=5; fi
    rm -f "$out" "$err"
    return "$status"
}

# Wine's debugger ends a program that has crashed, now and then with the status of one that is well.
karvel_says_crash() {
    grep -q '^wine: Unhandled ' "$1"
}

# As run_wine, but its standard output is shown while it runs.
run_wine_live() {
    local out err status=0 reader
    out=$(mktemp "$WINEPREFIX.out.XXXXXX")
    err=$(mktemp "$WINEPREFIX.err.XXXXXX")
    karvel_start_program "$out" "$err" "$@"
    tail -n +1 -s 0.1 -f --pid="$karvel_program" "$out" 6>&- 7>&- 8>&- 9>&- &
    reader=$!
    wait "$karvel_program" || status=$?
    karvel_program=
    wait "$reader" || true
    cat "$err" >&2
    if [ "$status" = 0 ] && karvel_says_crash "$err"; then status=5; fi
    rm -f "$out" "$err"
    return "$status"
}

# In the background, so that the shell can answer a signal at once instead of after the program.
# One processor: what Wine and its server hand to each other then needs no second one to wake up,
# which makes injected input ten times as fast.
karvel_start_program() {
    local out=$1 err=$2
    shift 2
    (
        exec 6>&- 7>&- 8>&- 9>&-
        TMPDIR=$karvel_wine_folder exec taskset -c "$karvel_processor" "$karvel_wine" "$@" </dev/null >"$out" 2>"$err"
    ) &
    karvel_program=$!
}

karvel_without_locks() {
    TMPDIR=$karvel_wine_folder "$@" 6>&- 7>&- 8>&- 9>&-
}

wine_sessions_end_unused() {
    local users
    for users in "$karvel_prefix"*.users; do
        karvel_if_unused "$users" karvel_end_leftovers "${users%.users}"
    done
    # Prefixes that are not complete.
    karvel_if_unused "$karvel_made.lock" karvel_remove_partial
}

karvel_if_unused() {
    if [ ! -e "$1" ]; then return 0; fi
    (
        exec 8>"$1"
        if flock -n -x 8; then "${@:2}"; fi
    )
}

karvel_remove_partial() {
    karvel_end_leftovers "$karvel_made.partial"
    rm -rf "$karvel_made.partial"*
}

# karvel_end_leftovers PREFIX: ends the Wine processes and the display of a session without a user.
# When their server was killed Wine's own processes sleep for ever.
karvel_end_leftovers() {
    local process found=yes socket
    while [ -n "$found" ]; do
        found=
        for process in $(karvel_processes_with "WINEPREFIX=$1"); do
            if [[ $(readlink "/proc/$process/exe") == /usr/lib/wine/* ]]; then
                if kill -KILL "$process" 2>/dev/null; then found=yes; fi
            fi
        done
    done
    karvel_signal TERM "KARVEL_DISPLAY_OF=$1"
    if socket=$(cat "$1.display" 2>/dev/null); then
        # One that was killed leaves its socket.
        if ! grep -qF "$socket" /proc/net/unix; then rm -f "$socket"; fi
    fi
    rm -f "$1"/drive_c/users/*/Temp/walk-*.scn "$1".out.* "$1".err.*
}

# karvel_processes_with NAME=VALUE: those that were started with it in their environment.
karvel_processes_with() {
    grep -lzxF -- "$1" /proc/[0-9]*/environ 2>/dev/null | tr -cd '0-9\n'
}

# karvel_signal SIGNAL NAME=VALUE: fails when there is no such process.
karvel_signal() {
    local processes
    processes=$(karvel_processes_with "$2")
    # shellcheck disable=SC2086  # a list
    [ -n "$processes" ] && kill -"$1" $processes 2>/dev/null
}

# karvel_make_prefix null|x11: $WINEPREFIX, where it is not there or made by another version of the script.
karvel_make_prefix() {
    local made=$karvel_made-$1 stamp
    local here=$karvel_root/tools/session
    stamp=$(cat "$here/make_wine_prefixes.sh" "$here/keep_alive.c" | cksum)
    if karvel_has_stamp "$WINEPREFIX"; then return 0; fi
    (
        flock -x 7
        if karvel_has_stamp "$WINEPREFIX"; then exit 0; fi
        if ! karvel_has_stamp "$made"; then
            karvel_without_locks "$here/make_wine_prefixes.sh" "$karvel_made" ||
                { echo "the Wine prefix $karvel_made cannot be made" >&2; exit 1; }
            echo "$stamp" | tee "$karvel_made-null/karvel-stamp" >"$karvel_made-x11/karvel-stamp"
        fi
        # Nobody may be using the old one while it is replaced.
        exec 8>"$WINEPREFIX.users"
        flock -x 8
        rm -rf "$WINEPREFIX" "$karvel_made.partial-copy"
        karvel_copy_prefix "$made" "$karvel_made.partial-copy" &&
            mv "$karvel_made.partial-copy" "$WINEPREFIX"
    ) 7>"$karvel_made.lock"
}

karvel_has_stamp() {
    [ "$(cat "$1/karvel-stamp" 2>/dev/null)" = "$stamp" ]
}

# The system's own files are shared between prefixes; what Wine writes to is not.
karvel_copy_prefix() {
    cp -al "$1" "$2" || return
    find "$2" -type f \( -name '*.reg' -o -name '*.ini' \) -print0 |
        while IFS= read -r -d '' file; do
            cp -p "$file" "$file.own" && mv "$file.own" "$file" || return
        done
}

karvel_start_keep_alive() {
    # A second one in the same session does no harm, so nobody needs to ask for the first.
    (
        exec 6>&- 7>&- 8>&- 9>&-
        TMPDIR=$karvel_wine_folder exec setsid taskset -c "$karvel_processor" "$karvel_wine" 'C:\keep_alive.exe' 3600 \
            </dev/null >/dev/null 2>&1
    ) &
    disown
}

karvel_start_x_server() {
    local number=
    # The server picks a free number itself and writes it when it is ready to serve.
    exec 6< <(exec 6>&- 7>&- 8>&- 9>&-
        KARVEL_DISPLAY_OF=$WINEPREFIX exec Xvfb -displayfd 1 -screen 0 "$1x24" -nolisten tcp </dev/null 2>/dev/null)
    karvel_x_server=$!
    if ! read -r -t 20 number <&6; then
        echo "the virtual X display cannot be started" >&2
        return 1
    fi
    exec 6<&-
    export DISPLAY=:$number
    echo "/tmp/.X11-unix/X$number" >"$WINEPREFIX.display"
}
