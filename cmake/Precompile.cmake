# Parsing the headers of the libraries is half of what it takes to compile a test or a tool. With AAXADAPTER_PRECOMPILE that
# is done once for all of them. For clang only: g++ then warns of the libraries' own code. Off where a product or a package is
# built: there each source has to include what it uses.
include_guard(GLOBAL)

option(AAXADAPTER_PRECOMPILE "Parse the libraries' headers once for all tests and tools" OFF)

function(_aaxadapter_list_targets out folder)
    get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
    get_property(below DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
    foreach(subfolder IN LISTS below)
        _aaxadapter_list_targets(more ${subfolder})
        list(APPEND targets ${more})
    endforeach()
    set(${out} "${targets}" PARENT_SCOPE)
endfunction()

# For the targets of these folders and those below that are compiled with the project's warnings and no options of their own.
function(aaxadapter_precompile)
    if(NOT AAXADAPTER_PRECOMPILE)
        return()
    endif()
    find_package(fmt REQUIRED)
    find_package(GTest REQUIRED)
    find_package(nlohmann_json REQUIRED)
    set(empty ${PROJECT_BINARY_DIR}/precompiled.cpp)
    file(CONFIGURE OUTPUT ${empty} CONTENT "")
    add_library(precompiled OBJECT ${empty})
    target_link_libraries(precompiled PRIVATE project_warnings fmt::fmt GTest::gtest nlohmann_json::nlohmann_json)
    target_compile_options(precompiled PRIVATE ${AAXADAPTER_QUICK_COMPILATION})
    target_precompile_headers(precompiled PRIVATE <gtest/gtest.h> <fmt/format.h> <nlohmann/json.hpp>
        <algorithm> <array> <atomic> <chrono> <filesystem> <functional> <map> <memory> <mutex> <optional> <span> <string>
        <string_view> <thread> <vector>)
    foreach(folder IN LISTS ARGN)
        _aaxadapter_list_targets(targets ${PROJECT_SOURCE_DIR}/${folder})
        foreach(target IN LISTS targets)
            get_target_property(type ${target} TYPE)
            get_target_property(libraries ${target} LINK_LIBRARIES)
            get_target_property(options ${target} COMPILE_OPTIONS)
            list(REMOVE_DUPLICATES options)
            if(NOT type MATCHES "LIBRARY|EXECUTABLE" OR NOT project_warnings IN_LIST libraries
                    OR NOT "${options}" STREQUAL "${AAXADAPTER_QUICK_COMPILATION}")
                continue()
            endif()
            # As the headers are parsed: as part of a library, and with what the users of the libraries have defined.
            target_compile_options(${target} PRIVATE -fPIC)
            target_compile_definitions(${target} PRIVATE GTEST_HAS_PTHREAD=1 FMT_SHARED)
            target_precompile_headers(${target} REUSE_FROM precompiled)
        endforeach()
    endforeach()
endfunction()
