"""Each signal that ends a process, at each question on a terminal: the terminal is as before, nothing was changed, and no
secret was shown."""

import os
import signal

import pytest

from limits import SECONDS
from questions import every_question, go_to
from terminal import Terminal
from test_manual_dialogues import WRITING
from test_run import watched
from test_secret_signals import ENDING, REPORTED_BY_SANITIZER

__all__ = ["watched"]  # a fixture

QUESTIONS = every_question()
EVERY = [*ENDING, signal.SIGKILL]
# Those of the sanitizers' own handlers, and one that the program alone handles.
WITH_SANITIZERS = sorted([*REPORTED_BY_SANITIZER, signal.SIGABRT, signal.SIGILL, signal.SIGTERM])
# The ones that tavrohost passes on.
PASSED_ON = [signal.SIGINT, signal.SIGQUIT, signal.SIGHUP, signal.SIGTERM, signal.SIGALRM, signal.SIGUSR1, signal.SIGUSR2,
             signal.SIGPOLL, signal.SIGVTALRM, signal.SIGPROF, signal.SIGXCPU]


def stop_at(sandbox, place, chance, end):
    """Goes to a question, perhaps into the middle of its answer, and has the program ended there. Returns the terminal
    when all that was promised of it was found."""
    sandbox.write_script(None)
    with Terminal(sandbox, place.dialogue.arguments) as terminal:
        before = terminal.modes()
        go_to(terminal, place)
        half = place.asked.text[:chance.randint(0, len(place.asked.text))]
        terminal.type(half)
        if half:
            shown = "*" * len(half) if place.asked.is_secret else half
            terminal.wait_until(lambda lines: lines[terminal.prompt_row].rstrip().endswith(shown.rstrip()), SECONDS)
        after_kill = end(terminal)
        terminal.wait_for_end(SECONDS)
        assert terminal.modes() == before or (after_kill == signal.SIGKILL and place.asked.is_secret)
        secrets = {answer.text for answer in place.dialogue.answers if answer.is_secret}
        assert not [secret for secret in secrets if secret.encode() in terminal.written]
    assert not sandbox.host.exists()
    calls = sandbox.calls()  # whole lines
    assert calls[0]["call"] == "Initialize"
    assert not [call for call in calls if call.get("operation") in WRITING]
    return terminal


def end_program(sandbox, place, ending, chance):
    def end(terminal):
        os.kill(terminal.child.pid, ending)
        return ending

    terminal = stop_at(sandbox, place, chance, end)
    if sandbox.platform.name == "sanitize" and ending in REPORTED_BY_SANITIZER:
        assert b"ERROR: AddressSanitizer" in terminal.written
    else:
        assert terminal.child.signalstatus == ending
        assert b"Sanitizer" not in terminal.written


@pytest.mark.platforms("native")
@pytest.mark.parametrize("ending", EVERY, ids=str)
@pytest.mark.parametrize("place", QUESTIONS, ids=str)
def test_a_signal_at_a_question(sandbox, place, ending, chance):
    end_program(sandbox, place, ending, chance)


@pytest.mark.platforms("sanitize")
@pytest.mark.parametrize("ending", WITH_SANITIZERS, ids=str)
@pytest.mark.parametrize("place", QUESTIONS, ids=str)
def test_a_signal_at_a_question_with_sanitizers(sandbox, place, ending, chance):
    end_program(sandbox, place, ending, chance)


@pytest.mark.platforms("native")
@pytest.mark.parametrize("ending", PASSED_ON, ids=str)
@pytest.mark.parametrize("place", QUESTIONS, ids=str)
def test_a_signal_at_a_question_of_a_watched_command(watched, place, ending, chance):
    """To both processes, as the keys of a terminal send it, or to tavrohost alone: both end by it, and no temporary folder
    is left."""
    to_both = chance.random() < 0.5

    def end(terminal):
        if to_both:
            os.killpg(os.tcgetpgrp(terminal.child.child_fd), ending)
        else:
            os.kill(terminal.child.pid, ending)
        return ending

    terminal = stop_at(watched, place, chance, end)
    assert terminal.child.signalstatus == ending
