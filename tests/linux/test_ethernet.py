"""Ethernet ports, their counters and settings: told as the kernel's tools tell them, and changed so that these see it."""

import fcntl
import json
import os
import pathlib
import re
import subprocess
import sys
import threading
import time

import pytest

from ethernet import (
    channels, change, driver, features, folder_of, opened_tap, send_frames, settings, silence,
)
from machine import NOBODY, TIME_LIMIT, rows_of

STATE = pathlib.Path("/var/lib/tavrocli/state.json")
TAP = "not run here: needs /dev/net/tun"
needs_tap = pytest.mark.skipif(not pathlib.Path("/dev/net/tun").exists(), reason=TAP)


def port(machine, mac, **options):
    return machine.rows("-ethernet", mac, "-portinfo", **options)


def counters(machine, mac, **options):
    """The statistics by their labels: texts, or (sent, received)."""
    screen = machine.cli("-ethernet", mac, "-portstat", **options)
    rows = {}
    for label, value in rows_of(screen):
        columns = value.split("\t")
        rows[label] = tuple(column.strip() for column in columns) if len(columns) == 2 else value
    return rows


def told_by_ip(machine, name):
    return machine.ip("-s", "link", "show", "dev", name)[0]["stats64"]


# ---- The port ---------------------------------------------------------------------------------


@pytest.mark.parametrize("kind", ["veth", "macvlan"])
def test_a_port_is_told_as_ip_and_ethtool_tell_it(machine, kind):
    machine.add_pair()
    name = "va"
    if kind == "macvlan":
        name = "mv0"
        machine.do("ip", "link", "add", "link", "va", "name", name, "type", "macvlan")
        machine.do("ip", "link", "set", name, "up")
    machine.do("ip", "link", "set", name, "mtu", "1400")
    mac = machine.mac(name)
    link, told = machine.link(name), driver(name)
    rows = port(machine, mac)
    assert "permaddr" not in link
    assert rows["Permanent MAC Address"] == ""
    assert rows["Current MAC Address"] == mac
    assert link["operstate"] == "UP" and rows["Link State"] == "Up"
    assert rows["Largest Frame (bytes)"] == str(link["mtu"] + 14) == "1414"
    assert rows["Device Name"] == name
    assert rows["Driver Name"] == told["driver"] == kind
    assert rows["Driver Version"] == told["version"]
    assert rows["Firmware Version"] == told["firmware-version"]
    assert rows["PCI Location"] == told["bus-info"]
    assert rows["Adapter Model"] == f"{kind} {name}"
    speed = int(pathlib.Path(f"/sys/class/net/{name}/speed").read_text())
    assert rows["Link Speed"] == f"{speed // 1000} Gbps"
    for label in ("Serial Number", "Part Number", "Hardware Revision", "Maximum Link Speed"):
        assert rows[label] == ""
    assert rows["Flow Control"] == "NA"


def test_a_link_goes_down_with_the_interface_and_with_its_peer(machine):
    mac = machine.add_pair()
    assert port(machine, mac)["Link State"] == "Up"
    for name in ("va", "vb"):
        machine.do("ip", "link", "set", name, "down")
        rows = port(machine, mac)
        assert rows["Link State"] == "Down" and rows["Link Speed"] == "None"
        machine.do("ip", "link", "set", name, "up")
    assert port(machine, mac)["Link State"] == "Up"


@needs_tap
def test_speeds_are_told_in_the_unit_that_suits_them(machine):
    with opened_tap(machine, "tap0") as mac:
        for speed, text in (("100", "100 Mbps"), ("1000", "1 Gbps"), ("2500", "2.5 Gbps"), ("4294967295", "Unknown")):
            machine.do("ethtool", "-s", "tap0", "speed", speed)
            assert port(machine, mac)["Link Speed"] == text


def test_whoever_may_look_sees_the_port_and_its_settings(machine):
    mac = machine.add_pair()
    assert port(machine, mac, user=NOBODY) == port(machine, mac)
    assert settings(machine, mac, user=NOBODY) == settings(machine, mac)


# ---- Statistics -------------------------------------------------------------------------------


def quiet_pair(machine, *options, peer="vb"):
    machine.do("ip", "link", "add", "va", *options, "type", "veth", "peer", "name", peer)
    silence(machine, "va", peer)
    for name in ("va", peer):
        machine.do("ip", "link", "set", name, "up")
    return machine.mac("va")


