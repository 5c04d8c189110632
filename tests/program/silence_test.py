"""A long pause is cut out of a file, at the frame where the rules put the cut."""

import numpy as np
import pytest
from audio import noise, read, tones, write

SEGMENT_FRAMES = 4410  # a tenth of a second
FRAMES = 50 * SEGMENT_FRAMES
STEP = "Skip Silence:min_ms=500,threshold_db=-50,keep_initial={}"


def speech_with_pause(first_frame, end_frame):
    """Five seconds of a tone; between the two frames there is noise of -80 dB instead."""
    samples = tones([440.0, 550.0], 5.0)
    assert len(samples) == FRAMES
    samples[first_frame:end_frame] = 1e-4 * noise(end_frame - first_frame, 2)
    return samples


def skipped(host, samples, keep_initial, block_frames=4096):
    write(host.folder / "in.wav", samples)
    step = STEP.format(keep_initial)
    return read(host.process("in.wav", "--bits", "f64", "--block", block_frames, "-e", step)).samples


def segments(samples, first, end):
    return samples[first * SEGMENT_FRAMES:end * SEGMENT_FRAMES]


def faded(segment, direction):
    half_angles = np.pi * np.arange(SEGMENT_FRAMES) / 44100.0 / 2.0
    gains = np.cos(half_angles) ** 2 if direction == "out" else np.sin(half_angles) ** 2
    return segment * gains[:, np.newaxis]


# Each segment in which there is some of the tone is loud as a whole.
@pytest.mark.parametrize("first_frame, end_frame, silent_from, silent_to", [
    (44100, 176400, 10, 40),
    (44102, 176400, 11, 40),
    (46000, 180000, 11, 40),
    (48510, 180810, 11, 41),
])
@pytest.mark.parametrize("keep_initial, kept", [("yes", 5), ("no", 0)])
def test_a_long_pause_is_cut_out(host, first_frame, end_frame, silent_from, silent_to, keep_initial, kept):
    samples = speech_with_pause(first_frame, end_frame)
    out = skipped(host, samples, keep_initial)
    fade_out = silent_from + kept
    fade_in = silent_to - 1
    assert len(out) == FRAMES - (fade_in - fade_out - 1) * SEGMENT_FRAMES
    np.testing.assert_array_equal(segments(out, 0, fade_out), segments(samples, 0, fade_out))
    np.testing.assert_array_equal(segments(out, fade_out + 2, 50), segments(samples, silent_to, 50))
    np.testing.assert_allclose(segments(out, fade_out, fade_out + 1),
                               faded(segments(samples, fade_out, fade_out + 1), "out"), rtol=0.0, atol=1e-18)
    np.testing.assert_allclose(segments(out, fade_out + 1, fade_out + 2),
                               faded(segments(samples, fade_in, fade_in + 1), "in"), rtol=0.0, atol=1e-18)


def test_a_short_pause_stays(host):
    samples = speech_with_pause(44100, 44100 + 4 * SEGMENT_FRAMES)
    np.testing.assert_array_equal(skipped(host, samples, "no"), samples)


@pytest.mark.parametrize("block_frames", [97, 4410, 10000, 1000000])
def test_the_pause_is_the_same_in_blocks_of_any_size(host, block_frames):
    samples = speech_with_pause(46000, 180000)
    np.testing.assert_array_equal(skipped(host, samples, "yes", block_frames), skipped(host, samples, "yes"))


def test_a_pause_across_tracks_is_one(host):
    samples = speech_with_pause(44100, 176400)
    for name, part in (("1.wav", samples[:100000]), ("2.wav", samples[100000:])):
        write(host.folder / name, part)
    out = host.process("1.wav", "2.wav", "--bits", "f64", "-e", STEP.format("no"))
    np.testing.assert_array_equal(read(out).samples, skipped(host, samples, "no"))


def test_a_minimum_that_cuts_nothing_is_warned_of(host):
    write(host.folder / "in.wav", noise(500, 2))
    answer = host.run("process", "in.wav", "-o", "out.wav", "-e", "Skip Silence:min_ms=149")
    assert answer.exit_code == 0
    assert "Skip Silence: a minimum below 150 ms cuts nothing" in answer.errors
