# Which build this is, where its files go, and the settings that all of our own code shares. One
# configuration builds one of:
#   gnu     mingw-w64: the stand-in, its host DLLs, the plug-in, unit tests under Wine
#   msvc    clang, Microsoft ABI: the host DLLs and the plug-in that ships
#   native  g++ on Linux with sanitizers: what needs no Windows, and its unit tests

set(KARVEL_ABI "" CACHE STRING "Which build this is: gnu, msvc or native; set by the presets")
set_property(CACHE KARVEL_ABI PROPERTY STRINGS gnu msvc native)
set(MAXSDK "" CACHE PATH "Folder of the real SDK (with include/ and x64/lib/); empty: sdk/")
# Generations of the host: the one that the file that ships is for, and the later ones.
file(STRINGS ${CMAKE_SOURCE_DIR}/sdk/generations.txt generations REGEX "^generation ")
string(REGEX MATCHALL "[0-9]+" generations "${generations}")
set(KARVEL_LATER_HOSTS ${generations})
list(POP_FRONT KARVEL_LATER_HOSTS shipped)
set(KARVEL_SDK_GENERATION "" CACHE STRING
    "Which SDK the plug-in is bound to; empty: that of MAXSDK, or ${shipped}, the one that ships")
set_property(CACHE KARVEL_SDK_GENERATION PROPERTY STRINGS "" ${generations})
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
if(MAXSDK)
    include(${CMAKE_CURRENT_LIST_DIR}/real_sdk.cmake)
    karvel_generation_of_sdk(KARVEL_SDK_GENERATION "${KARVEL_SDK_GENERATION}")
elseif(NOT KARVEL_SDK_GENERATION)
    set(KARVEL_SDK_GENERATION ${shipped})
endif()
if(KARVEL_SDK_GENERATION STREQUAL shipped)
    set(KARVEL_LATER_HOST FALSE)
    set(KARVEL_GENERATION_DIR ansi)
elseif(KARVEL_SDK_GENERATION IN_LIST KARVEL_LATER_HOSTS)
    set(KARVEL_LATER_HOST TRUE)
    set(KARVEL_GENERATION_DIR unicode)
else()
    list(JOIN generations ", " names)
    message(FATAL_ERROR "KARVEL_SDK_GENERATION is '${KARVEL_SDK_GENERATION}', it can be ${names}")
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

# The system's Python has the modules of Debian's packages; another that comes first in PATH need not.
if(EXISTS /usr/bin/python3)
    set(Python3_EXECUTABLE /usr/bin/python3)
endif()
find_package(Python3 REQUIRED COMPONENTS Interpreter)

set(KARVEL_BIN_DIR ${CMAKE_BINARY_DIR}/bin)
set(KARVEL_HOST_DIR ${CMAKE_BINARY_DIR}/host)
set(KARVEL_PLUGIN_DIR ${CMAKE_BINARY_DIR}/plugin)
set(KARVEL_DIAGNOSTICS_DIR ${CMAKE_BINARY_DIR}/diagnostics)
set(KARVEL_GENERATED_DIR ${CMAKE_BINARY_DIR}/generated)
set(KARVEL_SDK_DIR ${CMAKE_BINARY_DIR}/sdk_made)
set(KARVEL_TEST_DIR ${CMAKE_BINARY_DIR}/tests_bin)
foreach(dir ${KARVEL_BIN_DIR} ${KARVEL_HOST_DIR} ${KARVEL_PLUGIN_DIR}
            ${KARVEL_DIAGNOSTICS_DIR} ${KARVEL_TEST_DIR})
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
    # Sections lie in the file as they lie in memory: the system maps them, and does not read them all
    # for each of the thousands of times that the stand-in loads its files.
    add_link_options(-static -static-libgcc -static-libstdc++ -Wl,--no-insert-timestamp
                     -Wl,--file-alignment,4096)
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

# What playing a scenario needs, for ./dev: the stand-in's programs (gnu), and one build's plug-in
# and host DLLs.
add_custom_target(stand_in)
add_custom_target(host_side)
