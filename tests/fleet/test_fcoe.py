"""Virtual ports, the FIP VLAN and data center bridging: a playbook that is rehearsed, done and done again. Of three
hosts the second refuses what its twin does not, and the third is as wanted from the start."""

import json

import pytest

from fleet import DEFAULT_HOST, are_readings, assert_was_as_wanted

# Functions of their own, so that no task changes what another one is rehearsed on.
FIRST = "10:00:02:00:5E:10:00:04"
SECOND = "10:00:02:00:5E:10:00:05"
THIRD = "10:00:02:00:5E:20:00:05"
FOURTH = "10:00:02:00:5E:20:00:07"
GROUPS = {0: [0, 1, 2, 5, 6, 7], 1: [4, 3]}
# What a host tells of "all of DCB".
BRIDGING = {"state": "Disable", "flowControlPriorities": "3 4", "groupMap": "0:0 1 2 5 6 7,1:3 4",
            "priorityMap": "0:0,1:0,2:0,3:1,4:1,5:0,6:0,7:0"}


def virtual_ports(wwn, *virtual, **options):
    return {"tavro.fleet.virtual_port": {"wwn": wwn, "virtual_wwns": list(virtual), **options}}


def dcb(wwn, **options):
    return {"tavro.fleet.dcb": {"wwn": wwn, **options}}


TASKS = {
    "create": virtual_ports(FIRST.lower(), "2001-0200-5e10-0004", "20:02:02:00:5E:10:00:04"),
    "exact": virtual_ports(SECOND, "20:01:02:00:5e:10:00:05", "20:02:02:00:5e:10:00:05", state="exact"),
    "delete": virtual_ports(THIRD, "2001-0200-5e20-0005", "20:02:02:00:5E:20:00:05", state="absent"),
    "taken": virtual_ports(FOURTH, FIRST, "20:01:02:00:5E:20:00:07"),
    "VLAN": {"tavro.fleet.fip": {"wwn": FIRST, "vlan_id": 1003}},
    "high VLAN": {"tavro.fleet.fip": {"wwn": SECOND, "vlan_id": 4095}},
    "all of DCB": dcb(FIRST, enabled=False, flow_control_priorities=[4, 3], priority_groups=GROUPS),
    "one priority": dcb(SECOND, enabled=True, flow_control_priorities=[5]),
    "no priority": dcb(THIRD, flow_control_priorities=[]),
    "other driver": dcb(FOURTH, enabled=False),
}
OF_ALL_HOSTS = ["delete", "VLAN", "all of DCB"]
CERTAIN = ["delete", "VLAN", "all of DCB", "one priority", "no priority"]
UNCERTAIN = ["create", "exact"]
for task in set(TASKS) - set(OF_ALL_HOSTS):
    TASKS[task]["when"] = "inventory_hostname == 'host-1'"


def parts(document):
    return {function["fcoe"]["portWwn"]: function["fcoe"] for adapter in document["adapters"]
            for port in adapter["ports"] for function in port["functions"] if "fcoe" in function}


class Plays:
    def __init__(self, fleet):
        self.fleet = fleet
        self.usual, self.refusing, self.same = fleet.hosts
        self.rehearsed = fleet.play(TASKS, "--check", "--diff")
        self.read = {host.name: host.operations() for host in fleet.hosts}
        self.done = fleet.play(TASKS, "--diff")
        self.called = self.same.operations()
        self.afterwards = parts(self.usual.read())
        self.again = fleet.play({task: TASKS[task] for task in CERTAIN + UNCERTAIN}, hosts=[self.usual])


@pytest.fixture(scope="module", name="plays")
def fixture_plays(make_fleet):
    fleet = make_fleet(3)
    for host in fleet.hosts:
        document = host.read()
        there = parts(document)
        for wwn, others in ((SECOND, ["20:02:02:00:5E:10:00:05", "20:09:02:00:5E:10:00:05"]),
                            (THIRD, ["20:01:02:00:5E:20:00:05"])):
            there[wwn]["virtualPorts"] = [
                {"portWwn": each, "nodeWwn": there[wwn]["nodeWwn"], "fcid": f"03050{number}"}
                for number, each in enumerate(others, 1)]
        there[SECOND]["dcb"] = {"state": "Disable"}
        if host is fleet[2]:
            there[THIRD]["virtualPorts"] = []
            there[FIRST].update(fipVlanId="1003", dcb=BRIDGING)
        host.write(document)
    fleet[1].refuse("The site does not allow this.", "DeleteVirtualPorts", "WriteFip", "WriteDcbConfig")
    return Plays(fleet)


def fcoe(play, host, task, side):
    return play.function_that_differs(host, task, side)["fcoe"]


def test_a_rehearsal_only_reads(plays):
    for host in plays.fleet.hosts:
        assert are_readings(plays.read[host.name])


