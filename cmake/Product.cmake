# A product given on the command line:
#   cmake --preset release -DAAXADAPTER_PRODUCT=MyPlugin -DAAXADAPTER_SOURCE_VST=path
#         -DAAXADAPTER_EFFECT_ID=com.maker.myplugin -DAAXADAPTER_MANUFACTURER_ID=Mkr1 [-DAAXADAPTER_<option>=…]
# with the options of ProductOptions.cmake, ON for a switch.
# A command line that names a product says all of it: what it leaves out is the default, whatever an earlier one had. An
# empty name takes the product out again.
include_guard(GLOBAL)
include(${CMAKE_CURRENT_LIST_DIR}/ProductOptions.cmake)

# A cache entry of the command line has this help text until it gets its own.
get_property(_product_help CACHE AAXADAPTER_PRODUCT PROPERTY HELPSTRING)
string(FIND "${_product_help}" "specified on the command line" _product_given)

function(_aaxadapter_product_option name type default help)
    set(force "")
    get_property(old_help CACHE AAXADAPTER_${name} PROPERTY HELPSTRING)
    if(NOT _product_given EQUAL -1 AND "${old_help}" STREQUAL "${help}")
        set(force FORCE)
    endif()
    set(AAXADAPTER_${name} "${default}" CACHE ${type} "${help}" ${force})
    set_property(CACHE AAXADAPTER_${name} PROPERTY HELPSTRING "${help}")
endfunction()

_aaxadapter_product_option(PRODUCT STRING "" "Name of the product to build")
set(_values "")
set(_switches "")
_aaxadapter_list_options(_keywords)
foreach(_keyword IN LISTS _keywords)
    _aaxadapter_read_option(${_keyword})
    if(option_kind STREQUAL "SWITCH")
        _aaxadapter_product_option(${_keyword} BOOL ${option_default} "${option_help}")
        if(AAXADAPTER_${_keyword})
            list(APPEND _switches ${_keyword})
        endif()
    elseif(option_kind MATCHES "LIST|CHOICE")
        _aaxadapter_product_option(${_keyword} STRING "${option_default}" "${option_help}")
        if(AAXADAPTER_${_keyword})
            list(APPEND _switches ${_keyword} ${AAXADAPTER_${_keyword}})
        endif()
    else()
        _aaxadapter_product_option(${_keyword} STRING "${option_default}" "${option_help}")
        string(REPLACE ";" "\\;" _value "${AAXADAPTER_${_keyword}}") # of a path, to be refused as one
        list(APPEND _values ${_keyword} "${_value}")
    endif()
endforeach()

if(AAXADAPTER_PRODUCT)
    add_aax_adapter(${AAXADAPTER_PRODUCT} ${_values} ${_switches})
endif()
