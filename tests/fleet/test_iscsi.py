"""Initiator, portals and targets: a playbook that is rehearsed, done and done again, and then sends its secrets once
more. Of three hosts the second refuses what its twin does not, and the third is as wanted from the start."""

import copy
import json

import pytest

from fleet import DEFAULT_HOST, are_readings, assert_was_as_wanted, noted, watching_tavrohost

# Functions of their own, so that no task changes what another one is rehearsed on.
PLAIN = "02-00-5E-10-00-02"
NEW = "02-00-5E-10-00-03"
FORGETTING = "02-00-5E-20-00-04"
CONNECTED = "02-00-5E-20-00-06"
DISKS = "iqn.2015-01.com.example:storage.disks"
BACKUP = "iqn.2015-01.com.example:storage.backup"
VAULT = "iqn.2015-01.com.example:storage.vault"
NAME = "iqn.2015-01.com.example:web-1"
# What the simulated network wants.
TARGET_SECRET, INITIATOR_SECRET = "vault-secret-1", "host-secret-1"
OWN_SECRET = "own-secret-77"
SECRETS = (TARGET_SECRET, INITIATOR_SECRET, OWN_SECRET)
PORTAL = {"address": "198.51.100.20", "port": "3260"}
CHAP = {"authentication": "one_way_chap", "target_chap_name": "web", "target_chap_secret": OWN_SECRET}
MUTUAL_CHAP = {
    "authentication": "mutual_chap", "target_chap_name": "vault", "target_chap_secret": TARGET_SECRET,
    "initiator_chap_name": "demo-host", "initiator_chap_secret": INITIATOR_SECRET}


def initiator(name=NAME, **options):
    return {"tavro.fleet.initiator": {"name": name, **options}}


def portal(mac, address, **options):
    return {"tavro.fleet.portal": {"mac": mac, "address": address, **options}}


def target(mac, name, **options):
    return {"tavro.fleet.target": {"mac": mac, "name": name, **options}}


TASKS = {
    "new portal": portal(NEW, "198.51.100.21", **CHAP),
    "old portal": portal(FORGETTING, "198.51.100.10", state="absent"),
    "busy portal": portal(CONNECTED, "198.51.100.20", state="absent"),
    "login": target(PLAIN, DISKS, address="198.51.100.20", data_digest=True),
    "other login": target(CONNECTED, DISKS, address="198.51.100.20", multipath=True, header_digest=True),
    "mutual login": target(PLAIN, VAULT, address="2001:DB8:0::20", **MUTUAL_CHAP),
    "logout": target(FORGETTING, DISKS, state="disconnected"),
    "removal": target(FORGETTING, BACKUP, state="absent"),
    "wrong secret": target(NEW, VAULT, address="2001:db8::20", **dict(MUTUAL_CHAP, target_chap_secret=OWN_SECRET)),
    # Sessions tell the initiator's name, so it is named last.
    "initiator": initiator(header_digest=True, **CHAP),
}
OF_ALL_HOSTS = ["initiator", "new portal", "login"]
CERTAIN = ["old portal", "logout", "removal"]
UNCERTAIN = ["initiator", "new portal", "login", "other login", "mutual login"]
WITH_SECRETS = ["initiator", "new portal", "mutual login"]
for task in set(TASKS) - set(OF_ALL_HOSTS):
    TASKS[task]["when"] = "inventory_hostname == 'host-1'"


def function_of(document, mac):
    return next(function for adapter in document["adapters"] for port in adapter["ports"]
                for function in port["functions"] if function["mac"] == mac and "iscsi" in function)["iscsi"]


def document_to_start_from():
    document = json.loads(DEFAULT_HOST.read_text())
    own = {"portal": PORTAL, "initiatorName": document["initiator"]["name"]}
    known = [{"name": name, "portal": PORTAL, "discovery": "SendTargets"} for name in (DISKS, BACKUP)]
    backup = {"id": 3, "target": BACKUP, **own, "authentication": "One-way CHAP", "targetChapName": "backup"}
    function_of(document, FORGETTING)["storage"] = {
        "portals": [{"address": "198.51.100.10"}, PORTAL], "targets": known, "lastSessionId": 3,
        "sessions": [{"id": 1, "target": DISKS, **own}, {"id": 2, "target": DISKS, **own}, backup]}
    function_of(document, CONNECTED)["storage"] = {
        "portals": [PORTAL], "targets": known, "lastSessionId": 1,
        "sessions": [{"id": 1, "target": DISKS, **own}]}
    return document


def document_as_wanted():
    """What the tasks of all hosts want is there."""
    document = document_to_start_from()
    document["initiator"].update(name=NAME, login={
        "multipath": "Yes", "headerDigest": "CRC32C", "dataDigest": "No", "authentication": "One-way CHAP",
        "targetChapName": "web", "targetSecret": OWN_SECRET})
    function_of(document, NEW)["storage"] = {"portals": [{"address": "198.51.100.21", "port": "3260"}]}
    session = {"id": 1, "target": DISKS, "portal": PORTAL, "initiatorName": NAME, "dataDigest": "CRC32C"}
    function_of(document, PLAIN)["storage"] = {
        "portals": [PORTAL], "targets": [{"name": DISKS, "portal": PORTAL, "discovery": "SendTargets"}],
        "lastSessionId": 1, "sessions": [session]}
    return document


