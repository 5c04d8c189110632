"""Which targets the products' folders may link: the arrows between the folders, held in the build files."""

import re
from pathlib import PurePosixPath

# The words of a call that name no target, and what every target of ours links.
NO_ARROWS = {"PUBLIC", "PRIVATE", "INTERFACE", "project_options"}

EFFECT_LIBRARIES = {"effect_cores", "ssrc_converter", "effect_settings", "effects"}
HOST_LIBRARIES = {"host_audio", "host_chain", "host_module", "host_objects", "host_settings"}
SYSTEM_LIBRARIES_OF_HOST = {"header_only_libraries", "PkgConfig::SNDFILE", "${CMAKE_DL_LIBS}"}

LINKABLE_IN_FOLDER = {
    "velmora": set(),
    "quillet": {"velmora"},
    "frame": {"velmora", "quillet", "payload", "comctl32"},
    "effects": {"velmora", "quillet", "payload", "frame"} | EFFECT_LIBRARIES,
    # The host tells of settings in words. They lead to the payloads, and to nothing else of the frame.
    "host": {"velmora", "effect_settings"} | HOST_LIBRARIES | SYSTEM_LIBRARIES_OF_HOST,
}
# What holds for single targets, in place of their folder's line.
LINKABLE_BY_TARGET = {
    "payload": {"velmora"},
    "effect_cores": set(),
    "ssrc_converter": set(),
    "effect_settings": {"payload"},
}

COMMENT = re.compile(r"#[^\n]*")
HIDDEN_LINK_CALL = re.compile(r"\blink_libraries\s*\(|\bLINK_LIBRARIES\b")
LINK_CALL = re.compile(r"target_link_libraries\s*\(\s*(\S+)([^)]*)\)", re.IGNORECASE)


def without_comments(text):
    """The text with blanks for the comments: everything stays in its line."""
    return COMMENT.sub(lambda comment: " " * len(comment[0]), text)


def link_faults(path, text):
    """Yields line number and message for each target that is linked against the arrows."""
    folder = PurePosixPath(path).parts[0]
    if PurePosixPath(path).name != "CMakeLists.txt" or folder not in LINKABLE_IN_FOLDER:
        return
    for call in HIDDEN_LINK_CALL.finditer(without_comments(text)):
        yield text.count("\n", 0, call.start()) + 1, "targets are linked by target_link_libraries alone"
    for call in LINK_CALL.finditer(without_comments(text)):
        target = call[1]
        linkable = LINKABLE_BY_TARGET.get(target, LINKABLE_IN_FOLDER[folder])
        for linked in re.finditer(r"\S+", call[2]):
            if linked[0] not in NO_ARROWS | linkable:
                line = text.count("\n", 0, call.start(2) + linked.start()) + 1
                yield line, f"{target} does not link {linked[0]}"
