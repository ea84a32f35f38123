"""Holds the tree to its layers: an include points downwards, and each platform's specifics stay in one folder."""

import re

import pytest

from program import ROOT

SIMULATOR, CONTRACT = "simulator", "tavroapi"
FAMILIES = ("iscsi", "fcoe", "ethernet", "partition", "import")
# What a room may include besides itself: every room below it.
CONSOLE = {"platform"}
MGMT = CONSOLE | {"console", CONTRACT}
CLI = ADAPTERS = MGMT | {"mgmt"}
FAMILY = CLI | {"cli", "adapters"}
ROOMS = {
    CONTRACT: set(),
    SIMULATOR: {CONTRACT},
    "platform": set(),
    "console": CONSOLE,
    "mgmt": MGMT,
    "cli": CLI,
    "adapters": ADAPTERS,
    **{family: FAMILY for family in FAMILIES},
    "top": FAMILY | set(FAMILIES),  # src/dispatch.* and src/main.cpp
}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)
PLATFORM_MACRO = re.compile(r"\b(_WIN32|_WIN64|WIN32|__linux__|__unix__|__MINGW\w+|_MSC_VER)\b")


def sources(*folders):
    return sorted(
        path
        for folder in folders
        for path in (ROOT / folder).rglob("*")
        if path.suffix in (".h", ".cpp")
    )


def room_of(path):
    parts = path.relative_to(ROOT).parts
    if parts[0] in (CONTRACT, SIMULATOR):
        return parts[0]
    return parts[1] if len(parts) > 2 else "top"


def included_room(path, name):
    """The room of an included file. The include root is src/ for the program, else the repository's folder;
    the simulator's sources are never reached through src/."""
    roots = [path.parent, ROOT] + ([] if room_of(path) == SIMULATOR else [ROOT / "src"])
    for root in roots:
        file = (root / name).resolve()
        if file.is_file() and file.is_relative_to(ROOT):
            return room_of(file)
    return None


@pytest.mark.parametrize("path", [
    pytest.param(path, id=str(path.relative_to(ROOT)))
    for path in sources(CONTRACT, "src", SIMULATOR)
])
def test_file(path):
    text = path.read_text(encoding="utf-8")
    room = room_of(path)
    assert room in ROOMS, f"no room is called {room}; name what it may include in ROOMS"
    for name in INCLUDE.findall(text):
        target = included_room(path, name)
        assert target is not None, f'"{name}" is not found from {room}; headers of others are included with <>'
        assert target == room or target in ROOMS[room], f"{room} may not include {target} ({name})"
    if room == "import" and path.stem.startswith("xml"):
        rooms = {included_room(path, name) for name in INCLUDE.findall(text)}
        assert rooms <= {"import", "platform"}, "the XML reader includes only platform"
    if "platform" not in path.relative_to(ROOT).parts:
        assert not PLATFORM_MACRO.search(text), "what differs between platforms belongs into platform/"
