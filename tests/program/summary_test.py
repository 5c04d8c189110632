"""What `process` tells at its end, for signals of known length and level."""

import re

import numpy as np
import pytest
from audio import noise, write


def summary(host, *arguments, output="out.wav"):
    """Label -> text."""
    lines = host.output_of("process", *arguments, "-o", output).splitlines()
    return dict(re.split(r" {2,}", line, maxsplit=1) for line in lines)


def test_tells_of_the_output_and_its_length(host):
    write(host.folder / "1.wav", noise(24000, 2), rate_hz=48000)
    write(host.folder / "2.wav", noise(12001, 2), rate_hz=48000)
    told = summary(host, "1.wav", "2.wav", "-e", "Convert stereo to 4 channels")
    assert list(told) == ["Output", "Duration", "Peak", "Latency", "Speed"]
    assert told["Output"] == "out.wav (48000 Hz, quad)"
    assert told["Duration"] == "0.750 s in (36001 frames), 0.750 s out (36001 frames)"
    assert told["Latency"] == "0.0 ms at most"
    assert re.fullmatch(r"\d+ x real time", told["Speed"])


@pytest.mark.parametrize("layout, channels, name", [
    ("mono", 1, "mono"),
    ("stereo", 2, "stereo"),
    ("2.1", 3, "2.1"),
    ("3.0", 3, "3.0"),
    ("BL+BR", 2, "rear pair"),
    ("quad", 4, "quad"),
    ("5.0", 5, "5.0"),
    ("5.1", 6, "5.1"),
    ("5.1(side)", 6, "5.1 (side)"),
    ("6.1", 7, "6.1"),
    ("7.1", 8, "7.1"),
    ("FL", 1, "1 channel (mask 0x1)"),
    ("octagonal", 8, "8 channels (mask 0x737)"),
])
def test_names_the_layout(host, layout, channels, name):
    write(host.folder / "in.wav", noise(10, channels), layout=layout)
    assert summary(host, "in.wav")["Output"] == f"out.wav (44100 Hz, {name})"


@pytest.mark.parametrize("samples, peak", [
    ([0.0, 0.0], "-inf dBFS, 0 samples over full scale"),
    ([0.5, -0.25], "-6.02 dBFS, 0 samples over full scale"),
    ([0.1, -0.1], "-20.00 dBFS, 0 samples over full scale"),
    ([1.0, -1.0], "0.00 dBFS, 0 samples over full scale"),
    ([1.0 + 2.0 ** -52, 0.0], "0.00 dBFS, 1 samples over full scale"),
    ([1.5, -2.0], "6.02 dBFS, 2 samples over full scale"),
    ([np.nan, 0.5], "-6.02 dBFS, 1 samples over full scale"),
])
def test_measures_the_peak_before_the_encoding(host, samples, peak):
    write(host.folder / "in.wav", np.array([samples]))
    assert summary(host, "in.wav", "--bits", "16")["Peak"] == peak
