"""What the initiator makes of servers that are no targets, and through which interface it goes."""

import contextlib
import pathlib
import time

import pytest

from iscsi_servers import INITIATOR, NAME, PORT, Server, Target, closes_behind, login_response, resets, says

SILENT = "No reply came in time."
INVALID = "What replies there does not speak iSCSI."
ENDED = "The other side ended the connection."


@pytest.fixture
def port(machine):
    mac = machine.add_pair()
    machine.cli("-iscsi", "-setinitiator", INITIATOR)
    return mac


def add_portal(machine, port, number, address="127.0.0.1"):
    return machine.cli("-iscsi", port, "-portal", "-add", address, number)


GARBAGE = {
    "of another protocol": says(b"HTTP/1.1 400 Bad Request\r\n\r\n" * 4),
    "of one byte": says(b"\x00"),
    "that announces too much": says(b"\x23\x87\x00\x00\x00\xff\xff\xff" + bytes(64)),
    "that negotiates nonsense": says(login_response(0, b"\xff" * 64)),
    "with zeros": says(bytes(4096)),
}


@pytest.mark.parametrize("answer", GARBAGE.values(), ids=GARBAGE)
def test_garbage_is_no_iscsi(machine, port, answer):
    with Server(answer) as server:
        assert INVALID in add_portal(machine, port, server.port)


@pytest.mark.parametrize("answer", [closes_behind(), closes_behind(b"\x23"), resets],
                         ids=["at once", "within an answer", "abruptly"])
def test_a_connection_that_ends_is_told_so(machine, port, answer):
    with Server(answer) as server:
        assert ENDED in add_portal(machine, port, server.port)


def test_a_server_that_says_nothing_is_waited_for_in_vain_for_seconds_only(machine, port):
    with Server(lambda connection: None) as server:
        start = time.monotonic()
        assert SILENT in add_portal(machine, port, server.port)
        assert 3 < time.monotonic() - start < 8
        assert ":\t" not in machine.cli("-iscsi", port, "-portal", "-listall")


@pytest.mark.parametrize("status, reason", [
    (0x0101, "The target has moved to another portal."),
    (0x0202, "The target does not let this initiator in."),
    (0x0204, "There is no such target at this portal."),
    (0x0208, "The target refuses the login."),
    (0x0301, "The target cannot take logins now."),
])
def test_each_status_of_a_login_has_its_reason(machine, port, status, reason):
    with Server(says(login_response(status))) as server:
        screen = machine.cli("-iscsi", port, "-target", "-login", NAME + "a", "127.0.0.1", server.port, typed="y\n")
        assert reason in screen and f"0x{status:04x}" in screen


def test_without_a_name_the_initiator_asks_nobody(machine):
    mac = machine.add_pair()
    asked = []
    with Server(asked.append) as server:
        assert "The host's initiator has no name." in add_portal(machine, mac, server.port)
    assert asked == []


@pytest.mark.parametrize("number", ["0", "65536"])
def test_a_port_number_that_is_none_is_refused(machine, port, number):
    assert "The port number is not usable." in add_portal(machine, port, number)


@contextlib.contextmanager
def any_address_is_bound():
    switches = [pathlib.Path(f"/proc/sys/net/{family}/ip_nonlocal_bind") for family in ("ipv4", "ipv6")]
    for switch in switches:
        switch.write_text("1", encoding="ascii")
    try:
        yield
    finally:
        for switch in switches:
            switch.write_text("0", encoding="ascii")


def test_connections_and_pings_leave_through_the_ports_own_interface(machine, port, tmp_path):
    """The target stands in a network of its own behind one of two interfaces, and the other one has no link."""
    machine.do("ip", "netns", "add", "peer")
    try:
        machine.do("ip", "link", "set", "vb", "netns", "peer")
        machine.do("ip", "-n", "peer", "addr", "add", "192.0.2.2/24", "dev", "vb")
        machine.do("ip", "-n", "peer", "link", "set", "vb", "up")
        machine.do("ip", "-n", "peer", "addr", "add", "2001:db8::2/64", "dev", "vb", "nodad")
        machine.do("ip", "addr", "add", "192.0.2.1/24", "dev", "va")
        machine.do("ip", "addr", "add", "2001:db8::1/64", "dev", "va", "nodad")
        machine.do("ip", "link", "add", "vc", "type", "veth", "peer", "name", "vd")
        other = machine.mac("vc")
        Target(machine, tmp_path, f"192.0.2.2:{PORT}", within=("ip", "netns", "exec", "peer")).add("far", 1 << 20)

        assert "The target portal was added." in add_portal(machine, port, PORT, "192.0.2.2")
        assert NAME + "far" in machine.cli("-iscsi", port, "-target", "-listall")
        screen = add_portal(machine, other, PORT, "192.0.2.2")
        assert "No service takes connections at this portal." in screen

        for address in ("192.0.2.2", "2001:db8::2"):
            told = machine.rows("-iscsi", port, "-ping", address)
            assert (told["Packets Sent"], told["Packets Received"], told["Packets Lost"]) == ("5", "5", "0%")
            told = machine.rows("-iscsi", other, "-ping", address)
            assert (told["Packets Sent"], told["Packets Received"], told["Packets Lost"]) == ("5", "0", "100%")

        # Every socket may have every address then, which makes none of them the host's own.
        with any_address_is_bound():
            assert "No service takes connections at this portal." in add_portal(machine, other, PORT, "192.0.2.2")
            for address in ("192.0.2.2", "2001:db8::2"):
                assert machine.rows("-iscsi", other, "-ping", address)["Packets Received"] == "0"
            for address in ("127.0.0.2", "192.0.2.1", "2001:db8::1"):
                assert machine.rows("-iscsi", other, "-ping", address)["Packets Received"] == "5", "of the host itself"
    finally:
        machine.stop_all()
        # The interfaces of a network go some time after it, and would be in the way of their removal here.
        machine.do("ip", "-n", "peer", "link", "delete", "vb")
        machine.do("ip", "netns", "delete", "peer")
        machine.do("umount", "/run/netns")
