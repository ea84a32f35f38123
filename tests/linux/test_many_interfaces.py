"""A host with a thousand interfaces, and the benchmark that measures it."""

import subprocess
import sys

from machine import ROOT

COUNT = 1_000


def test_a_thousand_interfaces_are_listed(machine):
    lines = [f"link add many{number} type veth peer name many{number + 1}" for number in range(0, COUNT, 2)]
    subprocess.run(["ip", "-batch", "-"], input="\n".join(lines), text=True, check=True)
    screen = machine.cli("-showadapter")
    listed = {line.split(":", 1)[1].strip() for line in screen.splitlines() if line.startswith("\tAdapter ")}
    assert listed == {f"veth many{number}" for number in range(COUNT)}
    for link in machine.ip("link"):
        if link["ifname"] != "lo":
            assert screen.count(f": {link['address'].upper().replace(':', '-')}\n") == 4, link["ifname"]


def test_the_benchmark_runs(machine):
    bench = [sys.executable, ROOT / "tests/bench/interfaces.py", machine.programs, "--short"]
    result = subprocess.run(bench, capture_output=True, text=True, check=False, timeout=60)
    assert result.returncode == 0, result.stderr
    assert len(result.stdout.splitlines()) == 7
