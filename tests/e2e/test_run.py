"""`tavrohost run`: the program's command line, watched; what its exit status and its report tell."""

import json
import os
import resource
import signal
import subprocess
import time

import jsonschema
import pytest

from program import LIBRARY, ROOT, TIME_LIMIT, finish
from terminal import Terminal

MAC = "02-00-5E-00-00-01"
WWN = "10:00:02:00:5E:10:00:04"
SET_PERSONALITY = ["-res", MAC, "-set"]
SET_INITIATOR = ["-iscsi", "-setinitiator", "iqn.2015-01.com.example:host", "-onewaychap"]
SECRET = "a-very-secret-text"
WINE_USERS = ROOT / "build" / "wine" / "drive_c" / "users"
SCHEMA = json.loads((ROOT / "docs" / "run.schema.json").read_text(encoding="utf-8"))

# A port whose personality can be changed, and what the command reads of it.
PERSONALITY_ANSWERS = [
    {"call": "GetPartitionState", "request": MAC, "output": 1},
    {"call": "GetAdapterType", "request": MAC, "output": "CNA"},
    {"operation": 60, "output": ["P1", 0]},
]


@pytest.fixture
def watched(sandbox):
    """A sandbox whose program is run by tavrohost, and which leaves nothing temporary behind."""
    own = sandbox.environment
    sandbox.temporary = sandbox.folder / "temporary"
    sandbox.temporary.mkdir()
    sandbox.environment = lambda *arguments, **names: own(*arguments, **names) | {"TMPDIR": str(sandbox.temporary)}
    sandbox.tool_arguments = ["run"]
    yield sandbox
    left = set(folders_in(sandbox.temporary) if not sandbox.platform.is_windows else folders_in_wine())
    end = time.monotonic() + TIME_LIMIT
    while sandbox.platform.is_windows and left and time.monotonic() < end:
        time.sleep(0.1)  # those of tests that run beside this one
        left &= set(folders_in_wine())
    assert left == set()


def folders_in(folder):
    return [path for path in folder.iterdir() if path.name.startswith("tavrohost-")]


def folders_in_wine():
    """Wine chooses the folder for temporary files itself."""
    return [path for folder in WINE_USERS.glob("*/**/Temp") for path in folders_in(folder)]


def script(sandbox, *answers, **more):
    sandbox.write_script({
        "messages": "numbers", "model": False,
        "answers": [{"call": "DoOperation"} | answer for answer in answers],
    } | more)


def report_of(result):
    report = json.loads(result.output)
    jsonschema.Draft202012Validator(SCHEMA).validate(report)
    return report


def run_json(sandbox, arguments, *options, **names):
    sandbox.tool_arguments = ["run", "--json", *options]
    result = sandbox.run(arguments, **names)
    return result, report_of(result)


def test_the_schema_is_one():
    jsonschema.Draft202012Validator.check_schema(SCHEMA)


# What answers -getinitiator, and how the command ends then.
ENDINGS = {
    "done": ({"operation": 30}, 0),
    "refused": ({"operation": 30, "status": 7}, 1),
}


@pytest.mark.parametrize("ending", ENDINGS)
def test_the_exit_status_tells_what_became_of_the_command(watched, ending):
    answer, status = ENDINGS[ending]
    script(watched, answer)
    result = watched.run(["-iscsi", "-getinitiator"])
    assert (result.exit_code, result.errors) == (status, b"")
    watched.tool_arguments = None
    assert watched.run(["-iscsi", "-getinitiator"]).output == result.output


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("arguments", [
    pytest.param([], id="no arguments"),
    pytest.param(["-nonsense"], id="unknown"),
    pytest.param(["-iscsi", MAC, "-target", "-getinfo"], id="too few"),
    pytest.param(["-iscsi", MAC, "-portal", "-add", "no address"], id="bad operand"),
])
def test_a_command_that_asks_the_library_for_nothing_is_not_done(watched, arguments):
    assert watched.run(arguments).exit_code == 1


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("arguments", [["-about"], ["-help"]])
def test_screens_are_always_done(watched, arguments):
    assert watched.run(arguments).exit_code == 0


