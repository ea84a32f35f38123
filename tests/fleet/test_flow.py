"""One playbook on three hosts, three times: rehearsed, done, and done again. Of the hosts one is as usual, one refuses
what its twin does not, and one has a host file that is none."""

import json
import subprocess

import pytest

from fleet import TAVROHOST, are_readings

ETHERNET = "02-00-5E-10-00-00"
STORAGE = "02-00-5E-10-00-02"
SECRET = "vault-secret-1"
TASKS = {
    "host": {"tavro.fleet.host_info": {}},
    "servers": {"tavro.fleet.isns": {"servers": ["192.0.2.6", "192.0.2.7"], "state": "exact"}},
    "address": {"tavro.fleet.tcpip": {"mac": "02:00:5e:10:00:02", "kind": "iscsi", "address": "192.0.2.29"}},
    "IPv6": {
        "tavro.fleet.tcpip": {
            "mac": ETHERNET, "kind": "ethernet", "version": "ipv6", "address": "2001:DB8::0077", "prefix_length": 48}},
    "VLAN": {
        "tavro.fleet.tcpip": {"mac": "02-00-5E-10-00-01", "kind": "ethernet", "address": "192.0.2.11", "vlan_id": 12}},
    "in use": {"tavro.fleet.tcpip": {"mac": STORAGE, "kind": "iscsi", "address": "192.0.2.10"}},
    "unknown": {"tavro.fleet.tcpip": {"mac": "02-00-5E-99-00-00", "kind": "iscsi", "dhcp": True}},
    "reading": {"tavro.fleet.cli": {"arguments": ["-iscsi", "-getinitiator"]}},
    "reset": {"tavro.fleet.cli": {"arguments": ["-ethernet", ETHERNET, "-resetstat"]}},
    "unanswered": {"tavro.fleet.cli": {"arguments": ["-res", ETHERNET, "-set"]}},
    "CHAP": {
        "tavro.fleet.cli": {
            "arguments": ["-iscsi", "-setinitiator", "iqn.2015-01.com.example:web-1", "-onewaychap"],
            "answers": [{"message": 28692, "lines": ["web"]}, {"message": 28693, "secret": SECRET}]}},
}
# What the hosts that fail are asked for; the usual one does everything.
OF_ALL_HOSTS = ["host", "servers", "address"]
for name in set(TASKS) - set(OF_ALL_HOSTS):
    TASKS[name]["when"] = "inventory_hostname == 'host-1'"
WITHOUT_RESTART = ["servers", "address", "IPv6"]


class Plays:
    """The fleet, the three plays, and what the library was called for in the first one, by host."""

    def __init__(self, fleet):
        self.fleet = fleet
        self.usual, self.refusing, self.broken = fleet.hosts
        self.captured = capture(self.usual)
        self.usual.forget_operations()
        self.rehearsed = fleet.play(TASKS, "--check", "--diff")
        self.read = {host.name: host.operations() for host in fleet.hosts}
        self.file_after_rehearsal = self.usual.read()
        self.done = fleet.play(TASKS, "--diff", "-vvv")
        self.again = fleet.play({task: TASKS[task] for task in [*WITHOUT_RESTART, "VLAN"]}, hosts=[self.usual])


def capture(host):
    done = subprocess.run([TAVROHOST, "capture"], stdout=subprocess.PIPE, cwd=host.folder, check=True,
                          env=host.variables()["simulated"])
    document = json.loads(done.stdout)
    del document["captured"]
    return document


@pytest.fixture(scope="module", name="plays")
def fixture_plays(make_fleet):
    fleet = make_fleet(3)
    _, refusing, broken = fleet.hosts
    refusing.refuse("The server list is kept by the site.", "AddIsnsServer")
    broken.file.write_text("{")
    return Plays(fleet)


def without_counters(value):
    if isinstance(value, dict):
        return {key: without_counters(member) for key, member in value.items() if key != "statistics"}
    return [without_counters(element) for element in value] if isinstance(value, list) else value


def test_the_host_is_told_as_it_is_captured(plays):
    told = plays.rehearsed.result(plays.usual, "host")
    assert without_counters(told["host"]) == without_counters(plays.captured)
    assert [function["mac"] for function in told["functions"]][:3] == [ETHERNET, STORAGE, "02-00-5E-10-00-04"]
    assert told["functions"][1]["adapter"] == "Tavro CNA 4610K"
    assert told["functions"][1]["port"] == "Port 1"


def test_a_rehearsal_only_reads(plays):
    for host in (plays.usual, plays.refusing):
        assert are_readings(plays.read[host.name])
    assert plays.file_after_rehearsal["isnsServers"] == ["192.0.2.5"]


def test_a_change_needs_what_a_rehearsal_did_not_do(plays):
    assert {"AddIsnsServer", "SetIscsiTcpIp"} <= plays.usual.operations()


