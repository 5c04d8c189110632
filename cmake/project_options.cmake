# What every target of ours is compiled with.
option(KELVANE_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)

add_library(project_options INTERFACE)
target_compile_features(project_options INTERFACE cxx_std_20)

# No contraction to fused multiply-add: every machine of a platform gives the same bits.
target_compile_options(project_options INTERFACE
    -ffp-contract=off
    -Wall -Wextra -Wpedantic -Werror
    -Wconversion -Wsign-conversion -Wdouble-promotion -Wshadow -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wformat=2 -Wundef)

if(KELVANE_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

if(WIN32)
    target_compile_definitions(project_options INTERFACE
        UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601)
endif()
