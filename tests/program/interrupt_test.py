"""Ctrl-C, a request to terminate and the end of the terminal while the program works."""

import signal
import subprocess
import time

import pytest
from audio import write_silence
from program import LONGEST_RUN_S, command
from terminal import Terminal, visible_lines

WORK = ["process", "in.wav", "-o", "out.wav", "-e", "Reverse stereo channels", "--block", "64"]
INTERRUPTED = "kelvane-host: interrupted; nothing was written"


@pytest.fixture
def folder(host):
    """With more work than any machine does while a test waits."""
    write_silence(host.folder / "in.wav", size_bytes=2 ** 31)
    return host.folder


def wait_until(condition):
    deadline = time.monotonic() + LONGEST_RUN_S
    while not condition():
        assert time.monotonic() < deadline, "in vain"
        time.sleep(0.01)


def is_writing(folder):
    return any(path.stat().st_size > 0 for path in folder.glob(".kelvane-*.part"))


def names_in(folder):
    return sorted(path.name for path in folder.iterdir())


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGTERM, signal.SIGHUP])
@pytest.mark.parametrize("earlier", [None, b"of an earlier run"])
def test_a_signal_ends_the_work_and_leaves_nothing(host, folder, number, earlier):
    if earlier is not None:
        (folder / "out.wav").write_bytes(earlier)
    before = names_in(folder)
    pipes = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE}
    with subprocess.Popen(command(host.program, WORK), cwd=folder, **pipes) as work:
        wait_until(lambda: is_writing(folder))
        work.send_signal(number)
        output, errors = work.communicate(timeout=LONGEST_RUN_S)
    assert (work.returncode, output, errors.decode()) == (130, b"", INTERRUPTED + "\n")
    assert names_in(folder) == before
    if earlier is not None:
        assert (folder / "out.wav").read_bytes() == earlier


def test_a_signal_that_the_program_was_started_to_ignore_stays_ignored(host, folder):
    with subprocess.Popen(command(host.program, WORK), cwd=folder, stderr=subprocess.PIPE,
                          preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN)) as work:
        wait_until(lambda: is_writing(folder))
        work.send_signal(signal.SIGHUP)
        with pytest.raises(subprocess.TimeoutExpired):
            work.wait(0.2)
        work.terminate()
        assert work.communicate(timeout=LONGEST_RUN_S)[1].decode() == INTERRUPTED + "\n"
    assert work.returncode == 130


def test_control_c_ends_the_work(host, folder):
    terminal = Terminal(host, *WORK)
    while not is_writing(folder):
        assert terminal.read()
    terminal.press(b"\x03")
    assert terminal.finish() == 130
    assert visible_lines(terminal.shown.replace("^C", "")) == [INTERRUPTED]
    assert names_in(folder) == ["in.wav"]
