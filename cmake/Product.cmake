# A product given on the command line:
#   cmake --preset release -DAAXADAPTER_PRODUCT=MyPlugin -DAAXADAPTER_SOURCE_VST=path
#         -DAAXADAPTER_EFFECT_ID=com.maker.myplugin -DAAXADAPTER_MANUFACTURER_ID=Mkr1
#         [-DAAXADAPTER_ENTRY_VERSION=2400] [-DAAXADAPTER_PORTS_FROM_COUNTS=ON] [-DAAXADAPTER_MIDI_INPUT=ON]
#         [-DAAXADAPTER_RT_GUARD=ON] [-DAAXADAPTER_NO_PROBE=ON] [-DAAXADAPTER_VERSION=1.2.3]
# A command line that names a product says all of it: what it leaves out is the default, whatever an earlier one had. An
# empty name takes the product out again.
include_guard(GLOBAL)

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
_aaxadapter_product_option(SOURCE_VST STRING "" "The VST 2 plug-in it wraps")
_aaxadapter_product_option(EFFECT_ID STRING "" "Its effect identifier, a reverse-domain name")
_aaxadapter_product_option(MANUFACTURER_ID STRING "" "Its maker's four-character code")
_aaxadapter_product_option(VERSION STRING 1.0.0 "Version of the bundle")
_aaxadapter_product_option(ENTRY_VERSION STRING 0 "Host version answered inside the plug-in's entry")
_aaxadapter_product_option(PORTS_FROM_COUNTS BOOL OFF "Ports of a plug-in that describes no pins")
_aaxadapter_product_option(MIDI_INPUT BOOL OFF "A MIDI input although the plug-in announces none")
_aaxadapter_product_option(RT_GUARD BOOL OFF "Count what should not happen while a block is rendered, for a beta")
_aaxadapter_product_option(NO_PROBE BOOL OFF "Do not try while building whether the plug-in loads")

if(AAXADAPTER_PRODUCT)
    set(switches "")
    foreach(switch PORTS_FROM_COUNTS MIDI_INPUT RT_GUARD NO_PROBE)
        if(AAXADAPTER_${switch})
            list(APPEND switches ${switch})
        endif()
    endforeach()
    add_aax_adapter(${AAXADAPTER_PRODUCT}
        SOURCE_VST "${AAXADAPTER_SOURCE_VST}"
        EFFECT_ID "${AAXADAPTER_EFFECT_ID}"
        MANUFACTURER_ID "${AAXADAPTER_MANUFACTURER_ID}"
        ENTRY_VERSION "${AAXADAPTER_ENTRY_VERSION}"
        VERSION "${AAXADAPTER_VERSION}"
        ${switches})
endif()
