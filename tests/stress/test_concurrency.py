"""Many writers change one host at once, and some are killed at any moment: nothing that was acknowledged is lost, no file is
torn at any time, and no lock is left."""

import dataclasses
import json
import random
import stat
import threading
import time

import pytest

from limits import run_within
from program import TIME_LIMIT

MACS = ("02-00-5E-10-00-02", "02-00-5E-10-00-03")
ADDED_SERVER, REMOVED_SERVER = b"The iSNS server was added.", b"The iSNS server was removed."
ADDED_PORTAL, REMOVED_PORTAL = b"The target portal was added.", b"The target portal was removed."
CHANGING = {4, 5, 23, 24}  # the operations that add and remove them
KILLED = 0.3  # of the changes
SOON = 5  # seconds, for a change that nobody hinders; well below the ten for which a lock is waited for


@dataclasses.dataclass(frozen=True)
class Thing:
    """What a writer adds and removes: an iSNS server of the host, or a portal of a function."""

    mac: str  # "" for a server
    address: str

    def arguments(self, is_added):
        if not self.mac:
            return ["-iscsi", "-isns", "-add" if is_added else "-remove", self.address]
        return ["-iscsi", self.mac, "-portal", "-add" if is_added else "-remove", self.address]

    def acknowledgement(self, is_added):
        if self.mac:
            return ADDED_PORTAL if is_added else REMOVED_PORTAL
        return ADDED_SERVER if is_added else REMOVED_SERVER


def things_in(host):
    """All servers and portals of a host file."""
    found = {Thing("", address) for address in host.get("isnsServers", [])}
    for adapter in host["adapters"]:
        for port in adapter["ports"]:
            for function in port["functions"]:
                portals = function.get("iscsi", {}).get("storage", {}).get("portals", [])
                found |= {Thing(function["mac"], portal["address"]) for portal in portals}
    return found


class Writer(threading.Thread):
    """Makes changes of its own things, one after the other; remembers what was acknowledged."""

    def __init__(self, sandbox, number, changes, seed):
        super().__init__()
        self.sandbox, self.number, self.changes = sandbox, number, changes
        self.chance = random.Random(f"{seed} {number}")
        self.there = {}  # by thing: True, False, or None where it was killed and nobody knows
        self.acknowledged = self.killed = 0
        self.usual = 0.01  # seconds that a change takes, as the last one did
        self.trouble = None

    def run(self):
        try:
            for count in range(self.changes):
                self.change(count)
        except BaseException as error:  # told by the test
            self.trouble = error

    def change(self, count):
        known = [thing for thing, is_there in self.there.items() if is_there]
        if known and self.chance.random() < 0.4:
            thing, is_added = self.chance.choice(known), False
        else:
            mac = self.chance.choice(("", *MACS))
            thing, is_added = Thing(mac, f"198.18.{self.number}.{count + 1}"), True
        is_killed = self.chance.random() < KILLED
        start = time.monotonic()
        process = self.sandbox.start(thing.arguments(is_added))
        if is_killed:
            time.sleep(self.chance.random() * self.usual)
            process.kill()
        output, errors = process.communicate(timeout=TIME_LIMIT)
        if not is_killed:
            self.usual = time.monotonic() - start
        if thing.acknowledgement(is_added) in output:
            self.there[thing] = is_added
            self.acknowledged += 1
        else:
            assert is_killed, (output, errors)
            self.there[thing] = None
            self.killed += 1
        assert is_killed or (errors, process.returncode) == (b"", 0)


class Reader(threading.Thread):
    """Reads the file as often as it can while the writers work: it is always whole."""

    def __init__(self, file):
        super().__init__(daemon=True)
        self.file, self.is_over, self.reads, self.trouble = file, threading.Event(), 0, None

    def run(self):
        try:
            while not self.is_over.wait(0.02):
                json.loads(self.file.read_bytes())
                self.reads += 1
        except BaseException as error:
            self.trouble = error


