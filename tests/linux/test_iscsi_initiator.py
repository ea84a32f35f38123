"""The initiator's name, what an iSCSI port tells of itself, and its ping."""

import json
import pathlib
import signal
import stat
import subprocess

from machine import NOBODY, TIME_LIMIT

FILE = pathlib.Path("/etc/iscsi/initiatorname.iscsi")
NAME = "iqn.2020-01.com.example:host"


def name_told(machine, **options):
    return machine.rows("-iscsi", "-getinitiator", **options).get("iSCSI Initiator Name", "")


def test_the_name_is_that_of_the_hosts_file(machine):
    machine.add_pair()
    assert name_told(machine) == ""
    FILE.parent.mkdir()
    FILE.write_text(f"# of this host\n\nInitiatorName={NAME}\nInitiatorAlias=x\n", encoding="ascii")
    FILE.chmod(0o640)
    assert name_told(machine) == NAME
    assert "The iSCSI initiator was set." in machine.cli("-iscsi", "-setinitiator", NAME + "2")
    assert FILE.read_text(encoding="ascii") == f"# of this host\n\nInitiatorName={NAME}2\nInitiatorAlias=x\n"
    assert stat.S_IMODE(FILE.stat().st_mode) == 0o640
    assert name_told(machine) == NAME + "2"


def test_a_name_that_is_none_changes_nothing(machine):
    machine.cli("-iscsi", "-setinitiator", NAME)
    for name in ("host", "iqn.", "iqn.a b", "eui.1", "iqn." + "a" * 220):
        assert "The initiator name is not usable." in machine.cli("-iscsi", "-setinitiator", name), name
    assert FILE.read_text(encoding="ascii") == f"InitiatorName={NAME}\n"


def test_without_the_right_the_capability_is_named_and_nothing_done(machine):
    machine.cli("-iscsi", "-setinitiator", NAME)
    before = FILE.read_bytes()
    for command in (["-setinitiator", NAME + "2"], ["-getinitiator"]):
        assert "CAP_DAC_OVERRIDE" in machine.cli("-iscsi", *command, user=NOBODY), command
    assert FILE.read_bytes() == before


def test_a_signal_leaves_no_half_of_a_change(machine):
    """It comes when the file of the name has changed and the options have not."""
    machine.cli("-iscsi", "-setinitiator", NAME)
    command = ["strace", "-f", "-o", "/dev/null", "-e", "trace=rename,renameat,renameat2",
               "-e", "inject=rename,renameat,renameat2:signal=SIGTERM:when=1",
               machine.programs / "tavrocli", "-iscsi", "-setinitiator", NAME + "2", "-onewaychap"]
    result = subprocess.run(command, cwd=machine.folder, env=machine.environment | {"ASAN_OPTIONS": "detect_leaks=0"},
                            input=b"incoming\nfirst-secret-1\n", capture_output=True, timeout=TIME_LIMIT, check=False)
    assert result.returncode == -signal.SIGTERM
    assert name_told(machine) == NAME + "2"
    kept = json.loads(pathlib.Path("/var/lib/tavrocli/state.json").read_text())["initiatorLogin"]
    assert (kept["authentication"], kept["targetChapName"]) == ("One-way CHAP", "incoming")


def test_the_port_tells_what_ip_tells(machine):
    mac = machine.add_pair()
    machine.do("ip", "link", "set", "va", "mtu", "1400")
    machine.do("ip", "addr", "add", "192.0.2.1/20", "dev", "va")
    machine.do("ip", "addr", "add", "2001:db8::1/56", "dev", "va", "nodad")
    machine.do("ip", "route", "add", "default", "via", "192.0.2.254", "dev", "va")
    told = machine.rows("-iscsi", mac, "-portinfo")
    link = machine.link("va")
    assert told["Driver Name"] == "veth"
    assert told["MAC Address"] == link["address"].upper().replace(":", "-")
    assert told["Model Name"] == "veth va"
    assert told["Link State"] == "Up" and link["operstate"] == "UP"
    assert told["Maximum Frame Size"] == str(link["mtu"])
    assert machine.global_addresses("va", "-4") == [(told["IPv4 Address"], 20)]
    assert (told["Subnet Mask"], told["DHCP (IPv4)"]) == ("255.255.240.0", "No")
    assert machine.gateways("va", "-4") == [told["IPv4 Gateway"]]
    assert machine.global_addresses("va", "-6") == [(told["IPv6 Address"], int(told["IPv6 Prefix Length"]))]
    assert (told["VLAN"], told["VLAN ID"], told["Active Sessions"]) == ("No", "0", "0")
    machine.do("ip", "link", "set", "vb", "down")
    told = machine.rows("-iscsi", mac, "-portinfo")
    assert (told["Link State"], told["Link Speed"]) == ("Down", "None")


def test_a_ping_wants_an_address(machine):
    mac = machine.add_pair()
    for text in ("host.example", "192.0.2", "192.0.2.256", "2001:db8::g"):
        screen = machine.cli("-iscsi", mac, "-ping", text)
        assert "The text is not an IP address." in screen and "Packets" not in screen, text


def test_a_ping_of_this_host_comes_back(machine):
    mac = machine.add_pair()
    told = machine.rows("-iscsi", mac, "-ping", "::1")
    assert (told["Packets Sent"], told["Packets Received"], told["Packets Lost"]) == ("5", "5", "0%")


def test_only_those_groups_ping_that_the_host_lets(machine):
    """Without a raw socket, a ping takes a socket that the host gives some groups of users."""
    mac = machine.add_pair()
    groups = pathlib.Path("/proc/sys/net/ipv4/ping_group_range")
    groups.write_text("1 0", encoding="ascii")
    assert "CAP_NET_RAW" in machine.cli("-iscsi", mac, "-ping", "127.0.0.1", user=NOBODY)
    assert machine.rows("-iscsi", mac, "-ping", "127.0.0.1")["Packets Received"] == "5"
    groups.write_text(f"0 {NOBODY}", encoding="ascii")
    assert machine.rows("-iscsi", mac, "-ping", "127.0.0.1", user=NOBODY)["Packets Received"] == "5"
