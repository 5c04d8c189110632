#!/usr/bin/env python3
"""Draws spectrograms of the sweeps that kelvane-quality leaves: a row for each converter."""

import argparse
from pathlib import Path

import matplotlib

matplotlib.use("Agg")

import matplotlib.pyplot as plt  # noqa: E402 - the choice above must come first
import numpy as np  # noqa: E402

from small_picture import save_small  # noqa: E402

WINDOW_FRAMES = 2048
WINDOW_KAISER_BETA = 28.0  # its sidelobes lie below the floors of the pictures
COLUMNS = 800

# Name of the picture, its converters from above, its darkest level in dB of full scale.
SINC_LEVELS = ("Lowest", "Lower", "Normal", "Higher", "Highest")
PICTURES = (
    ("sinc_sweeps.png", [f"kelvane sinc {level}" for level in SINC_LEVELS], -160),
    ("fft_sweeps.png", ["kelvane FFT", "libsoxr VHQ steep"], -200),
)

# Name of the file, rate of the output, what went in.
DIRECTIONS = (
    ("up", 96000, "44100 to 96000 Hz, sweep from 0 to 22.05 kHz"),
    ("down", 44100, "96000 to 44100 Hz, sweep from 0 to 48 kHz"),
)


def spectrogram_db(samples):
    """Levels in decibels of full scale: a row for each frequency, from 0 to half the rate, a column for each moment."""
    window = np.kaiser(WINDOW_FRAMES, WINDOW_KAISER_BETA)
    starts = np.linspace(0, len(samples) - WINDOW_FRAMES, COLUMNS).astype(int)
    pieces = np.stack([samples[start : start + WINDOW_FRAMES] * window for start in starts])
    amplitudes = np.abs(np.fft.rfft(pieces)) * 2.0 / window.sum()
    return 20.0 * np.log10(np.maximum(amplitudes, 1e-20)).T


def draw(axes, samples, rate_hz, floor_db):
    seconds = len(samples) / rate_hz
    return axes.imshow(
        spectrogram_db(samples),
        origin="lower",
        aspect="auto",
        extent=(0.0, seconds, 0.0, rate_hz / 2000.0),
        vmin=floor_db,
        vmax=0.0,
        cmap="magma",
    )


def draw_all(folder, converters, floor_db):
    height_inches = 3 * len(converters)
    figure, grid = plt.subplots(
        len(converters), len(DIRECTIONS), figsize=(11, height_inches), constrained_layout=True, squeeze=False
    )
    for row, converter in zip(grid, converters, strict=True):
        for axes, (direction, rate_hz, title) in zip(row, DIRECTIONS, strict=True):
            image = draw(axes, np.fromfile(folder / f"{converter}_{direction}.f64"), rate_hz, floor_db)
            axes.set_ylabel("kHz")
            axes.set_title(f"{converter}: {title}", fontsize=9)
    for axes in grid[-1]:
        axes.set_xlabel("seconds")
    figure.colorbar(image, ax=grid, shrink=min(1.0, 4.5 / height_inches), label="dB of full scale")
    return figure


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=Path, help="with the sweeps")
    parser.add_argument("images", type=Path, help="folder to write to")
    arguments = parser.parse_args()
    for name, converters, floor_db in PICTURES:
        save_small(draw_all(arguments.folder, converters, floor_db), arguments.images / name)


if __name__ == "__main__":
    main()
