# shellcheck shell=bash
# Installs what the commands need. Sourced by dev.

# Debian's packages, by need.
declare -A packages_of=(
    [build]="g++ cmake ninja-build pkg-config libsndfile1-dev libcli11-dev nlohmann-json3-dev libfmt-dev googletest
        python3"
    [clang]="clang"
    [windows]="g++-mingw-w64-x86-64-posix wine wine64 xvfb xauth"
    [test]="python3-pytest python3-numpy binutils ffmpeg sox libfftw3-dev"
    [abi]="clang g++-mingw-w64-x86-64-posix git"
    [format]="clang-format git python3"
    [lint]="clang-tidy"
    [bench]="libbenchmark-dev libavfilter-dev libswresample-dev libsamplerate0-dev libsoxr-dev libspeexdsp-dev
        libzita-resampler-dev libfftw3-dev"
    [run]="extremetuxracer-data"
    [pictures]="imagemagick xdotool fonts-wine"
    [drawing]="python3-matplotlib python3-numpy python3-pil alsa-utils"
)

# The programs that show, on a system without these packages, that the need is met.
declare -A programs_of=(
    [build]="g++ cmake ninja pkg-config python3"
    [clang]="clang++"
    [windows]="x86_64-w64-mingw32-g++-posix wine wineserver xvfb-run xauth"
    [test]="nm ffmpeg sox"
    [abi]="clang++ x86_64-w64-mingw32-g++-posix git"
    [format]="clang-format git python3"
    [lint]="clang-tidy"
    [bench]=""
    [run]=""
    [pictures]="import convert xdotool"
    [drawing]=""
)

is_root() {
    [[ $(id -u) -eq 0 ]]
}

as_root() {
    if is_root; then "$@"; else sudo "$@"; fi
}

can_install() {
    command -v apt-get >/dev/null && { is_root || command -v sudo >/dev/null; }
}

# missing_packages PACKAGE...: those that are not installed; all of them on a system without packages of this kind.
missing_packages() {
    local installed package
    installed=$(dpkg-query -W -f '/${Package}/${db:Status-Status}/\n' "$@" 2>/dev/null || true)
    for package in "$@"; do
        [[ $installed == *"/$package/installed/"* ]] || echo "$package"
    done | sort -u
}

missing_programs() {
    local program
    for program in "$@"; do
        command -v "$program" >/dev/null || echo "$program"
    done | sort -u
}

install_packages() {
    echo "Installing $*"
    as_root apt-get update -qq || echo "Going on with the package lists as they are."
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq -o Dpkg::Use-Pty=0 --no-install-recommends "$@"
}

# require_programs PROGRAM...: ends the command when one is not there.
require_programs() {
    local -a absent
    mapfile -t absent < <(missing_programs "$@")
    if ((${#absent[@]} > 0)); then
        echo "These programs are not there: ${absent[*]}" >&2
        exit 1
    fi
    echo "The programs seem to be there: going on." >&2
}

# need NEED...: what the needs take is installed when this returns, or may be there under another name.
need() {
    local name
    local -a packages programs missing
    for name in "$@"; do
        # shellcheck disable=SC2206 # lists of words
        packages+=(${packages_of[$name]}) programs+=(${programs_of[$name]})
    done
    mapfile -t missing < <(missing_packages "${packages[@]}")
    if ((${#missing[@]} == 0)); then
        return
    elif can_install; then
        install_packages "${missing[@]}"
    else
        echo "Needed, and not installable here (Debian's names): ${missing[*]}" >&2
        require_programs "${programs[@]}"
    fi
}
