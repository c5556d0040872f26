# Places files with the headers of macOS's in products for one and two processors, and looks for the sentence that each
# gets, and for the files that are left.
#   cmake -DSOURCES=… -DWORK=… -P ProcessorsTest.cmake
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
set(file ${WORK}/plugin)

set(rest 0800000000000000000000000000000000000000) # of a header of 32 bytes: a bundle without commands
set(x86_64 cffaedfe0700000103000000${rest})
set(arm64 cffaedfe0c00000100000000${rest})
set(arm64e cffaedfe0c00000102000080${rest})
# A table of two: processor, kind, offset, size and alignment of each.
set(x86_64_row 0100000700000003000000300000002000000004)
set(arm64_row 0100000c00000000000000500000002000000004)
set(pair 0000000400000000) # alignment and reserve
set(both cafebabe00000002${x86_64_row}${arm64_row})
set(wide cafebabf00000001010000070000000300000000000000280000000000000020${pair})

function(place plugin processors fewer)
    file(REMOVE_RECURSE ${WORK}/resources)
    file(MAKE_DIRECTORY ${WORK}/resources)
    file(WRITE ${WORK}/module "built before")
    execute_process(COMMAND ${CMAKE_COMMAND} -DPRODUCT=A -DSOURCE=${plugin} -DRESOURCES=${WORK}/resources
        -DSTAMP=${WORK}/stamp -DMODULE=${WORK}/module -DPROBE= "-DPROCESSORS=${processors}" -DFEWER_PROCESSORS=${fewer}
        -P ${SOURCES}/cmake/PlaceSourceVst.cmake
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    set(result ${result} PARENT_SCOPE)
    string(REGEX REPLACE "[ \n]+" " " output "${output}")
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect what sentence)
    string(FIND "${output}" "${sentence}" place)
    if(sentence AND (result EQUAL 0 OR place EQUAL -1 OR EXISTS ${WORK}/module OR EXISTS ${WORK}/stamp))
        message(SEND_ERROR "${what} was to be refused with '${sentence}' and answered ${result}:\n${output}")
    elseif(NOT sentence AND NOT (result EQUAL 0 AND EXISTS ${WORK}/stamp AND EXISTS ${WORK}/resources/source.vst))
        message(SEND_ERROR "${what} was to be placed and answered ${result}:\n${output}")
    endif()
endfunction()

function(write_bytes file hex)
    string(REGEX REPLACE "(..)" "\\\\x\\1" bytes "${hex}")
    execute_process(COMMAND printf "${bytes}" OUTPUT_FILE ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(row
        "x86_64|${x86_64}|"
        "x86_64 arm64|${both}${x86_64}${arm64}|"
        "arm64|${both}${x86_64}${arm64}|"
        "x86_64|${wide}${x86_64}|"
        "x86_64 arm64|${x86_64}|it has x86_64 only, the product is for x86_64 and arm64, and a host on arm64 would not load it"
        "x86_64 arm64|${arm64}|it has arm64 only"
        "x86_64 arm64|${wide}${x86_64}|and a host on arm64"
        "arm64|${arm64e}|it has arm64e only"
        "x86_64|7f454c46|is no 64-bit file of macOS"
        "x86_64||is no 64-bit file of macOS"
        "x86_64|cffaedfe07000001|or is cut short"
        "x86_64|cafebabe|has a table of 0 processors"
        "x86_64|cafebabe00000000|has a table of 0 processors"
        "x86_64|cafebabe0000003d${x86_64_row}|has a table of 61 processors"
        "x86_64|cafebabeffffffff${x86_64_row}|has a table of 4294967295 processors"
        "x86_64|cafebabe00000002${x86_64_row}|its executable is cut short"
        "x86_64|${both}${x86_64}|its executable is cut short"
        "x86_64|cafebabf00000001010000070000000380000000000000280000000000000020${pair}${x86_64}|its executable is cut short"
        "x86_64|cafebabf0000000101000007000000030000000000000028ffffffffffffffff${pair}${x86_64}|its executable is cut short"
        "x86_64|${both}${arm64}${arm64}|has a broken part for x86_64"
        "x86_64|${both}${rest}${arm64}${arm64}|has a broken part for x86_64"
        "x86_64|cafebabe0000000101000007000000030000000000000020000000040000000000000000|has a broken part for x86_64")
    string(REPLACE "|" ";" fields "${row}|") # an empty last field counts
    list(GET fields 0 processors)
    list(GET fields 1 hex)
    list(GET fields 2 sentence)
    separate_arguments(processors)
    write_bytes(${file} "${hex}")
    place(${file} "${processors}" OFF)
    expect("'${row}'" "${sentence}")
endforeach()

write_bytes(${file} ${x86_64})
place(${file} "x86_64;arm64" ON)
expect("a plug-in for one processor with FEWER_PROCESSORS" "")
place(${file} "" OFF)
expect("a plug-in for one processor in a product for that of its build" "")

# A bundle's executable is the one that its property list names, else the first.
set(bundle ${WORK}/a.vst)
file(MAKE_DIRECTORY ${bundle}/Contents/MacOS)
place(${bundle} x86_64 OFF)
expect("an empty bundle" "there is no executable in it")
write_bytes(${bundle}/Contents/MacOS/a ${arm64})
write_bytes(${bundle}/Contents/MacOS/b ${x86_64})
place(${bundle} x86_64 OFF)
expect("a bundle without a property list" "it has arm64 only")
file(WRITE ${bundle}/Contents/Info.plist "<dict><key>CFBundleExecutable</key>\n <string>b</string></dict>")
place(${bundle} x86_64 OFF)
expect("a bundle with one" "")
