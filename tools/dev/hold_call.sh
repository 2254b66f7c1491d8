# shellcheck shell=bash disable=SC2154  # root and build are the caller's
# To be sourced. A call of ./dev from its beginning to its end, however it ends.
#
# A call has a record in build/calls that names its folder for temporary files, and holds the lock of
# this file as long as it lives. What it starts carries the record's name in its environment. A record
# whose lock is free is that of a call that was killed: a process that waits for this lock ends what
# the call has started and removes what it has left; when that is killed too, the next call does it.

calls=$build/calls
temporary=${TMPDIR:-/tmp}

# supervise ARGUMENT...: ./dev with these arguments as a process of its own, so that a signal is
# answered at once whatever is running; its status becomes ours.
supervise() {
    local status=0
    [ -e /dev/fd/0 ] || exec </dev/null
    begin_call
    trap end_call EXIT
    trap 'exit 129' HUP
    trap 'exit 130' INT
    trap 'exit 143' TERM
    KARVEL_CALL=$call TMPDIR=$call_folder "$root/dev" "$@" <&0 {call_lock}>&- &
    wait $! || status=$?
    if [ $status -ne 0 ]; then
        (complain_unwritable "$build" "the build folder $build")
        (complain_unwritable "$call_folder" "TMPDIR, $temporary,")
    fi
    exit "$status"
}

inside_call() {
    [[ ${KARVEL_CALL:-} == "$calls"/* && -e ${KARVEL_CALL:-} ]]
}

begin_call() {
    local gate reason
    reason=$(mkdir -p "$calls" 2>&1) || fail "the build folder $build cannot be written: ${reason##*: }"
    complain_unwritable "$build" "the build folder $build"
    exec {gate}>"$calls.lock"
    flock -x "$gate"
    end_killed_calls {gate}>&-
    call_folder=$(cd -- "$temporary" 2>&1 && mktemp -d "$PWD/karvel-XXXXXX" 2>&1) ||
        fail "TMPDIR, $temporary, cannot be written: ${call_folder##*: }"
    (complain_unwritable "$call_folder" "TMPDIR, $temporary,") || { rm -rf "$call_folder"; exit 1; }
    call=$(mktemp "$calls/XXXXXX") || exit 1
    echo "$call_folder" >"$call"
    exec {call_lock}<"$call"
    flock -x "$call_lock"
    exec {gate}>&-
    env -u KARVEL_CALL setsid "$root/tools/dev/end_killed_calls.sh" "$call" \
        </dev/null >/dev/null 2>&1 {call_lock}>&- &
    call_watch=$!
    disown
}

end_call() {
    trap '' HUP INT TERM
    kill -- "-$call_watch" 2>/dev/null
    end_what_belongs_to "$call"
}

# Ends the calls whose lock is free.
end_killed_calls() {
    local record lock
    for record in "$calls"/*; do
        [ -e "$record" ] || continue
        exec {lock}<"$record"
        if flock -n -x "$lock"; then end_what_belongs_to "$record"; fi
        exec {lock}<&-
    done
    wine_sessions_end_unused
}

# end_what_belongs_to RECORD: its processes, Wine sessions that nobody else uses, its files.
end_what_belongs_to() {
    local record=$1 folder
    karvel_signal TERM "KARVEL_CALL=$record"
    for _ in 1 2 3 4 5 6 7; do
        [ -n "$(karvel_processes_with "KARVEL_CALL=$record")" ] || break
        sleep 0.1
    done
    # One that is just starting another is seen with the next look.
    for _ in 1 2 3; do karvel_signal KILL "KARVEL_CALL=$record" || break; done
    # An installation of packages is asked, never forced: half a package is worse than a process.
    karvel_signal TERM "KARVEL_INSTALLS=$record"
    wine_sessions_end_unused
    folder=$(cat "$record")
    if [[ $folder == */karvel-?????? ]]; then rm -rf "$folder"; fi
    rm -f "$record"
}

# complain_unwritable FOLDER WHAT: what cannot be written is named.
complain_unwritable() {
    local probe=$1/karvel-probe reason
    reason=$({ head -c 65536 /dev/zero >"$probe"; } 2>&1) || fail "$2 cannot be written: ${reason##*: }"
    rm -f "$probe"
}
