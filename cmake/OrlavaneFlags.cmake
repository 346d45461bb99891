# Flags of all our own targets: link with orlavane_flags.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

add_library(orlavane_flags INTERFACE)
target_include_directories(orlavane_flags INTERFACE ${CMAKE_SOURCE_DIR}/src)
# A city must come out the same on every compiler: no fused multiply-add, no fast-math.
target_compile_options(orlavane_flags INTERFACE -ffp-contract=off -fno-fast-math)
target_compile_options(orlavane_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wcast-qual -Wnon-virtual-dtor -Wundef -Wdouble-promotion)
if(ORLAVANE_WERROR)
    target_compile_options(orlavane_flags INTERFACE -Werror)
endif()
if(ORLAVANE_SANITIZE)
    add_compile_options(-fsanitize=${ORLAVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${ORLAVANE_SANITIZE})
endif()
if(ORLAVANE_FUZZ)
    # So that the fuzzers see which branches they reach. Tracing comparisons too would make them three times slower.
    add_compile_options(-fsanitize=fuzzer-no-link -fno-sanitize-coverage=trace-cmp)
endif()
