"""The terminal of the tests waits for a slow program: each answer is typed when its question stands there, and what
is written late is seen."""

import pathlib
import types

import pytest

from program import PLATFORMS
from terminal import Terminal


@pytest.fixture
def shell(tmp_path):
    """Runs a script of the shell where otherwise the program is run."""
    def start(script, **more):
        sandbox = types.SimpleNamespace(
            platform=PLATFORMS["native"], work=pathlib.Path(tmp_path),
            command=lambda arguments: ["/bin/sh", "-c", script],
            environment=lambda locale, extra: {"PATH": "/usr/bin:/bin"} | extra)
        return Terminal(sandbox, **more)
    return start


def test_a_question_that_comes_twice_is_answered_twice(shell):
    with shell("for each in 1 2 3; do sleep 0.3; printf 'Question : '; read answer; done") as terminal:
        for typed in ("first", "", "third"):
            terminal.answer("Question :", typed)
        assert terminal.wait_for_end() == 0
        assert terminal.lines() == ["Question : first", "Question :", "Question : third"]


def test_a_secret_is_typed_when_it_is_not_shown_any_more(shell):
    script = """
        printf 'Secret : '; sleep 0.3; stty -echo -icanon; key=$(head -c 1)
        sleep 0.3; echo; printf 'Question : '; sleep 0.3; stty echo icanon; read answer"""
    with shell(script) as terminal:
        terminal.wait_for_secret_prompt("Secret :")
        terminal.type("k")
        terminal.answer("Question :", "shown")
        assert terminal.wait_for_end() == 0
        assert terminal.lines() == ["Secret :", "Question : shown"]


def test_what_is_written_after_the_end_is_seen(shell):
    """Wine draws in a process of its own."""
    with shell("trap '' HUP; (sleep 0.3; echo late) & exit 3") as terminal:
        assert terminal.wait_for_end() == 3
        assert terminal.lines() == ["late"]


def test_a_program_that_goes_on_is_ended(shell):
    with shell("trap '' HUP INT TERM; echo started; while true; do sleep 1; done") as terminal:
        terminal.wait_for("started")
    assert not terminal.child.isalive()


def test_a_screen_that_is_full_tells_no_prompts_apart(shell):
    with shell("while true; do printf 'Question : '; read answer; done", rows=3) as terminal:
        terminal.answer("Question :", "1")
        terminal.answer("Question :", "2")
        with pytest.raises(AssertionError, match="not high enough"):
            terminal.wait_for_prompt("Question :")


def test_a_prompt_that_does_not_come_is_told(shell):
    with shell("printf 'Question : '; read answer; echo done") as terminal:
        terminal.answer("Question :", "1")
        with pytest.raises(AssertionError, match="waited for the prompt"):
            terminal.wait_for_prompt("Question :")
