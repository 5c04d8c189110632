#!/usr/bin/env python3
"""Takes tracks through "Crossfader", checks the album against the tracks, and draws the levels at its first join."""

import argparse
import subprocess
import tempfile
from pathlib import Path

import matplotlib

matplotlib.use("Agg")

import matplotlib.pyplot as plt  # noqa: E402 - the choice above must come first
import numpy as np  # noqa: E402

import wav_file  # noqa: E402

RATE_HZ = 44100
CHANNELS = 2
FADE_S = 4
FADE_FRAMES = FADE_S * RATE_HZ
MARGIN_S = 4  # drawn before and behind the overlap
LEVEL_WINDOW_FRAMES = RATE_HZ // 10
QUIETEST_DB = -60.0
ROUNDING = 1e-15  # of a sample and of the step between two


def play(host_program, tracks, *options):
    """What the program makes of the tracks, frames x channels."""
    with tempfile.TemporaryDirectory() as folder:
        output = Path(folder) / "out.wav"
        subprocess.run([host_program, "process", *tracks, "-o", output, "--bits", "f64", *options], check=True,
                       stdout=subprocess.DEVNULL)
        return wav_file.read(output).samples


def overlaps_of(lengths):
    """Frames that each track shares with the next: the fade, or what is held of a track that has no more. Each track
    is longer than its first overlap."""
    overlaps = []
    for length in lengths[:-1]:
        unmixed = length - (overlaps[-1] if overlaps else 0)
        overlaps.append(min(FADE_FRAMES, unmixed))
    assert all(length > overlap for length, overlap in zip(lengths[1:], overlaps, strict=True))
    return overlaps


def steps_of(samples):
    return np.abs(np.diff(samples, axis=0))


def check_join(old, new, heard):
    """What is heard in an overlap is the ramp, and no step from frame to frame is larger than those of both tracks by
    their weights and what the ramp itself moves between them in a frame. `new` and `heard` have one frame more, behind
    the overlap; before it, the old track goes on without a step, since its first frame here has all the weight."""
    frames = len(old)
    weights = (np.arange(frames) / frames)[:, np.newaxis]
    ramp = new[:-1] * weights + old * (1.0 - weights)
    np.testing.assert_allclose(heard[:-1], ramp, rtol=0.0, atol=ROUNDING)
    np.testing.assert_array_equal(heard[[0, -1]], [old[0], new[-1]])
    old_steps = np.concatenate([steps_of(old), np.zeros((1, CHANNELS))])  # behind its end it has no weight
    weights_behind = weights + 1.0 / frames
    allowed = (1.0 - weights_behind) * old_steps + weights_behind * steps_of(new)
    allowed += np.abs(new[:-1] - old) / frames
    assert (steps_of(heard) <= allowed + ROUNDING).all(), "a step that neither track has"


def check_album(tracks, overlaps, album):
    """Every frame of the tracks is heard alone, or in its overlap; nothing else is."""
    assert len(album) == sum(map(len, tracks)) - sum(overlaps), "the album's length"
    position = 0
    for track, before, behind in zip(tracks, [0, *overlaps], [*overlaps, 0], strict=True):
        alone = track[before:len(track) - behind]
        np.testing.assert_array_equal(album[position + before:position + before + len(alone)], alone)
        position += len(track) - behind
    position = 0
    for old, new, overlap in zip(tracks, tracks[1:], overlaps, strict=False):
        position += len(old) - overlap
        check_join(old[len(old) - overlap:], new[:overlap + 1], album[position:position + overlap + 1])


def levels_db(samples):
    """The root of the mean square of both channels, for each window."""
    windows = samples[:len(samples) // LEVEL_WINDOW_FRAMES * LEVEL_WINDOW_FRAMES]
    power = np.mean(windows.reshape(-1, LEVEL_WINDOW_FRAMES * CHANNELS) ** 2, axis=1)
    return np.maximum(10.0 * np.log10(np.maximum(power, 1e-30)), QUIETEST_DB)


def draw_levels(axes, samples, first_s, label, **style):
    levels = levels_db(samples)
    times_s = first_s + (np.arange(len(levels)) + 0.5) * LEVEL_WINDOW_FRAMES / RATE_HZ
    axes.plot(times_s, levels, label=label, **style)


def draw(old, new, overlap, album, path):
    """Time 0 is where the new track begins."""
    margin = MARGIN_S * RATE_HZ
    start = len(old) - overlap
    figure, axes = plt.subplots(figsize=(10, 4.5), layout="constrained")
    axes.axvspan(0.0, overlap / RATE_HZ, color="0.9", linewidth=0, label="overlap")
    draw_levels(axes, old[start - margin:], -MARGIN_S, "first track alone", color="tab:blue", linewidth=1)
    draw_levels(axes, new[:overlap + margin], 0.0, "second track alone", color="tab:orange", linewidth=1)
    draw_levels(axes, album[start - margin:start + overlap + margin], -MARGIN_S, "what is heard", color="black",
                linewidth=1.5, linestyle="--")
    axes.set_xlabel("seconds from the start of the second track")
    axes.set_ylabel("level in dB, root of the mean square of 0.1 s")
    axes.set_xlim(-MARGIN_S, overlap / RATE_HZ + MARGIN_S)
    axes.legend(loc="lower right")
    figure.savefig(path, dpi=100, metadata={"Software": None})


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("host_program", type=Path)
    parser.add_argument("picture", type=Path)
    parser.add_argument("tracks", nargs="+", type=Path, metavar="TRACK", help=f"at least two, stereo at {RATE_HZ} Hz")
    arguments = parser.parse_args()
    tracks = [play(arguments.host_program, [track]) for track in arguments.tracks]
    album = play(arguments.host_program, arguments.tracks, "-e", f"Crossfader:ms={FADE_S * 1000}")
    overlaps = overlaps_of([len(track) for track in tracks])
    check_album(tracks, overlaps, album)
    print(f"{len(tracks)} tracks of {' + '.join(str(len(track)) for track in tracks)} frames")
    print(f"with overlaps of {', '.join(map(str, overlaps))} frames")
    print(f"became {len(album)} frames; every frame is a track's own or the ramp's")
    draw(tracks[0], tracks[1], overlaps[0], album, arguments.picture)


if __name__ == "__main__":
    main()
