"""The example that divides adapters and sets personalities, with the simulated hosts' restart in between."""

import json

import pytest

from fleet import DEFAULT_HOST, TAVROHOST, are_readings

PLAYBOOK = "partitions_and_personalities.yml"
DIVIDED, OTHER = "02-00-5E-10-00-00", "02-00-5E-20-00-00"
RESTARTS = ("Restart the host", "Restart the host by its command")


def two_adapters():
    """A host with two adapters of two ports that are not divided."""
    document = json.loads(DEFAULT_HOST.read_text())
    document["adapters"] = document["adapters"][:2]
    other = document["adapters"][1]
    other["partitionState"] = 1
    del other["partitions"]
    other["ports"] = other["ports"][:2]
    for port, personality in zip(other["ports"], ("iSCSI", "FCoE")):
        port["resources"] = {"completionCode": 201, "personality": personality}
    return document


class Plays:
    """The fleet, and the plays: the first host is to be changed, the second is as wanted."""

    def __init__(self, fleet):
        self.changed, self.same = fleet.hosts
        for host in fleet.hosts:
            host.more["restart_command"] = [str(TAVROHOST), "restart", str(host.file)]
        self.changed.more["divided_adapters"] = [{
            "mac": DIVIDED,
            "ports": [{"number": 1, "personality": "iscsi"}, {"number": 2, "personality": "fcoe"}],
            "functions": [{"number": 2, "lower_limit": 40}],
        }]
        self.changed.more["port_personalities"] = [{"mac": OTHER, "personality": "fcoe"}]
        self.same.more["port_personalities"] = [{"mac": OTHER, "personality": "iscsi"}]
        self.rehearsed = fleet.play(None, "--check", "-e", "hosts_at_once=100%", playbook=PLAYBOOK)
        self.called = self.changed.operations()
        self.done = fleet.play(None, "-e", "hosts_at_once=100%", playbook=PLAYBOOK)


@pytest.fixture(scope="module", name="plays")
def fixture_plays(make_fleet):
    return Plays(make_fleet(2, two_adapters()))


def test_each_play_comes_to_its_end(plays):
    for play in (plays.rehearsed, plays.done):
        assert play.status == 0, play.output


def restarted(play, host):
    """Whether the host was restarted; what is skipped has no result."""
    return any(task in play.results[host.name] for task in RESTARTS)


def test_a_rehearsal_tells_of_the_restart_and_does_none(plays):
    assert plays.rehearsed.result(plays.changed, "Tell whether the host has to be restarted")["ansible_facts"] == {
        "restart_needed": True}
    assert are_readings(plays.called)
    assert not restarted(plays.rehearsed, plays.changed)


def test_the_restart_puts_the_change_in_force(plays):
    assert restarted(plays.done, plays.changed)
    divided, other = plays.changed.read()["adapters"]
    assert divided["partitionState"] == 3 and "pendingPartitions" not in divided
    second_functions = [port["functions"][1] for port in divided["ports"]]
    assert [len(port["functions"]) for port in divided["ports"]] == [4, 4]
    assert "iscsi" in second_functions[0] and "fcoe" in second_functions[1]
    assert divided["partitions"]["functions"][2]["lowerLimit"] == "40"
    assert other["ports"][0]["resources"]["personality"] == "FCoE"


def test_a_host_that_is_as_wanted_is_not_restarted(plays):
    assert not restarted(plays.done, plays.same)
    assert not plays.done.result(plays.same, "Set the personalities")["changed"]


def test_after_the_restart_nothing_is_left_to_be_changed(plays):
    # They are looked at twice; the results are those of the second time.
    for task in ("Divide the adapters", "Set the personalities"):
        result = plays.done.result(plays.changed, task)
        assert len(result["results"]) == 1 and not result["changed"]