@pytest.mark.platforms("native", "sanitize")
def test_a_blocked_command_is_not_done(watched):
    watched.write_script({"messages": "numbers", "model": True, "answers": [
        {"call": "DoOperation", "operation": 70, "output": "6"}]})
    assert watched.run(["-fcoe", "10:00:02:00:5E:10:00:04", "-setfip", "5"]).exit_code == 1
    assert watched.run(["-fcoe", "10:00:02:00:5E:10:00:04", "-getfip"]).exit_code == 0


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("code, status, restart", [(0, 0, False), (201, 0, True), (5, 1, False), (9, 1, False)])
def test_the_completion_code_counts(watched, code, status, restart):
    script(watched, *PERSONALITY_ANSWERS, {"operation": 61, "result": code})
    result, report = run_json(watched, SET_PERSONALITY, stdin="2\ny\n")
    assert (result.exit_code, result.errors) == (status, b"")
    assert report["restart_required"] is restart
    assert report["outcome"] == ("done" if status == 0 else "refused")
    [write] = [call for call in report["calls"] if call.get("operation") == 61]
    assert write == {"call": "DoOperation", "operation": 61, "name": "WritePersonality", "request": MAC, "status": 0,
                     "completion_code": code}


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("arguments, answer, status", [
    (["-iscsi", MAC, "-ping", "192.0.2.1"], {"operation": 18, "output": ["", "5"]}, 0),
    (["-iscsi", MAC, "-ping", "192.0.2.1"], {"operation": 18, "output": ["", "4"]}, 1),
    (["-fcoe", WWN, "-ping", WWN], {"operation": 41, "output": ["4", "", "", "", "4", "0"]}, 0),
    (["-fcoe", WWN, "-ping", WWN], {"operation": 41, "output": ["4", "", "", "", "3", "1"]}, 1),
], ids=["iSCSI", "iSCSI with losses", "FCoE", "FCoE with losses"])
def test_a_ping_with_losses_is_not_done(watched, arguments, answer, status):
    script(watched, answer)
    result, report = run_json(watched, arguments)
    assert (result.exit_code, report["outcome"]) == (status, ["done", "refused"][status])
    [ping] = [call for call in report["calls"] if call.get("operation") == answer["operation"]]
    assert (ping["status"], ping.get("incomplete", False)) == (0, status == 1)


@pytest.mark.platforms("native", "sanitize")
def test_an_error_of_a_call_that_decides_nothing_is_not_told(watched):
    """The list of targets is refused; the login is not sent, because the question in between is declined."""
    error = {"code": 9, "message": "No list.", "action": "", "additional": "", "details": ""}
    script(watched, {"operation": 7, "status": 9, "error": error})
    result, report = run_json(watched, ["-iscsi", MAC, "-target", "-login", "iqn.x", "192.0.2.1"], stdin="n\n")
    assert (result.exit_code, report["outcome"]) == (1, "refused")
    assert [call["status"] for call in report["calls"] if call.get("operation") == 7] == [9]
    assert [call for call in report["calls"] if call.get("operation") == 11] == []
    assert "error" not in report


@pytest.mark.platforms("native", "sanitize")
def test_an_exception_is_trouble(watched):
    script(watched, {"operation": 18, "output": ["", "none"]})
    result, report = run_json(watched, ["-iscsi", MAC, "-ping", "192.0.2.1"])
    assert (result.exit_code, report["outcome"]) == (2, "failed")
    assert report["failure"] == "the command failed: invalid stol argument"
    assert result.errors == b"tavrocli: invalid stol argument\ntavrohost: " + report["failure"].encode() + b"\n"


@pytest.mark.platforms("native", "sanitize")
def test_a_journal_that_cannot_be_written_is_trouble(watched):
    script(watched, {"operation": 30})
    process = watched.start(
        ["-iscsi", "-getinitiator"], preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (200, 200)))
    output, errors = finish(process, None)
    assert process.returncode == 2
    assert errors == b"tavrohost: the command ended early, or what it did could not be written down\n"
    watched.tool_arguments = None
    assert watched.run(["-iscsi", "-getinitiator"]).output == output


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("tool", [
    ["run", "--answers", "", "--", "-about"], ["run", "--library", "", "--", "-about"],
    ["run", "--timeout", "", "--", "-about"], ["diff", "", "-"], ["diff", "-", ""], ["check", ""], ["restart", ""],
], ids=" ".join)
def test_an_empty_value_is_refused(watched, tool):
    result = watched.run_tool(tool)
    assert (result.exit_code, result.output) == (2, b"")
    assert b"must not be empty" in result.errors or "--timeout" in tool


@pytest.mark.platforms("native", "sanitize")
def test_a_declined_change_is_not_done(watched):
    script(watched, *PERSONALITY_ANSWERS)
    assert watched.run(SET_PERSONALITY, stdin="2\nn\n").exit_code == 1


