"""What a terminal shows of the work."""

import re

import pytest
from audio import noise, write, write_silence
from terminal import Terminal, visible_lines

WORK = ["process", "in.wav", "-o", "out.wav", "-e", "Reverse stereo channels", "--block", "64"]
DRAWING = re.compile(r"\r\[(#*) *\] +(\d+) %  (\d+) s")


def test_a_terminal_shows_the_progress_while_there_is_some(host):
    write_silence(host.folder / "in.wav", size_bytes=2 ** 26)
    terminal = Terminal(host, *WORK)
    assert terminal.finish() == 0
    drawn = [(len(bar), int(percent), int(seconds)) for bar, percent, seconds in DRAWING.findall(terminal.shown)]
    assert len(drawn) > 1
    assert drawn == sorted(drawn)
    for bar, percent, seconds in drawn:
        assert percent == pytest.approx(seconds / (2 ** 26 / 176400) * 100, abs=1.0)
        assert bar == pytest.approx(percent / 100 * 40, abs=1.0)
    assert visible_lines(terminal.shown) == []
    # What wipes the bar would leave a line of its own where the terminal is no wider than the bar.
    parts = terminal.shown.split("\r")
    assert max(map(len, parts)) == max(len(part) for part in parts if part.startswith("["))


def test_without_a_terminal_there_is_no_progress(host):
    write_silence(host.folder / "in.wav", size_bytes=2 ** 24)
    answer = host.run(*WORK)
    assert (answer.exit_code, answer.errors) == (0, "")


def test_an_error_stands_alone_on_the_terminal(host):
    write_silence(host.folder / "in.wav", size_bytes=2 ** 20)
    write(host.folder / "mono.wav", noise(10, 1))
    terminal = Terminal(host, *WORK, "mono.wav")
    assert terminal.finish() == 1
    assert len(visible_lines(terminal.shown)) == 1
    assert visible_lines(terminal.shown)[0].startswith("kelvane-host: the output changes from")
