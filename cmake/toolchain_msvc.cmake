# The Microsoft C++ ABI from Debian's packages alone: clang compiles, lld links, headers and system
# import libraries come from mingw-w64, the C++ headers from its libstdc++. What the Microsoft
# compiler's own runtime would supply is in msvc_runtime/.
#
# The system is called Generic because CMake's rules for clang on Windows insist on Microsoft's
# resource compiler, manifest tool and runtime libraries.
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(WIN32 1)

set(KARVEL_LLVM_VERSION 19)
set(CMAKE_CXX_COMPILER clang++-${KARVEL_LLVM_VERSION})
set(CMAKE_AR llvm-ar-${KARVEL_LLVM_VERSION} CACHE STRING "Archiver")
set(CMAKE_RANLIB llvm-ranlib-${KARVEL_LLVM_VERSION} CACHE STRING "Archive indexer")
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

execute_process(
    COMMAND x86_64-w64-mingw32-g++-posix -print-file-name=include/c++
    OUTPUT_VARIABLE karvel_cxx_headers
    OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
get_filename_component(karvel_cxx_headers "${karvel_cxx_headers}" REALPATH)

# -fgnuc-version keeps mingw-w64's headers from switching attributes off; defining __declspec as
# itself keeps them from redefining it; __STRICT_ANSI__ keeps libstdc++ away from __int128, which
# this ABI does not have.
string(JOIN " " CMAKE_CXX_FLAGS_INIT
    --target=x86_64-pc-windows-msvc
    -fgnuc-version=12.2.0
    -D__declspec=__declspec
    -D__STRICT_ANSI__
    -D_GLIBCXX_EXTERN_TEMPLATE=0
    -nostdinc++
    -isystem ${karvel_cxx_headers}
    -isystem ${karvel_cxx_headers}/x86_64-w64-mingw32
    -isystem /usr/x86_64-w64-mingw32/include
    -fno-exceptions
    -fno-threadsafe-statics
    -ffunction-sections
    -fdata-sections
    -mno-incremental-linker-compatible)
set(CMAKE_CXX_FLAGS_RELEASE_INIT "-O2 -DNDEBUG")
set(CMAKE_CXX_FLAGS_DEBUG_INIT "-O0 -g -gcodeview")

# Subsystem version 6.01 is Windows 7, the oldest system that the supported hosts run on. /Brepro
# replaces the time of the link by a hash, so that the same input gives the same file.
# The objects stand before the import libraries: msvcrt's also offers operator new and _purecall.
string(JOIN " " karvel_link_library
    lld-link-${KARVEL_LLVM_VERSION} /nologo /nodefaultlib /machine:x64 /dll
    /entry:_DllMainCRTStartup /subsystem:windows,6.01 /opt:ref /opt:icf /Brepro /merge:.CRT=.rdata
    /libpath:/usr/x86_64-w64-mingw32/lib
    /out:<TARGET> /implib:<TARGET>.lib <LINK_FLAGS> <OBJECTS> <LINK_LIBRARIES>
    libkernel32.a libuser32.a libgdi32.a libshell32.a libcomctl32.a libadvapi32.a libmsvcrt-os.a)
set(CMAKE_CXX_CREATE_SHARED_LIBRARY "${karvel_link_library}")
set(CMAKE_CXX_CREATE_SHARED_MODULE "${karvel_link_library}")
