# The options of a product. Each is said here and nowhere else; from its row follow
#
#   - the keyword of add_aax_adapter(), and the variable AAXADAPTER_<keyword> of the command line with its default and help;
#   - of one with a CONSTANT, what the module knows it by: the declaration in Source/plugins/ProductOptions.h with MEANING
#     for its comment, and the value in a product, in vst2probe and in the tests' product that decides nothing;
#   - of one that is PROBED, what vst2probe is told when it tries the plug-in: `--keyword-in-lower-case`.
#
#   _aaxadapter_option(KEYWORD kind default "help" [PROBED] [EXAMPLE value] [CHOICES word=number...]
#                      [CONSTANT name MEANING line...])
#
# The kind is REQUIRED or TEXT, NUMBER (an int32_t, of which the sentence about a wrong one names an EXAMPLE), CHOICE (one of
# the CHOICES; none of them is 0), SWITCH or LIST (one or more words; where there are CHOICES, up to seven of these, and its
# constant has four bits of each, the first lowest).
include_guard(GLOBAL)

function(_aaxadapter_option keyword kind default help)
    cmake_parse_arguments(PARSE_ARGV 4 arg "PROBED" "EXAMPLE;CONSTANT" "CHOICES;MEANING")
    set_property(GLOBAL APPEND PROPERTY _aaxadapter_options ${keyword})
    foreach(field kind default help)
        set_property(GLOBAL PROPERTY _aaxadapter_${keyword}_${field} "${${field}}")
    endforeach()
    foreach(field PROBED EXAMPLE CHOICES CONSTANT MEANING)
        set_property(GLOBAL PROPERTY _aaxadapter_${keyword}_${field} "${arg_${field}}")
    endforeach()
endfunction()

# The keywords of the options of these kinds, in the order of the rows; of all without a kind.
function(_aaxadapter_list_options out)
    get_property(keywords GLOBAL PROPERTY _aaxadapter_options)
    set(found "")
    foreach(keyword IN LISTS keywords)
        get_property(kind GLOBAL PROPERTY _aaxadapter_${keyword}_kind)
        list(FIND ARGN ${kind} place)
        if(NOT ARGN OR NOT place EQUAL -1)
            list(APPEND found ${keyword})
        endif()
    endforeach()
    set(${out} "${found}" PARENT_SCOPE)
endfunction()

# The number that words stand for among CHOICES; nothing where one of them is none, or stands there twice.
function(_aaxadapter_number_of_choices out words)
    set(sum 0)
    set(shift 0)
    foreach(word IN LISTS words)
        set(choices ${ARGN})
        list(FILTER choices INCLUDE REGEX "^${word}=")
        set(same ${words})
        list(FILTER same INCLUDE REGEX "^${word}$")
        list(LENGTH same times)
        if(NOT choices OR times GREATER 1)
            set(${out} "" PARENT_SCOPE)
            return()
        endif()
        string(REGEX REPLACE "^[^=]*=" "" number "${choices}")
        math(EXPR sum "${sum} | (${number} << ${shift})")
        math(EXPR shift "${shift} + 4")
    endforeach()
    set(${out} "${sum}" PARENT_SCOPE)
endfunction()

# What an option's row says: its kind, default, help, PROBED, EXAMPLE, CHOICES, CONSTANT and MEANING as variables option_….
macro(_aaxadapter_read_option keyword)
    foreach(field kind default help PROBED EXAMPLE CHOICES CONSTANT MEANING)
        get_property(option_${field} GLOBAL PROPERTY _aaxadapter_${keyword}_${field})
    endforeach()
endmacro()

set_property(GLOBAL PROPERTY _aaxadapter_options "") # of a package, where a project has both
_aaxadapter_option(SOURCE_VST REQUIRED "" "The VST 2 plug-in it wraps")
_aaxadapter_option(EFFECT_ID REQUIRED "" "Its effect identifier, a reverse-domain name")
_aaxadapter_option(MANUFACTURER_ID REQUIRED "" "Its maker's four-character code")
_aaxadapter_option(ENTRY_VERSION NUMBER 0 "Host version answered inside the plug-in's entry" PROBED EXAMPLE 2400
    CONSTANT kEntryHostVersion MEANING
    "Host version answered to a plug-in that asks before its effect is known, that is from inside its entry."
    "Many plug-ins refuse to load on 0; 2400 is what is answered later on.")
_aaxadapter_option(PORTS_FROM_COUNTS SWITCH OFF "Ports of a plug-in that describes no pins" PROBED
    CONSTANT kPortsFromCounts MEANING
    "A direction whose first pin the plug-in answers with 0, or that has no port because a pin named a"
    "speaker, gets its channels paired into stereo ports, an odd last one mono, all without names. When false"
    "such a plug-in has no ports there.")
_aaxadapter_option(MIDI_INPUT SWITCH OFF "A MIDI input although the plug-in announces none" PROBED
    CONSTANT kMidiInput MEANING
    "The description has a MIDI input even where the plug-in has not said that it takes MIDI.")
_aaxadapter_option(CATEGORY CHOICE "" "Where hosts list it; otherwise as what the plug-in says that it is"
    CHOICES eq=0x1 dynamics=0x2 pitch=0x4 reverb=0x8 delay=0x10 modulation=0x20 harmonic=0x40 noise-reduction=0x80
    dither=0x100 sound-field=0x200 instrument=0x800 effect=0x2000
    CONSTANT kCategory MEANING
    "The category in the description; 0: software instrument or wrapped plug-in, as the plug-in says.")
_aaxadapter_option(STEMS LIST "" "Main stems that it is offered for; otherwise those of the plug-in's first ports"
    CHOICES mono=1 mono-stereo=2 stereo=3
    CONSTANT kStems MEANING
    "Main stems of the components in the description, four bits each, the first lowest: 1 mono, 2 mono into stereo, 3"
    "stereo. 0: one component, as the plug-in's first ports are.")
_aaxadapter_option(FEATURES LIST "" "What it does beyond the required: ALL, or names of cmake/ProductFeatures.cmake")
_aaxadapter_option(RT_GUARD SWITCH OFF "Count what should not happen while a block is rendered, for a beta")
_aaxadapter_option(NO_PROBE SWITCH OFF "Do not try while building whether the plug-in loads")
_aaxadapter_option(FEWER_PROCESSORS SWITCH OFF "The plug-in may be for fewer processors than a universal product")
_aaxadapter_option(VERSION TEXT 1.0.0 "Version of the bundle")