def with_options(tasks, **options):
    """The tasks with further options of their modules."""
    return {name: {key: {**value, **options} if key.startswith("tavro.") else value for key, value in each.items()}
            for name, each in copy.deepcopy(tasks).items()}


class Plays:
    def __init__(self, fleet):
        self.fleet = fleet
        self.usual, self.refusing, self.same = fleet.hosts
        self.rehearsed = fleet.play(TASKS, "--check", "--diff")
        self.read = {host.name: host.operations() for host in fleet.hosts}
        program, self.notes = watching_tavrohost(fleet.folder, SECRETS)
        self.done = fleet.play(with_options(TASKS, tavrohost=str(program)), "--diff", "-vvv")
        self.called = self.same.operations()
        self.file_afterwards = self.usual.read()
        again = {task: TASKS[task] for task in CERTAIN + UNCERTAIN}
        always = with_options({task: TASKS[task] for task in WITH_SECRETS}, update_secret="always")
        self.again = fleet.play({**again, **{f"{task} always": each for task, each in always.items()}},
                                hosts=[self.usual])


@pytest.fixture(scope="module", name="plays")
def fixture_plays(make_fleet):
    fleet = make_fleet(3, document_to_start_from())
    fleet[2].write(document_as_wanted())
    fleet[1].refuse("The site does not allow this.", "SetInitiator", "AddPortal", "LogInToTarget")
    return Plays(fleet)


def storage(play, host, task, side):
    return play.function_that_differs(host, task, side)["iscsi"]["storage"]


def test_a_rehearsal_only_reads(plays):
    for host in plays.fleet.hosts:
        assert are_readings(plays.read[host.name])


@pytest.mark.parametrize("task", CERTAIN + UNCERTAIN)
def test_a_rehearsal_tells_what_the_change_does(plays, task):
    before, after = plays.rehearsed.result(plays.usual, task), plays.done.result(plays.usual, task)
    assert not before["failed"] and not after["failed"]
    assert before["changed"] and after["changed"]
    assert not before["restart_required"] and not after["restart_required"]
    warned = [text for text in before.get("warnings", []) if "not certain" in text]
    assert bool(warned) == (task in UNCERTAIN)
    # What a portal and an unknown target answer, no twin can know.
    if task not in ("new portal", "mutual login"):
        assert before["diff"] == after["diff"]


def test_a_login_at_an_unknown_target_is_a_warning(plays):
    result = plays.rehearsed.result(plays.usual, "mutual login")
    assert result["diff"] == {"before": {}, "after": {}}
    assert any("a copy of the host knows too little: The target does not reply" in text for text in result["warnings"])


def test_the_initiator_is_as_wanted(plays):
    there = plays.file_afterwards["initiator"]
    assert there["name"] == NAME
    assert there["login"] == {
        "multipath": "Yes", "headerDigest": "CRC32C", "dataDigest": "No", "authentication": "One-way CHAP",
        "targetChapName": "web", "targetSecret": OWN_SECRET, "initiatorChapName": "", "initiatorSecret": ""}
    login = {"authentication": "None", "headerDigest": "No", "targetChapName": ""}
    assert plays.done.result(plays.usual, "initiator")["diff"] == {
        "before": {"initiator": {"name": "iqn.2015-01.com.example:demo-host", "login": login}},
        "after": {"initiator": {"name": NAME, "login": {
            "authentication": "One-way CHAP", "headerDigest": "CRC32C", "targetChapName": "web"}}}}


def test_the_portals_are_as_wanted(plays):
    added, = function_of(plays.file_afterwards, NEW)["storage"]["portals"]
    assert (added["address"], added["port"], added["login"]["targetSecret"]) == ("198.51.100.21", "3260", OWN_SECRET)
    assert storage(plays.done, plays.usual, "old portal", "before") == {
        "portals": {"198.51.100.10:3260": {"address": "198.51.100.10", "port": "3260"}}}
    assert storage(plays.done, plays.usual, "old portal", "after") == {"portals": {}}


def test_the_sessions_are_as_wanted(plays):
    def sessions(mac):
        return [(session["target"], session["headerDigest"], session["dataDigest"], session["authentication"])
                for session in function_of(plays.file_afterwards, mac)["storage"]["sessions"]]
    assert sessions(PLAIN) == [(DISKS, "No", "CRC32C", "None"), (VAULT, "No", "No", "Mutual CHAP")]
    assert sessions(CONNECTED) == [(DISKS, "CRC32C", "No", "None")]
    assert not function_of(plays.file_afterwards, FORGETTING)["storage"]["sessions"]
    known = function_of(plays.file_afterwards, FORGETTING)["storage"]["targets"]
    assert [each["name"] for each in known] == [DISKS]