def test_counters_are_those_of_the_kernel(machine):
    mac = quiet_pair(machine)
    send_frames("va", 7, 200)
    send_frames("vb", 5, 300)
    told = told_by_ip(machine, "va")
    assert told["tx"]["packets"] >= 7 and told["rx"]["bytes"] >= 1500
    rows = counters(machine, mac)
    assert rows["Bytes"] == (str(told["tx"]["bytes"]), str(told["rx"]["bytes"]))
    assert rows["Frames"] == (str(told["tx"]["packets"]), str(told["rx"]["packets"]))
    assert rows["Receive Errors"] == str(told["rx"]["errors"])
    assert rows["Received Frames Dropped"] == str(told["rx"]["dropped"])
    assert rows["Transmit Errors"] == str(told["tx"]["errors"])
    assert rows["Sent Frames Dropped"] == str(told["tx"]["dropped"])
    # A pair of interfaces counts no more than that.
    assert rows["Unicast Frames"] == rows["Broadcast Frames"] == rows["Pause Frames Sent"] == ""


def test_a_reset_counts_from_there(machine):
    mac = quiet_pair(machine)
    send_frames("va", 7, 200)
    before = told_by_ip(machine, "va")
    screen = machine.cli("-ethernet", mac, "-resetstat")
    assert "The statistics were reset." in screen
    assert counters(machine, mac)["Frames"] == ("0", "0")
    send_frames("va", 3, 100)
    assert counters(machine, mac)["Frames"] == ("3", "0")
    assert counters(machine, mac)["Bytes"] == ("300", "0")
    assert told_by_ip(machine, "va")["tx"]["packets"] == before["tx"]["packets"] + 3
    assert STATE.stat().st_mode & 0o777 == 0o600
    assert STATE.parent.stat().st_mode & 0o777 == 0o700


def keeps_baseline(name):
    kept = json.loads(STATE.read_text()).get("interfaces", {}).get(name, {})
    return "ethernet" in kept.get("baselines", {})


def test_a_baseline_ends_with_its_interface(machine):
    mac = quiet_pair(machine, "index", "4711")
    send_frames("va", 9, 200)
    machine.cli("-ethernet", mac, "-resetstat")
    machine.do("ip", "link", "delete", "va")
    # Another interface of that name.
    other = quiet_pair(machine, "index", "4712")
    send_frames("va", 2, 100)
    assert counters(machine, other)["Frames"] == ("2", "0")
    machine.do("ip", "link", "delete", "va")
    # One that even has number and address: its counters stand below.
    mac = quiet_pair(machine, "index", "4711", "address", mac.replace("-", ":"))
    send_frames("va", 4, 100)
    assert counters(machine, mac)["Frames"] == ("4", "0")
    send_frames("va", 20, 100)
    assert counters(machine, mac)["Frames"] == ("24", "0")
    assert not keeps_baseline("va")


def test_a_baseline_is_none_of_another_interface_that_counts_more(machine):
    mac = quiet_pair(machine, "index", "4711")
    send_frames("va", 9, 200)
    machine.cli("-ethernet", mac, "-resetstat")
    machine.do("ip", "link", "delete", "va")
    mac = quiet_pair(machine, "index", "4711")
    send_frames("va", 30, 100)
    assert counters(machine, mac)["Frames"] == ("30", "0")
    assert not keeps_baseline("va")


def test_a_baseline_is_none_of_another_network(machine):
    """Its interface has name, number and address of the one here."""
    mac = quiet_pair(machine, "index", "4711")
    send_frames("va", 9, 200)
    machine.cli("-ethernet", mac, "-resetstat")
    steps = """
        mount -t sysfs sysfs /sys
        ip link add va index 4711 address "$1" type veth peer name vb
        for name in va vb; do
            echo 1 >"/proc/sys/net/ipv6/conf/$name/disable_ipv6"
            ip link set "$name" up
        done
        "$2" -c 'from ethernet import send_frames; send_frames("va", 30, 100)'
        exec "$3" -ethernet "$1" -portstat
    """
    told = subprocess.run(
        ["unshare", "--net", "--mount", "bash", "-euc", steps, "steps", mac.replace("-", ":"), sys.executable,
         machine.programs / "tavrocli"],
        cwd=machine.folder, env=machine.environment | {"PYTHONPATH": str(pathlib.Path(__file__).parent)}, capture_output=True,
        text=True, timeout=TIME_LIMIT, check=True).stdout
    assert dict(rows_of(told))["Frames"].split() == ["30", "0"]
    assert counters(machine, mac)["Frames"] == ("0", "0")


def test_a_baseline_stays_with_its_interface_when_that_is_renamed(machine):
    mac = quiet_pair(machine)
    send_frames("va", 9, 200)
    machine.cli("-ethernet", mac, "-resetstat")
    machine.do("ip", "link", "set", "va", "down")
    machine.do("ip", "link", "set", "va", "name", "renamed")
    machine.do("ip", "link", "set", "renamed", "up")
    send_frames("renamed", 2, 100)
    assert counters(machine, mac)["Frames"] == ("2", "0")
    # Another interface under the old name, which is reset as well.
    other = quiet_pair(machine, peer="vc")
    machine.cli("-ethernet", other, "-resetstat")
    assert counters(machine, other)["Frames"] == ("0", "0")
    assert counters(machine, mac)["Frames"] == ("2", "0")


