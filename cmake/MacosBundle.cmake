# layout_macos_bundle(): makes a module target a bundle that macOS loads.
#
#   add_library(MyPlugin MODULE MyPlugin.cpp)
#   layout_macos_bundle(MyPlugin EXTENSION vst EXPORTS VSTPluginMain)
#
# The bundle is MyPlugin.vst in the target's LIBRARY_OUTPUT_DIRECTORY, with Contents/MacOS/MyPlugin, Info.plist and PkgInfo.
# Of its symbols only the listed functions in C can be seen from outside: without a list the C++ library that is linked in
# would be exported as well.
include_guard(GLOBAL)

function(layout_macos_bundle target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXTENSION" "EXPORTS")
    if(arg_UNPARSED_ARGUMENTS OR NOT arg_EXTENSION OR NOT arg_EXPORTS)
        message(FATAL_ERROR "layout_macos_bundle(${target}): write EXTENSION and EXPORTS, and nothing else.")
    endif()
    configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/Bundle_Info.plist.in
        ${CMAKE_CURRENT_BINARY_DIR}/${target}_Info.plist @ONLY)
    file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/${target}_PkgInfo "BNDL????")
    set_target_properties(${target} PROPERTIES
        BUNDLE TRUE BUNDLE_EXTENSION ${arg_EXTENSION}
        MACOSX_BUNDLE_INFO_PLIST ${CMAKE_CURRENT_BINARY_DIR}/${target}_Info.plist)
    foreach(name IN LISTS arg_EXPORTS)
        target_link_options(${target} PRIVATE LINKER:-exported_symbol,_${name})
    endforeach()
    add_custom_command(TARGET ${target} POST_BUILD VERBATIM
        COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_CURRENT_BINARY_DIR}/${target}_PkgInfo
            $<TARGET_BUNDLE_CONTENT_DIR:${target}>/PkgInfo)
endfunction()
