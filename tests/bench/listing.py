"""Measures how long the program takes to list many portals and targets, beside a program that only writes the
same lines. The argument is the folder of both; both must write the same bytes. With "--short" behind it this is
only tried once, with short lists."""

import pathlib
import subprocess
import sys
import tempfile
import time

COUNTS = (50_000, 100_000, 200_000)
RUNS = 5
MAC = "02-00-5E-10-00-02"


def run_once(command, count, output):
    """Seconds of one run."""
    environment = {"TAVRO_BENCH_COUNT": str(count), "LC_ALL": "C.UTF-8"}
    with open(output, "wb") as stream:
        start = time.perf_counter()
        subprocess.run(command, env=environment, stdin=subprocess.DEVNULL, stdout=stream, check=True)
        return time.perf_counter() - start


def measure(commands, count, runs, folder):
    """The best of several runs of each command, taken in turn so that both meet the same conditions."""
    outputs = [folder / str(number) for number in range(len(commands))]
    results = [[run_once(command, count, output) for command, output in zip(commands, outputs)]
               for _ in range(runs)]
    texts = [output.read_bytes() for output in outputs]
    if texts[0] != texts[1] or texts[0].count(b"\n") < count:
        sys.exit(f"the programs wrote different lines: {commands}")
    return [min(times) for times in zip(*results)]


def main():
    programs = pathlib.Path(sys.argv[1])
    counts, runs = ((1_000,), 1) if "--short" in sys.argv else (COUNTS, RUNS)
    print(f"{'list':8} {'entries':>8} {'program':>10} {'plain':>10} {'ratio':>6}")
    for what, keyword in (("portals", "-portal"), ("targets", "-target")):
        commands = [
            [str(programs / "tavrocli"), "-iscsi", MAC, keyword, "-listall"],
            [str(programs / "plain_lines"), what],
        ]
        with tempfile.TemporaryDirectory() as folder:
            for count in counts:
                program, plain = measure(commands, count, runs, pathlib.Path(folder))
                print(f"{what:8} {count:8} {program * 1000:7.0f} ms {plain * 1000:7.0f} ms"
                      f" {program / plain:6.2f}")


if __name__ == "__main__":
    main()
