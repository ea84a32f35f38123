"""What the tests make of a Wine that ends by itself: another try, and of nothing else."""

import os
import subprocess
import sys

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


ROWS_OF_RUNS = """
import program

runs = {"mended": [], "lost": [], "failing": []}

def test_mended(tmp_path):
    runs["mended"].append(tmp_path)
    if len(runs["mended"]) < 3:
        raise program.WineBroke("gone")
    assert len(set(runs["mended"])) == 3  # each time a fixture of its own

def test_lost():
    raise program.WineBroke("gone for good")

def test_failing():
    runs["failing"].append(0)
    assert len(runs["failing"]) > 1, "failed at once"
"""


def test_only_a_wine_that_ended_is_worth_another_try(tmp_path):
    (tmp_path / "test_rows.py").write_text(ROWS_OF_RUNS, encoding="utf-8")
    command = [sys.executable, "-m", "pytest", "-q", "-n", "1", "-p", "no:cacheprovider", "-p", "wine_retry", "test_rows.py"]
    result = subprocess.run(command, cwd=tmp_path, env=os.environ | {"PYTHONPATH": str(program.TESTS)}, text=True,
                            capture_output=True)
    assert "2 failed, 1 passed, 4 rerun" in result.stdout
    assert "gone for good" in result.stdout and "failed at once" in result.stdout
