"""scripts/run: which program it runs with which arguments, and what it says. The build is played: what is looked at here
is that it is asked for, and silent."""

import os
import shutil
import subprocess

import pytest

from program import ROOT

pytestmark = pytest.mark.platforms("native")
BUILD = """#!/bin/sh
echo "cmake $*" >>"$BUILD_CALLS"
echo "[1/2] building"
exit "${BUILD_STATUS-0}"
"""
PROGRAM = """#!/bin/sh
printf '%s\\n' "$0" "$@"
exit 3
"""
USAGE = "usage: scripts/run [--this-host] [tavrohost] ARGUMENTS"


class Tree:
    """A tree with the script, where everything is built."""

    def __init__(self, folder):
        self.folder = folder
        shutil.copytree(ROOT / "scripts", folder / "scripts")
        shutil.copy(ROOT / "CMakePresets.json", folder)
        for name in ("bin/tavrocli", "bin/tavrohost", "linux/tavrocli", "linux/tavrohost"):
            self.put(f"build/native/{name}", PROGRAM)
        self.put("tools/cmake", BUILD)
        self.calls = folder / "calls"

    def put(self, name, text):
        file = self.folder / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")
        file.chmod(0o755)

    def run(self, *arguments, **environment):
        path = f"{self.folder / 'tools'}:{os.environ['PATH']}"
        return subprocess.run(
            [self.folder / "scripts" / "run", *arguments], capture_output=True, text=True, check=False,
            env={"PATH": path, "LC_ALL": "C.UTF-8", "BUILD_CALLS": str(self.calls)} | environment)


@pytest.fixture
def tree(tmp_path):
    return Tree(tmp_path)


@pytest.mark.parametrize("arguments, program, handed_on", [
    (["-showadapter"], "bin/tavrocli", ["-showadapter"]),
    (["tavrohost", "diff", "a b", "--json"], "bin/tavrohost", ["diff", "a b", "--json"]),
    (["--this-host", "-iscsi", "-setinitiator", ""], "linux/tavrocli", ["-iscsi", "-setinitiator", ""]),
    (["--this-host", "tavrohost", "--version"], "linux/tavrohost", ["--version"]),
    (["-about", "--this-host"], "bin/tavrocli", ["-about", "--this-host"]),
    (["--this-host"], "linux/tavrocli", []),
    ([], "bin/tavrocli", []),
])
def test_the_program_gets_its_arguments_as_they_are(tree, arguments, program, handed_on):
    result = tree.run(*arguments)
    assert result.stdout.splitlines() == [str(tree.folder / "build" / "native" / program), *handed_on]
    assert (result.stderr, result.returncode) == ("", 3)
    assert tree.calls.read_text(encoding="utf-8").splitlines()[-1].startswith("cmake --build --preset native ")


@pytest.mark.parametrize("arguments", [["--that-host", "-showadapter"], ["--help"], ["--"]])
def test_an_unknown_option_is_named(tree, arguments):
    result = tree.run(*arguments)
    assert result.stderr == f"error: there is no option {arguments[0]}; {USAGE}\n"
    assert (result.stdout, result.returncode) == ("", 1)
    assert not tree.calls.exists()


def test_a_build_that_fails_is_shown_and_nothing_is_run(tree):
    result = tree.run("--this-host", "-showadapter", BUILD_STATUS="1")
    assert (result.stdout, result.returncode) == ("", 1)
    assert "[1/2] building\n" in result.stderr
    assert result.stderr.endswith("error: the build failed\n")
