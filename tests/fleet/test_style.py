"""What Ansible's own tests find that need no network, and Debian's tools for Python and YAML."""

import ast
import os
import re
import shutil
import subprocess

import pytest

from fleet import COLLECTION, LEAST_PYTHON, ROOT, TESTS, ansible_environment

# The others make a virtual environment, for which they need a network: ansible-doc, import, pep8, pylint,
# runtime-metadata, validate-modules and yamllint; or test what is not here: shell scripts and PowerShell.
SANITY_TESTS = [
    "action-plugin-docs", "changelog", "compile", "empty-init", "ignores", "line-endings", "no-assert", "no-basestring",
    "no-dict-iteritems", "no-dict-iterkeys", "no-dict-itervalues", "no-get-exception", "no-illegal-filenames",
    "no-main-display", "no-smart-quotes", "no-unicode-literals", "replace-urlopen", "shebang", "symlinks",
    "use-argspec-type-path", "use-compat-six",
]


def check(*command, **options):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False, **options)
    assert done.returncode == 0, done.stdout
    return done.stdout


def test_ansibles_own_tests_that_need_no_network(tmp_path):
    # They want the collection in its place below a folder of this name, and its files in version control.
    folder = tmp_path / "ansible_collections" / "tavro" / "fleet"
    shutil.copytree(COLLECTION, folder, ignore=shutil.ignore_patterns("__pycache__"))
    environment = ansible_environment(tmp_path, tmp_path)
    check("git", "init", "--quiet", cwd=folder, env=environment)
    check("git", "add", "--all", cwd=folder, env=environment)
    tests = [word for name in SANITY_TESTS for word in ("--test", name)]
    output = check("/usr/bin/ansible-test", "sanity", "--python", "default", *tests, cwd=folder, env=environment)
    run = re.findall(r'^Running sanity test "([\w-]+)"', output, re.M)
    assert set(run) == set(SANITY_TESTS)


@pytest.mark.parametrize("folder", [COLLECTION, TESTS], ids=lambda folder: folder.name)
def test_pycodestyle(folder):
    # Modules begin with their documentation, and only then import something.
    check("/usr/bin/pycodestyle", "--max-line-length=120", "--ignore=E402,W503", str(folder))


def test_hosts_may_have_an_older_python():
    version = tuple(map(int, LEAST_PYTHON.split(".")))
    sources = list((COLLECTION / "plugins").rglob("*.py"))
    assert sources
    for path in sources:
        ast.parse(path.read_text(), str(path), feature_version=version)


def test_pylint(collections):
    folder = collections / "ansible_collections" / "tavro" / "fleet" / "plugins"
    check("/usr/bin/pylint", f"--rcfile={TESTS / 'pylintrc'}", str(folder),
          env={**os.environ, "PYTHONPATH": str(collections), "PYLINTHOME": str(collections / "pylint")})


def test_yamllint():
    check("/usr/bin/yamllint", "--strict", "--config-file", str(TESTS / "yamllint.yml"), str(COLLECTION))


def test_no_file_is_long():
    long = {path.relative_to(ROOT): len(path.read_text().splitlines()) for path in COLLECTION.rglob("*.py")
            if len(path.read_text().splitlines()) > 300}
    assert not long
