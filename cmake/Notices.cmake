# ThirdPartyNotices.txt: what the licences of the libraries that are linked into a binary ask to be told to whoever gets it. A
# library says by its target's property AAXADAPTER_NOTICE which of the texts in notices/ is about it.
include_guard(GLOBAL)

# Writes one file of some of these texts: aaxadapter_write_notices(FILE NAME...)
function(aaxadapter_write_notices file)
    set(text "Parts of the following libraries are in these files. Their licences ask for these notices.\n")
    foreach(name IN LISTS ARGN)
        file(READ ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/notices/${name}.txt notice)
        string(APPEND text "\n\n== ${name} ==\n\n${notice}")
    endforeach()
    file(WRITE ${file} "${text}")
endfunction()

# Puts the notices of what is in every product into this one's folder; nothing where there are none to give.
function(aaxadapter_place_notices product folder)
    set(library AaxAdapter::vstgui)
    if(NOT TARGET ${library}) # a product of this tree, where that name is given last
        set(library vstgui)
    endif()
    get_property(names TARGET ${library} PROPERTY AAXADAPTER_NOTICE)
    if(NOT names)
        return()
    endif()
    set(file ${CMAKE_CURRENT_BINARY_DIR}/${product}_ThirdPartyNotices.txt)
    aaxadapter_write_notices(${file} ${names})
    add_custom_command(TARGET ${product} POST_BUILD VERBATIM
        COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
        COMMAND ${CMAKE_COMMAND} -E copy ${file} ${folder}/ThirdPartyNotices.txt)
endfunction()
