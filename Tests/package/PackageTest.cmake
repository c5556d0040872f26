# Installs this build, makes a product with it in a project of its own outside the tree, installs that and describes it.
#   cmake -DBUILD=… -DPLUGIN=… -DWORK=… -DMAKER=… -P PackageTest.cmake
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "'${ARGV}' answered ${result}:\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${WORK})
file(COPY ${MAKER}/ DESTINATION ${WORK}/maker)
run(${CMAKE_COMMAND} --install ${BUILD} --component AaxAdapter --prefix ${WORK}/installed)
run(${CMAKE_COMMAND} -S ${WORK}/maker -B ${WORK}/build -G Ninja -DCMAKE_BUILD_TYPE=Release
    -DCMAKE_PREFIX_PATH=${WORK}/installed -DPLUGIN=${PLUGIN})
run(${CMAKE_COMMAND} --build ${WORK}/build)
run(${CMAKE_COMMAND} --install ${WORK}/build --component MakersDelay --prefix ${WORK}/product)
run(${WORK}/installed/bin/aaxhost describe ${WORK}/product/MakersDelay.aaxplugin)
if(NOT output MATCHES "com\\.example\\.makersdelay")
    message(FATAL_ERROR "the product describes something else:\n${output}")
endif()
