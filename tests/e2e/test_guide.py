"""Plays the sessions that the guide of tavrohost shows, as its reader would type them, and holds the guide to what they
print. Files that a session shows with `cat` before there are any are written as they are shown."""

import re
import subprocess

import pytest

from program import ROOT, TIME_LIMIT

GUIDE = ROOT / "docs" / "tavrohost.md"
SESSION = re.compile(r"^```console\n(.*?)^```$", re.MULTILINE | re.DOTALL)
PROMPT = "$ "


def steps():
    """Each command that the guide shows, with what it prints."""
    shown = []
    for session in SESSION.findall(GUIDE.read_text(encoding="utf-8")):
        for line in session.splitlines(keepends=True):
            if line.startswith(PROMPT):
                shown.append((line.removeprefix(PROMPT).strip(), []))
            else:
                shown[-1][1].append(line)
    return [(command, "".join(lines)) for command, lines in shown]


class Shell:
    """A shell in the folder of a sandbox, one command at a time, without anybody at the keyboard."""

    def __init__(self, sandbox):
        self.folder = sandbox.work
        environment = sandbox.environment(extra={"TAVROSIM_HOST": None, "TAVROSIM_TRACE": None, "TAVROSIM_SCRIPT": None})
        self.environment = environment | {"PATH": f"{sandbox.binaries}:/usr/bin:/bin"}
        self.status = 0

    def run(self, command):
        process = subprocess.run(
            ["bash", "-c", f"(exit {self.status})\n{command}"],
            cwd=self.folder, env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT, timeout=TIME_LIMIT, check=False,
        )
        self.status = process.returncode
        return process.stdout.decode("utf-8")


@pytest.mark.platforms("native", "sanitize")
def test_the_sessions_print_what_the_guide_shows(sandbox):
    sandbox.write_script(None)
    shell = Shell(sandbox)
    played = steps()
    assert any("rehearse" in command for command, _ in played), "the guide shows no rehearsal"
    for command, expected in played:
        shown_file = re.fullmatch(r"cat (\S+)", command)
        if shown_file and not (shell.folder / shown_file[1]).exists():
            (shell.folder / shown_file[1]).write_text(expected, encoding="utf-8")
        assert shell.run(command) == expected, f"the guide shows something else for: {command}"
