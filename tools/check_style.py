#!/usr/bin/env python3
"""Checks what the compiler does not: how text files look, how headers begin, what each folder includes and links."""

import re
import sys
from pathlib import Path, PurePosixPath

from project_files import project_files
from target_links import link_faults

LINE_LIMIT_COLUMNS = 120
CODE_SUFFIXES = {".h", ".cpp", ".py", ".sh", ".cmake", ".rc"}
CODE_NAMES = {"CMakeLists.txt", "dev", "run"}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
STANDARD_HEADER = re.compile(r"^[a-z_0-9]+$")
FREESTANDING_HEADERS = {"stddef.h", "stdint.h"}
VECTOR_HEADERS = {"emmintrin.h"}  # of the vectors that every processor of the platform has

# What the FFT converter includes besides standard headers and files of its own: vectors beyond VECTOR_HEADERS, for the
# one file that is compiled for them; the exception for a size out of range; asking the compiler which vectors the
# processor has; and the struct in which a stream's description names its kind of samples. None of them knows the host.
INCLUDABLE_BY_CONVERTER = VECTOR_HEADERS | {
    "immintrin.h",
    "frame/exceptions.h",
    "frame/compiler.h",
    "velmora/guid.h",
}

PROJECT_FOLDERS = {"velmora", "quillet", "frame", "effects", "host", "resources", "tests", "bench"}
# What the products' folders may include; tests and benchmarks may include all.
INCLUDABLE_FOLDERS = {
    "velmora": {"velmora"},
    "quillet": {"velmora", "quillet"},
    "frame": {"velmora", "quillet", "frame"},
    "effects": {"velmora", "quillet", "frame", "effects", "resources"},
    "host": {"velmora", "host"},
}
# What the settings of an effect, and the words for them, may include of the frame: the host links both, and of the
# frame it links the target `payload` alone.
FRAME_FILES_OF_SETTINGS = ("frame/payload", "frame/exceptions.h", "frame/rate_exclusion", "frame/settings_words")


def is_effect_file(path, kind):
    """Whether the path is that of an effect's KIND: effects/.../NAME_KIND.h or .cpp."""
    return path.startswith("effects/") and PurePosixPath(path).stem.endswith(f"_{kind}")


def is_converter_file(path):
    """Whether the path is of the FFT converter: the core of its effect, whose other files are named ssrc_..."""
    parts = PurePosixPath(path)
    is_of_converter = parts.stem == "ssrc_converter" or not parts.stem.startswith("ssrc_")
    return str(parts.parent) == "effects/resampler_ssrc" and is_of_converter


def is_code(path):
    return PurePosixPath(path).suffix in CODE_SUFFIXES or PurePosixPath(path).name in CODE_NAMES


def layout_faults(path, text):
    """Yields line number and message for what is wrong with blanks, line ends and line lengths."""
    for number, line in enumerate(text.split("\n"), start=1):
        if "\t" in line:
            yield number, "tab"
        if line != line.rstrip():
            yield number, "blanks or a carriage return at the end of the line"
        if is_code(path) and len(line) > LINE_LIMIT_COLUMNS:
            yield number, f"longer than {LINE_LIMIT_COLUMNS} columns ({len(line)})"
    if text and not text.endswith("\n"):
        yield text.count("\n") + 1, "no line end at the end of the file"


def header_faults(path, text):
    if not path.endswith(".h"):
        return
    lines = text.split("\n")
    if not re.match(r"// \S", lines[0]):
        yield 1, "a header opens with a comment on its purpose"
    if "#pragma once" not in lines:
        yield 1, "no '#pragma once'"


def core_include_fault(target, quoted):
    """An effect's core is pure computation."""
    if quoted:
        allowed = target == "velmora/channel_mask.h" or is_effect_file(target, "core")
    else:
        allowed = STANDARD_HEADER.match(target) or target in VECTOR_HEADERS
    return None if allowed else f"an effect's core does not include {target}"


def converter_include_fault(target, quoted):
    """The FFT converter is pure computation too."""
    is_standard = not quoted and STANDARD_HEADER.match(target)
    allowed = is_standard or is_converter_file(target) or target in INCLUDABLE_BY_CONVERTER
    return None if allowed else f"the FFT converter does not include {target}"


def effect_folder_fault(path, target):
    """An effect stands alone; what several kinds use lies in effects/ itself, what the resamplers use in a folder."""
    own, included = PurePosixPath(path).parent, PurePosixPath(target).parent
    is_between_folders = str(own.parent) == str(included.parent) == "effects" and own != included
    is_shared = included.name == "resampler_common" and own.name.startswith("resampler_")
    return f"{own} does not include {target}" if is_between_folders and not is_shared else None


def system_include_fault(path, target):
    if target.split("/")[0] in PROJECT_FOLDERS:
        return f"the project's own files are included in quotes: {target}"
    if path.startswith("velmora/") and target not in FREESTANDING_HEADERS:
        return f"velmora stands on <stddef.h> and <stdint.h> alone, not on {target}"
    return None


def project_include_fault(path, target):
    folder = path.split("/")[0]
    target_folder = target.split("/")[0]
    if target_folder not in PROJECT_FOLDERS or ".." in target.split("/"):
        return f"not included from the project's root: {target}"
    if folder == "host" and is_effect_file(target, "settings"):
        return None
    if target_folder not in INCLUDABLE_FOLDERS.get(folder, PROJECT_FOLDERS):
        return f"{folder} does not include {target}"
    is_of_settings = is_effect_file(path, "settings") or is_effect_file(path, "words")
    if is_of_settings and target_folder == "frame" and not target.startswith(FRAME_FILES_OF_SETTINGS):
        return f"an effect's settings do not include {target}"
    return effect_folder_fault(path, target)


def include_fault(path, target, quoted):
    fault = project_include_fault(path, target) if quoted else system_include_fault(path, target)
    if fault is None and is_effect_file(path, "core"):
        fault = core_include_fault(target, quoted)
    if fault is None and is_converter_file(path):
        fault = converter_include_fault(target, quoted)
    return fault


def include_faults(path, text):
    if not path.endswith((".h", ".cpp")):
        return
    for number, line in enumerate(text.split("\n"), start=1):
        found = INCLUDE.match(line)
        fault = include_fault(path, found[2], found[1] == '"') if found else None
        if fault:
            yield number, fault


def faults_of(path, text):
    """What is wrong with one text file, as lines to print."""
    for rule in (layout_faults, header_faults, include_faults, link_faults):
        for number, message in rule(path, text):
            yield f"{path}:{number}: {message}"


def text_of(path):
    """The file's text; nothing for a file of other data."""
    content = path.read_bytes()
    try:
        return None if b"\0" in content else content.decode("utf-8")
    except UnicodeDecodeError:
        return None


def check(root):
    """What is wrong in the tree below the root, as lines to print."""
    faults = []
    for path in project_files(root):
        text = text_of(Path(root) / path)
        if text is not None:
            faults += faults_of(path, text)
    return faults


def main():
    faults = check(Path(__file__).parent.parent)
    for fault in faults:
        print(fault)
    print(f"check_style: {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
