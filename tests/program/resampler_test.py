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
    for line in ("rate    = 44100 Hz\n", "quality = Normal\n", "exclude = \n", "; default nothing\n"):
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


FFT_STEP = "Resampler (dBpoweramp/SSRC):rate=48000,exclude=44100;88200-96000"


# What the filters' delay leaves of a frame: (8191 ÷ 3) mod 1, 8191 ÷ 2 - 4095, and (16383 + 2) ÷ 4 - 4096.
@pytest.mark.parametrize("rate_hz, late_frames", [(22050, 1 / 3), (32000, 0.5), (192000, 0.25)])
def test_the_other_resampler_keeps_tones_as_they_are(host, rate_hz, late_frames):
    samples = tones([997.0, 440.0], seconds=1.0, rate_hz=rate_hz)
    write(host.folder / "in.wav", samples, rate_hz=rate_hz)
    sound = read(host.process("in.wav", "-e", FFT_STEP, "--block", "777", *F64))
    assert (sound.rate_hz, sound.layout) == (48000, "stereo")
    assert len(sound.samples) == 48000
    frames = np.arange(10000, 38000)
    expected = 0.25 * np.sin(2.0 * np.pi * np.outer((frames - late_frames) / 48000, [997.0, 440.0]))
    np.testing.assert_allclose(sound.samples[10000:38000], expected, atol=1e-7)


@pytest.mark.parametrize("rate_hz", [44100, 88200, 96000])
def test_the_other_resampler_leaves_excluded_rates_alone_and_says_nothing(host, rate_hz):
    samples = noise(5000, 2)
    write(host.folder / "in.wav", samples, rate_hz=rate_hz)
    answer = host.run("process", "in.wav", "-o", "out.wav", *F64, "-e", FFT_STEP)
    assert (answer.exit_code, answer.errors) == (0, "")
    sound = read(host.folder / "out.wav")
    assert sound.rate_hz == rate_hz
    assert (sound.samples == samples).all()


def test_the_other_resamplers_settings_are_told_and_kept(host):
    told = host.output_of("settings", "Resampler (dBpoweramp/SSRC)")
    for line in ("rate    = 44100 Hz\n", "exclude = \n", "; default nothing\n"):
        assert line in told
    host.output_of("preset", "make", "file.json", "ssrc", FFT_STEP.split(":")[1])
    told = host.output_of("preset", "show", "file.json")
    for line in ("rate    = 48000 Hz\n", "exclude = 44100;88200-96000\n"):
        assert line in told


def test_a_rate_that_the_other_resampler_does_not_take_is_said(host):
    write(host.folder / "in.wav", noise(100, 2))
    host.assert_fails("process", "in.wav", "-o", "out.wav", "-e", "ssrc:rate=999",
                      reason='rate takes 1000 to 20000000, not "999"')
    host.assert_fails("process", "in.wav", "-o", "out.wav", "-e", "ssrc", "--preset", "E7030000",
                      reason='the preset does not fit the effect "Resampler (dBpoweramp/SSRC)"')


@pytest.mark.parametrize("target_hz, warning", [
    (20000000, "Resampler (dBpoweramp/SSRC): cannot convert 44100 Hz to 20000000 Hz\n"),
    (48000, ""),
    (44100, ""),
])
def test_a_conversion_that_is_not_made_is_warned_of(host, target_hz, warning):
    for name in ("1.wav", "2.wav"):
        write(host.folder / name, noise(500, 2))
    answer = host.run("process", "1.wav", "2.wav", "-o", "out.wav", "-e", f"ssrc:rate={target_hz}")
    assert (answer.exit_code, answer.errors) == (0, warning)
    assert (read(host.folder / "out.wav").rate_hz == target_hz) == (not warning)


DIVERGES = "Meier Crossfeed: at {} Hz a strength above {} diverges\n"


# The converter has no way from 12000 Hz to 352800 Hz, but one over 48000 Hz.
@pytest.mark.parametrize("steps, warnings", [
    (["ssrc:rate=352800"], "Resampler (dBpoweramp/SSRC): cannot convert 12000 Hz to 352800 Hz\n"),
    (["ssrc:rate=352800,exclude=12000"], ""),
    (["ssrc:rate=48000", "ssrc:rate=352800"], ""),
    (["ssrc:rate=48000,exclude=8000-12000", "ssrc:rate=352800"],
     "Resampler (dBpoweramp/SSRC): cannot convert 12000 Hz to 352800 Hz\n"),
    (["meier:strength=7000"], DIVERGES.format(12000, 6000)),
    (["ssrc:rate=48000", "meier:strength=7000"], ""),
    (["ssrc:rate=8000", "meier:strength=5000"], DIVERGES.format(8000, 4000)),
    (["ssrc:rate=352800", "meier:strength=7000"],
     "Resampler (dBpoweramp/SSRC): cannot convert 12000 Hz to 352800 Hz\n" + DIVERGES.format(12000, 6000)),
])
def test_warnings_are_of_the_rates_that_reach_an_effect(host, steps, warnings):
    write(host.folder / "in.wav", noise(500, 2), rate_hz=12000)
    chain = [word for step in steps for word in ("-e", step)]
    answer = host.run("process", "in.wav", "-o", "out.wav", *chain)
    assert (answer.exit_code, answer.errors) == (0, warnings)


def test_each_rate_of_an_album_goes_its_own_way(host):
    for rate_hz in (8000, 12000):
        write(host.folder / f"{rate_hz}.wav", noise(500, 2), rate_hz=rate_hz)
    answer = host.run("process", "8000.wav", "12000.wav", "-o", "out.wav",
                      "-e", "ssrc:rate=12000,exclude=9000", "-e", "meier:strength=7000")
    assert (answer.exit_code, answer.errors) == (0, DIVERGES.format(12000, 6000))


@pytest.mark.parametrize("effect", ["ssrc", "retro"])
def test_settings_that_went_into_the_exclusions_are_warned_of(host, effect):
    write(host.folder / "1.wav", noise(500, 2))
    write(host.folder / "2.wav", noise(500, 2), rate_hz=48000)
    step = f"{effect}:exclude=abc,rate=44100"
    answer = host.run("process", "1.wav", "2.wav", "-o", "out.wav", "-e", step)
    assert answer.exit_code == 0
    assert answer.errors.count('exclude takes all that is behind it, here "abc,rate=44100"') == 1
    step = f"{effect}:rate=44100,exclude=96000"
    assert host.run("process", "1.wav", "2.wav", "-o", "out.wav", "-e", step).errors == ""
