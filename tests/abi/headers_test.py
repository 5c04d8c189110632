"""Every header compiles alone, whatever was included before it."""

import re

import interfaces
import pytest

WARNINGS = ["-fsyntax-only", "-Wall", "-Wextra", "-Wpedantic", "-Werror"]
FOR_WINDOWS = interfaces.COMPILERS["g++ for Windows"]


def headers(*folders):
    return [path.relative_to(interfaces.SOURCE).as_posix()
            for folder in folders for path in sorted((interfaces.SOURCE / folder).rglob("*.h"))]


def compile_alone(command, header):
    interfaces.compile_text([*command, *WARNINGS], f'#include "{header}"\n')


def stands_on_windows(header):
    """Whether the header includes the system's, itself or through another header of the project."""
    text = (interfaces.SOURCE / header).read_text()
    if re.search(r"^#include <(windows|commctrl|commdlg|windowsx)\.h>", text, re.MULTILINE | re.IGNORECASE):
        return True
    included = re.findall(r'^#include "(.*)"', text, re.MULTILINE)
    return any(stands_on_windows(name) for name in included)


@pytest.mark.parametrize("compiler", ["g++", "clang++"])
@pytest.mark.parametrize("standard", ["c++17", "c++20"])
@pytest.mark.parametrize("header", headers("velmora", "quillet"))
def test_a_header_that_others_build_against_compiles_alone(header, standard, compiler):
    compile_alone([compiler, f"-std={standard}"], header)


@pytest.mark.parametrize("standard", ["c++17", "c++20"])
@pytest.mark.parametrize("header", headers("velmora", "quillet"))
def test_it_compiles_for_microsoft_windows_on_the_freestanding_headers(header, standard):
    compile_alone([*interfaces.MICROSOFT, f"-std={standard}"], header)


def test_what_compilers_spell_their_own_way_compiles_for_microsoft_windows(tmp_path):
    # The compiler's own header is not to be had here.
    (tmp_path / "intrin.h").write_text('extern "C" void __cpuid(int*, int), __cpuidex(int*, int, int);\n')
    command = [*interfaces.MICROSOFT, "-std=c++20", f"-I{tmp_path}", *WARNINGS]
    interfaces.compile_text(command, '#include "frame/compiler.h"\nbool has_avx2 = kelvane::processor_has_avx2();\n')


def has_source(header):
    """Whether the header has a source, which includes it before all others."""
    return (interfaces.SOURCE / header).with_suffix(".cpp").exists()


@pytest.mark.parametrize("header", [name for name in headers("frame", "effects", "host") if not has_source(name)])
def test_a_header_without_a_source_compiles_alone(header):
    compiler = FOR_WINDOWS if stands_on_windows(header) else ["g++"]
    compile_alone([*compiler, "-std=c++20", "-DUNICODE", "-DNOMINMAX", "-D_WIN32_WINNT=0x0601"], header)
