"""The example that audits a fleet: hosts that are as wanted, of which nothing is wanted, that differ, cannot be so,
cannot be read, or do not answer; one more cannot be so since its variables have mistakes."""

import os
import subprocess

import pytest

from fleet import TAVROHOST, are_readings
from test_partitions_playbook import DIVIDED, OTHER, two_adapters

PLAYBOOK = "audit.yml"
MAC = "02-00-5E-10-00-03"
NAME = "iqn.2015-01.com.example:demo-host"
DISKS = "iqn.2015-01.com.example:storage.disks"
# What the simulated host has from the start, and the portal and session that it is given.
WANTED = {
    "storage_port": {"mac": MAC, "address": "192.0.2.21"},
    "storage_initiator": NAME,
    "storage_portals": [{"address": "198.51.100.20"}],
    "storage_targets": [{"name": DISKS, "address": "198.51.100.20"}],
    "port_personalities": [{"mac": OTHER, "personality": "iscsi"}],
}
STATES = ["as wanted", "nothing wanted", "differs", "refused", "unread", "unreachable"]
MISTAKEN = "mistaken"
IN_WHICH_STATE = "Tell which hosts are in which state"
STRICT = "Fail for a host that is not as wanted"


def document_as_wanted():
    document = two_adapters()
    part, = [function["iscsi"] for adapter in document["adapters"] for port in adapter["ports"]
             for function in port["functions"] if function["mac"] == MAC and "iscsi" in function]
    portal = {"address": "198.51.100.20", "port": "3260"}
    part["tcpIp"]["vlanPriority"] = "3"
    part["storage"] = {
        "portals": [portal], "targets": [{"name": DISKS, "portal": portal, "discovery": "SendTargets"}],
        "lastSessionId": 1, "sessions": [{"id": 1, "target": DISKS, "portal": portal, "initiatorName": NAME}]}
    return document


def make_a_copy(host):
    """Puts a copy of the host in its place. Its counters stand still, so that its file stays the same to the byte."""
    copy = host.folder / "copy.json"
    subprocess.run([TAVROHOST, "capture", "--output", copy], check=True, cwd=host.folder,
                   env={**os.environ, "TAVROSIM_HOST": str(host.file)})
    copy.replace(host.file)


class Audits:
    """The fleet, an audit, and a strict one of the hosts that answer."""

    def __init__(self, fleet):
        self.hosts = dict(zip([*STATES, MISTAKEN], fleet.hosts))
        for host in fleet.hosts:
            make_a_copy(host)
            host.more.update(WANTED)
        self.hosts["nothing wanted"].more.clear()
        self.hosts["differs"].more.update(
            storage_port={"mac": MAC, "address": "192.0.2.31"},
            storage_initiator="iqn.2015-01.com.example:web-1",
            storage_targets=[{"name": DISKS, "address": "198.51.100.20", "header_digest": True}],
            divided_adapters=[{"mac": DIVIDED, "ports": [{"number": 1, "personality": "iscsi"}]}])
        self.hosts["refused"].more.update(
            storage_port={"mac": "02-00-5E-77-00-00", "address": "192.0.2.31"},
            port_personalities=[{"mac": OTHER, "personality": "fcoe"}])
        self.hosts[MISTAKEN].more.update(
            storage_port={"mac": MAC, "adress": "192.0.2.31"}, storage_targets=DISKS,
            storage_portals=[{"addres": "198.51.100.20"}])
        self.hosts["unread"].file.write_text("{")
        self.hosts["unreachable"].more.update(ansible_connection="ssh", ansible_host="127.0.0.1", ansible_port=1)
        before = {host.name: host.file.read_bytes() for host in fleet.hosts}
        self.audit = fleet.play(None, playbook=PLAYBOOK)
        self.read = {host.name: host.operations() for host in fleet.hosts}
        self.changed_files = [host.name for host in fleet.hosts if host.file.read_bytes() != before[host.name]]
        strict = ["as wanted", "nothing wanted", "differs", MISTAKEN]
        self.strict = fleet.play(None, "-e", "audit_strict=true", playbook=PLAYBOOK,
                                 hosts=[self.hosts[kind] for kind in strict])
        self.cut = fleet.play(None, "-e", "audit_strict=true", "--start-at-task", IN_WHICH_STATE, playbook=PLAYBOOK,
                              hosts=[self.hosts["as wanted"]])

    def found(self, state):
        """What was found of the host in the state."""
        return self.audit.result(self.hosts[state], "Put together what was found")["ansible_facts"]["audit"]


