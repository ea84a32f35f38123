"""Whatever stands in the place of a file: the program ends in time, does the rest of its work, leaves alone what is none
of its own, and tells what it cannot use."""

import json
import os
import resource
import shutil
import stat

import pytest

from limits import run_within
from program import ROOT
from test_files import NODES, Device

pytestmark = pytest.mark.platforms("native", "sanitize")

DEFAULT_HOST = ROOT / "simulator" / "default_host.json"
CONFIGURATION = b"""<Config><Initiator_Login><Initiator_Name value="iqn.2015-01.com.example:host"/></Initiator_Login>
</Config>"""
SERVER = "192.0.2.77"
CHANGE = ["-iscsi", "-isns", "-add", SERVER]
ADDED = b"The iSNS server was added."
NOBODY = 65534  # a user other than that of the tests
NEED = "not run here: needs root, or a user namespace with other users"
LOOP = "cannot be opened: Too many levels of symbolic links"


class Full:
    """A link to the device that is always full."""

    def __init__(self, path):
        os.symlink("/dev/full", path)


class Loop:
    def __init__(self, path):
        os.symlink(path.name, path)


# What is no file, and why it is refused where that is told.
NO_FILES = {
    "pipe": (NODES["pipe"], "is a pipe"),
    "pipe that is read": (NODES["pipe that is read"], "is a pipe"),
    "device": (Device, "is a device"),
    "folder": (NODES["folder"], "is a folder"),
    "socket": (NODES["socket"], "is a socket"),
    "full device": (Full, "is a device"),
    "loop": (Loop, LOOP),
}


def no_file(kind, path):
    """Puts it there; returns a function that tells whether it is as it was, and got nothing."""
    made = NO_FILES[kind][0](path)
    before = os.lstat(path)

    def is_untouched():
        now = os.lstat(path)
        received = made.received() if hasattr(made, "received") else b""
        return (now.st_ino, now.st_mode, now.st_uid) == (before.st_ino, before.st_mode, before.st_uid) and not received
    return is_untouched


def limit_files():
    """No byte can be written to a file; those of the sanitizers are no files of the tests."""
    resource.setrlimit(resource.RLIMIT_FSIZE, (0, 0))


@pytest.fixture
def host(sandbox):
    """The built-in host in its file, and real messages."""
    sandbox.write_script(None)
    shutil.copy(DEFAULT_HOST, sandbox.host)
    return sandbox


def run(sandbox, arguments, env=None, **options):
    return run_within(sandbox, sandbox.command(arguments), env=env, **options)


def run_tool(sandbox, arguments):
    return run_within(sandbox, sandbox.tool_command(arguments))


def servers(file):
    return json.loads(file.read_text(encoding="utf-8"))["isnsServers"]


def check_a_change(sandbox, file, env=None):
    """It is made: no lock is in its way."""
    result = run(sandbox, CHANGE, env)
    assert (ADDED in result.output, result.errors, result.exit_code) == (True, b"", 0), result
    assert SERVER in servers(file)


# ---- What nobody has to have: the log, the import ----------------------------------------------

# The arguments, and the name in the current folder.
OPTIONAL = {
    "log": (["-showadapter"], "tavrocli.log"),
    "log that is written": (["-showadapter", "-debug"], "tavrocli.log"),
    "import": (["-import"], "cnadiscovery.xml"),
}


@pytest.mark.parametrize("kind", NO_FILES)
@pytest.mark.parametrize("role", OPTIONAL)
def test_no_file_in_the_place_of_one_that_may_be_missing(host, role, kind):
    arguments, name = OPTIONAL[role]
    path = host.work / name
    expected = run(host, arguments)
    assert (expected.errors, expected.exit_code) == (b"", 0)
    calls = host.calls()
    path.unlink(missing_ok=True)
    is_untouched = no_file(kind, path)
    assert run(host, arguments) == expected
    assert host.calls() == calls
    assert is_untouched()


@pytest.mark.parametrize("role", OPTIONAL)
def test_a_dangling_link_in_the_place_of_one_that_may_be_missing(host, role):
    """A log is made where the link leads, if it can be; nothing is made for an import."""
    arguments, name = OPTIONAL[role]
    expected = run(host, arguments)
    (host.work / name).unlink(missing_ok=True)
    for target in (host.folder / "missing" / "file", host.folder / "file"):
        os.symlink(target, host.work / name)
        assert run(host, arguments) == expected
        assert (host.work / name).is_symlink()
        (host.work / name).unlink()
    assert not (host.folder / "missing").exists()
    assert (host.folder / "file").exists() == role.startswith("log")