@pytest.mark.parametrize("task", CERTAIN + UNCERTAIN)
def test_a_rehearsal_tells_what_the_change_does(plays, task):
    before, after = plays.rehearsed.result(plays.usual, task), plays.done.result(plays.usual, task)
    assert not before["failed"] and not after["failed"]
    assert before["changed"] and after["changed"]
    assert before["diff"] == after["diff"]
    warned = [text for text in before.get("warnings", []) if "not certain" in text]
    assert bool(warned) == (task in UNCERTAIN)


@pytest.mark.parametrize("task", CERTAIN + UNCERTAIN)
def test_a_second_time_changes_nothing(plays, task):
    result = plays.again.result(plays.usual, task)
    assert not result["failed"] and not result["changed"] and not result["commands"]


def test_the_virtual_ports_are_as_wanted(plays):
    wwns = {wwn: {port["portWwn"] for port in part.get("virtualPorts", [])} for wwn, part in plays.afterwards.items()}
    assert wwns == {
        FIRST: {"20:01:02:00:5E:10:00:04", "20:02:02:00:5E:10:00:04"},
        SECOND: {"20:01:02:00:5E:10:00:05", "20:02:02:00:5E:10:00:05"}, THIRD: set(), FOURTH: set()}
    commands = {task: [command["arguments"][2:] for command in plays.done.result(plays.usual, task)["commands"]]
                for task in ("create", "exact", "delete")}
    assert commands == {
        "create": [["-createvirtualport", "20:01:02:00:5E:10:00:04", "20:02:02:00:5E:10:00:04"]],
        "exact": [["-deletevirtualport", "20:09:02:00:5E:10:00:05"], ["-createvirtualport", "20:01:02:00:5E:10:00:05"]],
        "delete": [["-deletevirtualport", "20:01:02:00:5E:20:00:05"]]}


def test_the_vlan_is_as_wanted(plays):
    assert plays.afterwards[FIRST]["fipVlanId"] == "1003"
    assert fcoe(plays.done, plays.usual, "VLAN", "after") == {"fipVlanId": "1003"}


def test_bridging_is_as_wanted_and_the_rest_of_it_stays(plays):
    told = {wwn: fcoe(plays.done, plays.usual, task, "after")["dcb"] for wwn, task in
            ((FIRST, "all of DCB"), (SECOND, "one priority"), (THIRD, "no priority"))}
    assert told[FIRST] == BRIDGING
    assert told[SECOND].keys() == {"state", "flowControlPriorities"} and told[THIRD].keys() == {"flowControlPriorities"}
    assert told[SECOND]["state"] == "Enable"
    assert told[SECOND]["flowControlPriorities"].split() == ["5"]
    assert told[THIRD]["flowControlPriorities"].split() == []


def test_a_taken_wwn_is_refused_and_none_is_created(plays):
    for play in (plays.rehearsed, plays.done):
        result = play.result(plays.usual, "taken")
        assert result["failed"] and not result["changed"]
        assert ": The WWN is in use on this host. (port WWN " in result["msg"]


def test_a_driver_that_cannot_be_configured_is_told(plays):
    result = plays.done.result(plays.usual, "other driver")
    assert result["failed"] and not result["changed"]
    assert result["msg"].endswith(": DCB cannot be configured with the driver of this port.")


def test_a_vlan_that_there_is_not_is_refused_by_the_library(plays):
    result = plays.done.result(plays.usual, "high VLAN")
    assert result["failed"] and not result["changed"]
    assert result["msg"] == (f'tavrocli -fcoe {SECOND} -setfip 4095: The FIP VLAN ID is not valid. '
                             '(FIP VLAN ID "4095", range 0 to 4094)')


@pytest.mark.parametrize("task, message", [
    (virtual_ports(FOURTH, "20:01:02"), "virtual_wwns: 20:01:02 is no WWN, which has 16 hexadecimal digits"),
    (dcb(THIRD, priority_groups={0: [0, 1, 2]}),
     "priority_groups: each of the priorities 0 to 7 has to be in one group"),
    (dcb(THIRD, priority_groups={0: "all"}), "priority_groups: give each group, a number, a list of priorities"),
    (dcb(THIRD, flow_control_priorities=[8]), "flow_control_priorities: 8 is no priority, 0 to 7"),
])
def test_what_cannot_be_had_is_told_before_anything_is_sent(planned, task, message):
    assert planned(task, json.loads(DEFAULT_HOST.read_text())) == message


@pytest.mark.parametrize("task", OF_ALL_HOSTS)
def test_a_host_that_refuses_fails_with_its_own_reason(plays, task):
    assert plays.rehearsed.result(plays.refusing, task)["changed"]
    result = plays.done.result(plays.refusing, task)
    assert result["failed"] and not result["changed"]
    assert result["msg"].endswith(": The site does not allow this. (site 7)")


@pytest.mark.parametrize("task", OF_ALL_HOSTS)
def test_a_host_that_is_as_wanted_is_only_read(plays, task):
    assert_was_as_wanted(task, plays.same, plays.called, plays.rehearsed, plays.done)
