"""A change that is interrupted on four hosts of five, and done again later. Two hosts hang, on one the process with the
management library is killed, and on one tavrohost itself."""

import fcntl
import pathlib

import pytest

from fleet import TAVROHOST

STOP = TAVROHOST.parent.parent / "programs" / "stop_at_change.so"
WANTED = "192.0.2.29"
TASKS = {
    "address": {
        "tavro.fleet.tcpip": {
            "mac": "02-00-5E-10-00-02", "kind": "iscsi", "address": WANTED, "time_limit": "{{ limit }}"}},
}
LIMIT = 5  # seconds, of the hosts that hang
# How each host is stopped, and at which text in its new host file: reading counters writes one too.
STOPS = {
    "usual": {},
    "hanging when it is read": {"STOP_AT_CHANGE": "hang"},
    "hanging": {"STOP_AT_CHANGE": "hang", "STOP_AT_CHANGE_TO": WANTED},
    "killed": {"STOP_AT_CHANGE": "kill", "STOP_AT_CHANGE_TO": WANTED},
    "orphaned": {"STOP_AT_CHANGE": "kill-parent", "STOP_AT_CHANGE_TO": WANTED},
}
INTERRUPTED = [kind for kind in STOPS if kind != "usual"]
IN_A_CHANGE = INTERRUPTED[1:]


def processes_of(host):
    """What still runs of a host, by the environment of its library."""
    mark = f"TAVROSIM_HOST={host.file}".encode()

    def environment(process):
        try:
            return (process / "environ").read_bytes().split(b"\0")
        except OSError:  # it has ended, or is somebody else's
            return []
    return [process.name for process in pathlib.Path("/proc").glob("[0-9]*") if mark in environment(process)]


def is_locked(host):
    try:
        with open(host.folder / "host.json.lock", "rb") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        return True
    return False


def address_of(host):
    functions = [function for adapter in host.read()["adapters"] for port in adapter["ports"]
                 for function in port["functions"] if "iscsi" in function]
    return functions[0]["iscsi"]["tcpIp"]["address"]


class Plays:
    """The hosts by kind, the interrupted play, what it left of each host, and the play afterwards."""

    def __init__(self, fleet):
        self.fleet = fleet
        self.hosts = dict(zip(STOPS, fleet.hosts))
        for kind, stop in STOPS.items():
            host = self.hosts[kind]
            host.more["limit"] = LIMIT if "hang" in stop.values() else 60
            if stop:
                host.environment = {"LD_PRELOAD": str(STOP), **stop}
        self.interrupted = fleet.play(TASKS)
        self.processes = {kind: processes_of(host) for kind, host in self.hosts.items()}
        self.locked = [kind for kind, host in self.hosts.items() if is_locked(host)]
        self.addresses = {kind: address_of(host) for kind, host in self.hosts.items()}
        for host in fleet.hosts:
            host.environment = {}
        self.again = fleet.play(TASKS)

    def of_interrupted(self, kind):
        return self.interrupted.result(self.hosts[kind], "address")


@pytest.fixture(scope="module", name="plays")
def fixture_plays(make_fleet):
    assert STOP.exists(), "build the target stop_at_change of the preset native-tests first"
    return Plays(make_fleet(len(STOPS)))


def test_the_hosts_were_stopped_in_the_middle(plays):
    """The new host file was written, and did not take the place of the old one."""
    for kind, host in plays.hosts.items():
        left = list(host.folder.glob("host.json.*.new"))
        assert len(left) == (kind != "usual")
        assert (plays.addresses[kind] == WANTED) == (kind == "usual")
        if kind in IN_A_CHANGE:
            assert WANTED in left[0].read_text()


def test_the_other_hosts_go_on(plays):
    result = plays.of_interrupted("usual")
    assert result["changed"] and not result["failed"]


@pytest.mark.parametrize("kind, reason", {
    "hanging when it is read": f"the capture did not end in time and was stopped (time_limit: {LIMIT} seconds)",
    "hanging": f"the command did not end in time and was stopped (time_limit: {LIMIT} seconds)",
    "killed": "the command was ended by signal 9",
    "orphaned": "tavrohost run was ended by signal 9",
}.items())
def test_the_reason_is_told(plays, kind, reason):
    result = plays.of_interrupted(kind)
    assert result["failed"]
    line = "tavrocli -iscsi 02-00-5E-10-00-02 -modifytcpip "
    assert result["msg"].endswith(reason)
    assert result["msg"].startswith(line) == (kind in IN_A_CHANGE)


def test_what_may_have_changed_counts_as_changed(plays):
    for kind in INTERRUPTED:
        assert plays.of_interrupted(kind)["changed"] == (kind in IN_A_CHANGE)


def test_nothing_goes_on_in_secret(plays):
    assert plays.processes == {kind: [] for kind in STOPS}
    assert not plays.locked


def test_the_next_play_brings_about_what_is_wanted(plays):
    for kind, host in plays.hosts.items():
        result = plays.again.result(host, "address")
        assert not result["failed"], result
        assert result["changed"] == (kind != "usual")
        assert address_of(host) == WANTED


def test_nothing_temporary_stays(plays):
    for host in plays.fleet.hosts:
        assert not [path for path in host.temporary.rglob("*") if path.is_file() or path.name.startswith("tavro")]