def test_only_what_is_needed_is_sent(plays):
    def commands(task):
        return [command["arguments"][3:] for command in plays.done.result(plays.usual, task)["commands"]]
    assert commands("other login") == [["-logout", DISKS, "1"], ["-login", DISKS, "198.51.100.20", "3260", "-hd"]]
    assert commands("logout") == [["-logout", DISKS, "1,2"]]
    assert commands("removal") == [["-logout", BACKUP, "3"], ["-remove", BACKUP]]
    assert commands("mutual login") == [["-login", VAULT, "2001:db8::20", "3260", "-mutualchap"]]


@pytest.mark.parametrize("task", CERTAIN + UNCERTAIN)
def test_a_second_time_changes_nothing(plays, task):
    result = plays.again.result(plays.usual, task)
    assert not result["failed"] and not result["changed"] and not result["commands"]


@pytest.mark.parametrize("task", WITH_SECRETS)
def test_secrets_are_sent_again_when_that_is_wanted(plays, task):
    result = plays.again.result(plays.usual, f"{task} always")
    assert not result["failed"] and result["changed"]
    last = result["commands"][-1]
    assert last == {"arguments": plays.done.result(plays.usual, task)["commands"][-1]["arguments"], "outcome": "done"}


def test_a_portal_in_use_stays(plays):
    for play in (plays.rehearsed, plays.done):
        result = play.result(plays.usual, "busy portal")
        assert result["failed"] and not result["changed"]
        assert result["msg"].endswith("The target portal is in use: a target is reached through it.")


def test_a_wrong_secret_is_told_by_the_target(plays):
    assert plays.rehearsed.result(plays.usual, "wrong secret")["changed"]
    result = plays.done.result(plays.usual, "wrong secret")
    assert result["failed"] and not result["changed"]
    assert result["msg"].endswith(": The target CHAP secret does not match.")


@pytest.mark.parametrize("task, message", [
    (portal(NEW, "198.51.100.22", **dict(CHAP, target_chap_secret="short-77")),
     "target_chap_secret: a CHAP secret has 12 to 16 characters"),
    (portal(NEW, "198.51.100.22", **dict(CHAP, target_chap_secret="two\nlines-7777")),
     "target_chap_secret: has a character that cannot be typed"),
    (initiator(authentication="one_way_chap", target_chap_name="web"),
     "target_chap_secret: is needed, since One-way CHAP is set anew with all that belongs to it"),
    (initiator(name="-onewaychap"), "name: '-onewaychap' is no iSCSI name"),
    (target(PLAIN, "-debug", address="198.51.100.20"), "name: '-debug' is no iSCSI name"),
    (portal(NEW, "198.51.100.22", port=70000), "port: 70000 is no TCP port, 1 to 65535"),
    (portal(NEW, "portal"), "address: portal is no IP address"),
])
def test_what_cannot_be_had_is_told_before_anything_is_sent(planned, task, message):
    assert planned(task, document_to_start_from()) == message


def test_chap_that_stays_needs_its_secret_again(planned):
    document = document_to_start_from()
    document["initiator"] = {"name": NAME, "login": {
        "multipath": "Yes", "authentication": "One-way CHAP", "targetChapName": "web"}}
    assert planned(initiator(), document) == []
    assert planned(initiator(multipath=False), document) == (
        "target_chap_secret: is needed, since One-way CHAP is set anew with all that belongs to it")
    assert planned(initiator(multipath=False, target_chap_secret=OWN_SECRET), document) == [
        ["-iscsi", "-setinitiator", NAME, "-mp", "-onewaychap"]]


@pytest.mark.parametrize("task", OF_ALL_HOSTS)
def test_a_host_that_refuses_fails_with_its_own_reason(plays, task):
    assert plays.rehearsed.result(plays.refusing, task)["changed"]
    result = plays.done.result(plays.refusing, task)
    assert result["failed"] and not result["changed"]
    assert result["msg"].endswith(": The site does not allow this. (site 7)")


def test_secrets_are_seen_by_the_host_only(plays):
    shown = "".join([play.output + json.dumps(play.results) for play in (plays.rehearsed, plays.done, plays.again)]
                    + [(host.folder / "trace").read_text() for host in plays.fleet.hosts])
    assert not [secret for secret in SECRETS if secret in shown]
    assert not [path for host in plays.fleet.hosts for path in host.temporary.rglob("*") if path.is_file()]


def test_secrets_travel_in_files_that_only_their_owner_can_read(plays):
    # They were there while tavrohost ran, and so the notes would tell.
    assert set(noted(plays.notes, "secret")) == set(SECRETS)
    assert not any(secret in line for line in noted(plays.notes, "arguments") for secret in SECRETS)
    assert {line.split()[0] for line in noted(plays.notes, "file")} == {"600"}
    assert {line.split()[0] for line in noted(plays.notes, "folder")} == {"700"}


@pytest.mark.parametrize("task", OF_ALL_HOSTS)
def test_a_host_that_is_as_wanted_is_only_read(plays, task):
    assert_was_as_wanted(task, plays.same, plays.called, plays.rehearsed, plays.done)
