"""Holds what the manual says of failures to the program: a library that refuses, call by call, by a script."""

import re

import pytest

from program import ROOT

REASON = "\nError Details\n\nMessage: M\n"
PORT = "02-00-5E-10-00-00"
ISCSI_PORT = "02-00-5E-10-00-02"


@pytest.fixture
def host(sandbox):
    """The built-in host, with real messages."""
    sandbox.write_script(None)
    return sandbox


def refuse(host, *calls):
    """Has the library refuse these calls, with a reason."""
    host.write_script({"answers": [call | {"status": 5, "error": {"message": "M"}} for call in calls]})


def refuse_operation(host, number):
    refuse(host, {"call": "DoOperation", "operation": number})


def output_of(host, arguments, answers=""):
    return host.run(arguments.split(), answers).output.decode()


@pytest.mark.platforms("native")
def test_a_personality_that_cannot_be_read_is_asked_for_all_the_same(host):
    refuse_operation(host, 60)
    assert output_of(host, f"-res {PORT} -get") == "\n" + REASON
    output = output_of(host, f"-res {PORT} -set", "2\ny\n")
    assert output.startswith("\n" + REASON)
    assert "Personality (1: iSCSI, 2: FCoE)" in output.removeprefix("\n" + REASON)
    assert any(call.get("operation") == 61 for call in host.calls())


@pytest.mark.platforms("native")
def test_a_personality_that_is_refused_is_told_by_the_reason_alone(host):
    refuse_operation(host, 61)
    assert re.search(r"Apply these changes\? \(Y/N\) : \n?" + re.escape(REASON) + "$",
                     output_of(host, f"-res {PORT} -set", "2\ny\n"))


@pytest.mark.platforms("native")
def test_an_adapter_state_that_cannot_be_read_is_told_by_the_reason_alone_for_each_function(host):
    refuse_operation(host, 70)
    output = output_of(host, "-about")
    asked = [call["request"] for call in host.calls() if call.get("operation") == 70]
    assert len(asked) > 1
    assert output.startswith(REASON * len(asked)) and output.count("Error Details") == len(asked)
    assert output.removeprefix(REASON * len(asked)).strip()


@pytest.mark.platforms("native")
@pytest.mark.parametrize("call, sentence", [
    ("GetHostName", "The host name could not be read."),
    ("GetDiscoveredAdapters", "The list of adapters could not be read."),
    ("GetPortWWNs", "The functions of the port could not be read."),
])
def test_the_listing_tells_once_more_what_was_told_before_every_command(host, call, sentence):
    refuse(host, {"call": call})
    told = sentence + "\n" + REASON
    before = output_of(host, "-about").count(told)
    assert before >= 1
    output = output_of(host, "-showadapter")
    assert output.count(told) > before
    assert output.endswith("\nNo adapter port could be listed.\n" + REASON)


def import_file(host, text):
    (host.work / "cnadiscovery.xml").write_text(text, encoding="utf-8")


def sample():
    return (ROOT / "docs" / "cnadiscovery.xml").read_text(encoding="utf-8")


@pytest.mark.platforms("native")
def test_an_adapter_in_the_initiator_s_place_is_passed_over(host):
    import_file(host, re.sub("<Initiator_Login>.*?</Initiator_Login>", "", sample(), flags=re.DOTALL))
    output = output_of(host, "-import")
    assert re.search(r"^\s*Adapters Found, if Any$", output, re.MULTILINE)
    assert " Ports Found : 0\n" in output and " Failed Operations : 0\n" in output
    assert not any(call.get("operation") in {3, 4, 11, 31} for call in host.calls())


@pytest.mark.platforms("native")
def test_a_port_of_the_file_that_cannot_be_read_is_not_counted(host):
    refuse(host, {"call": "GetPortWWNs"})
    import_file(host, sample())
    output = output_of(host, "-import")
    told = output[output.index("Please wait..."):]
    assert "The functions of a port in the file could not be read." in told
    assert "Error Details" not in told and " Failed Operations : 0\n" in told


@pytest.mark.platforms("native")
def test_without_the_host_s_name_the_import_says_nothing_more(host):
    refuse(host, {"call": "GetHostName"})
    import_file(host, sample())
    assert output_of(host, "-import").strip() == ("The host name could not be read.\n" + REASON).strip()
    assert not any(call.get("call") == "DoOperation" for call in host.calls())
