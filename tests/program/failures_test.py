"""Work that cannot be done: one line tells why, the exit code is 1, and the folder stays as it was."""

import resource
import shutil

import pytest
from audio import noise, write
from program import IS_WINDOWS, MODULE_LIBRARY, PROGRAM, Host

native = pytest.mark.native
TO_OUT = ["-o", "out.wav"]


@pytest.fixture
def folder(host):
    """With an input, and an output of an earlier run, which no failure may touch."""
    write(host.folder / "in.wav", noise(5000, 2), coding="pcm_s16le")
    for name in ("out.wav", "out.flac", "out.ogg"):
        (host.folder / name).write_bytes(b"of an earlier run")
    return host.folder


def cut(whole, kept_part):
    content = whole.read_bytes()
    whole.write_bytes(content[:int(kept_part * len(content))])


@pytest.mark.parametrize("name, reason", [
    ("missing.wav", "there is no such file"),
    ("missing/in.wav", "there is no such file"),
    ("folder", "is a folder"),
    ("text.wav", "is not audio"),
    ("empty.wav", "is not audio"),
    ("zeros.wav", "is not audio"),
])
def test_an_input_that_is_not_audio(host, folder, name, reason):
    (folder / "folder").mkdir()
    (folder / "text.wav").write_text("Not a sound.\n" * 1000)
    (folder / "empty.wav").touch()
    (folder / "zeros.wav").write_bytes(bytes(10000))
    host.assert_fails("process", "in.wav", name, *TO_OUT, reason=f"{name}: {reason}")


@pytest.mark.parametrize("kept_part", [0.001, 0.002, 0.5, 0.999])
@pytest.mark.parametrize("name, coding", [
    ("cut.wav", "pcm_s16le"),
    pytest.param("cut.flac", "flac", marks=native),
    pytest.param("cut.ogg", "libvorbis", marks=native),
    pytest.param("cut.aiff", "pcm_s16be", marks=native),
    pytest.param("cut.caf", "pcm_s16le", marks=native),
    pytest.param("cut.w64", "pcm_s16le", marks=native),
])
def test_an_input_that_is_cut_short(host, folder, name, coding, kept_part):
    write(folder / name, noise(20000, 2), coding=coding)
    cut(folder / name, kept_part)
    host.assert_fails("process", "in.wav", name, *TO_OUT, reason=f"{name}: ")


@native
def test_damage_in_the_middle_of_a_track(host, folder):
    write(folder / "bad.flac", noise(200000, 2), coding="flac")
    content = bytearray((folder / "bad.flac").read_bytes())
    middle = len(content) // 2
    content[middle:middle + 20000] = bytes(20000)
    (folder / "bad.flac").write_bytes(content)
    host.assert_fails("process", "in.wav", "bad.flac", *TO_OUT, reason="bad.flac: ")


@pytest.mark.parametrize("arguments, reason", [
    (["-e", "Frobnicate"], 'no effect is called "Frobnicate"'),
    (["-e", ""], "the name of an effect is empty"),
    (["-e", ":strength=1"], "the name of an effect is empty"),
    (["-e", "meier:power=1"], 'Meier Crossfeed: there is no setting "power"'),
    (["-e", "{45BAE3C0-10B1-4008-BAAC-C5E6CEB06BA3}"], "no effect is called"),
    (["-e", "reverse,reverse"], "no effect is called"),
    (["-e", "two\nlines"], 'no effect is called "two?lines"'),
    (["-e", "downmix"], '"downmix" could be "Downmix channels to mono", "Downmix channels to stereo"'),
    (["-e", "reverse stereo", "--preset", "0"], '--preset "0" has half a byte too many'),
    (["-e", "reverse stereo", "--preset", "0x00"], '--preset "0x00" is not'),
    (["-e", "reverse stereo", "--preset", "0 0"], '--preset "0 0" is not'),
    (["-e", "reverse stereo", "--preset", "0G"], '--preset "0G" is not'),
    (["-e", "reverse stereo", "--preset", "00,00"], '--preset "00,00" is not'),
    (["-e", "reverse stereo", "--preset", "00"], 'the preset does not fit the effect "Reverse stereo channels"'),
    (["-e", "reverse stereo", "--preset", "@hard.json"],
     'hard.json is a preset of another effect than "Reverse stereo channels"'),
    (["-e", "reverse stereo", "--preset", "@missing.json"], "missing.json: there is no such file"),
    (["-e", "reverse stereo", "--preset", "@in.wav"], "in.wav: is no preset file"),
    (["-e", "reverse stereo", "--preset", "@"], '--preset "@" names no file'),
])
def test_an_effect_that_cannot_be_had(host, folder, arguments, reason):
    (folder / "hard.json").write_text('{"owner": "{CB592C20-2E33-4972-925F-3FBB6BDBA9BF}", "payload": ""}')
    host.assert_fails("process", "in.wav", *TO_OUT, *arguments, reason=reason)


