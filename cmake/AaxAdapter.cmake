# add_aax_adapter(): makes one product, a module that wraps one VST 2 plug-in.
#
#   add_aax_adapter(MyPlugin
#       SOURCE_VST       path/to/MyPlugin.vst   # a file, a bundle folder or a target of this build
#       EFFECT_ID        com.maker.myplugin     # reverse-domain name of the effect
#       MANUFACTURER_ID  Mkr1                   # four characters
#       [option...]                             # see ProductOptions.cmake
#       [FEATURES ALL])                         # or some of ProductFeatures.cmake
#
# Where it is not for another system, the build has vst2probe load the plug-in as it lies in the bundle, and stops when
# that fails.
#
# add_aax_adapter_check(MyPlugin) makes a test of it. The product is the target MyPlugin and the bundle ${CMAKE_BINARY_DIR}/modules/MyPlugin.aaxplugin, which
# `cmake --install DIR --component MyPlugin --prefix TO` copies.
include_guard(GLOBAL)
include(${CMAKE_CURRENT_LIST_DIR}/Hardening.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/Notices.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/ProductArguments.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/ProductConstants.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/Rounding.cmake)

function(add_aax_adapter name)
    _aaxadapter_list_options(switches SWITCH)
    _aaxadapter_list_options(values REQUIRED TEXT NUMBER CHOICE)
    _aaxadapter_list_options(lists LIST)
    cmake_parse_arguments(PARSE_ARGV 1 arg "${switches}" "${values}" "${lists}")
    _aaxadapter_check_arguments()

    set(bundle ${CMAKE_BINARY_DIR}/modules/${name}.aaxplugin)
    set(generated ${CMAKE_CURRENT_BINARY_DIR}/${name}_product.cpp)
    _aaxadapter_list_constants(ignored AAXADAPTER_CONSTANTS arg_)
    _aaxadapter_four_char_code(AAXADAPTER_MANUFACTURER_CODE "${arg_MANUFACTURER_ID}")
    set(AAXADAPTER_RENDER_CALLBACK PlainRenderCallback)
    if(arg_RT_GUARD)
        set(AAXADAPTER_RENDER_CALLBACK GuardedRenderCallback)
    endif()
    _aaxadapter_list_feature_fields(ignored AAXADAPTER_FEATURE_FIELDS ${arg_FEATURES})
    set(AAXADAPTER_FACTORIES PlainInstanceFactories)
    if(arg_FEATURES OR arg_STEMS)
        set(AAXADAPTER_FACTORIES FeaturedInstanceFactories)
    endif()
    _aaxadapter_name_features(${bundle}/Contents/Resources/features.txt)
    configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/product.cpp.in ${generated} @ONLY)

    _aaxadapter_add_module(${name} ${bundle} ${generated})
    if(arg_RT_GUARD)
        target_link_libraries(${name} PRIVATE AaxAdapter::render_guard)
    endif()
    if(arg_FEATURES OR arg_STEMS)
        target_link_libraries(${name} PRIVATE AaxAdapter::product_features)
    endif()
    set(module ${bundle}/Contents/${CMAKE_SYSTEM_PROCESSOR}-linux/${name}.so)
    if(APPLE)
        set(module ${bundle}/Contents/MacOS/${name})
    endif()
    _aaxadapter_place_source_vst(${name} ${bundle}/Contents/Resources ${module} "${arg_SOURCE_VST}" ${generated})
    aaxadapter_place_notices(${name} ${bundle}/Contents/Resources)
    install(DIRECTORY ${bundle} DESTINATION . COMPONENT ${name} USE_SOURCE_PERMISSIONS EXCLUDE_FROM_ALL)
endfunction()

