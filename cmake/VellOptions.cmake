# How every target of this tree is compiled: warnings, hardening, sanitizers, coverage.

add_library(vell_options INTERFACE)
target_compile_options(vell_options INTERFACE
    $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wpedantic -Wshadow>)

# What makes a fault in a program that reads other people's files end it, rather than obey them:
# canaries on the stack, the C library's checks of lengths, addresses that differ from run to run, and
# tables of functions that are complete before main() and cannot be written afterwards.
# In a page nothing of this is needed or known: there a program has no addresses but its own data's.
# VELL_TESTS is a property of targets that only test what is so compiled: they are not optimised, and
# without that the C library cannot check lengths.
set(VELL_HARDENED $<AND:$<CONFIG:Release>,$<NOT:$<PLATFORM_ID:Emscripten>>>)
set(VELL_MOVABLE $<AND:${VELL_HARDENED},$<NOT:$<BOOL:$<TARGET_PROPERTY:POSITION_INDEPENDENT_CODE>>>>)
set(VELL_IS_TEST $<BOOL:$<TARGET_PROPERTY:VELL_TESTS>>)
set(VELL_PROGRAM $<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>)
set(VELL_LIBRARY $<IN_LIST:$<TARGET_PROPERTY:TYPE>,STATIC_LIBRARY$<SEMICOLON>OBJECT_LIBRARY>)
target_compile_options(vell_options INTERFACE
    $<${VELL_HARDENED}:-fstack-protector-strong>
    "$<$<AND:${VELL_HARDENED},$<NOT:${VELL_IS_TEST}>>:SHELL:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>"
    $<$<AND:${VELL_MOVABLE},$<OR:${VELL_PROGRAM},${VELL_LIBRARY}>>:-fPIE>)
target_link_options(vell_options INTERFACE
    $<${VELL_HARDENED}:LINKER:-z,relro,-z,now>
    $<$<AND:${VELL_HARDENED},${VELL_PROGRAM}>:-pie>)

# The second of the two makes a quarter of the time that a test takes to compile, and what the tests
# test has it.
if(VELL_SANITIZE)
    target_compile_options(vell_options INTERFACE
        -fsanitize=address$<$<NOT:${VELL_IS_TEST}>:,undefined>
        -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    target_link_options(vell_options INTERFACE -fsanitize=address,undefined)
endif()

if(VELL_FUZZ) # libFuzzer sees which ways through the code an attempt takes
    target_compile_options(vell_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# The tests themselves are not measured, so this is a library of its own.
add_library(vell_coverage INTERFACE)
if(VELL_COVERAGE)
    target_compile_options(vell_coverage INTERFACE --coverage)
    target_link_options(vell_coverage INTERFACE --coverage)
    add_library(vell_counters STATIC tests/counters/exit.cpp)
    set_target_properties(vell_counters PROPERTIES POSITION_INDEPENDENT_CODE ON)
    # Asked for by name, because archives that come after this one call it too.
    target_link_options(vell_coverage INTERFACE LINKER:--wrap=_exit LINKER:-u,__wrap__exit)
    target_link_libraries(vell_coverage INTERFACE vell_counters)
endif()
