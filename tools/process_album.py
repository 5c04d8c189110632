#!/usr/bin/env python3
"""Takes an album of real music, whose tracks have different rates, through effects of all kinds; checks its length, and
draws what became of a stretch of one track."""

import argparse
import re
import subprocess
import sys
import tempfile
from itertools import groupby
from pathlib import Path

import matplotlib

matplotlib.use("Agg")

import matplotlib.pyplot as plt  # noqa: E402 - the choice above must come first
import numpy as np  # noqa: E402

import vorbis  # noqa: E402
import wav_file  # noqa: E402
from small_picture import save_small  # noqa: E402

MUSIC_FOLDER = Path("/usr/share/games/etr/music")

RATE_HZ = 48000
FADE_S = 3  # no track is shorter than two of them
SEGMENT_FRAMES = RATE_HZ // 10  # Skip Silence cuts out whole ones, and what is left behind the last one
EFFECTS = [
    # One rate for all tracks, so that the end of each can overlap the start of the next.
    f"Resampler (dBpoweramp/SSRC):rate={RATE_HZ}",
    f"Crossfader:ms={FADE_S * 1000}",
    "Skip Silence:min_ms=1000,threshold_db=-60",
    # Out to six speakers and back to two: the sides come a little closer to each other, and the level stays.
    "Upmix to 5.1",
    "layout_converter:mask=stereo",
    # For headphones: some of the separation of the low frequencies goes, and the limiter takes what got too loud.
    "Meier Crossfeed:strength=1500",
    "Advanced Limiter",
]

DRAWN_TRACK = "freezingpoint.ogg"
DRAWN_S = slice(20, 30)
WINDOW_S = 0.1
BIN_HZ = 1 / WINDOW_S
STEPS_PER_WINDOW = 4
LOUDEST_DB, QUIETEST_DB = -20.0, -140.0  # of the picture
MOST_ABOVE_BAND_DB = -140.0


def process(host_program, tracks, output, effects, *options):
    """Answers what the program tells of it."""
    chain = [argument for effect in effects for argument in ("-e", effect)]
    done = subprocess.run([host_program, "process", *tracks, "-o", output, *chain, *options], check=True,
                          stdout=subprocess.PIPE, text=True)
    return done.stdout


def frames_told(summary):
    """Frames in and out."""
    told = re.search(r"^Duration .*\((\d+) frames\).*\((\d+) frames\)$", summary, re.MULTILINE)
    return int(told[1]), int(told[2])


def converted(frames, rate_hz):
    return frames * RATE_HZ // rate_hz


def converted_in_all(sounds):
    """Neighbouring tracks of one rate are one stream to the converter."""
    streams = groupby(sounds, key=lambda sound: sound.rate_hz)
    return sum(converted(sum(sound.frames for sound in stream), rate_hz) for rate_hz, stream in streams)


def check_length(sounds, summary):
    """Every frame is there once, or in an overlap of two tracks, or in a cut."""
    frames_in, frames_out = frames_told(summary)
    assert frames_in == sum(sound.frames for sound in sounds)
    whole = converted_in_all(sounds)
    overlaps = (len(sounds) - 1) * FADE_S * RATE_HZ
    cut = whole - overlaps - frames_out
    assert cut >= 0
    assert frames_out % SEGMENT_FRAMES in (0, (whole - overlaps) % SEGMENT_FRAMES), (whole, overlaps, frames_out)
    print(f"Frames at {RATE_HZ} Hz: {whole} - {overlaps} in overlaps - {cut} of silence = {frames_out}")


def play(host_program, track, effects):
    """What the program makes of the track."""
    with tempfile.TemporaryDirectory() as folder:
        output = Path(folder) / "out.wav"
        process(host_program, [track], output, effects, "--bits", "f64")
        return wav_file.read(output)


