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


LOGIN = f'<Target_Secret value="{TARGET_SECRET}"/><Initiator_Secret value="{INITIATOR_SECRET}"/>'
CONFIGURATION = f"""<Config>
  <Initiator_Login>{LOGIN}</Initiator_Login>
  <Adapter number="1"><Function port="Port 1" number="2">
    <Portal_Login>{LOGIN}</Portal_Login>
    <Target_Login><Status value="Connected"/>{LOGIN}</Target_Login>
  </Function></Adapter>
</Config>"""


def test_imported_secrets_stay_out(sandbox):
    (sandbox.work / "cnadiscovery.xml").write_text(CONFIGURATION, encoding="utf-8")
    sandbox.write_script({"messages": "numbers", "model": False, "answers": [
        {"call": "GetDiscoveredAdapters", "output": [["Adapter", 1, ["Port 1"]]]},
        {"call": "GetPortWWNs", "output": [[["K", "A", 2]], [["K", 2, "S"]]]}]})
    shown = sandbox.run(["-import", "-debug"])
    given = {call["operation"]: json.dumps(call["input"])
             for call in sandbox.calls() if call["call"] == "DoOperation"}
    assert sorted(given) == [4, 11, 31]
    assert all(TARGET_SECRET in text and INITIATOR_SECRET in text for text in given.values())

    sandbox.run(["-import", "-debug"], env={"TAVROSIM_TRACE_SECRETS": None, "TAVROSIM_TRACE_OUTPUTS": "1"})
    trace = sandbox.trace.read_text(encoding="utf-8")
    log = (sandbox.work / "tavrocli.log").read_text(encoding="utf-8")
    assert trace.count('"***"') == 6 and " 31 request" in log
    for text in (trace, log, shown.output.decode()):
        assert TARGET_SECRET not in text and INITIATOR_SECRET not in text
