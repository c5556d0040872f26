# Replaces source.vst in RESOURCES by SOURCE, a file or a bundle folder, and has it tried there.
#   PROBE   the command that tries it, a list; empty: it is not tried
#   MODULE  the bundle's executable, which goes when the plug-in fails
#   STAMP   the file that is there when all went well
#   PROCESSORS        a list: for macOS, what the product is for, and so the plug-in has to be; empty: not looked at
#   FEWER_PROCESSORS  on: the plug-in may be for some of them only
# A failure leaves neither stamp nor plug-in nor executable: nothing takes such a bundle for built, and the next build tries
# again even when an older plug-in is put back.
cmake_minimum_required(VERSION 3.25)
file(REMOVE ${STAMP})
file(REMOVE_RECURSE ${RESOURCES}/source.vst)
file(MAKE_DIRECTORY ${RESOURCES})
file(REAL_PATH ${SOURCE} real)
get_filename_component(name ${real} NAME)
file(COPY ${real} DESTINATION ${RESOURCES})
if(NOT name STREQUAL "source.vst")
    file(RENAME ${RESOURCES}/${name} ${RESOURCES}/source.vst)
endif()
if(PROCESSORS)
    include(${CMAKE_CURRENT_LIST_DIR}/MacProcessors.cmake)
    _aaxadapter_find_processor_fault(fault ${RESOURCES}/source.vst ${PROCESSORS})
    if(fault AND FEWER_PROCESSORS)
        message(STATUS "${SOURCE} in ${PRODUCT}: ${fault}.")
    elseif(fault)
        file(REMOVE ${MODULE})
        file(REMOVE_RECURSE ${RESOURCES}/source.vst)
        message(FATAL_ERROR "${PRODUCT} is not built, since ${SOURCE} does not fit it: ${fault}. It needs a plug-in for "
            "all of its processors, or FEWER_PROCESSORS in add_aax_adapter(${PRODUCT}).")
    endif()
endif()
if(PROBE)
    execute_process(COMMAND ${PROBE} ${RESOURCES}/source.vst RESULT_VARIABLE result OUTPUT_QUIET)
    if(NOT result EQUAL 0)
        file(REMOVE ${MODULE})
        file(REMOVE_RECURSE ${RESOURCES}/source.vst)
        message(FATAL_ERROR "${PRODUCT} is not built, since ${SOURCE} was refused as said above. A plug-in that cannot "
            "be loaded where it is built (for want of a display, say) needs NO_PROBE in add_aax_adapter(${PRODUCT}).")
    endif()
endif()
file(TOUCH ${STAMP})
