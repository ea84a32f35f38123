"""Programs that change one host file at the same time lose nothing of each other's."""

import pathlib

from program import Sandbox, finish

SERVERS = [f"192.0.2.{number}" for number in range(50, 56)]


def test_changes_at_once_are_all_kept(platform, tmp_path):
    sandboxes = [Sandbox(platform, tmp_path / f"program{number}") for number in range(len(SERVERS))]
    for sandbox in sandboxes:
        sandbox.host = tmp_path / "shared.json"
    started = [
        sandbox.start(["-iscsi", "-isns", "-add", server], env={"TAVROSIM_TRACE": None})
        for sandbox, server in zip(sandboxes, SERVERS)
    ]
    for process, server in zip(started, SERVERS):
        output, _ = finish(process, b"")
        assert f"IP Address is  {server}" in output.decode()
        assert "Error Details" not in output.decode()

    listing = sandboxes[0].run(["-iscsi", "-isns", "-listall"]).output.decode().split()
    assert sorted(set(SERVERS) & set(listing)) == SERVERS
    left_over = {path.name for path in pathlib.Path(tmp_path).iterdir() if path.is_file()}
    assert left_over <= {"shared.json", "shared.json.lock"}
