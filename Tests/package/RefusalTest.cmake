# Configures and builds products that cannot be, in a project of their own beside the installed package, and looks for the
# sentence that each gets; and products on the command line, of which nothing stays for the next.
#   cmake -DBUILD=… -DPLUGIN=… -DDEMANDING=… -DSOURCES=… -DWORK=… -P RefusalTest.cmake
file(REMOVE_RECURSE ${WORK})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --component AaxAdapter --prefix ${WORK}/installed
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(WRITE ${WORK}/text.so "This is no library.")
file(MAKE_DIRECTORY "${WORK}/an empty folder.vst")

# Configures a project of these lines; result and output tell what came of it.
function(configure lines)
    file(WRITE ${WORK}/project/CMakeLists.txt "cmake_minimum_required(VERSION 3.25)\nproject(Refused LANGUAGES CXX)\n"
        "find_package(AaxAdapter REQUIRED)\n${lines}\n")
    execute_process(COMMAND ${CMAKE_COMMAND} -S ${WORK}/project -B ${WORK}/build -G Ninja -DCMAKE_BUILD_TYPE=Release
        -DCMAKE_PREFIX_PATH=${WORK}/installed RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    set(result ${result} PARENT_SCOPE)
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(build)
    execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}/build
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    set(result ${result} PARENT_SCOPE)
    set(output "${output}" PARENT_SCOPE)
endfunction()

# The sentence may be broken into lines.
function(expect_refusal what sentence)
    string(REGEX REPLACE "[ \n]+" " " text "${output}")
    string(FIND "${text}" "${sentence}" place)
    if(result EQUAL 0 OR place EQUAL -1)
        message(SEND_ERROR "${what} was to be refused with '${sentence}' and answered ${result}:\n${output}")
    endif()
endfunction()

set(good "SOURCE_VST ${PLUGIN} EFFECT_ID com.example.a MANUFACTURER_ID Mkr1")
foreach(row
        "${good})\nadd_aax_adapter(B ${good}|EFFECT_ID 'com.example.a' is that of A already"
        "SOURCE_VST ${PLUGIN} EFFECT_ID com.example.a MANUFACTURER_ID \"    \"|has to be four characters with a letter"
        "${good} VERSION 1.2.3.4|VERSION '1.2.3.4' has to be one to three numbers"
        "${good} VERSION 1.100|the first up to 9999, the others up to 99"
        "SOURCE_VST \"a\\\\;b\" EFFECT_ID com.example.a MANUFACTURER_ID Mkr1|would be taken for two, and so would the plug-in's"
        "${good} FEATURES TIME TEMPO|FEATURES 'TEMPO' is none"
        "${good} STEMS mono mono|STEMS 'mono mono' is none; write mono, mono-stereo or stereo, each once"
        "${good} CATEGORY verb|CATEGORY 'verb' is none; write eq, dynamics"
        "${good} ENTRY_VERSION 4294967296|has to be a number up to 2147483647")
    string(REGEX REPLACE "\\|.*" "" arguments "${row}")
    string(REGEX REPLACE ".*\\|" "" sentence "${row}")
    configure("add_aax_adapter(A ${arguments})")
    expect_refusal("${arguments}" "${sentence}")
endforeach()

foreach(row
        "text.so|a file of another kind"
        "an empty folder.vst|there is no executable in it"
        "demanding.so|with ENTRY_VERSION 2400 it loads")
    string(REGEX REPLACE "\\|.*" "" file "${row}")
    string(REGEX REPLACE ".*\\|" "" sentence "${row}")
    if(file STREQUAL demanding.so)
        file(COPY_FILE ${DEMANDING} ${WORK}/demanding.so)
    endif()
    configure("add_aax_adapter(A SOURCE_VST \"${WORK}/${file}\" EFFECT_ID com.example.a MANUFACTURER_ID Mkr1)")
    foreach(time first second) # nothing of the first may count as built
        build()
        expect_refusal("${file}, built for the ${time} time" "${sentence}")
    endforeach()
endforeach()
foreach(option "ENTRY_VERSION 2400" NO_PROBE)
    configure("add_aax_adapter(A SOURCE_VST ${WORK}/demanding.so EFFECT_ID com.example.a MANUFACTURER_ID Mkr1 ${option})")
    build()
    if(NOT result EQUAL 0)
        message(SEND_ERROR "with ${option} it was to be built:\n${output}")
    endif()
endforeach()

# Products of the command line: what each run is told, and with which arguments it makes its product.
file(WRITE ${WORK}/options/CMakeLists.txt "cmake_minimum_required(VERSION 3.25)\nproject(Options LANGUAGES NONE)\n"
    "function(add_aax_adapter)\nmessage(NOTICE \"made \${ARGN}\")\nendfunction()\ninclude(${SOURCES}/cmake/Product.cmake)\n")
foreach(row
        "-DAAXADAPTER_PRODUCT=A -DAAXADAPTER_ENTRY_VERSION=2400 -DAAXADAPTER_MIDI_INPUT=ON|ENTRY_VERSION 2400 VERSION 1.0.0 MIDI_INPUT"
        "-DAAXADAPTER_VERSION=2|ENTRY_VERSION 2400 VERSION 2 MIDI_INPUT"
        "-DAAXADAPTER_PRODUCT=B|ENTRY_VERSION 0 VERSION 1.0.0"
        "-DAAXADAPTER_PRODUCT=|")
    string(REGEX REPLACE "\\|.*" "" arguments "${row}")
    string(REGEX REPLACE ".*\\|" "" made "${row}")
    separate_arguments(arguments)
    execute_process(COMMAND ${CMAKE_COMMAND} -S ${WORK}/options -B ${WORK}/options/build -G Ninja ${arguments}
        OUTPUT_QUIET ERROR_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
    string(REPLACE ";" " " output "${output}")
    string(REGEX REPLACE "made [^ ]*|SOURCE_VST +EFFECT_ID +MANUFACTURER_ID *|\n" "" output "${output}")
    string(STRIP "${output}" output)
    if(NOT output STREQUAL made)
        message(SEND_ERROR "'${arguments}' made a product of '${output}' and not of '${made}'")
    endif()
endforeach()
