"""Changes of the address that are refused, and those that something comes between."""

import fcntl
import os
import pathlib
import signal
import subprocess
import threading
import time

import pytest

from machine import TIME_LIMIT
from test_tcpip import set_ipv4, set_ipv6, settings
from test_tcpip_keeping import routes, told

STEPS = 40  # more messages than one change sends


@pytest.mark.parametrize("address, mask, message", [
    ("224.0.0.1", "255.255.255.0", "An interface cannot have this address."),
    ("255.255.255.255", "255.255.255.0", "An interface cannot have this address."),
    ("127.0.0.1", "255.0.0.0", "An interface cannot have this address."),
    ("0.1.2.3", "255.0.0.0", "An interface cannot have this address."),
    ("192.0.2.0", "255.255.255.0", "An interface cannot have this address."),
    ("192.0.2.255", "255.255.255.0", "An interface cannot have this address."),
    ("192.0.2.10", "0.0.0.0", "Give a mask of leading one bits"),
])
def test_what_is_no_ipv4_address_of_a_host_is_refused(machine, address, mask, message):
    mac = machine.add_pair()
    assert message in set_ipv4(machine, mac, address, mask, "0.0.0.0")
    assert machine.global_addresses("va", "-4") == []


def test_an_ipv4_address_of_the_link_may_be_set(machine):
    mac = machine.add_pair()
    set_ipv4(machine, mac, "169.254.7.7", "255.255.0.0", "0.0.0.0")
    assert settings(machine, mac)["address"] == "169.254.7.7"


@pytest.mark.parametrize("address, prefix, message", [
    ("ff02::1", "64", "An interface cannot have this address."),
    ("::1", "128", "An interface cannot have this address."),
    ("fe80::7", "64", "An interface cannot have this address."),
    ("::ffff:192.0.2.9", "64", "An interface cannot have this address."),
    ("febf::7", "64", "An interface cannot have this address."),
    ("2001:db8::10", "0", "Give a prefix length from 1 to 128."),
])
def test_what_is_no_ipv6_address_of_a_host_is_refused(machine, address, prefix, message):
    mac = machine.add_pair()
    screen = set_ipv6(machine, mac, address, prefix)
    assert message in screen and "255.255" not in screen
    assert machine.global_addresses("va", "-6") == []


@pytest.mark.parametrize("master, advice", [
    (["bridge"], "Give the address to the interface that stands in the details."),
    (["bond"], "Give the address to the interface that stands in the details."),
    (["vrf", "table", "100"], "Set it up with the host's network manager."),
])
def test_an_interface_that_is_part_of_another_is_refused(machine, master, advice):
    try:
        machine.do("ip", "link", "add", "whole", "type", *master)
    except subprocess.CalledProcessError:
        pytest.skip(f"not run here: needs a kernel with interfaces of the kind {master[0]}")
    mac = machine.add_pair()
    machine.do("ip", "link", "set", "va", "down")
    machine.do("ip", "link", "set", "va", "master", "whole")
    machine.do("ip", "link", "set", "va", "up")
    screen = " ".join(set_ipv4(machine, mac, "192.0.2.10", "255.255.255.0", "0.0.0.0").split())
    assert "The interface is part of another one." in screen and "va: whole" in screen and advice in screen
    assert machine.global_addresses("va", "-4") == []


def add_two_interfaces(machine):
    machine.add_pair("vc", "vd")
    mac = machine.add_pair()
    machine.do("ip", "addr", "add", "192.0.2.10/24", "dev", "va")
    machine.do("ip", "addr", "add", "198.51.100.10/24", "dev", "vc")
    return mac


def add_two_ways(machine):
    mac = add_two_interfaces(machine)
    machine.do("ip", "route", "add", "default", "nexthop", "via", "198.51.100.1", "dev", "vc",
               "nexthop", "via", "192.0.2.1", "dev", "va")
    return mac


def test_the_gateway_among_several_next_hops_is_told_and_not_changed(machine):
    mac = add_two_ways(machine)
    assert settings(machine, mac)["gateway"] == "192.0.2.1"
    before = told(machine, "-4"), routes(machine, "-4")
    for gateway in ("192.0.2.2", "0.0.0.0"):
        assert "The default route has several next hops." in set_ipv4(
            machine, mac, "192.0.2.20", "255.255.255.0", gateway)
        assert (told(machine, "-4"), routes(machine, "-4")) == before
    set_ipv4(machine, mac, "192.0.2.20", "255.255.255.0", "192.0.2.1")
    assert machine.global_addresses("va", "-4") == [("192.0.2.20", 24)]
    assert routes(machine, "-4") == before[1]


