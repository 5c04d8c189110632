"""Samples through effects, bit for bit."""

import numpy as np
import pytest
from audio import noise, read, rounded_to, write
from effects import EFFECTS
from program import MODULE, PROGRAM, Host

F64 = ["--bits", "f64"]
HALF_POWER = np.sqrt(np.float32(0.5))  # single precision, as all weights
WEIGHTS = {
    "FL": (1, 0), "FR": (0, 1), "FC": (HALF_POWER, HALF_POWER), "LFE": (1, 1), "BL": (HALF_POWER, 0),
    "BR": (0, HALF_POWER), "SL": (HALF_POWER, 0), "SR": (0, HALF_POWER),
}
SPEAKERS = {"5.1": "FL FR FC LFE BL BR".split(), "7.1": "FL FR FC LFE BL BR SL SR".split()}


def signal(channels):
    """Noise, and at its start the values that arithmetic likes to lose."""
    samples = noise(10007, channels)
    special = [0.0, -0.0, 1.0, -1.0, 1.5, -3.0, 5e-324, 1e-300, 1e300]
    samples[:len(special)] = np.array(special)[:, np.newaxis]
    return samples


def to_stereo(samples, layout):
    return fold(samples, [WEIGHTS[name] for name in SPEAKERS[layout]])


def to_mono(samples, layout):
    weights = [np.float32(sum(np.float32(weight) for weight in WEIGHTS[name])) / 2 for name in SPEAKERS[layout]]
    return fold(samples, [(weight,) for weight in weights])


def fold(samples, weights):
    sums = np.zeros((len(samples), len(weights[0])))
    for channel, row in zip(samples.T, np.array(weights, dtype=float), strict=True):
        sums += np.outer(channel, row)
    return sums


def spread_to_5_1(samples):
    return fold(samples, [(1, 0, 0.5, 0, 1, 0), (0, 1, 0.5, 0, 0, 1)])


def spread_to_7_1(samples):
    weights = np.eye(6, 8)
    weights[[0, 4], 6] = weights[[1, 5], 7] = 0.5  # each side lies between its front and its back
    return fold(samples, weights)


def surround_to_stereo(samples):
    weights = np.array([(1, 0), (0, 1), (0.5, 0.5), (0, 0), (1, 0), (0, 1)])
    return fold(samples, weights * (1.0 / 2.5))


def without_back(samples):
    """From 7.1: what comes from the back goes to the sides."""
    weights = np.eye(8)[:, [0, 1, 2, 3, 6, 7]]
    weights[4, 4] = weights[5, 5] = 1.0
    return fold(samples, weights * 0.5)


EFFECT_CASES = {
    "Reverse stereo channels": ("stereo", "stereo", lambda samples: samples[:, ::-1]),
    "Convert mono to stereo": ("mono", "stereo", lambda samples: samples[:, [0, 0]]),
    "Convert stereo to 4 channels": ("stereo", "quad", lambda samples: samples[:, [0, 1, 0, 1]]),
    "Move stereo to rear channels": ("stereo", "2 channels (BL+BR)", lambda samples: samples),
    "Downmix channels to stereo": ("5.1", "stereo", lambda samples: to_stereo(samples, "5.1")),
    "Downmix channels to mono": ("7.1", "mono", lambda samples: to_mono(samples, "7.1")),
    "Upmix to 5.1": ("stereo", "5.1", spread_to_5_1),
    "Upmix to 7.1": ("5.1", "7.1", spread_to_7_1),
    "layout_converter:mask=2.0": ("5.1", "stereo", surround_to_stereo),
    "layout_converter:mask=0x3": ("5.1", "stereo", surround_to_stereo),
    "layout_limiter:mask=5.1 (side)": ("7.1", "5.1(side)", without_back),
}
CHANNELS = {"mono": 1, "stereo": 2, "5.1": 6, "7.1": 8}


def assert_same_bits(actual, expected):
    expected = np.ascontiguousarray(expected, dtype="<f8")
    assert actual.shape == expected.shape
    np.testing.assert_array_equal(np.ascontiguousarray(actual).view("<u8"), expected.view("<u8"))


