"""A program that is ended in the middle leaves a whole host file, no lock, nothing that is in the way, and the terminal
as it was."""

import json
import signal
import time

import pytest

from program import TIME_LIMIT
from terminal import Terminal

MAC = "02-00-5E-10-00-02"
NAME = "iqn.2015-01.com.example:host"
MODEL = {"messages": "numbers", "answers": []}
SERVER = "192.0.2.77"
ADD_SERVER = ["-iscsi", "-isns", "-add", SERVER]
KILLS = 10


def check_the_next_change(sandbox):
    """It is made, nothing is in its way, and beside the host file only its lock file stays."""
    before = set(sandbox.folder.iterdir())
    result = sandbox.run(ADD_SERVER)
    assert (b"#26115" in result.output, result.errors) == (True, b""), result
    assert SERVER in json.loads(sandbox.host.read_text(encoding="utf-8"))["isnsServers"]
    lock = sandbox.host.with_name(sandbox.host.name + ".lock")
    assert set(sandbox.folder.iterdir()) - {sandbox.trace} == (before | {sandbox.host, lock}) - {sandbox.trace}


QUESTIONS = {
    "a line": (["-iscsi", MAC, "-setbootconfig"], [], "#26658 :"),
    "a line after others": (["-iscsi", MAC, "-setbootconfig"], [("#26658 :", "n"), ("#26660 :", "n")], "#26663 :"),
    "a character": (["-iscsi", MAC, "-target", "-login", "iqn.2015-01.com.example:unknown", "2001:db8::20"], [],
                    "#24591 :"),
    "a secret": (["-iscsi", "-setinitiator", NAME, "-onewaychap"], [("#28692 :", "user")], "#28693 :"),
}


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("question", QUESTIONS)
def test_interrupt_at_a_question(sandbox, question):
    arguments, answers, prompt = QUESTIONS[question]
    sandbox.write_script(MODEL)
    with Terminal(sandbox, arguments) as terminal:
        before = terminal.modes()
        for asked, answer in answers:
            terminal.answer(asked, answer)
        if question == "a secret":
            terminal.wait_for_secret_prompt(prompt)
        else:
            terminal.wait_for_prompt(prompt)
        terminal.type("\x03")  # Ctrl-C
        terminal.wait_for_end()
        assert terminal.child.signalstatus == signal.SIGINT
        assert terminal.modes() == before
    assert not sandbox.host.exists()
    check_the_next_change(sandbox)


def test_output_that_ends_at_a_question(sandbox):
    sandbox.write_script(MODEL)
    result = sandbox.run_until(100, ["-iscsi", MAC, "-setbootconfig"])
    assert (result.errors, result.exit_code) == (b"", 0)
    assert [call["call"] for call in sandbox.calls()][-1] == "Uninitialize"
    assert not sandbox.host.exists()
    check_the_next_change(sandbox)


def kill_in_a_change(sandbox, pattern):
    """Kills the program as soon as such a file is there, unless it has ended by then."""
    process = sandbox.start(["-iscsi", "-isns", "-add", "192.0.2.50"])
    end = time.monotonic() + TIME_LIMIT
    while not any(sandbox.folder.glob(pattern)) and process.poll() is None and time.monotonic() < end:
        pass
    process.kill()
    process.communicate(timeout=TIME_LIMIT)


@pytest.mark.parametrize("suffix", [".lock", ".*.new", ""])
def test_killed_in_a_change(sandbox, suffix):
    """Whenever it happens: the host file is the old one or the new one."""
    sandbox.write_script(MODEL)
    check_the_next_change(sandbox)
    old = sandbox.host.read_bytes()
    for _ in range(KILLS):
        lock = sandbox.host.with_name(sandbox.host.name + ".lock")
        lock.unlink(missing_ok=True)
        if not suffix:
            sandbox.host.unlink()
        kill_in_a_change(sandbox, sandbox.host.name + suffix)
        for new in sandbox.folder.glob(sandbox.host.name + ".*.new"):
            new.unlink()
        if sandbox.host.exists():
            servers = json.loads(sandbox.host.read_text(encoding="utf-8"))["isnsServers"]
            assert servers in (["192.0.2.5", SERVER], ["192.0.2.5", SERVER, "192.0.2.50"], ["192.0.2.5", "192.0.2.50"])
        sandbox.host.write_bytes(old)
    sandbox.host.unlink()
    check_the_next_change(sandbox)
