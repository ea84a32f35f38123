"""Plays the sessions that docs/linux.md shows, and holds them to what is printed."""

from guide import Shell
from machine import ROOT

TOOLS = "/usr/sbin:/usr/bin:/sbin:/bin"


def test_the_sessions_print_what_the_document_shows(machine):
    work, programs = machine.folder / "work", machine.folder / "programs"
    work.mkdir()
    programs.mkdir()
    for program in ("tavrocli", "tavrohost"):
        (programs / f"{program}-linux").symlink_to(machine.programs / program)
    Shell(work, machine.environment | {"PATH": f"{programs}:{TOOLS}"}).play(ROOT / "docs" / "linux.md")
