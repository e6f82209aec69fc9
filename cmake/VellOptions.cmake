# How every target of this tree is compiled: warnings, sanitizers, coverage.

add_library(vell_options INTERFACE)
target_compile_options(vell_options INTERFACE
    $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wpedantic -Wshadow>)

if(VELL_SANITIZE)
    target_compile_options(vell_options INTERFACE
        -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    target_link_options(vell_options INTERFACE -fsanitize=address,undefined)
endif()

# Only the engine and the demo are measured, so this is a library of its own.
add_library(vell_coverage INTERFACE)
if(VELL_COVERAGE)
    target_compile_options(vell_coverage INTERFACE --coverage)
    target_link_options(vell_coverage INTERFACE --coverage)
endif()
