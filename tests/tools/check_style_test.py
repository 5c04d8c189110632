"""What the style rules find in small made-up trees."""

import pytest

import check_style

CPP = "effects/channels/swap.cpp"


def faults_in(root, files):
    """The faults in a tree of the given files, by path."""
    for path, content in files.items():
        file = root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(content if isinstance(content, bytes) else content.encode())
    return check_style.check(root)


def test_a_tidy_tree_has_no_faults(tmp_path):
    files = {
        "frame/blocks.h": '// What effects ask.\n#pragma once\n\n#include "velmora/guid.h"\n#include <span>\n',
        "frame/blocks.cpp": '#include "frame/blocks.h"\n',
        "README.md": "# Title\n",
        "empty.txt": "",
    }
    assert faults_in(tmp_path, files) == []


@pytest.mark.parametrize(
    "path, text, fault",
    [
        (CPP, "int a;\n\tint b;\n", ":2: tab"),
        (CPP, "int a; \n", ":1: blanks or a carriage return at the end of the line"),
        (CPP, "int a;\r\n", ":1: blanks or a carriage return at the end of the line"),
        (CPP, "int a;\nint b;", ":2: no line end at the end of the file"),
        (CPP, "/" * 121 + "\n", ":1: longer than 120 columns (121)"),
        ("dev", "#" * 121 + "\n", ":1: longer than 120 columns (121)"),
        ("notes.md", "a\tb\n", ":1: tab"),
    ],
)
def test_finds_faults_of_layout(tmp_path, path, text, fault):
    assert faults_in(tmp_path, {path: text}) == [path + fault]


def test_columns_are_characters(tmp_path):
    assert faults_in(tmp_path, {CPP: "// " + "é" * 117 + "\n"}) == []


def test_prose_may_have_long_lines(tmp_path):
    assert faults_in(tmp_path, {"notes.md": "x" * 200 + "\n"}) == []


@pytest.mark.parametrize("data", [b"\0\t \n\t", b"\xff\xfe\t"])
def test_data_that_are_no_text_are_left_alone(tmp_path, data):
    assert faults_in(tmp_path, {"tests/samples.bin": data}) == []


@pytest.mark.parametrize(
    "text, fault",
    [
        ("#pragma once\n", "a header opens with a comment on its purpose"),
        ("//\n#pragma once\n", "a header opens with a comment on its purpose"),
        ("\n// Late.\n#pragma once\n", "a header opens with a comment on its purpose"),
        ("// Purpose.\n", "no '#pragma once'"),
        ("// Purpose with #pragma once in it.\n", "no '#pragma once'"),
    ],
)
def test_finds_faults_of_headers(tmp_path, text, fault):
    assert faults_in(tmp_path, {"frame/blocks.h": text}) == [f"frame/blocks.h:1: {fault}"]


ALLOWED_INCLUDES = [
    ("velmora/guid.cpp", "<stdint.h>"),
    ("velmora/guid.cpp", '"velmora/service.h"'),
    ("quillet/quillet.cpp", '"velmora/guid.h"'),
    ("quillet/quillet.cpp", "<windows.h>"),
    ("frame/blocks.cpp", '"quillet/quillet.h"'),
    ("effects/channels/swap.cpp", '"frame/blocks.h"'),
    ("effects/channels/swap.cpp", '"effects/fft/fft.h"'),
    ("effects/channels/downmix_core.cpp", "<array>"),
    ("effects/channels/downmix_core.cpp", '"velmora/channel_mask.h"'),
    ("effects/channels/downmix_core.cpp", '"effects/fft/fft_core.h"'),
    ("effects/rates/rate_settings.cpp", '"frame/payload_reader.h"'),
    ("effects/rates/rate_settings.cpp", '"frame/exceptions.h"'),
    ("effects/rates/rate_settings.cpp", '"frame/rate_exclusion.h"'),
    ("effects/rates/rate_settings.cpp", '"velmora/guid.h"'),
    ("host/program/main.cpp", '"host/chain/album.h"'),
    ("host/program/main.cpp", '"quillet/quillet.h"'),
    ("host/program/main.cpp", '"effects/rates/rate_settings.h"'),
    ("tests/frame/blocks_test.cpp", '"host/chain/album.h"'),
    ("tests/frame/blocks_test.cpp", '"tests/support/block.h"'),
    ("bench/bench.cpp", '"effects/fft/fft_core.h"'),
]

FORBIDDEN_INCLUDES = [
    ("velmora/guid.cpp", "<cstdint>", "velmora stands on <stddef.h> and <stdint.h> alone, not on cstdint"),
    ("velmora/guid.cpp", '"quillet/quillet.h"', "velmora does not include quillet/quillet.h"),
    ("quillet/quillet.cpp", '"frame/blocks.h"', "quillet does not include frame/blocks.h"),
    ("frame/blocks.cpp", '"effects/fft/fft.h"', "frame does not include effects/fft/fft.h"),
    ("frame/blocks.cpp", '"host/chain/album.h"', "frame does not include host/chain/album.h"),
    ("effects/channels/swap.cpp", '"host/chain/album.h"', "effects does not include host/chain/album.h"),
    ("host/program/main.cpp", '"frame/blocks.h"', "host does not include frame/blocks.h"),
    ("host/program/main.cpp", '"effects/fft/fft_core.h"', "host does not include effects/fft/fft_core.h"),
    ("effects/a_core.cpp", '"frame/blocks.h"', "an effect's core does not include frame/blocks.h"),
    ("effects/a_core.cpp", '"velmora/guid.h"', "an effect's core does not include velmora/guid.h"),
    ("effects/a_core.cpp", '"effects/a_effect.h"', "an effect's core does not include effects/a_effect.h"),
    ("effects/a_core.cpp", "<windows.h>", "an effect's core does not include windows.h"),
    ("effects/a_core.cpp", "<fmt/format.h>", "an effect's core does not include fmt/format.h"),
    ("effects/a_settings.cpp", '"frame/blocks.h"', "an effect's settings do not include frame/blocks.h"),
    ("effects/channels/swap.cpp", '"swap.h"', "not included from the project's root: swap.h"),
    ("effects/channels/swap.cpp", '"channels/swap.h"', "not included from the project's root: channels/swap.h"),
    ("effects/channels/swap.cpp", '"frame/../host/a.h"', "not included from the project's root: frame/../host/a.h"),
    ("host/program/main.cpp", "<frame/blocks.h>", "the project's own files are included in quotes: frame/blocks.h"),
]


@pytest.mark.parametrize("path, included", ALLOWED_INCLUDES)
def test_allows_includes_along_the_dependencies(tmp_path, path, included):
    assert faults_in(tmp_path, {path: f"#include {included}\n"}) == []


@pytest.mark.parametrize("path, included, fault", FORBIDDEN_INCLUDES)
def test_finds_includes_against_the_dependencies(tmp_path, path, included, fault):
    assert faults_in(tmp_path, {path: f"\n#  include {included} // why\n"}) == [f"{path}:2: {fault}"]
