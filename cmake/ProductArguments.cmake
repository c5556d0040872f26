# What add_aax_adapter() takes for an argument.
include_guard(GLOBAL)
include(${CMAKE_CURRENT_LIST_DIR}/ProductFeatures.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/ProductOptions.cmake)

# Stops the configuration with a sentence that says what to write.
macro(_aaxadapter_check_arguments)
    if(NOT name MATCHES "^[A-Za-z0-9_-]+$")
        message(FATAL_ERROR "add_aax_adapter: the product name '${name}' may have letters, digits, '-' and '_' only.")
    endif()
    if(arg_UNPARSED_ARGUMENTS)
        _aaxadapter_list_options(keywords)
        list(POP_BACK keywords last)
        list(JOIN keywords ", " keywords)
        message(FATAL_ERROR "add_aax_adapter(${name}): '${arg_UNPARSED_ARGUMENTS}' is no argument of it; "
            "write ${keywords} or ${last}.")
    endif()
    _aaxadapter_list_options(keywords)
    foreach(keyword IN LISTS keywords)
        _aaxadapter_read_option(${keyword})
        if(option_kind STREQUAL "REQUIRED" AND NOT arg_${keyword})
            message(FATAL_ERROR "add_aax_adapter(${name}): ${keyword} is missing.")
        elseif(NOT DEFINED arg_${keyword})
            set(arg_${keyword} "${option_default}")
        endif()
    endforeach()
    if("${arg_SOURCE_VST}" MATCHES ";" OR "${CMAKE_BINARY_DIR}" MATCHES ";")
        message(FATAL_ERROR "add_aax_adapter(${name}): a path with ';' would be taken for two, and so would the plug-in's, "
            "'${arg_SOURCE_VST}', or that of the build folder, '${CMAKE_BINARY_DIR}'; rename the folder or file.")
    endif()
    if(NOT TARGET "${arg_SOURCE_VST}")
        cmake_path(ABSOLUTE_PATH arg_SOURCE_VST NORMALIZE)
        if(NOT EXISTS "${arg_SOURCE_VST}")
            message(FATAL_ERROR "add_aax_adapter(${name}): there is no plug-in at '${arg_SOURCE_VST}'; "
                "SOURCE_VST takes the path of a VST 2 plug-in.")
        endif()
    endif()
    if(NOT arg_EFFECT_ID MATCHES "^[A-Za-z0-9-]+(\\.[A-Za-z0-9-]+)+$")
        message(FATAL_ERROR "add_aax_adapter(${name}): EFFECT_ID '${arg_EFFECT_ID}' is no reverse-domain name; "
            "write one like com.maker.myplugin.")
    endif()
    get_property(owner GLOBAL PROPERTY _aaxadapter_owner_of_${arg_EFFECT_ID})
    if(owner)
        message(FATAL_ERROR "add_aax_adapter(${name}): EFFECT_ID '${arg_EFFECT_ID}' is that of ${owner} already, and a host "
            "would take the two for one; give each product its own.")
    endif()
    set_property(GLOBAL PROPERTY _aaxadapter_owner_of_${arg_EFFECT_ID} ${name})
    if(NOT arg_MANUFACTURER_ID MATCHES "^[A-Za-z0-9 _-][A-Za-z0-9 _-][A-Za-z0-9 _-][A-Za-z0-9 _-]$"
            OR NOT arg_MANUFACTURER_ID MATCHES "[A-Za-z0-9]")
        message(FATAL_ERROR "add_aax_adapter(${name}): MANUFACTURER_ID '${arg_MANUFACTURER_ID}' has to be four "
            "characters with a letter or digit among them, like Mkr1.")
    endif()
    _aaxadapter_list_options(numbers NUMBER)
    foreach(keyword IN LISTS numbers)
        if(NOT arg_${keyword} MATCHES "^[0-9]+$" OR arg_${keyword} GREATER 2147483647) # an int32_t
            _aaxadapter_read_option(${keyword})
            message(FATAL_ERROR "add_aax_adapter(${name}): ${keyword} '${arg_${keyword}}' has to be a number up to "
                "2147483647; write ${option_EXAMPLE}, or leave it out for ${option_default}.")
        endif()
    endforeach()
    _aaxadapter_list_options(choices CHOICE LIST)
    foreach(keyword IN LISTS choices)
        _aaxadapter_read_option(${keyword})
        _aaxadapter_number_of_choices(number "${arg_${keyword}}" ${option_CHOICES})
        if(option_CHOICES AND number STREQUAL "")
            list(TRANSFORM option_CHOICES REPLACE "=.*" "")
            list(POP_BACK option_CHOICES last)
            list(JOIN option_CHOICES ", " words)
            list(JOIN arg_${keyword} " " given)
            set(each "")
            if(option_kind STREQUAL "LIST")
                set(each ", each once")
            endif()
            message(FATAL_ERROR "add_aax_adapter(${name}): ${keyword} '${given}' is none; write ${words} or ${last}${each}.")
        endif()
    endforeach()
    _aaxadapter_choose_features(arg_FEATURES ${name} ${arg_FEATURES})
    _aaxadapter_check_version()
endmacro()

# CFBundleVersion is up to three numbers, of which the system reads four, two and two digits of the parts at most and takes
# a longer one for another version.
macro(_aaxadapter_check_version)
    if(NOT arg_VERSION MATCHES "^(0|[1-9][0-9]?[0-9]?[0-9]?)(\\.(0|[1-9][0-9]?))?(\\.(0|[1-9][0-9]?))?$")
        message(FATAL_ERROR "add_aax_adapter(${name}): VERSION '${arg_VERSION}' has to be one to three numbers with dots "
            "between them, like 1.2.3: the first up to 9999, the others up to 99, none with a 0 ahead. The bundle's property "
            "list holds no more.")
    endif()
endmacro()
