"""What the tests make of a Wine that ends by itself: another try, and of nothing else."""

import subprocess

import pytest

import program

LOADER = b"Inconsistency detected by ld.so: dl-fini.c: 87: _dl_fini: Assertion `i == nloaded' failed!\n"
TAKEN = b"err:virtual:virtual_alloc_first_teb wine: failed to map the shared user data: c0000018\n"
WINE = [str(program.WINE), "tavrocli.exe"]


@pytest.mark.parametrize("exit_code, text, told", [(127, LOADER, "dl-fini"), (1, TAKEN, "shared user data")])
def test_a_wine_that_ended_by_itself_is_told(exit_code, text, told):
    with pytest.raises(program.WineBroke, match=told):
        program.check_that_wine_works(WINE, exit_code, b"before\n" + text)


@pytest.mark.parametrize("command, exit_code, errors", [
    (WINE, 0, LOADER), (WINE, 127, LOADER.replace(b"dl-fini", b"dl-open")), (WINE, 127, b"tavrocli: nothing\n"),
    (WINE, 1, b""), (WINE, 1, LOADER), (WINE, 127, TAKEN), (["tavrocli"], 1, TAKEN), (["tavrocli"], 127, LOADER),
])
def test_nothing_else_is(command, exit_code, errors):
    program.check_that_wine_works(command, exit_code, errors)


def test_the_end_of_a_process_is_looked_at():
    process = subprocess.Popen(["sh", "-c", "cat >&2; exit 127", str(program.WINE)], stdin=subprocess.PIPE,
                               stderr=subprocess.PIPE)
    with pytest.raises(program.WineBroke):
        program.finish(process, LOADER)
