"""Changes of the address in which something fails: then everything is what it was before."""

import subprocess
import time

from machine import TIME_LIMIT
from test_tcpip import set_ipv6
from test_tcpip_keeping import routes, told

STEPS = 80  # more messages than one change sends
CHANGE = ("192.0.2.20", "255.255.255.0", "192.0.2.3")
FORMER = """
addr flush dev va
addr add 192.0.2.10/24 dev va label va:one
addr add 192.0.2.11/24 dev va
addr add 198.51.100.4/25 dev va
route add default via 192.0.2.1 dev va src 192.0.2.10
route add 198.18.0.0/15 via 192.0.2.2 dev va metric 7
route add 198.20.0.0/15 dev va src 198.51.100.4 table 55
"""


def restore(machine):
    subprocess.run(["ip", "-batch", "-"], input=FORMER, check=True, text=True)


def state(machine):
    return machine.ip("-4", "addr", "show", "dev", "va")[0]["addr_info"], routes(machine, "-4")


def change(machine, mac, *before):
    environment = machine.environment | {"ASAN_OPTIONS": "detect_leaks=0"}
    return subprocess.run([*before, machine.programs / "tavrocli", "-ethernet", mac, "-modifytcpip", "-ipv4", "-static",
                           "0", *CHANGE], env=environment, capture_output=True, check=False, timeout=TIME_LIMIT,
                          text=True).stdout


def test_a_change_and_a_step_of_taking_it_back_may_fail_at_any_message(machine):
    """The kernel's answer is lost twice: once in the change, and once in what follows."""
    mac = machine.add_pair()
    restore(machine)
    former = state(machine)
    assert "were applied" in change(machine, mac)
    wanted = state(machine)
    assert wanted != former
    restore(machine)
    outcomes = set()
    every = 1 if machine.programs.parent.name == "native" else 4
    for step in range(1, STEPS, every):
        screen = change(machine, mac, "strace", "-f", "-o", "/dev/null", "-e", "trace=recvmsg", "-e",
                        f"inject=recvmsg:error=ENOMEM:when={step}..{step + 3}+3")
        isApplied = "were applied" in screen
        assert state(machine) == (wanted if isApplied else former), (step, screen)
        outcomes.add(isApplied)
        if isApplied:
            break
    assert outcomes == {False, True}


def test_an_ipv6_address_of_another_host_is_refused_and_what_others_do_meanwhile_stays(machine):
    mac = machine.add_pair()
    machine.wait_for_link_local("va", "vb")
    machine.do("ip", "-6", "addr", "add", "2001:db8::99/64", "dev", "vb", "nodad")
    machine.do("ip", "-6", "addr", "add", "2001:db8::1/64", "dev", "va", "nodad")
    for last in (1, 2, 3):
        machine.do("ip", "-6", "route", "add", f"2001:db8:{last}::/64", "dev", "va", "src", "2001:db8::1")
    before = told(machine, "-6"), routes(machine, "-6", "dev", "va")
    start = time.monotonic()
    screen = set_ipv6(machine, mac, "2001:db8::99", "64")
    assert time.monotonic() - start < 4
    assert "Another host has this address." in screen and "2001:db8::99" in screen
    assert (told(machine, "-6"), routes(machine, "-6", "dev", "va")) == before


def test_a_change_that_is_taken_back_leaves_what_others_have_added(machine):
    mac = machine.add_pair()
    machine.wait_for_link_local("va")
    machine.set_discovery_time("va", 1000)
    machine.do("ip", "-6", "addr", "add", "2001:db8::1/64", "dev", "va", "nodad")
    process = machine.start(machine.programs / "tavrocli", "-ethernet", mac, "-modifytcpip", "-ipv6", "-static", "0",
                            "2001:db8::2", "64", "2001:db8:9::9", env=machine.environment, stdout=subprocess.PIPE)
    end = time.monotonic() + TIME_LIMIT
    while "2001:db8::2" not in str(told(machine, "-6")) and time.monotonic() < end:
        time.sleep(0.01)
    machine.do("ip", "-6", "route", "add", "2001:db8:5::/64", "dev", "va")
    machine.do("ip", "-6", "addr", "add", "2001:db8::7/64", "dev", "va", "nodad")
    assert process.poll() is None
    screen = process.communicate(timeout=TIME_LIMIT)[0].decode()
    assert "2001:db8:9::9" in screen
    assert sorted(one["local"] for one in told(machine, "-6")) == ["2001:db8::1", "2001:db8::7"]
    assert "2001:db8:5::/64" in str(routes(machine, "-6"))


FORMER_IPV6 = """
addr flush dev va scope global
addr add 2001:db8::1/64 dev va nodad
route replace default via 2001:db8::fe dev va
"""
CHANGE_IPV6 = ("-modifytcpip", "-ipv6", "-static", "0", "2001:db8::1", "64", "2001:db8::fd")


def test_an_ipv6_gateway_whose_setting_is_not_answered_is_taken_back(machine):
    """The address stays, so that the kernel takes no route away by itself. What was not answered is told."""
    mac = machine.add_pair()
    machine.wait_for_link_local("va")

    def restore_ipv6():
        subprocess.run(["ip", "-6", "-batch", "-"], input=FORMER_IPV6, check=True, text=True)
        return told(machine, "-6"), routes(machine, "-6", "dev", "va")

    command = [machine.programs / "tavrocli", "-ethernet", mac, *CHANGE_IPV6]
    environment = machine.environment | {"ASAN_OPTIONS": "detect_leaks=0"}
    former = restore_ipv6()
    assert "were applied" in subprocess.run(command, env=environment, capture_output=True, check=False, text=True,
                                            timeout=TIME_LIMIT).stdout
    wanted = told(machine, "-6"), routes(machine, "-6", "dev", "va")
    assert "2001:db8::fd" in str(wanted) and wanted != former
    outcomes, screens = set(), ""
    every = 1 if machine.programs.parent.name == "native" else 4
    for step in range(1, STEPS, every):
        assert restore_ipv6() == former
        screen = subprocess.run(
            ["strace", "-f", "-o", "/dev/null", "-e", "trace=recvmsg", "-e", f"inject=recvmsg:error=ENOMEM:when={step}",
             *command], env=environment, capture_output=True, check=False, text=True, timeout=TIME_LIMIT).stdout
        is_applied = "were applied" in screen
        assert (told(machine, "-6"), routes(machine, "-6", "dev", "va")) == (wanted if is_applied else former), (step, screen)
        outcomes.add(is_applied)
        screens += screen
        if is_applied:
            break
    assert outcomes == {False, True}
    for unanswered in ("addresses of va", "routes of va", "default routes"):
        assert f"reading the {unanswered}: Cannot allocate memory" in screens
