"""What an Ogg Vorbis file tells of its sound."""

import struct
from dataclasses import dataclass

# An Ogg page: "OggS", version, kind, position in frames behind the page's last packet, 12 bytes more, the count of its
# segments, one length byte each.
PAGE_HEADER = struct.Struct("<4sBBq12sB")
# The Vorbis identification header's start: packet type 1, "vorbis", version 0, channels, rate in Hz.
IDENTIFICATION = struct.Struct("<B6sIBI")


@dataclass(frozen=True)
class Sound:
    channels: int
    rate_hz: int
    frames: int


def read_sound(path):
    """Raises ValueError for a file that is not Vorbis."""
    content = path.read_bytes()
    try:
        *_, segments = PAGE_HEADER.unpack_from(content)
        identification = IDENTIFICATION.unpack_from(content, PAGE_HEADER.size + segments)
        *_, frames, _, _ = PAGE_HEADER.unpack_from(content, content.rindex(b"OggS"))
    except (struct.error, ValueError):
        raise ValueError(f"{path} is not an Ogg file") from None
    packet_type, name, version, channels, rate_hz = identification
    if (packet_type, name, version) != (1, b"vorbis", 0):
        raise ValueError(f"{path} is not Vorbis")
    return Sound(channels, rate_hz, frames)
