# shellcheck shell=bash disable=SC2154  # build, given and later_hosts are the caller's
# To be sourced by ./dev: one ctest run over all builds, and how scenarios are played in it.

# write_test_directory: what ctest reads, in $build/tests. Scenarios are played in rooms, which takes less
# time, unless a name asks for an area; and with one of the later hosts, unless those are asked for
# (cmake/scenarios.cmake). --host leaves the tests with the label of that host.
write_test_directory() {
    local preset scenarios=rooms file=$build/tests/CTestTestfile.cmake host=${given[--host]:-}
    if [ -n "$host" ]; then passed+=(-L "^host-$host\$"); fi
    # The tests to be run again are known by their numbers in the run before.
    if [[ -n ${given[--rerun-failed]:-}${given[-F]:-} && -f $file ]]; then return; fi
    if [ -n "${given[-R]:-}${given[--tests-regex]:-}" ]; then scenarios=; fi
    if [[ ${given[-L]:-}${given[--label-regex]:-} == *hosts* || ${host:-2012} != 2012 ]]; then
        scenarios+=_hosts
    fi
    mkdir -p "$build/tests"
    {
        # -C goes before it.
        echo 'if(NOT CTEST_CONFIGURATION_TYPE)'
        echo "  set(CTEST_CONFIGURATION_TYPE \"$scenarios\")"
        echo 'endif()'
        for preset in native gnu msvc $(printf 'msvc-%s ' $later_hosts); do
            echo "subdirs(\"$build/$preset\")"
        done
    } >"$file"
}
