"""A capture of this host, and what a rehearsal on it says beforehand: it is what happens afterwards."""

import json
import pathlib

import pytest


def capture(machine, name):
    result = machine.run("tavrohost", "capture", "-o", name)
    assert result.returncode == 0, result.stderr
    return json.loads((machine.folder / name).read_text(encoding="utf-8"))


def number_of(screen, label):
    """The number of a row in a list of settings or choices."""
    for line in screen.splitlines():
        number, point, rest = line.strip().partition(". ")
        if point and rest.startswith(label):
            return number
    raise AssertionError(f"no {label} in {screen}")


def answers_that_set(machine, mac, label, value):
    """What is typed to give the setting that value."""
    listed = machine.cli("-ethernet", mac, "-setadapinfo", typed="A\n")
    setting = number_of(listed, label)
    asked = machine.cli("-ethernet", mac, "-setadapinfo", typed=f"{setting}\nnone\nA\n")
    choice = next(
        line.strip().partition(".")[0] for line in asked.splitlines()
        if line.strip().partition(". ")[2].startswith("Choice") and line.endswith(f": {value}")
    )
    return f"{setting}\n{choice}\nY\nY\n"


STATIC_IPV4 = ["-modifytcpip", "-ipv4", "-static", "0", "192.0.2.10", "255.255.255.0", "192.0.2.1"]
STATIC_IPV6 = ["-modifytcpip", "-ipv6", "-static", "0", "2001:db8::10", "64", "2001:db8::1"]


# Of a setting other than the size of frames it is not certain what the driver changes with it.
@pytest.mark.parametrize("command, setting, status", [
    (STATIC_IPV4, None, 0),
    (STATIC_IPV6, None, 0),
    (["-setadapinfo"], ("Large Send Offload (IPv4)", "Disabled"), 1),
    (["-setadapinfo"], ("Jumbo Packet", "9014"), 0),
])
def test_what_is_rehearsed_is_what_happens(machine, command, setting, status):
    mac = machine.add_pair()
    machine.wait_for_link_local("va", "vb")
    typed = answers_that_set(machine, mac, *setting) if setting else ""
    before = capture(machine, "before.json")
    rehearsed = machine.run(
        "tavrohost", "rehearse", "--host", "before.json", "--keep", "twin.json", "--json", "--", "-ethernet", mac,
        *command, typed=typed)
    assert rehearsed.returncode == status, rehearsed
    machine.cli("-ethernet", mac, *command, typed=typed)
    after = capture(machine, "after.json")
    assert after != before
    difference = machine.run("tavrohost", "diff", "twin.json", "after.json")
    assert (difference.returncode, difference.stdout) == (0, b"")


@pytest.mark.parametrize("words, reason", [
    (["-ipv4", "-dhcp", "0"], "what the DHCP server hands out"),
    (["-ipv4", "-static", "7", "192.0.2.10", "255.255.255.0", "192.0.2.1"], "no VLANs of this function"),
    (["-ipv4", "-static", "0", "192.0.2.10", "255.255.255.0", "198.51.100.1"], "reaches this gateway"),
    (["-ipv6", "-static", "0", "2001:db8::10", "64", "2001:db8:1::1"], "reaches this gateway"),
])
def test_what_the_host_may_refuse_is_not_certain(machine, words, reason):
    mac = machine.add_pair()
    capture(machine, "before.json")
    rehearsed = machine.run(
        "tavrohost", "rehearse", "--host", "before.json", "--", "-ethernet", mac, "-modifytcpip", *words)
    assert rehearsed.returncode == 1 and reason in rehearsed.stdout.decode(), rehearsed


def test_the_interface_of_a_network_manager_is_not_certain(machine):
    mac = machine.add_pair()
    devices = pathlib.Path("/run/NetworkManager/devices")
    devices.mkdir(parents=True)
    (devices / str(machine.link("va")["ifindex"])).write_text("[device]\nmanaged=true\n", encoding="ascii")
    capture(machine, "before.json")
    rehearsed = machine.run("tavrohost", "rehearse", "--host", "before.json", "--", "-ethernet", mac, *STATIC_IPV4)
    assert rehearsed.returncode == 1 and "a network manager owns the interface" in rehearsed.stdout.decode(), rehearsed


def test_a_capture_plays_this_host(machine):
    """The twin's reading commands print what those on the host do."""
    mac = machine.add_pair()
    machine.do("ip", "addr", "add", "192.0.2.10/24", "dev", "va")
    machine.wait_for_link_local("va", "vb")
    capture(machine, "host.json")
    for command in (
        ["-showadapter"], ["-ethernet", mac, "-portinfo"], ["-ethernet", mac, "-getadapinfo"],
        ["-ethernet", mac, "-gettcpip"], ["-iscsi", mac, "-portinfo"], ["-iscsi", "-getinitiator"],
        ["-iscsi", mac, "-portal", "-listall"], ["-dcb", mac, "-getinfo"],
    ):
        own = machine.cli(*command)
        played = machine.run("tavrohost", "rehearse", "--host", "host.json", "--", *command).stdout.decode()
        assert played.startswith(own), command


def test_a_difference_of_two_captures_is_what_ip_changed(machine):
    machine.add_pair()
    machine.wait_for_link_local("va", "vb")
    capture(machine, "before.json")
    machine.do("ip", "addr", "add", "192.0.2.10/24", "dev", "vb")
    capture(machine, "after.json")
    difference = machine.run("tavrohost", "diff", "before.json", "after.json")
    assert difference.returncode == 1
    assert "192.0.2.10" in difference.stdout.decode() and "veth va" not in difference.stdout.decode()


def test_a_capture_is_a_host_file_without_findings(machine):
    machine.add_pair()
    capture(machine, "host.json")
    checked = machine.run("tavrohost", "check", "host.json")
    assert checked.returncode == 0, checked
