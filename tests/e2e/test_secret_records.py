"""CHAP secrets stay out of the debug log, and out of a trace that is not told to show them."""

import json

import pytest

NAME = "iqn.2015-01.com.example:host"
MAC = "02-00-5E-10-00-02"
TARGET_SECRET = "Zk7!pwabcdef"
INITIATOR_SECRET = "Qm4?rsuvwxyz1234"
REFUSED_SECRET = "Short9!"
TYPED = f"target user\n{REFUSED_SECRET}\n{TARGET_SECRET}\ninitiator user\n{INITIATOR_SECRET}\n"
DIALOGUES = {
    "initiator": (31, ["-iscsi", "-setinitiator", NAME, "-mutualchap", "-debug"], TYPED),
    "login": (11, ["-iscsi", MAC, "-target", "-login", NAME, "192.0.2.20", "3260", "-mutualchap", "-debug"],
              "y\n" + TYPED),
}


@pytest.mark.parametrize("status", [0, 5], ids=["done", "failed"])
@pytest.mark.parametrize("dialogue", DIALOGUES)
def test_secrets_stay_out(sandbox, dialogue, status):
    operation, arguments, typed = DIALOGUES[dialogue]
    sandbox.write_script({"messages": "numbers", "model": False, "answers": [
        {"call": "DoOperation", "operation": operation, "status": status}]})
    log = sandbox.work / "tavrocli.log"

    shown = sandbox.run(arguments, typed)
    given = json.dumps([call["input"] for call in sandbox.calls() if call.get("operation") == operation])
    assert TARGET_SECRET in given and INITIATOR_SECRET in given
    log_when_shown = log.read_text(encoding="utf-8")

    hidden = sandbox.run(arguments, typed, env={"TAVROSIM_TRACE_SECRETS": None, "TAVROSIM_TRACE_OUTPUTS": "1"})
    trace = sandbox.trace.read_text(encoding="utf-8")
    assert "initiator user" in trace
    log_when_hidden = log.read_text(encoding="utf-8")[len(log_when_shown):]

    for text in (log_when_shown, log_when_hidden):
        assert f" {operation} request" in text
    outputs = [result.output.decode() for result in (shown, hidden)]
    for text in (trace, log_when_shown, log_when_hidden, *outputs):
        assert [secret for secret in (TARGET_SECRET, INITIATOR_SECRET, REFUSED_SECRET) if secret in text] == []
    assert (hidden.output, hidden.errors, hidden.exit_code) == (shown.output, b"", 0)
