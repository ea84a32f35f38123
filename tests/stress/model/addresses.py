"""The TCP/IP settings of a port: its addresses and its VLAN."""

from model.host import value_of
from model.outcome import Outcome
from model.words import is_in_range, is_ipv4, is_ipv6

IN_USE, NO_LEASE = "The address is in use on this host.", "The DHCP server has no free address."
NO_ETHERNET, NO_ISCSI = "No Ethernet function of this host has this MAC.", "No iSCSI function of this host has this MAC."
REASONS = (IN_USE, NO_LEASE, NO_ETHERNET, NO_ISCSI)
EXAMPLE = {"dhcpIPv6": "No", "addressIPv6": "2001:DB8:85A3:42:1000:8A2E:370:7334", "prefixLengthIPv6": "124",
           "gatewayIPv6": "0:0:0:0:0:0:0:0"}
ALWAYS = {"vlanPriority": "0", "maxFrameSize": "1500"}
ZEROS = ":".join(["0000"] * 8)
HIGHEST_VLAN, HIGHEST_PREFIX = 4094, 128
# What may stand several times on a host.
FREE_FOR_ALL = [value_of(text) for text in (EXAMPLE["addressIPv6"], "0.0.0.0", "::")]
# What DHCP gives: the addresses, the first one first, with the mask or prefix length and the gateway.
LEASES = ([f"192.0.2.{number}" for number in range(100, 200)], "255.255.255.0", "192.0.2.1")
LEASES_IPV6 = ([f"2001:db8::{number}" for number in range(100, 200)], "64", "2001:db8::1")
NAMES, NAMES_IPV6 = ("address", "subnetMask", "gateway"), ("addressIPv6", "prefixLengthIPv6", "gatewayIPv6")


def word(words, position):
    return words[position] if position < len(words) else ""


def checked(outcome, *checks):
    """Says the message of the first check that fails; whether none did."""
    failed = next((message for is_right, message in checks if not is_right), None)
    if failed:
        outcome.reject(failed)
    return failed is None


def lease(host, function, offer):
    """What DHCP gives a function: the first address that no other function has, and what goes with it; None without one."""
    addresses, *others = offer
    free = next((address for address in addresses if not host.has_address(address, function)), None)
    return (free, *others) if free else None


def set_tcp_ip(host, function, settings):
    """Takes over the settings, unless they hold an address of another function."""
    for name in ("address", "addressIPv6"):
        text = settings.get(name)
        if text is not None and value_of(text) not in FREE_FOR_ALL and host.has_address(text, function):
            return [IN_USE]
    function["tcpIp"].update(settings)
    return []


def iscsi_dhcp(host, words, keyboard):
    outcome = Outcome()
    if len(words) < 6 or not checked(outcome, (is_in_range(words[5], HIGHEST_VLAN), 28685)):
        return outcome
    function = host.function("iscsi", words[2])
    if not function:
        return outcome.say(25858).refuse(NO_ISCSI)
    leased = lease(host, function, LEASES)
    if not leased:
        return outcome.say(25858).refuse(NO_LEASE)
    settings = {"dhcp": "Yes", **dict(zip(NAMES, leased)), "vlanId": words[5], **ALWAYS, **EXAMPLE}
    return reported(outcome, set_tcp_ip(host, function, settings))


def iscsi_static(host, words, keyboard):
    outcome = Outcome()
    vlan, *texts = (word(words, position) for position in range(5, 9))
    if not checked(outcome, (is_ipv4(texts[0]), 28673), (is_in_range(vlan, HIGHEST_VLAN), 28685),
                   (is_ipv4(texts[1]), 28686), (is_ipv4(texts[2]), 28687)):
        return outcome
    function = host.function("iscsi", words[2])
    if not function:
        return outcome.say(25858).refuse(NO_ISCSI)
    settings = {"dhcp": "No", **dict(zip(NAMES, texts)), "vlanId": vlan, **ALWAYS, "prefixLengthIPv6": "124"}
    return reported(outcome, set_tcp_ip(host, function, settings))


