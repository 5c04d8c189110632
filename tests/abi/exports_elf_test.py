"""What the shared objects show to others, and what they ask of the system."""

import os
import pathlib
import re
import subprocess

import pytest

BIN = pathlib.Path(os.environ["KELVANE_BIN"])
EXPORTS = {
    "kelvane.so": ["velmora_get_interface"],
    "libquillet.so": ["GetInfiniteWaitEvent", "audio_math_calculate_peak", "uBugCheck", "uPrintCrashInfo_OnEvent",
                      "uPrintfV"],
}
RUN_TIME_LIBRARIES = {"libstdc++.so.6", "libm.so.6", "libgcc_s.so.1", "libc.so.6", "ld-linux-x86-64.so.2"}


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def dynamic_section(product):
    """Pairs of tag and value, such as ("NEEDED", "libc.so.6")."""
    lines = output_of("readelf", "-dW", BIN / product)
    return re.findall(r"\((\w+)\)\s+(?:[\w ]+: \[(.*)\])?", lines)


@pytest.mark.parametrize("product", EXPORTS)
def test_a_shared_object_exports_its_documented_functions_only(product):
    rows = output_of("nm", "-D", "--defined-only", BIN / product).splitlines()
    assert sorted(tuple(row.split()[1:]) for row in rows) == [("T", name) for name in EXPORTS[product]]


def test_the_module_finds_its_library_beside_itself():
    paths = [value for tag, value in dynamic_section("kelvane.so") if tag in ("RUNPATH", "RPATH")]
    assert paths == ["$ORIGIN"]


def test_the_module_needs_its_library_and_the_run_time_only():
    needed = {value for tag, value in dynamic_section("kelvane.so") if tag == "NEEDED"}
    assert "libquillet.so" in needed
    assert needed <= RUN_TIME_LIBRARIES | {"libquillet.so"}


@pytest.mark.parametrize("product", EXPORTS)
def test_the_stack_is_not_executable(product):
    flags = re.search(r"GNU_STACK(?:\s+0x\w+){5}\s+([RWE ]+?)\s+0x", output_of("readelf", "-lW", BIN / product))[1]
    assert flags == "RW"


@pytest.mark.parametrize("product", EXPORTS)
def test_no_relocation_writes_to_the_code(product):
    section = output_of("readelf", "-dW", BIN / product)
    assert "(RELA)" in section
    assert "TEXTREL" not in section
