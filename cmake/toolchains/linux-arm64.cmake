# From Linux on x86-64 to Linux on arm64, with Debian's cross compiler and a sysroot of Debian's packages that is made when it
# is missing. What is built runs in the emulator, so the tools and the tests are built as well.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(AAXADAPTER_ARM64_SYSROOT "" CACHE PATH "The sysroot; empty: the one of Tools/arm64-sysroot/make-sysroot")

foreach(tool aarch64-linux-gnu-g++ qemu-aarch64)
    string(MAKE_C_IDENTIFIER ${tool} id)
    find_program(AAXADAPTER_TOOL_${id} ${tool} NO_CMAKE_FIND_ROOT_PATH)
    mark_as_advanced(AAXADAPTER_TOOL_${id})
    if(NOT AAXADAPTER_TOOL_${id})
        message(FATAL_ERROR "The build for arm64 needs ${tool}; run Tools/install-packages arm64.")
    endif()
endforeach()

if(NOT AAXADAPTER_ARM64_SYSROOT)
    execute_process(
        COMMAND ${CMAKE_CURRENT_LIST_DIR}/../../Tools/arm64-sysroot/make-sysroot
        OUTPUT_VARIABLE AAXADAPTER_ARM64_SYSROOT OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE failed)
    if(failed)
        message(FATAL_ERROR "Tools/arm64-sysroot/make-sysroot failed; what it said stands above.")
    endif()
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES AAXADAPTER_ARM64_SYSROOT)

set(CMAKE_CXX_COMPILER ${AAXADAPTER_TOOL_aarch64_linux_gnu_g__})
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_SYSROOT ${AAXADAPTER_ARM64_SYSROOT})
set(CMAKE_CROSSCOMPILING_EMULATOR ${AAXADAPTER_TOOL_qemu_aarch64} -L ${AAXADAPTER_ARM64_SYSROOT}
    -E LD_PRELOAD=/usr/lib/libexec_in_emulator.so)

set(CMAKE_FIND_ROOT_PATH ${AAXADAPTER_ARM64_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${AAXADAPTER_ARM64_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR} ${AAXADAPTER_ARM64_SYSROOT}/usr/lib/aarch64-linux-gnu/pkgconfig:${AAXADAPTER_ARM64_SYSROOT}/usr/share/pkgconfig)