def bands(sound):
    """Power of both channels' mean in bands of 10 Hz, in the drawn stretch, a full-scale sine being 1: times x
    frequencies."""
    window_frames = round(WINDOW_S * sound.rate_hz)
    stretch = sound.samples[DRAWN_S.start * sound.rate_hz:DRAWN_S.stop * sound.rate_hz].mean(axis=1)
    windows = np.lib.stride_tricks.sliding_window_view(stretch, window_frames)[::window_frames // STEPS_PER_WINDOW]
    shape = np.blackman(window_frames)
    return np.square(np.abs(np.fft.rfft(windows * shape)) * 2.0 / shape.sum())


def to_db(power):
    return 10.0 * np.log10(np.maximum(power, 1e-24))


def check_sum(before, after):
    """The effects leave the sum of both channels alone but where the limiter works, and add nothing above its band."""
    edge, kilohertz = round(20000 / BIN_HZ), round(1000 / BIN_HZ)
    levels = [to_db(power.mean(axis=0)[:edge].reshape(-1, kilohertz).mean(axis=1)) for power in (before, after)]
    np.testing.assert_allclose(levels[1], levels[0], rtol=0.0, atol=0.1)
    above_band = to_db(after[:, before.shape[1]:].max())
    assert above_band < MOST_ABOVE_BAND_DB, above_band
    print(f"Above the band of the track nothing is louder than {above_band:.0f} dB")


def draw(before, after, path):
    figure, both = plt.subplots(1, 2, figsize=(10, 4.5), sharey=True, layout="constrained")
    for axes, power, title in zip(both, (before, after), ("before, at 44100 Hz", "after, at 48000 Hz"), strict=True):
        seconds, kilohertz = DRAWN_S.stop - DRAWN_S.start, power.shape[1] * BIN_HZ / 1000
        image = axes.imshow(to_db(power.T), origin="lower", aspect="auto", extent=(0, seconds, 0, kilohertz),
                            cmap="magma", vmin=QUIETEST_DB, vmax=LOUDEST_DB)
        axes.set_title(title)
        axes.set_xlabel("seconds")
    both[0].set_ylabel("kHz")
    both[0].set_ylim(0, RATE_HZ / 2000)
    figure.colorbar(image, ax=both, label="dB of a full-scale sine, left + right")
    save_small(figure, path)


def draw_track(host_program, path):
    track = MUSIC_FOLDER / DRAWN_TRACK
    before, after = play(host_program, track, []), play(host_program, track, EFFECTS)
    assert (before.rate_hz, after.rate_hz) == (44100, RATE_HZ)
    assert len(after.samples) == converted(len(before.samples), before.rate_hz)
    powers = [bands(before), bands(after)]
    check_sum(*powers)
    draw(*powers, path)


def album_tracks():
    tracks = sorted(MUSIC_FOLDER.glob("*.ogg"))
    if not tracks:
        sys.exit(f"There are no tracks in {MUSIC_FOLDER}: they come with the package extremetuxracer-data.")
    return tracks


def process_album(host_program, output):
    tracks = album_tracks()
    sounds = [vorbis.read_sound(track) for track in tracks]
    print("Tracks:", *(f"    {track} ({sound.rate_hz} Hz)" for track, sound in zip(tracks, sounds, strict=True)),
          "Effects:", *(f"    {effect}" for effect in EFFECTS), sep="\n", flush=True)
    summary = process(host_program, tracks, output, EFFECTS)
    print(summary, end="")
    check_length(sounds, summary)
    assert ", 0 samples over full scale\n" in summary


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("host_program", type=Path)
    parser.add_argument("album", type=Path, help="the audio file to make")
    parser.add_argument("picture", type=Path)
    arguments = parser.parse_args()
    arguments.album.parent.mkdir(parents=True, exist_ok=True)
    try:
        process_album(arguments.host_program, arguments.album)
        draw_track(arguments.host_program, arguments.picture)
    except subprocess.CalledProcessError as error:
        sys.exit(error.returncode)  # the program has told why
    except KeyboardInterrupt:
        sys.exit(130)


if __name__ == "__main__":
    main()