def test_the_report_tells_calls_and_the_last_error(watched):
    error = {"code": 9, "message": "It failed.", "action": "Do this.", "additional": "More.", "details": "x=1"}
    script(watched, {"operation": 47, "status": 9, "error": error})
    wwn = "10:00:02:00:5E:10:00:04"
    result, report = run_json(watched, ["-fcoe", wwn, "-getfip"])
    assert (result.exit_code, result.errors) == (1, b"")
    assert report["arguments"] == ["-fcoe", wwn, "-getfip"]
    assert report["output"] == ""  # the command is silent about it
    assert report["error"] == error
    assert [call for call in report["calls"] if call["call"] == "DoOperation"][-1:] == [
        {"call": "DoOperation", "operation": 47, "name": "ReadFip", "request": wwn, "status": 9}]
    assert report["calls"][0] == {"call": "Initialize", "status": 0}
    assert report["calls"][-1] == {"call": "Uninitialize", "status": 0}


def test_the_output_in_the_report_is_unicode_whatever_the_code_page_holds(watched):
    error = {"code": 7, "message": "発信者", "action": "", "additional": "", "details": ""}
    script(watched, {"operation": 30, "status": 7, "error": error})
    result, report = run_json(watched, ["-iscsi", "-getinitiator"])
    assert result.exit_code == 1
    assert report["output"] == "\nError Details\n\nMessage: 発信者\n"


@pytest.mark.platforms("native", "sanitize")
def test_help_is_shown_and_missing_arguments_are_told(watched):
    result = watched.run_tool(["run", "--help"])
    assert (result.exit_code, result.errors) == (0, b"")
    for option in (b"--json", b"--answers", b"--library", b"--timeout"):
        assert option in result.output
    for arguments in (["run"], ["run", "-showadapter"], ["run", "--timeout", "0", "--", "-about"],
                      ["run", "--nonsense", "--", "-about"]):
        result = watched.run_tool(arguments)
        assert (result.exit_code, result.output) == (2, b"")
        assert result.errors != b""


def test_arguments_arrive_as_they_are(watched):
    words = ["", " ", "--", "-", "[a,b]", 'a"b\\', '\\\\"', "*", "%PATH%", "a'b c", "\\", "c d\\", "tab\there"]
    script(watched, {"operation": 50})
    wwn = "10:00:02:00:5E:10:00:04"
    assert watched.run(["-fcoe", wwn, "-createvirtualport", *words]).exit_code == 0
    [call] = [call for call in watched.calls() if call.get("operation") == 50]
    assert [record[1] for record in call["input"]] == words


def test_a_library_that_cannot_be_loaded_is_trouble(watched):
    watched.use_library(None)
    result, report = run_json(watched, ["-about"])
    assert result.exit_code == 2
    assert (report["outcome"], report["calls"]) == ("failed", [])
    assert LIBRARY in report["failure"]
    assert f"tavrohost: {report['failure']}".encode() in result.errors


@pytest.mark.platforms("native", "sanitize")
def test_a_library_that_refuses_to_start_has_done_nothing(watched):
    script(watched, {"call": "Initialize", "status": 3})
    assert watched.run(["-about"]).exit_code == 1


def test_another_library_can_be_named(watched):
    script(watched, {"operation": 30})
    elsewhere = watched.folder / "else where"
    elsewhere.mkdir()
    library = elsewhere / "other.dll"
    library.write_bytes((watched.binaries / LIBRARY).read_bytes())
    watched.use_library(None)
    watched.tool_arguments = ["run", "--library", watched.platform.path(library)]
    assert watched.run(["-iscsi", "-getinitiator"]).exit_code == 0
    missing = watched.platform.path(elsewhere / "missing.dll")
    watched.tool_arguments = ["run", "--library", missing]
    result = watched.run(["-iscsi", "-getinitiator"])
    assert result.exit_code == 2
    assert b"missing.dll" in result.errors


@pytest.mark.platforms("sanitize", "windows")
def test_a_crash_is_trouble_and_the_calls_before_it_are_told(watched):
    watched.use_library(watched.platform.folder / "variants" / "misbehaving" / LIBRARY)
    crash = {"MISBEHAVING_THROW": "GetHostName=crash", "MISBEHAVING_CALLS": watched.platform.path(watched.folder / "called")}
    result, report = run_json(watched, ["-about"], env=crash)
    assert (result.exit_code, report["outcome"]) == (2, "failed")
    assert report["calls"] == [{"call": "Initialize", "status": 0}, {"call": "GetHostName"}]
    assert "the command " in report["failure"]