@pytest.mark.parametrize("output, reason", [
    ("folder.wav", "is a folder"),
    ("missing/out.wav", "no file can be written there"),
    ("in.wav/out.wav", "no file can be written there"),
    ("out", "is not a name of a file that can be written"),
    ("out.txt", "is not a name of a file that can be written"),
    ("wav", "is not a name of a file that can be written"),
    pytest.param("/proc/out.wav", "no file can be written there", marks=native),
    pytest.param("/proc/out.flac", "no file can be written there", marks=native),
    *([("out.flac", "is not a name of a file that can be written here")] if IS_WINDOWS else []),
    *([(name, "is not a name that a file can have") for name in ("bad<name>.wav", "CON.wav")] if IS_WINDOWS else []),
])
def test_an_output_that_cannot_be_made(host, folder, output, reason):
    (folder / "folder.wav").mkdir()
    host.assert_fails("process", "in.wav", "-o", output, reason=f"{output}: {reason}")


@native
@pytest.mark.parametrize("output, bits, reason", [
    ("out.flac", "32", "FLAC cannot hold"),
    ("out.flac", "f32", "FLAC cannot hold"),
    ("out.flac", "f64", "FLAC cannot hold"),
    ("out.ogg", "16", "Ogg Vorbis has its own"),
    ("out.ogg", "f32", "Ogg Vorbis has its own"),
])
@pytest.mark.usefixtures("folder")
def test_an_encoding_that_the_container_cannot_hold(host, output, bits, reason):
    host.assert_fails("process", "in.wav", "-o", output, "--bits", bits, reason=f"{output}: {reason}")


@native
@pytest.mark.parametrize("output, name", [("out.ogg", "Ogg Vorbis"), ("out.mp3", "MP3")])
def test_a_rate_that_the_container_cannot_hold(host, folder, output, name):
    write(folder / "fast.wav", noise(100, 2), rate_hz=384000)
    host.assert_fails("process", "fast.wav", "-o", output, reason=f"{output}: {name} cannot hold 384000 Hz")


@native
@pytest.mark.parametrize("output", ["out.flac", "out.ogg"])
def test_speakers_that_the_container_cannot_record(host, folder, output):
    write(folder / "side.wav", noise(100, 6), layout="5.1(side)")
    advice = "-e", "layout_converter:mask=5.1"
    host.assert_fails("process", "side.wav", "-o", output, reason=" ".join(advice))
    host.process("side.wav", *advice, output=output)


def limit_file_size():
    limit_bytes = 65536
    resource.setrlimit(resource.RLIMIT_FSIZE, (limit_bytes, limit_bytes))


@native
@pytest.mark.parametrize("output", ["out.wav", "out.flac", "out.ogg"])
def test_a_disk_that_is_full(host, folder, output):
    write(folder / "long.wav", noise(400000, 2), coding="pcm_s16le")
    # Without the signal that goes with it, the limit looks like a full disk.
    host.assert_fails("process", "long.wav", "-o", output, reason=f"{output}: ", preexec_fn=limit_file_size,
                      restore_signals=False)


FORMATS = {
    "mono.wav": {"samples": noise(100, 1)},
    "quad.wav": {"samples": noise(100, 4)},
    "48k.wav": {"samples": noise(100, 2), "rate_hz": 48000},
}


@pytest.mark.parametrize("name, change", [
    ("mono.wav", "from 44100 Hz, stereo to 44100 Hz, mono after 0.113 s"),
    ("quad.wav", "from 44100 Hz, stereo to 44100 Hz, quad after 0.113 s"),
    ("48k.wav", "from 44100 Hz, stereo to 48000 Hz, stereo after 0.113 s; one file holds one rate and layout: a "
                "resampler brings all to one rate, as -e ssrc:rate=44100 does"),
])
def test_a_change_of_format_in_one_output(host, folder, name, change):
    write(folder / name, **FORMATS[name])
    host.assert_fails("process", "in.wav", name, "in.wav", *TO_OUT, reason=change)


def test_a_change_of_format_that_an_effect_causes(host, folder):
    write(folder / "mono.wav", noise(100, 1))
    host.assert_fails("process", "mono.wav", "in.wav", *TO_OUT, "-e", "Convert stereo to 4 channels",
                      reason="from 44100 Hz, mono to 44100 Hz, quad after 0.002 s")


@pytest.mark.parametrize("command", [["list"], ["info"], ["process", "in.wav", *TO_OUT]], ids=" ".join)
@pytest.mark.parametrize("module, reason", [
    ("missing.so", "cannot load the module missing.so"),
    ("in.wav", "cannot load the module in.wav"),
    ("text.so", "cannot load the module text.so"),
    ("empty.so", "cannot load the module empty.so"),
    (".", "cannot load the module ."),
    (str(MODULE_LIBRARY), "is not a module"),
    pytest.param("/lib/x86_64-linux-gnu/libm.so.6", "is not a module", marks=native),
])
def test_a_module_that_is_none(host, folder, command, module, reason):
    (folder / "text.so").write_text("Not a library.\n" * 1000)
    (folder / "empty.so").touch()
    host.assert_fails(*command, "--module", module, reason=reason)


@native
def test_a_path_is_told_once(host):
    host.assert_fails("list", "--module", "missing.so", reason="the module missing.so: cannot open shared object file")


def test_no_module_beside_the_program(host, folder):
    alone = shutil.copy(PROGRAM, folder)
    Host(folder, alone).assert_fails("list", reason="there is no module")
    Host(folder, alone).assert_fails("list", reason="; --module names another")
