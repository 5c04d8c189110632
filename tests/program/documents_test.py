"""The command lines of the documents work, and show every effect."""

import os
import shlex
from pathlib import Path

import pytest
from audio import read, tones, write
from effects import EFFECTS

DOCUMENTS = sorted((Path(os.environ["KELVANE_SOURCE"]) / "docs").glob("*.md"))
START = "    kelvane-host process "
LINES = [line for document in DOCUMENTS for line in document.read_text().splitlines() if line.startswith(START)]


def test_every_effect_is_shown():
    assert [effect.name for effect in EFFECTS if not any(f'-e "{effect.name}' in line for line in LINES)] == []


@pytest.mark.parametrize("line", LINES, ids=str.strip)
def test_a_shown_command_line_works(host, line):
    write(host.folder / "in.wav", tones([997.0, 440.0], seconds=0.2))
    arguments = shlex.split(line)[1:]
    assert arguments[arguments.index("-o") + 1] == "out.wav"
    assert host.run(*arguments).exit_code == 0  # an excluded rate is told of
    assert len(read(host.folder / "out.wav").samples) > 0
