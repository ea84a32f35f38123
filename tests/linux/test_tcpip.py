"""The TCP/IP settings of an interface: told as `ip` tells them, and changed so that `ip` sees it."""

import pytest

from machine import NOBODY, rows_of

# The rows of the read-out, in its order.
ROWS = (
    "vlan", "vlan_id", "dhcp", "address", "mask", "gateway", "dhcp_ipv6", "link_local", "address_ipv6", "prefix_ipv6",
    "gateway_ipv6",
)


def settings(machine, mac, **options):
    values = [value for label, value in rows_of(machine.cli("-ethernet", mac, "-gettcpip", **options)) if value]
    return dict(zip(ROWS, values[-len(ROWS):], strict=True))



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


def test_an_address_with_a_lifetime_was_leased(machine):
    mac = machine.add_pair()
    machine.do("ip", "addr", "add", "192.0.2.10/24", "dev", "va", "valid_lft", "1000", "preferred_lft", "1000")
    assert settings(machine, mac)["dhcp"] == "Yes"
    machine.do("ip", "addr", "add", "198.51.100.10/24", "dev", "va")
    told = settings(machine, mac)
    assert (told["dhcp"], told["address"]) == ("No", "198.51.100.10"), "one that is there for good comes first"


def test_a_static_address_is_set_replaced_and_taken_away(machine):
    mac = machine.add_pair()
    set_ipv4(machine, mac, "192.0.2.10", "255.255.255.0", "192.0.2.1")
    assert machine.global_addresses("va", "-4") == [("192.0.2.10", 24)]
    assert machine.gateways("va", "-4") == ["192.0.2.1"]
    set_ipv4(machine, mac, "198.51.100.10", "255.255.0.0", "198.51.100.1")
    assert machine.global_addresses("va", "-4") == [("198.51.100.10", 16)]
    assert machine.gateways("va", "-4") == ["198.51.100.1"]
    set_ipv4(machine, mac, "198.51.100.10", "255.255.0.0", "0.0.0.0")
    assert machine.global_addresses("va", "-4") == [("198.51.100.10", 16)]
    assert machine.gateways("va", "-4") == []
    set_ipv4(machine, mac, "0.0.0.0", "0.0.0.0", "0.0.0.0")
    assert machine.global_addresses("va", "-4") == []


def test_a_static_ipv6_address_is_set_replaced_and_taken_away(machine):
    mac = machine.add_pair()
    set_ipv6(machine, mac, "2001:DB8::10", "48", "2001:db8::1")
    assert machine.global_addresses("va", "-6") == [("2001:db8::10", 48)]
    assert machine.gateways("va", "-6") == ["2001:db8::1"]
    set_ipv6(machine, mac, "2001:db8:1::10", "64")
    assert machine.global_addresses("va", "-6") == [("2001:db8:1::10", 64)]
    assert machine.gateways("va", "-6") == []
    set_ipv6(machine, mac, "::", "64")
    assert machine.global_addresses("va", "-6") == []
    assert any(
        entry["scope"] == "link" for entry in machine.ip("-6", "addr", "show", "dev", "va")[0]["addr_info"]
    ), "the link-local address belongs to the kernel"


def test_one_family_leaves_the_other_alone(machine):
    mac = machine.add_pair()
    set_ipv4(machine, mac, "192.0.2.10", "255.255.255.0", "192.0.2.1")
    set_ipv6(machine, mac, "2001:db8::10", "64")
    assert machine.global_addresses("va", "-4") == [("192.0.2.10", 24)]
    assert machine.gateways("va", "-4") == ["192.0.2.1"]


def test_other_addresses_and_routes_stay(machine):
    mac = machine.add_pair()
    machine.do("ip", "addr", "add", "192.0.2.10/24", "dev", "va")
    machine.do("ip", "addr", "add", "192.0.2.11/24", "dev", "va")
    machine.do("ip", "addr", "add", "203.0.113.5/24", "dev", "va")
    machine.do("ip", "route", "add", "default", "via", "192.0.2.1", "dev", "va")
    machine.do("ip", "route", "add", "default", "via", "203.0.113.1", "dev", "va", "metric", "500")
    machine.do("ip", "route", "add", "198.18.0.0/15", "via", "203.0.113.9", "dev", "va", "metric", "7", "mtu", "1400")
    set_ipv4(machine, mac, "192.0.2.20", "255.255.255.0", "192.0.2.2")
    assert sorted(machine.global_addresses("va", "-4")) == [
        ("192.0.2.11", 24), ("192.0.2.20", 24), ("203.0.113.5", 24)]
    assert machine.gateways("va", "-4") == ["192.0.2.2", "203.0.113.1"]
    kept = machine.ip("-4", "route", "show", "198.18.0.0/15", "dev", "va")[0]
    assert (kept["gateway"], kept["metric"], kept["metrics"]) == ("203.0.113.9", 7, [{"mtu": 1400}])


