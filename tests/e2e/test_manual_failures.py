"""Holds what the manual says of failures to the program: a library that refuses, call by call, by a script."""

import re

import pytest

from dialogue_page import CODE, MANUAL, SECTION, read_dialogues
from program import ROOT
from test_manual import COMMANDS, OUTCOME
from test_manual_scripts import TABLE, code_of, run_json

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


OPERANDS = {
    "<MAC>": PORT, "<portWWN>": "10:00:02:00:5E:10:00:04", "<WWN>": "10:00:02:00:5E:10:AA:01",
    "<Initiator Name>": "iqn.2015-01.com.example:web-1", "<iSNS Server IP>": "192.0.2.6", "<IP Address>": "192.0.2.77",
    "<Portal IP>": "198.51.100.21", "<IP>": "198.51.100.21", "<VLAN ID>": "0", "<Subnet Mask>": "255.255.255.0",
    "<Gateway>": "192.0.2.1", "<Count>": "3", "<time in secs>": "3",
}
ADDRESSES = {"-ipv6": {"<IP Address>": "2001:db8::77", "<Gateway>": "2001:db8::1"}, "-iscsi": {"<MAC>": ISCSI_PORT},
             "-npar": {"<MAC>": "02-00-5E-20-00-00"}}
TARGETS = {"-iscsi": "iqn.2015-01.com.example:storage.disks", "-fcoe": "50:00:02:00:5E:40:00:01"}
OPTIONAL = re.compile(r" (?:\[(?!-)[^\[\]]*(?:\[[^\]]*\])?\]|\.\.\.)")  # but options, which are typed
NUMBERS = {name: int(number) for name, number in re.findall(
    r"^    (\w+) = (\d+),$", (ROOT / "tavroapi" / "operation_code.h").read_text(encoding="utf-8"), re.MULTILINE)}
# These ask questions, or no operation of theirs can be refused: what they say stands in other tests.
ELSEWHERE = {"-help", "-about", "-showadapter", "-import", "-npar <MAC> -set", "-res <MAC> -set",
             "-iscsi <MAC> -setbootconfig", "-fcoe <portWWN> -setbootconfig", "-fcoe <portWWN> -setdcb",
             "-ethernet <MAC> -setadapinfo"}
TOLD = [(form, dict(OUTCOME.findall(text))["Failure"]) for form, text in COMMANDS if form not in ELSEWHERE]


def typed(form):
    """A command of this form for the built-in host."""
    words = OPTIONAL.sub("", form).replace("[", "").replace("]", "")
    values = OPERANDS | {"<Target Name>": TARGETS.get(form.split()[0])}
    for word, others in ADDRESSES.items():
        values |= others if word in form else {}
    return re.sub("<[^>]*>", lambda operand: values[operand[0]], words)


@pytest.mark.platforms("native")
@pytest.mark.parametrize("form, told", TOLD, ids=[form for form, _ in TOLD])
def test_a_refused_operation_is_told_as_the_page_has_it(host, form, told):
    command = typed(form)
    deciding = {NUMBERS[name] for name in TABLE[code_of(command)][1]}
    refuse(host, *({"call": "DoOperation", "operation": number} for number in deciding))
    if "-target -login" in form:
        output = output_of(host, command, "y\n").split(" (y/n) : ")[-1]
    else:
        output = output_of(host, command)
    assert deciding & {call.get("operation") for call in host.calls()}, "the operation was not reached"
    if "as with `-ipv4`" in told:
        same = form.replace("-ipv6", "-ipv4").partition("<VLAN ID>")[0]
        [told] = [other for start, other in TOLD if start.startswith(same)]
    told = " ".join(told.split())
    quoted = re.findall(r"`([^`]+)`[^`]*? with(?:out)? the reason", told)
    sentences = [sentence for sentence in quoted if sentence in output]
    if "eason alone" in told:
        assert output.endswith(REASON)
        assert output.removesuffix(REASON).strip() in ("", "Please wait...")
    elif "without the reason" in told:
        assert sentences and "Error Details" not in output
    elif "with the reason" in told:
        assert sentences and output.endswith(REASON)
    else:
        assert told.lower().startswith("nothing is said") and output == ""


DIALOGUES = {name: dialogue for name, dialogue in read_dialogues().items() if name != "Value editor"}
SECTIONS = dict(SECTION.findall((MANUAL / "dialogues.md").read_text(encoding="utf-8")))
# What a section says of a failure, and whether the reason follows what it quotes.
FAILURES = [
    (re.compile(r"[Aa] failure prints (`[^`]+`) and the library's reason\."), True),
    (re.compile(r"; a failure prints the library's reason\.()"), True),
    (re.compile(r"; a failure is told with the library's reason under \"Error Details\"\.()"), True),
    (re.compile(r"; a failure prints nothing\.()"), False),
    (re.compile(r", and so does a failure: ()"), False),
    (re.compile(r"The end is always (`[^`]+`), also when the library refused:"), False),
]


@pytest.mark.platforms("native")
@pytest.mark.parametrize("name", DIALOGUES)
def test_a_refusal_after_the_last_answer_is_told_as_the_page_has_it(host, name):
    """And tavrohost tells of it in any case."""
    dialogue = DIALOGUES[name]
    command = " ".join(dialogue.arguments)
    refuse(host, *({"call": "DoOperation", "operation": NUMBERS[operation]}
                   for operation in TABLE[code_of(command)][1]))
    status, report = run_json(host, command)
    assert (status, report["outcome"], report["error"]["message"]) == (1, "refused", "M")
    section = " ".join(SECTIONS[name].split())
    [(found, has_reason)] = [(found, has_reason) for form, has_reason in FAILURES if (found := form.search(section))]
    assert report["output"].endswith(REASON) == has_reason
    output = report["output"].removesuffix(REASON)
    assert "Error Details" not in output
    if found[1]:
        assert output.strip().endswith(CODE.fullmatch(found[1])[1])
