"""What is read of Vorbis files. An encoder makes the files."""

import subprocess

import pytest

import vorbis


def encode(path, rate_hz, channels, frames, codec):
    source = f"aevalsrc=0.1*sin(t*2000):sample_rate={rate_hz}"
    options = ["-ac", str(channels), "-af", f"atrim=end_sample={frames}", "-c:a", codec]
    subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", source, *options, str(path)], check=True)
    return path


@pytest.mark.parametrize("rate_hz, channels, frames", [(44100, 2, 44101), (48000, 2, 4800), (22050, 1, 100000)])
def test_reads_channels_rate_and_length(tmp_path, rate_hz, channels, frames):
    path = encode(tmp_path / "a.ogg", rate_hz, channels, frames, "libvorbis")
    assert vorbis.read_sound(path) == vorbis.Sound(channels, rate_hz, frames)


def test_other_contents_of_the_container_are_not_vorbis(tmp_path):
    with pytest.raises(ValueError, match="a.ogg is not Vorbis"):
        vorbis.read_sound(encode(tmp_path / "a.ogg", 48000, 2, 4800, "libopus"))


@pytest.mark.parametrize("content", [b"", b"OggS", b"OggS" + bytes(23), b"RIFF" + bytes(100)])
def test_other_files_are_not_vorbis(tmp_path, content):
    path = tmp_path / "a.ogg"
    path.write_bytes(content)
    with pytest.raises(ValueError, match="a.ogg is not"):
        vorbis.read_sound(path)
