#!/usr/bin/env python3
"""Draws spectrograms of the sweeps that kelvane-sinc-quality leaves: one picture, a row for each level."""

import argparse
import io
from pathlib import Path

import matplotlib.pyplot as plt
import numpy as np
from PIL import Image

LEVELS = ("Lowest", "Lower", "Normal", "Higher", "Highest")
WINDOW_FRAMES = 2048
WINDOW_KAISER_BETA = 20.0  # its sidelobes lie below the floor of the picture
COLUMNS = 800
FLOOR_DB = -160.0

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


def draw(axes, samples, rate_hz):
    seconds = len(samples) / rate_hz
    return axes.imshow(
        spectrogram_db(samples),
        origin="lower",
        aspect="auto",
        extent=(0.0, seconds, 0.0, rate_hz / 2000.0),
        vmin=FLOOR_DB,
        vmax=0.0,
        cmap="magma",
    )


def draw_all(folder):
    figure, grid = plt.subplots(len(LEVELS), len(DIRECTIONS), figsize=(11, 15), constrained_layout=True)
    for row, level in zip(grid, LEVELS):
        for axes, (direction, rate_hz, title) in zip(row, DIRECTIONS):
            image = draw(axes, np.fromfile(folder / f"{level}_{direction}.f64"), rate_hz)
            axes.set_ylabel("kHz")
            axes.set_title(f"{level}: {title}", fontsize=9)
    for axes in grid[-1]:
        axes.set_xlabel("seconds")
    figure.colorbar(image, ax=grid, shrink=0.3, label="dB of full scale")
    return figure


def save_small(figure, picture):
    """With a palette: a third of the size, and no difference to the eye."""
    drawn = io.BytesIO()
    figure.savefig(drawn, dpi=72)
    Image.open(drawn).convert("RGB").quantize(256, Image.Quantize.MAXCOVERAGE).save(picture, optimize=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", type=Path, help="with the sweeps")
    parser.add_argument("picture", type=Path, help="PNG file to write")
    arguments = parser.parse_args()
    save_small(draw_all(arguments.folder), arguments.picture)


if __name__ == "__main__":
    main()
