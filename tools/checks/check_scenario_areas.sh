#!/bin/bash
# Every directory of scenarios must be listed in tests/scenarios/CMakeLists.txt, or nobody plays it.
set -u
cd "$(dirname "$0")/../../tests/scenarios" || exit 1
status=0
for directory in */; do
    area=${directory%/}
    if [ -n "$(find "$area" -name '*.scn' -print -quit)" ] &&
        ! grep -q -E "^ *karvel_scenarios\($area( |\))" CMakeLists.txt; then
        echo "tests/scenarios/CMakeLists.txt:1: $area is not listed, add karvel_scenarios($area)"
        status=1
    fi
done
exit $status
