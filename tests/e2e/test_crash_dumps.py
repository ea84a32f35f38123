"""From before the first secret is read until its end the program leaves no core, however it is ended."""

import fcntl
import os
import resource
import signal
import subprocess
import time

import pytest

from program import LIBRARY, TIME_LIMIT
from terminal import Terminal

pytestmark = pytest.mark.platforms("native", "sanitize")

SET_INITIATOR = ["-iscsi", "-setinitiator", "iqn.2015-01.com.example:host", "-mutualchap"]
ENDINGS = pytest.mark.parametrize("ending", [signal.SIGQUIT, signal.SIGABRT], ids=lambda ending: ending.name)
# The sanitizer forbids cores of its own accord.
ALLOW_CORES = {"ASAN_OPTIONS": "disable_coredump=0"}


def allow_cores():
    """Before the program is started: cores as large as they may be, and the signals' default actions."""
    _, most = resource.getrlimit(resource.RLIMIT_CORE)
    resource.setrlimit(resource.RLIMIT_CORE, (most, most))
    for number in (signal.SIGQUIT, signal.SIGABRT):
        signal.signal(number, signal.SIG_DFL)


def check_core(sandbox, status, ending, is_left):
    """The system says whether there is a core, wherever it keeps it."""
    assert os.WTERMSIG(status) == ending
    assert os.WCOREDUMP(status) == is_left
    if not is_left:
        assert list(sandbox.work.glob("core*")) == []


def end_on_terminal(sandbox, monkeypatch, reach_question, ending):
    monkeypatch.setattr("terminal.heed_signals", allow_cores)
    with Terminal(sandbox, SET_INITIATOR, env=ALLOW_CORES) as terminal:
        terminal.wait_for_prompt("#28692 :")
        reach_question(terminal)
        os.kill(terminal.child.pid, ending)
        terminal.wait_for_end()
        return terminal.child.status


def stay(_):
    """The first question: no secret has been read."""


def start_secret(terminal):
    terminal.type("target user\r")
    terminal.wait_for_secret_prompt("#28693 :")


def pass_secret(terminal):
    start_secret(terminal)
    terminal.type("abcdefghijkl\r")
    terminal.wait_for_prompt("#28694 :")


@ENDINGS
@pytest.mark.parametrize("reach_question, is_left", [(stay, True), (start_secret, False), (pass_secret, False)],
                         ids=["before", "at", "after"])
def test_on_a_terminal(sandbox, monkeypatch, reach_question, is_left, ending):
    check_core(sandbox, end_on_terminal(sandbox, monkeypatch, reach_question, ending), ending, is_left)


@ENDINGS
def test_with_pipes(sandbox, ending):
    process = sandbox.start(SET_INITIATOR, env=ALLOW_CORES, preexec_fn=allow_cores)
    process.stdin.write(b"target user\nabcdefghijkl\n")
    process.stdin.flush()
    shown = b""
    while b"#28694 :" not in shown:
        shown += process.stdout.read(1)
    check_core(sandbox, end(process, ending), ending, is_left=False)


@ENDINGS
def test_with_pipes_before_anything_is_read(sandbox, ending):
    """The program waits for somebody to read its output, and nothing has been asked."""
    reader, writer = os.pipe()
    os.write(writer, bytes(fcntl.fcntl(writer, fcntl.F_GETPIPE_SZ)))
    with sandbox.start(SET_INITIATOR, env=ALLOW_CORES, preexec_fn=allow_cores, stdout=writer) as process:
        check_core(sandbox, end(process, ending), ending, is_left=True)
    os.close(writer)
    os.close(reader)


def end(process, ending):
    os.kill(process.pid, ending)
    _, status = os.waitpid(process.pid, 0)
    process.returncode = -os.WTERMSIG(status)
    return status


def end_capture(sandbox, ending, *arguments):
    """Ends a capture while the library does not come back."""
    sandbox.use_library(sandbox.platform.folder / "variants" / "misbehaving" / LIBRARY)
    called = sandbox.folder / "called"
    process = subprocess.Popen(
        sandbox.tool_command(["capture", *arguments]), cwd=sandbox.work, preexec_fn=allow_cores,
        env=sandbox.environment(extra=ALLOW_CORES | {"MISBEHAVING_THROW": "Initialize=sleep", "MISBEHAVING_CALLS": str(called)}),
        stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    limit = time.monotonic() + TIME_LIMIT
    while not called.exists():
        assert time.monotonic() < limit
        time.sleep(0.01)
    status = end(process, ending)
    process.communicate()
    return status


@ENDINGS
@pytest.mark.platforms("sanitize")
def test_of_a_capture_that_takes_secrets(sandbox, ending):
    check_core(sandbox, end_capture(sandbox, ending, "--with-secrets"), ending, is_left=False)
