#!/usr/bin/env python3
"""Takes speech with pauses through "Skip Silence" and draws it before and after, with the cuts marked."""

import argparse
import subprocess
import tempfile
import wave
from pathlib import Path

import matplotlib

matplotlib.use("Agg")

import matplotlib.pyplot as plt  # noqa: E402 - the choice above must come first
import numpy as np  # noqa: E402

import wav_file  # noqa: E402

SPEECH_FOLDER = Path("/usr/share/sounds/alsa")
SPEECH = ["Front_Left", "Front_Right", "Rear_Left", "Rear_Right"]
PAUSES_S = [0.3, 2.0, 4.0, 3.0]  # behind each of them
PAUSE_LEVEL = 3  # of 32768: the room, at -81 dB
SETTINGS = "min_ms=500,threshold_db=-50,keep_initial=yes"
RATE_HZ = 48000
SEGMENT_FRAMES = RATE_HZ // 10


def read_speech(name):
    with wave.open(str(SPEECH_FOLDER / f"{name}.wav")) as stream:
        assert (stream.getnchannels(), stream.getframerate(), stream.getsampwidth()) == (1, RATE_HZ, 2), name
        return np.frombuffer(stream.readframes(stream.getnframes()), "<i2")


def speech_with_pauses():
    """Samples of 16 bits."""
    random = np.random.default_rng(1)
    parts = []
    for name, pause_s in zip(SPEECH, PAUSES_S, strict=True):
        room = random.integers(-PAUSE_LEVEL, PAUSE_LEVEL + 1, round(pause_s * RATE_HZ))
        parts += [read_speech(name), room.astype("<i2")]
    return np.concatenate(parts)


def write_wav(path, samples):
    with wave.open(str(path), "wb") as stream:
        stream.setparams((1, 2, RATE_HZ, len(samples), "NONE", ""))
        stream.writeframes(samples.tobytes())


def skip_silence(host_program, samples):
    """What the program makes of the samples, full scale being 1."""
    with tempfile.TemporaryDirectory() as folder:
        before = Path(folder) / "before.wav"
        after = Path(folder) / "after.wav"
        write_wav(before, samples)
        subprocess.run([host_program, "process", before, "-o", after, "--bits", "f64", "-e",
                        f"Skip Silence:{SETTINGS}"], check=True, stdout=subprocess.DEVNULL)
        return wav_file.read(after).samples[:, 0]


def is_from(segment, origin):
    """Whether the segment is the origin, as it is or faded."""
    if len(segment) != len(origin):
        return False
    half_angles = np.pi * np.arange(len(origin)) / RATE_HZ / 2.0
    candidates = (origin, origin * np.cos(half_angles) ** 2, origin * np.sin(half_angles) ** 2)
    return any(np.allclose(segment, candidate, rtol=0.0, atol=1e-12) for candidate in candidates)


def find_cuts(before, after):
    """The stretches of the input that are missing, as pairs of frames; answers what the output itself shows."""
    cuts = []
    place = 0
    for first in range(0, len(after), SEGMENT_FRAMES):
        segment = after[first:first + SEGMENT_FRAMES]
        found = place
        while not is_from(segment, before[found:found + SEGMENT_FRAMES]):
            found += SEGMENT_FRAMES
            assert found < len(before), f"nothing in the input is what the output has from frame {first} on"
        if found > place:
            cuts.append((place, found))
        place = found + SEGMENT_FRAMES
    if place < len(before):
        cuts.append((place, len(before)))
    return cuts


def draw(before, after, cuts, path):
    figure, (above, below) = plt.subplots(2, 1, figsize=(10, 4.5), sharex=True, sharey=True, layout="constrained")
    above.plot(np.arange(len(before)) / RATE_HZ, before, linewidth=0.4, color="black")
    above.set_title("before: shaded is what is cut")
    below.plot(np.arange(len(after)) / RATE_HZ, after, linewidth=0.4, color="black")
    below.set_title("after: a line for each cut")
    gone = 0
    for first, end in cuts:
        above.axvspan(first / RATE_HZ, end / RATE_HZ, color="tab:red", alpha=0.3, linewidth=0)
        below.axvline((first - gone) / RATE_HZ, color="tab:red", linewidth=1)
        gone += end - first
    below.set_xlabel("seconds")
    below.set_xlim(0, len(before) / RATE_HZ)
    figure.savefig(path, dpi=100, metadata={"Software": None})


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("host_program", type=Path)
    parser.add_argument("picture", type=Path)
    arguments = parser.parse_args()
    samples = speech_with_pauses()
    before = samples / 32768.0
    after = skip_silence(arguments.host_program, samples)
    cuts = find_cuts(before, after)
    for first, end in cuts:
        print(f"cut: {first / RATE_HZ:.1f} s to {end / RATE_HZ:.1f} s")
    print(f"{len(before) / RATE_HZ:.3f} s became {len(after) / RATE_HZ:.3f} s")
    draw(before, after, cuts, arguments.picture)


if __name__ == "__main__":
    main()
