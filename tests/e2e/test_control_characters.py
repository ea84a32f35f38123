"""Names come from the fabric and from targets: control characters in them do not act on a terminal, and arrive in a
pipe as they are."""

import pytest

from program import DEFAULT_LOCALE
from terminal import Terminal

PORT = "02-00-5E-00-00-01"
CLEAR = "\x1b[2J"
TITLE = "\x1b]0;owned\x07"
BYTE_9B = "\uf79b"  # how a script writes this byte, which is no character of UTF-8
CYRILLIC = "хост"
WIDENED = CYRILLIC.encode().decode("latin-1")  # holds 81, 82 and 85
RULE = "\t" + "-" * 67
GAP = " " * 28


def script(*answers):
    return {"messages": "numbers", "model": False, "answers": list(answers)}


# The arguments, the script and the lines that are printed.
NAMES = (
    ["-showadapter"],
    script(
        {"call": "GetHostName", "output": CYRILLIC},
        {"call": "GetDiscoveredAdapters", "output": [[f"A{CLEAR}B\x00C", 1, [f"P{TITLE}\r\x7f{BYTE_9B}Q"]]]},
        {"call": "GetPortWWNs", "adapter": f"A{CLEAR}B\x00C", "port": f"P{TITLE}\r\x7f{BYTE_9B}Q",
         "output": [[["", "address\r", 0]], [["key\x01", 0, f"{CLEAR}second"]]]},
    ),
    [
        RULE,
        " " * 34 + f"#24833 : {WIDENED}",
        RULE,
        f"\t#24834{GAP}: A{CLEAR}B\x00C",
        "",
        f"\t[P{TITLE}\r\x7f\x9bQ]",
        "",
        f"\t#24840{GAP}: 0",
        f"\t#24841{GAP}: address\r",
        f"\t#24842{GAP}: Ethernet",
        f"\t#24848{GAP}: {CLEAR}second",
        f"\t#24849{GAP}: key\x01",
        "\t" + "-" * 78,
    ],
)
PORTALS = (
    ["-iscsi", PORT, "-portal", "-listall"],
    script({"call": "DoOperation", "operation": 6, "output": [[f"h{CLEAR}", "1\r2\x003"], [f"{BYTE_9B}x", TITLE]]}),
    [" ", "#28691", "", " #25601 : ", "-" * 54, " ", "#25602", "-" * 54,
     f"h{CLEAR} : \t1\r2\x003", f"\x9bx : \t{TITLE}", "-" * 54],
)
ERROR_DETAILS = (
    ["-nonsense"],
    script({"call": "GetHostName", "status": 1, "error": {
        "code": 1, "message": f"{CLEAR}\x9b1m語", "details": "x\ry", "action": TITLE, "additional": "\x7f\x85\x00e\tf"}}),
    [" ", "#24837", "", "Error Details", "", f"Message: {CLEAR}\x9b1m語", "Details: [x\ry]", f"Action: {TITLE}",
     "Additional: \x7f\x85\x00e\tf", " ", "#28674"],
)
ARGUMENT = (
    ["-fcoe", f"{CLEAR}\r\x7f\x01", "-target", "-listactive"],
    script({"call": "DoOperation", "operation": 35, "output": []}),
    [RULE, " " * 35 + f"#20999 : {CLEAR}\r\x7f\x01", RULE, "-" * 78],
)
RUNS = {"names": NAMES, "portals": PORTALS, "error details": ERROR_DETAILS, "an argument": ARGUMENT}


def masked(line):
    """Each control character but the tab is one question mark."""
    return "".join("?" if character != "\t" and (character < " " or "\x7f" <= character <= "\x9f") else character
                   for character in line)


@pytest.mark.parametrize("run", RUNS)
def test_on_a_terminal_they_are_question_marks(sandbox, run):
    arguments, answers, expected = RUNS[run]
    sandbox.write_script(answers)
    with Terminal(sandbox, arguments) as terminal:
        assert terminal.wait_for_end() == 0
        lines = terminal.lines()
        if not sandbox.platform.is_windows:  # there the console steers the terminal that it is drawn on
            assert terminal.written.decode().split("\r\n") == [masked(line) for line in expected] + [""]
    assert lines == [masked(line).expandtabs(8).rstrip() for line in expected]


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("run", RUNS)
def test_in_a_pipe_they_are_themselves(sandbox, run):
    arguments, answers, expected = RUNS[run]
    sandbox.write_script(answers)
    result = sandbox.run(arguments)
    assert result.output.split(b"\n") == [line.encode() for line in expected] + [b""]


@pytest.mark.platforms("windows")
def test_in_a_pipe_on_windows_they_are_themselves(sandbox):
    """The code page of the pipe has a place for these."""
    portals = [[f"h{CLEAR}{TITLE}", "1\r2\x003\x7f"]]
    sandbox.write_script(script({"call": "DoOperation", "operation": 6, "output": portals}))
    result = sandbox.run(PORTALS[0])
    expected = f"\nh{CLEAR}{TITLE} : \t1\r2\x003\x7f\n"
    assert sandbox.platform.encode(expected, DEFAULT_LOCALE) in result.output
