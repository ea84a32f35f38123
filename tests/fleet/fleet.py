"""Simulated hosts as an Ansible inventory, and what playbooks do to them."""

import dataclasses
import json
import os
import pathlib
import re
import shutil
import subprocess
import time

import yaml

TESTS = pathlib.Path(__file__).resolve().parent
ROOT = TESTS.parent.parent
COLLECTION = ROOT / "fleet"
MODULES = sorted(path.stem for path in (COLLECTION / "plugins" / "modules").glob("*.py"))
TAVROHOST = ROOT / "build" / "native" / "bin" / "tavrohost"
DEFAULT_HOST = ROOT / "simulator" / "default_host.json"
LEAST_PYTHON = "3.7"  # of hosts
TIME_LIMIT = 300  # seconds; far more than a playbook takes on a busy machine
# Names of operations by number.
OPERATIONS = {
    int(number): name
    for name, number in re.findall(r"^ {4}(\w+) = (\d+),", (ROOT / "tavroapi" / "operation_code.h").read_text(), re.M)
}


def are_readings(operations):
    """Whether there are any of these names of operations, and all are of those that leave a host as it is."""
    return bool(operations) and all(name.startswith(("Read", "List")) for name in operations)


def assert_was_as_wanted(task, host, called, *plays):
    """The task found nothing to change on the host in any of the plays, and the operations called for were readings."""
    for play in plays:
        result = play.result(host, task)
        assert not result["failed"] and not result["changed"] and not result["commands"]
    assert are_readings(called)


@dataclasses.dataclass
class SimulatedHost:
    """A host of the inventory: a folder with its host file, the trace of its library, and Ansible's files."""

    name: str
    folder: pathlib.Path
    environment: dict = dataclasses.field(default_factory=dict)  # of the modules, beside the simulator's own
    more: dict = dataclasses.field(default_factory=dict)  # variables in the inventory, beside Ansible's own

    @property
    def file(self):
        return self.folder / "host.json"

    @property
    def temporary(self):
        """Where modules put what they need for a while."""
        return self.folder / "tmp"

    def read(self):
        return json.loads(self.file.read_text())

    def write(self, document):
        self.file.write_text(json.dumps(document))

    def operations(self):
        """The names of the operations that the library was called for, as a set."""
        trace = self.folder / "trace"
        calls = [json.loads(line) for line in trace.read_text().splitlines()] if trace.exists() else []
        return {OPERATIONS[call["operation"]] for call in calls if call["call"] == "DoOperation"}

    def refuse(self, message, *names):
        """From now on the library refuses the operations of these names, with the details "site 7"."""
        numbers = {name: number for number, name in OPERATIONS.items()}
        error = {"code": 5, "message": message, "details": "site 7"}
        script = self.folder / "script.json"
        script.write_text(json.dumps({"answers": [
            {"call": "DoOperation", "operation": numbers[name], "status": 5, "error": error} for name in names]}))
        self.environment["TAVROSIM_SCRIPT"] = str(script)

    def forget_operations(self):
        (self.folder / "trace").unlink(missing_ok=True)

    def variables(self):
        simulator = {"TAVROSIM_HOST": str(self.file), "TAVROSIM_TRACE": str(self.folder / "trace")}
        return {"ansible_remote_tmp": str(self.temporary), "simulated": {**simulator, **self.environment},
                **self.more}


@dataclasses.dataclass
class Play:
    """What came of a run of ansible-playbook."""

    status: int
    output: str
    seconds: float
    results: dict  # by host and name of the task

    def result(self, host, task):
        return self.results[host.name][task]

    def function_that_differs(self, host, task, side):
        """What a difference tells, before or after (side), of the one function that differs."""
        value = self.result(host, task)["diff"][side]
        for key in ("adapters", "ports", "functions"):
            value, = value[key].values()
        return value

    def of_task(self, task):
        """The result of each host."""
        return {host: tasks[task] for host, tasks in self.results.items()}


