"""The package of the Ansible collection: what lies in it, and that it works where it is installed, beside those of the
program and the simulator. `scripts/package` has to have made them."""

import json
import re
import subprocess

import pytest

from clean_root import CleanRoot, needed_by
from program import LIBRARY, ROOT
from test_packages import FLEET_PACKAGE, PROGRAM_PACKAGE, SIMULATOR_PACKAGE, install, packages_are_made, paths_in
from test_version import VERSION

__all__ = ["packages_are_made"]

PLACE = "usr/share/ansible/collections/ansible_collections/tavro/fleet"
MODULES = sorted(path.stem for path in (ROOT / "fleet" / "plugins" / "modules").glob("*.py"))
PLAYBOOKS = sorted(path.stem for path in (ROOT / "fleet" / "playbooks").glob("*.yml"))
SIMULATOR = {"tavrohost": "/usr/bin/tavrohost", "library": f"/usr/lib/tavrocli/simulator/{LIBRARY}"}


def archive_of_the_collection(folder):
    """What ansible-galaxy packs, by name, its own lists left out."""
    subprocess.run(["/usr/bin/ansible-galaxy", "collection", "build", ROOT / "fleet", "--output-path", folder],
                   check=True, capture_output=True, env={"PATH": "/usr/bin:/bin", "HOME": str(folder)})
    archive, = folder.glob("*.tar.gz")
    unpacked = folder / "unpacked"
    unpacked.mkdir()
    subprocess.run(["tar", "-C", unpacked, "-xf", archive], check=True)
    names = {str(path.relative_to(unpacked)) for path in unpacked.rglob("*") if path.is_file()}
    return unpacked, names - {"MANIFEST.json", "FILES.json"}


def test_the_package_holds_what_ansible_galaxy_packs(tmp_path):
    unpacked, names = archive_of_the_collection(tmp_path)
    assert {f"plugins/modules/{module}.py" for module in MODULES} < names
    documents = {f"usr/share/doc/ansible-collection-tavro/{name}" for name in ("fleet.md", "copyright", "changelog.gz")}
    assert paths_in(FLEET_PACKAGE) == documents | {f"{PLACE}/{name}" for name in names | {"galaxy.yml"}}
    subprocess.run(["dpkg-deb", "--extract", FLEET_PACKAGE, tmp_path / "packed"], check=True)
    for name in names:
        content = (unpacked / name).read_bytes()
        if name.startswith("plugins/modules/"):
            content = content.removeprefix(b"#!/usr/bin/python")
        assert (tmp_path / "packed" / PLACE / name).read_bytes() == content, name


def test_the_package_needs_ansible_and_none_of_the_others():
    assert needed_by(FLEET_PACKAGE) == ["ansible-core"]


def test_the_collection_has_the_version_of_the_program():
    """A collection's version has three numbers."""
    stated = re.search("^version: (.*)", (ROOT / "fleet" / "galaxy.yml").read_text(encoding="utf-8"), re.MULTILINE)
    assert stated.group(1) == VERSION.rpartition(".")[0]


@pytest.fixture(scope="module")
def root(tmp_path_factory):
    root = CleanRoot(tmp_path_factory.mktemp("clean") / "root", (FLEET_PACKAGE, PROGRAM_PACKAGE, SIMULATOR_PACKAGE))
    (root.folder / "dev").mkdir()
    return root


def files(root):
    """All that is there, but what is the user's, and Python's own folders, where it puts what it has compiled."""
    return {name: what for name, what in root.files().items() if not re.match("(root|usr/lib/python3[^/]*)(/|$)", name)}


def output_of(root, *command):
    result = root.run(*command, before='mount --rbind /dev "$1/dev"')
    assert result.returncode == 0, result.stdout + result.stderr
    return result.stdout


def test_the_collection_installed_used_and_removed(root):
    before = files(root)
    install(root, FLEET_PACKAGE)
    installed = files(root)
    listed = output_of(root, "ansible-galaxy", "collection", "list", "--format", "json")
    assert [(name, found["version"]) for place in json.loads(listed).values() for name, found in place.items()] == [
        ("tavro.fleet", VERSION.rpartition(".")[0])]
    assert output_of(root, "ansible-doc", "-t", "module", "tavro.fleet.tcpip").startswith("> TAVRO.FLEET.TCPIP ")
    documents = json.loads(output_of(root, "ansible-doc", "-t", "module", "--json",
                                     *(f"tavro.fleet.{module}" for module in MODULES)))
    assert sorted(documents) == [f"tavro.fleet.{module}" for module in MODULES]
    for playbook in PLAYBOOKS:
        output_of(root, "ansible-playbook", "-i", "localhost,", "--syntax-check", f"tavro.fleet.{playbook}")
    # What Python compiles for root goes with the package, or its folders would stay.
    assert {name for name in set(files(root)) - set(installed) if "__pycache__" not in name} == set()
    root.dpkg("--purge", "ansible-collection-tavro")
    assert files(root) == before


def test_a_module_is_played_from_where_it_is_installed(root):
    packages = {"tavrocli": PROGRAM_PACKAGE, "tavrocli-simulator": SIMULATOR_PACKAGE,
                "ansible-collection-tavro": FLEET_PACKAGE}
    install(root, *packages.values())
    output = output_of(root, "ansible", "localhost", "-i", "localhost,", "-c", "local", "-m", "tavro.fleet.isns",
                       "-a", json.dumps({"servers": ["192.0.2.77"], **SIMULATOR}))
    assert output.startswith("localhost | CHANGED")
    output = output_of(root, "ansible", "localhost", "-i", "localhost,", "-c", "local", "-m", "tavro.fleet.host_info",
                       "-a", json.dumps(SIMULATOR))
    assert output.startswith("localhost | SUCCESS")
    assert json.loads(output.partition("=> ")[2])["host"]["isnsServers"] == ["192.0.2.5", "192.0.2.77"]
    root.dpkg("--purge", *packages)
