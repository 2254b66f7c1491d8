# Tests: programs of GoogleTest cases, and scripts. What plays scenarios is in scenarios.cmake.

# karvel_share_test_headers(TARGET FILE...): GoogleTest's headers, most of what a test's source
# reads, are compiled once for a build. Not for sources that are not a test's own: those have to
# include what they need.
function(karvel_share_test_headers target)
    if(NOT TARGET karvel_test_headers)
        set(nothing ${CMAKE_BINARY_DIR}/generated/test_headers.cpp)
        file(CONFIGURE OUTPUT ${nothing} CONTENT "")
        add_library(karvel_test_headers OBJECT ${nothing})
        target_link_libraries(karvel_test_headers PRIVATE karvel_options gmock_main)
        target_precompile_headers(karvel_test_headers PRIVATE <gmock/gmock.h>)
        target_compile_options(karvel_test_headers PRIVATE -O0)
    endif()
    # A test calls what it tests a few times; to optimise the calls takes longer than they do.
    target_compile_options(${target} PRIVATE -O0)
    target_precompile_headers(${target} REUSE_FROM karvel_test_headers)
    foreach(source ${ARGN})
        cmake_path(IS_ABSOLUTE source elsewhere)
        if(elsewhere)
            set_source_files_properties(${source} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
        endif()
    endforeach()
endfunction()

# karvel_gtest(NAME SOURCES FILE... [LIBRARIES NAME...] [LABELS WORD...] [BUILDS gnu|native...]
#              [TIMEOUT SECONDS] [ARGUMENTS TEXT...]):
# one program of GoogleTest cases, one ctest test. Without BUILDS it is built for gnu and native.
function(karvel_gtest name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT"
                          "SOURCES;LIBRARIES;LABELS;BUILDS;ARGUMENTS")
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
    karvel_share_test_headers(${name} ${arg_SOURCES})
    if(KARVEL_COVERAGE)
        # The plug-in's sources among them; those in karvel_pure count by themselves. Without
        # exceptions, as in the plug-in, or their branches could not be added to its own.
        get_property(platform GLOBAL PROPERTY KARVEL_PLATFORM_SOURCES)
        foreach(source ${arg_SOURCES})
            if(source IN_LIST platform)
                set_source_files_properties(${source} PROPERTIES COMPILE_OPTIONS
                    "--coverage;-O0;-fno-exceptions;-fno-threadsafe-statics;-fcheck-new")
                target_link_options(${name} PRIVATE --coverage)
            endif()
        endforeach()
    endif()
    add_test(NAME ${KARVEL_ABI}.${name} COMMAND ${name} ${arg_ARGUMENTS}
             WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})
    karvel_test_properties(${KARVEL_ABI}.${name} "${arg_TIMEOUT}" "${arg_LABELS}")
endfunction()

function(karvel_test_properties test timeout labels)
    if(NOT timeout)
        set(timeout 600)
    endif()
    set_tests_properties(${test} PROPERTIES TIMEOUT ${timeout} LABELS "${KARVEL_ABI};${labels}")
    # Two Wine sessions, each on its own processor (tools/session/wine_session.sh), and one test at a
    # time in each: more would only wait for each other. What needs none fills the gaps: label no-wine.
    if(KARVEL_MSVC)
        set_tests_properties(${test} PROPERTIES ENVIRONMENT KARVEL_LANE=1)
    endif()
    if(labels MATCHES "lint|trace|no-wine" OR KARVEL_NATIVE)
        return()
    endif()
    set_tests_properties(${test} PROPERTIES RESOURCE_LOCK wine_${KARVEL_ABI})
endfunction()

# karvel_script_test(NAME COMMAND PROGRAM ARGUMENT... [LABELS WORD...] [TIMEOUT SECONDS]): a test
# that is a program or script on the building machine.
function(karvel_script_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "COMMAND;LABELS")
    add_test(NAME ${KARVEL_ABI}.${name} COMMAND ${arg_COMMAND}
             WORKING_DIRECTORY ${CMAKE_SOURCE_DIR})
    karvel_test_properties(${KARVEL_ABI}.${name} "${arg_TIMEOUT}" "${arg_LABELS}")
endfunction()
