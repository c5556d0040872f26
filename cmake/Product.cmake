# A product given on the command line:
#   cmake --preset release -DAAXADAPTER_PRODUCT=MyPlugin -DAAXADAPTER_SOURCE_VST=path
#         -DAAXADAPTER_EFFECT_ID=com.maker.myplugin -DAAXADAPTER_MANUFACTURER_ID=Mkr1
#         [-DAAXADAPTER_ENTRY_VERSION=2400] [-DAAXADAPTER_PORTS_FROM_COUNTS=ON] [-DAAXADAPTER_MIDI_INPUT=ON]
#         [-DAAXADAPTER_RT_GUARD=ON] [-DAAXADAPTER_VERSION=1.2.3]
include_guard(GLOBAL)

set(AAXADAPTER_PRODUCT "" CACHE STRING "Name of the product to build")
set(AAXADAPTER_SOURCE_VST "" CACHE STRING "The VST 2 plug-in it wraps")
set(AAXADAPTER_EFFECT_ID "" CACHE STRING "Its effect identifier, a reverse-domain name")
set(AAXADAPTER_MANUFACTURER_ID "" CACHE STRING "Its maker's four-character code")
set(AAXADAPTER_ENTRY_VERSION "0" CACHE STRING "Host version answered inside the plug-in's entry")
set(AAXADAPTER_VERSION "1.0.0" CACHE STRING "Version of the bundle")
option(AAXADAPTER_PORTS_FROM_COUNTS "Ports of a plug-in that describes no pins" OFF)
option(AAXADAPTER_MIDI_INPUT "A MIDI input although the plug-in announces none" OFF)

option(AAXADAPTER_RT_GUARD "Count what should not happen while a block is rendered, for a beta" OFF)

if(AAXADAPTER_PRODUCT)
    set(options "")
    foreach(option PORTS_FROM_COUNTS MIDI_INPUT RT_GUARD)
        if(AAXADAPTER_${option})
            list(APPEND options ${option})
        endif()
    endforeach()
    add_aax_adapter(${AAXADAPTER_PRODUCT}
        SOURCE_VST "${AAXADAPTER_SOURCE_VST}"
        EFFECT_ID "${AAXADAPTER_EFFECT_ID}"
        MANUFACTURER_ID "${AAXADAPTER_MANUFACTURER_ID}"
        ENTRY_VERSION "${AAXADAPTER_ENTRY_VERSION}"
        VERSION "${AAXADAPTER_VERSION}"
        ${options})
endif()
