"""An interface that a network manager owns keeps its address, and the manager is named."""

import pathlib

import pytest


def write(path, text):
    file = pathlib.Path(path)
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_text(text, encoding="ascii")


# What each manager leaves behind for an interface of that name and index.
MANAGERS = {
    "NetworkManager": lambda name, index: write(f"/run/NetworkManager/devices/{index}", "[device]\nmanaged=true\n"),
    "systemd-networkd": lambda name, index: write(
        f"/run/systemd/netif/links/{index}", "ADMIN_STATE=configured\nOPER_STATE=routable\n"),
    "ifupdown": lambda name, index: write("/etc/network/interfaces", f"auto {name}\niface {name} inet dhcp\n"),
}


@pytest.mark.parametrize("manager", MANAGERS)
@pytest.mark.parametrize("settings", [
    ["-ipv4", "-static", "0", "192.0.2.10", "255.255.255.0", "192.0.2.1"],
    ["-ipv6", "-static", "0", "2001:db8::10", "64"],
])
def test_an_owned_interface_is_left_alone(machine, manager, settings):
    mac = machine.add_pair()
    MANAGERS[manager]("va", machine.link("va")["ifindex"])
    screen = machine.cli("-ethernet", mac, "-modifytcpip", *settings)
    assert "This interface belongs to a network manager." in screen and f"va: {manager}" in screen
    assert machine.global_addresses("va", "-4") == machine.global_addresses("va", "-6") == []
    assert "applied" in machine.cli("-ethernet", machine.mac("vb"), "-modifytcpip", *settings), "nobody owns the other"


def test_what_a_manager_leaves_alone_can_be_changed(machine):
    mac = machine.add_pair()
    index = machine.link("va")["ifindex"]
    write(f"/run/NetworkManager/devices/{index}", "[device]\nmanaged=false\n")
    write(f"/run/systemd/netif/links/{index}", "ADMIN_STATE=unmanaged\n")
    write("/etc/network/interfaces", "auto va\niface va inet manual\n")
    machine.cli("-ethernet", mac, "-modifytcpip", "-ipv4", "-static", "0", "192.0.2.10", "255.255.255.0", "192.0.2.1")
    assert machine.global_addresses("va", "-4") == [("192.0.2.10", 24)]