def test_the_last_address_is_replaced_without_loss_of_routes(machine):
    mac = machine.add_pair()
    set_ipv4(machine, mac, "192.0.2.10", "255.255.255.0", "192.0.2.1")
    machine.do("ip", "route", "add", "198.18.0.0/15", "via", "192.0.2.9", "dev", "va")
    set_ipv4(machine, mac, "192.0.2.20", "255.255.255.0", "192.0.2.1")
    assert machine.global_addresses("va", "-4") == [("192.0.2.20", 24)]
    assert machine.gateways("va", "-4") == ["192.0.2.1"]
    assert machine.ip("-4", "route", "show", "198.18.0.0/15", "dev", "va")[0]["gateway"] == "192.0.2.9"


@pytest.mark.parametrize("gateway", ["198.51.100.1", "224.0.0.1"])
def test_a_gateway_that_the_kernel_refuses_leaves_everything_as_it_was(machine, gateway):
    mac = machine.add_pair()
    set_ipv4(machine, mac, "203.0.113.5", "255.255.255.0", "203.0.113.1")
    machine.do("ip", "addr", "add", "203.0.113.6/24", "dev", "va")
    machine.do("ip", "route", "add", "198.18.0.0/15", "via", "203.0.113.9", "dev", "va", "metric", "7", "mtu", "1400")
    before = machine.ip("-4", "addr", "show", "dev", "va"), machine.ip("-4", "route", "show", "dev", "va")
    screen = set_ipv4(machine, mac, "192.0.2.10", "255.255.255.0", gateway)
    assert "The system did not do that." in screen and f"adding the gateway {gateway} of va" in screen
    after = machine.ip("-4", "addr", "show", "dev", "va"), machine.ip("-4", "route", "show", "dev", "va")
    assert without_lifetimes(after[0]) == without_lifetimes(before[0])
    assert sorted(map(str, after[1])) == sorted(map(str, before[1]))


def without_lifetimes(told):
    return [(entry["local"], entry["prefixlen"], entry["scope"]) for entry in told[0]["addr_info"]]


@pytest.mark.parametrize("command, reason", [
    (["-ipv4", "-dhcp", "0"], "a DHCP client"),
    (["-ipv6", "-dhcp", "0"], "a DHCP client"),
    (["-ipv4", "-static", "5", "192.0.2.10", "255.255.255.0", "192.0.2.1"], "a VLAN"),
    (["-ipv4", "-static", "0", "192.0.2.10", "255.0.255.0", "192.0.2.1"], "no subnet mask"),
])
def test_what_belongs_elsewhere_is_refused(machine, command, reason):
    mac = machine.add_pair()
    assert reason in machine.cli("-ethernet", mac, "-modifytcpip", *command)
    assert machine.global_addresses("va", "-4") == []


def test_the_iscsi_function_has_no_address_of_its_own(machine):
    mac = machine.add_pair()
    screen = machine.cli("-iscsi", mac, "-modifytcpip", "-static", "0", "192.0.2.10", "255.255.255.0", "192.0.2.1")
    assert "The address belongs to the interface." in screen and "-ethernet" in screen
    assert machine.global_addresses("va", "-4") == []


def test_without_the_right_the_capability_is_named_and_nothing_done(machine):
    mac = machine.add_pair()
    set_ipv4(machine, mac, "192.0.2.10", "255.255.255.0", "192.0.2.1")
    told = ["-ethernet", mac, "-modifytcpip", "-ipv4", "-static", "0", "198.51.100.10", "255.255.255.0", "0.0.0.0"]
    assert "CAP_NET_ADMIN" in machine.cli(*told, user=NOBODY)
    assert machine.global_addresses("va", "-4") == [("192.0.2.10", 24)]
    assert machine.gateways("va", "-4") == ["192.0.2.1"]
    assert settings(machine, mac, user=NOBODY)["address"] == "192.0.2.10"


def test_ipv6_that_is_switched_off_is_named(machine):
    mac = machine.add_pair()
    machine.do("sysctl", "-w", "net.ipv6.conf.va.disable_ipv6=1")
    assert "IPv6, which is switched off on va" in set_ipv6(machine, mac, "2001:db8::10", "64")


def test_an_interface_that_is_gone_is_no_function(machine):
    mac = machine.add_pair()
    machine.do("ip", "link", "delete", "va")
    assert "No Ethernet function of this host has this MAC." in machine.cli("-ethernet", mac, "-gettcpip")


def test_two_interfaces_with_one_key_are_both_named(machine):
    machine.add_pair()
    machine.add_pair("vc", "vd")
    mac = machine.mac("va")
    machine.do("ip", "link", "set", "vc", "address", mac.replace("-", ":"))
    assert machine.cli("-showadapter").count(f"Port Identifier                   : {mac}\n") == 4
    screen = machine.cli("-ethernet", mac, "-gettcpip")
    assert "Several functions of this host have this identifier." in screen and "va vc" in screen
