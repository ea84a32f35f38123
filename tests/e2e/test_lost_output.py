"""Output that nobody takes: a command does its work all the same, and what only makes sense when it is seen ends the
program."""

import os
import subprocess

import pytest

from program import DEFAULT_LOCALE, ROOT, TIME_LIMIT, finish

PORT = "02-00-5E-10-00-02"  # an iSCSI function of the simulator's own host
MAC = "02-00-5E-00-00-01"
NAME = "iqn.2015-01.com.example:renamed"

WAYS = {"closed": ">&-", "full": ">/dev/full", "without a reader": None}

SET_PARTITIONS = {
    "arguments": ["-npar", MAC, "-set"],
    "answers": [
        {"call": "GetPartitionState", "output": 1},
        {"call": "GetAdapterType", "output": "CNA"},
        {"call": "GetAdapterPortNumber", "output": 1},
    ],
}


def start_unseen(sandbox, way, arguments):
    if WAYS[way] is None:
        reading, writing = os.pipe()
        os.close(reading)
        process = sandbox.start(arguments, stdout=writing)
        os.close(writing)
        return process
    return subprocess.Popen(
        ["sh", "-c", f'exec "$@" {WAYS[way]}', "sh", *sandbox.command(arguments)],
        cwd=sandbox.work, env=sandbox.environment(), stdin=subprocess.PIPE, stderr=subprocess.PIPE,
    )


def run_unseen(sandbox, way, arguments, stdin=""):
    """Runs the program while nothing can be written to its standard output; returns the library's calls."""
    process = start_unseen(sandbox, way, arguments)
    return end(sandbox, process, stdin)


def run_until(sandbox, prompt, arguments, before, after):
    """Types `before`, reads up to a prompt, and types `after` once nobody reads any more; returns the library's
    calls."""
    process = sandbox.start(arguments)
    process.stdin.write(sandbox.platform.encode(before, DEFAULT_LOCALE))
    process.stdin.flush()
    shown = b""
    while not shown.endswith(prompt.encode()):
        byte = process.stdout.read(1)
        assert byte, f"the program ended before its prompt: {shown}"
        shown += byte
    process.stdout.close()
    process.stdout = None
    return end(sandbox, process, after)


def end(sandbox, process, stdin):
    _, errors = finish(process, sandbox.platform.encode(stdin, DEFAULT_LOCALE))
    assert (process.returncode, errors) == (0, b"")
    calls = sandbox.calls()
    assert [calls[0]["call"], calls[-1]["call"]] == ["Initialize", "Uninitialize"]
    return calls


def run_seen(sandbox, arguments, stdin=""):
    result = sandbox.run(arguments, stdin)
    assert (result.exit_code, result.errors) == (0, b"")
    return result.output.decode().replace("\r\n", "\n"), sandbox.calls()


def operations(calls):
    return [call["operation"] for call in calls if call["call"] == "DoOperation"]


def write_script(sandbox, *answers, model=False):
    sandbox.write_script({"messages": "numbers", "model": model, "answers": list(answers)})


@pytest.mark.parametrize("way", WAYS)
def test_a_command_that_prints_before_its_operation(sandbox, way):
    write_script(sandbox, model=True)
    listing = ["-iscsi", PORT, "-portal", "-listall"]
    assert "192.0.2.77" not in run_seen(sandbox, listing)[0]
    calls = run_unseen(sandbox, way, ["-iscsi", PORT, "-portal", "-add", "192.0.2.77"])
    assert 4 in operations(calls)
    assert "\n192.0.2.77 : \t3260\n" in run_seen(sandbox, listing)[0]


@pytest.mark.parametrize("way", WAYS)
def test_a_command_that_prints_after_its_operation(sandbox, way):
    write_script(sandbox, model=True)
    run_unseen(sandbox, way, ["-iscsi", "-setinitiator", NAME])
    assert f" : {NAME}\n" in run_seen(sandbox, ["-iscsi", "-getinitiator"])[0]


