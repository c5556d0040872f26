# Installs this build, makes a product with it in a project of its own outside the tree, installs that, describes it, and
# packs both.
#   cmake -DBUILD=… -DPLUGIN=… -DMODULE=… -DCPACK=… -DWORK=… -DMAKER=… -P PackageTest.cmake
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "'${ARGV}' answered ${result}:\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

# Packs what a build installs and looks for files in the archive: pack_and_look(build name regex...)
function(pack_and_look build name)
    run(${CPACK} -G TGZ --config ${build}/CPackConfig.cmake -B ${WORK}/packed/${name})
    file(GLOB archive ${WORK}/packed/${name}/*.tar.gz)
    list(LENGTH archive count)
    if(NOT count EQUAL 1)
        message(FATAL_ERROR "cpack made ${count} archives of ${name}: ${archive}")
    endif()
    run(${CMAKE_COMMAND} -E tar tf ${archive})
    foreach(file IN LISTS ARGN)
        if(NOT output MATCHES "(^|\n)${file}\n")
            message(FATAL_ERROR "${archive} holds no ${file}:\n${output}")
        endif()
    endforeach()
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

set(bundle MakersDelay.aaxplugin/Contents)
pack_and_look(${WORK}/build product ${bundle}/${MODULE} ${bundle}/Resources/source.vst/?)
set(top [^/\n]+)
pack_and_look(${BUILD} package ${top}/bin/aaxhost ${top}/bin/vst2probe ${top}/lib/aaxadapter/libaax_adapter.a
    ${top}/lib/cmake/AaxAdapter/AaxAdapterConfig.cmake ${top}/lib/cmake/AaxAdapter/AaxAdapterTargets.cmake
    ${top}/share/doc/aaxadapter/docs/products.md)
if(output MATCHES "aaxplugin")
    message(FATAL_ERROR "the package holds a product:\n${output}")
endif()
