"""The Ethernet commands as tests type them, and what else they need of an interface."""

import contextlib
import fcntl
import os
import pathlib
import re
import socket
import struct
import subprocess

NET = pathlib.Path("/sys/class/net")
LABELS = {
    "ipv4": "IPv4 Checksum Offload",
    "ipv6": "IPv6 Checksum Offload",
    "address": "Locally Administered Address",
    "jumbo": "Jumbo Packet (bytes)",
    "queues": "Receive Side Scaling Queues",
    "tso4": "Large Send Offload (IPv4)",
    "tso6": "Large Send Offload (IPv6)",
    "rsc": "Receive Segment Coalescing",
}


def settings(machine, mac, **options):
    """The adapter settings that are shown, by our short names."""
    rows = machine.rows("-ethernet", mac, "-getadapinfo", **options)
    return {name: rows[label] for name, label in LABELS.items() if label in rows}


def change(machine, mac, user=None, **values):
    """Changes settings by the dialogue; the line of the log that tells how the writing of them ended."""
    shown = machine.cli("-ethernet", mac, "-setadapinfo", typed="A\n", user=user)
    numbers = {label: number for number, label in re.findall(r"^\t(\d+)\. (.+?) +: ", shown, re.M)}
    typed = ""
    for name, value in values.items():
        number = numbers[LABELS[name]]
        if name == "address":
            typed += f"{number}\n{value}\n"
            continue
        asked = machine.cli("-ethernet", mac, "-setadapinfo", typed=f"{number}\n\nA\n", user=user)
        keys = {text: key for key, text in re.findall(r"^\t(\d+)\. Choice +: (.+)$", asked, re.M)}
        typed += f"{number}\n{keys[value]}\n"
    log = machine.folder / "tavrocli.log"
    log.unlink(missing_ok=True)
    if user is not None:
        machine.folder.chmod(0o777)
    machine.cli("-ethernet", mac, "-setadapinfo", "-debug", typed=typed + "Y\nY\n", user=user)
    [line] = [line for line in log.read_text().splitlines() if "WriteAdapterSettings" in line]
    return line.partition(": status ")[2]


def features(machine, name):
    """Whether each feature is on, as ethtool tells it."""
    return {feature: told["active"] for feature, told in machine.ethtool("-k", name).items() if isinstance(told, dict)}


def driver(name):
    """What ethtool tells of the driver of an interface."""
    text = subprocess.run(["ethtool", "-i", name], capture_output=True, check=True, text=True).stdout
    return {key: value.strip() for key, _, value in (line.partition(":") for line in text.splitlines())}


def channels(name, kind):
    """How many queues of a kind ethtool tells: (largest number, present number)."""
    text = subprocess.run(["ethtool", "-l", name], capture_output=True, check=True, text=True).stdout
    return tuple(int(number) for number in re.findall(rf"^{kind}:\s+(\d+)$", text, re.M))


def folder_of(name, kind):
    """How many queues of a kind ("rx" or "tx") sysfs has of the interface."""
    return len(list((NET / name / "queues").glob(f"{kind}-*")))


@contextlib.contextmanager
def opened_tap(machine, name):
    """A tap interface that is up and has a carrier, since somebody holds it; its MAC."""
    descriptor = os.open("/dev/net/tun", os.O_RDWR)
    try:
        set_interface, tap_without_header = 0x400454CA, 0x1002
        fcntl.ioctl(descriptor, set_interface, struct.pack("16sH22x", name.encode(), tap_without_header))
        machine.do("ip", "link", "set", name, "up")
        yield machine.mac(name)
    finally:
        os.close(descriptor)


def silence(machine, *names):
    """Keeps the kernel from sending anything of its own from these interfaces."""
    for name in names:
        pathlib.Path(f"/proc/sys/net/ipv6/conf/{name}/disable_ipv6").write_text("1")


def send_frames(name, count, size):
    """Sends frames of a size, their header counted, to nobody in particular."""
    frame = bytes.fromhex("02005e00000f" "02005e00000e" "88b5").ljust(size, b"\0")
    with socket.socket(socket.AF_PACKET, socket.SOCK_RAW) as sender:
        sender.bind((name, 0))
        for _ in range(count):
            sender.send(frame)