def write_together(sandbox, writers, changes, seed):
    sandbox.write_script(None)
    assert sandbox.run(Thing("", "198.18.255.1").arguments(True)).exit_code == 0  # makes the file
    reader = Reader(sandbox.host)
    team = [Writer(sandbox, number, changes, seed) for number in range(writers)]
    for thread in (reader, *team):
        thread.start()
    for writer in team:
        writer.join()
    reader.is_over.set()
    reader.join()
    assert [thread.trouble for thread in (reader, *team) if thread.trouble] == []
    assert reader.reads > 0
    return team


def check_what_is_left(sandbox, team):
    found = things_in(json.loads(sandbox.host.read_bytes()))
    for writer in team:
        lost = [thing for thing, is_there in writer.there.items() if is_there and thing not in found]
        risen = [thing for thing, is_there in writer.there.items() if is_there is False and thing in found]
        assert (lost, risen) == ([], [])
    own = {thing for writer in team for thing in writer.there}
    assert {thing for thing in found if thing.address.startswith("198.18.")} <= own | {Thing("", "198.18.255.1")}
    result = sandbox.run_tool(["check", sandbox.platform.path(sandbox.host)])
    assert (result.exit_code, result.errors) == (0, b""), result


def check_that_no_lock_is_left(sandbox):
    late = Thing("", "198.18.255.2")
    sandbox.run(["-about"])  # starts Wine where that is needed
    start = time.monotonic()
    result = run_within(sandbox, sandbox.command(late.arguments(True)))
    assert ADDED_SERVER in result.output
    return time.monotonic() - start


def check_the_trace(sandbox, team):
    """Every line is whole, also beside those that were killed; each acknowledged change has its line."""
    lines = sandbox.trace.read_bytes().split(b"\n")
    assert lines.pop() == b""
    calls = [json.loads(line) for line in lines]
    done = sum(1 for call in calls if call["status"] == 0 and call.get("operation") in CHANGING)
    assert done >= sum(writer.acknowledged for writer in team)


@pytest.fixture
def stress(sandbox, chance, record_property):
    """stress(writers, changes): all of it; the report holds the figures."""
    return lambda writers, changes: stress_in(sandbox, chance, writers, changes, record_property)


def stress_in(sandbox, chance, writers, changes, record_property):
    team = write_together(sandbox, writers, changes, chance.random())
    assert sum(writer.acknowledged for writer in team) > writers * changes // 2
    if writers * changes >= 100:
        assert sum(writer.killed for writer in team) > 0
    check_what_is_left(sandbox, team)
    check_the_trace(sandbox, team)
    assert check_that_no_lock_is_left(sandbox) < SOON
    for figure in ("acknowledged", "killed"):
        record_property(figure, sum(getattr(writer, figure) for writer in team))
    unfinished = list(sandbox.folder.glob("host.json.*.new"))
    record_property("new files left", len(unfinished))
    if not sandbox.platform.is_windows:
        assert {stat.S_IMODE(path.stat().st_mode) for path in unfinished} <= {0o600}


@pytest.mark.platforms("native")
def test_writers_that_are_killed(stress, scaled):
    stress(20, scaled(200))


@pytest.mark.platforms("sanitize")
def test_writers_that_are_killed_with_sanitizers(stress, scaled):
    stress(8, scaled(30))


@pytest.mark.platforms("windows")
def test_writers_that_are_killed_under_wine(stress, scaled):
    stress(8, scaled(30))


@pytest.mark.platforms("native")
def test_a_change_that_is_lost_is_found(sandbox, chance):
    """The checks themselves: a change of one of the writers is taken out of the file."""
    team = write_together(sandbox, 2, 10, chance.random())
    check_what_is_left(sandbox, team)
    thing = next(thing for thing, is_there in team[0].there.items() if is_there)
    assert sandbox.run(thing.arguments(False)).exit_code == 0
    with pytest.raises(AssertionError, match=thing.address):
        check_what_is_left(sandbox, team)
