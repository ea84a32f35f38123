"""What the guide shows: its playbooks and inventories are true of the modules, and its first playbook is played."""

import importlib
import re
import subprocess

import pytest
import yaml

from fleet import COLLECTION, LEAST_PYTHON, MODULES, ROOT, TAVROHOST, are_readings
from test_partitions_playbook import two_adapters

GUIDE = (ROOT / "docs" / "fleet.md").read_text(encoding="utf-8")
BLOCKS = [yaml.safe_load(block) for block in re.findall(r"^```yaml\n(.*?)^```$", GUIDE, re.M | re.S)]
PLAYBOOKS = [path.stem for path in (COLLECTION / "playbooks").glob("*.yml")]
INVENTORY, FIRST = BLOCKS[:2]
SECRETS, = (block for block in BLOCKS if "group/tavro.fleet.secrets" in str(block))
TAKING_BACK, = (block for block in BLOCKS if "-res" in str(block))
FIRST_SECRET, SECOND_SECRET = "first-secret", "second-secret"
HOST = "server-7"
CHANGED = ["Give the port its address", "Know the portals", "Know the iSNS servers, and no other"]


def tasks_of(block):
    """The tasks of a playbook, or the tasks that stand alone."""
    for entry in block if isinstance(block, list) else []:
        yield from entry.get("tasks", [] if "hosts" in entry else [entry])


def options_of(module):
    root = "ansible_collections.tavro.fleet.plugins"
    common = importlib.import_module(f"{root}.module_utils.options").COMMON_OPTIONS
    return {**common, **importlib.import_module(f"{root}.modules.{module}").OPTIONS}


def test_the_modules_of_the_playbooks_have_the_options_that_are_shown(collections):
    assert collections
    shown = [(name.removeprefix("tavro.fleet."), given) for block in BLOCKS for task in tasks_of(block)
             for name, given in task.items() if name.startswith("tavro.fleet.")]
    assert len(shown) > 5
    for module, given in shown:
        options = options_of(module)
        assert set(given) <= set(options), module
        assert {name for name, option in options.items() if option.get("required")} <= set(given), module
        for name, value in given.items():
            choices = options[name].get("choices")
            assert not choices or "{{" in value or value in choices, (module, name)


def test_the_defaults_of_the_playbooks_are_options_of_all_modules(collections):
    assert collections
    defaults = [play["module_defaults"]["group/tavro.fleet.all"] for block in BLOCKS if isinstance(block, list)
                for play in block if "group/tavro.fleet.all" in play.get("module_defaults", {})]
    common = importlib.import_module("ansible_collections.tavro.fleet.plugins.module_utils.options").COMMON_OPTIONS
    assert len(defaults) == 2 and all(set(default) <= set(common) for default in defaults)


def test_modules_and_playbooks_that_are_named_are_there():
    named = set(re.findall(r"\btavro\.fleet\.(\w+)", GUIDE)) - {"all", "secrets"}
    assert {"audit", "tcpip"} < named <= {*MODULES, *PLAYBOOKS}
    assert all(f"tavro.fleet.{playbook}" in GUIDE for playbook in PLAYBOOKS)


@pytest.mark.parametrize("playbook", PLAYBOOKS)
def test_the_playbooks_take_what_all_modules_take_from_the_inventory(playbook):
    play, = yaml.safe_load((COLLECTION / "playbooks" / f"{playbook}.yml").read_text())
    assert play["module_defaults"] == {"group/tavro.fleet.all": {
        option: f"{{{{ fleet_{option} | default(omit) }}}}" for option in ("tavrohost", "time_limit")}}
    assert {"`fleet_tavrohost`", "`fleet_time_limit`"} <= set(re.findall(r"`fleet_\w+`", GUIDE))
    assert re.search(rf"^    ansible-playbook -b .*tavro\.fleet\.{playbook}", GUIDE, re.M)


def test_the_least_python_is_named():
    assert f"Python {LEAST_PYTHON} or later" in " ".join(GUIDE.split())


def test_the_table_tells_of_each_module():
    table, = re.findall(r"^\| Module \| Compares \|.*?\n\n", GUIDE, re.M | re.S)
    told = [name for line in table.strip().splitlines()[2:] for name in re.findall(r"`(\w+)`", line.split("|")[1])]
    assert sorted(told) == MODULES


