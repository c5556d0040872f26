# Replaces source.vst in RESOURCES by SOURCE, a file or a bundle folder.
file(REMOVE_RECURSE ${RESOURCES}/source.vst)
file(MAKE_DIRECTORY ${RESOURCES})
file(REAL_PATH ${SOURCE} real)
get_filename_component(name ${real} NAME)
file(COPY ${real} DESTINATION ${RESOURCES})
if(NOT name STREQUAL "source.vst")
    file(RENAME ${RESOURCES}/${name} ${RESOURCES}/source.vst)
endif()
