"""Signals and keys that act on a terminal, while a secret is typed on it and afterwards."""

import os
import signal

import pytest

from terminal import LOCAL_MODES, SHOWN_LINE, Terminal

pytestmark = pytest.mark.platforms("native", "sanitize")

SET_INITIATOR = ["-iscsi", "-setinitiator", "iqn.2015-01.com.example:host", "-mutualchap"]

# Those that cannot be caught, those whose default action does not end a process, and those that the program ignores.
NOT_ENDING = {
    signal.SIGKILL, signal.SIGSTOP,
    signal.SIGCHLD, signal.SIGCONT, signal.SIGTSTP, signal.SIGTTIN, signal.SIGTTOU, signal.SIGURG, signal.SIGWINCH,
    signal.SIGPIPE, signal.SIGXFSZ,
}
ENDING = sorted(signal.valid_signals() - NOT_ENDING)
# The sanitizer ends a program itself for these, and says so.
REPORTED_BY_SANITIZER = {signal.SIGSEGV, signal.SIGBUS, signal.SIGFPE}


class SecretQuestion(Terminal):
    """The program at the first of two secrets, after one key."""

    def __init__(self, sandbox, start=(), **options):
        """`start` is a command that starts the program, whose command line is put behind it."""
        command = sandbox.command
        sandbox.command = lambda arguments: [*start, *command(arguments)]
        super().__init__(sandbox, SET_INITIATOR, **options)
        self.wait_for_prompt("#28692 :")
        self.modes_before = self.modes()
        self.type("target user\r")
        self.wait_for_secret_prompt("#28693 :")
        self.type("a")
        self.wait_for("#28693 : *")

    def shows_keys(self):
        return self.modes()[LOCAL_MODES] & SHOWN_LINE != 0

    def program(self):
        """The program's process, wherever it was started: it has the terminal."""
        return os.tcgetpgrp(self.child.child_fd)

    def finish(self, rest="bcdefghijkl"):
        """Types the rest of the first secret, and the second."""
        self.type(rest + "\r")
        self.answer("#28694 :", "initiator user")
        self.answer_secret("#28695 :", "ABCDEFGHIJKL")
        self.wait_for_end()


def secrets(sandbox):
    """The first secret of each login that the library was given."""
    return [call["input"][1][5] for call in sandbox.calls() if call.get("operation") == 31]


@pytest.mark.parametrize("ending", ENDING, ids=str)
def test_the_terminal_is_restored(sandbox, ending):
    with SecretQuestion(sandbox) as terminal:
        os.kill(terminal.program(), ending)
        terminal.wait_for_end()
        if sandbox.platform.name == "sanitize" and ending in REPORTED_BY_SANITIZER:
            assert b"ERROR: AddressSanitizer" in terminal.written
        else:
            assert terminal.child.signalstatus == ending
        assert terminal.modes() == terminal.modes_before
    assert secrets(sandbox) == []


def ignored_signals(process):
    with open(f"/proc/{process}/status", encoding="ascii") as file:
        mask = next(int(line.split()[1], 16) for line in file if line.startswith("SigIgn:"))
    return {number for number in range(1, 65) if mask & 1 << number - 1}


def test_signals_that_were_ignored_stay_ignored(sandbox):
    with SecretQuestion(sandbox, ["sh", "-c", 'trap "" HUP TERM USR1; exec "$@"', "sh"]) as terminal:
        assert {signal.SIGHUP, signal.SIGTERM, signal.SIGUSR1} <= ignored_signals(terminal.program())
        for ignored in (signal.SIGHUP, signal.SIGTERM, signal.SIGUSR1):
            os.kill(terminal.program(), ignored)
        terminal.finish()
        assert terminal.child.exitstatus == 0
        assert terminal.modes() == terminal.modes_before
    assert secrets(sandbox) == ["abcdefghijkl"]


# A shell with job control gives the program a process group that can be stopped, and tells of it.
JOB_CONTROL = ["sh", "-mc", '"$@"; echo "status $?"', "sh"]


def test_the_program_is_not_suspended_at_a_secret(sandbox):
    with SecretQuestion(sandbox, JOB_CONTROL) as terminal:
        os.kill(terminal.program(), signal.SIGTSTP)
        terminal.finish()
        assert "status 0" in terminal.lines()
    assert secrets(sandbox) == ["abcdefghijkl"]


def test_the_program_can_be_suspended_after_a_secret(sandbox):
    with SecretQuestion(sandbox, JOB_CONTROL) as terminal:
        terminal.type("bcdefghijkl\r")
        terminal.wait_for_prompt("#28694 :")
        terminal.type("\x1a")  # Ctrl-Z
        terminal.wait_for(f"status {128 + signal.SIGTSTP}")


def test_a_signal_ends_the_program_after_a_secret_as_well(sandbox):
    with SecretQuestion(sandbox) as terminal:
        terminal.type("bcdefghijkl\r")
        terminal.wait_for_prompt("#28694 :")
        assert terminal.modes() == terminal.modes_before
        os.kill(terminal.program(), signal.SIGTERM)
        terminal.wait_for_end()
        assert terminal.child.signalstatus == signal.SIGTERM


HANDLED = signal.SIGUSR1  # by the library, which lets the third one end the program


def question_with_handler(sandbox):
    sandbox.use_library(sandbox.platform.folder / "secret_memory" / "tavro.dll")
    return SecretQuestion(sandbox, env={"TAVRO_HANDLED_SIGNAL": str(HANDLED.value),
                                        "TAVRO_HANDLED_FILE": str(sandbox.folder / "handled")})


def take_two_signals(sandbox, terminal):
    """A key that is typed while the handler runs, and the terminal is as it was, is shown."""
    handled = sandbox.folder / "handled"
    for count in (1, 2):
        os.kill(terminal.program(), HANDLED)
        terminal.wait_until(lambda _: handled.stat().st_size == count and not terminal.shows_keys())
        terminal.type("b")
        terminal.wait_for("#28693 : *" + "*" * count)


def test_a_handler_that_was_there_is_called_and_the_secret_goes_on(sandbox):
    """The library handles the signal, and its handler comes back."""
    with question_with_handler(sandbox) as terminal:
        take_two_signals(sandbox, terminal)
        terminal.finish()
        assert terminal.child.exitstatus == 0
        assert terminal.modes() == terminal.modes_before


def test_a_handler_that_came_back_may_end_the_program_later(sandbox):
    with question_with_handler(sandbox) as terminal:
        take_two_signals(sandbox, terminal)
        os.kill(terminal.program(), HANDLED)
        terminal.wait_for_end()
        assert terminal.child.signalstatus == HANDLED
        assert terminal.modes() == terminal.modes_before


def test_keys_that_act_on_a_terminal_are_part_of_a_secret(sandbox):
    keys = "\x13\x11\x1c\x1a\x16\x0f"  # Ctrl-S, Ctrl-Q, Ctrl-\, Ctrl-Z, Ctrl-V, Ctrl-O
    with SecretQuestion(sandbox) as terminal:
        for count, key in enumerate(keys, start=2):
            terminal.type(key)
            terminal.wait_for("#28693 : " + "*" * count)
        terminal.finish("bcdefghi")
        assert terminal.child.exitstatus == 0
    assert secrets(sandbox) == ["a" + keys + "bcdefghi"]
