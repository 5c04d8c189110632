# shellcheck shell=bash
# The parts of a test run. None of them ends the run: what went wrong is read from what they leave behind and told by
# tools/tally.py. Sourced by dev.

# The arguments of the tally.
tally=()

# check NAME COMMAND...: runs the command; its verdict is one case.
check() {
    local name=$1 verdict=passed
    shift
    echo "== $name"
    "$@" || verdict=failed
    tally+=(--check "$name=$verdict")
}

# Results of an earlier run must not pass for those of this one.
forget_results() {
    rm -rf "build/$1/reports" "build/$1/ctest.xml"
    mkdir -p "build/$1/reports"
}

# run_tests VARIANT [COMMAND...]: builds the variant and runs its tests, by the command if there is one.
run_tests() {
    local variant=$1
    shift
    echo "== $variant"
    forget_results "$variant"
    tally+=(--build "build/$variant")
    build_variant "$variant" || return 0
    "$@" ctest --preset "$variant" --parallel "$(nproc)" --output-junit "$PWD/build/$variant/ctest.xml" || true
}

# What the Windows program makes of music is held against what the native one makes of it.
run_windows_tests() {
    check "native program for the Windows tests" build_native_program
    run_tests windows env WINEPREFIX="$PWD/build/windows/wine" WINEDEBUG=-all xvfb-run -a tools/dev/with_wine.sh
}

run_test_part() {
    case "$1" in
        native | sanitize) run_tests "$1" ;;
        windows) run_windows_tests ;;
        clang) check "build with clang" build_variant clang ;;
        style)
            check "format" check_format
            check "style" tools/check_style.py
            ;;
    esac
}

needs_of_test_part() {
    case "$1" in
        style) echo format ;;
        native) echo test abi "$(needs_of_variant native)" ;;
        windows) echo test run "$(needs_of_variant windows)" ;;
        clang) needs_of_variant clang ;;
        *) echo test "$(needs_of_variant "$1")" ;;
    esac
}

# The caller has seen to the needs.
run_test_parts() {
    local part
    for part in "$@"; do
        run_test_part "$part"
    done
    tools/tally.py "${tally[@]}"
}
