"""What the program writes as a WAV file with samples of 64 bits."""

import struct
from dataclasses import dataclass

import numpy as np

RIFF_HEADER_BYTES = 12
CHUNK_HEADER = struct.Struct("<4sI")  # its name, and the bytes behind this header
FORMAT = struct.Struct("<HHI")  # kind, channels, rate in Hz


@dataclass(frozen=True)
class Wav:
    """`header` is all that stands before the samples, which are frames x channels."""

    header: bytes
    rate_hz: int
    samples: np.ndarray


def read(path):
    """Raises KeyError for a file without a format or without samples."""
    content = path.read_bytes()
    chunks = dict(chunks_of(content))
    _, channels, rate_hz = FORMAT.unpack_from(content, chunks[b"fmt "].start)
    place = chunks[b"data"]
    return Wav(content[:place.start], rate_hz, np.frombuffer(content[place], "<f8").reshape(-1, channels))


def chunks_of(content):
    """The name of each chunk, and where in the file its content stands."""
    position = RIFF_HEADER_BYTES
    while position + CHUNK_HEADER.size <= len(content):
        name, size_bytes = CHUNK_HEADER.unpack_from(content, position)
        start = position + CHUNK_HEADER.size
        yield name, slice(start, start + size_bytes)
        position = start + size_bytes + size_bytes % 2  # a chunk begins at an even place
