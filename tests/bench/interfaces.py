"""Measures what the commands take on a host with many interfaces, beside `ip` and `ethtool` asked for the same. The
argument is the folder of tavrocli with the Linux library beside it. It makes interfaces, and so runs only in a network
namespace of its own: tests/linux/in_namespace python3 tests/bench/interfaces.py build/native/linux"""

import os
import pathlib
import subprocess
import sys
import time

COUNTS = (250, 500, 1_000)
RUNS = 7


def is_own_network():
    outer = os.environ.get("TAVRO_OUTER_NETWORK", "")
    return outer != "" and outer != str(os.stat("/proc/self/ns/net").st_ino)


def seconds(command):
    start = time.perf_counter()
    subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, check=True)
    return time.perf_counter() - start


def best(commands, runs):
    """The best of several runs of each command, taken in turn so that all meet the same conditions."""
    return [min(times) for times in zip(*([seconds(command) for command in commands] for _ in range(runs)))]


def add_interfaces(first, last):
    """Pairs of interfaces that are up, each with an address; their numbers are from `first` to `last`, without that."""
    lines = []
    for number in range(first, last, 2):
        one, other = f"bench{number}", f"bench{number + 1}"
        lines.append(f"link add {one} type veth peer name {other}")
        lines += [f"link set {name} up" for name in (one, other)]
        lines.append(f"addr add 10.{number >> 8}.{number & 255}.1/30 dev {one}")
    subprocess.run(["ip", "-batch", "-"], input="\n".join(lines), text=True, check=True)


def mac_of(name):
    return pathlib.Path(f"/sys/class/net/{name}/address").read_text(encoding="ascii").strip().upper().replace(":", "-")


def main():
    if not is_own_network():
        sys.exit("run this with tests/linux/in_namespace: it makes network interfaces")
    program = str(pathlib.Path(sys.argv[1]) / "tavrocli")
    counts, runs = ((20, 40), 1) if "--short" in sys.argv else (COUNTS, RUNS)
    print(f"{'command':14} {'interfaces':>10} {'tavrocli':>10} {'reference':>10}  reference")
    made = 0
    for count in counts:
        add_interfaces(made, count)
        made = count
        name = f"bench{count - 2}"
        mac = mac_of(name)
        for command, reference in (
            (["-showadapter"], ["ip", "-j", "link"]),
            (["-ethernet", mac, "-portinfo"], ["ethtool", name]),
            (["-ethernet", mac, "-gettcpip"], ["ip", "-j", "addr", "show", "dev", name]),
        ):
            own, other = best([[program, *command], reference], runs)
            print(f"{command[-1]:14} {count:10} {own * 1000:7.1f} ms {other * 1000:7.1f} ms  {' '.join(reference[:3])}")


if __name__ == "__main__":
    main()
