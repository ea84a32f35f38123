"""Plays the sessions that the README, the guide of tavrohost and the pages of the manual show, as their reader would type
them, and holds them to what is printed. Files that a session shows with `cat` before there are any are written as they are shown.
Blanks at the ends of lines cannot be seen in a page, and do not count."""

import re
import subprocess

import pytest

from program import ROOT, TIME_LIMIT

SESSION = re.compile(r"^```console\n(.*?)^```$", re.MULTILINE | re.DOTALL)
PROMPT = "$ "
GUIDES = [ROOT / "docs" / "tavrohost.md", ROOT / "README.md", *sorted((ROOT / "docs" / "manual").glob("*.md"))]
# What scripts/run does once everything is built.
RUN = """#!/usr/bin/env bash
program=tavrocli
if [ "${1-}" = tavrohost ]; then
    program=$1
    shift
fi
exec "$program" "$@"
"""


def steps(page):
    """Each command that a page shows, with what it prints."""
    shown = []
    for session in SESSION.findall(page.read_text(encoding="utf-8")):
        for line in session.splitlines(keepends=True):
            if line.startswith(PROMPT):
                shown.append((line.removeprefix(PROMPT).strip(), []))
            else:
                shown[-1][1].append(line)
    return [(command, "".join(lines)) for command, lines in shown]


def without_ends(text):
    return "".join(line.rstrip() + "\n" for line in text.splitlines())


class Shell:
    """A shell in the folder of a sandbox, which has of the tree what sessions use; one command at a time, without anybody
    at the keyboard."""

    def __init__(self, sandbox):
        self.folder = sandbox.work
        environment = sandbox.environment(extra={"TAVROSIM_HOST": None, "TAVROSIM_TRACE": None, "TAVROSIM_SCRIPT": None})
        self.environment = environment | {"PATH": f"{sandbox.binaries}:/usr/bin:/bin"}
        self.status = 0
        (self.folder / "simulator").symlink_to(ROOT / "simulator")
        run = self.folder / "scripts" / "run"
        run.parent.mkdir()
        run.write_text(RUN, encoding="utf-8")
        run.chmod(0o755)

    def run(self, command):
        process = subprocess.run(
            ["bash", "-c", f"(exit {self.status})\n{command}"],
            cwd=self.folder, env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT, timeout=TIME_LIMIT, check=False,
        )
        self.status = process.returncode
        return process.stdout.decode("utf-8")


def test_the_guide_shows_a_rehearsal():
    assert any("rehearse" in command for command, _ in steps(GUIDES[0]))


def test_the_readme_shows_a_change_and_a_new_start():
    commands = [command for command, _ in steps(ROOT / "README.md")]
    assert any("-modifytcpip" in command for command in commands)
    assert any(command.startswith("rm ") for command in commands)


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("page", [page for page in GUIDES if steps(page)], ids=lambda page: str(page.relative_to(ROOT)))
def test_the_sessions_print_what_the_page_shows(sandbox, page):
    sandbox.write_script(None)
    shell = Shell(sandbox)
    for command, expected in steps(page):
        shown_file = re.fullmatch(r"cat (\S+)", command)
        if shown_file and not (shell.folder / shown_file[1]).exists():
            (shell.folder / shown_file[1]).write_text(expected, encoding="utf-8")
        assert without_ends(shell.run(command)) == without_ends(expected), f"the page shows something else for: {command}"
