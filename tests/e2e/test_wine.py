"""What the tests make of a Wine that the host's loader ends: another try, and of nothing else."""

import subprocess

import pytest

import program

LOADER = b"Inconsistency detected by ld.so: dl-fini.c: 87: _dl_fini: Assertion `i == nloaded' failed!\n"
WINE = [str(program.WINE), "tavrocli.exe"]


def test_a_wine_that_the_loader_ended_is_told():
    with pytest.raises(program.WineBroke, match="dl-fini"):
        program.check_that_wine_works(WINE, 127, b"before\n" + LOADER)


@pytest.mark.parametrize("command, exit_code, errors", [
    (WINE, 0, LOADER), (WINE, 127, LOADER.replace(b"dl-fini", b"dl-open")), (WINE, 127, b"tavrocli: nothing\n"),
    (WINE, 1, b""), (["tavrocli"], 127, LOADER),
])
def test_nothing_else_is(command, exit_code, errors):
    program.check_that_wine_works(command, exit_code, errors)


def test_the_end_of_a_process_is_looked_at():
    process = subprocess.Popen(["sh", "-c", "cat >&2; exit 127", str(program.WINE)], stdin=subprocess.PIPE,
                               stderr=subprocess.PIPE)
    with pytest.raises(program.WineBroke):
        program.finish(process, LOADER)
