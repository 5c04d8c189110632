"""Saves pictures that a document can carry."""

import io

from PIL import Image


def save_small(figure, picture):
    """With a palette: a third of the size, and little difference to the eye."""
    drawn = io.BytesIO()
    figure.savefig(drawn, dpi=72)
    Image.open(drawn).convert("RGB").quantize(256, Image.Quantize.MAXCOVERAGE).save(picture, optimize=True)
