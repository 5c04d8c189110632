# shellcheck shell=bash
# The variants of the build: one preset of CMakePresets.json each. Sourced by dev.

needs_of_variant() {
    case "$1" in
        native | sanitize) echo build ;;
        *) echo build "$1" ;;
    esac
}

# is_of_this_folder VARIANT: CMake keeps whole paths, and a project folder that was moved or copied has to start anew.
is_of_this_folder() {
    grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "build/$1/CMakeCache.txt"
}

# The build keeps its own files up to date; only the presets are read here and nowhere else.
configure_variant() {
    if [[ -f build/$1/CMakeCache.txt ]] && ! is_of_this_folder "$1"; then
        cmake --fresh --preset "$1"
    elif [[ ! build/$1/build.ninja -nt CMakePresets.json ]]; then
        cmake --preset "$1"
    fi
}

# build_variant VARIANT: without looking for what it needs.
build_variant() {
    configure_variant "$1" && cmake --build --preset "$1"
}

# The host program and what it loads, for commands that run it: no tests.
build_native_program() {
    configure_variant native && cmake --build --preset native --target kelvane-host
}

# The C++ files, each ended by a zero byte.
cpp_files() {
    tools/project_files.py --null .h .cpp
}

# Tells each line that is not in the format; what else clang-format has to say, if that is what is wrong.
check_format() {
    local output lines
    output=$(cpp_files | xargs -0 clang-format --dry-run --Werror 2>&1) && return
    lines=$(sed -n 's/^\([^:]*:[0-9]*\):.*code should be clang-formatted.*/\1: not in the format/p' <<<"$output" | uniq)
    echo "${lines:-$output}"
    return 1
}
