"""Takes the share of the tests that was asked for, by a seed, and gives the tests their randomness."""

import math
import random

import pytest

from damaged_runs import commands

pytest_plugins = ["platforms", "wine_retry"]


def part_of_one(text):
    value = float(text)
    if not 0 < value <= 1:
        raise ValueError(f"{text} is not above 0 and at most 1")
    return value


def pytest_addoption(parser):
    parser.addoption("--seed", type=int, help="what the choice of tests and their data follow from (default: a new one)")
    parser.addoption("--share", type=part_of_one, default=1.0,
                     help="how much of each test is run, above 0 and at most 1 (default: 1, everything)")


def pytest_configure(config):
    if hasattr(config, "workerinput"):
        config.option.seed = config.workerinput["seed"]
    elif config.option.seed is None:
        config.option.seed = random.SystemRandom().randrange(1 << 32)


@pytest.hookimpl(optionalhook=True)
def pytest_configure_node(node):
    """A process of pytest-xdist gets the seed of the one that starts it; of the options, only those that were typed."""
    node.workerinput["seed"] = node.config.option.seed


def pytest_report_header(config):
    return f"stress: --seed={config.option.seed} --share={config.option.share:g}"


def pytest_terminal_summary(terminalreporter):
    """With -q there is no header."""
    terminalreporter.write_line(pytest_report_header(terminalreporter.config))


def pytest_generate_tests(metafunc):
    """A test with an argument `case_command` runs for each command of the cases."""
    if "case_command" in metafunc.fixturenames:
        names = commands()
        metafunc.parametrize("case_command", names, ids=[name.replace(" ", "") or "none" for name in names])


def group_of(item):
    """What the share is taken of: one test function on one platform."""
    platform = getattr(item, "callspec", None) and item.callspec.params.get("platform")
    return item.nodeid.partition("[")[0], platform.name if platform else ""


@pytest.hookimpl(trylast=True)
def pytest_collection_modifyitems(config, items):
    """Of each test function at least one run stays on each platform, so that no kind is left out."""
    groups = {}
    for item in items:
        groups.setdefault(group_of(item), []).append(item)
    chosen = set()
    for group, members in groups.items():
        count = math.ceil(len(members) * config.option.share)
        chosen.update(random.Random(f"{config.option.seed} {group}").sample(members, count))
    config.hook.pytest_deselected(items=[item for item in items if item not in chosen])
    items[:] = [item for item in items if item in chosen]


@pytest.fixture
def chance(request):
    """Randomness of the test's own: the same for the same seed, whichever other tests are run."""
    return random.Random(f"{request.config.option.seed} {request.node.nodeid}")


@pytest.fixture
def scaled(request):
    """scaled(count): how many of so many rounds are made by a test that is one piece; at least one."""
    return lambda count: math.ceil(count * request.config.option.share)


@pytest.fixture
def part_of(chance, request):
    """part_of(things): those of them that belong to the share, for a test that does much the same with each; each does with
    the same likelihood."""
    return lambda things: [thing for thing in things if chance.random() < request.config.option.share]
