"""What the modules say of themselves is what they take."""

import importlib
import json
import re
import subprocess

import pytest
import yaml

from fleet import COLLECTION, LEAST_PYTHON, MODULES, ansible_environment

NAMES = [f"tavro.fleet.{module}" for module in MODULES]


@pytest.fixture(scope="module", name="ansible_doc")
def fixture_ansible_doc(collections, tmp_path_factory):
    folder = tmp_path_factory.mktemp("doc")

    def run(*options):
        return subprocess.run(["/usr/bin/ansible-doc", *options, *NAMES], check=True, capture_output=True, text=True,
                              env=ansible_environment(folder, collections))
    return run


@pytest.fixture(scope="module", name="documents")
def fixture_documents(ansible_doc):
    return json.loads(ansible_doc("--json").stdout)


def taken(options):
    """Options of an argument specification in the form of documented ones."""
    return {
        name: {
            "type": option.get("type", "str"),
            "elements": option.get("elements"),
            "required": option.get("required", False),
            "default": option.get("default"),
            "choices": option.get("choices"),
            "suboptions": taken(option.get("options", {})),
        }
        for name, option in options.items()
    }


def told(options):
    return {
        name: {
            "type": option["type"],
            "elements": option.get("elements"),
            "required": option.get("required", False),
            "default": option.get("default"),
            "choices": option.get("choices"),
            "suboptions": told(option.get("suboptions", {})),
        }
        for name, option in options.items()
    }


def test_the_documentation_is_shown(ansible_doc):
    done = ansible_doc()
    assert not done.stderr
    for name in NAMES:
        assert f"> {name.upper()}" in done.stdout


@pytest.mark.parametrize("module", MODULES)
def test_the_options_are_those_of_the_argument_specification(collections, documents, module):
    installed = importlib.import_module(f"ansible_collections.tavro.fleet.plugins.modules.{module}")
    common = importlib.import_module("ansible_collections.tavro.fleet.plugins.module_utils.options").COMMON_OPTIONS
    assert installed.__file__.startswith(str(collections))
    assert told(documents[f"tavro.fleet.{module}"]["doc"]["options"]) == taken({**common, **installed.OPTIONS})


@pytest.mark.parametrize("module", MODULES)
def test_a_module_tells_all_that_is_to_be_told(documents, module):
    document = documents[f"tavro.fleet.{module}"]
    assert document["doc"]["attributes"]["check_mode"]["support"] == "full"
    assert document["doc"]["attributes"]["diff_mode"]["support"] == ("none" if module == "host_info" else "full")
    assert document["doc"]["requirements"] == ["tavrohost", f"Python {LEAST_PYTHON} or later"]
    assert document["doc"]["version_added"] and document["doc"]["author"]
    for value in document["return"].values():
        assert value["description"] and value["returned"] and value["type"]
    tasks = yaml.safe_load(document["examples"])
    assert any(f"tavro.fleet.{module}" in task for task in tasks) and all(task["name"] for task in tasks)


@pytest.mark.parametrize("module", MODULES)
def test_secrets_are_kept_from_logs(collections, module):
    installed = importlib.import_module(f"ansible_collections.tavro.fleet.plugins.modules.{module}")
    assert installed.__file__.startswith(str(collections))

    def secret_options(options):
        for name, option in options.items():
            if "secret" in name:
                yield name, option
            yield from secret_options(option.get("options", {}))

    for name, option in secret_options(installed.OPTIONS):
        assert option["no_log"] is (name != "update_secret"), name


def test_all_modules_are_in_their_groups_and_in_the_readme(documents):
    runtime = yaml.safe_load((COLLECTION / "meta" / "runtime.yml").read_text())
    with_secrets = [module for module in MODULES
                    if "update_secret" in documents[f"tavro.fleet.{module}"]["doc"]["options"]]
    assert "target" in with_secrets and runtime["action_groups"] == {"all": MODULES, "secrets": with_secrets}
    listed = re.findall(r"^\| `(\w+)` \|", (COLLECTION / "README.md").read_text(), re.M)
    assert sorted(listed) == MODULES
