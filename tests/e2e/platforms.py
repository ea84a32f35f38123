"""Chooses the platforms and prepares what the runs need, for these tests and those under stress: a plugin of pytest."""

import subprocess

import pytest

from program import PLATFORMS, ROOT, Sandbox

SETUP = f"""
set -euo pipefail
source "{ROOT}/scripts/lib/setup.sh"
for name in ja_JP.UTF-8 zh_CN.UTF-8 en_US.UTF-8 hi_IN.UTF-8; do compileLocale "$name"; done
"""


def pytest_addoption(parser):
    parser.addoption(
        "--platform",
        action="append",
        choices=[*PLATFORMS, "all"],
        help="the build to run: native (default), sanitize, windows or all; can be given several times",
    )


def chosen_platforms(config):
    names = config.getoption("--platform") or ["native"]
    return [platform for name, platform in PLATFORMS.items() if name in names or "all" in names]


def pytest_configure(config):
    is_worker = hasattr(config, "workerinput")
    if is_worker or config.option.collectonly or config.option.help:
        return
    commands = SETUP
    if any(platform.is_windows for platform in chosen_platforms(config)):
        commands += "startWine\n"
    subprocess.run(["bash", "-c", commands], check=True)


def pytest_generate_tests(metafunc):
    """A test with a `platform` argument runs on each platform that its mark allows."""
    if "platform" in metafunc.fixturenames and "case" not in metafunc.fixturenames:
        mark = metafunc.definition.get_closest_marker("platforms")
        names = mark.args if mark else list(PLATFORMS)
        metafunc.parametrize("platform", [PLATFORMS[name] for name in names], ids=list(names))


def pytest_collection_modifyitems(config, items):
    chosen = chosen_platforms(config)

    def is_chosen(item):
        parameters = item.callspec.params if hasattr(item, "callspec") else {}
        return "platform" not in parameters or parameters["platform"] in chosen

    others = [item for item in items if not is_chosen(item)]
    config.hook.pytest_deselected(items=others)
    items[:] = [item for item in items if is_chosen(item)]


@pytest.fixture
def sandbox(platform, tmp_path):
    """A place for the runs of a test that is written in Python; steered like a case, with numbered messages
    and without the model unless the test writes another script."""
    place = Sandbox(platform, tmp_path)
    place.write_script({"messages": "numbers", "model": False, "answers": []})
    return place
