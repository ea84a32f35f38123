"""Runs the program on a real terminal: a pseudo-terminal natively, and under Wine a Windows console that Wine
draws on a pseudo-terminal. Either way what a user would see is kept as a screen of characters."""

import errno
import os
import select
import signal
import termios
import time
import tty

import pexpect
import pyte

from program import DEFAULT_LOCALE, TIME_LIMIT, check_that_wine_works

LOCAL_MODES = 3  # position of the local modes in what tcgetattr gives
SHOWN_LINE = termios.ECHO | termios.ICANON


def heed_signals():
    """A job that runs without a terminal may ignore these; a program that a user starts on one does not."""
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT):
        signal.signal(number, signal.SIG_DFL)


def heed_signals_under_wine():
    """The end of the program hangs up on the console, which is a process of its own and may still have to draw."""
    heed_signals()
    signal.signal(signal.SIGHUP, signal.SIG_IGN)


class Terminal:
    """A program on a screen. To be used as a context, so that the program is gone at the end.

    Prompts are awaited from the top of the screen to its bottom, and the screen has to be high enough for all of
    them: once it scrolls, a prompt that is met again cannot be told from the one before."""

    def __init__(self, sandbox, arguments=(), locale=DEFAULT_LOCALE, env=None, rows=200, columns=132):
        self.screen = pyte.Screen(columns, rows)
        self.stream = pyte.ByteStream(self.screen)
        self.written = b""  # what arrived, with the sequences that steer a terminal
        self.has_ended = False
        self.is_console = sandbox.platform.is_windows
        self.prompt_row = -1  # of the last prompt that was awaited
        command = sandbox.command(arguments)
        self.child = pexpect.spawn(
            command[0],
            command[1:],
            cwd=str(sandbox.work),
            env=sandbox.environment(locale, {"TERM": "xterm"} | (env or {})),
            dimensions=(rows, columns),
            preexec_fn=heed_signals_under_wine if self.is_console else heed_signals,
        )
        self.child.delaybeforesend = None
        if self.is_console:
            # A console takes single keys from the start; Wine arranges that only at the first read.
            tty.setraw(self.child.child_fd)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.child.isalive():
            self.child.kill(signal.SIGKILL)
            self.child.wait()
        self.child.close()

    def answer(self, prompt, typed):
        """Waits for the next prompt, and types the answer and Enter."""
        self.wait_for_prompt(prompt)
        self.type(typed + "\r")

    def answer_secret(self, prompt, typed):
        """The same for a prompt after which the keys are not shown."""
        self.wait_for_secret_prompt(prompt)
        self.type(typed + "\r")

    def wait_for_prompt(self, text, seconds=TIME_LIMIT):
        """Waits until the cursor stands on a line of this text (blanks at its ends aside), below the prompt that
        was awaited before, and what is typed is shown. The same text on the screen from an earlier question is
        not taken for the prompt."""
        self._wait_for_next_prompt(text, SHOWN_LINE, seconds)

    def wait_for_secret_prompt(self, text, seconds=TIME_LIMIT):
        """The same for a prompt after which the keys are not shown: the prompt is written first, and a key
        typed before the terminal stops showing them would be shown."""
        self._wait_for_next_prompt(text, 0, seconds)

    def type(self, text):
        """Presses keys; Enter is "\\r". After a prompt was awaited; `wait_for` alone does not tell whether the
        program reads yet."""
        self.child.send(text)

    def wait_for(self, text, seconds=TIME_LIMIT):
        """Waits until a text stands anywhere on the screen."""
        self._read_until(lambda: any(text in line for line in self.lines()), repr(text), seconds)

    def wait_until(self, is_reached, seconds=TIME_LIMIT):
        """Waits until `is_reached` says so of the screen's lines."""
        self._read_until(lambda: is_reached(self.lines()), "another screen", seconds)

    def wait_for_end(self, seconds=TIME_LIMIT):
        """Waits until the program has ended and all that it wrote is on the screen; returns its exit code."""
        end = time.monotonic() + seconds
        self._read_until(lambda: self.has_ended, "the end of the program", seconds)
        while self.child.isalive():
            assert time.monotonic() < end, "the program left its terminal and goes on"
            time.sleep(0.01)
        check_that_wine_works([self.child.command, *self.child.args], self.child.exitstatus, self.written)
        return self.child.exitstatus

    def modes(self):
        """The modes of the pseudo-terminal, native: what tcgetattr tells of it, also after the program's end."""
        return termios.tcgetattr(self.child.child_fd)

    def lines(self):
        """The lines of the screen, without blanks at their ends and empty lines at the bottom."""
        return self.text().split("\n")

    def text(self):
        return "\n".join(self._line(row) for row in range(self.screen.lines)).rstrip("\n")

    def _wait_for_next_prompt(self, text, modes, seconds):
        def is_reached():
            row = self.screen.cursor.y
            if row <= self.prompt_row or self._line(row).strip() != text:
                return False
            assert row < self.screen.lines - 1, f"the screen is not high enough for {text!r}:\n{self.text()}"
            # A console keeps early keys for the read they are meant for, and shows them then or not.
            return self.is_console or self.modes()[LOCAL_MODES] & SHOWN_LINE == modes

        what = f"the prompt {text!r} below row {self.prompt_row}"
        self._read_until(is_reached, what, seconds)
        self.prompt_row = self.screen.cursor.y

    def _line(self, row):
        """A line of the screen without blanks at its end."""
        cells = self.screen.buffer.get(row)  # those that were written
        return "".join(cells[column].data for column in range(max(cells) + 1)).rstrip() if cells else ""

    def _read_until(self, is_reached, what, seconds):
        end = time.monotonic() + seconds
        while not is_reached():
            if self.has_ended or time.monotonic() > end:
                raise AssertionError(f"waited for {what}, but the screen shows:\n{self.text()}")
            self._read()

    def _read(self):
        """Reads what arrives within a moment. The end is told by the terminal, when nobody holds it any more:
        Wine may draw after the program is gone."""
        if not select.select([self.child.child_fd], [], [], 0.05)[0]:
            return
        try:
            arrived = os.read(self.child.child_fd, 65536)
        except OSError as error:
            if error.errno != errno.EIO:
                raise
            arrived = b""
        if arrived:
            self.written += arrived
            self.stream.feed(arrived)
        else:
            self.has_ended = True
