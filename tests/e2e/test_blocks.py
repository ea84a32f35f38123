"""Output to a file or a pipe is written in blocks, and yet all of it is there whenever somebody may look: while the
library works, while a question waits for its answer, and after the library has ended the process."""

import re
import subprocess
import sys
import threading

import pytest

from program import DEFAULT_LOCALE, LIBRARY, TIME_LIMIT, finish

MAC = "02-00-5E-10-00-02"
LIST_PORTALS = ["-iscsi", MAC, "-portal", "-listall"]
LIST_TARGETS = ["-iscsi", MAC, "-target", "-listall"]
PLEASE_WAIT = " \n#28691\n\n"
BLOCK = 65536
PORTALS = [[f"2001:db8::{number}", "3260"] for number in range(10000)]


def misbehave(sandbox, throw, fail=""):
    """The environment of a run beside the library that ends a call as told."""
    sandbox.use_library(sandbox.platform.folder / "variants" / "misbehaving" / LIBRARY)
    return {"MISBEHAVING_THROW": throw, "MISBEHAVING_FAIL": fail,
            "MISBEHAVING_CALLS": sandbox.platform.path(sandbox.folder / "calls")}


def read_exactly(process, size):
    """So many bytes of the output, as soon as they are there; fewer when they do not come."""
    watch = threading.Timer(TIME_LIMIT, process.kill)  # ends a read that would never return
    watch.start()
    output = process.stdout.read(size)
    watch.cancel()
    return output


@pytest.mark.platforms("sanitize", "windows")
@pytest.mark.parametrize("entry, fail, arguments, output", [
    ("DoOperation", "", LIST_PORTALS, PLEASE_WAIT),
    ("GetLastErrorMessage", "DoOperation", LIST_TARGETS, PLEASE_WAIT + " \n#24579\n"),
    ("Uninitialize", "", ["-nonsense"], " \n#28674\n"),
    ("Uninitialize", "DoOperation", LIST_TARGETS, PLEASE_WAIT + " \n#24579\n"),
])
def test_a_library_that_crashes_takes_nothing_along(sandbox, entry, fail, arguments, output):
    result = sandbox.run(arguments, env=misbehave(sandbox, f"{entry}=crash", fail))
    assert result.exit_code != 0
    assert result.output == sandbox.platform.encode(output, DEFAULT_LOCALE)


@pytest.mark.platforms("sanitize", "windows")
@pytest.mark.parametrize("entry, fail, arguments, output", [
    ("DoOperation", "", LIST_PORTALS, PLEASE_WAIT),
    ("Uninitialize", "DoOperation", LIST_TARGETS, PLEASE_WAIT + " \n#24579\n"),
])
def test_what_was_printed_is_seen_while_the_library_works(sandbox, entry, fail, arguments, output):
    process = sandbox.start(arguments, env=misbehave(sandbox, f"{entry}=sleep", fail))
    expected = sandbox.platform.encode(output, DEFAULT_LOCALE)
    try:
        assert read_exactly(process, len(expected)) == expected
        assert process.poll() is None
    finally:
        process.kill()
        process.communicate()


def test_a_question_is_seen_before_it_is_answered(sandbox):
    """With what was printed before it, and the line that it leaves open."""
    sandbox.write_script({"messages": "numbers", "model": False, "answers": []})
    process = sandbox.start(["-iscsi", MAC, "-target", "-login", "T", "192.0.2.20"])
    question = sandbox.platform.encode(PLEASE_WAIT + "\t#24591 : ", DEFAULT_LOCALE)
    assert read_exactly(process, len(question)) == question
    assert process.poll() is None
    rest, _ = finish(process, b"y")
    assert rest == sandbox.platform.encode(" \n#24593\n", DEFAULT_LOCALE)


def listing_script(sandbox):
    sandbox.write_script({"messages": "numbers", "model": False, "answers": [
        {"call": "DoOperation", "operation": 6, "output": PORTALS}]})


def listing_text():
    rule = "-" * 54 + "\n"
    lines = "".join(f"{address} : \t{port}\n" for address, port in PORTALS)
    return f"{PLEASE_WAIT} #25601 : \n{rule} \n#25602\n{rule}{lines}{rule}"


def test_many_lines_are_all_there(sandbox):
    listing_script(sandbox)
    result = sandbox.run(LIST_PORTALS)
    assert (result.exit_code, result.errors) == (0, b"")
    assert result.output == sandbox.platform.encode(listing_text(), DEFAULT_LOCALE)


def writes_of(sandbox, command):
    """The trace of all writes."""
    trace = sandbox.folder / "strace"
    subprocess.run(["strace", "-f", "-e", "trace=write", "-o", trace, *command], cwd=sandbox.work,
                   env=sandbox.environment(), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, check=True,
                   timeout=TIME_LIMIT)
    return trace.read_text()


@pytest.mark.platforms("native")
def test_lines_to_a_pipe_are_written_in_blocks(sandbox):
    """What is printed before the operation and at the end may be smaller."""
    listing_script(sandbox)
    trace = writes_of(sandbox, sandbox.command(LIST_PORTALS))
    writes = [int(size) for size in re.findall(r" write\(1, .* = (\d+)$", trace, re.MULTILINE)]
    assert sum(writes) == len(listing_text())
    first, *blocks, _last = writes
    assert first == len(PLEASE_WAIT)
    longest_line = 96
    assert blocks and all(BLOCK <= size < BLOCK + longest_line for size in blocks)


@pytest.mark.platforms("native")
def test_lines_to_a_terminal_are_written_one_by_one(sandbox):
    listing_script(sandbox)
    spawn = "import pty, sys; pty.spawn(sys.argv[1:])"
    trace = writes_of(sandbox, [sys.executable, "-c", spawn, *sandbox.command(LIST_PORTALS)])
    address = re.escape(PORTALS[77][0])
    assert re.search(rf' write\(1, "{address} : \\t3260\\n", ', trace)


@pytest.mark.parametrize("arguments", [LIST_PORTALS, LIST_TARGETS, ["-showadapter"]])
def test_the_log_has_the_calls_in_their_order(sandbox, arguments):
    sandbox.run([*arguments, "-debug"])
    log = (sandbox.work / "tavrocli.log").read_text(encoding="utf-8").splitlines()
    logged = [found[1] for found in map(re.compile(r" UTC  (\w+).*: status ").search, log) if found]
    assert logged[:1] == ["Initialize"] and logged[-1:] == ["Uninitialize"]
    assert logged == [call["call"] for call in sandbox.calls() if call["call"] in logged]
