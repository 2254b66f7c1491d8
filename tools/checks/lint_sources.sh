#!/bin/bash
# usage: lint_sources.sh [rooms|format|cppcheck|tidy|tidy-plugin]...
# Static checks: the first four without an argument. tidy-plugin is tidy over the plug-in alone,
# which takes a tenth of the time.
set -u
cd "$(dirname "$0")/../.." || exit 1

check_rooms() {
    tools/checks/check_rooms.py check
}

check_format() {
    tools/checks/format_sources.sh --check
}

check_cppcheck() {
    # Header names that cppcheck cannot find are the system's; it knows the functions by its own
    # lists. Unused functions cannot be told from entry points that the host calls. passedByValue:
    # points and vectors of two or three numbers are meant to be passed so. The leak checks: a
    # module that is loaded and not kept is meant to stay loaded. The sources of a folder are read as
    # one text: most of each are the same headers.
    tools/building/make_sdk.py 2012 build/lint/sdk-2012 || return
    local texts folder status
    texts=$(mktemp -d) || return
    # shellcheck disable=SC2046 # a list of words
    find $(tools/checks/check_rooms.py names) standin cmake/msvc_runtime -name '*.cpp' -printf '%h\n' |
        sort -u | while read -r folder; do
            printf '#include "%s"\n' "$PWD/$folder"/*.cpp >"$texts/${folder//\//+}.cpp"
        done
    cppcheck --quiet --error-exitcode=1 --inline-suppr --std=c++20 --language=c++ \
        --platform=win64 --library=windows -j "$(nproc)" \
        --enable=warning,performance,portability \
        --suppress=missingIncludeSystem --suppress=passedByValue \
        --suppress=leakNoVarFunctionCall --suppress=leakReturnValNotUsed \
        -I . -I build/lint/sdk-2012/include -D_WIN64 -D_WIN32 -D_CPPRTTI "$texts" &&
        echo "cppcheck finds nothing"
    status=$?
    rm -r "$texts"
    return "$status"
}

check_tidy() {
    tools/checks/run_tidy.py
}

check_tidy-plugin() {
    # shellcheck disable=SC2046 # a list of words
    tools/checks/run_tidy.py $(tools/checks/check_rooms.py names)
}

if [ $# -eq 0 ]; then set -- rooms format cppcheck tidy; fi
status=0
for check in "$@"; do
    case $check in
        rooms | format | cppcheck | tidy | tidy-plugin) "check_$check" || status=1 ;;
        *) echo "lint: there is no check '$check', there are rooms, format, cppcheck, tidy and tidy-plugin" >&2; exit 2 ;;
    esac
done
exit $status
