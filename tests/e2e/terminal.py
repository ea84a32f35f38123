"""Runs the program on a real terminal: a pseudo-terminal natively, and under Wine a Windows console that Wine
draws on a pseudo-terminal. Either way what a user would see is kept as a screen of characters."""

import signal
import termios
import time
import tty

import pexpect
import pyte

from program import DEFAULT_LOCALE, TIME_LIMIT


def heed_signals():
    """A job that runs without a terminal may ignore these; a program that a user starts on one does not."""
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT):
        signal.signal(number, signal.SIG_DFL)


class Terminal:
    """A program on a screen. To be used as a context, so that the program is gone at the end."""

    def __init__(self, sandbox, arguments=(), locale=DEFAULT_LOCALE, env=None, rows=90, columns=132):
        self.screen = pyte.Screen(columns, rows)
        self.stream = pyte.ByteStream(self.screen)
        self.written = b""  # what arrived, with the sequences that steer a terminal
        self.has_ended = False
        command = sandbox.command(arguments)
        self.child = pexpect.spawn(
            command[0],
            command[1:],
            cwd=str(sandbox.work),
            env=sandbox.environment(locale, {"TERM": "xterm"} | (env or {})),
            dimensions=(rows, columns),
            preexec_fn=heed_signals,
        )
        self.child.delaybeforesend = None
        if sandbox.platform.is_windows:
            # A console takes single keys from the start; Wine arranges that only at the first read.
            tty.setraw(self.child.child_fd)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.child.close(force=True)

    def type(self, text):
        """Presses keys; Enter is "\\r"."""
        self.child.send(text)

    def wait_for(self, text, seconds=TIME_LIMIT):
        """Waits until a text stands on the screen."""
        self._read_until(lambda: any(text in line for line in self.lines()), repr(text), seconds)

    def wait_for_prompt(self, text, seconds=TIME_LIMIT):
        """Waits until the cursor stands on a line of this text, blanks at its ends aside."""
        self._read_until(
            lambda: self.screen.display[self.screen.cursor.y].strip() == text, f"the prompt {text!r}", seconds
        )

    def wait_until(self, is_reached, seconds=TIME_LIMIT):
        """Waits until `is_reached` says so of the screen's lines."""
        self._read_until(lambda: is_reached(self.lines()), "another screen", seconds)

    def wait_for_end(self, seconds=TIME_LIMIT):
        """Waits until the program has ended and returns its exit code."""
        self._read_until(lambda: self.has_ended, "the end of the program", seconds)
        self.child.wait()
        return self.child.exitstatus

    def modes(self):
        """The modes of the pseudo-terminal, native: what tcgetattr tells of it, also after the program's end."""
        return termios.tcgetattr(self.child.child_fd)

    def lines(self):
        """The lines of the screen, without blanks at their ends and empty lines at the bottom."""
        return self.text().split("\n")

    def text(self):
        return "\n".join(line.rstrip() for line in self.screen.display).rstrip("\n")

    def _read_until(self, is_reached, what, seconds):
        end = time.monotonic() + seconds
        while not is_reached():
            if self.has_ended or time.monotonic() > end:
                raise AssertionError(f"waited for {what}, but the screen shows:\n{self.text()}")
            try:
                arrived = self.child.read_nonblocking(65536, timeout=0.1)
                self.written += arrived
                self.stream.feed(arrived)
            except pexpect.TIMEOUT:
                pass
            except pexpect.EOF:
                self.has_ended = True
