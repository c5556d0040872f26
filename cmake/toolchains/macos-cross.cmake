# From Linux to macOS 11, with clang, LLVM's linker for Mach-O and a small sysroot that is made when it is missing.
# For x86-64, or for what AAXADAPTER_MACOS_ARCHITECTURES says.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION 20.0) # Darwin 20 is macOS 11

# Linkers before LLVM 15 write exception tables of which nothing can be unwound.
set(AAXADAPTER_LLVM_VERSION 19 CACHE STRING "Version suffix of clang, ld64.lld and the llvm tools")
set(AAXADAPTER_MACOS_ARCHITECTURES "x86_64" CACHE STRING "x86_64, arm64, or both with ';' between them: universal files")
set(AAXADAPTER_MACOS_SYSROOT "" CACHE PATH "The sysroot; empty: the one of Tools/macos-sysroot/make-sysroot")

foreach(architecture IN LISTS AAXADAPTER_MACOS_ARCHITECTURES)
    if(NOT architecture MATCHES "^(x86_64|arm64)$")
        message(FATAL_ERROR "AAXADAPTER_MACOS_ARCHITECTURES: '${architecture}' is none; write x86_64, arm64 or x86_64;arm64.")
    endif()
endforeach()
list(GET AAXADAPTER_MACOS_ARCHITECTURES 0 first_architecture)
list(LENGTH AAXADAPTER_MACOS_ARCHITECTURES architecture_count)

foreach(tool clang++ ld64.lld llvm-ar llvm-ranlib llvm-install-name-tool llvm-lipo llvm-libtool-darwin)
    string(MAKE_C_IDENTIFIER ${tool} id)
    find_program(AAXADAPTER_TOOL_${id} ${tool}-${AAXADAPTER_LLVM_VERSION} NO_CMAKE_FIND_ROOT_PATH)
    mark_as_advanced(AAXADAPTER_TOOL_${id})
    if(NOT AAXADAPTER_TOOL_${id})
        message(FATAL_ERROR "The cross build needs ${tool}-${AAXADAPTER_LLVM_VERSION}; run Tools/install-packages macos.")
    endif()
endforeach()

if(NOT AAXADAPTER_MACOS_SYSROOT)
    execute_process(
        COMMAND ${CMAKE_CURRENT_LIST_DIR}/../../Tools/macos-sysroot/make-sysroot ${AAXADAPTER_LLVM_VERSION}
        OUTPUT_VARIABLE AAXADAPTER_MACOS_SYSROOT OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE failed)
    if(failed)
        message(FATAL_ERROR "Tools/macos-sysroot/make-sysroot failed; what it said stands above.")
    endif()
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES
    AAXADAPTER_LLVM_VERSION AAXADAPTER_MACOS_ARCHITECTURES AAXADAPTER_MACOS_SYSROOT)

set(CMAKE_CXX_COMPILER ${AAXADAPTER_TOOL_clang__})
set(CMAKE_CXX_COMPILER_TARGET ${first_architecture}-apple-macos11.0)
set(CMAKE_OSX_SYSROOT ${AAXADAPTER_MACOS_SYSROOT})
set(CMAKE_OSX_DEPLOYMENT_TARGET 11.0)
set(CMAKE_OSX_ARCHITECTURES "") # the target above says it
if(architecture_count GREATER 1)
    set(CMAKE_OSX_ARCHITECTURES ${AAXADAPTER_MACOS_ARCHITECTURES})
endif()
set(CMAKE_AR ${AAXADAPTER_TOOL_llvm_ar})
set(CMAKE_RANLIB ${AAXADAPTER_TOOL_llvm_ranlib})
set(CMAKE_INSTALL_NAME_TOOL ${AAXADAPTER_TOOL_llvm_install_name_tool})
set(CMAKE_SYSTEM_PROCESSOR ${first_architecture})

# Clang would prefer a C++ library for Linux that lies beside it.
set(CMAKE_CXX_FLAGS_INIT "-nostdinc++ -isystem ${AAXADAPTER_MACOS_SYSROOT}/usr/include/c++/v1")
if(architecture_count GREATER 1)
    # Clang looks in this folder for the tool that puts the slices together, and knows it by its name on a Mac.
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/macos-tools)
    file(CREATE_LINK ${AAXADAPTER_TOOL_llvm_lipo} ${CMAKE_BINARY_DIR}/macos-tools/lipo SYMBOLIC)
    string(APPEND CMAKE_CXX_FLAGS_INIT " -B${CMAKE_BINARY_DIR}/macos-tools")
    # The other archiver does not look into universal objects.
    set(CMAKE_CXX_ARCHIVE_CREATE "${AAXADAPTER_TOOL_llvm_libtool_darwin} -static -o <TARGET> <OBJECTS>")
    set(CMAKE_CXX_ARCHIVE_APPEND "")
    set(CMAKE_CXX_ARCHIVE_FINISH "")
endif()
# Without a linker version clang would speak to it as to a very old one.
string(CONCAT link_flags "--ld-path=${AAXADAPTER_TOOL_ld64_lld} -mlinker-version=609 "
    "-Wl,-no_fixup_chains -Wl,-dead_strip -Wl,-fatal_warnings")
set(CMAKE_EXE_LINKER_FLAGS_INIT ${link_flags})
set(CMAKE_SHARED_LINKER_FLAGS_INIT ${link_flags})
set(CMAKE_MODULE_LINKER_FLAGS_INIT ${link_flags})

set(CMAKE_FIND_ROOT_PATH ${AAXADAPTER_MACOS_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
