"""Standard input that does not wait: another program that shares it may have made it so."""

import os
import time

import pytest

from program import TIME_LIMIT, finish
from terminal import Terminal

pytestmark = pytest.mark.platforms("native", "sanitize")

SET_INITIATOR = ["-iscsi", "-setinitiator", "iqn.2015-01.com.example:host", "-onewaychap"]
# Starts a program whose input does not wait.
START = ["/usr/bin/python3", "-c", "import os, sys; os.set_blocking(0, False); os.execv(sys.argv[1], sys.argv[1:])"]


def wait_until_it_sleeps(process):
    """A program that asks again and again whether there is input never does."""
    end = time.monotonic() + TIME_LIMIT
    while True:
        with open(f"/proc/{process}/stat", encoding="ascii") as file:
            state = file.read().rpartition(")")[2].split()[0]
        if state == "S":
            return
        assert time.monotonic() < end, f"the program is in state {state}"
        time.sleep(0.01)


def logins(sandbox):
    """The name and the secret of each login that the library was given."""
    return [call["input"][1][4:6] for call in sandbox.calls() if call.get("operation") == 31]


def test_a_pipe(sandbox):
    reader, writer = os.pipe()
    os.set_blocking(reader, False)
    process = sandbox.start(SET_INITIATOR, stdin=reader)
    os.close(reader)
    shown = b""
    for prompt, typed in ((b"#28692 :", b"user\n"), (b"#28693 :", b"abcdefghijkl\n")):
        while not shown.rstrip().endswith(prompt):
            shown += process.stdout.read(1)
        wait_until_it_sleeps(process.pid)
        os.write(writer, typed)
    os.close(writer)
    _, errors = finish(process, None)
    assert (process.returncode, errors) == (0, b"")
    assert logins(sandbox) == [["user", "abcdefghijkl"]]


def test_a_terminal(sandbox):
    command = sandbox.command
    sandbox.command = lambda arguments: [*START, *command(arguments)]
    with Terminal(sandbox, SET_INITIATOR) as terminal:
        terminal.wait_for_prompt("#28692 :")
        wait_until_it_sleeps(terminal.child.pid)
        terminal.type("user\r")
        terminal.wait_for_secret_prompt("#28693 :")
        wait_until_it_sleeps(terminal.child.pid)
        terminal.type("abcdefghijkl\r")
        assert terminal.wait_for_end() == 0
    assert logins(sandbox) == [["user", "abcdefghijkl"]]
