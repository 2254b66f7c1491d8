# Parts that the plug-in, the stand-in and their tests are put together from: libraries, programs, the
# engine and the host DLLs.

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

# karvel_debian_headers(TARGET FOLDER PACKAGE): the target reads headers of /usr/include/FOLDER. There
# lie the headers of Linux as well, so the folder is reached through one of its own.
function(karvel_debian_headers target folder package)
    if(NOT EXISTS /usr/include/${folder})
        message(FATAL_ERROR "/usr/include/${folder} is missing; install the package ${package}")
    endif()
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/debian_headers)
    file(CREATE_LINK /usr/include/${folder} ${CMAKE_BINARY_DIR}/debian_headers/${folder} SYMBOLIC)
    target_include_directories(${target} SYSTEM PRIVATE ${CMAKE_BINARY_DIR}/debian_headers)
endfunction()

# karvel_share_headers(TARGET NAME HEADERS <FILE>... LIBRARIES NAME... [OPTIONS FLAG...]): headers that
# are most of what the target's sources read; they are compiled once for all targets with this NAME,
# whose options have to be alike. That each source includes what it needs shows where it is compiled
# without: in the msvc build or the native one.
function(karvel_share_headers target shared)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "HEADERS;LIBRARIES;OPTIONS")
    if(KARVEL_GNU)
        list(APPEND arg_HEADERS <windows.h>)
    endif()
    if(NOT TARGET ${shared})
        set(nothing ${CMAKE_BINARY_DIR}/generated/nothing.cpp)
        file(CONFIGURE OUTPUT ${nothing} CONTENT "")
        add_library(${shared} OBJECT ${nothing})
        target_link_libraries(${shared} PRIVATE ${arg_LIBRARIES})
        target_precompile_headers(${shared} PRIVATE ${arg_HEADERS})
        target_compile_options(${shared} PRIVATE ${arg_OPTIONS})
    endif()
    target_precompile_headers(${target} REUSE_FROM ${shared})
endfunction()

# karvel_compile_together(TARGET COUNT [APART FILE...]): the compiler reads COUNT sources of the target as
# one text, so that it makes once what each of them asks of the same headers. Those APART have names
# that are others' too.
function(karvel_compile_together target count)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "APART")
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${count})
    set_source_files_properties(${arg_APART} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# karvel_later_host_together(TARGET [SHARED ROOM...]): the same of all sources of a target for a later
# host; almost all are compiled one by one for that of 2012. Those of the SHARED rooms, which another
# target links too, are a text of their own, the `common` one. What only later hosts have is apart for
# the newest: there shows that each source includes what it needs.
function(karvel_later_host_together target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SHARED")
    if(NOT KARVEL_LATER_HOST OR KARVEL_VISUAL_STUDIO)
        return()
    endif()
    list(GET KARVEL_LATER_HOSTS -1 newest)
    get_target_property(sources ${target} SOURCES)
    set(apart)
    foreach(source ${sources})
        cmake_path(ABSOLUTE_PATH source OUTPUT_VARIABLE path)
        if(path MATCHES "/unicode/" AND KARVEL_SDK_GENERATION EQUAL newest)
            list(APPEND apart ${source})
        endif()
        cmake_path(RELATIVE_PATH path BASE_DIRECTORY ${CMAKE_SOURCE_DIR})
        string(REGEX REPLACE "/.*" "" room ${path})
        set(group own)
        if(room IN_LIST arg_SHARED)
            set(group common)
        endif()
        set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${group})
    endforeach()
    karvel_compile_together(${target} 0 APART ${apart})
    set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
endfunction()

# What the plug-in, the stand-in and the programs around it read, with the compiler that takes longest.
# To what runs inside the host that is the system alone.
function(karvel_share_system_headers target options)
    set(headers)
    if(options STREQUAL karvel_options)
        set(headers
            <algorithm> <functional> <map> <memory> <optional> <string> <string_view> <vector>)
    endif()
    if(KARVEL_GNU)
        karvel_share_headers(${target} ${options}_headers LIBRARIES ${options} HEADERS ${headers})
    endif()
endfunction()

# karvel_static_library(NAME SOURCES FILE... [LIBRARIES NAME...] [TOGETHER]): one of our own parts. With
# TOGETHER the compiler that takes longest reads its sources as one text.
function(karvel_static_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "TOGETHER" "" "SOURCES;LIBRARIES")
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE karvel_options PUBLIC ${arg_LIBRARIES})
    karvel_share_system_headers(${name} karvel_options)
    if(arg_TOGETHER AND KARVEL_GNU)
        karvel_compile_together(${name} 0)
    endif()
endfunction()

# karvel_engine(SOURCES FILE... [LIBRARIES NAME...]): the stand-in's engine (gnu only).
# It is copied to where the host DLLs of both builds lie, so that any process can load those.
function(karvel_engine)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "" "SOURCES;LIBRARIES")
    add_library(standin_engine SHARED ${arg_SOURCES})
    target_link_libraries(standin_engine PRIVATE karvel_options ${arg_LIBRARIES})
    # Each play loads the file anew; the runtime libraries have with them what a debugger reads.
    target_link_options(standin_engine PRIVATE -Wl,--strip-debug)
    set_target_properties(standin_engine PROPERTIES
        PREFIX ""
        RUNTIME_OUTPUT_DIRECTORY ${KARVEL_BIN_DIR}
        ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/import)
    set(copies ${KARVEL_HOST_DIR}/standin_engine.dll)
    if(NOT KARVEL_COVERAGE)
        foreach(host "" ${KARVEL_LATER_HOSTS})
            string(JOIN - preset msvc ${host})
            list(APPEND copies ${CMAKE_SOURCE_DIR}/build/${preset}/host/standin_engine.dll)
        endforeach()
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
    karvel_share_system_headers(${name} karvel_options)
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
    karvel_share_system_headers(${target} karvel_host_side_options)
    karvel_later_host_together(${target})
    if(KARVEL_MSVC AND NOT KARVEL_LATER_HOST)
        # The gnu build compiles them one by one.
        karvel_compile_together(${target} 0)
    endif()
    set_target_properties(${target} PROPERTIES
        PREFIX ""
        LIBRARY_OUTPUT_DIRECTORY ${KARVEL_HOST_DIR}
        RUNTIME_OUTPUT_DIRECTORY ${KARVEL_HOST_DIR}
        ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/import)
    if(KARVEL_MSVC)
        target_link_libraries(${target} PRIVATE karvel_msvc_runtime)
        set_target_properties(${target} PROPERTIES OUTPUT_NAME ${name}.dll SUFFIX "" NO_SONAME ON)
        # The library that lld writes beside the DLL is of no use: the plug-in links against the list
        # of names that the tables under sdk/ give.
        target_link_options(${target} PRIVATE
            /implib:${CMAKE_BINARY_DIR}/import/own_${name}.lib)
        if(arg_DEF)
            get_filename_component(definition ${arg_DEF} ABSOLUTE)
            target_link_options(${target} PRIVATE /def:${definition})
            set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${definition})
        endif()
    else()
        set_target_properties(${target} PROPERTIES OUTPUT_NAME ${name})
        # As the engine.
        target_link_options(${target} PRIVATE -Wl,--strip-debug)
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
