"""Three hosts that are reached through sshd: first with files that are copied there, then with pipelining."""

import contextlib
import json
import os
import pathlib
import pwd
import stat

import pytest

from ssh_server import SshServer, can_run

HOSTS = 3
SECRET = "own-secret-77"
TASKS = {
    "host": {"tavro.fleet.host_info": {}},
    "address": {"tavro.fleet.tcpip": {"mac": "02-00-5E-10-00-02", "kind": "iscsi", "address": "{{ address }}"}},
    "initiator": {
        "tavro.fleet.initiator": {
            "name": "iqn.2015-01.com.example:web-1", "authentication": "one_way_chap", "target_chap_name": "web",
            "target_chap_secret": SECRET}},
}
CHANGING = ["address", "initiator"]


def of_the_user():
    """What the tests must leave alone: the user's files of ssh, and the folder of the machine's sshd."""
    own = pathlib.Path(pwd.getpwuid(os.getuid()).pw_dir) / ".ssh"
    return {str(path): path.stat().st_mtime_ns if path.exists() else None
            for path in [pathlib.Path("/run/sshd"), own, *own.glob("*")]}


def files_below(folder):
    return [path for path in folder.rglob("*") if stat.S_ISREG(path.lstat().st_mode)]


@pytest.fixture(scope="module", name="plays")
def fixture_plays(make_fleet):
    if not can_run():
        pytest.skip("not run here: sshd needs a mount namespace of its own, to be run by root")
    fleet = make_fleet(HOSTS)
    untouched = of_the_user()
    with contextlib.ExitStack() as running:
        servers = [running.enter_context(SshServer(host.folder / "sshd")) for host in fleet.hosts]
        for number, (host, server) in enumerate(zip(fleet.hosts, servers)):
            host.more = {**server.variables(), "address": f"192.0.2.{100 + number}", "ansible_pipelining": False}
        done = fleet.play(TASKS, "--diff", "-vvv")
        first_logs = [server.log() for server in servers]
        for host in fleet.hosts:
            host.more["ansible_pipelining"] = True
        again = fleet.play({task: TASKS[task] for task in CHANGING}, "-vvv")
        logs = [(first, server.log()[len(first):]) for first, server in zip(first_logs, servers)]
    assert of_the_user() == untouched
    return fleet, logs, done, again


def test_the_hosts_are_reached_by_ssh(plays):
    _, logs, done, again = plays
    for first, second in logs:
        # Each task is at least one connection; each host has a server of its own.
        assert first.count("Accepted publickey for ") >= len(TASKS)
        assert second.count("Accepted publickey for ") >= len(CHANGING)
    # Modules are files on the host, or come through the connection; Ansible's own words tell which.
    assert "PUT " in done.output and "PUT " not in again.output


def test_each_host_is_changed(plays):
    fleet, _, done, _ = plays
    for number, host in enumerate(fleet.hosts):
        assert done.result(host, "host")["host"]["name"] == "demo-host"
        assert all(done.result(host, task)["changed"] for task in CHANGING)
        assert f"192.0.2.{100 + number}" in str(done.result(host, "address")["diff"]["after"])
        assert f'"address": "192.0.2.{100 + number}"' in host.file.read_text()
        assert host.read()["initiator"]["login"]["targetSecret"] == SECRET


def test_a_second_time_changes_nothing(plays):
    fleet, _, _, again = plays
    for host in fleet.hosts:
        for task in CHANGING:
            result = again.result(host, task)
            assert not result["failed"] and not result["changed"] and result["commands"] == []


def test_nothing_stays_on_the_hosts(plays):
    fleet, _, _, _ = plays
    for host in fleet.hosts:
        assert not files_below(host.temporary)
        assert not files_below(host.folder / "sshd" / "home")
        assert [path.name for path in files_below(host.folder) if SECRET.encode() in path.read_bytes()] == ["host.json"]


def test_the_secret_is_told_to_nobody(plays):
    _, _, done, again = plays
    for play in (done, again):
        assert SECRET not in play.output
        assert SECRET not in json.dumps(play.results)
