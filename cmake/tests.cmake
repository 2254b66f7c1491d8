# Tests: programs of GoogleTest cases, and scripts. What plays scenarios is in scenarios.cmake.

# A test calls what it tests a few times; to optimise the calls takes longer than they do.
function(karvel_share_test_headers target)
    target_compile_options(${target} PRIVATE -O0)
    karvel_share_headers(${target} karvel_test_headers
        HEADERS <gmock/gmock.h> LIBRARIES karvel_options gmock OPTIONS -O0)
endfunction()

# karvel_gtest(NAME SOURCES FILE... [PLUGIN FILE...] [LIBRARIES NAME...] [LABELS WORD...]
#              [BUILDS gnu|native...] [TIMEOUT SECONDS] [ARGUMENTS TEXT...] [TOGETHER]):
# one program of GoogleTest cases, one ctest test. Without BUILDS it is built for gnu and native. PLUGIN
# names sources of the plug-in, whose objects are linked as they are in it. With TOGETHER the compiler
# reads the sources as one text.
function(karvel_gtest name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "TOGETHER" "TIMEOUT"
                          "SOURCES;PLUGIN;LIBRARIES;LABELS;BUILDS;ARGUMENTS")
    if(NOT arg_BUILDS)
        set(arg_BUILDS gnu native)
    endif()
    if(NOT KARVEL_ABI IN_LIST arg_BUILDS OR KARVEL_MSVC)
        return()
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE karvel_options ${arg_LIBRARIES} gmock_main)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${KARVEL_TEST_DIR})
    if(KARVEL_GNU AND NOT KARVEL_COVERAGE)
        set_target_properties(${name} PROPERTIES
            RULE_LAUNCH_LINK ${CMAKE_SOURCE_DIR}/tools/building/link_tests.py)
    endif()
    karvel_share_test_headers(${name})
    if(arg_TOGETHER)
        karvel_compile_together(${name} 0)
    endif()
    foreach(source ${arg_PLUGIN})
        if(NOT EXISTS ${CMAKE_SOURCE_DIR}/${source})
            message(FATAL_ERROR "${name}: the plug-in has no source ${source}")
        endif()
        target_sources(${name} PRIVATE
            $<FILTER:$<TARGET_OBJECTS:KarvelMax>,INCLUDE,/${source}>)
    endforeach()
    if(KARVEL_COVERAGE AND arg_PLUGIN)
        target_link_options(${name} PRIVATE --coverage)
    endif()
    add_test(NAME ${KARVEL_ABI}.${name} COMMAND ${name} ${arg_ARGUMENTS}
             WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})
    karvel_test_properties(${KARVEL_ABI}.${name} "${arg_TIMEOUT}" "${arg_LABELS}")
endfunction()

function(karvel_test_properties test timeout labels)
    if(NOT timeout)
        set(timeout 600)
    endif()
    # Of which host's file it is, for ./dev test --host.
    if(KARVEL_MSVC AND NOT labels MATCHES "host-")
        string(APPEND labels ";host-${KARVEL_SDK_GENERATION}")
    endif()
    set_tests_properties(${test} PROPERTIES TIMEOUT ${timeout} LABELS "${KARVEL_ABI};${labels}")
    # As long as ctest has no times of an earlier run: the long ones first, so that the end of none is
    # waited for with a processor that has nothing to do.
    if(labels MATCHES "fault|walk|interactive|lint|package|abi")
        set_tests_properties(${test} PROPERTIES COST 10)
    endif()
    # A Wine session each, of which ./dev test begins as many as run at a time: two tests in one would
    # only wait for each other. There is one display.
    if(NOT labels MATCHES "lint|trace|no-wine" AND NOT KARVEL_NATIVE)
        set_tests_properties(${test} PROPERTIES RESOURCE_GROUPS wine:1)
    endif()
    if(labels MATCHES "interactive")
        set_tests_properties(${test} PROPERTIES RESOURCE_LOCK display)
    endif()
endfunction()

# karvel_script_test(NAME COMMAND PROGRAM ARGUMENT... [LABELS WORD...] [TIMEOUT SECONDS]): a test
# that is a program or script on the building machine.
function(karvel_script_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "COMMAND;LABELS")
    add_test(NAME ${KARVEL_ABI}.${name} COMMAND ${arg_COMMAND}
             WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})
    karvel_test_properties(${KARVEL_ABI}.${name} "${arg_TIMEOUT}" "${arg_LABELS}")
endfunction()
