# What the CMakeLists of the directories are written with. One configuration builds one of:
#   gnu     mingw-w64: the stand-in, its host DLLs, the plug-in, unit tests under Wine
#   msvc    clang, Microsoft ABI: the host DLLs and the plug-in that ships
#   native  g++ on Linux with sanitizers: what needs no Windows, and its unit tests

set(KARVEL_ABI "" CACHE STRING "Which build this is: gnu, msvc or native; set by the presets")
set_property(CACHE KARVEL_ABI PROPERTY STRINGS gnu msvc native)
set(MAXSDK "" CACHE PATH "Folder of the real SDK (with include/ and x64/lib/); empty: sdk/")
set(KARVEL_SDK_GENERATION 2012 CACHE STRING
    "Which SDK the plug-in is bound to: 2012 (the one that ships) or unicode (2014 to 2016)")
set_property(CACHE KARVEL_SDK_GENERATION PROPERTY STRINGS 2012 unicode)
option(KARVEL_FUZZERS "Make the fuzzers with libFuzzer (native, with clang)" OFF)
option(KARVEL_COVERAGE "Count the executed lines of the plug-in (gnu only)" OFF)

if(NOT KARVEL_ABI MATCHES "^(gnu|msvc|native)$")
    message(FATAL_ERROR "KARVEL_ABI is '${KARVEL_ABI}'; use a preset: cmake --preset gnu|msvc|native")
endif()
foreach(abi gnu msvc native)
    string(TOUPPER ${abi} upper)
    if(abi STREQUAL KARVEL_ABI)
        set(KARVEL_${upper} TRUE)
    else()
        set(KARVEL_${upper} FALSE)
    endif()
endforeach()
# On Windows the msvc build is Visual C++ with the real SDK; there is no stand-in there. A test has it
# configured elsewhere, with clang-cl, which reads the same options.
option(KARVEL_LIKE_VISUAL_STUDIO "Configure as on Windows (the test of that build alone)" OFF)
if(KARVEL_MSVC AND (CMAKE_HOST_WIN32 OR KARVEL_LIKE_VISUAL_STUDIO))
    set(KARVEL_VISUAL_STUDIO TRUE)
    if(NOT MAXSDK)
        message(FATAL_ERROR "MAXSDK is empty; set it to the folder of the SDK, with include/ in it")
    endif()
else()
    set(KARVEL_VISUAL_STUDIO FALSE)
endif()
if(KARVEL_SDK_GENERATION STREQUAL 2012)
    set(KARVEL_UNICODE_HOST FALSE)
    set(KARVEL_GENERATION_DIR ansi)
elseif(KARVEL_SDK_GENERATION STREQUAL unicode)
    set(KARVEL_UNICODE_HOST TRUE)
    set(KARVEL_GENERATION_DIR unicode)
else()
    message(FATAL_ERROR
        "KARVEL_SDK_GENERATION is '${KARVEL_SDK_GENERATION}', it can be 2012 or unicode")
endif()
if(KARVEL_COVERAGE AND NOT KARVEL_GNU)
    message(FATAL_ERROR "KARVEL_COVERAGE needs the gnu build: cmake --preset coverage")
endif()
if(KARVEL_NATIVE)
    set(KARVEL_ON_WINDOWS FALSE)
else()
    set(KARVEL_ON_WINDOWS TRUE)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

set(KARVEL_BIN_DIR ${CMAKE_BINARY_DIR}/bin)
set(KARVEL_HOST_DIR ${CMAKE_BINARY_DIR}/host)
set(KARVEL_PLUGIN_DIR ${CMAKE_BINARY_DIR}/plugin)
set(KARVEL_GENERATED_DIR ${CMAKE_BINARY_DIR}/generated)
set(KARVEL_TEST_DIR ${CMAKE_BINARY_DIR}/tests_bin)
foreach(dir ${KARVEL_BIN_DIR} ${KARVEL_HOST_DIR} ${KARVEL_PLUGIN_DIR} ${KARVEL_TEST_DIR})
    file(MAKE_DIRECTORY ${dir})
endforeach()

# The host DLLs by the names that 3ds Max gives them.
set(KARVEL_HOST_DLLS core maxutil MAXScrpt gup ParamBlk2 menus)

configure_file(${CMAKE_SOURCE_DIR}/cmake/karvel_version.h.in
               ${KARVEL_GENERATED_DIR}/karvel_version.h @ONLY)

