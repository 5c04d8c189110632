"""Albums whose tracks overlap, to the frame and to the bit."""

import numpy as np
import pytest
from audio import noise, read, write

RATE_HZ = 8000
FADE = ["-e", "Crossfader:ms=4000", "--bits", "f64"]
FADE_FRAMES = 4 * RATE_HZ


def write_tracks(host, lengths_frames, channels=2):
    tracks = [noise(frames, channels, seed) for seed, frames in enumerate(lengths_frames)]
    for number, track in enumerate(tracks):
        write(host.folder / f"{number}.wav", track, rate_hz=RATE_HZ)
    return tracks, [f"{number}.wav" for number in range(len(tracks))]


def overlapped(first, second, frames):
    """The second behind the first, so many frames of both mixed by a linear ramp."""
    weights = (np.arange(frames) / frames)[:, np.newaxis]
    tail, head = first[len(first) - frames:], second[:frames]
    return np.concatenate([first[:len(first) - frames], (head - tail) * weights + tail, second[frames:]])


@pytest.mark.parametrize("block_frames", [97, 4096, 100000])
def test_each_track_overlaps_the_next_by_the_fade(host, block_frames):
    tracks, names = write_tracks(host, [50000, 70001, 64000])
    sound = read(host.process(*names, *FADE, "--block", block_frames))
    expected = overlapped(overlapped(tracks[0], tracks[1], FADE_FRAMES), tracks[2], FADE_FRAMES)
    assert len(expected) == 50000 + 70001 + 64000 - 2 * 32000
    assert (sound.rate_hz, sound.samples.shape) == (RATE_HZ, expected.shape)
    assert (sound.samples.view("<u8") == expected.view("<u8")).all()


@pytest.mark.parametrize("lengths_frames, album_frames", [
    ([50000], 50000),
    ([20000, 50000], 50000),  # all of the first is held and overlaps
    ([50000, 32000, 50000], 100000),  # the second lies in the overlap, and nothing of it is held at its end
    ([50000, 40000, 50000], 100000),  # overlaps of 32000 and 8000
    ([50000, 10000, 50000], 78000),  # one fade runs over both: 10000 and 22000
    ([50000, 10000], 28000),  # playback ends within the fade: 22000 are dropped, 10000 overlap
    ([50000, 0, 50000], 68000),
])
def test_short_tracks_overlap_as_far_as_they_reach(host, lengths_frames, album_frames):
    _, names = write_tracks(host, lengths_frames, channels=1)
    assert len(read(host.process(*names, *FADE)).samples) == album_frames


def test_the_summary_tells_the_lengths_and_the_latency(host):
    _, names = write_tracks(host, [50000, 70000])
    lines = host.output_of("process", *names, *FADE, "-o", "out.wav").splitlines()
    assert "Duration    15.000 s in (120000 frames), 11.000 s out (88000 frames)" in lines
    assert "Latency     4000.0 ms at most" in lines


def test_tracks_of_different_layouts_follow_each_other_unmixed(host):
    mono, stereo = noise(50000, 1), noise(40000, 2)
    write(host.folder / "mono.wav", mono, rate_hz=RATE_HZ)
    write(host.folder / "stereo.wav", stereo, rate_hz=RATE_HZ)
    sound = read(host.process("mono.wav", "stereo.wav", *FADE, "-e", "Convert mono to stereo"))
    np.testing.assert_array_equal(sound.samples, np.concatenate([mono[:, [0, 0]], stereo]))


@pytest.mark.parametrize("milliseconds, warning", [
    (9, "Crossfader: a fade of 9 ms is made as one of 10 ms"),
    (10, ""),
    (60001, "Crossfader: a fade of 60001 ms is made as one of 60000 ms"),
])
def test_a_fade_of_another_length_than_was_asked_for_is_told(host, milliseconds, warning):
    write(host.folder / "in.wav", noise(500, 2))
    answer = host.run("process", "in.wav", "-o", "out.wav", "-e", f"Crossfader:ms={milliseconds}")
    assert answer.exit_code == 0
    assert warning in answer.errors
    assert bool(answer.errors) == bool(warning)
