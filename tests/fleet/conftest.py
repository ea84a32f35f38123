"""Builds and installs the collection once, as its users do, and makes fleets of simulated hosts."""

import subprocess
import sys

import pytest

from fleet import COLLECTION, TAVROHOST, Fleet, ansible_environment


@pytest.fixture(scope="session")
def collections(tmp_path_factory):
    """The folder into which the built collection was installed."""
    folder = tmp_path_factory.mktemp("collections")
    environment = ansible_environment(folder, folder)
    galaxy = ["/usr/bin/ansible-galaxy", "collection"]

    def run(*command):
        subprocess.run([*galaxy, *command], check=True, capture_output=True, env=environment)

    run("build", str(COLLECTION), "--output-path", str(folder / "built"))
    archive, = (folder / "built").iterdir()
    run("install", "--offline", str(archive), "--collections-path", str(folder))
    sys.path.insert(0, str(folder))
    return folder


@pytest.fixture(scope="module")
def make_fleet(tmp_path_factory, collections):
    """make_fleet(count, document): so many simulated hosts, all with the simulator's own host or the given one."""
    assert TAVROHOST.exists(), "build the preset native first"

    def make(count=1, document=None):
        return Fleet(tmp_path_factory.mktemp("fleet"), collections, count, document)
    return make
