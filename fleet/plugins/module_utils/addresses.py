"""IP addresses and ports as options and hosts have them."""

import ipaddress

from .failure import Failure
from .switches import same_number

DEFAULT_ISCSI_PORT = "3260"


def ipv4_address(option, text):
    """An IPv4 address in its one form; a Failure names the option."""
    return _address(option, text, ipaddress.IPv4Address, "IPv4")


def ipv6_address(option, text):
    """An IPv6 address in its one form."""
    return _address(option, text, ipaddress.IPv6Address, "IPv6")


def ip_address(option, text):
    """An address of either version in its one form."""
    return _address(option, text, ipaddress.ip_address, "IP")


def same_address(first, second):
    """Whether two texts are the same address, however it is written; texts that are none are compared as they are."""
    try:
        return ipaddress.ip_address(first) == ipaddress.ip_address(second)
    except ValueError:
        return first == second


def is_none(text):
    """Whether a host tells by this text that it has no address, mask or prefix length."""
    return text in ("", "0") or same_address(text, "0.0.0.0") or same_address(text, "::")


def tcp_port(option, number):
    """The number of a TCP port as text; a Failure names the option."""
    if number not in range(1, 65536):
        raise Failure(f"{option}: {number} is no TCP port, 1 to 65535")
    return str(number)


def is_portal(portal, address, port):
    """Whether a portal of a host has this address and port (text)."""
    return same_address(portal["address"], address) and same_number(portal.get("port") or DEFAULT_ISCSI_PORT, port)


def _address(option, text, kind, name):
    try:
        return str(kind(text))
    except ValueError:
        raise Failure(f"{option}: {text} is no {name} address") from None
