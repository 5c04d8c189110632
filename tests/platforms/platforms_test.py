"""Both platforms' modules tell the same of themselves and make the same of music, bit for bit wherever they can."""

import json
import os
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import audio
import numpy as np
import pytest
import wav_file
from effects import EFFECTS
from program import Host

NATIVE_PROGRAM = Path(os.environ["KELVANE_NATIVE_BIN"]) / "kelvane-host"
MUSIC_FOLDER = Path("/usr/share/games/etr/music")

LOUDEST = 1.5  # of full scale, so that the limiters have to work
QUIET_LEVEL = 1e-4  # of the loud parts: -77 dB

OTHER_SETTINGS = {
    "Crossfader": ["ms=333"],
    "Meier Crossfeed": ["strength=4321"],
    "Resampler (RetroArch)": ["rate=48000,quality=Highest", "rate=32000,quality=Lowest"],
    "Resampler (dBpoweramp/SSRC)": ["rate=48000", "rate=96000"],
    "Skip Silence": ["min_ms=300,threshold_db=-40,keep_initial=no"],
    "layout_converter": ["mask=5.1", "mask=mono"],
    "layout_limiter": ["mask=quad"],
}
STEPS = [(effect.name, settings) for effect in EFFECTS for settings in ["", *OTHER_SETTINGS.get(effect.name, [])]]

# How far both outputs may lie apart, full scale being 1. The mathematical functions of two libraries differ by up to 2
# units in the last place of a result: by 2^-52 where it is below 1. Sums, products, quotients and square roots are the
# same everywhere. An effect that makes do with these has no row here and gives the same bits.
FUNCTION = 2.0 ** -52
ROUNDING = 2.0 ** -54  # of a result below 1, at most
ROUNDING_TO_32_BITS = 2.0 ** -24  # of a result, relative to it

# The magnitudes of a low-pass filter's taps add up to less: the taps themselves add up to 1, and with the side lobes of
# a sinc of 256 taps it is 4.4.
SUM_OF_TAPS = 5.0


def sinc_bound(taps):
    """The table holds the filter, which sin makes, in 32 bits. The coefficient at a time stands on a straight line from
    one of them to the next; what makes it differ are two last places and two roundings. Samples times coefficients add
    up in four lanes of 32 bits, and then the lanes. Each rounding is in proportion to the magnitudes that are added."""
    roundings_each = 2 + taps / 4 + 3
    return LOUDEST * SUM_OF_TAPS * (2 * 2 + 2 * roundings_each) * ROUNDING_TO_32_BITS


def fft_bound():
    """The long filter runs through three transforms of at most 2^14 samples, the one of the filter included, and sines
    and cosines stand in each of their 14 levels: with its roundings a level is off by 4 functions at most, in
    proportion to the root of the sum of squares. This root is 2^7 times a signal's peak at most, and no sample is
    further off than the root. At most 3 components of 2 parts each are added up. The short filter, a sum of a few dozen
    products, adds less than is left here."""
    return LOUDEST * 2.0 ** 7 * 3 * 14 * 4 * FUNCTION * 3 * 2


# The steps of the limiter's curve and of the fades are (tanh + 1) / 2 and (sin + 1) / 2. The sum is up to 2, where
# roundings are twice as large.
CURVE = (FUNCTION + 2 * 2 * ROUNDING) / 2

BOUNDS = {
    "Hard -6dB limiter": CURVE,
    # "Normal", from 48000 down to 44100 Hz: 16 * 48000 / 44100 taps, up to a multiple of 4.
    "Resampler (RetroArch)": sinc_bound(taps=20),
    "Resampler (RetroArch):rate=48000,quality=Highest": sinc_bound(taps=256),
    "Resampler (RetroArch):rate=32000,quality=Lowest": sinc_bound(taps=8),
    "Resampler (dBpoweramp/SSRC)": fft_bound(),
    # A sample times a step of the fade, rounded; only silence is faded, below -40 dB at most. Half a last place of a
    # product below 0.01 is 2^-60.
    "Skip Silence": 0.01 * CURVE + 2 * 2.0 ** -60,
}

# A bound is for the worst case. Hardly a coefficient in a table of 32 bits comes out differently, nor does a sample.
EQUAL_AT_LEAST = {"Resampler (RetroArch)": 0.999}


