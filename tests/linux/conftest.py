"""Holds the tests to a network namespace of their own, and gives each a machine without interfaces."""

import os
import pathlib
import shutil

import pytest

from machine import BUILDS, Machine, is_own_network, programs_of

NO_NAMESPACE = "not run here: needs a network and mount namespace of its own"


def pytest_configure(config):
    if "TAVRO_NO_NAMESPACE" not in os.environ and not is_own_network():
        raise pytest.UsageError("these tests change network interfaces; run them with tests/linux/run")


def pytest_collection_modifyitems(items):
    if "TAVRO_NO_NAMESPACE" in os.environ:
        for item in items:
            item.add_marker(pytest.mark.skip(reason=NO_NAMESPACE))


def pytest_collection_finish(session):
    """Names what has to be built for the tests that were chosen."""
    if "TAVRO_NO_NAMESPACE" in os.environ:
        return
    wanted = {item.callspec.params.get("machine") for item in session.items if hasattr(item, "callspec")}
    missing = [build for build in BUILDS if build in wanted and not (programs_of(build) / "tavro.dll").exists()]
    if missing:
        raise pytest.UsageError("; ".join(
            f"{programs_of(build)} is missing: cmake --preset {build} && cmake --build --preset {build} --target linux_host"
            for build in missing) + "; or choose one build: -k native")


def empty(folder):
    for path in pathlib.Path(folder).glob("*"):
        if path.is_dir() and not path.is_symlink():
            shutil.rmtree(path)
        else:
            path.unlink()


@pytest.fixture(params=BUILDS)
def machine(request, tmp_path):
    """A machine with nothing but its loopback interface, and nothing kept of earlier tests."""
    made = Machine(request.param, tmp_path)
    yield made
    made.stop_all()
    made.remove_interfaces()
    for folder in ("/run", "/var/lib"):
        empty(folder)
    shutil.rmtree("/etc/iscsi", ignore_errors=True)
    shutil.rmtree("/etc/network", ignore_errors=True)