# The executable of a bundle, of one source that says what the product is; of a bundle for macOS all but its resources. Reads
# arg_EFFECT_ID and arg_VERSION.
function(_aaxadapter_add_module name bundle source)
    add_library(${name} MODULE ${source})
    target_compile_features(${name} PRIVATE cxx_std_20)
    target_link_libraries(${name} PRIVATE
        "$<LINK_LIBRARY:WHOLE_ARCHIVE,AaxAdapter::aax_exports,AaxAdapter::aax_adapter>")
    if(TARGET project_warnings) # not in a project that uses the installed package
        target_link_libraries(${name} PRIVATE project_warnings)
    endif()
    set_target_properties(${name} PROPERTIES PREFIX "" OUTPUT_NAME ${name})
    aaxadapter_harden_compilation(${name} PRIVATE)
    aaxadapter_round_each_operation(${name} PRIVATE)
    aaxadapter_harden_linking(${name})
    _aaxadapter_export_entry_points(${name})
    if(APPLE)
        _aaxadapter_layout_macos(${name} ${bundle})
    else()
        set_target_properties(${name} PROPERTIES
            SUFFIX .so LIBRARY_OUTPUT_DIRECTORY ${bundle}/Contents/${CMAKE_SYSTEM_PROCESSOR}-linux)
    endif()
endfunction()

# A list for whoever looks at the bundle, one a line; a product without features has no such file.
function(_aaxadapter_name_features file)
    if(arg_FEATURES)
        list(JOIN arg_FEATURES "\n" lines)
        file(CONFIGURE OUTPUT ${file} CONTENT "${lines}\n" @ONLY)
    else()
        file(REMOVE ${file})
    endif()
endfunction()

# A test of CTest that fails where a product is not fit to ship, and counts as skipped where that cannot be told:
#
#   add_aax_adapter_check(MyPlugin [argument of `aaxhost check`...])
#
# What it finds stands in ${CMAKE_BINARY_DIR}/checks, MyPlugin.xml for build servers and MyPlugin.html for people.
function(add_aax_adapter_check name)
    if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
        return()
    endif()
    if(NOT TARGET AaxAdapter::aaxhost)
        message(FATAL_ERROR "add_aax_adapter_check(${name}): there is no aaxhost to check the product with; install the "
            "libraries that it is made of.")
    endif()
    set(results ${CMAKE_BINARY_DIR}/checks)
    file(MAKE_DIRECTORY ${results})
    add_test(NAME ${name}.check COMMAND AaxAdapter::aaxhost check ${CMAKE_BINARY_DIR}/modules/${name}.aaxplugin
        --quiet --junit ${results}/${name}.xml --report ${results}/${name}.html ${ARGN})
    set_tests_properties(${name}.check PROPERTIES SKIP_RETURN_CODE 3)
endfunction()

# "Mkr1" -> 0x4D6B7231
function(_aaxadapter_four_char_code out text)
    string(HEX "${text}" hex)
    set(${out} 0x${hex} PARENT_SCOPE)
endfunction()

# Only the entry points are visible, whatever the libraries in the module export.
function(_aaxadapter_export_entry_points name)
    if(APPLE)
        set(list ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/entry_points.exports)
        target_link_options(${name} PRIVATE "LINKER:-exported_symbols_list,${list}" "LINKER:-dead_strip")
    else()
        set(list ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/entry_points.map)
        target_link_options(${name} PRIVATE "LINKER:--version-script=${list}" "LINKER:--gc-sections")
        if(NOT AAXADAPTER_SANITIZE) # whose runtime comes with the program only
            target_link_options(${name} PRIVATE "LINKER:--no-undefined")
        endif()
    endif()
    set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${list})
endfunction()

function(_aaxadapter_layout_macos name bundle)
    set(AAXADAPTER_BUNDLE_ID ${arg_EFFECT_ID})
    set(AAXADAPTER_BUNDLE_VERSION ${arg_VERSION})
    configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/Info.plist.in ${CMAKE_CURRENT_BINARY_DIR}/${name}_Info.plist @ONLY)
    get_filename_component(folder ${bundle} DIRECTORY)
    set_target_properties(${name} PROPERTIES
        BUNDLE TRUE BUNDLE_EXTENSION aaxplugin
        LIBRARY_OUTPUT_DIRECTORY ${folder}
        MACOSX_BUNDLE_INFO_PLIST ${CMAKE_CURRENT_BINARY_DIR}/${name}_Info.plist)
    file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/${name}_PkgInfo "TDMwPTul")
    add_custom_command(TARGET ${name} POST_BUILD VERBATIM
        COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_CURRENT_BINARY_DIR}/${name}_PkgInfo ${bundle}/Contents/PkgInfo)
