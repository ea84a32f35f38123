"""What the module tcpip sends for functions that have no settings yet, and what it refuses to send."""

import json

import pytest

from fleet import DEFAULT_HOST

ETHERNET = "02-00-5E-10-00-00"
STORAGE = "02-00-5E-10-00-02"
MASK = "255.255.255.0"


def tcpip(**options):
    return {"tavro.fleet.tcpip": {"mac": STORAGE, "kind": "iscsi", **options}}


def ethernet(**options):
    return tcpip(mac=ETHERNET, kind="ethernet", **options)


def document_with(settings):
    """A host whose first Ethernet and first iSCSI function have these TCP/IP settings."""
    document = json.loads(DEFAULT_HOST.read_text())
    functions = document["adapters"][0]["ports"][0]["functions"]
    functions[0]["ethernet"]["tcpIp"] = dict(settings)
    functions[1]["iscsi"]["tcpIp"] = dict(settings)
    return document


BARE = {"dhcp": "No", "address": "0.0.0.0", "subnetMask": "0.0.0.0", "gateway": "0.0.0.0", "vlanId": "0",
        "dhcpIPv6": "No", "addressIPv6": "::", "prefixLengthIPv6": "0", "gatewayIPv6": "0:0:0:0:0:0:0:0"}
LEASING = dict(BARE, dhcp="Yes", dhcpIPv6="Yes")
USED = dict(BARE, address="192.0.2.20", subnetMask=MASK, gateway="192.0.2.1", addressIPv6="2001:db8::20",
            prefixLengthIPv6="64", gatewayIPv6="2001:db8::1")


@pytest.mark.parametrize("settings", [BARE, LEASING, dict.fromkeys(BARE, ""), {}])
@pytest.mark.parametrize("task, option", [
    (tcpip(address="192.0.2.29"), "subnet_mask"), (ethernet(address="192.0.2.29"), "subnet_mask"),
    (ethernet(version="ipv6", address="2001:db8::29"), "prefix_length")])
def test_a_mask_that_the_function_does_not_have_is_asked_for(planned, settings, task, option):
    assert planned(task, document_with(settings)) == f"{option}: is needed, since the function has none"


@pytest.mark.parametrize("settings", [BARE, LEASING, dict.fromkeys(BARE, ""), {}])
def test_a_gateway_can_be_none(planned, settings):
    document = document_with(settings)
    assert planned(tcpip(address="192.0.2.29", subnet_mask=MASK), document) == [
        ["-iscsi", STORAGE, "-modifytcpip", "-static", "0", "192.0.2.29", MASK, "0.0.0.0"]]
    assert planned(ethernet(version="ipv6", address="2001:db8::29", prefix_length=48), document) == [
        ["-ethernet", ETHERNET, "-modifytcpip", "-ipv6", "-static", "0", "2001:db8::29", "48", "::"]]


def test_a_gateway_can_become_none(planned):
    assert planned(tcpip(address="192.0.2.20", gateway="0.0.0.0"), document_with(USED)) == [
        ["-iscsi", STORAGE, "-modifytcpip", "-static", "0", "192.0.2.20", MASK, "0.0.0.0"]]


@pytest.mark.parametrize("gateway", ["", "0.0.0.0"])
def test_a_function_as_wanted_needs_nothing(planned, gateway):
    document = document_with(dict(USED, gateway=gateway))
    assert planned(tcpip(address="192.0.2.20", gateway="0.0.0.0"), document) == []
    assert planned(tcpip(address="192.0.2.20", subnet_mask=MASK), document) == []
    assert planned(tcpip(address="192.0.2.20", vlan_id=12), document_with(dict(USED, vlanId="012"))) == []
    assert planned(tcpip(address="192.0.2.20"), document_with(dict(USED, subnetMask="0.0.0.0", gateway=gateway))) == []


@pytest.mark.parametrize("task, message", [
    (ethernet(address="192.0.2.29", prefix_length=24), "prefix_length: does not fit version: ipv4"),
    (ethernet(version="ipv6", address="2001:db8::29", subnet_mask=MASK), "subnet_mask: does not fit version: ipv6"),
    (tcpip(dhcp=True, address="192.0.2.29"), "address: does not fit dhcp: true"),
    (tcpip(dhcp=True, subnet_mask=MASK), "subnet_mask: does not fit dhcp: true"),
    (ethernet(version="ipv6", dhcp=True, prefix_length=48), "prefix_length: does not fit dhcp: true"),
    (tcpip(dhcp=True, gateway="192.0.2.1"), "gateway: does not fit dhcp: true"),
])
def test_an_option_that_would_not_count_is_told(planned, task, message):
    assert planned(task, document_with(USED)) == message


def test_what_a_change_sets_beside_is_a_warning(ask_module):
    def warning(given, **told):
        command, = ask_module("tcpip", document_with(dict(USED, **told)), given["tavro.fleet.tcpip"])
        return command.warning
    static = tcpip(address="192.0.2.29")
    assert warning(static) == "prefixLengthIPv6 64 becomes 124"
    assert warning(static, prefixLengthIPv6="124") is None
    assert warning(static, maxFrameSize="9000") == "maxFrameSize 9000 becomes 1500, prefixLengthIPv6 64 becomes 124"
    assert warning(tcpip(dhcp=True)) == "prefixLengthIPv6 64 becomes 124"
    assert warning(ethernet(address="192.0.2.29")) is None