def test_a_baseline_that_cannot_be_dropped_is_passed_over(machine):
    mac = quiet_pair(machine, "index", "4711")
    send_frames("va", 9, 200)
    machine.cli("-ethernet", mac, "-resetstat")
    machine.do("ip", "link", "delete", "va")
    mac = quiet_pair(machine, "index", "4711", "address", mac.replace("-", ":"))
    send_frames("va", 4, 100)
    machine.do("mount", "-o", "remount,ro", "/var/lib")
    try:
        assert counters(machine, mac)["Frames"] == ("4", "0")
    finally:
        machine.do("mount", "-o", "remount,rw", "/var/lib")


def test_who_may_not_read_the_state_gets_no_wrong_counters(machine):
    pathlib.Path("/var/lib").chmod(0o755)
    mac = quiet_pair(machine)
    send_frames("va", 7, 200)
    assert counters(machine, mac, user=NOBODY)["Frames"] == ("7", "0")
    refused = machine.cli("-ethernet", mac, "-resetstat", user=NOBODY)
    assert "The statistics of the Ethernet port could not be reset." in refused and "CAP_DAC_OVERRIDE" in refused
    assert not STATE.exists()
    machine.cli("-ethernet", mac, "-resetstat")
    refused = machine.cli("-ethernet", mac, "-portstat", user=NOBODY)
    assert "could not be read." in refused and "CAP_DAC_OVERRIDE" in refused


# ---- Settings ---------------------------------------------------------------------------------


def test_settings_are_told_as_ethtool_and_sysfs_tell_them(machine):
    mac = machine.add_pair()
    machine.do("ip", "link", "set", "va", "mtu", "2000")
    for feature, is_on in (("rx", "off"), ("tx-tcp6-segmentation", "off")):
        machine.do("ethtool", "-K", "va", feature, is_on)
    told = features(machine, "va")
    assert not told["rx-checksumming"] and told["tx-checksum-ip-generic"]
    rows = machine.rows("-ethernet", mac, "-getadapinfo")
    assert rows["IPv4 Checksum Offload"] == rows["IPv6 Checksum Offload"] == "Tx Enabled"
    assert rows["Large Send Offload (IPv4)"] == ("Enabled" if told["tx-tcp-segmentation"] else "Disabled")
    assert not told["tx-tcp6-segmentation"] and rows["Large Send Offload (IPv6)"] == "Disabled"
    assert rows["Jumbo Packet (bytes)"] == "2014"
    assert rows["Receive Queues"] == str(folder_of("va", "rx"))
    assert rows["Transmit Queues"] == str(folder_of("va", "tx"))
    # What a pair of interfaces lacks or fixes has no row.
    for label in ("Speed", "Flow Control", "Receive Buffers", "Wake on Magic Packet", "Bus Type", "SR-IOV",
                  "Priority and VLAN", "Temperature"):
        assert label not in rows


def test_every_change_is_seen_by_ethtool_and_ip(machine):
    mac = machine.add_pair("va", "vb", "numrxqueues", "2", "numtxqueues", "2")
    assert channels("va", "RX") == (2, 2)
    ended = change(machine, mac, ipv4="Rx Enabled", jumbo="9014", queues="1", tso4="Disabled", tso6="Disabled")
    assert ended.startswith("0")
    told = features(machine, "va")
    assert told["rx-checksumming"] and not told["tx-checksum-ip-generic"]
    assert not told["tx-tcp-segmentation"] and not told["tx-tcp6-segmentation"]
    assert machine.link("va")["mtu"] == 9000
    assert channels("va", "RX") == (2, 1) and folder_of("va", "rx") == 1
    assert settings(machine, mac) == {
        "ipv4": "Rx Enabled", "ipv6": "Rx Enabled", "address": mac, "jumbo": "9014", "queues": "1",
        "tso4": "Disabled", "tso6": "Disabled",
    }
    assert change(machine, mac, ipv6="Rx & Tx Enabled", jumbo="1514", queues="2").startswith("0")
    assert features(machine, "va")["tx-checksum-ip-generic"]
    assert machine.link("va")["mtu"] == 1500 and channels("va", "RX") == (2, 2)


def test_settings_of_one_feature_must_agree(machine):
    mac = machine.add_pair()
    before = features(machine, "va"), machine.link("va")["mtu"]
    assert change(machine, mac, ipv4="Rx Enabled", ipv6="Disabled", jumbo="9014").startswith("37440")
    assert (features(machine, "va"), machine.link("va")["mtu"]) == before


