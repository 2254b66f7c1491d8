# The plug-in: each directory names its sources and resources, karvel_plugin() builds the file of them.

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
            set_target_properties(karvel_pure PROPERTIES DISABLE_PRECOMPILE_HEADERS ON)
            target_link_options(karvel_pure PUBLIC --coverage)
        endif()
    else()
        add_library(karvel_pure INTERFACE)
    endif()
    if(NOT KARVEL_ON_WINDOWS OR NOT platform)
        return()
    endif()

    get_property(sees_sdk GLOBAL PROPERTY KARVEL_SEES_SDK_SOURCES)
    karvel_plugin_file(KarvelMax ${KARVEL_PLUGIN_DIR} ${CMAKE_SOURCE_DIR}/shell/KarvelMax.def
        SOURCES ${pure} ${platform} SEES_SDK ${sees_sdk})
    get_property(compiled GLOBAL PROPERTY KARVEL_COMPILED_RESOURCES)
    if(compiled)
        add_dependencies(KarvelMax karvel_resources)
        set_property(TARGET KarvelMax APPEND PROPERTY LINK_DEPENDS ${compiled})
        target_link_options(KarvelMax PRIVATE ${compiled})
    endif()
endfunction()

# karvel_plugin_file(TARGET FOLDER EXPORTS SOURCES FILE... SEES_SDK FILE...): a module of the host's
# kind, TARGET.gup with its link map. Those of the sources that read headers of the SDK are named
# once more.
function(karvel_plugin_file target folder exports)
    cmake_parse_arguments(PARSE_ARGV 3 arg "" "" "SOURCES;SEES_SDK")
    if(KARVEL_VISUAL_STUDIO)
        # The real SDK's headers are older than C++20, which takes back what they rely on.
        list(REMOVE_ITEM arg_SOURCES ${arg_SEES_SDK})
        add_library(${target}_sdk_side OBJECT ${arg_SEES_SDK})
        target_link_libraries(${target}_sdk_side PRIVATE
            karvel_host_side_options karvel_sdk_headers)
        set_target_properties(${target}_sdk_side PROPERTIES CXX_STANDARD 17)
        list(APPEND arg_SOURCES $<TARGET_OBJECTS:${target}_sdk_side>)
    endif()
    add_library(${target} MODULE ${arg_SOURCES})
    target_link_libraries(${target} PRIVATE
        karvel_host_side_options karvel_sdk_headers karvel_sdk_libraries)
    karvel_share_system_headers(${target} karvel_host_side_options)
    set_target_properties(${target} PROPERTIES
        PREFIX ""
        LIBRARY_OUTPUT_DIRECTORY ${folder}
        RUNTIME_OUTPUT_DIRECTORY ${folder})
    add_dependencies(host_side ${target})
    karvel_later_host_together(${target} SHARED host resources settings)
    set(map ${folder}/${target}.map)
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${exports})
    if(KARVEL_VISUAL_STUDIO)
        target_link_libraries(${target} PRIVATE user32 gdi32 comctl32 shell32)
        set_target_properties(${target} PROPERTIES OUTPUT_NAME ${target} SUFFIX ".gup")
        target_link_options(${target} PRIVATE /DEF:${exports} /MAP:${map})
    elseif(KARVEL_MSVC)
        target_link_libraries(${target} PRIVATE karvel_msvc_runtime)
        set_target_properties(${target} PROPERTIES
            OUTPUT_NAME ${target}.gup SUFFIX "" NO_SONAME ON)
        target_link_options(${target} PRIVATE
            /def:${exports} /map:${map} /implib:${CMAKE_BINARY_DIR}/import/own_${target}.lib)
    else()
        set_target_properties(${target} PROPERTIES OUTPUT_NAME ${target} SUFFIX ".gup")
        target_link_libraries(${target} PRIVATE gdi32 comctl32 shell32)
        target_link_options(${target} PRIVATE
            ${exports} -Wl,-Map,${map} -Wl,--gc-sections -Wl,--exclude-all-symbols
            -Wl,--major-subsystem-version,6 -Wl,--minor-subsystem-version,1)
        if(KARVEL_COVERAGE)
            target_sources(${target} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/write_coverage.cpp)
            target_compile_options(${target} PRIVATE --coverage -O0)
            set_target_properties(${target} PROPERTIES DISABLE_PRECOMPILE_HEADERS ON)
            target_link_options(${target} PRIVATE --coverage)
        else()
            # An undefined operation ends the program at once; there is no library that could tell
            # more. Not with coverage, which would count the checks as branches.
            target_compile_options(${target} PRIVATE
                -fsanitize=undefined -fno-sanitize=vptr -fsanitize-undefined-trap-on-error)
        endif()
    endif()
endfunction()
