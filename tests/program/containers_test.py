"""Files of other kinds than WAV, in and out, and the speakers in them."""

import numpy as np
import pytest
from audio import RATE_HZ, loudest_frequency_hz, noise, read, rounded_to, speakers, tones, write

STEREO_HZ = [440.0, 1000.0]
# Vorbis keeps the lowest frequencies only for the speaker that has its name from them.
SPEAKERS_HZ = {
    "5.1": {"FL": 300, "FR": 500, "FC": 700, "LFE": 80, "BL": 1100, "BR": 1300},
    "7.1": {"FL": 300, "FR": 500, "FC": 700, "LFE": 80, "BL": 1100, "BR": 1300, "SL": 1500, "SR": 1700},
}
# Containers that know but one surround pair in a 5.1: ffmpeg takes it for the side pair.
FFMPEG_NAMES = {"5.1(side)": {"BL": "SL", "BR": "SR"}}
F64 = ["--bits", "f64"]


@pytest.mark.parametrize("name, coding", [
    ("in.wav", "pcm_s16le"), ("in.wav", "pcm_s24le"), ("in.w64", "pcm_s16le"), ("in.aiff", "pcm_s16be"),
    ("in.aiff", "pcm_s24be"), ("in.caf", "pcm_s16le"), ("in.flac", "flac"),
])
def test_a_lossless_file_comes_in_as_it_is(host, name, coding):
    samples = rounded_to(16, noise(5000, 2))
    write(host.folder / name, samples, coding=coding)
    np.testing.assert_array_equal(read(host.process(name, *F64)).samples, samples)


def loss_db(samples, original):
    """How far the difference lies below the original."""
    return 10.0 * np.log10(np.mean(np.square(original)) / np.mean(np.square(samples - original)))


@pytest.mark.parametrize("name, coding", [("in.ogg", "libvorbis"), ("in.mp3", "libmp3lame")])
def test_a_lossy_file_comes_in_whole(host, name, coding):
    samples = tones(STEREO_HZ, seconds=1.0)
    write(host.folder / name, samples, coding=coding)
    sound = read(host.process(name, *F64))
    assert (sound.rate_hz, sound.samples.shape) == (RATE_HZ, samples.shape)
    assert loss_db(sound.samples, samples) > 20.0


@pytest.mark.parametrize("name, bits, coding", [
    ("out.wav", [], "pcm_s24le"), ("out.rf64", [], "pcm_s24le"), ("out.w64", [], "pcm_s24le"),
    ("out.caf", [], "pcm_s24be"), ("out.aiff", [], "pcm_s24be"), ("out.AIF", [], "pcm_s24be"),
    ("out.flac", [], "flac"), ("out.flac", ["--bits", "24"], "flac"), ("out.w64", F64, "pcm_f64le"),
])
def test_a_lossless_file_goes_out_as_it_is(host, name, bits, coding):
    samples = noise(5000, 2) * 1.1  # some of it above full scale
    write(host.folder / "in.wav", samples)
    sound = read(host.process("in.wav", *bits, output=name))
    assert (sound.rate_hz, sound.coding) == (RATE_HZ, coding)
    np.testing.assert_array_equal(sound.samples, samples if bits == F64 else rounded_to(24, samples))


@pytest.mark.parametrize("name", ["out.flac", "out.aiff", "out.caf", "out.w64"])
def test_a_16_bit_file_goes_out_as_it_is(host, name):
    samples = noise(5000, 2)
    write(host.folder / "in.wav", samples)
    sound = read(host.process("in.wav", "--bits", "16", output=name))
    np.testing.assert_array_equal(sound.samples, rounded_to(16, samples))


@pytest.mark.parametrize("name", ["out.ogg", "out.oga", "out.mp3"])
def test_a_lossy_file_goes_out_with_its_tones(host, name):
    write(host.folder / "in.wav", tones(STEREO_HZ, seconds=1.0))
    sound = read(host.process("in.wav", output=name))
    assert sound.rate_hz == RATE_HZ
    assert len(sound.samples) == pytest.approx(RATE_HZ, abs=2500)  # a codec's blocks at both ends
    for channel, frequency_hz in enumerate(STEREO_HZ):
        assert loudest_frequency_hz(sound.samples[:, channel], RATE_HZ) == pytest.approx(frequency_hz, abs=2.0)


def write_surround(path, layout, coding):
    return write(path, tones(list(SPEAKERS_HZ[layout].values()), seconds=0.5), layout=layout, coding=coding)


def assert_tones_at_their_speakers(path, layout):
    names = FFMPEG_NAMES.get(read(path).layout, {})
    samples = speakers(path, [names.get(name, name) for name in SPEAKERS_HZ[layout]])
    for channel, (name, frequency_hz) in zip(samples.T, SPEAKERS_HZ[layout].items(), strict=True):
        assert loudest_frequency_hz(channel, RATE_HZ) == pytest.approx(frequency_hz, abs=4.0), name


@pytest.mark.parametrize("layout", SPEAKERS_HZ)
@pytest.mark.parametrize("name, coding", [
    ("in.wav", "pcm_s16le"), ("in.flac", "flac"), ("in.ogg", "libvorbis"), ("in.aiff", "pcm_s16be"),
    ("in.caf", "pcm_s16le"), ("in.w64", "pcm_s16le"),
])
def test_surround_comes_in_with_each_speaker_at_its_place(host, layout, name, coding):
    write_surround(host.folder / name, layout, coding)
    output = host.process(name, "-e", "Reverse stereo channels", *F64)
    assert read(output).layout == layout
    assert_tones_at_their_speakers(output, layout)


@pytest.mark.parametrize("layout", SPEAKERS_HZ)
@pytest.mark.parametrize("name", ["out.wav", "out.rf64", "out.flac", "out.ogg", "out.aiff", "out.caf", "out.w64"])
def test_surround_goes_out_with_each_speaker_at_its_place(host, layout, name):
    write_surround(host.folder / "in.wav", layout, "pcm_f64le")
    assert_tones_at_their_speakers(host.process("in.wav", output=name), layout)


@pytest.mark.parametrize("name", ["out.wav", "out.rf64"])
def test_a_speaker_mask_goes_out_as_it_came_in(host, name):
    write(host.folder / "in.wav", noise(10, 6), layout="5.1(side)")
    assert read(host.process("in.wav", output=name)).layout == "5.1(side)"


def test_tracks_of_different_kinds_are_one_album(host):
    samples = rounded_to(16, noise(3000, 2))
    write(host.folder / "1.flac", samples[:1000], coding="flac")
    write(host.folder / "2.wav", samples[1000:2000], coding="pcm_s16le")
    write(host.folder / "3.aiff", samples[2000:], coding="pcm_s16be")
    output = host.process("1.flac", "2.wav", "3.aiff", "--bits", "16", output="out.flac")
    np.testing.assert_array_equal(read(output).samples, samples)