def test_an_address_is_assigned(machine):
    mac = machine.add_pair()
    assert change(machine, mac, address="02-00-5E-00-00-AB").startswith("0")
    assert machine.link("va")["address"] == "02:00:5e:00:00:ab"
    # An interface without an address of its own is known by the one it has.
    assert port(machine, "02-00-5E-00-00-AB")["Locally Administered Address"] == "02-00-5E-00-00-AB"
    assert change(machine, "02-00-5E-00-00-AB", address="0").startswith("37440")
    assert change(machine, "02-00-5E-00-00-AB", address="03-00-5E-00-00-AB").startswith("37440")
    assert machine.link("va")["address"] == "02:00:5e:00:00:ab"


def add_macvlan(machine, mtu):
    machine.add_pair()
    machine.do("ip", "link", "set", "va", "mtu", mtu)
    machine.do("ip", "link", "set", "va", "address", "02:00:5e:00:00:0a")
    machine.do("ip", "link", "add", "link", "va", "name", "mv0", "mtu", "1500", "type", "macvlan")
    return machine.mac("mv0")


def test_what_the_kernel_refuses_is_told_with_its_reason(machine):
    mac = add_macvlan(machine, "1500")
    # It cannot have larger frames than what it stands on.
    ended = change(machine, mac, jumbo="9014")
    assert ended.startswith("38147") and "setting the MTU of mv0: Invalid argument" in ended
    assert machine.link("mv0")["mtu"] == 1500


def test_a_change_that_fails_takes_back_those_before_it(machine):
    mac = add_macvlan(machine, "9000")
    seen = machine.folder / "seen"
    with seen.open("wb") as output:
        machine.start("ip", "monitor", "link", stdout=output)
        while not seen.read_bytes():
            machine.do("ip", "link", "set", "vb", "alias", str(time.monotonic()))
    # The address is taken, which the kernel finds out when the frames are already larger.
    ended = change(machine, mac, jumbo="9014", address="02-00-5E-00-00-0A")
    assert ended.startswith("38147") and "setting the hardware address of mv0" in ended
    assert machine.link("mv0")["mtu"] == 1500 and machine.mac("mv0") == mac
    limit = time.monotonic() + 5
    while (mtus := re.findall(r" mv0@va: .* mtu (\d+) ", seen.read_text()))[-1:] != ["1500"]:
        assert time.monotonic() < limit, mtus
    assert "9000" in mtus


@needs_tap
def test_what_the_driver_does_not_take_takes_all_back(machine):
    machine.do("ip", "tuntap", "add", "dev", "tap0", "mode", "tap")
    mac = machine.mac("tap0")
    # Whoever holds the interface decides on this, and nobody does.
    assert not features(machine, "tap0")["tx-tcp-segmentation"]
    ended = change(machine, mac, tso4="Enabled", jumbo="4088")
    assert ended.startswith("38147") and "setting 12" in ended
    assert machine.link("tap0")["mtu"] == 1500


def test_who_may_not_change_settings_changes_nothing(machine):
    mac = machine.add_pair()
    before = features(machine, "va"), machine.link("va")["mtu"]
    ended = change(machine, mac, user=NOBODY, tso4="Disabled", jumbo="9014")
    assert ended.startswith("38146") and "CAP_NET_ADMIN" in ended
    assert (features(machine, "va"), machine.link("va")["mtu"]) == before


def test_a_change_of_settings_waits_for_its_turn(machine):
    """So that two at once are one after the other."""
    mac = machine.add_pair()
    lock = pathlib.Path("/run/tavrocli/change.lock")
    lock.parent.mkdir(mode=0o700)
    with lock.open("w") as held:
        fcntl.flock(held, fcntl.LOCK_EX)
        waiting = threading.Thread(target=change, args=(machine, mac), kwargs={"jumbo": "9014"})
        waiting.start()
        time.sleep(1)
        assert waiting.is_alive() and machine.link("va")["mtu"] == 1500
    waiting.join(TIME_LIMIT)
    assert machine.link("va")["mtu"] == 9000


def test_an_interface_that_goes_during_the_dialogue_is_told_to_be_gone(machine):
    mac = machine.add_pair()
    dialogue = machine.start(
        machine.programs / "tavrocli", "-ethernet", mac, "-setadapinfo", "-debug", cwd=machine.folder,
        stdin=subprocess.PIPE, stdout=subprocess.PIPE,
    )
    shown = b""
    while b"Number of the setting to change" not in shown:
        shown += os.read(dialogue.stdout.fileno(), 4096)
    machine.do("ip", "link", "delete", "va")
    dialogue.communicate(b"0\n1\nY\nY\n", timeout=60)
    log = (machine.folder / "tavrocli.log").read_text()
    assert "status 38148, \"The interface is not there any more.\"" in log
