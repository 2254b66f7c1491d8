# Scenarios as tests; the traces of all builds must agree. To begin takes as long as to play ten of
# them, so a run of all tests plays a room of areas in one go: ctest's configuration `rooms`. Without a
# configuration each area is a test of its own, for ./dev test -R. `_hosts` after either (rooms_hosts,
# _hosts) plays all with each of the later hosts.

# karvel_play_test(TEST SCRIPT LABELS TIMEOUT USUAL ALL ARGUMENT...): a test that calls a script of
# tools/session, in the configurations USUAL and ALL.
function(karvel_play_test test script labels timeout usual all)
    add_test(NAME ${test} COMMAND ${CMAKE_SOURCE_DIR}/tools/session/${script} ${ARGN}
             CONFIGURATIONS "${usual}" "${all}"
             WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})
    karvel_test_properties(${test} "${timeout}" "${labels}")
    # The more areas, the longer.
    list(LENGTH ARGN cost)
    set_tests_properties(${test} PROPERTIES COST ${cost})
endfunction()

# The same scenarios with the plug-in and the host DLLs of this later generation; the trace must be that
# of the file that ships. One of the generations plays them in the usual run.
function(karvel_later_host_scenarios name usual all folders)
    get_property(played GLOBAL PROPERTY KARVEL_PLAYED${all})
    list(LENGTH played number)
    set_property(GLOBAL APPEND PROPERTY KARVEL_PLAYED${all} ${name})
    list(LENGTH KARVEL_LATER_HOSTS hosts)
    math(EXPR turn "${number} % ${hosts}")
    list(GET KARVEL_LATER_HOSTS ${turn} chosen)
    if(NOT chosen EQUAL KARVEL_SDK_GENERATION)
        set(usual ${all})
    endif()
    set(host msvc-${KARVEL_SDK_GENERATION})
    set(tests hosts.${KARVEL_SDK_GENERATION})
    karvel_play_test(${tests}.scenarios.${name} play_scenarios.sh "scenario;virtual;hosts" ""
        "${usual}" ${all} ${CMAKE_BINARY_DIR} ${host} virtual ${name} ${folders})
    set_property(TEST ${tests}.scenarios.${name} PROPERTY FIXTURES_SETUP trace.${name}.${host}.virtual)
    karvel_play_test(${tests}.traces.${name} compare_traces.sh "trace;hosts" 60
        "${usual}" ${all} ${name} msvc.virtual ${host}.virtual)
    set_property(TEST ${tests}.traces.${name} PROPERTY FIXTURES_REQUIRED
        trace.${name}.msvc.virtual trace.${name}.${host}.virtual)
endfunction()

# karvel_scenarios(NAME USUAL FOLDER... [INPUTS virtual|real...]): plays all scenarios of these folders of
# tests/scenarios with this build's plug-in, one Wine process per kind of input, and holds their
# expectations. The traces stay in build/traces for the comparison below. USUAL is `rooms` or nothing.
function(karvel_scenarios name usual)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "INPUTS")
    if(NOT KARVEL_ON_WINDOWS)
        return()
    endif()
    set(folders ${arg_UNPARSED_ARGUMENTS})
    set(all ${usual}_hosts)
    if(KARVEL_LATER_HOST)
        if(KARVEL_MSVC)
            karvel_later_host_scenarios(${name} "${usual}" ${all} "${folders}")
        endif()
        return()
    endif()
    if(NOT arg_INPUTS)
        set(arg_INPUTS virtual real)
    endif()
    foreach(input ${arg_INPUTS})
        set(test ${KARVEL_ABI}.scenarios.${name}.${input})
        karvel_play_test(${test} play_scenarios.sh "scenario;${input}" "" "${usual}" ${all}
            ${CMAKE_BINARY_DIR} ${KARVEL_ABI} ${input} ${name} ${folders})
        set_property(TEST ${test} PROPERTY FIXTURES_SETUP trace.${name}.${KARVEL_ABI}.${input})
    endforeach()

    # The msvc build holds the traces against each other: all must be equal to the one of the file
    # that ships under virtual input.
    if(KARVEL_MSVC)
        foreach(abi gnu msvc)
            foreach(input ${arg_INPUTS})
                if(NOT "${abi}.${input}" STREQUAL "msvc.virtual")
                    set(test traces.${name}.${abi}.${input})
                    karvel_play_test(${test} compare_traces.sh "trace" 60 "${usual}" ${all}
                        ${name} msvc.virtual ${abi}.${input})
                    set_property(TEST ${test} PROPERTY FIXTURES_REQUIRED
                        trace.${name}.msvc.virtual trace.${name}.${abi}.${input})
                endif()
            endforeach()
        endforeach()
    endif()
endfunction()