@pytest.mark.platforms("sanitize", "windows")
def test_a_command_that_takes_too_long_is_stopped(watched):
    watched.use_library(watched.platform.folder / "variants" / "misbehaving" / LIBRARY)
    sleep = {"MISBEHAVING_THROW": "GetHostName=sleep", "MISBEHAVING_CALLS": watched.platform.path(watched.folder / "called")}
    result, report = run_json(watched, ["-about"], "--timeout", "1", env=sleep)
    assert (result.exit_code, report["outcome"]) == (2, "failed")
    assert report["failure"] == "the command did not end in time and was stopped"
    assert b"did not end in time" in result.errors


@pytest.mark.platforms("sanitize")
def test_a_command_that_does_not_want_to_stop_is_killed(watched):
    watched.use_library(watched.platform.folder / "variants" / "misbehaving" / LIBRARY)
    stubborn = {"MISBEHAVING_THROW": "GetHostName=stubborn", "MISBEHAVING_CALLS": str(watched.folder / "called")}
    result, report = run_json(watched, ["-about"], "--timeout", "1", env=stubborn)
    assert (result.exit_code, report["failure"]) == (2, "the command did not end in time and was stopped")


def wait_for_question(process, sandbox):
    """Until the command waits for the first answer of `-res -set`: its prompt was read."""
    shown = b""
    while b"#29456 : " not in shown:
        byte = process.stdout.read(1)
        assert byte, shown
        shown += byte


@pytest.mark.platforms("native", "sanitize")
def test_the_time_limit_holds_for_questions_too(watched):
    script(watched, *PERSONALITY_ANSWERS)
    watched.tool_arguments = ["run", "--timeout", "1"]
    process = watched.start(SET_PERSONALITY)
    assert process.wait(TIME_LIMIT) == 2
    process.communicate()


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("ending", [
    signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT, signal.SIGALRM, signal.SIGUSR1, signal.SIGUSR2,
    signal.SIGPOLL, signal.SIGVTALRM, signal.SIGPROF, signal.SIGXCPU])
def test_a_signal_ends_both_and_leaves_nothing(watched, ending):
    script(watched, *PERSONALITY_ANSWERS)
    heed = lambda: [signal.signal(number, signal.SIG_DFL) for number in (signal.SIGINT, signal.SIGQUIT, signal.SIGHUP)]
    process = watched.start(SET_PERSONALITY, preexec_fn=heed)
    wait_for_question(process, watched)
    [child] = children_of(process.pid)
    process.send_signal(ending)
    assert process.wait(TIME_LIMIT) == -ending
    process.communicate()
    assert not os.path.exists(f"/proc/{child}")


