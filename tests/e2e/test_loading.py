"""Which library is loaded, what is said when there is none, and the debug log."""

import os
import subprocess

import pytest

from program import LIBRARY, copy_file


def unknown_command(platform):
    return platform.encode(" \n#28674\n", "en_US.UTF-8")


def check_is_refused(result):
    """Standard output stays empty; one line on standard error names the file, once, and the system's reason."""
    assert (result.output, result.exit_code) == (b"", 0)
    text = result.errors.decode("utf-8")
    assert text.count("\n") == 1 and text.endswith("\n"), text
    assert text.startswith("tavrocli: cannot load ") and text.count(LIBRARY) == 1, text
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
    is not even used where that is missing."""
    elsewhere = sandbox.folder / "elsewhere"
    elsewhere.mkdir()
    (elsewhere / LIBRARY).write_bytes(b"no library")
    search = {"LD_LIBRARY_PATH": str(elsewhere), "WINEPATH": sandbox.platform.path(elsewhere)}
    result = sandbox.run([], env=search)
    assert (result.output, result.errors) == (unknown_command(sandbox.platform), b"")
    assert sandbox.calls() != []
    (elsewhere / LIBRARY).unlink()
    copy_file(sandbox.platform.folder / "bin" / LIBRARY, elsewhere / LIBRARY)
    sandbox.use_library(None)
    check_is_refused(sandbox.run([], env=search))
    assert sandbox.calls() == []


@pytest.mark.platforms("native", "sanitize")
def test_the_place_that_was_tried_is_named(sandbox):
    sandbox.use_library(None)
    place = sandbox.binaries / LIBRARY
    assert sandbox.run([]).errors.decode() == (
        f"tavrocli: cannot load {place}: cannot open shared object file: No such file or directory\n")


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("name", ["tavrocli", "tavro.dll", "tavrohost"])
def test_no_file_has_a_run_path(sandbox, name):
    """The dynamic linker would look there for each library, before the first instruction of the program."""
    entries = subprocess.run(["readelf", "--dynamic", "--wide", sandbox.platform.folder / "bin" / name],
                             capture_output=True, text=True, check=True).stdout
    assert "(NEEDED)" in entries
    assert "(RPATH)" not in entries and "(RUNPATH)" not in entries


@pytest.mark.platforms("native", "sanitize")
def test_a_link_to_the_program_is_resolved(sandbox):
    """The library beside the program itself is loaded, not the one beside the link."""
    links = sandbox.folder / "links"
    links.mkdir()
    (links / LIBRARY).write_bytes(b"no library")
    (links / "tavrocli").symlink_to(sandbox.binaries / "tavrocli")
    sandbox.binaries = links
    result = sandbox.run([])
    assert (result.output, result.errors) == (unknown_command(sandbox.platform), b"")
    assert sandbox.calls() != []


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("name", [
    b"\xe9\xff", b"a\nb", b"a:b;c", b"$ORIGIN", b"x${LIB}", b"$PLATFORM", b"$", b"n" * 250,
])
def test_a_folder_of_any_name(sandbox, name):
    folder = sandbox.folder / os.fsdecode(name)
    folder.mkdir()
    program = sandbox.platform.program
    copy_file(sandbox.binaries / program, folder / program)
    library = sandbox.binaries / LIBRARY
    sandbox.binaries = folder
    check_is_refused(sandbox.run([]))
    copy_file(library, folder / LIBRARY)
    result = sandbox.run([])
    assert (result.output, result.errors) == (unknown_command(sandbox.platform), b"")
    assert sandbox.calls() != []


@pytest.mark.platforms("windows")
@pytest.mark.parametrize("place", ["current directory", "search path"])
def test_the_library_finds_helpers_as_ever(sandbox, place):
    """What is asked of the one load does not hold for those of the library."""
    helpers = sandbox.folder / "helpers"
    helpers.mkdir()
    folder = sandbox.work if place == "current directory" else helpers
    copy_file(sandbox.platform.folder / "unit" / "helper.dll", folder / "helper.dll")
    sandbox.use_library(sandbox.platform.folder / "programs" / "library_with_helper.dll")
    result = sandbox.run([], env={"WINEPATH": sandbox.platform.path(helpers)})
    assert result.output.splitlines()[0] == b"helper loaded"


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