@pytest.mark.parametrize("role", OPTIONAL)
def test_a_full_disk_beside_what_may_be_missing(host, role):
    arguments, name = OPTIONAL[role]
    if role == "import":
        (host.work / name).write_bytes(CONFIGURATION)
    expected = run(host, arguments)
    if role != "import":
        (host.work / name).unlink()
    host.host.write_bytes(DEFAULT_HOST.read_bytes())
    host.trace.unlink()
    result = run(host, arguments, env={"TAVROSIM_TRACE": None}, preexec_fn=limit_files)
    assert (result.errors, result.exit_code) == (b"", 0)
    if role == "import":  # the simulator cannot keep what it is told to
        assert host.host.read_bytes() == DEFAULT_HOST.read_bytes()
        check_a_change(host, host.host)
    else:
        assert result == expected
        assert (host.work / name).read_bytes() == b""


def needs_root():
    if os.geteuid() != 0:
        pytest.skip(NEED)


def give_away(path):
    needs_root()
    os.chown(path, NOBODY, NOBODY)
    path.chmod(0o640)


def open_wide(path):
    path.chmod(0o666)


STATES = {"foreign owner": give_away, "wide mode": open_wide}


def state_of(path):
    status = path.stat()
    return status.st_uid, status.st_gid, stat.S_IMODE(status.st_mode)


@pytest.mark.parametrize("state", STATES)
@pytest.mark.parametrize("role", OPTIONAL)
def test_what_may_be_missing_belongs_to_others(host, role, state):
    """It serves as it would otherwise, and stays theirs."""
    arguments, name = OPTIONAL[role]
    path = host.work / name
    content = CONFIGURATION if role == "import" else b"kept\n"
    path.write_bytes(content)
    expected = run(host, arguments)
    calls = host.calls()
    path.write_bytes(content)
    host.host.write_bytes(DEFAULT_HOST.read_bytes())
    STATES[state](path)
    before = state_of(path)
    assert run(host, arguments) == expected
    assert host.calls() == calls
    assert state_of(path) == before
    assert path.read_bytes().startswith(content)
    assert (len(path.read_bytes()) > len(content)) == (role == "log that is written")


# ---- What the library is told to use: host, script, trace --------------------------------------

VARIABLES = {"host": "TAVROSIM_HOST", "script": "TAVROSIM_SCRIPT", "trace": "TAVROSIM_TRACE"}


@pytest.mark.parametrize("kind", NO_FILES)
@pytest.mark.parametrize("role", VARIABLES)
@pytest.mark.parametrize("arguments", [["-showadapter", "-debug"], CHANGE], ids=["reading", "changing"])
def test_no_file_for_the_library(host, role, kind, arguments):
    path = host.folder / "node"
    is_untouched = no_file(kind, path)
    before = host.host.read_bytes()
    result = run(host, arguments, env={VARIABLES[role]: str(path)})
    assert (result.errors, result.exit_code) == (b"", 0)
    assert f"{path}: {NO_FILES[kind][1]}" in result.output.decode()
    assert ADDED not in result.output
    assert is_untouched()
    assert host.host.read_bytes() == before
    assert {name.name for name in host.folder.glob("node*")} == {"node"}
    check_a_change(host, host.host)


def test_a_dangling_link_to_the_host(host):
    """The built-in host stands in until the first change, which makes the file to which the link leads."""
    path, target = host.folder / "link", host.folder / "target"
    os.symlink("target", path)
    env = {"TAVROSIM_HOST": str(path)}
    assert b"Tavro CNA 4610K" in run(host, ["-showadapter"], env).output
    assert not target.exists()
    check_a_change(host, target, env)
    assert path.is_symlink() and stat.S_IMODE(target.stat().st_mode) == 0o600


@pytest.mark.parametrize("role", VARIABLES)
def test_a_link_into_a_missing_folder(host, role):
    path = host.folder / "link"
    os.symlink(host.folder / "missing" / "target", path)
    result = run(host, CHANGE, env={VARIABLES[role]: str(path)})
    assert (ADDED in result.output, result.errors, result.exit_code) == (False, b"", 0)
    assert path.is_symlink() and not (host.folder / "missing").exists()
    check_a_change(host, host.host)