class Plays:
    """The first playbook on a host of the inventory, as the guide has it played."""

    def __init__(self, fleet):
        self.host = fleet[0]
        self.host.more.update(INVENTORY["storage"]["hosts"][HOST], **INVENTORY["storage"]["vars"])
        # The host is in no group, and its user is nobody else.
        playbook, secrets = ([{**play, "hosts": "all", "become": False} for play in block]
                             for block in (FIRST, SECRETS))
        self.rehearsed = fleet.play(None, "--check", "--diff", playbook=playbook)
        self.operations = self.host.operations()
        self.done = fleet.play(None, playbook=playbook)
        self.again = fleet.play(None, playbook=playbook)
        self.secrets = []
        for secret, *options in ([FIRST_SECRET], [SECOND_SECRET], [SECOND_SECRET, "-e", "update_secret=always"]):
            self.host.more["vault_chap_secret"] = secret
            play = fleet.play(None, *options, playbook=secrets)
            self.secrets.append((play.status, play.result(self.host, SECRETS[0]["tasks"][0]["name"])["changed"],
                                 self.host.read()["initiator"].get("login", {}).get("targetSecret")))


@pytest.fixture(scope="module", name="plays")
def fixture_plays(make_fleet):
    return Plays(make_fleet(1, two_adapters()))


def test_the_first_playbook_is_rehearsed_done_and_then_changes_nothing(plays):
    for play in (plays.rehearsed, plays.done, plays.again):
        assert play.status == 0, play.output
    assert are_readings(plays.operations)
    for play in (plays.rehearsed, plays.done):
        assert [task for task in CHANGED if play.result(plays.host, task)["changed"]] == CHANGED
    assert not any(result["changed"] for result in plays.again.results[plays.host.name].values())


def test_the_host_is_as_the_inventory_says(plays):
    document = plays.host.read()
    part, = [function["iscsi"] for adapter in document["adapters"] for port in adapter["ports"]
             for function in port["functions"] if function["mac"] == "02-00-5E-10-00-03" and "iscsi" in function]
    assert part["tcpIp"]["address"] == "192.0.2.31"
    portals = [portal["address"] for portal in part["storage"]["portals"]]
    assert portals[-2:] == INVENTORY["storage"]["vars"]["storage_portals"]
    assert document["isnsServers"] == INVENTORY["storage"]["vars"]["isns_servers"]


def test_the_playbook_of_secrets_sends_them_again_when_that_is_wanted(plays):
    assert plays.secrets == [(0, True, FIRST_SECRET), (0, False, FIRST_SECRET), (0, True, SECOND_SECRET)]


def personality(document, key="personality"):
    return document["adapters"][1]["ports"][0]["resources"].get(key)


def test_what_waits_for_the_restart_is_taken_back_by_its_command(make_fleet):
    fleet = make_fleet(1, two_adapters())
    host = fleet[0]
    host.more.update(INVENTORY["storage"]["hosts"][HOST])
    before = personality(host.read())
    assert before == "iSCSI"

    def wanting(value):
        return {"tavro.fleet.personality": {"mac": host.more["port_personality"]["mac"], "personality": value}}

    play = fleet.play({"other": wanting("fcoe"), "former": wanting("iscsi")})
    assert play.result(host, "other")["restart_required"] and not play.result(host, "former")["changed"]
    task, = TAKING_BACK
    assert fleet.play({task["name"]: task}).result(host, task["name"])["changed"]
    subprocess.run([TAVROHOST, "restart", host.file], check=True, capture_output=True)
    assert personality(host.read()) == before


def test_what_a_killed_module_leaves_is_where_the_guide_says_and_for_its_owner_only(make_fleet):
    fleet = make_fleet(1)
    program = fleet.folder / "killing"
    program.write_text(f'#!/bin/sh\ntest "$1" = run && kill -KILL $PPID && exit\nexec {TAVROHOST} "$@"\n')
    program.chmod(0o755)
    task = {"tavro.fleet.initiator": {
        "name": "iqn.2015-01.com.example:web-1", "authentication": "one_way_chap", "target_chap_name": "web",
        "target_chap_secret": FIRST_SECRET, "tavrohost": str(program)}}
    assert fleet.play({"killed": task}).result(fleet[0], "killed")["failed"]
    folder, = fleet[0].temporary.glob("ansible-*/tavro-*")
    left = [folder, *folder.rglob("*")]
    assert FIRST_SECRET in "".join(path.read_text() for path in left if path.is_file())
    assert not [path for path in left if path.stat().st_mode & 0o077]
