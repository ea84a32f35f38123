"""Plays the sessions that the README, the guide of tavrohost and the pages of the manual show, on the simulator, and holds
them to what is printed. Those on a Linux host are played by tests/linux."""

import pytest

from guide import Shell, steps
from program import ROOT

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


def shell_in(sandbox):
    """A shell in the folder of a sandbox, which has of the tree what sessions use."""
    environment = sandbox.environment(extra={"TAVROSIM_HOST": None, "TAVROSIM_TRACE": None, "TAVROSIM_SCRIPT": None})
    (sandbox.work / "simulator").symlink_to(ROOT / "simulator")
    run = sandbox.work / "scripts" / "run"
    run.parent.mkdir()
    run.write_text(RUN, encoding="utf-8")
    run.chmod(0o755)
    return Shell(sandbox.work, environment | {"PATH": f"{sandbox.binaries}:/usr/bin:/bin"})


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
    shell_in(sandbox).play(page)