class Fleet:
    """Hosts with a tavrohost, and the collection as it was installed."""

    def __init__(self, folder, collections, count=1, document=None, program=TAVROHOST):
        self.folder = folder
        self._program = program
        self._collections = collections
        self._plays = 0
        self.hosts = [self._make_host(f"host-{number}", document) for number in range(1, count + 1)]

    def __getitem__(self, position):
        return self.hosts[position]

    def _make_host(self, name, document):
        host = SimulatedHost(name, self.folder / name)
        host.temporary.mkdir(parents=True, mode=0o700)
        if document is None:
            shutil.copy(DEFAULT_HOST, host.file)
        else:
            host.write(document)
        return host

    def play(self, tasks, *options, forks=5, hosts=None, playbook=None):
        """Runs tasks (by name), or a playbook of the collection, or the plays of another one, on the hosts: on all of
        them when none are named. A task that fails does not keep the next ones from being done; in a playbook it does.
        `options` are those of ansible-playbook, such as "--check"."""
        self._plays += 1
        results = self.folder / f"results-{self._plays}"
        results.write_text("")
        command = ["/usr/bin/ansible-playbook", "-i", self._inventory(), "--forks", str(forks), *options]
        command += ["--limit", ",".join(host.name for host in hosts)] if hosts else []
        command += [self._simulated(playbook) if playbook else self._playbook(tasks)]
        start = time.monotonic()
        done = subprocess.run(command, capture_output=True, text=True, timeout=TIME_LIMIT, check=False, cwd=self.folder,
                              env=self.environment(FLEET_RESULTS=str(results)))
        seconds = time.monotonic() - start
        found = {host.name: {} for host in self.hosts}
        for line in map(json.loads, results.read_text().splitlines()):
            found[line["host"]][line["task"]] = line["result"]
        return Play(done.returncode, done.stdout + done.stderr, seconds, found)

    def environment(self, **more):
        return ansible_environment(self.folder, self._collections, **more)

    def _inventory(self):
        path = self.folder / "inventory.json"
        common = {
            "ansible_connection": "local",
            "ansible_python_interpreter": str(TESTS / "python_with_ansible"),
            "fleet_tavrohost": str(self._program),  # The collection's own playbooks take it from there.
        }
        hosts = {host.name: {**common, **host.variables()} for host in self.hosts}
        path.write_text(json.dumps({"all": {"hosts": hosts}}))
        return str(path)

    def _playbook(self, tasks):
        return self._write_playbook([self._with_program({
            "hosts": "all",
            "gather_facts": False,
            "tasks": [{"name": name, "ignore_errors": True, **task} for name, task in tasks.items()],
        })])

    def _simulated(self, playbook):
        # It finds its tasks beside itself.
        tasks = self.folder / "tasks"
        if not tasks.exists():
            tasks.symlink_to(COLLECTION / "playbooks" / "tasks")
        if isinstance(playbook, str):
            return self._write_playbook(yaml.safe_load((COLLECTION / "playbooks" / playbook).read_text()))
        return self._write_playbook([self._with_program(play) for play in playbook])

    def _with_program(self, play):
        """The play, with the program among its defaults."""
        defaults = play.get("module_defaults", {})
        options = {"tavrohost": str(self._program), **defaults.get("group/tavro.fleet.all", {})}
        return {**play, "module_defaults": {**defaults, "group/tavro.fleet.all": options}}

    def _write_playbook(self, plays):
        path = self.folder / f"playbook-{self._plays}.json"
        path.write_text(json.dumps([{**play, "environment": "{{ simulated }}"} for play in plays]))
        return str(path)


def install_collection(folder):
    """Builds the collection and installs it below the folder, as its users do."""
    environment = ansible_environment(folder, folder)
    galaxy = ["/usr/bin/ansible-galaxy", "collection"]

    def run(*command):
        subprocess.run([*galaxy, *command], check=True, capture_output=True, env=environment)

    run("build", str(COLLECTION), "--output-path", str(folder / "built"))
    archive, = (folder / "built").iterdir()
    run("install", "--offline", str(archive), "--collections-path", str(folder))


def watching_tavrohost(folder, secrets):
    """A tavrohost that notes its arguments, who can read the files and folders that are private to the module, and
    which of the secrets stand in them: its path, and that of the notes."""
    program, notes = folder / "watching", folder / "notes"
    program.write_text(f"""#!/bin/sh
{{ echo "arguments $*"
  find .. -type f -printf 'file %m %f\\n' -o -type d -printf 'folder %m %f\\n'
  grep -rhoE '{"|".join(secrets)}' .. | sed 's/^/secret /'
}} >> {notes}
exec {TAVROHOST} "$@"
""")
    program.chmod(0o755)
    return program, notes


def noted(notes, kind):
    """What a watching tavrohost has noted: of "arguments" and "secret" the texts, of "file" and "folder" the modes and
    names."""
    return [line.partition(" ")[2] for line in notes.read_text().splitlines() if line.startswith(f"{kind} ")]


def ansible_environment(folder, collections, **more):
    """The environment of Ansible's programs: nothing of the user's own settings, and nothing outside the folder."""
    home = folder / "home"
    home.mkdir(exist_ok=True)
    return {
        "PATH": "/usr/bin:/bin",
        "LC_ALL": "C.UTF-8",
        "HOME": str(home),
        "ANSIBLE_HOME": str(home / "ansible"),
        "ANSIBLE_COLLECTIONS_PATH": str(collections),
        "ANSIBLE_CALLBACK_PLUGINS": str(TESTS / "callback_plugins"),
        "ANSIBLE_CALLBACKS_ENABLED": "results",
        "ANSIBLE_NOCOLOR": "1",
        "ANSIBLE_PIPELINING": "1",  # Fewer processes for each task.
        **more,
    }