if(KARVEL_MSVC AND NOT KARVEL_VISUAL_STUDIO)
    # CMake takes this clang for the Microsoft compiler and so does not know how it is told that a
    # folder holds the headers of somebody else, nor how it is asked which headers it has read.
    set(CMAKE_INCLUDE_SYSTEM_FLAG_CXX "-isystem ")
    set(CMAKE_DEPFILE_FLAGS_CXX "-MD -MT <DEP_TARGET> -MF <DEP_FILE>")
endif()

# ---- settings that all of our own code shares ----------------------------------------------------

add_library(karvel_options INTERFACE)
target_include_directories(karvel_options INTERFACE ${CMAKE_SOURCE_DIR} ${KARVEL_GENERATED_DIR})
if(KARVEL_VISUAL_STUDIO)
    # The real SDK's headers are not free of warnings, so none is an error here; the other builds see
    # to our own sources.
    target_compile_options(karvel_options INTERFACE /W3)
else()
    target_compile_options(karvel_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Werror)
endif()
if(KARVEL_ON_WINDOWS)
    # ANSI forms throughout, the Windows 7 interface.
    target_compile_definitions(karvel_options INTERFACE WINVER=0x0601 _WIN32_WINNT=0x0601)
endif()
if(KARVEL_ON_WINDOWS AND NOT KARVEL_VISUAL_STUDIO)
    # The real SDK's headers use what these two keep away, min and max among it.
    target_compile_definitions(karvel_options INTERFACE WIN32_LEAN_AND_MEAN NOMINMAX)
endif()
if(KARVEL_GNU)
    # Runtime libraries go into each file, so that nothing but Windows is needed beside it; and no
    # time stamp, so that the same input gives the same file.
    add_link_options(-static -static-libgcc -static-libstdc++ -Wl,--no-insert-timestamp)
endif()
if(KARVEL_NATIVE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
    if(KARVEL_FUZZERS)
        add_compile_options(-fsanitize=fuzzer-no-link)
    endif()
endif()

# What runs inside the host: no exceptions of its own, run-time type information on, static objects
# without locks (there is one thread).
add_library(karvel_host_side_options INTERFACE)
target_link_libraries(karvel_host_side_options INTERFACE karvel_options)
if(KARVEL_VISUAL_STUDIO)
    # Inline functions of the real headers throw, so here the language feature stays on. That an
    # operator new may answer null is this compiler's rule unless it is told otherwise.
    target_compile_options(karvel_host_side_options INTERFACE /GR /EHsc /Gy /Zc:threadSafeInit-)
else()
    # The host's heap answers null when it is empty, and nothing is made there then: without
    # -fcheck-new the compiler takes for granted that an operator new never does.
    target_compile_options(karvel_host_side_options INTERFACE
        -fno-threadsafe-statics -ffunction-sections -fdata-sections -fcheck-new -fno-exceptions)
endif()

if(KARVEL_VISUAL_STUDIO)
    # Visual C++ brings its own runtime.
    add_library(karvel_msvc_runtime INTERFACE)
elseif(KARVEL_MSVC)
    # CMake does not expect DLLs of a system that it only knows as Generic.
    set_property(GLOBAL PROPERTY TARGET_SUPPORTS_SHARED_LIBS TRUE)
    add_library(karvel_msvc_runtime OBJECT
        ${CMAKE_SOURCE_DIR}/cmake/msvc_runtime/start_code.cpp
        ${CMAKE_SOURCE_DIR}/cmake/msvc_runtime/heap_operators.cpp
        ${CMAKE_SOURCE_DIR}/cmake/msvc_runtime/type_info.cpp)
    target_link_libraries(karvel_msvc_runtime PRIVATE karvel_host_side_options)
    target_compile_options(karvel_msvc_runtime PRIVATE -fno-rtti)
endif()

# What playing a scenario needs, for ./dev: the stand-in's programs (gnu), and one build's plug-in
# and host DLLs.
add_custom_target(stand_in)
add_custom_target(host_side)

# ---- libraries -----------------------------------------------------------------------------------

# karvel_import_library(NAME DLL FILE DEF FILE): the library NAME, made from a list of the names that
# a DLL exports. Only the msvc build needs it; the gnu build links against the DLLs themselves.
function(karvel_import_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "DLL;DEF" "")
    get_filename_component(definition ${arg_DEF} ABSOLUTE)
    set(library ${CMAKE_BINARY_DIR}/import/${name}.lib)
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/import)
    add_custom_command(
        OUTPUT ${library}
        COMMAND llvm-dlltool-${KARVEL_LLVM_VERSION} -m i386:x86-64 -D ${arg_DLL}
                -d ${definition} -l ${library}
        DEPENDS ${definition}
        COMMENT "Import library for ${arg_DLL}"
        VERBATIM)
    add_custom_target(${name}_file DEPENDS ${library})
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE ${library})
    set_property(TARGET ${name} PROPERTY INTERFACE_LINK_DEPENDS ${library})
    add_dependencies(${name} ${name}_file)
