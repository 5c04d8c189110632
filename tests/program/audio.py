"""Test signals, and audio files made and read by ffmpeg, which has no code in common with the program."""

import json
import os
import struct
import subprocess
from dataclasses import dataclass

import numpy as np

RATE_HZ = 44100
COMMON_LAYOUTS = {1: "mono", 2: "stereo", 4: "quad", 6: "5.1", 8: "7.1"}


@dataclass(frozen=True)
class Sound:
    """A file's content. `samples` are frames x channels."""

    rate_hz: int
    layout: str
    coding: str
    samples: np.ndarray


def call(*arguments, given=b""):
    return subprocess.run([*map(str, arguments)], input=given, stdout=subprocess.PIPE, check=True).stdout


def noise(frames, channels, seed=1):
    """Uniform in -1 to 1, the same for the same seed."""
    return np.random.default_rng(seed).uniform(-1.0, 1.0, (frames, channels))


def rounded_to(bits, samples):
    """The nearest values that whole numbers of so many bits stand for, ties to even, clipped at full scale."""
    full_scale = 2.0 ** (bits - 1)
    return np.clip(np.rint(np.asarray(samples) * full_scale), -full_scale, full_scale - 1.0) / full_scale


def tones(frequencies_hz, seconds, rate_hz=RATE_HZ, level=0.25):
    """One sine a channel."""
    times_s = np.arange(int(seconds * rate_hz)) / rate_hz
    return level * np.sin(2.0 * np.pi * np.outer(times_s, frequencies_hz))


def loudest_frequency_hz(samples, rate_hz):
    """Of one channel, to the nearest bin of its spectrum."""
    spectrum = np.abs(np.fft.rfft(samples * np.hanning(len(samples))))
    return np.argmax(spectrum) * rate_hz / len(samples)


def write(path, samples, rate_hz=RATE_HZ, layout=None, coding="pcm_f64le"):
    """Answers the path. The file's extension picks the container."""
    samples = np.asarray(samples, dtype="<f8")
    channels = samples.shape[1]
    raw = ["-f", "f64le", "-ar", rate_hz, "-ac", channels, "-channel_layout", layout or COMMON_LAYOUTS[channels]]
    call("ffmpeg", "-v", "error", "-y", *raw, "-i", "-", "-c:a", coding, "-bitexact", path, given=samples.tobytes())
    return path


def write_silence(path, size_bytes):
    """A WAV of 16-bit stereo that takes no room on the disk."""
    layout = struct.pack("<HHIIHH", 1, 2, 44100, 176400, 4, 16)
    header = struct.pack("<4sI4s4sI16s4sI", b"RIFF", 36 + size_bytes, b"WAVE", b"fmt ", 16, layout, b"data", size_bytes)
    path.write_bytes(header)
    os.truncate(path, len(header) + size_bytes)


def decode(path, *options):
    return np.frombuffer(call("ffmpeg", "-v", "error", "-i", path, *options, "-f", "f64le", "-c:a", "pcm_f64le", "-"))


def read(path):
    fields = "stream=sample_rate,channels,channel_layout,codec_name"
    probed = call("ffprobe", "-v", "error", "-of", "json", "-show_entries", fields, path)
    stream, = json.loads(probed)["streams"]
    samples = decode(path).reshape(-1, stream["channels"])
    return Sound(int(stream["sample_rate"]), stream.get("channel_layout", ""), stream["codec_name"], samples)


def speakers(path, names):
    """The samples of some speakers, frames x names. ffmpeg's names: FL, FR, FC, LFE, BL, BR, SL and SR."""
    chosen = "|".join(f"c{place}={name}" for place, name in enumerate(names))
    return decode(path, "-af", f"pan={len(names)}c|{chosen}").reshape(-1, len(names))
