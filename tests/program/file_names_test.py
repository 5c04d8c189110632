"""Files by all the names that they can have."""

import os

import pytest
from audio import noise, write

# NAME_MAX less the extension: no room for anything in front of or behind the name.
LONGEST_STEM_BYTES = 251


@pytest.mark.parametrize("stem", [
    "two words", "Grüße – 日本語 🎵", "a'b", "per%20cent {} %s", "~", "x" * LONGEST_STEM_BYTES,
])
def test_a_name_may_have_any_characters(host, stem):
    name = stem + ".wav"
    (host.folder / "to").mkdir()
    write(host.folder / name, noise(10, 2), coding="pcm_s24le")
    told = host.output_of("process", name, "-o", f"to/{name}")
    assert told.startswith(f"Output      to/{name} (44100 Hz, stereo)\n")
    assert [path.name for path in (host.folder / "to").iterdir()] == [name]


def test_a_failure_tells_the_name_as_it_was_given(host):
    host.assert_fails("process", "日本語.wav", "-o", "out.wav", reason="日本語.wav: there is no such file")


def test_a_path_may_be_absolute(host):
    write(host.folder / "in.wav", noise(10, 2))
    output = host.folder / "out.wav"
    host.output_of("process", host.folder / "in.wav", "-o", output)
    assert output.exists()


def test_a_leading_hyphen_is_no_option_behind_two(host):
    write(host.folder / "in.wav", noise(10, 2)).rename(host.folder / "-in.wav")
    host.output_of("process", "-o", "out.wav", "--", "-in.wav")
    assert (host.folder / "out.wav").exists()


@pytest.mark.native
@pytest.mark.parametrize("name", [b"\xff\xfe.wav", b"back\\slash.wav", b"line\nbreak.wav"])
def test_a_name_that_windows_would_not_take(host, name):
    write(host.folder / "in.wav", noise(10, 2)).rename(host.folder / os.fsdecode(name))
    host.process(os.fsdecode(name))


@pytest.mark.native
def test_a_line_break_in_a_name_stays_out_of_the_error(host):
    host.assert_fails("process", "line\nbreak.wav", "-o", "out.wav", reason="line?break.wav: there is no such file")