@pytest.mark.parametrize("way", WAYS)
def test_an_import_sends_all_its_settings(sandbox, way):
    write_script(sandbox, model=True)
    content = (ROOT / "docs" / "cnadiscovery.xml").read_bytes()
    (sandbox.work / "cnadiscovery.xml").write_bytes(content)
    unseen = operations(run_unseen(sandbox, way, ["-import"]))
    sandbox.host.unlink(missing_ok=True)
    assert unseen == operations(run_seen(sandbox, ["-import"])[1])
    assert {31, 3, 4, 11} <= set(unseen)


@pytest.mark.parametrize("way", WAYS)
@pytest.mark.parametrize("arguments", [["-help"], ["-showadapter"], ["-nonsense"]])
def test_what_is_only_shown(sandbox, way, arguments):
    run_unseen(sandbox, way, arguments)


@pytest.mark.parametrize("way", WAYS)
def test_a_failure(sandbox, way):
    error = {"code": 3, "message": "No.", "action": "", "additional": "", "details": ""}
    write_script(sandbox, {"call": "DoOperation", "operation": 4, "status": 3, "error": error})
    calls = run_unseen(sandbox, way, ["-iscsi", PORT, "-portal", "-add", "192.0.2.77"])
    assert operations(calls) == [4]


def test_an_unseen_listing_asks_for_no_further_port(sandbox):
    ports = [("A", "Port 1"), ("A", "Port 2"), ("B", "Port 1")]
    write_script(
        sandbox, {"call": "GetHostName", "output": "srv-a"},
        {"call": "GetDiscoveredAdapters", "output": [["A", 1, ["Port 1", "Port 2"]], ["B", 2, ["Port 1"]]]},
        *({"call": "GetPortWWNs", "adapter": adapter, "port": port, "output": [[], []]} for adapter, port in ports),
    )

    def asked(calls):
        return [(call["adapter"], call["port"]) for call in calls if call["call"] == "GetPortWWNs"]

    assert asked(run_seen(sandbox, ["-showadapter"])[1]) == ports
    assert asked(run_unseen(sandbox, "full", ["-showadapter"])) == []


QUESTIONS = {
    "a line": (SET_PARTITIONS["arguments"], "1\n1\ny\n", SET_PARTITIONS["answers"], [], 59),
    "a line, asked for before anything else is shown": (
        ["-iscsi", "-setinitiator", NAME, "-onewaychap"], "user\nabcdefghijkl\n", [], [], 31),
    "a character": (["-iscsi", MAC, "-target", "-login", "T", "192.0.2.20"], "y\n", [], [7], 11),
}


@pytest.mark.parametrize("way", WAYS)
@pytest.mark.parametrize("question", QUESTIONS)
def test_a_question_ends_the_program(sandbox, way, question):
    """The answers that lead to the operation lie ready, and yet it is not sent."""
    arguments, stdin, answers, before, after = QUESTIONS[question]
    write_script(sandbox, *answers)
    assert operations(run_seen(sandbox, arguments, stdin)[1]) == [*before, after]
    assert operations(run_unseen(sandbox, way, arguments, stdin)) == before


def test_a_secret_that_nobody_is_asked_for(sandbox):
    calls = run_until(sandbox, "#28692 : ", ["-iscsi", "-setinitiator", NAME, "-onewaychap"], "",
                      "user\nabcdefghijkl\n")
    assert operations(calls) == []


def test_an_answered_question_counts(sandbox):
    """The question was seen; that nobody sees what follows changes nothing."""
    write_script(sandbox, *SET_PARTITIONS["answers"])
    assert operations(run_until(sandbox, "#29197 : ", SET_PARTITIONS["arguments"], "1\n1\n", "y\n")) == [59]


def test_the_notice_without_end_ends(sandbox):
    write_script(sandbox, *SET_PARTITIONS["answers"])
    assert operations(run_until(sandbox, "#29197 : ", SET_PARTITIONS["arguments"], "1\n1\n", "yes\ny\n")) == []
