"""Which files the library takes for the host, the script and the trace. What it does not take is refused at once,
with the reason."""

import os
import re
import resource
import signal
import subprocess

import pytest

from program import TIME_LIMIT, finish
from test_files import NODES

VARIABLES = ("TAVROSIM_HOST", "TAVROSIM_SCRIPT", "TAVROSIM_TRACE")
LARGEST = 64 << 20


def details_of(sandbox, variable, path, arguments=("-showadapter",)):
    """What the program tells of the failure: the details without the path, and without what library it is."""
    sandbox.write_script(None)
    named = sandbox.platform.path(path)
    result = sandbox.run(arguments, env={variable: named})
    assert (result.errors, result.exit_code) == (b"", 0)
    lines = [line for line in result.output.decode().splitlines() if line.startswith("Details: ")]
    assert lines and all(f"{named}: " in line for line in lines), result.output
    return {line.split(f"{named}: ")[1].split("; Simulator ")[0] for line in lines}


@pytest.mark.parametrize("variable", VARIABLES)
def test_a_folder(sandbox, variable):
    path = sandbox.folder / "folder"
    path.mkdir()
    assert details_of(sandbox, variable, path) == {"is a folder"}


@pytest.mark.parametrize("variable", VARIABLES)
def test_too_large_a_file(sandbox, variable):
    path = sandbox.folder / "large"
    with path.open("wb") as file:
        file.truncate(LARGEST + 1)
    assert details_of(sandbox, variable, path) == {"is larger than 64 MiB"}
    assert path.stat().st_size == LARGEST + 1


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("variable", VARIABLES)
@pytest.mark.parametrize("node, reason", [
    ("pipe", "is a pipe"), ("pipe that is read", "is a pipe"), ("device", "is a device"), ("socket", "is a socket"),
])
def test_what_is_no_file(sandbox, variable, node, reason):
    path = sandbox.folder / "node"
    made = NODES[node](path)
    assert details_of(sandbox, variable, path) == {reason}
    assert len(made.received()) == 0


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("variable", VARIABLES)
def test_a_link_to_itself(sandbox, variable):
    path = sandbox.folder / "loop"
    os.symlink("loop", path)
    assert details_of(sandbox, variable, path) == {"cannot be opened: Too many levels of symbolic links"}


@pytest.mark.platforms("windows")
@pytest.mark.parametrize("variable", VARIABLES)
def test_a_device_of_windows(sandbox, variable):
    sandbox.write_script(None)
    result = sandbox.run(["-showadapter"], env={variable: "NUL"})
    assert b"NUL: is a device" in result.output


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("variable", ["TAVROSIM_TRACE_SECRETS", "TAVROSIM_TRACE_OUTPUTS"])
def test_a_trace_with_secrets_is_kept_from_others(sandbox, variable):
    switches = {"TAVROSIM_TRACE_SECRETS": None, "TAVROSIM_TRACE_OUTPUTS": None}
    sandbox.trace.write_bytes(b"")
    sandbox.trace.chmod(0o664)
    sandbox.run(["-about"], env=switches)
    assert sandbox.trace.stat().st_mode & 0o777 == 0o664
    sandbox.run(["-about"], env=switches | {variable: "1"})
    assert sandbox.trace.stat().st_mode & 0o777 == 0o600
    assert len(sandbox.calls()) > 2


def test_a_full_disk_leaves_no_half_line(sandbox):
    """A limit on the size of files stands in for the disk: it is reached in the middle of the third line."""
    sandbox.write_script(None)
    sandbox.run(["-showadapter"])
    whole = sandbox.trace.read_bytes()
    lines = whole.splitlines(keepends=True)
    assert len(lines) > 3
    limit = len(lines[0]) + len(lines[1]) + len(lines[2]) // 2

    def limit_files():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))

    sandbox.trace.unlink()
    process = sandbox.start(["-showadapter"], preexec_fn=limit_files, restore_signals=False)
    finish(process, b"")
    left = sandbox.trace.read_bytes()
    assert lines[0] + lines[1] == left[:len(lines[0] + lines[1])]
    assert left.endswith(b"\n") and set(left.splitlines(keepends=True)) <= set(lines)


@pytest.mark.platforms("native")
def test_a_change_is_on_the_disk_under_its_name_before_it_is_told(sandbox):
    """After a power failure the host is the former one or the new one, and the new one once the command has ended: what
    is written is synchronised before it gets the file's name, and the name, with its folder, after that."""
    sandbox.write_script(None)
    trace = sandbox.folder / "strace"
    command = ["strace", "-f", "-y", "-e", "trace=fsync,rename", "-o", trace,
               *sandbox.command(["-iscsi", "-isns", "-add", "192.0.2.7"])]
    subprocess.run(command, cwd=sandbox.work, env=sandbox.environment(), stdin=subprocess.DEVNULL,
                   stdout=subprocess.DEVNULL, check=True, timeout=TIME_LIMIT)
    assert "192.0.2.7" in sandbox.host.read_text(encoding="utf-8")
    calls = re.findall(r"(fsync|rename)\((.*)\) += 0$", trace.read_text(encoding="utf-8"), re.MULTILINE)
    renamed = next(i for i, (name, given) in enumerate(calls) if name == "rename" and given.endswith(f'"{sandbox.host}"'))
    fresh = re.match(r'"(.*)", ', calls[renamed][1])[1]
    assert ("fsync", fresh) in [(name, path_of(given)) for name, given in calls[:renamed]]
    assert ("fsync", str(sandbox.host.parent)) in [(name, path_of(given)) for name, given in calls[renamed:]]


def path_of(descriptor):
    """What strace tells of a descriptor with "-y": 3</the/path>."""
    return descriptor.partition("<")[2].rstrip(">")
