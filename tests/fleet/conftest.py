"""Builds and installs the collection once, as its users do, and makes fleets of simulated hosts."""

import importlib
import sys

import pytest

from fleet import TAVROHOST, Fleet, install_collection


@pytest.fixture(scope="session")
def collections(tmp_path_factory):
    """The folder into which the built collection was installed."""
    folder = tmp_path_factory.mktemp("collections")
    install_collection(folder)
    sys.path.insert(0, str(folder))
    return folder


@pytest.fixture(scope="module")
def make_fleet(tmp_path_factory, collections):
    """make_fleet(count, document): so many simulated hosts, all with the simulator's own host or the given one."""
    assert TAVROHOST.exists(), "build the preset native first"

    def make(count=1, document=None):
        return Fleet(tmp_path_factory.mktemp("fleet"), collections, count, document)
    return make


@pytest.fixture(scope="session")
def ask_module(collections):
    """ask_module(module, document, options): the commands that the module needs on a host; what is not given is as
    Ansible fills it in."""
    root = "ansible_collections.tavro.fleet.plugins"

    def filled(options, given):
        values = {name: given.get(name, option.get("default")) for name, option in options.items()}
        for name, option in options.items():
            inner = option.get("options")
            if inner and isinstance(values[name], dict):
                values[name] = filled(inner, values[name])
            elif inner and values[name]:
                values[name] = [filled(inner, element) for element in values[name]]
        return values

    def ask(module, document, given):
        installed = importlib.import_module(f"{root}.modules.{module}")
        assert installed.__file__.startswith(str(collections))
        host = importlib.import_module(f"{root}.module_utils.host").Host(document)
        return installed.needed(host, filled(installed.OPTIONS, given))
    return ask


@pytest.fixture(scope="session")
def planned(ask_module):
    """planned(task, document): the arguments of the commands that the module of a task needs on a host, or why it
    cannot do what is asked for."""
    failure = importlib.import_module("ansible_collections.tavro.fleet.plugins.module_utils.failure").Failure

    def plan(task, document):
        (name, given), = task.items()
        try:
            return [command.arguments for command in ask_module(name.rsplit(".", 1)[1], document, given)]
        except failure as refused:
            return str(refused)
    return plan
