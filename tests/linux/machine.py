"""The machine that the tests run on: the programs beside the library for Linux hosts, and the tools whose word counts."""

import json
import os
import pathlib
import re
import subprocess
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BUILDS = ("native", "sanitize")
TIME_LIMIT = 60  # seconds; a hanging program ends in a failure
NOBODY = 65534
DISCOVERY_TIME = 100  # milliseconds
RULE = re.compile(r"^[\t -]*-{20,}$")


def is_own_network():
    """Whether this process is in another network namespace than who started it, by the number that was handed on."""
    outer = os.environ.get("TAVRO_OUTER_NETWORK", "")
    return outer != "" and outer != str(os.stat("/proc/self/ns/net").st_ino)


def rows_of(screen):
    """The labelled rows of a screen, in order: (label, value)."""
    rows = []
    for line in screen.splitlines():
        label, separator, value = line.partition(":")
        if separator and not RULE.match(line):
            rows.append((label.strip(), value.strip()))
    return rows


def programs_of(build):
    """Where a build has put the programs and the library for Linux hosts."""
    return ROOT / "build" / build / "linux"


class Machine:
    """Runs the programs of one build, and changes and asks the network namespace."""

    def __init__(self, build, folder):
        self.programs = programs_of(build)
        self.folder = folder
        self.environment = {"PATH": os.environ["PATH"], "LANG": "C.UTF-8", "HOME": str(folder)}
        self.processes = []

    def start(self, *command, **options):
        """Starts a program that is ended with the test."""
        process = subprocess.Popen([str(part) for part in command], **options)
        self.processes.append(process)
        return process

    def stop_all(self):
        for process in self.processes:
            process.kill()
            process.wait()

    def run(self, program, *arguments, typed="", user=None, environment=None):
        command = [str(self.programs / program), *map(str, arguments)]
        who = {"user": user, "group": user, "extra_groups": []} if user is not None else {}
        return subprocess.run(
            command, cwd=self.folder, env=self.environment | (environment or {}), input=typed.encode(),
            capture_output=True, timeout=TIME_LIMIT, check=False, **who,
        )

    def cli(self, *arguments, **options):
        """What tavrocli prints; it ends with 0 whatever comes of the command."""
        result = self.run("tavrocli", *arguments, **options)
        assert result.returncode == 0 and result.stderr == b"", result
        return result.stdout.decode()

    def rows(self, *arguments, **options):
        return dict(rows_of(self.cli(*arguments, **options)))

    def ip(self, *arguments):
        text = subprocess.run(["ip", "-j", "-d", *arguments], capture_output=True, check=True, text=True).stdout
        return json.loads(text) if text.strip() else []

    def do(self, *command):
        """Runs a tool that must succeed."""
        subprocess.run(list(map(str, command)), check=True, capture_output=True, timeout=TIME_LIMIT)

    def ethtool(self, *arguments):
        """The JSON that ethtool tells of one interface."""
        text = subprocess.run(["ethtool", "--json", *arguments], capture_output=True, check=True, text=True).stdout
        return json.loads(text)[0]

    def remove_interfaces(self):
        """All but the loopback interface, as one group, since the kernel takes a while for each removal."""
        names = [link["ifname"] for link in self.ip("link") if link["ifname"] != "lo"]
        lines = "".join(f"link set dev {name} group 7\n" for name in names)
        subprocess.run(["ip", "-batch", "-"], input=lines, check=True, text=True)
        if names:
            self.do("ip", "link", "delete", "group", "7")
        # Routes that lead nowhere go with no interface.
        for family in ("-4", "-6"):
            subprocess.run(["ip", family, "route", "flush", "table", "all", "proto", "boot"], check=False,
                           capture_output=True)

    def link(self, name):
        return self.ip("link", "show", "dev", name)[0]

    def mac(self, name):
        return self.link(name)["address"].upper().replace(":", "-")

    def add_pair(self, name="va", peer="vb", *options):
        """Two veth interfaces that are up; the MAC of the first."""
        self.do("ip", "link", "add", name, *options, "type", "veth", "peer", "name", peer)
        for one in (name, peer):
            self.set_discovery_time(one, DISCOVERY_TIME)
        self.do("ip", "link", "set", name, "up")
        self.do("ip", "link", "set", peer, "up")
        return self.mac(name)

    def set_discovery_time(self, name, milliseconds):
        """For how long the kernel waits whether another host has a new IPv6 address; a second or two of itself."""
        (pathlib.Path("/proc/sys/net/ipv6/neigh") / name / "retrans_time_ms").write_text(str(milliseconds))
        (pathlib.Path("/proc/sys/net/ipv6/conf") / name / "router_solicitation_delay").write_text("0")

    def wait_for_link_local(self, *names):
        """Until the kernel has tried the link-local addresses, which it forms when a link comes up."""
        end = time.monotonic() + TIME_LIMIT
        while time.monotonic() < end:
            entries = [entry for name in names for link in self.ip("-6", "addr", "show", "dev", name)
                       for entry in link.get("addr_info", []) if entry.get("scope") == "link"]
            if len(entries) == len(names) and not any(entry.get("tentative") for entry in entries):
                return
            time.sleep(0.05)
        raise AssertionError(f"no link-local addresses: {names}")

    def global_addresses(self, name, family):
        """Address and prefix length of every global address, in the kernel's order."""
        told = self.ip(family, "addr", "show", "dev", name)
        return [
            (entry["local"], entry["prefixlen"])
            for link in told for entry in link.get("addr_info", []) if entry.get("scope") == "global"
        ]

    def gateways(self, name, family):
        return [
            route["gateway"] for route in self.ip(family, "route", "show", "default", "dev", name) if "gateway" in route
        ]
