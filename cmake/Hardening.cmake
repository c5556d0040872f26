# What makes an error in a module harder to turn into an attack: for the libraries that a module is linked of, and for the
# module. A test reads the built binary.
include_guard(GLOBAL)

function(aaxadapter_harden_compilation target scope)
    target_compile_options(${target} ${scope} -fstack-protector-strong)
    if(NOT AAXADAPTER_SANITIZE) # which watch the same functions themselves
        # Undefined first: some compilers define it by themselves. Without optimisation it does nothing but warn.
        target_compile_options(${target} ${scope}
            "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
    endif()
endfunction()

function(aaxadapter_harden_linking target)
    if(NOT APPLE) # where all of it is the linker's own way
        target_link_options(${target} PRIVATE "LINKER:-z,relro" "LINKER:-z,now" "LINKER:-z,noexecstack")
    endif()
endfunction()
