"""The resampler in a chain, with its settings in words."""

import numpy as np
import pytest
from audio import loudest_frequency_hz, noise, read, tones, write

F64 = ["--bits", "f64"]
STEP = "Resampler (RetroArch):rate=48000,quality=Highest,exclude=44100;88200-96000"


@pytest.mark.parametrize("rate_hz", [22050, 32000, 96001])
def test_a_track_comes_out_at_the_other_rate(host, rate_hz):
    samples = tones([997.0, 440.0], seconds=0.5, rate_hz=rate_hz)
    write(host.folder / "in.wav", samples, rate_hz=rate_hz)
    sound = read(host.process("in.wav", "-e", STEP, *F64))
    assert (sound.rate_hz, sound.layout) == (48000, "stereo")
    assert len(sound.samples) == int(len(samples) * 48000 / rate_hz + 0.5)
    for channel, frequency_hz in enumerate([997.0, 440.0]):
        assert abs(loudest_frequency_hz(sound.samples[:, channel], 48000) - frequency_hz) <= 2.0  # bins of 2 Hz
    # Half a frame late at 48 kHz is 3 % of the level at 997 Hz; going down it may be two frames and a half.
    expected = tones([997.0, 440.0], seconds=0.5, rate_hz=48000)[:len(sound.samples)]
    np.testing.assert_allclose(sound.samples[1000:-1000], expected[1000:-1000], atol=0.25 * 0.33)


@pytest.mark.parametrize("rate_hz", [44100, 88200, 96000])
def test_an_excluded_rate_passes_with_a_notice(host, rate_hz):
    samples = noise(5000, 2)
    write(host.folder / "in.wav", samples, rate_hz=rate_hz)
    answer = host.run("process", "in.wav", "-o", "out.wav", *F64, "-e", STEP)
    assert answer.exit_code == 0
    assert answer.errors == f"Resampler (RetroArch): {rate_hz} Hz sample rate is excluded\n"
    sound = read(host.folder / "out.wav")
    assert sound.rate_hz == rate_hz
    assert (sound.samples == samples).all()


def test_tracks_of_several_rates_become_one_album(host):
    names = []
    for rate_hz in (44100, 48000, 22050):
        names.append(write(host.folder / f"{rate_hz}.wav", noise(rate_hz // 10, 2), rate_hz=rate_hz).name)
    sound = read(host.process(*names, "-e", "resampler retro:rate=48000", "--block", "777"))
    assert (sound.rate_hz, len(sound.samples)) == (48000, 3 * 4800)


def test_settings_are_told_and_kept(host):
    told = host.output_of("settings", "Resampler (RetroArch)")
    for line in ("rate    = 44100 Hz\n", "quality = Normal\n", "exclude = \n"):
        assert line in told
    host.output_of("preset", "make", "file.json", "resampler retro", STEP.split(":")[1])
    told = host.output_of("preset", "show", "file.json")
    for line in ("rate    = 48000 Hz\n", "quality = Highest\n", "exclude = 44100;88200-96000\n"):
        assert line in told
    host.output_of("preset", "edit", "file.json", "quality=1,exclude=")
    told = host.output_of("preset", "show", "file.json")
    for line in ("rate    = 48000 Hz\n", "quality = Lower\n", "exclude = \n"):
        assert line in told


def test_a_rate_that_cannot_be_made_is_said(host):
    write(host.folder / "in.wav", noise(100, 2))
    host.assert_fails("process", "in.wav", "-o", "out.wav", "-e", "resampler retro:rate=0",
                      reason='"Resampler (RetroArch)" failed: bad allocation')
