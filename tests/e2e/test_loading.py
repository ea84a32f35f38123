"""Which library is loaded, what is said when there is none, and the debug log."""

import pytest

from program import LIBRARY, copy_file


def unknown_command(platform):
    return platform.encode(" \n#28674\n", "en_US.UTF-8")


def check_is_refused(result):
    """Standard output stays empty; one line on standard error names the file and the system's reason."""
    assert (result.output, result.exit_code) == (b"", 0)
    text = result.errors.decode("utf-8")
    assert text.count("\n") == 1 and text.endswith("\n"), text
    _, reason = text.split(LIBRARY, 1)
    assert len(reason.strip(" :\r\n")) > 5, text


@pytest.mark.parametrize("arguments", [[], ["-about"], ["-help", "-debug"]])
def test_no_library(sandbox, arguments):
    sandbox.use_library(None)
    check_is_refused(sandbox.run(arguments))


def test_a_file_that_is_no_library(sandbox):
    fake = sandbox.folder / "fake"
    fake.write_bytes(b"no library")
    sandbox.use_library(fake)
    check_is_refused(sandbox.run(["-about"]))


def test_a_library_in_the_current_directory_is_not_loaded(sandbox):
    sandbox.use_library(None)
    copy_file(sandbox.platform.folder / "bin" / LIBRARY, sandbox.work / LIBRARY)
    check_is_refused(sandbox.run([]))
    assert sandbox.calls() == []


def test_a_bogus_file_in_the_current_directory_does_no_harm(sandbox):
    (sandbox.work / LIBRARY).write_bytes(b"no library")
    result = sandbox.run([])
    assert (result.output, result.errors) == (unknown_command(sandbox.platform), b"")


def test_the_search_path_of_the_environment_is_not_used(sandbox):
    """A file of that name in the search path does not stand in front of the library beside the program, and
    on Windows is not even used where that is missing."""
    elsewhere = sandbox.folder / "elsewhere"
    elsewhere.mkdir()
    (elsewhere / LIBRARY).write_bytes(b"no library")
    search = {"LD_LIBRARY_PATH": str(elsewhere), "WINEPATH": sandbox.platform.path(elsewhere)}
    result = sandbox.run([], env=search)
    assert (result.output, result.errors) == (unknown_command(sandbox.platform), b"")
    assert sandbox.calls() != []
    if sandbox.platform.is_windows:
        (elsewhere / LIBRARY).unlink()
        copy_file(sandbox.platform.folder / "bin" / LIBRARY, elsewhere / LIBRARY)
        sandbox.use_library(None)
        check_is_refused(sandbox.run([], env=search))
        assert sandbox.calls() == []


def test_the_debug_log_is_opened_for_append(sandbox):
    log = sandbox.work / "tavrocli.log"
    sandbox.run(["-about"])
    assert log.exists()
    log.write_bytes(b"kept\n")
    sandbox.run(["-about"])
    assert log.read_bytes() == b"kept\n"
    sandbox.run(["-about", "-debug"])
    assert log.read_bytes().startswith(b"kept\n") and len(log.read_bytes()) > len(b"kept\n")


def test_a_debug_log_that_cannot_be_opened_stops_nothing(sandbox):
    (sandbox.work / "tavrocli.log").mkdir()
    for arguments in ([], ["-debug"]):
        result = sandbox.run(arguments)
        assert (result.output, result.errors, result.exit_code) == (unknown_command(sandbox.platform), b"", 0)
