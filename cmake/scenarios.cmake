# Scenarios as tests: they are played in areas, and the traces of all builds must agree.

# karvel_unicode_scenarios(AREA [TIMEOUT SECONDS]): the same scenarios with the plug-in and the host
# DLLs of the Unicode generation; the trace must be that of the file that ships.
function(karvel_unicode_scenarios area)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "")
    set(variant msvc-unicode.virtual)
    set(test unicode.scenarios.${area})
    add_test(NAME ${test}
             COMMAND ${CMAKE_SOURCE_DIR}/tools/session/play_scenarios.sh
                     ${CMAKE_BINARY_DIR} msvc-unicode virtual ${area}
             WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})
    karvel_test_properties(${test} "${arg_TIMEOUT}" "scenario;virtual;unicode")
    set_property(TEST ${test} PROPERTY FIXTURES_SETUP trace.${area}.${variant})
    set(test unicode.traces.${area})
    add_test(NAME ${test}
             COMMAND ${CMAKE_SOURCE_DIR}/tools/session/compare_traces.sh
                     ${area} msvc.virtual ${variant}
             WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})
    karvel_test_properties(${test} 60 "trace;unicode")
    set_property(TEST ${test} PROPERTY FIXTURES_REQUIRED
        trace.${area}.msvc.virtual trace.${area}.${variant})
endfunction()

# karvel_scenarios(AREA [INPUTS virtual|real...] [LABELS WORD...] [TIMEOUT SECONDS]): plays all
# scenarios of tests/scenarios/ROOM/AREA with this build's plug-in, one Wine process per kind of input,
# and holds their expectations. The traces stay in build/traces for the comparison below.
function(karvel_scenarios area)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "INPUTS;LABELS")
    if(NOT KARVEL_ON_WINDOWS)
        return()
    endif()
    if(KARVEL_UNICODE_HOST)
        if(KARVEL_MSVC)
            karvel_unicode_scenarios(${area} TIMEOUT "${arg_TIMEOUT}")
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