def shaped(samples, quiet_frames):
    """The peak at LOUDEST, and nearly silent around the middle."""
    shaped_samples = samples * (LOUDEST / np.abs(samples).max())
    first_quiet = (len(samples) - quiet_frames) // 2
    shaped_samples[first_quiet:first_quiet + quiet_frames] *= QUIET_LEVEL
    return shaped_samples


def music(name, rate_hz, seconds, quiet_s):
    """Two channels out of the file."""
    sound = audio.read(MUSIC_FOLDER / name)
    assert (sound.rate_hz, sound.layout) == (rate_hz, "stereo")
    first = 10 * rate_hz
    return shaped(sound.samples[first:first + seconds * rate_hz], round(quiet_s * rate_hz))


def surround(seconds):
    """Six channels, no two alike."""
    made = audio.tones([60.0, 440.0, 997.0, 41.0, 3520.0, 7040.0], seconds)
    return shaped(made + 0.1 * audio.noise(len(made), 6), len(made) // 2)


class Platforms:
    """Both programs in a folder with some tracks. What both do goes on side by side."""

    def __init__(self, folder):
        self.native, self.windows = Host(folder, NATIVE_PROGRAM), Host(folder)
        self.pool = ThreadPoolExecutor(2)
        # More silence than Skip Silence lets pass by default.
        audio.write(folder / "44100.wav", music("freezingpoint.ogg", 44100, seconds=8, quiet_s=5.5), 44100)
        audio.write(folder / "48000.wav", music("calmrace-ks.ogg", 48000, seconds=3, quiet_s=1.0), 48000)
        audio.write(folder / "surround.wav", surround(seconds=1))
        audio.write(folder / "mono.wav", audio.tones([440.0], seconds=1))

    def told(self, *arguments):
        """What each of them answers."""
        texts = self.pool.map(lambda host: host.output_of(*arguments), (self.native, self.windows))
        return [json.loads(text) for text in texts]

    def outputs(self, track, step):
        """The native program's without and with the effect, and the Windows program's. The album is the same track
        twice: some effects do something between tracks."""
        works = {"plain.wav": (self.native,), "native.wav": (self.native, "-e", step),
                 "windows.wav": (self.windows, "-e", step)}

        def process(output):
            host, *effects = works[output]
            return wav_file.read(host.process(track, track, *effects, "--bits", "f64", output=output))

        return self.pool.map(process, works)


@pytest.fixture(scope="module")
def platforms(tmp_path_factory):
    return Platforms(tmp_path_factory.mktemp("platforms"))


def test_effects_names_identities_dialogs_and_default_presets_are_the_same(platforms):
    native, windows = platforms.told("list", "--json")
    assert native == windows
    assert [effect["name"] for effect in native] == [effect.name for effect in EFFECTS]


def test_the_modules_tell_the_same_but_for_the_names_of_their_files(platforms):
    native, windows = platforms.told("info", "--json")
    assert (native.pop("file_name"), windows.pop("file_name")) == ("kelvane.so", "kelvane.dll")
    assert (native.pop("has_expected_file_name"), windows.pop("has_expected_file_name")) == (False, True)
    assert native == windows


def are_same(one, other):
    """Whether two files are the same, header and bits."""
    return one.header == other.header and one.samples.tobytes() == other.samples.tobytes()


@pytest.mark.parametrize("effect, settings", STEPS)
def test_music_comes_out_the_same(platforms, effect, settings):
    step = f"{effect}:{settings}" if settings else effect
    bound = BOUNDS.get(step, BOUNDS.get(effect))
    has_effect = False
    for track in ("44100.wav", "48000.wav", "mono.wav" if effect == "Convert mono to stereo" else "surround.wav"):
        plain, native, windows = platforms.outputs(track, step)
        has_effect = has_effect or not are_same(native, plain)
        assert native.header == windows.header, f"the headers from {track}"
        assert len(native.samples) == len(windows.samples), track
        if bound is None:
            assert are_same(native, windows), track
        else:
            assert np.abs(native.samples - windows.samples).max() <= bound, track
            assert np.mean(native.samples == windows.samples) >= EQUAL_AT_LEAST.get(effect, 0.0), track
    assert has_effect, "the music of all tracks comes out as it was"
