"""What the Windows libraries show to others, and what they ask of the system."""

import os
import pathlib
import re
import subprocess

import pytest

BIN = pathlib.Path(os.environ["KELVANE_BIN"])
EXPORTS = {
    "kelvane.dll": ["velmora_get_interface"],
    "quillet.dll": ["GetInfiniteWaitEvent", "audio_math_calculate_peak", "uBugCheck", "uGetDlgItemText",
                    "uGetWindowText", "uPrintCrashInfo_OnEvent", "uPrintfV", "uSendMessageText", "uSetDlgItemText",
                    "uSetWindowText"],
}
SYSTEM_LIBRARIES = {"kernel32.dll", "msvcrt.dll", "user32.dll", "gdi32.dll", "comctl32.dll", "comdlg32.dll",
                    "advapi32.dll", "shell32.dll", "ole32.dll"}


def headers_of(product):
    command = ["x86_64-w64-mingw32-objdump", "-p", BIN / product]
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def imported_libraries(product):
    return {name.lower() for name in re.findall(r"DLL Name: (\S+)", headers_of(product))}


@pytest.mark.parametrize("product", EXPORTS)
def test_a_library_exports_its_documented_functions_only(product):
    text = headers_of(product)
    addresses = re.findall(r"^\t\[ *\d+\] \+base\[ *\d+\]", text, re.MULTILINE)
    names = re.findall(r"^\t\[ *\d+\] (\w\S*)$", text, re.MULTILINE)
    assert sorted(names) == EXPORTS[product]
    assert len(addresses) == len(names), "a function is exported by number alone"


def test_the_module_imports_its_library_and_the_system_only():
    imported = imported_libraries("kelvane.dll")
    assert "quillet.dll" in imported
    assert imported <= SYSTEM_LIBRARIES | {"quillet.dll"}


def test_the_library_imports_the_system_only():
    assert imported_libraries("quillet.dll") <= SYSTEM_LIBRARIES
