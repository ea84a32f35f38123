"""The example that takes an iSCSI port from bare to storage."""

import json

import pytest

from fleet import are_readings, noted, watching_tavrohost

PLAYBOOK = "iscsi_storage.yml"
MAC = "02-00-5E-10-00-03"
NAME = "iqn.2015-01.com.example:server-7"
DISKS, BACKUP, VAULT = (f"iqn.2015-01.com.example:storage.{name}" for name in ("disks", "backup", "vault"))
# What the simulated network wants.
CHAP = {
    "backup": {"target_name": "backup", "target_secret": "example-secret"},
    "vault": {"target_name": "vault", "target_secret": "vault-secret-1",
              "initiator_name": "demo-host", "initiator_secret": "host-secret-1"},
}
VARIABLES = {
    "storage_port": {"mac": MAC, "address": "192.0.2.31", "subnet_mask": "255.255.255.0", "gateway": "192.0.2.1"},
    "storage_initiator": NAME,
    "storage_portals": [{"address": "198.51.100.20"}, {"address": "2001:db8::20", "port": 3260}],
    "storage_targets": [
        {"name": DISKS, "address": "198.51.100.20", "header_digest": True},
        {"name": BACKUP, "address": "198.51.100.20", "authentication": "one_way_chap", "chap": "backup"},
        {"name": VAULT, "address": "2001:db8::20", "authentication": "mutual_chap", "chap": "vault"}],
    "storage_chap": CHAP,
}
LIMIT = 77  # seconds
TASKS = ["Give the port its address", "Name the initiator", "Know the portals", "Log in to the targets"]


def function_of(document):
    function, = [function["iscsi"] for adapter in document["adapters"] for port in adapter["ports"]
                 for function in port["functions"] if function["mac"] == MAC]
    return function


class Plays:
    def __init__(self, fleet):
        self.host = fleet[0]
        self.host.more.update(VARIABLES)
        self.rehearsed = fleet.play(None, "--check", playbook=PLAYBOOK)
        self.operations = self.host.operations()
        self.file_after_rehearsal = self.host.read()
        self.done = fleet.play(None, "-vvv", playbook=PLAYBOOK)
        program, self.notes = watching_tavrohost(fleet.folder, ["secret"])
        self.again = fleet.play(None, "-e", f"fleet_tavrohost={program}", "-e", f"fleet_time_limit={LIMIT}",
                                playbook=PLAYBOOK)
        self.always = fleet.play(None, "-e", "storage_update_secret=always", playbook=PLAYBOOK)


@pytest.fixture(scope="module", name="plays")
def fixture_plays(make_fleet):
    return Plays(make_fleet(1))


def test_each_play_comes_to_its_end(plays):
    for play in (plays.rehearsed, plays.done, plays.again, plays.always):
        assert play.status == 0, play.output


@pytest.mark.parametrize("task", TASKS)
def test_a_rehearsal_tells_what_is_changed(plays, task):
    assert plays.rehearsed.result(plays.host, task)["changed"] and plays.done.result(plays.host, task)["changed"]


def test_a_rehearsal_only_reads(plays):
    assert plays.file_after_rehearsal["initiator"]["name"] == "iqn.2015-01.com.example:demo-host"
    assert not function_of(plays.file_after_rehearsal).get("storage", {}).get("portals")
    assert are_readings(plays.operations)


@pytest.mark.parametrize("task", TASKS)
def test_a_second_time_changes_nothing(plays, task):
    assert not plays.again.result(plays.host, task)["changed"]


def test_secrets_are_sent_again_when_that_is_wanted(plays):
    for task in TASKS[:-1]:
        assert not plays.always.result(plays.host, task)["changed"]
    logins = plays.always.result(plays.host, TASKS[-1])["results"]
    assert [login["changed"] for login in logins] == [False, True, True]
    assert all(login["commands"][-1]["arguments"][3] == "-login" for login in logins[1:])


def test_program_and_time_limit_are_those_of_the_inventory(plays):
    calls = noted(plays.notes, "arguments")
    assert len(calls) == 1 + 1 + 2 + 3 and all(f"--timeout {LIMIT}" in call for call in calls)


def test_the_host_has_its_storage(plays):
    document = plays.host.read()
    part = function_of(document)
    assert document["initiator"]["name"] == NAME
    assert part["tcpIp"]["address"] == "192.0.2.31"
    assert [portal["address"] for portal in part["storage"]["portals"]] == ["198.51.100.20", "2001:db8::20"]
    assert [(session["target"], session["headerDigest"], session["authentication"])
            for session in part["storage"]["sessions"]] == [
        (DISKS, "CRC32C", "None"), (BACKUP, "No", "One-way CHAP"), (VAULT, "No", "Mutual CHAP")]


def test_no_secret_is_shown(plays):
    played = (plays.rehearsed, plays.done, plays.again, plays.always)
    shown = "".join(play.output + json.dumps(play.results) for play in played)
    shown += (plays.host.folder / "trace").read_text()
    secrets = [chap[key] for chap in CHAP.values() for key in chap if key.endswith("secret")]
    assert len(secrets) == 3 and not [secret for secret in secrets if secret in shown]