endfunction()

# Copies the plug-in, a file or a folder, again whenever it changes, and has it tried there. `options` is a file that
# changes with the options that it is tried with.
function(_aaxadapter_place_source_vst name resources module source options)
    set(stamp ${CMAKE_CURRENT_BINARY_DIR}/${name}_source.stamp)
    if(TARGET ${source})
        set(depends ${source})
        set(plugin $<IF:$<BOOL:$<TARGET_PROPERTY:${source},BUNDLE>>,$<TARGET_BUNDLE_DIR:${source}>,$<TARGET_FILE:${source}>>)
        if(NOT APPLE)
            set(plugin $<TARGET_FILE:${source}>)
        endif()
    else()
        set(plugin ${source})
        if(IS_DIRECTORY ${source})
            file(GLOB_RECURSE depends CONFIGURE_DEPENDS ${source}/*)
        else()
            set(depends ${source})
        endif()
    endif()
    _aaxadapter_probe_command(probe)
    set(processors "")
    if(APPLE) # else it is a variable that a project has for its builds on a Mac
        set(processors ${CMAKE_OSX_ARCHITECTURES})
    endif()
    add_custom_command(OUTPUT ${stamp} VERBATIM DEPENDS ${depends} ${options}
        COMMENT "Placing source.vst in ${name}.aaxplugin"
        COMMAND ${CMAKE_COMMAND} -DPRODUCT=${name} -DSOURCE=${plugin} -DRESOURCES=${resources} -DSTAMP=${stamp}
            -DMODULE=${module} "-DPROBE=${probe}" "-DPROCESSORS=${processors}"
            -DFEWER_PROCESSORS=${arg_FEWER_PROCESSORS}
            -P ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/PlaceSourceVst.cmake)
    add_custom_target(${name}_source_vst ALL DEPENDS ${stamp})
    if(probe)
        add_dependencies(${name}_source_vst AaxAdapter::vst2probe)
    endif()
    add_dependencies(${name} ${name}_source_vst)
endfunction()

# The command that tries a plug-in, behind which its path belongs; empty where none is tried. The switch of the command
# line is for all products of a build.
function(_aaxadapter_probe_command out)
    set(${out} "" PARENT_SCOPE)
    if(arg_NO_PROBE OR AAXADAPTER_NO_PROBE OR (CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR))
        return()
    endif()
    if(NOT TARGET AaxAdapter::vst2probe)
        message(FATAL_ERROR "add_aax_adapter(${name}): there is no vst2probe to try the plug-in with; install the "
            "libraries that it is made of, CLI11, fmt and nlohmann_json, or write NO_PROBE.")
    endif()
    set(probe ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:AaxAdapter::vst2probe> --timeout 60 --expect)
    _aaxadapter_list_options(keywords)
    foreach(keyword IN LISTS keywords)
        _aaxadapter_read_option(${keyword})
        string(TOLOWER "--${keyword}" flag)
        string(REPLACE _ - flag "${flag}")
        if(option_PROBED AND option_kind STREQUAL "NUMBER")
            list(APPEND probe ${flag} ${arg_${keyword}})
        elseif(option_PROBED AND arg_${keyword})
            list(APPEND probe ${flag})
        endif()
    endforeach()
    if(arg_FEATURES)
        list(JOIN arg_FEATURES "," features)
        list(APPEND probe --features ${features} --)
    endif()
    set(${out} "${probe}" PARENT_SCOPE)
endfunction()