@pytest.mark.platforms("native")
def test_a_signal_that_is_ignored_from_the_start_ends_nothing(watched):
    script(watched, *PERSONALITY_ANSWERS, {"operation": 61})
    process = watched.start(SET_PERSONALITY, preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
    wait_for_question(process, watched)
    process.send_signal(signal.SIGHUP)
    _, errors = finish(process, b"2\ny\n")
    assert (process.returncode, errors) == (0, b"")


@pytest.mark.platforms("native")
def test_a_killed_child_is_a_crash(watched):
    script(watched, *PERSONALITY_ANSWERS)
    process = watched.start(SET_PERSONALITY)
    wait_for_question(process, watched)
    [child] = children_of(process.pid)
    os.kill(child, signal.SIGKILL)
    _, errors = finish(process, None)
    assert (process.returncode, errors) == (2, b"tavrohost: the command was ended by signal 9\n")


def children_of(pid):
    """The processes that a process has started and that are still there."""
    return [int(text) for text in open(f"/proc/{pid}/task/{pid}/children").read().split()]


@pytest.mark.platforms("native")
def test_a_child_does_not_outlive_a_killed_parent(watched):
    script(watched, *PERSONALITY_ANSWERS)
    process = watched.start(SET_PERSONALITY)
    wait_for_question(process, watched)
    [child] = children_of(process.pid)
    process.kill()
    process.communicate()
    end = time.monotonic() + TIME_LIMIT
    while os.path.exists(f"/proc/{child}") and time.monotonic() < end:
        time.sleep(0.01)
    assert not os.path.exists(f"/proc/{child}")
    # Nobody was left to take the folder away.
    [folder] = watched.temporary.iterdir()
    assert folder.stat().st_mode & 0o077 == 0
    for file in folder.iterdir():
        file.unlink()
    folder.rmdir()


@pytest.mark.platforms("native", "sanitize")
def test_closed_streams_change_nothing_but_the_status(watched):
    script(watched, {"operation": 30})
    process = watched.start(["-iscsi", "-getinitiator"], preexec_fn=lambda: [os.close(number) for number in (0, 1)])
    _, errors = finish(process, None)
    assert (process.returncode, errors) == (2, b"tavrohost: standard output cannot be written\n")
    assert [call["operation"] for call in watched.calls() if "operation" in call] == [30]


@pytest.mark.platforms("native", "sanitize")
def test_a_full_output_is_trouble(watched):
    script(watched, {"operation": 30})
    with open("/dev/full", "wb") as full:
        process = watched.start(["-iscsi", "-getinitiator"], stdout=full)
        _, errors = finish(process, None)
    assert (process.returncode, errors) == (2, b"tavrohost: standard output cannot be written\n")


@pytest.mark.platforms("native")
def test_a_kept_output_that_is_cut_off_is_trouble(watched):
    error = {"code": 7, "message": "x" * (33 << 20), "action": "", "additional": "", "details": ""}
    script(watched, {"operation": 30, "status": 7, "error": error})
    result, report = run_json(watched, ["-iscsi", "-getinitiator"])
    assert (result.exit_code, report["outcome"]) == (2, "failed")
    assert report["failure"] == "the output of the command is too large, or cannot be kept"


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("typed, question", [("", "29456"), ("3\n", "29456"), ("2\nmaybe", "29197")])
def test_a_report_does_not_wait_for_answers_behind_the_end_of_input(watched, typed, question):
    script(watched, *PERSONALITY_ANSWERS)
    result, report = run_json(watched, SET_PERSONALITY, stdin=typed)
    assert (result.exit_code, report["outcome"]) == (2, "failed")
    assert report["failure"] == (
        f'the answer to question {question} "#{question} :" was refused, and standard input has ended')


def test_a_lost_output_does_not_keep_the_command_from_being_sent(watched):
    script(watched, {"operation": 30})
    process = watched.start(["-iscsi", "-getinitiator"])
    process.stdout.close()
    process.stdin.close()
    process.stdin = process.stdout = None
    _, errors = finish(process, None)
    assert (process.returncode, errors.rstrip(b"\r\n")) == (2, b"tavrohost: standard output cannot be written")
    assert [call["operation"] for call in watched.calls() if "operation" in call] == [30]


@pytest.mark.platforms("native", "sanitize")
def test_a_report_that_cannot_be_written_is_trouble(watched):
    script(watched, {"operation": 30})
    watched.tool_arguments = ["run", "--json"]
    process = watched.start(["-iscsi", "-getinitiator"])
    process.stdout.close()
    process.stdin.close()
    process.stdin = process.stdout = None
    _, errors = finish(process, None)
    assert process.returncode == 2
    assert b"standard output cannot be written" in errors


def test_a_terminal_is_handed_through(watched):
    script(watched, *PERSONALITY_ANSWERS, {"operation": 61})
    with Terminal(watched, SET_PERSONALITY) as terminal:
        terminal.answer("#29456 :", "2")
        terminal.answer("#29197 :", "y")
        assert terminal.wait_for_end() == 0


def test_secrets_are_typed_unseen(watched):
    script(watched, {"operation": 31})
    with Terminal(watched, SET_INITIATOR) as terminal:
        terminal.answer("#28692 :", "user")
        terminal.answer_secret("#28693 :", SECRET[:16])
        assert terminal.wait_for_end() == 0
        assert SECRET[:16].encode() not in terminal.written
    [call] = [call for call in watched.calls() if call.get("operation") == 31]
    assert SECRET[:16] in call["input"][1]


@pytest.mark.platforms("native", "sanitize")
def test_control_c_at_a_secret_ends_both_and_restores_the_terminal(watched):
    script(watched, {"operation": 31})
    with Terminal(watched, SET_INITIATOR) as terminal:
        terminal.wait_for_prompt("#28692 :")
        before = terminal.modes()
        terminal.type("user\r")
        terminal.wait_for_secret_prompt("#28693 :")
        terminal.type("\x03")
        terminal.wait_for_end()
        assert terminal.child.signalstatus == signal.SIGINT
        assert terminal.modes() == before


@pytest.mark.platforms("native", "sanitize")
def test_words_among_the_login_options_are_not_told(watched):
    script(watched, {"operation": 31})
    result, report = run_json(watched, [*SET_INITIATOR[:3], "-mp", SECRET])
    assert result.exit_code == 0
    assert report["arguments"] == [*SET_INITIATOR[:3], "-mp", "***"]
    assert SECRET.encode() not in result.output