endfunction()

# karvel_static_library(NAME SOURCES FILE... [LIBRARIES NAME...]): one of our own parts.
function(karvel_static_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE karvel_options PUBLIC ${arg_LIBRARIES})
endfunction()

# karvel_engine(SOURCES FILE... [LIBRARIES NAME...] [DEF FILE]): the stand-in's engine (gnu only).
# It is copied to where the host DLLs of both builds lie, so that any process can load those.
function(karvel_engine)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "DEF" "SOURCES;LIBRARIES")
    add_library(standin_engine SHARED ${arg_SOURCES})
    if(arg_DEF)
        target_sources(standin_engine PRIVATE ${arg_DEF})
    endif()
    target_link_libraries(standin_engine PRIVATE karvel_options ${arg_LIBRARIES})
    set_target_properties(standin_engine PROPERTIES
        PREFIX ""
        RUNTIME_OUTPUT_DIRECTORY ${KARVEL_BIN_DIR}
        ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/import)
    set(copies ${KARVEL_HOST_DIR}/standin_engine.dll)
    if(NOT KARVEL_COVERAGE)
        list(APPEND copies ${CMAKE_SOURCE_DIR}/build/msvc/host/standin_engine.dll
                           ${CMAKE_SOURCE_DIR}/build/msvc-unicode/host/standin_engine.dll)
    endif()
    foreach(copy ${copies})
        get_filename_component(dir ${copy} DIRECTORY)
        add_custom_command(
            OUTPUT ${copy}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${dir}
            COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:standin_engine> ${copy}
            DEPENDS standin_engine
            VERBATIM)
    endforeach()
    add_custom_target(engine_copies ALL DEPENDS ${copies})
    add_dependencies(stand_in engine_copies)
endfunction()

# karvel_program(NAME SOURCES FILE... [LIBRARIES NAME...]): a program of the stand-in (gnu only).
function(karvel_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE karvel_options ${arg_LIBRARIES})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${KARVEL_BIN_DIR})
    add_dependencies(stand_in ${name})
endfunction()

# karvel_host_dll(NAME SOURCES FILE... [DEF FILE] [DEFINES WORD...] [LIBRARIES NAME...]): one of the
# stand-in's host DLLs. DEF lists the exports of the msvc file; the linker refuses a name that the
# sources do not define.
function(karvel_host_dll name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "DEF" "SOURCES;DEFINES;LIBRARIES")
    set(target host_${name})
    add_library(${target} SHARED ${arg_SOURCES})
    target_compile_definitions(${target} PRIVATE ${arg_DEFINES})
    target_link_libraries(${target} PRIVATE
        karvel_host_side_options karvel_sdk_headers ${arg_LIBRARIES} standin_engine)
    set_target_properties(${target} PROPERTIES
        PREFIX ""
        LIBRARY_OUTPUT_DIRECTORY ${KARVEL_HOST_DIR}
        RUNTIME_OUTPUT_DIRECTORY ${KARVEL_HOST_DIR}
        ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/import)
    if(KARVEL_MSVC)
        target_link_libraries(${target} PRIVATE karvel_msvc_runtime)
        set_target_properties(${target} PROPERTIES OUTPUT_NAME ${name}.dll SUFFIX "" NO_SONAME ON)
        # The library that lld writes beside the DLL is of no use for the host of 2012: the plug-in
        # links against the list of names in sdk/imports.
        target_link_options(${target} PRIVATE
            /implib:${CMAKE_BINARY_DIR}/import/own_${name}.lib)
        if(KARVEL_UNICODE_HOST)
            # There is no list of names for this host, so the siblings and the plug-in link against
            # what the DLL exports.
            add_custom_command(TARGET ${target} POST_BUILD
                COMMAND ${CMAKE_COMMAND} -E true
                BYPRODUCTS ${CMAKE_BINARY_DIR}/import/own_${name}.lib)
        elseif(arg_DEF)
            get_filename_component(definition ${arg_DEF} ABSOLUTE)
            target_link_options(${target} PRIVATE /def:${definition})
            set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${definition})
        endif()
    else()
        set_target_properties(${target} PROPERTIES OUTPUT_NAME ${name})
    endif()
    add_dependencies(host_side ${target})
endfunction()

