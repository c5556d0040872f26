# Makes a product of the command line with every option set to something other than its default, and reads each back from
# what its module shows a host, with a plug-in that needs them all. Looks for each in docs/products.md
# as well, and for each that is PROBED in the help of vst2probe.
#   cmake -DBUILD=… -DDEMANDING=… -DSOURCES=… -DWORK=… -P OptionsTest.cmake
include(${SOURCES}/cmake/ProductOptions.cmake)
set(rows # each option, and what shows it
    "SOURCE_VST=${DEMANDING}|Faulty"
    "EFFECT_ID=com.example.every|\"id\": \"com.example.every\""
    "MANUFACTURER_ID=Evr1|\"manufacturer id\",[^}]*'Evr1'"
    "ENTRY_VERSION=2300|\"product id\",[^}]*\"value\": 2300," # the plug-in's number is what it was told
    "PORTS_FROM_COUNTS=ON|\"output stem format\",[^}]*\"stereo\""
    "MIDI_INPUT=ON|\"node\": \"local input\""
    "CATEGORY=noise-reduction|\"categories\": . ?128"
    "STEMS=mono-stereo|\"input stem format\",[^}]*\"mono\""
    "FEATURES=MIDI_OUTPUT|\"node\": \"local output\""
    "RT_GUARD=ON|Real-time guard, [1-9]"
    "NO_PROBE=ON|\"effects\"" # vst2probe would have stopped the build
    "FEWER_PROCESSORS=ON|-DFEWER_PROCESSORS=TRUE" # only a bundle for macOS is looked at, so the command shows that it arrives
    "VERSION=1.2.3.4|VERSION '1.2.3.4' has to be") # only a bundle for macOS has it, so a refusal shows that it arrives

file(REMOVE_RECURSE ${WORK})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --component AaxAdapter --prefix ${WORK}/installed
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${WORK}/installed/bin/vst2probe --help OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
file(WRITE ${WORK}/installed/bin/vst2probe "#!/bin/sh\nexit 1\n")
file(WRITE ${WORK}/project/CMakeLists.txt "cmake_minimum_required(VERSION 3.25)\nproject(Options LANGUAGES CXX)\n"
    "find_package(AaxAdapter REQUIRED)\ninclude(${SOURCES}/cmake/Product.cmake)\n")
set(keywords ${rows})
list(TRANSFORM keywords REPLACE "=.*" "")
_aaxadapter_list_options(listed)
if(NOT keywords STREQUAL listed)
    message(SEND_ERROR "Of the options '${listed}' this test sets '${keywords}'.")
endif()
file(READ ${SOURCES}/docs/products.md page)
foreach(keyword IN LISTS listed)
    _aaxadapter_read_option(${keyword})
    if(option_kind STREQUAL REQUIRED)
        set(place "\n +${keyword} ") # in the call of add_aax_adapter
    else()
        set(place "\n\\| `${keyword}[ `]") # in the table
    endif()
    if(NOT page MATCHES "${place}")
        message(SEND_ERROR "docs/products.md says nothing of ${keyword}.")
    endif()
    string(TOLOWER ${keyword} flag)
    string(REPLACE "_" "-" flag ${flag})
    if(option_PROBED AND NOT help MATCHES " --${flag} ")
        message(SEND_ERROR "vst2probe knows nothing of ${keyword}, which is PROBED.")
    endif()
endforeach()
set(arguments ${rows})
list(TRANSFORM arguments REPLACE "\\|.*" "")
list(TRANSFORM arguments PREPEND -DAAXADAPTER_)

set(shown "")
function(run)
    execute_process(COMMAND ${ARGV} OUTPUT_VARIABLE output ERROR_VARIABLE output)
    string(REGEX REPLACE "[ \n]+" " " output "${output}")
    set(shown "${shown}${output}" PARENT_SCOPE)
endfunction()
run(${CMAKE_COMMAND} -S ${WORK}/project -B ${WORK}/build -G Ninja -DCMAKE_BUILD_TYPE=Release
    -DCMAKE_PREFIX_PATH=${WORK}/installed -DAAXADAPTER_PRODUCT=Every ${arguments})
run(${CMAKE_COMMAND} -S ${WORK}/project -B ${WORK}/build -DAAXADAPTER_VERSION=3.2.1)
run(${CMAKE_COMMAND} --build ${WORK}/build -- -t commands)
run(${CMAKE_COMMAND} --build ${WORK}/build)
set(module ${WORK}/build/modules/Every.aaxplugin)
run(${WORK}/installed/bin/aaxhost describe ${module} --json)
run(${WORK}/installed/bin/aaxhost render ${module} --output ${WORK}/out.wav --seconds 0.1)
foreach(row IN LISTS rows)
    string(REGEX REPLACE "^[^|]*\\|" "" regex "${row}")
    if(NOT shown MATCHES "${regex}")
        message(SEND_ERROR "'${row}' is not to be seen:\n${shown}")
    endif()
endforeach()
