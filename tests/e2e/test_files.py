"""What stands in the place of a file of the program's and is none is left alone, and nobody waits for it."""

import errno
import os
import socket
import stat

import pytest

from program import DEFAULT_LOCALE, TIME_LIMIT, finish

LOG, IMPORT = "tavrocli.log", "cnadiscovery.xml"


class Fifo:
    kind = stat.S_ISFIFO

    def __init__(self, path, is_read):
        os.mkfifo(path)
        self.reader = os.open(path, os.O_RDONLY | os.O_NONBLOCK) if is_read else None

    def received(self):
        return b"" if self.reader is None else read_what_is_there(self.reader)


class Device:
    """A pseudo-terminal, to which a link of our own leads."""
    kind = stat.S_ISCHR

    def __init__(self, path):
        self.reader, self.terminal = os.openpty()
        os.set_blocking(self.reader, False)
        os.symlink(os.ttyname(self.terminal), path)

    def received(self):
        return read_what_is_there(self.reader)


class Folder:
    kind = stat.S_ISDIR

    def __init__(self, path):
        self.path = path
        os.mkdir(path)

    def received(self):
        return os.listdir(self.path)


class Socket:
    kind = stat.S_ISSOCK

    def __init__(self, path):
        here = os.open(".", os.O_PATH)
        os.chdir(path.parent)  # a socket's path has to be short
        try:
            self.socket = socket.socket(socket.AF_UNIX)
            self.socket.bind(path.name)
        finally:
            os.fchdir(here)
            os.close(here)

    def received(self):
        return b""


def read_what_is_there(descriptor):
    try:
        return os.read(descriptor, 65536)
    except OSError as error:
        assert error.errno == errno.EAGAIN
        return b""


NODES = {
    "pipe": lambda path: Fifo(path, is_read=False),
    "pipe that is read": lambda path: Fifo(path, is_read=True),
    "device": Device,
    "folder": Folder,
    "socket": Socket,
}


@pytest.fixture(params=NODES)
def make_node(request):
    return NODES[request.param]


@pytest.mark.parametrize("arguments", [[], ["-debug"]])
def test_in_the_place_of_the_log(sandbox, make_node, arguments):
    """With the switch the library opens the log as well, and writes into it."""
    path = sandbox.work / LOG
    node = make_node(path)
    result = sandbox.run(arguments)
    assert (result.output, result.errors, result.exit_code) == (
        sandbox.platform.encode(" \n#28674\n", DEFAULT_LOCALE), b"", 0)
    assert len(node.received()) == 0
    assert node.kind(path.stat().st_mode)


def test_in_the_place_of_the_import(sandbox, make_node):
    """As if there were no file."""
    path = sandbox.work / IMPORT
    node = make_node(path)
    result = sandbox.run(["-import"])
    assert (result.output, result.errors, result.exit_code) == (b"", b"", 0)
    assert "DoOperation" not in [call["call"] for call in sandbox.calls()]
    assert len(node.received()) == 0
    assert node.kind(path.stat().st_mode)


def test_an_import_that_is_too_large(sandbox):
    """A file that is too large by one byte is told, and one of the greatest size is read: here, as no document."""
    most = 64 * 1024 * 1024
    path = sandbox.work / IMPORT
    path.touch()
    for size, told in ((most + 1, f"{IMPORT} has more than {most} bytes. Nothing was imported.\n"), (most, "")):
        os.truncate(path, size)
        result = sandbox.run(["-import"])
        assert (result.output, result.errors, result.exit_code) == (
            sandbox.platform.encode(told, DEFAULT_LOCALE), b"", 0)
        assert "DoOperation" not in [call["call"] for call in sandbox.calls()]


@pytest.mark.platforms("native", "sanitize")
def test_an_import_through_a_link(sandbox):
    """A link is followed whoever owns it: nothing is written there."""
    (sandbox.folder / "saved.xml").write_text("<a><b value='x'/></a>", encoding="utf-8")
    os.symlink("../saved.xml", sandbox.work / IMPORT)
    assert sandbox.run(["-import"]).output.startswith(b" \n#28691\n")


def log_through_a_foreign_link(sandbox, target):
    """Makes a link to the target in the place of the log that another user owns, or where only one's own
    can be made, one's own to one of root's, which leads to the standard input."""
    path = sandbox.work / LOG
    if os.geteuid() == 0:
        os.symlink(target, path)
        os.lchown(path, 65534, 65534)
    else:
        assert os.lstat("/dev/stdin").st_uid == 0
        os.symlink("/dev/stdin", path)


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("arguments", [["-about"], ["-about", "-debug"]])
def test_a_log_link_of_another_user_is_not_followed(sandbox, arguments):
    target = sandbox.folder / "target"
    target.write_bytes(b"kept\n")
    os.utime(target, (0, 0))
    log_through_a_foreign_link(sandbox, target)
    with target.open("r+b") as stdin:
        process = sandbox.start(arguments, stdin=stdin)
        output, errors = finish(process, None)
    assert (output != b"", errors, process.returncode) == (True, b"", 0)
    assert target.read_bytes() == b"kept\n"


@pytest.mark.platforms("native", "sanitize")
def test_a_log_link_of_another_user_makes_no_file(sandbox):
    missing = sandbox.folder / "missing"
    (sandbox.folder / "stdin").write_bytes(b"")
    log_through_a_foreign_link(sandbox, missing)
    with (sandbox.folder / "stdin").open("r+b") as stdin:
        for arguments in (["-about"], ["-about", "-debug"]):
            sandbox.start(arguments, stdin=stdin).communicate(timeout=TIME_LIMIT)
    assert not missing.exists()
    assert (sandbox.folder / "stdin").read_bytes() == b""


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("arguments", [["-about"], ["-about", "-debug"]])
def test_a_log_link_of_ones_own_is_followed(sandbox, arguments):
    """Also to a link in another folder, whose relative target is one of that folder, and to a file that is
    still missing."""
    logs = sandbox.folder / "logs"
    logs.mkdir()
    os.symlink(logs / "latest", sandbox.work / LOG)
    os.symlink("./today", logs / "latest")
    result = sandbox.run(arguments)
    assert (result.errors, result.exit_code) == (b"", 0)
    assert (logs / "today").exists()
    assert ((logs / "today").read_bytes() != b"") == ("-debug" in arguments)


@pytest.mark.platforms("native", "sanitize")
def test_a_log_link_to_itself_stops_nothing(sandbox):
    os.symlink(LOG, sandbox.work / LOG)
    for arguments in ([], ["-debug"]):
        result = sandbox.run(arguments)
        assert (result.output, result.errors, result.exit_code) == (b" \n#28674\n", b"", 0)