# karvel_msvc_probe(NAME SOURCES FILE...): a DLL of the Microsoft ABI that a test loads (msvc only).
function(karvel_msvc_probe name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES")
    add_library(${name} MODULE ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE karvel_host_side_options karvel_msvc_runtime)
    set_target_properties(${name} PROPERTIES
        PREFIX "" OUTPUT_NAME ${name}.dll SUFFIX "" NO_SONAME ON
        LIBRARY_OUTPUT_DIRECTORY ${KARVEL_TEST_DIR})
    target_link_options(${name} PRIVATE /implib:${CMAKE_BINARY_DIR}/import/own_${name}.lib)
endfunction()

# ---- the plug-in ---------------------------------------------------------------------------------

define_property(GLOBAL PROPERTY KARVEL_PURE_SOURCES)
define_property(GLOBAL PROPERTY KARVEL_PLATFORM_SOURCES)

# karvel_plugin_sources([PURE FILE...] [PLATFORM FILE...] [SEES_SDK FILE...]): sources of the plug-in.
# PURE ones need neither Windows nor the host; they are also built for Linux and linked into unit
# tests as karvel_pure. Those of the PLATFORM ones that read headers of the SDK are named once more.
function(karvel_plugin_sources)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "" "PURE;PLATFORM;SEES_SDK")
    foreach(kind PURE PLATFORM SEES_SDK)
        foreach(source ${arg_${kind}})
            get_filename_component(path ${source} ABSOLUTE)
            set_property(GLOBAL APPEND PROPERTY KARVEL_${kind}_SOURCES ${path})
        endforeach()
    endforeach()
endfunction()

# karvel_plugin_resources(SCRIPT [PICTURES_DIR DIR] [PICTURES FILE...]): compiles the resource script.
# The sources that the script names are read from the script itself, so that a change of them is
# noticed; pictures that the build makes are given with the directory that they lie in.
function(karvel_plugin_resources script)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "PICTURES_DIR" "PICTURES")
    if(NOT KARVEL_ON_WINDOWS)
        return()
    endif()
    get_filename_component(script_path ${script} ABSOLUTE)
    get_filename_component(script_dir ${script_path} DIRECTORY)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${script_path})
    file(STRINGS ${script_path} lines REGEX "\"[^\"]+\\.[A-Za-z0-9]+\"" ENCODING UTF-8)
    set(used ${script_path} ${KARVEL_GENERATED_DIR}/karvel_version.h ${arg_PICTURES})
    set(pictures_option)
    if(arg_PICTURES_DIR)
        set(pictures_option -I ${arg_PICTURES_DIR})
    endif()
    foreach(line IN LISTS lines)
        string(REGEX MATCHALL "\"[^\"]+\\.[A-Za-z0-9]+\"" names "${line}")
        foreach(name IN LISTS names)
            string(REPLACE "\"" "" name "${name}")
            foreach(dir ${script_dir} ${CMAKE_SOURCE_DIR})
                if(EXISTS ${dir}/${name})
                    list(APPEND used ${dir}/${name})
                endif()
            endforeach()
        endforeach()
    endforeach()
    if(KARVEL_MSVC)
        set(format res)
        set(compiled ${CMAKE_CURRENT_BINARY_DIR}/karvel.res)
    else()
        set(format coff)
        set(compiled ${CMAKE_CURRENT_BINARY_DIR}/karvel_resources.obj)
    endif()
    if(KARVEL_VISUAL_STUDIO)
        set(compile rc /nologo /c 1252 /i ${script_dir} /i ${CMAKE_SOURCE_DIR}
            /i ${KARVEL_GENERATED_DIR})
        if(arg_PICTURES_DIR)
            list(APPEND compile /i ${arg_PICTURES_DIR})
        endif()
        list(APPEND compile /fo ${compiled} ${script_path})
    else()
        set(compile x86_64-w64-mingw32-windres -c 1252 -O ${format}
            -I ${script_dir} -I ${CMAKE_SOURCE_DIR} -I ${KARVEL_GENERATED_DIR}
            ${pictures_option} ${script_path} ${compiled})
    endif()
    add_custom_command(
        OUTPUT ${compiled}
        COMMAND ${compile}
        WORKING_DIRECTORY ${script_dir}
        DEPENDS ${used}
        COMMENT "Resources of the plug-in"
        VERBATIM)
    add_custom_target(karvel_resources DEPENDS ${compiled})
    set_property(GLOBAL PROPERTY KARVEL_COMPILED_RESOURCES ${compiled})
endfunction()

