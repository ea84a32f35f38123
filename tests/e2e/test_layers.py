"""Holds the tree to its layers: an include points downwards, and each platform's specifics stay in one folder."""

import re

import pytest

from program import ROOT

CONTRACT = "tavroapi"
LIBRARIES = ("library", "simulator", "linux")
HOUSES = (*LIBRARIES, "twin", "completions")  # folders whose own folders are rooms
FAMILIES = ("iscsi", "fcoe", "boot", "ethernet", "partition", "import")
# What a room may include besides itself: every room below it.
CONSOLE = {"platform"}
MGMT = CONSOLE | {"console", CONTRACT}
CLI = MGMT | {"mgmt"}
ADAPTERS = CLI | {"cli"}
FAMILY = ADAPTERS | {"adapters"}
# The ground floor of every library, and on it the simulator.
TEXT = {"library/text"}
RECORDS = TEXT | {"library/json", CONTRACT}
CALLS = RECORDS | {"library/records", "library/messages"}
JOURNAL = CALLS | {"library/calls", "library/platform"}
LIBRARY = JOURNAL | {"library/journal", "library/session"}
WORDS = CALLS | {"library/calls"}
HOST = WORDS | {"simulator/answers"}
MODEL = HOST | {"simulator/host", "simulator/messages"}
ROOMS = {
    CONTRACT: set(),
    "library/text": set(),
    "library/messages": set(),
    "library/platform": TEXT,
    "library/json": set(),
    "library/records": RECORDS,
    "library/calls": CALLS,
    "library/journal": JOURNAL,
    "library/session": LIBRARY,
    "simulator/answers": WORDS,
    "simulator/host": HOST,
    "simulator/messages": WORDS,
    "simulator/script": WORDS | {"simulator/answers"},
    "simulator/store": MODEL | {"library/platform"},
    "simulator/model": MODEL,
    "simulator": LIBRARY | {f"simulator/{room}" for room in ("answers", "host", "messages", "script", "store", "model")},
    "platform": set(),
    "console": CONSOLE,
    "mgmt": MGMT,
    "cli": CLI,
    "adapters": ADAPTERS,
    "xml": {"platform"},
    **{family: FAMILY for family in FAMILIES},
    "import": FAMILY | {"xml"},
    "top": FAMILY | {"xml"} | set(FAMILIES),  # src/dispatch.* and src/main.cpp
}
# The library for Linux hosts. Its families never include each other, but for what the inventory tells of two of them.
LINUX_HOST = JOURNAL | {f"linux/{room}" for room in ("system", "netlink", "inventory")}
LINUX_FAMILY = LINUX_HOST | {f"linux/{room}" for room in ("messages", "state", "serve")}
LINUX_FAMILIES = ("ethernet", "tcpip", "iscsi", "fcoe")
ROOMS.update({
    "linux/system": set(),
    "linux/messages": WORDS,
    "linux/netlink": {"linux/system"},
    "linux/inventory": LINUX_HOST,
    "linux/state": JOURNAL | {"linux/system"},
    "linux/serve": LINUX_FAMILY | {"linux/iscsi"},
    **{f"linux/{family}": LINUX_FAMILY for family in LINUX_FAMILIES},
    "linux": LIBRARY | LINUX_FAMILY,
})
# tavrohost is built from the objects of the program and of the simulator, which know nothing of it. Its rooms, each of
# which may include those before it:
TWIN_ROOMS = (
    "platform", "documents", "process", "watch", "answers", "diff", "run", "check", "anonymous", "capture", "rehearse",
    "commands",
)
BELOW_TWIN = {room for room in ROOMS if room.split("/")[0] != "linux"}
ROOMS.update({
    f"twin/{room}": BELOW_TWIN | {f"twin/{lower}" for lower in TWIN_ROOMS[:place]} | {"twin"}
    for place, room in enumerate(TWIN_ROOMS)
})
ROOMS["twin"] = BELOW_TWIN | {f"twin/{room}" for room in TWIN_ROOMS}
ROOMS["completions"] = set(ROOMS)
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
    if parts[0] == CONTRACT:
        return parts[0]
    if parts[0] in HOUSES:
        return "/".join(parts[:2]) if len(parts) > 2 else parts[0]
    return parts[1] if len(parts) > 2 else "top"


def included_room(path, name):
    """The room of an included file. The include root is src/ for the program, else the repository's folder;
    the libraries' sources are never reached through src/."""
    is_program = path.relative_to(ROOT).parts[0] not in LIBRARIES
    roots = [path.parent, ROOT] + ([ROOT / "src"] if is_program else [])
    for root in roots:
        file = (root / name).resolve()
        if file.is_file() and file.is_relative_to(ROOT):
            return room_of(file)
    return None


@pytest.mark.parametrize("path", [
    pytest.param(path, id=str(path.relative_to(ROOT)))
    for path in sources(CONTRACT, "src", *HOUSES)
])
def test_file(path):
    text = path.read_text(encoding="utf-8")
    room = room_of(path)
    assert room in ROOMS, f"no room is called {room}; name what it may include in ROOMS"
    for name in INCLUDE.findall(text):
        target = included_room(path, name)
        assert target is not None, f'"{name}" is not found from {room}; headers of others are included with <>'
        assert target == room or target in ROOMS[room], f"{room} may not include {target} ({name})"
    if "platform" not in path.relative_to(ROOT).parts:
        assert not PLATFORM_MACRO.search(text), "what differs between platforms belongs into platform/"


def test_the_program_leaves_its_seams_alone():
    """Another library and another device of the console are for tavrohost and for tests: the program itself, which declares
    the two ways to put them in place, uses neither."""
    declared = {"mgmt/library.h", "mgmt/library.cpp", "console/redirect.h", "console/redirect.cpp"}
    users = {
        str(path.relative_to(ROOT / "src"))
        for path in sources("src")
        if re.search(r"\b(UseLibrary|Redirect|MemoryConsole)\b", re.sub(r"//.*", "", path.read_text(encoding="utf-8")))
    }
    assert users == declared
