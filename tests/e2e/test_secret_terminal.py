"""Secrets on a native terminal: how it is while one is typed, and that it is as before when the program is gone."""

import os
import signal

import pytest

from terminal import LOCAL_MODES, SHOWN_LINE, Terminal

pytestmark = pytest.mark.platforms("native", "sanitize")

NAME = "iqn.2015-01.com.example:host"
SET_INITIATOR = ["-iscsi", "-setinitiator", NAME, "-onewaychap"]


def start_of_the_secret(terminal):
    """Answers up to the secret; returns the terminal's modes from before."""
    terminal.wait_for_prompt("#28692 :")
    before = terminal.modes()
    terminal.type("target user\r")
    terminal.wait_for_secret_prompt("#28693 :")
    terminal.type("a")
    terminal.wait_for("#28693 : *")
    assert terminal.modes()[LOCAL_MODES] & SHOWN_LINE == 0
    return before


def operations(sandbox):
    return [call for call in sandbox.calls() if call["call"] == "DoOperation"]


def test_a_normal_end_restores_the_terminal(sandbox):
    with Terminal(sandbox, SET_INITIATOR) as terminal:
        before = start_of_the_secret(terminal)
        terminal.type("bcdefghijkl\r")
        assert terminal.wait_for_end() == 0
        assert terminal.modes() == before
    assert [call["operation"] for call in operations(sandbox)] == [31]


@pytest.mark.parametrize("ending", [signal.SIGINT, signal.SIGTERM, signal.SIGHUP], ids=lambda ending: ending.name)
def test_a_signal_ends_the_program_and_restores_the_terminal(sandbox, ending):
    with Terminal(sandbox, SET_INITIATOR) as terminal:
        before = start_of_the_secret(terminal)
        terminal.type("bcd")
        terminal.wait_for("#28693 : ****")
        if ending == signal.SIGINT:
            terminal.type("\x03")  # Ctrl-C
        else:
            os.kill(terminal.child.pid, ending)
        terminal.wait_for_end()
        assert terminal.child.signalstatus == ending
        assert terminal.modes() == before
        assert b"abcd" not in terminal.written
    assert operations(sandbox) == []


def test_the_terminal_shows_lines_again_after_a_secret(sandbox):
    with Terminal(sandbox, ["-iscsi", "-setinitiator", NAME, "-mutualchap"]) as terminal:
        before = start_of_the_secret(terminal)
        terminal.type("bcdefghijkl\r")
        terminal.wait_for_prompt("#28694 :")
        assert terminal.modes() == before
        terminal.type("initiator user\r")
        terminal.answer_secret("#28695 :", "ABCDEFGHIJKLMNOP")
        terminal.wait_for("#28694 : initiator user")
        assert terminal.wait_for_end() == 0
        assert terminal.modes() == before


def test_the_delete_character_is_backspace(sandbox):
    """The key above Enter sends 127 on most terminals; 8 does the same."""
    with Terminal(sandbox, SET_INITIATOR) as terminal:
        start_of_the_secret(terminal)
        terminal.type("\x7f\x7fxy\x7f\bbcdefghijklmz\x7f\r")
        assert terminal.wait_for_end() == 0
        lines = [line.strip() for line in terminal.lines()]
    assert "#28693 : " + "*" * 12 in lines
    assert [call["input"][1][5] for call in operations(sandbox)] == ["bcdefghijklm"]