def test_a_full_disk_under_the_host(host):
    """The change is refused, the host is the old one, and neither a lock nor half a file is left."""
    run(host, ["-iscsi", "-isns", "-add", "192.0.2.79"])  # makes the lock file
    before = host.host.read_bytes()
    others = set(host.folder.iterdir())
    result = run(host, ["-iscsi", "-isns", "-add", "192.0.2.78"], env={"TAVROSIM_TRACE": None}, preexec_fn=limit_files)
    assert (result.errors, result.exit_code) == (b"", 0)
    assert b"cannot be written" in result.output and ADDED not in result.output
    assert host.host.read_bytes() == before
    assert set(host.folder.iterdir()) == others
    check_a_change(host, host.host)


def test_a_full_disk_under_the_trace(host):
    expected = run(host, ["-showadapter"])
    host.trace.unlink()
    assert run(host, ["-showadapter"], preexec_fn=limit_files) == expected
    assert host.trace.read_bytes() == b""


@pytest.mark.parametrize("state", STATES)
def test_the_host_belongs_to_others(host, state):
    """It stays theirs over a change."""
    STATES[state](host.host)
    before = state_of(host.host)
    check_a_change(host, host.host)
    assert state_of(host.host) == before
    assert state_of(host.host.with_name("host.json.lock")) == before


@pytest.mark.parametrize("state", STATES)
def test_the_script_belongs_to_others(host, state):
    host.write_script({"answers": [{"call": "GetHostName", "output": "of-a-script"}]})
    STATES[state](host.script)
    before = state_of(host.script)
    assert b"of-a-script" in run(host, ["-showadapter"]).output
    assert state_of(host.script) == before


@pytest.mark.parametrize("state", STATES)
def test_the_trace_belongs_to_others(host, state):
    """It stays theirs as long as no secrets go into it; before, it is taken from them, or refused."""
    host.trace.write_bytes(b"")
    STATES[state](host.trace)
    before = state_of(host.trace)
    assert ADDED in run(host, CHANGE, env={"TAVROSIM_TRACE_SECRETS": None}).output
    assert state_of(host.trace) == before
    calls = host.trace.read_bytes()
    assert calls.endswith(b'"Uninitialize","status":0}\n')
    result = run(host, ["-showadapter"])
    if state == "wide mode":
        assert stat.S_IMODE(host.trace.stat().st_mode) == 0o600
        assert len(host.trace.read_bytes()) > len(calls)
    else:
        assert b"cannot be kept from others" in result.output
        assert state_of(host.trace) == before
        assert host.trace.read_bytes() == calls


# ---- The documents of tavrohost ----------------------------------------------------------------

DOCUMENTS = {
    "check": ["check", "NODE"],
    "diff": ["diff", "HOST", "NODE"],
    "twin": ["rehearse", "--host", "NODE", "--", *CHANGE],
    "restart": ["restart", "NODE"],
    "answers": ["run", "--answers", "NODE", "--", *CHANGE],
    "plan": ["run", "--plan", "NODE"],
}


@pytest.mark.parametrize("kind", [*NO_FILES, "dangling link"])
@pytest.mark.parametrize("role", DOCUMENTS)
def test_no_file_in_the_place_of_a_document(host, role, kind):
    """It is told why, and nothing is done."""
    path = host.folder / "node"
    if kind == "dangling link":
        os.symlink("missing", path)
    else:
        is_untouched = no_file(kind, path)
    before = host.host.read_bytes()
    places = {"NODE": str(path), "HOST": str(host.host)}
    result = run_tool(host, [places.get(word, word) for word in DOCUMENTS[role]])
    assert (result.output, result.exit_code) == (b"", 2)
    [line] = result.errors.decode().splitlines()
    assert line.startswith(f"tavrohost: {path}: ")
    assert kind == "dangling link" or line.endswith(NO_FILES[kind][1])
    assert kind == "dangling link" or is_untouched()
    assert host.host.read_bytes() == before
    assert not [call for call in host.calls() if call["call"] == "DoOperation"]
    check_a_change(host, host.host)


@pytest.mark.parametrize("command", [["capture", "-o", "NODE"], ["rehearse", "--host", "HOST", "--keep", "NODE", "--", *CHANGE]],
                         ids=["capture", "keep"])
def test_a_full_disk_under_a_new_document(host, command):
    """It is told, and nothing is left that looks like one."""
    path = host.folder / "node"
    places = {"NODE": str(path), "HOST": str(host.host)}
    before = host.host.read_bytes()
    result = run_within(host, host.tool_command([places.get(word, word) for word in command]),
                        env={"TAVROSIM_TRACE": None}, preexec_fn=limit_files)
    assert result.exit_code == 2
    assert result.errors.startswith(b"tavrohost: ")
    assert not path.exists() and list(host.folder.glob("*.new")) == []
    assert host.host.read_bytes() == before
