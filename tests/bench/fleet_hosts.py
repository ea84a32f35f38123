"""Measures what modules of the Ansible collection take on many simulated hosts, beside Ansible's own `command: true`.
Nothing is asserted; run it on a machine that is not busy: python3 tests/bench/fleet_hosts.py"""

import os
import pathlib
import platform
import re
import resource
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "fleet"))

from fleet import Fleet, TAVROHOST, install_collection  # noqa: E402  # pylint: disable=wrong-import-position

COUNTS = (1, 10, 50)
RUNS = 3
FORKS = 5  # as many as Ansible takes unless it is told otherwise
ADDRESS_OPTIONS = {"mac": "02-00-5E-10-00-02", "kind": "iscsi"}


def address(last):
    return {"tavro.fleet.tcpip": {**ADDRESS_OPTIONS, "address": f"192.0.2.{last}"}}


def measures(run):
    """What is measured, in turn so that all meet the same conditions; each run has its own address to change to."""
    return {
        "command: true": {"ansible.builtin.command": {"cmd": "true"}},
        "host_info": {"tavro.fleet.host_info": {}},
        "tcpip, --check": address(100 + run),
        "tcpip, changed": address(100 + run),
        "tcpip, unchanged": address(100 + run),
    }


def processor_seconds():
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def busy_seconds():
    """Processor seconds of the whole machine since it was started: those of users, of the system and of interrupts."""
    _, user, nice, system, _, _, *interrupts = pathlib.Path("/proc/stat").read_text(encoding="ascii").split()[:8]
    return sum(map(int, (user, nice, system, *interrupts))) / os.sysconf("SC_CLK_TCK")


def play(fleet, name, task):
    """Wall-clock and processor seconds of a play with one task, and how many cores others kept busy meanwhile; ends the
    program when the task did not do as told."""
    before, busy = processor_seconds(), busy_seconds()
    done = fleet.play({name: task}, *(["--check"] if name.endswith("--check") else []), forks=FORKS)
    used = processor_seconds() - before
    others = max(busy_seconds() - busy - used, 0) / done.seconds
    changes = name not in ("host_info", "tcpip, unchanged")
    if any(result["failed"] or result["changed"] != changes for result in done.of_task(name).values()):
        sys.exit(f"{name}: {done.output}")
    return done.seconds, used, others


def main():
    counts, runs = ((1, 2), 1) if "--short" in sys.argv else (COUNTS, RUNS)
    told = subprocess.run(["/usr/bin/ansible-playbook", "--version"], capture_output=True, text=True, check=True).stdout
    version = re.search(r"core ([\d.]+)", told).group(1)
    print(f"{len(os.sched_getaffinity(0))} cores, ansible-core {version}, "
          f"Python {platform.python_version()}, forks {FORKS}, best of {runs}")
    print(f"{'':18} {'hosts':>5} {'seconds':>9} {'per host':>9} {'of the processor, per host':>27} "
          f"{'others, cores':>14}")
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        install_collection(folder)
        for count in counts:
            (folder / str(count)).mkdir()
            fleet = Fleet(folder / str(count), folder, count, program=TAVROHOST)
            for host in fleet.hosts:
                host.more["ansible_python_interpreter"] = "/usr/bin/python3"
            taken = {}
            for run in range(runs):
                for name, task in measures(run).items():
                    taken.setdefault(name, []).append(play(fleet, name, task))
            for name, times in taken.items():
                seconds, used, others = min(times)
                print(f"{name:18} {count:5} {seconds:9.2f} {seconds / count:9.3f} {used / count:27.3f} "
                      f"{others:14.2f}", flush=True)


if __name__ == "__main__":
    main()