@pytest.fixture(scope="module", name="audits")
def fixture_audits(make_fleet):
    return Audits(make_fleet(len(STATES) + 1, document_as_wanted()))


def test_no_host_ends_the_audit(audits):
    assert audits.audit.status == 0, audits.audit.output


@pytest.mark.parametrize("state", STATES)
def test_each_host_is_in_its_state(audits, state):
    assert audits.found(state)["state"] == state
    assert audits.found(state)["host"] == audits.hosts[state].name


def test_at_the_end_all_hosts_are_told_by_state(audits):
    told = audits.audit.result(audits.hosts["as wanted"], IN_WHICH_STATE)["msg"]
    expected = {state: [audits.hosts[state].name] for state in STATES}
    expected["refused"].append(audits.hosts[MISTAKEN].name)
    assert told == {**expected, "unknown": []}


def test_a_host_of_which_nothing_was_found_out_is_told_as_well(audits):
    host = audits.hosts["as wanted"]
    assert audits.cut.result(host, IN_WHICH_STATE)["msg"] == {**{state: [] for state in STATES}, "unknown": [host.name]}
    assert audits.cut.status == 2 and audits.cut.result(host, STRICT)["msg"] == "unknown"


def test_an_audit_only_reads(audits):
    for state in ("as wanted", "nothing wanted", "differs", "refused", MISTAKEN):
        operations = audits.read[audits.hosts[state].name]
        assert are_readings(operations)
    assert audits.changed_files == []


def test_nothing_is_told_of_a_host_that_is_as_wanted(audits):
    found = audits.found("as wanted")
    assert found == {
        "host": audits.hosts["as wanted"].name, "state": "as wanted", "commands": [], "before": {}, "after": {},
        "warnings": [], "reasons": [], "restart_required": False}


def test_what_differs_is_told_with_its_warnings_and_the_restart(audits):
    found = audits.found("differs")
    assert [command.split()[:3] for command in found["commands"]] == [
        ["-iscsi", MAC, "-modifytcpip"], ["-iscsi", "-setinitiator", "iqn.2015-01.com.example:web-1"],
        ["-iscsi", MAC, "-target"], ["-iscsi", MAC, "-target"], ["-npar", DIVIDED, "-set"]]
    assert found["restart_required"] is True and found["reasons"] == []
    lost, uncertain = found["warnings"]
    assert "-modifytcpip" in lost and lost.endswith(": vlanPriority 3 becomes 0, prefixLengthIPv6 64 becomes 124")
    assert "-login" in uncertain and ": not certain: " in uncertain

    def function(side):
        ports, = [adapter["ports"] for adapter in found[side]["adapters"].values() if "ports" in adapter]
        parts, = [port["functions"] for port in ports.values()]
        return parts[f"iSCSI {MAC}"]["iscsi"]

    assert [function(side)["tcpIp"]["address"] for side in ("before", "after")] == ["192.0.2.21", "192.0.2.31"]
    assert [session["headerDigest"] for session in function("after")["storage"]["sessions"].values()] == ["CRC32C"]
    assert any("pendingPartitions" in adapter for adapter in found["after"]["adapters"].values())


def test_what_cannot_be_had_does_not_keep_the_rest_from_being_told(audits):
    found = audits.found("refused")
    assert any(reason.startswith("The host has no iSCSI function 02-00-5E-77-00-00") for reason in found["reasons"])
    assert [command.split()[:2] for command in found["commands"]] == [["-res", OTHER]]


def test_mistakes_in_what_is_wanted_are_told_as_reasons(audits):
    found = audits.found(MISTAKEN)
    assert found["state"] == "refused" and found["commands"] == []
    assert any("no attribute 'address'" in reason for reason in found["reasons"])
    assert any("loop" in reason and DISKS in reason for reason in found["reasons"])


def test_a_host_that_cannot_be_read_is_asked_once(audits):
    for state in ("unread", "unreachable"):
        assert len(audits.found(state)["reasons"]) == 1
        results = audits.audit.results[audits.hosts[state].name]
        assert set(results) == {"Read the host", "Put together what was found", "Tell what was found"}


def test_a_strict_audit_fails_for_hosts_that_are_not_as_wanted(audits):
    assert audits.strict.status == 2
    assert not audits.strict.result(audits.hosts["as wanted"], STRICT)["failed"]
    for kind, state in (("nothing wanted", "nothing wanted"), ("differs", "differs"), (MISTAKEN, "refused")):
        result = audits.strict.result(audits.hosts[kind], STRICT)
        assert result["failed"] and result["msg"] == state
