"""Settings in words: in a chain, in a table, in preset files."""

import json

import pytest
from audio import noise, read, write

CROSSFEED = "{D487D723-FD8C-4106-9023-5620AEA0A885}"


def test_settings_shows_fields_with_default_and_value(host):
    output = host.output_of("settings", "meier")
    assert output.startswith("Meier Crossfeed\n  strength = 1000\n")
    assert "default 1000" in output


def test_an_effect_without_settings_says_so(host):
    assert host.output_of("settings", "hard") == "Hard -6dB limiter has no settings\n"


def test_a_preset_file_is_made_shown_and_changed(host):
    host.output_of("preset", "make", "file.json", "meier", "strength=1500")
    assert json.loads((host.folder / "file.json").read_text()) == {"owner": CROSSFEED, "payload": "DC050000"}
    host.output_of("preset", "edit", "file.json", "strength=-1")
    assert "strength = -1\n" in host.output_of("preset", "show", "file.json")
    assert "strength = -1\n" in host.output_of("settings", "meier", "file.json")


def test_a_layout_is_told_by_name_or_mask(host):
    assert "mask = stereo\n" in host.output_of("settings", "layout_converter")
    host.output_of("preset", "make", "file.json", "layout_converter", "mask=5.1 (side)")
    assert json.loads((host.folder / "file.json").read_text())["payload"] == "0F060000"
    assert "mask = 5.1 (side)\n" in host.output_of("preset", "show", "file.json")


@pytest.mark.parametrize("arguments, reason", [
    (["preset", "make", "file.json", "layout_limiter", "mask=9.9"], "layout_limiter: mask takes mono, stereo, "),
    (["configure", "layout_limiter"], '"layout_limiter" has no settings dialog'),
    (["preset", "make", "file.json", "meier", "strength=loud"], 'Meier Crossfeed: strength takes'),
    (["preset", "make", "file.json", "meier", "power=1"], 'there is no setting "power"'),
    (["preset", "make", "file.json", "hard", "strength=1"], "the effect has no settings"),
    (["preset", "show", "missing.json"], "missing.json: there is no such file"),
    (["preset", "show", "."], ".: is a folder"),
    (["preset", "edit", ".", "strength=1"], ".: is a folder"),
    (["settings", "meier", "."], ".: is a folder"),
    (["preset", "make", "no/folder/file.json", "meier"], "no/folder/file.json: no file can be written there"),
    (["configure", "hard"], '"Hard -6dB limiter" has no settings dialog'),
])
def test_what_cannot_be_done_is_said(host, arguments, reason):
    host.assert_fails(*arguments, reason=reason)


def test_a_file_that_is_there_is_not_made_anew(host):
    (host.folder / "song.flac").write_bytes(b"music")
    host.assert_fails("preset", "make", "song.flac", "meier", reason="song.flac: is there already")


@pytest.mark.native
def test_configure_says_where_there_are_no_dialogs(host):
    host.assert_fails("configure", "meier", reason='the dialog of "Meier Crossfeed" exists on Windows; `preset edit`')


def test_a_preset_of_another_effect_is_no_preset_of_this_one(host):
    host.output_of("preset", "make", "file.json", "hard")
    host.assert_fails("settings", "meier", "file.json", reason="file.json is a preset of another effect")
    host.assert_fails("configure", "meier", "file.json", reason="file.json is a preset of another effect")


@pytest.mark.parametrize("strength, warns", [(4000, False), (4001, True), (-9000, False)])
def test_a_strength_that_diverges_at_the_rate_is_warned_of(host, strength, warns):
    write(host.folder / "in.wav", noise(500, 2), rate_hz=8000)
    answer = host.run("process", "in.wav", "-o", "out.wav", "-e", f"meier:strength={strength}")
    assert answer.exit_code == 0
    assert ("Meier Crossfeed: at 8000 Hz a strength above 4000 diverges" in answer.errors) == warns


def test_the_whole_chain_is_known_before_an_input_is_opened(host):
    host.assert_fails("process", "missing.wav", "-o", "out.wav", "-e", "meier", "-e", "wrong",
                      reason='no effect is called "wrong"')


def test_a_chain_takes_a_preset_file(host):
    write(host.folder / "in.wav", noise(500, 2))
    host.output_of("preset", "make", "file.json", "meier", "strength=9000")
    by_words = host.process("in.wav", "-e", "meier:strength=9000").read_bytes()
    assert host.process("in.wav", "-e", "meier", "--preset", "@file.json").read_bytes() == by_words
    assert host.process("in.wav", "-e", "meier:strength=9000", "--preset", "@file.json").read_bytes() == by_words
    assert host.process("in.wav", "-e", "meier").read_bytes() != by_words


def test_a_wrong_change_of_a_preset_file_names_the_file(host):
    host.output_of("preset", "make", "file.json", "meier")
    host.assert_fails("preset", "edit", "file.json", "power=1", reason='file.json: there is no setting "power"')


def test_a_chain_takes_settings_behind_the_effect(host):
    write(host.folder / "in.wav", noise(500, 2))
    outputs = []
    for step in ("meier:strength=0", "meier", "meier:strength=1000", "meier:strength=9000"):
        host.output_of("process", "in.wav", "-o", "out.wav", "--bits", "f64", "-e", step)
        outputs.append(read(host.folder / "out.wav").samples)
    assert (outputs[0] == read(host.folder / "in.wav").samples).all()  # no feedback: nothing changes
    assert (outputs[1] == outputs[2]).all()
    assert not (outputs[2] == outputs[3]).all()
