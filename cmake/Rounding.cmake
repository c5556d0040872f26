# The same bits on each processor: compilers for some of them, arm64 among them, otherwise join a multiplication and an addition
# to one operation, which rounds once and not twice.
include_guard(GLOBAL)

function(aaxadapter_round_each_operation target scope)
    target_compile_options(${target} ${scope} -ffp-contract=off)
endfunction()
