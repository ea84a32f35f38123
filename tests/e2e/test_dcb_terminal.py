"""The dialogue about data center bridging on a real terminal. The list of priorities is read in another way than the
other answers; no answer may be lost or taken twice around it."""

import pytest

from terminal import Terminal

PORT = "10:00:02:00:5E:10:00:04"
SCRIPT = {
    "messages": "numbers",
    "model": False,
    "answers": [
        {"call": "DoOperation", "operation": 33, "output": [""] * 7 + ["lpfc"]},
        {"call": "DoOperation", "operation": 46, "output": ["Enable", "Enable", "3", "3", "0:1", "0:3", "100"]},
    ],
}

# The numbers of the prompts, and what is typed then.
ACCEPTED = (
    [(22018, "y"), (22019, "n"), (22021, "y"), (22022, "3"), (22022, "3,4"),
     (22024, "y"), (22025, "0:4,1:3"), (22032, "y"), (22038, "0:1,1:2")],
    ["Disable", "Enable", "3 4", "3", "0:1,1:2", "0:4,1:3", "100"],
)
REFUSED_FIRST = (
    [(22018, "y"), (22019, "y"), (22021, "x"), (22021, "y"), (22022, "1,2"),
     (22021, "n"), (22024, "n"), (22032, "n")],
    ["Enable", "Enable", "1 2", "3", "0:1", "0:3", "100"],
)


@pytest.mark.parametrize("dialogue, expected", [ACCEPTED, REFUSED_FIRST], ids=["accepted", "refused first"])
def test_every_answer_reaches_its_question(sandbox, dialogue, expected):
    sandbox.write_script(SCRIPT)
    with Terminal(sandbox, ["-fcoe", PORT, "-setdcb"]) as terminal:
        for number, typed in dialogue:
            terminal.answer(f"#{number} :", typed)
        terminal.wait_for("DCB Configuration Applied!!")
        assert terminal.wait_for_end() == 0
    sent = [call["input"] for call in sandbox.calls() if call.get("operation") == 45]
    assert sent == [expected]
