#!/usr/bin/env python3
"""Lists the Ogg Vorbis stereo files among the given ones that have the given sample rate."""

import argparse
import struct
from pathlib import Path

# The first page of an Ogg stream: 26 bytes, the count of its segments, and one length byte each.
PAGE_HEADER_BYTES = 27
# The Vorbis identification header's start: packet type 1, "vorbis", version 0, channels, rate in Hz.
IDENTIFICATION = struct.Struct("<B6sIBI")


def format_of(path):
    """Channels and rate in Hz, or nothing for a file that is not Vorbis."""
    with open(path, "rb") as stream:
        page = stream.read(PAGE_HEADER_BYTES)
        if not page.startswith(b"OggS"):
            return None
        stream.read(page[-1])
        header = stream.read(IDENTIFICATION.size)
    if len(header) < IDENTIFICATION.size:
        return None
    packet_type, name, version, channels, rate_hz = IDENTIFICATION.unpack(header)
    return (channels, rate_hz) if (packet_type, name, version) == (1, b"vorbis", 0) else None


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--rate", type=int, required=True, metavar="HZ")
    parser.add_argument("files", nargs="*", type=Path)
    arguments = parser.parse_args()
    for path in arguments.files:
        if path.is_file() and format_of(path) == (2, arguments.rate):
            print(path)


if __name__ == "__main__":
    main()
