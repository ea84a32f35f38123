"""What was recorded can be replayed: a trace of the model, taken as a script, gives the same bytes."""

import pytest

ANSWER_KEYS = ("call", "operation", "request", "adapter", "port", "status", "output", "error", "result")
BROKEN_HOST = '{"adapters": ['


def as_answers(calls):
    return [{key: call[key] for key in ANSWER_KEYS if key in call} | {"times": 1} for call in calls]


@pytest.mark.parametrize("host", [None, BROKEN_HOST], ids=["default host", "broken host file"])
@pytest.mark.parametrize("arguments", [["-showadapter"], ["-nonsense"]], ids=" ".join)
def test_circle(sandbox, arguments, host):
    if host is not None:
        sandbox.host.write_text(host, encoding="utf-8")
    sandbox.write_script(None)
    recorded = sandbox.run(arguments, env={"TAVROSIM_TRACE_OUTPUTS": "1"})
    answers = as_answers(sandbox.calls())
    assert recorded.output and answers

    sandbox.host.unlink(missing_ok=True)
    sandbox.write_script({"model": False, "answers": answers})
    replayed = sandbox.run(arguments, env={"TAVROSIM_TRACE_OUTPUTS": "1"})
    assert replayed == recorded
    assert as_answers(sandbox.calls()) == answers


def test_the_circle_is_not_empty(sandbox):
    """The default host has something to list, so that the circle above says something."""
    sandbox.write_script(None)
    text = sandbox.run(["-showadapter"]).output.decode()
    assert text.count("[Port ") >= 2
    assert all(protocol in text for protocol in ("Ethernet", "FCoE", "iSCSI"))
