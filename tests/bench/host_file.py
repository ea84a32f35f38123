"""Measures what a change on a large host file takes, beside a program that only reads the same JSON and writes it
again, and what each thousand of a row of changes takes. The argument is the folder of tavrocli with the simulator
beside it: python3 tests/bench/host_file.py build/native/bin"""

import json
import os
import pathlib
import resource
import subprocess
import sys
import tempfile

MEGABYTE = 1_000_000
SIZES = (3, 6, 12, 25)  # megabytes as Python writes them; the simulator, which indents, refuses more than 64 MiB
RUNS = 3
ROW, PART = 10_000, 1_000  # changes in a row, and those that are measured together
MAC = "02-00-5E-10-00-02"
PORTAL = {"address": "198.51.100.20", "port": "3260"}
REWRITE = "import json, sys; json.dump(json.load(open(sys.argv[1])), open(sys.argv[1] + '.copy', 'w'))"
DEFAULT_HOST = pathlib.Path(__file__).resolve().parents[2] / "simulator" / "default_host.json"


def storage_of(document):
    return next(function for adapter in document["adapters"] for port in adapter["ports"]
                for function in port["functions"] if function["mac"] == MAC and "iscsi" in function)["iscsi"]


def write_host(path, size):
    """A host file of about so many bytes, of which one port's targets are nearly all."""
    document = json.loads(DEFAULT_HOST.read_text(encoding="utf-8"))

    def target(number):
        return {"name": f"iqn.2015-01.com.example:storage.{number:07}", "portal": PORTAL, "discovery": "SendTargets"}

    count = max(0, size - len(json.dumps(document))) // (len(json.dumps(target(0))) + 2)
    storage_of(document)["storage"] = {"portals": [PORTAL], "targets": [target(number) for number in range(count)]}
    path.write_text(json.dumps(document), encoding="utf-8")


def set_address(programs, path, number):
    """Each number stands for another address."""
    address = f"10.1.{number // 200}.{number % 200 + 10}"
    command = [str(programs / "tavrocli"), "-iscsi", MAC, "-modifytcpip", "-static", "0", address, "255.255.0.0", "0.0.0.0"]
    return command, {"TAVROSIM_HOST": str(path), "LC_ALL": "C.UTF-8"}, address


def processor_seconds(command, environment, folder):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(command, env=environment, cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, check=True)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def change(programs, path, number):
    """Does it, sees that it was done in a small file, and returns the seconds of processor time."""
    command, environment, address = set_address(programs, path, number)
    seconds = processor_seconds(command, environment, path.parent)
    if path.stat().st_size < MEGABYTE:
        told = storage_of(json.loads(path.read_text(encoding="utf-8")))["tcpIp"]["address"]
        if told != address:
            sys.exit(f"the address is {told}, not {address}")
    return seconds


def compare_sizes(programs, folder, sizes, runs):
    print(f"{'host file':>10} {'change':>10} {'per MB':>10} {'Python':>10} {'ratio':>6}   milliseconds of processor time")
    path = folder / "host.json"
    for size in sizes:
        write_host(path, size * MEGABYTE)
        times = [(change(programs, path, number),
                  processor_seconds(["/usr/bin/python3", "-c", REWRITE, str(path)], dict(os.environ), folder))
                 for number in range(runs)]
        own, reference = (1000 * min(column) for column in zip(*times))
        megabytes = path.stat().st_size / MEGABYTE
        if f'"{set_address(programs, path, runs - 1)[2]}"' not in path.read_text(encoding="utf-8"):
            sys.exit("the change was not done")
        print(f"{megabytes:7.1f} MB {own:10.1f} {own / megabytes:10.2f} {reference:10.1f} {own / reference:6.2f}", flush=True)


def measure_row(programs, folder, row, part):
    print(f"{'changes':>16} {'each':>10}   milliseconds of processor time")
    path = folder / "small.json"
    write_host(path, 0)
    for first in range(0, row, part):
        seconds = sum(change(programs, path, number) for number in range(first, first + part))
        print(f"{first + 1:7} to {first + part:5} {1000 * seconds / part:10.2f}", flush=True)


def main():
    programs = pathlib.Path(sys.argv[1]).resolve()
    short = "--short" in sys.argv
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        compare_sizes(programs, folder, (1, 2) if short else SIZES, 1 if short else RUNS)
        measure_row(programs, folder, *((4, 2) if short else (ROW, PART)))


main()
