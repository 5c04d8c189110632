"""Runs kelvane-host and tells what it did. The Windows program runs under Wine."""

import os
import subprocess
import tempfile
from dataclasses import dataclass
from pathlib import Path

BIN = Path(os.environ["KELVANE_BIN"])
IS_WINDOWS = (BIN / "kelvane-host.exe").exists()
PROGRAM = BIN / ("kelvane-host.exe" if IS_WINDOWS else "kelvane-host")
MODULE = BIN / ("kelvane.dll" if IS_WINDOWS else "kelvane.so")
MODULE_LIBRARY = BIN / ("quillet.dll" if IS_WINDOWS else "libquillet.so")

LONGEST_RUN_S = 120


@dataclass(frozen=True)
class Answer:
    """What one run of the program came to."""

    exit_code: int
    output: str
    errors: str


def command(program, arguments):
    runner = ["wine"] if program.suffix == ".exe" else []
    return [*runner, str(program), *map(str, arguments)]


def environment():
    # Wine tells file names from bytes by the locale.
    return os.environ | {"LC_ALL": "C.UTF-8"}


def text_in(stream):
    stream.seek(0)
    return stream.read().decode().replace("\r\n", "\n")


def content_of(path):
    """The target of a link, the bytes of a file, nothing for a folder."""
    if path.is_symlink():
        return os.readlink(path)
    return path.read_bytes() if path.is_file() else None


def contents_of(folder):
    return {str(path.relative_to(folder)): content_of(path) for path in folder.rglob("*")}


class Host:
    """The program at work in a folder."""

    def __init__(self, folder, program=PROGRAM):
        self.folder = folder
        self.program = Path(program)

    def run(self, *arguments, **options):
        """`options` are those of subprocess.run."""
        # Into files: Wine's own processes, which stay for seconds, would keep pipes open.
        with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as errors:
            settings = {"stdin": subprocess.DEVNULL, "stdout": output, "stderr": errors} | options
            done = subprocess.run(command(self.program, arguments), cwd=self.folder, env=environment(),
                                  timeout=LONGEST_RUN_S, check=False, **settings)
            return Answer(done.returncode, text_in(output), text_in(errors))

    def output_of(self, *arguments):
        """Of a run that has to succeed without a word on standard error."""
        answer = self.run(*arguments)
        assert (answer.exit_code, answer.errors) == (0, "")
        return answer.output

    def process(self, *arguments, output="out.wav"):
        """Processes the arguments' files; answers the output's path."""
        self.output_of("process", *arguments, "-o", output)
        return self.folder / output

    def assert_fails(self, *arguments, reason, **options):
        """The program does nothing, says why in one line and answers 1."""
        before = contents_of(self.folder)
        answer = self.run(*arguments, **options)
        lines = answer.errors.splitlines()
        assert answer.exit_code == 1, answer
        assert len(lines) == 1, answer
        assert lines[0].startswith("kelvane-host: "), answer
        assert reason in lines[0]
        assert not answer.output
        assert contents_of(self.folder) == before

    def assert_misused(self, *arguments, reason):
        """The program does nothing, says what is wrong with the command line and answers 2."""
        before = contents_of(self.folder)
        answer = self.run(*arguments)
        assert answer.exit_code == 2, answer
        assert len(answer.errors.splitlines()) == 1, answer
        assert answer.errors.startswith("kelvane-host: "), answer
        assert reason in answer.errors
        assert "--help" in answer.errors
        assert not answer.output
        assert contents_of(self.folder) == before
