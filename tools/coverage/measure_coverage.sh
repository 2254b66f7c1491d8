#!/bin/bash
# usage: measure_coverage.sh prepare|measure
# Line and branch coverage of the plug-in's sources by the tests that execute them: scenarios with
# virtual input, unit and hook tests, the tests of the windows and the entry points, all in the gnu
# build. Inside a Wine session. The pages go to build/coverage/report. Fails when the figures are
# below the aims (report_coverage.py).
set -u
here=$(cd "$(dirname "$0")" && pwd)
cd "$here/../.." || exit 1
built=$PWD/build/coverage

case ${1:-} in
    prepare)
        # Counts of an earlier build would be added to the new ones.
        if [ -d "$built" ]; then find "$built" -name '*.gcda' -delete; fi
        ;;
    measure)
        # One process at a time: two would overwrite each other's counts. The real input scenarios
        # execute the same lines again; what is left out besides does not load the plug-in, or needs
        # the msvc build.
        ctest --test-dir "$built" --output-on-failure --no-tests=error \
            -L 'virtual|hook|unit|abi|dialog|fault' -E 'runtime_test|walk_test|parser_test|map_test' \
            </dev/null >"$built/ctest.log" 2>&1 7>&- 8>&- 9>&- || {
            tail -n 60 "$built/ctest.log" >&2
            echo "coverage: a test fails" >&2
            exit 1
        }
        mkdir -p "$built/report"
        filters=()
        for directory in $(tools/checks/check_rooms.py names); do
            filters+=(--filter "$PWD/$directory/")
        done
        # The report plug-in is another file, which these tests do not load.
        # Branches that the compiler makes for exceptions, and those of code that it knows is never
        # reached, are nobody's decisions.
        gcovr --root "$PWD" --object-directory "$built" "${filters[@]}" \
            --gcov-executable x86_64-w64-mingw32-gcov-posix \
            --exclude 'report/' --exclude 'host/(inspection|watching)' \
            --exclude-throw-branches --exclude-unreachable-branches \
            --html-details "$built/report/index.html" --json "$built/report/report.json" \
            "$built" >"$built/report/gcovr.log" 2>&1 || {
            tail -n 20 "$built/report/gcovr.log" >&2
            echo "coverage: gcovr fails" >&2
            exit 1
        }
        status=0
        tools/coverage/report_coverage.py "$built/report/report.json" \
            tools/coverage/exceptions.txt || status=$?
        echo "pages: $built/report/index.html"
        exit "$status"
        ;;
    *)
        echo "usage: measure_coverage.sh prepare|measure" >&2
        exit 2
        ;;
esac
