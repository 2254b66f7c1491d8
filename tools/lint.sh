#!/bin/bash
# usage: lint.sh [format|cppcheck|tidy|tidy-plugin]...
# Static checks: the first three without an argument. tidy-plugin is tidy over the plug-in alone,
# which takes a tenth of the time. clang-tidy's result for a file is kept until the
# file, a header or the list of checks changes, so a second run is short.
set -u
cd "$(dirname "$0")/.." || exit 1
root=$PWD

check_format() {
    tools/format.sh --check
}

check_cppcheck() {
    # Header names that cppcheck cannot find are the system's; it knows the functions by its own
    # lists. Unused functions cannot be told from entry points that the host calls. passedByValue:
    # points and vectors of two or three numbers are meant to be passed so. The leak checks: a
    # module that is loaded and not kept is meant to stay loaded.
    cppcheck --quiet --error-exitcode=1 --inline-suppr --std=c++20 --language=c++ \
        --platform=win64 --library=windows -j "$(nproc)" \
        --enable=warning,performance,portability \
        --suppress=missingIncludeSystem --suppress=passedByValue \
        --suppress=leakNoVarFunctionCall --suppress=leakReturnValNotUsed \
        -I . -I sdk/include -D_WIN64 -D_WIN32 -D_CPPRTTI \
        $(existing assists host navigation script settings shell standin cmake/msvc_runtime) &&
        echo "cppcheck finds nothing"
}

existing() {
    local directory
    for directory in "$@"; do
        if [ -d "$directory" ]; then echo "$directory"; fi
    done
}

# The plug-in and the host DLLs as the msvc build compiles them; the rest of the stand-in as the gnu
# build does, with the header directories that g++ finds by itself.
list_tidy_jobs() {
    python3 - "$root" <<'END'
import json, pathlib, sys
root = pathlib.Path(sys.argv[1])
seen = set()
for preset in ("msvc", "gnu"):
    database = root / "build" / preset / "compile_commands.json"
    if not database.exists():
        continue
    for entry in json.loads(database.read_text()):
        path = pathlib.Path(entry["file"])
        if root not in path.parents:
            continue
        name = path.relative_to(root)
        if name.parts[0] in ("build", "tests") or name in seen or name.suffix != ".cpp":
            continue
        seen.add(name)
        print(f"{preset} {name}")
END
}

tidy_one() {
    local preset=$1 file=$2 cache=$root/build/lint extra=() key kept
    if [ "$preset" = gnu ]; then
        local headers
        headers=$(readlink -f "$(x86_64-w64-mingw32-g++-posix -print-file-name=include/c++)")
        extra=(--extra-arg=--target=x86_64-w64-mingw32 --extra-arg=-nostdinc++
            "--extra-arg=-isystem$headers" "--extra-arg=-isystem$headers/x86_64-w64-mingw32"
            --extra-arg=-isystem/usr/x86_64-w64-mingw32/include)
    fi
    key=$(cat .clang-tidy "$file" "$cache/headers" | sha256sum | cut -d' ' -f1)
    kept=$cache/${file//\//+}.$preset
    if [ "$(cat "$kept" 2>/dev/null)" = "$key" ]; then return 0; fi
    if clang-tidy-19 --quiet -p "build/$preset" "${extra[@]}" "$file" >"$kept.log" 2>&1; then
        echo "$key" >"$kept"
    else
        grep -v -E '^[0-9]+ warnings? |^Suppressed|^Use -header' "$kept.log"
        return 1
    fi
}
export -f tidy_one
export root

check_tidy() {
    mkdir -p build/lint
    # One sum over all headers: which file includes which is not worth knowing here.
    find assists host navigation script settings shell standin sdk -name '*.h' -type f |
        sort | xargs sha256sum | sha256sum >build/lint/headers
    list_tidy_jobs | grep -E "${1:-.}" >build/lint/jobs
    if [ ! -s build/lint/jobs ]; then
        echo "there is no list of compile commands: ./dev build" >&2
        return 1
    fi
    if ! xargs -P "$(nproc)" -L 1 bash -c 'tidy_one "$0" "$1"' <build/lint/jobs; then
        return 1
    fi
    echo "clang-tidy finds nothing in $(wc -l <build/lint/jobs) files"
}

check_tidy-plugin() {
    check_tidy '^[a-z]+ (host|shell|navigation|assists|settings|script)/'
}

if [ $# -eq 0 ]; then set -- format cppcheck tidy; fi
status=0
for check in "$@"; do
    case $check in
        format | cppcheck | tidy | tidy-plugin) "check_$check" || status=1 ;;
        *) echo "lint: there is no check '$check', there are format, cppcheck, tidy and tidy-plugin" >&2; exit 2 ;;
    esac
done
exit $status
