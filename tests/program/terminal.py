"""The program on a terminal, and what a person would see there."""

import fcntl
import os
import pty
import subprocess
import termios

from program import LONGEST_RUN_S, command


class Terminal:
    """The program's standard error, with the program as the foreground job."""

    def __init__(self, host, *arguments):
        self.screen, terminal = pty.openpty()
        self.work = subprocess.Popen(command(host.program, arguments), cwd=host.folder, stdin=terminal,
                                     stdout=subprocess.DEVNULL, stderr=terminal, start_new_session=True,
                                     preexec_fn=lambda: fcntl.ioctl(0, termios.TIOCSCTTY, 0))
        os.close(terminal)
        self.shown = ""

    def read(self):
        """Some more of what is shown; false at the end."""
        try:
            self.shown += os.read(self.screen, 4096).decode()
        except OSError:  # how Linux tells that the program has gone
            return False
        return True

    def press(self, key):
        os.write(self.screen, key)

    def finish(self):
        while self.read():
            pass
        os.close(self.screen)
        return self.work.wait(LONGEST_RUN_S)


def visible_lines(shown):
    """What stays on the screen."""
    lines = []
    for line in shown.split("\r\n"):
        columns = []
        for part in line.split("\r"):
            columns[:len(part)] = part
        lines.append("".join(columns).rstrip())
    return [line for line in lines if line]
