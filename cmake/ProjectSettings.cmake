# What every target of this project shares. Nothing here is set for a folder or globally behind a target's back,
# but for the standard, the position independence and the visibility that a module needs of all its parts.
include_guard(GLOBAL)
include(Hardening)
include(Rounding)

option(AAXADAPTER_BUILD_TESTS "Build the tests, as ./test does" OFF)
option(AAXADAPTER_FUZZ "Build the fuzz targets, with clang" OFF)

# Whether what is built runs on this machine, if need be in an emulator.
set(AAXADAPTER_RUNS_HERE ON)
if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
    set(AAXADAPTER_RUNS_HERE OFF)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
if(PROJECT_IS_TOP_LEVEL)
    set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
endif()

set(AAXADAPTER_SANITIZE "" CACHE STRING "Sanitizers to build with, as the compiler names them")

# Warnings are errors in our own code; foreign headers are SYSTEM.
add_library(project_warnings INTERFACE)
target_compile_options(project_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Werror)

aaxadapter_harden_compilation(project_warnings INTERFACE)
aaxadapter_round_each_operation(project_warnings INTERFACE)

# The folder of the executable in a bundle on Linux, for code that looks into bundles.
function(aaxadapter_name_executable_folder target scope)
    target_compile_definitions(${target} ${scope} AAXADAPTER_EXECUTABLE_FOLDER="${CMAKE_SYSTEM_PROCESSOR}-linux")
endfunction()

# The sanitizers of the presets `asan` and `tsan`.
if(AAXADAPTER_SANITIZE)
    target_compile_options(project_warnings INTERFACE
        -fsanitize=${AAXADAPTER_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
        # Clang tells function types apart by addresses that hidden modules do not share.
        $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=function>)
    target_compile_definitions(project_warnings INTERFACE AAXADAPTER_SANITIZED)
    target_link_options(project_warnings INTERFACE -fsanitize=${AAXADAPTER_SANITIZE})
endif()

# For folders whose speed nobody sees, tests and tools. Most of the time that they take to compile goes into optimising them and
# into headers that all of their sources include, so a target's sources are compiled together; with CMAKE_UNITY_BUILD off, each
# alone.
set(AAXADAPTER_QUICK_COMPILATION $<$<CONFIG:Release>:-O1> $<$<CONFIG:RelWithDebInfo>:-O1>)
if(AAXADAPTER_SANITIZE)
    set(AAXADAPTER_QUICK_COMPILATION -O0)
endif()
macro(aaxadapter_compile_quickly)
    add_compile_options(${AAXADAPTER_QUICK_COMPILATION})
    if(PROJECT_IS_TOP_LEVEL AND NOT DEFINED CMAKE_UNITY_BUILD)
        set(CMAKE_UNITY_BUILD ON)
    endif()
endmacro()
