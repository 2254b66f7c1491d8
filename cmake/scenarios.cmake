# Scenarios as tests: they are played in areas, and the traces of all builds must agree.

# karvel_later_host_scenarios(AREA [TIMEOUT SECONDS]): the same scenarios with the plug-in and the host
# DLLs of this later generation; the trace must be that of the file that ships. Each area is played by
# one of the generations in every run, by all of them with ./dev test -L hosts.
function(karvel_later_host_scenarios area)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "")
    set(host msvc-${KARVEL_SDK_GENERATION})
    get_property(areas GLOBAL PROPERTY KARVEL_AREAS)
    list(LENGTH areas number)
    set_property(GLOBAL APPEND PROPERTY KARVEL_AREAS ${area})
    list(LENGTH KARVEL_LATER_HOSTS hosts)
    math(EXPR turn "${number} % ${hosts}")
    list(GET KARVEL_LATER_HOSTS ${turn} chosen)
    set(only)
    if(NOT chosen EQUAL KARVEL_SDK_GENERATION)
        set(only CONFIGURATIONS hosts)
    endif()
    set(test hosts.${KARVEL_SDK_GENERATION}.scenarios.${area})
    add_test(NAME ${test}
             COMMAND ${CMAKE_SOURCE_DIR}/tools/session/play_scenarios.sh
                     ${CMAKE_BINARY_DIR} ${host} virtual ${area}
             ${only}
             WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})
    karvel_test_properties(${test} "${arg_TIMEOUT}" "scenario;virtual;hosts")
    set_property(TEST ${test} PROPERTY FIXTURES_SETUP trace.${area}.${host}.virtual)
    set(test hosts.${KARVEL_SDK_GENERATION}.traces.${area})
    add_test(NAME ${test}
             COMMAND ${CMAKE_SOURCE_DIR}/tools/session/compare_traces.sh
                     ${area} msvc.virtual ${host}.virtual
             ${only}
             WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})
    karvel_test_properties(${test} 60 "trace;hosts")
    set_property(TEST ${test} PROPERTY FIXTURES_REQUIRED
        trace.${area}.msvc.virtual trace.${area}.${host}.virtual)
endfunction()

# karvel_scenarios(AREA [INPUTS virtual|real...] [LABELS WORD...] [TIMEOUT SECONDS]): plays all
# scenarios of tests/scenarios/ROOM/AREA with this build's plug-in, one Wine process per kind of input,
# and holds their expectations. The traces stay in build/traces for the comparison below.
function(karvel_scenarios area)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "INPUTS;LABELS")
    if(NOT KARVEL_ON_WINDOWS)
        return()
    endif()
    if(KARVEL_LATER_HOST)
        if(KARVEL_MSVC)
            karvel_later_host_scenarios(${area} TIMEOUT "${arg_TIMEOUT}")
        endif()
        return()
    endif()
    if(NOT arg_INPUTS)
        set(arg_INPUTS virtual real)
    endif()
    foreach(input ${arg_INPUTS})
        set(test ${KARVEL_ABI}.scenarios.${area}.${input})
        add_test(NAME ${test}
                 COMMAND ${CMAKE_SOURCE_DIR}/tools/session/play_scenarios.sh
                         ${CMAKE_BINARY_DIR} ${KARVEL_ABI} ${input} ${area}
                 WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})
        karvel_test_properties(${test} "${arg_TIMEOUT}" "scenario;${input};${arg_LABELS}")
        set_property(TEST ${test} PROPERTY FIXTURES_SETUP trace.${area}.${KARVEL_ABI}.${input})
        set_property(GLOBAL APPEND PROPERTY KARVEL_TRACES_${area} ${KARVEL_ABI}.${input})
    endforeach()

    # The msvc build holds the traces against each other: all must be equal to the one of the file
    # that ships under virtual input.
    if(KARVEL_MSVC)
        foreach(abi gnu msvc)
            foreach(input ${arg_INPUTS})
                if(NOT "${abi}.${input}" STREQUAL "msvc.virtual")
                    set(test traces.${area}.${abi}.${input})
                    add_test(NAME ${test}
                             COMMAND ${CMAKE_SOURCE_DIR}/tools/session/compare_traces.sh
                                     ${area} msvc.virtual ${abi}.${input}
                             WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})
                    karvel_test_properties(${test} 60 "trace")
                    set_property(TEST ${test} PROPERTY FIXTURES_REQUIRED
                        trace.${area}.msvc.virtual trace.${area}.${abi}.${input})
                endif()
            endforeach()
        endforeach()
    endif()
endfunction()
