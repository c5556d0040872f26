# The features of a product: what it does beyond the required behaviour, each off unless FEATURES names it. Each is said here
# and nowhere else; from its row follow its name in FEATURES and the field of SProductFeatures
# (Source/plugins/ProductFeatures.h) with MEANING for its comment. Its work stands in Source/features/.
#
#   _aaxadapter_feature(NAME field MEANING line...)
include_guard(GLOBAL)

function(_aaxadapter_feature name field)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "MEANING")
    set_property(GLOBAL APPEND PROPERTY _aaxadapter_features ${name})
    set_property(GLOBAL PROPERTY _aaxadapter_feature_${name}_field ${field})
    set_property(GLOBAL PROPERTY _aaxadapter_feature_${name}_meaning "${arg_MEANING}")
endfunction()

# The names of all features.
function(_aaxadapter_list_features out)
    get_property(names GLOBAL PROPERTY _aaxadapter_features)
    set(${out} "${names}" PARENT_SCOPE)
endfunction()

# The features that a product's FEATURES asks for, each once, in the order of the rows. Stops with the list of names at one
# that is none.
function(_aaxadapter_choose_features out product)
    _aaxadapter_list_features(names)
    foreach(name IN LISTS ARGN)
        if(NOT name STREQUAL "ALL" AND NOT name IN_LIST names)
            list(JOIN names ", " names)
            message(FATAL_ERROR "add_aax_adapter(${product}): FEATURES '${name}' is none; write ALL, or some of ${names}.")
        endif()
    endforeach()
    set(chosen "")
    foreach(name IN LISTS names)
        if(name IN_LIST ARGN OR ALL IN_LIST ARGN)
            list(APPEND chosen ${name})
        endif()
    endforeach()
    set(${out} "${chosen}" PARENT_SCOPE)
endfunction()

set_property(GLOBAL PROPERTY _aaxadapter_features "") # of a package, where a project has both
_aaxadapter_feature(TIME mTime MEANING
    "The plug-in gets the whole time record: song position, bars, meter, loop, nanoseconds, and what of it is valid.")
_aaxadapter_feature(LATENCY mLatency MEANING
    "The host is told a latency that the plug-in shows later, or changes.")
_aaxadapter_feature(HOST_ANSWERS mHostAnswers MEANING
    "The plug-in's questions about its host are answered, and it is told when processing starts and stops.")
_aaxadapter_feature(IDLE mIdle MEANING
    "A plug-in that asks for idle calls gets them until it has had enough.")
_aaxadapter_feature(RESIZE mResize MEANING
    "The editor's size follows the plug-in.")
_aaxadapter_feature(MIDI_OUTPUT mMidiOutput MEANING
    "The MIDI that the plug-in sends reaches the host.")
_aaxadapter_feature(SYSEX mSysex MEANING
    "System exclusive messages reach the plug-in.")
_aaxadapter_feature(PROGRAM_FIRST mProgramFirst MEANING
    "On a load the program is set ahead of the chunk, so that what the chunk restores stays.")
_aaxadapter_feature(PARAMETER_SYNC mParameterSync MEANING
    "The module tells the values that the host and the plug-in have, at any time.")
_aaxadapter_feature(VALUE_TEXTS mValueTexts MEANING
    "Values are shown as the plug-in writes them, and typed so.")
_aaxadapter_feature(PARAMETER_PROPERTIES mParameterProperties MEANING
    "Parameters have the plug-in's short names and steps, are automated only if they can be, and are renamed with it.")
_aaxadapter_feature(GESTURES mGestures MEANING
    "A gesture of the plug-in is one touch, its values and one release.")
_aaxadapter_feature(BYPASS mBypass MEANING
    "Master bypass passes the input on, as late as the plug-in's output and without a click.")
_aaxadapter_feature(PROGRAMS mPrograms MEANING
    "The plug-in's programs are a parameter of the host, the last one.")
_aaxadapter_feature(OUTPUT_NAMES mOutputNames MEANING
    "Auxiliary outputs are called as the plug-in calls them.")
