# Compiler settings that every target shares, as the interface target zephyra_compile.

add_library(zephyra_compile INTERFACE)
target_compile_features(zephyra_compile INTERFACE cxx_std_20)
target_compile_options(zephyra_compile INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor
    -Wold-style-cast -Wimplicit-fallthrough -Werror
    # Every compiler must give the same sound: a multiply and an add fuse only where std::fma says so.
    -ffp-contract=off)

if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 20)
    # Holds the real-time promise of ZEPHYRA_NONBLOCKING at compile time.
    target_compile_options(zephyra_compile INTERFACE -Wfunction-effects)
endif()

if(ZEPHYRA_SANITIZE)
    target_compile_options(zephyra_compile INTERFACE
        -fsanitize=${ZEPHYRA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(zephyra_compile INTERFACE -fsanitize=${ZEPHYRA_SANITIZE})
endif()
if(ZEPHYRA_FUZZ)
    # Coverage feedback everywhere; only the targets in fuzz/ bring libFuzzer's main.
    target_compile_options(zephyra_compile INTERFACE -fsanitize=fuzzer-no-link)
endif()