@pytest.mark.parametrize("effect", EFFECT_CASES)
def test_an_effect_computes_the_same_in_blocks_of_any_size(host, effect):
    layout, layout_behind, compute = EFFECT_CASES[effect]
    samples = signal(CHANNELS[layout])
    write(host.folder / "in.wav", samples, layout=layout)
    for block_frames in (1, 7, 4096, 100000):
        sound = read(host.process("in.wav", "-e", effect, "--block", block_frames, *F64))
        assert (sound.rate_hz, sound.layout, sound.coding) == (44100, layout_behind, "pcm_f64le"), block_frames
        assert_same_bits(sound.samples, compute(samples))


def test_the_limiter_bends_what_is_above_half_of_full_scale(host):
    samples = noise(1000, 2)
    bent = np.sign(samples) * (np.tanh(2.0 * np.abs(samples) - 1.0) + 1.0) / 2.0
    write(host.folder / "in.wav", samples)
    sound = read(host.process("in.wav", "-e", "Hard -6dB limiter", *F64))
    quiet = np.abs(samples) <= 0.5
    assert_same_bits(sound.samples[quiet], samples[quiet])
    np.testing.assert_allclose(sound.samples[~quiet], bent[~quiet], rtol=0.0, atol=2.0 ** -52)


def test_the_look_ahead_limiter_keeps_length_place_and_full_scale(host):
    samples = 4.0 * noise(30000, 2)
    samples[:5000] *= 0.1
    write(host.folder / "in.wav", samples)
    sound = read(host.process("in.wav", "in.wav", "-e", "advanced", *F64)).samples
    assert sound.shape == (60000, 2)
    assert np.abs(sound).max() <= 1.0
    np.testing.assert_allclose(sound[500:4500], samples[500:4500], rtol=1e-6)
    gain = sound[6000:30000] / samples[6000:30000]
    assert gain.min() > 0.2
    assert gain.max() < 0.3  # a look-ahead of 255 frames always sees a peak near 4


def test_without_effects_it_is_a_conversion(host):
    samples = signal(6)
    write(host.folder / "in.wav", samples, rate_hz=96000)
    sound = read(host.process("in.wav", *F64))
    assert (sound.rate_hz, sound.layout) == (96000, "5.1")
    assert_same_bits(sound.samples, samples)


def test_effects_work_in_the_order_of_the_command_line(host):
    samples = noise(100, 2)
    write(host.folder / "in.wav", samples)
    to_four, to_two = ["-e", "Convert stereo to 4 channels"], ["-e", "Downmix channels to stereo"]
    assert_same_bits(read(host.process("in.wav", *to_two, *to_four, *F64)).samples, samples[:, [0, 1, 0, 1]])
    assert_same_bits(read(host.process("in.wav", *to_four, *to_two, *F64)).samples, samples + samples * HALF_POWER)


def test_options_may_stand_before_the_tracks(host):
    samples = noise(100, 2)
    write(host.folder / "in.wav", samples)
    sound = read(host.process("-e", "Reverse stereo channels", "in.wav", "in.wav", *F64))
    assert_same_bits(sound.samples, np.concatenate([samples, samples])[:, ::-1])


@pytest.mark.parametrize("block_frames", [7, 100000])
def test_an_album_is_its_tracks_without_gaps(host, block_frames):
    tracks = [noise(frames, 2, seed=frames) for frames in (5000, 1, 4096, 0, 1234)]
    names = [write(host.folder / f"{number}.wav", track).name for number, track in enumerate(tracks)]
    sound = read(host.process(*names, "-e", "Reverse stereo channels", "--block", block_frames, *F64))
    assert_same_bits(sound.samples, np.concatenate(tracks)[:, ::-1])


def test_tracks_of_different_layouts_become_one_album_behind_an_effect_that_unites_them(host):
    mono, stereo = noise(300, 1), noise(200, 2)
    write(host.folder / "mono.wav", mono)
    write(host.folder / "stereo.wav", stereo)
    sound = read(host.process("mono.wav", "stereo.wav", "-e", "Convert mono to stereo", *F64))
    assert_same_bits(sound.samples, np.concatenate([mono[:, [0, 0]], stereo]))


