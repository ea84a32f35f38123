"""Tasks that fail or cannot be rehearsed: rehearsed, and done. The second of two hosts refuses what its twin does."""

import importlib

import pytest
from test_iscsi import CONNECTED, DISKS, document_to_start_from, function_of, target

STORAGE = "02-00-5E-10-00-02"
SECRET = "typed-by-mistake"
OTHER_PORTAL = {"address": "198.51.100.21", "port": "3260"}
# The initiator is set before the address is refused, which another function has.
IMPORTED = """<CNA_Configuration><Initiator_Login><Initiator_Name value="iqn.2015-01.com.example:partly"/>
<Multipath value="Yes"/><Header_Digest value="No"/><Data_Digest value="No"/><Auth_Method value="None"/>
</Initiator_Login><Adapter number="0"><Function port="Port 1" number="2"><TCP_IP_Setting><Dhcp_Enabled value="No"/>
<IP_Address value="192.0.2.10"/><Subnet_Mask value="255.255.255.0"/><Default_Gateway value="192.0.2.1"/>
</TCP_IP_Setting></Function></Adapter></CNA_Configuration>"""


def command(*arguments):
    return {"tavro.fleet.cli": {"arguments": list(arguments)}}


TASKS = {
    "only session": target(CONNECTED, DISKS, address="198.51.100.20", multipath=False),
    "reply": command("-iscsi", STORAGE, "-ping", "198.51.100.20"),
    "no reply": command("-iscsi", STORAGE, "-ping", "203.0.113.77"),
    "in use": command("-iscsi", STORAGE, "-modifytcpip", "-static", "0", "192.0.2.10", "255.255.255.0", "192.0.2.1"),
    "secret": command("-iscsi", "-setinitiator", "iqn.2015-01.com.example:x", "-onewaychap", "web", SECRET),
    "servers": {"tavro.fleet.isns": {"servers": ["192.0.2.6"], "state": "exact"}},
    "import": {"tavro.fleet.config_import": {"content": IMPORTED}},
}
FAILING = ["only session", "no reply", "in use", "secret", "import"]
for task in set(TASKS) - {"servers"}:
    TASKS[task]["when"] = "inventory_hostname == 'host-1'"


class Plays:
    def __init__(self, fleet):
        self.usual, self.refusing = fleet.hosts
        self.refusing.refuse("The site keeps this.", "RemoveIsnsServer")
        self.rehearsed = fleet.play(TASKS, "--check", "--diff")
        self.done = fleet.play(TASKS, "--diff")
        self.afterwards = self.usual.read()

    def both(self, task):
        return self.rehearsed.result(self.usual, task), self.done.result(self.usual, task)


@pytest.fixture(scope="module", name="plays")
def fixture_plays(make_fleet):
    document = document_to_start_from()
    storage = function_of(document, CONNECTED)["storage"]
    storage["targets"].append({"name": DISKS, "portal": OTHER_PORTAL, "discovery": "SendTargets"})
    storage["sessions"].append(dict(storage["sessions"][0], id=2, portal=OTHER_PORTAL))
    storage.update(lastSessionId=2)
    storage["portals"].append(OTHER_PORTAL)
    return Plays(make_fleet(2, document))


@pytest.mark.parametrize("task", FAILING)
def test_what_is_refused_fails(plays, task):
    assert plays.done.result(plays.usual, task)["failed"]


def test_a_session_is_not_ended_when_it_cannot_be_opened_anew(plays):
    for result in plays.both("only session"):
        assert result["failed"] and not result["changed"] and not result["commands"]
        assert result["msg"].startswith("Nothing was sent, since a copy of the host does not do tavrocli -iscsi ")
        assert ": There is a session with the target through another portal already." in result["msg"]
    sessions = function_of(plays.afterwards, CONNECTED)["storage"]["sessions"]
    assert [session["portal"] for session in sessions] == [{"address": "198.51.100.20", "port": "3260"}, OTHER_PORTAL]


@pytest.mark.parametrize("task, changes", {"reply": False, "no reply": False, "in use": True}.items())
def test_what_a_twin_refuses_without_knowing_is_a_warning(plays, task, changes):
    result = plays.rehearsed.result(plays.usual, task)
    assert not result["failed"] and result["changed"] == changes
    assert any(": not rehearsed, since a copy of the host knows too little: " in text for text in result["warnings"])


def test_what_was_not_rehearsed_can_be_done(plays):
    result = plays.done.result(plays.usual, "reply")
    assert not result["failed"] and not result["changed"] and result["commands"][0]["outcome"] == "done"


def test_what_was_done_before_a_refusal_is_told(plays):
    result = plays.done.result(plays.refusing, "servers")
    assert result["failed"] and result["changed"]
    assert [each["outcome"] for each in result["commands"]] == ["done", "refused"]
    assert result["diff"] == {
        "before": {"isnsServers": ["192.0.2.5"]}, "after": {"isnsServers": ["192.0.2.5", "192.0.2.6"]}}


def test_an_import_that_is_partly_done_is_told_by_its_rehearsal(plays):
    for result in plays.both("import"):
        assert result["failed"] and result["changed"]
        assert ": The address is in use on this host. " in result["msg"]
        assert result["diff"] == {
            "before": {"initiator": {"name": "iqn.2015-01.com.example:demo-host"}},
            "after": {"initiator": {"name": "iqn.2015-01.com.example:partly"}}}


def test_words_that_can_be_secrets_are_masked(plays):
    for result in plays.both("secret"):
        assert result["failed"] and "-onewaychap *** ***: " in result["msg"]
        assert result["commands"][0]["arguments"][-3:] == ["-onewaychap", "***", "***"]


def test_answers_to_one_question_follow_one_another(collections):
    root = "ansible_collections.tavro.fleet.plugins.modules"
    module = importlib.import_module(f"{root}.cli")
    assert module.__file__.startswith(str(collections))

    def entry(lines=(), secret=None, message=None, prompt=None):
        return {"message": message, "prompt": prompt, "lines": list(lines), "secret": secret}
    answers = module.answers_by_question([
        entry(["1", "2"], message=29187), entry(["x"], prompt="New:"), entry(["3"], message=29187),
        entry(secret="first", message=26693), entry(secret="second", message=26693)])
    secrets = answers.pop(26693)
    assert answers == {29187: ["1", "2", "3"], "New:": ["x"]}
    assert [secret.text for secret in secrets] == ["first", "second"]
