"""Fifty hosts are read and get addresses of their own in one play; the play that gives them again changes nothing."""

import pytest

from fleet import are_readings

HOSTS = 50
FORKS = 4
TASKS = {
    "host": {"tavro.fleet.host_info": {}},
    "address": {"tavro.fleet.tcpip": {"mac": "02-00-5E-10-00-02", "kind": "iscsi", "address": "{{ address }}"}},
}


@pytest.fixture(scope="module", name="plays")
def fixture_plays(make_fleet):
    fleet = make_fleet(HOSTS)
    for number, host in enumerate(fleet.hosts):
        document = host.read()
        document["name"] = f"storage-{number}"
        host.write(document)
        host.more["address"] = f"192.0.2.{100 + number}"
    done = fleet.play(TASKS, forks=FORKS)
    traces = [host.operations() for host in fleet.hosts]
    for host in fleet.hosts:
        host.forget_operations()
    return fleet, done, fleet.play({"address": TASKS["address"]}, forks=FORKS), traces


def test_each_host_is_told_as_it_is(plays):
    fleet, done, _, _ = plays
    for number, host in enumerate(fleet.hosts):
        told = done.result(host, "host")
        assert not told["changed"] and told["host"]["name"] == f"storage-{number}"
        addresses = [function["iscsi"]["tcpIp"]["address"] for function in told["functions"] if "iscsi" in function]
        assert addresses[0] == "192.0.2.20"


def test_the_first_run_changes_all_hosts(plays):
    fleet, done, _, traces = plays
    assert done.status == 0
    assert [host.name for host in fleet.hosts if done.result(host, "address")["changed"]] == [
        host.name for host in fleet.hosts]
    assert all("SetIscsiTcpIp" in trace for trace in traces)


def test_the_second_run_changes_none(plays):
    fleet, _, again, _ = plays
    assert again.status == 0
    for host in fleet.hosts:
        result = again.result(host, "address")
        assert not result["changed"] and not result["failed"] and result["commands"] == []
        assert are_readings(host.operations())


def test_a_host_gets_nothing_of_another(plays):
    fleet, done, _, _ = plays
    for number, host in enumerate(fleet.hosts):
        after = done.result(host, "address")["diff"]["after"]
        assert f"192.0.2.{100 + number}" in str(after)
        assert sum(f"192.0.2.{100 + other}" in host.file.read_text() for other in range(HOSTS)) == 1
