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
    ("effects/channels/swap.cpp", '"effects/channels/swap.h"'),
    ("effects/channels/swap.cpp", '"effects/pair.h"'),
    ("effects/services.cpp", '"effects/channels/swap.h"'),
    ("effects/channels/downmix_core.cpp", "<array>"),
    ("effects/channels/downmix_core.cpp", "<emmintrin.h>"),
    ("effects/channels/downmix_core.cpp", '"velmora/channel_mask.h"'),
    ("effects/channels/downmix_core.cpp", '"effects/pair_core.h"'),
    ("effects/resampler_x/x_words.cpp", '"effects/resampler_common/rates.h"'),
    ("effects/resampler_ssrc/fft.cpp", "<array>"),
    ("effects/resampler_ssrc/fft.cpp", "<immintrin.h>"),
    ("effects/resampler_ssrc/fft.cpp", '"effects/resampler_ssrc/ssrc_converter.h"'),
    ("effects/resampler_ssrc/fft.cpp", '"frame/compiler.h"'),
    ("effects/resampler_ssrc/fft.cpp", '"frame/exceptions.h"'),
    ("effects/resampler_ssrc/fft.cpp", '"velmora/guid.h"'),
    ("effects/resampler_ssrc/ssrc_effect.cpp", '"effects/resampler_ssrc/fft.h"'),
    ("effects/resampler_ssrc/ssrc_effect.cpp", '"frame/blocks.h"'),
    ("effects/rates/rate_settings.cpp", '"frame/payload_reader.h"'),
    ("effects/rates/rate_settings.cpp", '"frame/exceptions.h"'),
    ("effects/rates/rate_settings.cpp", '"frame/rate_exclusion.h"'),
    ("effects/rates/rate_settings.cpp", '"velmora/guid.h"'),
    ("host/program/main.cpp", '"host/chain/album.h"'),
    ("host/program/main.cpp", '"effects/rates/rate_settings.h"'),
    ("tests/frame/blocks_test.cpp", '"host/chain/album.h"'),
    ("tests/frame/blocks_test.cpp", '"tests/support/block.h"'),
    ("bench/bench.cpp", '"effects/fft/fft_core.h"'),
]

FFT = "effects/resampler_ssrc/fft.cpp"
SSRC = "effects/resampler_ssrc/ssrc"