@pytest.mark.parametrize("task", [*WITHOUT_RESTART, "VLAN", "reading", "reset", "CHAP"])
def test_a_rehearsal_tells_what_the_change_does(plays, task):
    before, after = plays.rehearsed.result(plays.usual, task), plays.done.result(plays.usual, task)
    assert before["changed"] == after["changed"] == (task != "reading")
    assert before["diff"] == after["diff"]
    assert before["restart_required"] == after["restart_required"] == (task == "VLAN")
    assert not after["failed"]


def test_the_difference_is_what_was_asked_for(plays):
    differences = {task: plays.done.result(plays.usual, task)["diff"] for task in TASKS if task not in
                   ("host", "in use", "unknown", "unanswered")}
    assert differences["servers"] == {
        "before": {"isnsServers": ["192.0.2.5"]}, "after": {"isnsServers": ["192.0.2.6", "192.0.2.7"]}}
    assert differences["reading"] == differences["reset"] == {"before": {}, "after": {}}

    def of_adapter(value, port, function):
        return {"adapters": {"Tavro CNA 4610K": {"ports": {port: {"functions": function(value)}}}}}

    def storage(value):
        return {f"iSCSI {STORAGE}": {"iscsi": {"tcpIp": value}}}

    # The command sends an IPv6 prefix length of 124 as well.
    assert differences["address"] == {
        "before": of_adapter({"address": "192.0.2.20", "prefixLengthIPv6": "64"}, "Port 1", storage),
        "after": of_adapter({"address": "192.0.2.29", "prefixLengthIPv6": "124"}, "Port 1", storage)}

    def second_port(value):
        return {"Ethernet 02-00-5E-10-00-01": {"ethernet": {"tcpIp": value}}}

    assert differences["VLAN"] == {
        "before": of_adapter({}, "Port 2", second_port),
        "after": of_adapter({"pendingVlanId": "12"}, "Port 2", second_port)}


@pytest.mark.parametrize("task", WITHOUT_RESTART)
def test_a_second_time_changes_nothing(plays, task):
    result = plays.again.result(plays.usual, task)
    assert not result["changed"] and not result["commands"]


def test_what_waits_for_the_restart_is_sent_again(plays):
    result = plays.again.result(plays.usual, "VLAN")
    assert result["changed"] and result["restart_required"]


def test_a_refusal_tells_the_librarys_reason(plays):
    for play in (plays.rehearsed, plays.done):
        result = play.result(plays.usual, "in use")
        assert result["failed"] and not result["changed"]
        assert ": The address is in use on this host. (192.0.2.10 belongs to " in result["msg"]
    assert any("the twin refuses it by rules that the host may not have" in warning
               for warning in plays.rehearsed.result(plays.usual, "in use")["warnings"])


def test_an_unknown_function_is_told_with_those_that_there_are(plays):
    message = plays.done.result(plays.usual, "unknown")["msg"]
    assert message.startswith("The host has no iSCSI function 02-00-5E-99-00-00; there are: iSCSI 02-00-5E-10-00-02")


def test_a_question_without_an_answer_fails(plays):
    for play in (plays.rehearsed, plays.done):
        result = play.result(plays.usual, "unanswered")
        assert result["failed"] and 'question 29456 "Personality (1: iSCSI, 2: FCoE) :" has no answer' in result["msg"]


def test_a_host_that_refuses_fails_with_its_own_reason(plays):
    assert plays.rehearsed.result(plays.refusing, "servers")["changed"]
    result = plays.done.result(plays.refusing, "servers")
    assert result["failed"] and not result["changed"]
    assert result["msg"] == "tavrocli -iscsi -isns -add 192.0.2.6: The server list is kept by the site. (site 7)"
    assert plays.refusing.read()["isnsServers"] == ["192.0.2.5"]
    # The other hosts, and the other tasks of this one, are not held up.
    assert plays.done.result(plays.refusing, "address")["changed"]


def test_a_broken_host_file_is_told(plays):
    for play in (plays.rehearsed, plays.done):
        for task in OF_ALL_HOSTS:
            result = play.result(plays.broken, task)
            assert result["failed"] and not result.get("changed")
            assert "The host file cannot be used." in result["msg"]


def test_a_secret_reaches_the_host_and_nobody_else(plays):
    assert plays.usual.read()["initiator"]["login"]["targetSecret"] == SECRET
    for play in (plays.rehearsed, plays.done, plays.again):
        assert SECRET not in play.output
        assert SECRET not in json.dumps(play.results)
    assert SECRET not in (plays.usual.folder / "trace").read_text()


def test_nothing_temporary_stays(plays):
    for host in plays.fleet.hosts:
        assert not [path for path in host.temporary.rglob("*") if path.is_file()]
