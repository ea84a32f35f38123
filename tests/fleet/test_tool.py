"""A program in the place of tavrohost that does not end, whatever it is asked."""

import importlib
import os
import time
import types

import pytest

from fleet import TAVROHOST

STUBBORN = """#!/bin/sh
trap '' TERM
echo $TMPDIR > {notes}/folder
( trap '' TERM; exec sleep 100 ) &
echo $! > {notes}/child
while :; do sleep 0.1; done
"""


@pytest.fixture(name="tool")
def fixture_tool(collections, tmp_path, monkeypatch):
    """The module_utils that run tavrohost, with little patience, and a module whose tavrohost is stubborn."""
    root = "ansible_collections.tavro.fleet.plugins.module_utils"
    tool = importlib.import_module(f"{root}.tool")
    assert tool.__file__.startswith(str(collections))
    monkeypatch.setattr(tool, "GRACE", 0)
    monkeypatch.setattr(tool, "POLITENESS", 0.2)
    program = tmp_path / "tavrohost"
    program.write_text(STUBBORN.format(notes=tmp_path))
    program.chmod(0o700)
    parameters = {"tavrohost": str(program), "library": None, "time_limit": 1}
    return tool, types.SimpleNamespace(params=parameters, tmpdir=str(tmp_path))


@pytest.mark.parametrize("limit", [-1, 0, 1000001])
def test_a_time_limit_that_tavrohost_does_not_take_is_told(tool, limit):
    utilities, module = tool
    module.params["time_limit"] = limit
    with pytest.raises(utilities.Failure) as told:
        utilities.Tool(module)
    assert str(told.value) == f"time_limit: {limit} is not within 1 and 1000000 seconds"


def test_the_hint_at_the_help_is_no_reason(tool, tmp_path):
    utilities, module = tool
    program = tmp_path / "tavrohost"
    program.write_text(f'#!/bin/sh\nexec {TAVROHOST} "$@" --unknown\n')
    with pytest.raises(utilities.Failure) as told:
        with utilities.Tool(module) as running:
            running.capture()
    assert "--unknown" in str(told.value) and "--help" not in str(told.value)


def test_a_rehearsal_that_keeps_no_twin_leaves_the_one_before(tool, tmp_path):
    utilities, module = tool
    (tmp_path / "tavrohost").write_text("#!/bin/sh\necho '{}'\n")
    command = importlib.import_module(utilities.__package__ + ".command").Command(["-showadapter"])
    with utilities.Tool(module) as running:
        assert running.rehearse(command, "before.json") == ({}, "before.json")


def is_running(process):
    try:
        with open(f"/proc/{process}/stat", encoding="ascii") as stat:
            return stat.read().rpartition(")")[2].split()[0] != "Z"
    except FileNotFoundError:
        return False


@pytest.mark.parametrize("action, arguments", {
    "capture": [], "run": ["Command"], "rehearse": ["Command", "host.json"]}.items())
def test_what_does_not_end_is_ended_with_all_it_started(tool, tmp_path, action, arguments):
    utilities, module = tool
    command = importlib.import_module(utilities.__package__ + ".command").Command(["-showadapter"])
    with pytest.raises(utilities.Failure) as told:
        with utilities.Tool(module) as running:
            getattr(running, action)(*[command if argument == "Command" else argument for argument in arguments])
    assert str(told.value) == f"tavrohost {action} did not end (time_limit: 1 seconds)"
    folder = (tmp_path / "folder").read_text().strip()
    assert folder.startswith(f"{tmp_path}/tavro-") and not os.path.exists(folder)
    end = time.monotonic() + 10  # A killed process needs a moment.
    while is_running((tmp_path / "child").read_text().strip()) and time.monotonic() < end:
        time.sleep(0.01)
    assert not is_running((tmp_path / "child").read_text().strip())
