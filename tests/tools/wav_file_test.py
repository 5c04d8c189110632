"""What is read of WAV files. They are put together by hand."""

import struct

import numpy as np
import pytest

import wav_file

RATE_HZ = 48000


def chunk(name, content):
    return name + struct.pack("<I", len(content)) + content + bytes(len(content) % 2)


def format_chunk(channels, extension=b""):
    frame_bytes = 8 * channels
    fields = struct.pack("<HHIIHH", 3, channels, RATE_HZ, RATE_HZ * frame_bytes, frame_bytes, 64)
    return chunk(b"fmt ", fields + extension)


def write(path, *chunks):
    content = b"".join(chunks)
    path.write_bytes(b"RIFF" + struct.pack("<I", 4 + len(content)) + b"WAVE" + content)
    return path


@pytest.mark.parametrize("before, behind", [
    ([], []),
    ([chunk(b"note", b"data in a text of odd length!")], []),  # which is none
    ([], [chunk(b"LIST", b"what others put behind")]),
])
@pytest.mark.parametrize("channels", [1, 2, 6])
def test_reads_rate_and_samples_wherever_they_stand(tmp_path, channels, before, behind):
    samples = np.arange(4.0 * channels).reshape(4, channels) / 100.0
    start = [format_chunk(channels, extension=bytes(24)), *before]
    path = write(tmp_path / "a.wav", *start, chunk(b"data", samples.tobytes()), *behind)
    wav = wav_file.read(path)
    assert wav.rate_hz == RATE_HZ
    np.testing.assert_array_equal(wav.samples, samples)
    assert wav.header == path.read_bytes()[:12 + len(b"".join(start)) + 8]


@pytest.mark.parametrize("chunks", [[], [format_chunk(2)], [chunk(b"data", bytes(16))]])
def test_a_file_without_format_or_samples_is_refused(tmp_path, chunks):
    with pytest.raises(KeyError):
        wav_file.read(write(tmp_path / "a.wav", *chunks))
