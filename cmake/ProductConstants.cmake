# What a module knows its product's options by: constants, which Source/plugins/ProductOptions.h declares and each product's
# own source defines.
include_guard(GLOBAL)
include(${CMAKE_CURRENT_LIST_DIR}/ProductFeatures.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/ProductOptions.cmake)

# The declarations and the definitions in C++; the values are those of the variables of the prefix and the keyword, and the
# defaults where there is none.
function(_aaxadapter_list_constants out_declarations out_definitions prefix)
    set(declarations "")
    set(definitions "")
    _aaxadapter_list_options(keywords)
    foreach(keyword IN LISTS keywords)
        _aaxadapter_read_option(${keyword})
        if(NOT option_CONSTANT)
            continue()
        endif()
        set(value "${option_default}")
        if(DEFINED ${prefix}${keyword})
            set(value "${${prefix}${keyword}}")
        endif()
        set(type std::int32_t)
        if(option_kind STREQUAL "SWITCH")
            set(type bool)
            if(value)
                set(value true)
            else()
                set(value false)
            endif()
        endif()
        if(option_CHOICES)
            _aaxadapter_number_of_choices(value "${value}" ${option_CHOICES})
        endif()
        list(JOIN option_MEANING "\n * " meaning)
        string(APPEND declarations "\n/**\n * [${value}] ${meaning}\n */\nextern const ${type} ${option_CONSTANT};\n")
        string(APPEND definitions "const ${type} ${option_CONSTANT} = ${value};\n")
    endforeach()
    set(${out_declarations} "${declarations}" PARENT_SCOPE)
    set(${out_definitions} "${definitions}" PARENT_SCOPE)
endfunction()

# The record's fields and, with the chosen features, its initializers in C++.
function(_aaxadapter_list_feature_fields out_fields out_initializers)
    set(fields "")
    set(initializers "")
    _aaxadapter_list_features(names)
    foreach(name IN LISTS names)
        get_property(field GLOBAL PROPERTY _aaxadapter_feature_${name}_field)
        get_property(meaning GLOBAL PROPERTY _aaxadapter_feature_${name}_meaning)
        list(JOIN meaning "\n     * " meaning)
        string(APPEND fields "    /** ${meaning} */\n    bool ${field} = false;\n")
        if(name IN_LIST ARGN)
            list(APPEND initializers ".${field} = true")
        endif()
    endforeach()
    list(JOIN initializers ", " initializers)
    set(${out_fields} "${fields}" PARENT_SCOPE)
    set(${out_initializers} "${initializers}" PARENT_SCOPE)
endfunction()

# Writes ProductOptions.h and ProductFeatures.h below a folder, and lets the target and its users include them.
function(aaxadapter_declare_options target folder)
    _aaxadapter_list_constants(declarations ignored none_)
    file(CONFIGURE OUTPUT ${folder}/Source/plugins/ProductOptions.h @ONLY CONTENT "#pragma once
// Made from cmake/ProductOptions.cmake.
#include <cstdint>

/*
 * What a product decides about the plug-in it wraps. Declared here, defined by each product's own source;
 * the value in brackets is the default.
 */
${declarations}")
    _aaxadapter_list_feature_fields(fields ignored)
    _aaxadapter_list_features(names)
    list(TRANSFORM names REPLACE "(.+)" "\"\\1\"")
    list(JOIN names ", " names)
    file(CONFIGURE OUTPUT ${folder}/Source/plugins/ProductFeatures.h @ONLY CONTENT "#pragma once
// Made from cmake/ProductFeatures.cmake.

/** What a product does beyond the required behaviour. Declared here, defined by each product's own source. */
struct SProductFeatures
{
${fields}};

/* Hidden, so that reading one in a render call takes no detour. */
extern const SProductFeatures kProductFeatures __attribute__((visibility(\"hidden\")));

/** Their names in FEATURES, in the order of the fields. */
inline constexpr const char* kProductFeatureNames[] = {${names}};
")
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${folder}>)
endfunction()

# Defines the constants in a target that is no product, with the defaults but for what is said here:
#   aaxadapter_define_options(target [KEYWORD value]...)
function(aaxadapter_define_options target)
    _aaxadapter_list_options(keywords)
    cmake_parse_arguments(PARSE_ARGV 1 own "" "${keywords}" "")
    _aaxadapter_list_constants(ignored definitions own_)
    file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${target}_options.cpp @ONLY CONTENT
        "#include \"Source/plugins/ProductFeatures.h\"\n#include \"Source/plugins/ProductOptions.h\"\n
${definitions}const SProductFeatures kProductFeatures{};\n")
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}_options.cpp)
    target_include_directories(${target} PRIVATE $<TARGET_PROPERTY:vst2_host,INTERFACE_INCLUDE_DIRECTORIES>)
endfunction()
