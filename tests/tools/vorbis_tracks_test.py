"""Which files are Vorbis tracks of a rate. An encoder makes the files."""

import subprocess

import pytest

import vorbis_tracks


def encode(path, rate_hz, channels, codec):
    source = f"sine=sample_rate={rate_hz}:duration=0.1"
    options = ["-ac", str(channels), "-c:a", codec]
    subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", source, *options, str(path)], check=True)
    return path


@pytest.mark.parametrize("rate_hz, channels", [(44100, 2), (48000, 2), (22050, 1)])
def test_reads_channels_and_rate_of_vorbis(tmp_path, rate_hz, channels):
    assert vorbis_tracks.format_of(encode(tmp_path / "a.ogg", rate_hz, channels, "libvorbis")) == (channels, rate_hz)


def test_other_contents_of_the_container_are_not_vorbis(tmp_path):
    assert vorbis_tracks.format_of(encode(tmp_path / "a.ogg", 48000, 2, "libopus")) is None


@pytest.mark.parametrize("content", [b"", b"OggS", b"OggS" + bytes(23), b"RIFF" + bytes(100)])
def test_other_files_are_not_vorbis(tmp_path, content):
    path = tmp_path / "a.ogg"
    path.write_bytes(content)
    assert vorbis_tracks.format_of(path) is None


def test_lists_the_stereo_tracks_of_the_rate(tmp_path, capsys, monkeypatch):
    wanted = encode(tmp_path / "wanted.ogg", 44100, 2, "libvorbis")
    others = [encode(tmp_path / "mono.ogg", 44100, 1, "libvorbis"), encode(tmp_path / "a.ogg", 48000, 2, "libvorbis")]
    files = [*map(str, others), str(wanted), str(tmp_path / "absent.ogg")]
    monkeypatch.setattr("sys.argv", ["vorbis_tracks.py", "--rate", "44100", *files])
    vorbis_tracks.main()
    assert capsys.readouterr().out == f"{wanted}\n"