def test_the_ipv6_gateway_among_several_next_hops_is_told_and_not_changed(machine):
    mac = machine.add_pair()
    machine.do("ip", "-6", "addr", "add", "2001:db8::10/64", "dev", "va", "nodad")
    machine.do("ip", "-6", "route", "add", "default", "nexthop", "via", "2001:db8::1", "dev", "va",
               "nexthop", "via", "2001:db8::2", "dev", "va")
    assert settings(machine, mac)["gateway_ipv6"] == "2001:db8::1"
    before = routes(machine, "-6")
    assert "several next hops" in set_ipv6(machine, mac, "2001:db8::10", "64", "2001:db8::3")
    assert routes(machine, "-6") == before


@pytest.mark.parametrize("metric", ["0", "77"])
def test_a_gateway_beside_that_of_another_interface_is_refused_before_anything_is_done(machine, metric):
    mac = add_two_interfaces(machine)
    machine.do("ip", "route", "add", "default", "via", "198.51.100.1", "dev", "vc", "metric", metric)
    if metric != "0":
        machine.do("ip", "route", "append", "default", "via", "192.0.2.1", "dev", "va", "metric", metric)
    before = told(machine, "-4"), routes(machine, "-4")
    screen = set_ipv4(machine, mac, "192.0.2.20", "255.255.255.0", "192.0.2.3")
    assert "There is another default route of the same metric." in screen and "Details: [vc]" in screen
    assert (told(machine, "-4"), routes(machine, "-4")) == before


def test_a_gateway_beside_one_of_another_metric_is_set(machine):
    mac = add_two_interfaces(machine)
    machine.do("ip", "route", "add", "default", "via", "198.51.100.1", "dev", "vc", "metric", "77")
    set_ipv4(machine, mac, "192.0.2.20", "255.255.255.0", "192.0.2.3")
    assert settings(machine, mac)["gateway"] == "192.0.2.3"


def test_a_gateway_that_is_an_ipv6_address_is_told_and_replaced(machine):
    mac = machine.add_pair()
    machine.do("ip", "addr", "add", "192.0.2.10/24", "dev", "va")
    machine.do("ip", "-4", "route", "add", "default", "via", "inet6", "fe80::7", "dev", "va")
    assert settings(machine, mac)["gateway"] == "fe80::7"
    set_ipv4(machine, mac, "192.0.2.10", "255.255.255.0", "192.0.2.1")
    assert [route["gateway"] for route in machine.ip("-4", "route", "show", "default")] == ["192.0.2.1"]


def test_a_signal_acts_when_the_change_is_done_or_taken_back(machine):
    """Ends the program behind each of its messages to the kernel in turn: no address is ever lost."""
    mac = machine.add_pair()
    machine.do("ip", "addr", "add", "192.0.2.10/24", "dev", "va")
    ended = set()
    for step in range(1, STEPS):
        shown = machine.global_addresses("va", "-4")[0][0]
        other = {"192.0.2.10": "192.0.2.20", "192.0.2.20": "192.0.2.10"}[shown]
        result = subprocess.run(
            ["strace", "-f", "-o", "/dev/null", "-e", "trace=sendmsg", "-e",
             f"inject=sendmsg:signal=SIGTERM:when={step}", machine.programs / "tavrocli", "-ethernet", mac,
             "-modifytcpip", "-ipv4", "-static", "0", other, "255.255.255.0", "0.0.0.0"],
            env=machine.environment | {"ASAN_OPTIONS": "detect_leaks=0"}, capture_output=True, check=False,
            timeout=TIME_LIMIT)
        assert machine.global_addresses("va", "-4") in ([(shown, 24)], [(other, 24)]), step
        ended.add((result.returncode, machine.global_addresses("va", "-4")[0][0] == other))
        if result.returncode == 0:
            break
    assert ended == {(-signal.SIGTERM, False), (-signal.SIGTERM, True), (0, True)}


def test_two_changes_take_turns(machine):
    mac = machine.add_pair()
    set_ipv4(machine, mac, "192.0.2.10", "255.255.255.0", "0.0.0.0")
    lock = pathlib.Path("/run/tavrocli/change.lock")
    assert lock.stat().st_mode & 0o777 == 0o600 and lock.parent.stat().st_mode & 0o777 == 0o700
    with lock.open("r+") as held:
        fcntl.flock(held, fcntl.LOCK_EX)
        second = threading.Thread(target=set_ipv4, args=(machine, mac, "192.0.2.20", "255.255.255.0", "0.0.0.0"))
        second.start()
        time.sleep(1)
        assert machine.global_addresses("va", "-4") == [("192.0.2.10", 24)]
    second.join(TIME_LIMIT)
    assert machine.global_addresses("va", "-4") == [("192.0.2.20", 24)]
    assert os.listdir("/run/tavrocli") == ["change.lock"]