def ethernet_dhcp(host, words, keyboard):
    outcome = Outcome()
    if len(words) < 7 or not checked(outcome, (is_in_range(words[6], HIGHEST_VLAN), 28685)):
        return outcome
    function = host.function("ethernet", words[2])
    if not function:
        return outcome.say(25858).refuse(NO_ETHERNET)
    is_ipv4_meant = words[4] == "-ipv4"
    leased = lease(host, function, LEASES if is_ipv4_meant else LEASES_IPV6)
    if not leased:
        return outcome.say(25858).refuse(NO_LEASE)
    settings = {"dhcp" if is_ipv4_meant else "dhcpIPv6": "Yes", **dict(zip(NAMES if is_ipv4_meant else NAMES_IPV6, leased))}
    return set_ethernet(host, function, outcome, words[6], settings)


def ethernet_static(host, words, keyboard):
    outcome = Outcome()
    vlan, *texts = (word(words, position) for position in range(6, 10))
    is_vlan = (is_in_range(vlan, HIGHEST_VLAN), 28685)
    if words[4] == "-ipv4":
        checks = ((is_ipv4(texts[0]), 28673), is_vlan, (is_ipv4(texts[1]), 28686), (is_ipv4(texts[2]), 28687))
        settings = {"dhcp": "No", **dict(zip(NAMES, texts))}
    else:
        address, prefix, gateway = (text if len(words) > 7 + number else default
                                    for number, (text, default) in enumerate(zip(texts, ("", "64", ZEROS))))
        checks = ((is_ipv6(address), 28673), is_vlan, (is_in_range(prefix, HIGHEST_PREFIX), 28698),
                  (is_ipv6(gateway), 28687))
        settings = {"dhcpIPv6": "No", **dict(zip(NAMES_IPV6, (address, prefix, gateway)))}
    if not checked(outcome, *checks):
        return outcome
    function = host.function("ethernet", words[2])
    if not function:
        return outcome.say(25858).refuse(NO_ETHERNET)
    return set_ethernet(host, function, outcome, vlan, settings)


def set_ethernet(host, function, outcome, vlan, settings):
    """Another VLAN ID waits for the restart, everything else is in force at once."""
    pending = "" if vlan == function["tcpIp"]["vlanId"] else vlan
    refusals = set_tcp_ip(host, function, {**settings, **ALWAYS, "pendingVlanId": pending})
    return reported(outcome, refusals, 25860 if pending else 25857)


def reported(outcome, refusals, success=25857):
    return outcome.say(25858).refuse(*refusals) if refusals else outcome.say(success)


def restart(host):
    """Puts in force what waits for the restart."""
    for function in host.functions:
        if function.get("tcpIp", {}).get("pendingVlanId"):
            function["tcpIp"].update(vlanId=function["tcpIp"]["pendingVlanId"], pendingVlanId="")


def is_tagged(settings):
    return "No" if settings["vlanId"] == "0" else "Yes"


def ethernet_settings(host, words, keyboard):
    outcome = Outcome()
    function = host.function("ethernet", words[2])
    if not function:
        return outcome.say(25367).refuse(NO_ETHERNET)
    settings = function["tcpIp"]
    outcome.title(30208, words[2])
    outcome.say("[VLAN]").row(30214, is_tagged(settings)).row(30215, settings["vlanId"])
    outcome.say("[IPv4]").row(30210, settings["dhcp"])
    for label, name in zip((30211, 30212, 30213), NAMES):
        outcome.row(label, settings[name])
    outcome.say("[IPv6]").row(30217, settings["dhcpIPv6"])
    for label, name in zip((30224, 30234, 30235), NAMES_IPV6):
        outcome.row(label, settings[name])
    return outcome.ends_a_table()


def iscsi_settings(host, words, keyboard):
    outcome = Outcome()
    function = host.function("iscsi", words[2])
    if not function:
        return outcome.say(25367).refuse(NO_ISCSI)
    settings = function["tcpIp"]
    outcome.rule().row(25345, None).rule()
    for label in range(25346, 25354):
        outcome.row(label, None)
    rows = ("dhcp", *NAMES, "", "vlanId", "vlanPriority", "dhcpIPv6", "maxFrameSize", *NAMES_IPV6)
    for label, name in enumerate(rows, start=25354):
        outcome.row(label, settings[name] if name else is_tagged(settings))
    return outcome.row(25366, str(len(function["sessions"]))).ends_a_table()