def test_no_frames_in_no_frames_out(host):
    write(host.folder / "in.wav", noise(0, 2), rate_hz=48000)
    sound = read(host.process("in.wav"))
    assert (sound.rate_hz, sound.samples.shape) == (48000, (0, 2))


def beside_steps(bits):
    """Values on, between and in the middle of the steps of whole numbers, at full scale and above."""
    steps = np.array([-3.0, -2.5, -1.5, -0.75, -0.5, -0.25, 0.25, 0.5, 0.75, 1.0, 1.5, 2.5])
    return np.concatenate([steps / 2.0 ** (bits - 1), [-1.5, -1.0, 0.0, 1.0, 1.5]]).reshape(-1, 1)


@pytest.mark.parametrize("bits", [16, 24, 32])
def test_whole_numbers_are_the_nearest_ones(host, bits):
    write(host.folder / "in.wav", beside_steps(bits))
    sound = read(host.process("in.wav", "--bits", bits))
    assert sound.coding == f"pcm_s{bits}le"
    assert_same_bits(sound.samples + 0.0, rounded_to(bits, beside_steps(bits)) + 0.0)  # one zero has no sign


def test_the_default_is_24_bits(host):
    write(host.folder / "in.wav", beside_steps(24))
    assert read(host.process("in.wav")).coding == "pcm_s24le"


def test_single_precision_is_the_nearest(host):
    samples = noise(1000, 1) * 3.0
    write(host.folder / "in.wav", samples)
    sound = read(host.process("in.wav", "--bits", "f32"))
    assert sound.coding == "pcm_f32le"
    assert_same_bits(sound.samples, samples.astype("<f4").astype("<f8"))


@pytest.mark.parametrize("name", [
    "Reverse stereo channels", "REVERSE STEREO CHANNELS", "rev st", "reverse",
    "{45BAE3C0-10B1-4008-BAAC-C5E6CEB06BA2}", "45bae3c0-10b1-4008-baac-c5e6ceb06ba2",
])
def test_an_effect_goes_by_several_names(host, name):
    samples = noise(10, 2)
    write(host.folder / "in.wav", samples)
    assert_same_bits(read(host.process("in.wav", "-e", name, *F64)).samples, samples[:, ::-1])


def test_every_listed_name_and_guid_can_be_used(host):
    write(host.folder / "in.wav", noise(10, 2))
    by_name = [argument for effect in EFFECTS for argument in ("-e", effect.name, "--preset", effect.payload)]
    by_guid = [argument for effect in EFFECTS for argument in ("--effect", effect.guid, "--preset", effect.payload)]
    named = host.process("in.wav", *by_name, *F64).read_bytes()
    assert host.process("in.wav", *by_guid, *F64).read_bytes() == named


def test_a_preset_belongs_to_the_effect_before_it(host):
    write(host.folder / "in.wav", noise(10, 2))
    effects = {"Reverse stereo channels": ["--preset", ""], "Move stereo to rear channels": []}
    for refusing in effects:
        arguments = []
        for effect, preset in effects.items():
            arguments += ["-e", effect, *(["--preset", "0A0b"] if effect == refusing else preset)]
        host.assert_fails("process", "in.wav", *arguments, "-o", "out.wav",
                          reason=f'the preset does not fit the effect "{refusing}"')


def test_another_module_can_be_named(host):
    alone = host.folder / PROGRAM.name
    alone.write_bytes(PROGRAM.read_bytes())
    alone.chmod(0o700)
    samples = noise(10, 2)
    write(host.folder / "in.wav", samples)
    sound = read(Host(host.folder, alone).process("in.wav", "-e", "reverse", "--module", MODULE, *F64))
    assert_same_bits(sound.samples, samples[:, ::-1])


def test_an_older_output_is_replaced(host):
    samples = noise(10, 2)
    write(host.folder / "in.wav", samples)
    (host.folder / "out.wav").write_bytes(b"older and longer" * 1000)
    assert_same_bits(read(host.process("in.wav", *F64)).samples, samples)
    assert sorted(path.name for path in host.folder.iterdir()) == ["in.wav", "out.wav"]
