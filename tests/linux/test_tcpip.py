"""The TCP/IP settings of an interface: told as `ip` tells them, and changed so that `ip` sees it."""

import pytest

from machine import NOBODY

UNSET = {"IP Address": "0.0.0.0"}


def set_ipv4(machine, mac, address, mask, gateway, vlan="0"):
    return machine.cli("-ethernet", mac, "-modifytcpip", "-ipv4", "-static", vlan, address, mask, gateway)


def set_ipv6(machine, mac, address, prefix, *gateway):
    return machine.cli("-ethernet", mac, "-modifytcpip", "-ipv6", "-static", "0", address, prefix, *gateway)


def test_what_ip_has_set_is_told(machine):
    mac = machine.add_pair()
    machine.do("ip", "addr", "add", "192.0.2.10/20", "dev", "va")
    machine.do("ip", "addr", "add", "192.0.2.11/20", "dev", "va")
    machine.do("ip", "route", "add", "default", "via", "192.0.2.2", "dev", "va", "metric", "200")
    machine.do("ip", "route", "add", "default", "via", "192.0.2.1", "dev", "va", "metric", "100")
    machine.do("ip", "-6", "addr", "add", "2001:db8::10/48", "dev", "va", "nodad")
    machine.do("ip", "-6", "route", "add", "default", "via", "2001:db8::1", "dev", "va")
    link_local = next(
        entry["local"] for entry in machine.ip("-6", "addr", "show", "dev", "va")[0]["addr_info"]
        if entry["scope"] == "link"
    )
    screen = machine.cli("-ethernet", mac, "-gettcpip")
    for told in ("192.0.2.10", "255.255.240.0", "192.0.2.1", "2001:db8::10", "48", "2001:db8::1", link_local):
        assert f": {told}\n" in screen, told
    assert "192.0.2.2" not in screen and "192.0.2.11" not in screen
