# The target vstgui. With VSTGUI_SOURCE_DIR it is VSTGUI 4.4: on macOS, where it is fetched when it is not given, and on Linux,
# where it serves tests. A cross build has no declarations for its macOS sources: the shared ones are compiled there, and no
# module can be linked. Without VSTGUI_SOURCE_DIR it is a stand-in on Linux and in the cross build.
include_guard(GLOBAL)

set(VSTGUI_SOURCE_DIR "" CACHE PATH "The folder that holds vstgui/ of VSTGUI 4.4; empty: fetched on macOS, a stand-in elsewhere")
set(AAXADAPTER_VSTGUI_TAG vstgui4_4)
set(AAXADAPTER_VSTGUI_STAND_IN ${PROJECT_SOURCE_DIR}/Extensions/GUI/stand_in)

# The frame's size calls are virtual up to 4.4 only. The version stands in the library's own header.
function(_aaxadapter_check_vstgui folder)
    set(header ${folder}/vstgui/lib/vstguibase.h)
    if(NOT EXISTS ${header} OR NOT EXISTS ${folder}/vstgui/lib/cframe.h)
        message(FATAL_ERROR "There is no VSTGUI in '${folder}': VSTGUI_SOURCE_DIR is the folder that holds vstgui/lib/cframe.h.")
    endif()
    file(STRINGS ${header} lines REGEX "#define +VSTGUI_VERSION_(MAJOR|MINOR)")
    string(REGEX MATCH "VERSION_MAJOR +([0-9]+)" major "${lines}")
    set(major ${CMAKE_MATCH_1})
    string(REGEX MATCH "VERSION_MINOR +([0-9]+)" minor "${lines}")
    set(minor ${CMAKE_MATCH_1})
    if(NOT "${major}.${minor}" MATCHES "^4\\.[34]$")
        message(FATAL_ERROR "The VSTGUI in '${folder}' is release '${major}.${minor}', which does not fit: "
            "this project needs 4.3 or 4.4, whose frame can be derived from. Give the tag ${AAXADAPTER_VSTGUI_TAG}.")
    endif()
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        message(FATAL_ERROR "g++ ${CMAKE_CXX_COMPILER_VERSION} cannot compile the headers of the VSTGUI in '${folder}': in C++20 "
            "it rejects one of their templates. Configure with clang (CC=clang CXX=clang++) in an empty build folder, or "
            "without VSTGUI_SOURCE_DIR, which gives the stand-in.")
    endif()
endfunction()

function(_aaxadapter_add_vstgui_stand_in)
    set(folder ${AAXADAPTER_VSTGUI_STAND_IN})
    add_library(vstgui STATIC ${folder}/vstgui_stand_in.cpp ${folder}/vstgui_stand_in.h)
    target_include_directories(vstgui PUBLIC $<BUILD_INTERFACE:${folder}>)
    target_link_libraries(vstgui PRIVATE project_warnings)
endfunction()

# VSTGUI in the way of its own build files: an older standard than ours, and warnings that are not ours to mend.
function(_aaxadapter_add_vstgui folder)
    _aaxadapter_check_vstgui(${folder})
    add_library(vstgui STATIC)
    # A notice that what is linked with it has to carry: notices/VSTGUI.txt.
    set_target_properties(vstgui PROPERTIES
        CXX_STANDARD 17 AAXADAPTER_NOTICE VSTGUI EXPORT_PROPERTIES AAXADAPTER_NOTICE)
    target_compile_options(vstgui PRIVATE -w)
    target_include_directories(vstgui SYSTEM PUBLIC $<BUILD_INTERFACE:${folder}>)
    # From there "../uidescription/icontroller.h" is found where the release was given without it.
    target_include_directories(vstgui PRIVATE ${AAXADAPTER_VSTGUI_STAND_IN}/vstgui)
    if(CMAKE_CROSSCOMPILING)
        message(STATUS "VSTGUI: its shared sources from '${folder}'; this build links no module.")
        target_sources(vstgui PRIVATE ${folder}/vstgui/vstgui.cpp)
    elseif(APPLE)
        target_sources(vstgui PRIVATE ${folder}/vstgui/vstgui_mac.mm)
        # Its calls of objc_msgSendSuper() have no prototype, which newer system headers refuse otherwise.
        target_compile_definitions(vstgui PRIVATE OBJC_OLD_DISPATCH_PROTOTYPES=1)
        foreach(framework Accelerate CoreFoundation CoreGraphics CoreServices CoreText Cocoa ImageIO OpenGL QuartzCore)
            target_link_libraries(vstgui PUBLIC "-framework ${framework}")
        endforeach()
    else()
        _aaxadapter_add_vstgui_x11(${folder})
    endif()
endfunction()

function(_aaxadapter_add_vstgui_x11 folder)
    find_package(PkgConfig REQUIRED)
    pkg_check_modules(gtkmm REQUIRED gtkmm-3.0 fontconfig)
    target_sources(vstgui PRIVATE
        ${folder}/vstgui/vstgui_linux.cpp # which leaves these two out
        ${folder}/vstgui/lib/platform/linux/gtkoptionmenu.cpp
        ${folder}/vstgui/lib/platform/linux/gtktextedit.cpp
        ${AAXADAPTER_VSTGUI_STAND_IN}/x11_module_handle.cpp)
    target_include_directories(vstgui SYSTEM PRIVATE ${gtkmm_INCLUDE_DIRS})
    target_link_libraries(vstgui PUBLIC ${gtkmm_LINK_LIBRARIES})
endfunction()

if(VSTGUI_SOURCE_DIR)
    _aaxadapter_add_vstgui(${VSTGUI_SOURCE_DIR})
elseif(APPLE AND NOT CMAKE_CROSSCOMPILING)
    include(FetchContent)
    # VSTGUI's own build files are not used: there are none in this folder.
    FetchContent_Declare(vstgui_source
        GIT_REPOSITORY https://github.com/steinbergmedia/vstgui GIT_TAG ${AAXADAPTER_VSTGUI_TAG} GIT_SHALLOW ON
        SOURCE_SUBDIR no-build-files)
    FetchContent_MakeAvailable(vstgui_source)
    _aaxadapter_add_vstgui(${vstgui_source_SOURCE_DIR})
else()
    if(CMAKE_CROSSCOMPILING)
        message(STATUS "VSTGUI: the stand-in; this build serves tests only.")
    endif()
    _aaxadapter_add_vstgui_stand_in()
endif()
