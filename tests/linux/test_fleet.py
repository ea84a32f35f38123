"""A playbook of the Ansible collection on this host: rehearsed, done, and done again."""

import pathlib

import pytest

from fleet import Fleet, install_collection

MTU = 9000
OLD_MTU = 1500
HEADER = 14


@pytest.fixture(name="play")
def fixture_play(machine, tmp_path_factory):
    """play(tasks, options of ansible-playbook): the result of each task."""
    folder = tmp_path_factory.mktemp("fleet")
    install_collection(folder)
    fleet = Fleet(folder, folder, program=machine.programs / "tavrohost")

    def play(tasks, *options):
        results = fleet.play(tasks, *options)
        assert list(results.results[fleet[0].name]) == list(tasks), results.output
        return results.results[fleet[0].name]
    return play


def state(machine):
    """What the kernel's tools tell of what the tasks change."""
    features = machine.ethtool("-k", "va")
    return {
        "mtu": machine.link("va")["mtu"],
        "IPv4": machine.global_addresses("va", "-4"), "gateway": machine.gateways("va", "-4"),
        "IPv6": machine.global_addresses("va", "-6"),
        "segmentation": features["tx-tcp-segmentation"]["active"],
    }


# What Ansible does is the same with either build, and it takes its time.
@pytest.mark.parametrize("machine", ["native"], indirect=True)
def test_what_is_rehearsed_is_done_once(machine, play):
    mac = machine.add_pair()
    machine.wait_for_link_local("va", "vb")
    tasks = {
        "host": {"tavro.fleet.host_info": {}},
        "address": {
            "tavro.fleet.tcpip": {
                "mac": mac, "kind": "ethernet", "address": "192.0.2.10", "subnet_mask": "255.255.240.0",
                "gateway": "192.0.2.1"}},
        "IPv6": {
            "tavro.fleet.tcpip": {
                "mac": mac, "kind": "ethernet", "version": "ipv6", "address": "2001:DB8::0010", "prefix_length": 48,
                "gateway": "2001:db8::1"}},
        "frames": {
            "tavro.fleet.adapter_setting": {
                "mac": mac, "settings": {"jumbo_packet": str(MTU + HEADER), "large_send_offload_ipv4": "Disabled"}}},
        "DHCP": {"tavro.fleet.tcpip": {"mac": mac, "kind": "ethernet", "dhcp": True}},
        "unknown": {"tavro.fleet.tcpip": {"mac": "02-00-5E-99-00-00", "kind": "ethernet", "dhcp": True}},
    }
    changing = ["address", "IPv6", "frames"]
    before = state(machine)
    assert before == {"mtu": OLD_MTU, "IPv4": [], "gateway": [], "IPv6": [], "segmentation": True}

    rehearsed = play(tasks, "--check", "--diff")
    assert state(machine) == before
    assert not list(pathlib.Path("/var/lib").iterdir())

    done = play(tasks, "--diff")
    assert state(machine) == {
        "mtu": MTU, "IPv4": [("192.0.2.10", 20)], "gateway": ["192.0.2.1"], "IPv6": [("2001:db8::10", 48)],
        "segmentation": False}
    for task in changing:
        assert rehearsed[task]["changed"] and done[task]["changed"], task
        assert not done[task]["failed"] and not done[task]["restart_required"], task
    for task in ("address", "IPv6"):
        assert rehearsed[task]["diff"] == done[task]["diff"], task
    assert rehearsed["DHCP"]["changed"] and "not certain" in " ".join(rehearsed["DHCP"]["warnings"])
    assert done["DHCP"]["failed"] and "This host cannot do that. (a DHCP client)" in done["DHCP"]["msg"]
    for results in (rehearsed, done):
        assert results["unknown"]["failed"]
        assert "has no Ethernet function 02-00-5E-99-00-00" in results["unknown"]["msg"]

    again = play({"host": tasks["host"], **{task: tasks[task] for task in changing}})
    for task in changing:
        assert not again[task]["failed"] and not again[task]["changed"] and not again[task]["commands"], task
    first, last = (
        next(function["ethernet"] for function in results["host"]["functions"]
             if function["mac"] == mac and "ethernet" in function)
        for results in (done, again))
    assert first["interface"] == last["interface"] == "va"
    assert first["tcpIp"]["address"] == "0.0.0.0"
    assert [last["tcpIp"][member] for member in ("address", "subnetMask", "gateway", "addressIPv6")] == [
        "192.0.2.10", "255.255.240.0", "192.0.2.1", "2001:db8::10"]
    assert last["settings"]["jumboPacket"] == str(MTU + HEADER)