FORBIDDEN_INCLUDES = [
    ("velmora/guid.cpp", "<cstdint>", "velmora stands on <stddef.h> and <stdint.h> alone, not on cstdint"),
    ("velmora/guid.cpp", '"quillet/quillet.h"', "velmora does not include quillet/quillet.h"),
    ("host/program/main.cpp", '"quillet/quillet.h"', "host does not include quillet/quillet.h"),
    ("quillet/quillet.cpp", '"frame/blocks.h"', "quillet does not include frame/blocks.h"),
    ("frame/blocks.cpp", '"effects/fft/fft.h"', "frame does not include effects/fft/fft.h"),
    ("frame/blocks.cpp", '"host/chain/album.h"', "frame does not include host/chain/album.h"),
    ("effects/channels/swap.cpp", '"host/chain/album.h"', "effects does not include host/chain/album.h"),
    ("host/program/main.cpp", '"frame/blocks.h"', "host does not include frame/blocks.h"),
    ("host/program/main.cpp", '"effects/fft/fft_core.h"', "host does not include effects/fft/fft_core.h"),
    ("host/program/main.cpp", '"effects/fft/fft_words.h"', "host does not include effects/fft/fft_words.h"),
    ("effects/a_core.cpp", '"frame/blocks.h"', "an effect's core does not include frame/blocks.h"),
    ("effects/a_core.cpp", '"velmora/guid.h"', "an effect's core does not include velmora/guid.h"),
    ("effects/a_core.cpp", '"effects/a_effect.h"', "an effect's core does not include effects/a_effect.h"),
    ("effects/a_core.cpp", "<windows.h>", "an effect's core does not include windows.h"),
    ("effects/a_core.cpp", "<fmt/format.h>", "an effect's core does not include fmt/format.h"),
    ("effects/a_settings.cpp", '"frame/blocks.h"', "an effect's settings do not include frame/blocks.h"),
    ("effects/a_words.cpp", '"frame/blocks.h"', "an effect's settings do not include frame/blocks.h"),
    ("effects/a/a.cpp", '"effects/b/b_core.h"', "effects/a does not include effects/b/b_core.h"),
    ("effects/a/a_core.cpp", '"effects/b/b_core.h"', "effects/a does not include effects/b/b_core.h"),
    ("effects/a/a.cpp", '"effects/resampler_common/b.h"', "effects/a does not include effects/resampler_common/b.h"),
    (
        "effects/resampler_common/a.cpp",
        '"effects/resampler_x/b.h"',
        "effects/resampler_common does not include effects/resampler_x/b.h",
    ),
    (FFT, '"frame/blocks.h"', "the FFT converter does not include frame/blocks.h"),
    (FFT, '"velmora/sample_block.h"', "the FFT converter does not include velmora/sample_block.h"),
    (FFT, '"effects/pair_core.h"', "the FFT converter does not include effects/pair_core.h"),
    (FFT, '"effects/resampler_ssrc/ssrc_effect.h"', f"the FFT converter does not include {SSRC}_effect.h"),
    (FFT, "<windows.h>", "the FFT converter does not include windows.h"),
    (f"{SSRC}_converter.cpp", '"frame/blocks.h"', "the FFT converter does not include frame/blocks.h"),
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


ALLOWED_LINKS = [
    ("velmora/CMakeLists.txt", "target_link_libraries(velmora INTERFACE project_options)\n"),
    ("quillet/CMakeLists.txt", "target_link_libraries(quillet PUBLIC velmora PRIVATE project_options)\n"),
    ("frame/CMakeLists.txt", "target_link_libraries(frame PUBLIC payload velmora PRIVATE quillet)\n"),
    ("effects/CMakeLists.txt", "target_link_libraries(effects PUBLIC frame effect_cores ssrc_converter)\n"),
    ("effects/CMakeLists.txt", "target_link_libraries(effect_settings PUBLIC payload)\n"),
    ("effects/CMakeLists.txt", "target_link_libraries(kelvane PRIVATE effects) # not host_audio\n"),
    ("host/CMakeLists.txt", "target_link_libraries(host_chain\n    PUBLIC host_audio\n    PRIVATE effect_settings)\n"),
    ("host/audio/CMakeLists.txt", "target_link_libraries(host_audio PRIVATE PkgConfig::SNDFILE)\n"),
    ("host/CMakeLists.txt", "add_dependencies(kelvane-host kelvane)\n"),
    ("host/notes.md", "target_link_libraries(kelvane-host PRIVATE frame) would be wrong.\n"),
    ("tests/CMakeLists.txt", "target_link_libraries(all_tests PRIVATE frame effects host_chain)\n"),
]

FORBIDDEN_LINKS = [
    ("velmora/CMakeLists.txt", "velmora", "quillet"),
    ("quillet/CMakeLists.txt", "quillet", "frame"),
    ("frame/CMakeLists.txt", "payload", "quillet"),
    ("frame/CMakeLists.txt", "frame", "effect_cores"),
    ("frame/CMakeLists.txt", "frame", "host_objects"),
    ("effects/CMakeLists.txt", "effect_cores", "velmora"),
    ("effects/CMakeLists.txt", "ssrc_converter", "payload"),
    ("effects/CMakeLists.txt", "effect_settings", "frame"),
    ("effects/CMakeLists.txt", "effects", "host_objects"),
    ("effects/CMakeLists.txt", "kelvane", "host_audio"),
    ("host/CMakeLists.txt", "host_module", "frame"),
    ("host/CMakeLists.txt", "kelvane-host", "effects"),
    ("host/audio/CMakeLists.txt", "host_audio", "effect_cores"),
]


@pytest.mark.parametrize("path, text", ALLOWED_LINKS)
def test_allows_links_along_the_dependencies(tmp_path, path, text):
    assert faults_in(tmp_path, {path: text}) == []


@pytest.mark.parametrize("path, target, linked", FORBIDDEN_LINKS)
def test_finds_links_against_the_dependencies(tmp_path, path, target, linked):
    text = f"# Why.\nTARGET_LINK_LIBRARIES({target} PUBLIC # here\n    {linked})\n"
    assert faults_in(tmp_path, {path: text}) == [f"{path}:3: {target} does not link {linked}"]


@pytest.mark.parametrize("text", [
    "link_libraries(frame)\n",
    "set_property(TARGET host_chain APPEND PROPERTY LINK_LIBRARIES frame)\n",
])
def test_finds_links_that_hide(tmp_path, text):
    fault = "host/CMakeLists.txt:1: targets are linked by target_link_libraries alone"
    assert faults_in(tmp_path, {"host/CMakeLists.txt": text}) == [fault]