# karvel_plugin(): the plug-in and karvel_pure, from all that was listed before.
function(karvel_plugin)
    get_property(pure GLOBAL PROPERTY KARVEL_PURE_SOURCES)
    get_property(platform GLOBAL PROPERTY KARVEL_PLATFORM_SOURCES)
    if(pure)
        karvel_static_library(karvel_pure SOURCES ${pure})
        if(KARVEL_COVERAGE)
            target_compile_options(karvel_pure PRIVATE --coverage -O0 -fno-exceptions)
            target_link_options(karvel_pure PUBLIC --coverage)
        endif()
    else()
        add_library(karvel_pure INTERFACE)
    endif()
    if(NOT KARVEL_ON_WINDOWS OR NOT platform)
        return()
    endif()

    if(KARVEL_VISUAL_STUDIO)
        # The real SDK's headers are older than C++20, which takes back what they rely on.
        get_property(sees_sdk GLOBAL PROPERTY KARVEL_SEES_SDK_SOURCES)
        list(REMOVE_ITEM platform ${sees_sdk})
        add_library(karvel_sdk_side OBJECT ${sees_sdk})
        target_link_libraries(karvel_sdk_side PRIVATE karvel_host_side_options karvel_sdk_headers)
        set_target_properties(karvel_sdk_side PROPERTIES CXX_STANDARD 17)
        list(APPEND platform $<TARGET_OBJECTS:karvel_sdk_side>)
    endif()
    add_library(KarvelMax MODULE ${pure} ${platform})
    target_link_libraries(KarvelMax PRIVATE
        karvel_host_side_options karvel_sdk_headers karvel_sdk_libraries)
    set_target_properties(KarvelMax PROPERTIES
        PREFIX ""
        LIBRARY_OUTPUT_DIRECTORY ${KARVEL_PLUGIN_DIR}
        RUNTIME_OUTPUT_DIRECTORY ${KARVEL_PLUGIN_DIR})
    add_dependencies(host_side KarvelMax)
    set(exports ${CMAKE_SOURCE_DIR}/shell/KarvelMax.def)
    set(map ${KARVEL_PLUGIN_DIR}/KarvelMax.map)
    get_property(compiled GLOBAL PROPERTY KARVEL_COMPILED_RESOURCES)
    if(compiled)
        add_dependencies(KarvelMax karvel_resources)
        set_property(TARGET KarvelMax APPEND PROPERTY LINK_DEPENDS ${compiled})
    endif()
    set_property(TARGET KarvelMax APPEND PROPERTY LINK_DEPENDS ${exports})
    if(KARVEL_VISUAL_STUDIO)
        target_link_libraries(KarvelMax PRIVATE user32 gdi32 comctl32 shell32)
        set_target_properties(KarvelMax PROPERTIES OUTPUT_NAME KarvelMax SUFFIX ".gup")
        target_link_options(KarvelMax PRIVATE /DEF:${exports} /MAP:${map} ${compiled})
    elseif(KARVEL_MSVC)
        target_link_libraries(KarvelMax PRIVATE karvel_msvc_runtime)
        set_target_properties(KarvelMax PROPERTIES
            OUTPUT_NAME KarvelMax.gup SUFFIX "" NO_SONAME ON)
        target_link_options(KarvelMax PRIVATE
            /def:${exports} /map:${map} ${compiled}
            /implib:${CMAKE_BINARY_DIR}/import/own_KarvelMax.lib)
    else()
        set_target_properties(KarvelMax PROPERTIES OUTPUT_NAME KarvelMax SUFFIX ".gup")
        target_link_libraries(KarvelMax PRIVATE gdi32 comctl32 shell32)
        target_link_options(KarvelMax PRIVATE
            ${exports} ${compiled} -Wl,-Map,${map} -Wl,--gc-sections -Wl,--exclude-all-symbols
            -Wl,--major-subsystem-version,6 -Wl,--minor-subsystem-version,1)
        if(KARVEL_COVERAGE)
            target_sources(KarvelMax PRIVATE ${CMAKE_SOURCE_DIR}/cmake/write_coverage.cpp)
            target_compile_options(KarvelMax PRIVATE --coverage -O0)
            target_link_options(KarvelMax PRIVATE --coverage)
        else()
            # An undefined operation ends the program at once; there is no library that could tell
            # more. Not with coverage, which would count the checks as branches.
            target_compile_options(KarvelMax PRIVATE
                -fsanitize=undefined -fno-sanitize=vptr -fsanitize-undefined-trap-on-error)
        endif()
    endif()
endfunction()

# ---- tests ---------------------------------------------------------------------------------------

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
# scenarios of tests/scenarios/AREA with this build's plug-in, one Wine process per kind of input,
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
