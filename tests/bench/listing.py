"""Measures the program beside programs that only do what it cannot do without. The argument is the folder of them
all; all programs of a row must write the same bytes. With "--short" behind it this is only tried once, with short
lists.

The start and end: instructions of "-showadapter", counted by callgrind, beside a program that loads the same library
and writes the same bytes. Many lines: processor time that many portals and targets take to a pipe, beside a program
that writes the same bytes in blocks of 64 KiB, of entries that it has the same library tell ("asking"), or of its own
("plain")."""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

COUNTS = (50_000, 100_000, 200_000)
RUNS = 9
LOCALES = ("C", "C.UTF-8")  # what a locale costs is the system's, but the program pays for it
MAC = "02-00-5E-10-00-02"
READ_SIZE = 1 << 20


def environment(locale, count=0):
    return {"TAVRO_BENCH_COUNT": str(count), "LC_ALL": locale}


def check_equal(texts, commands, least_lines):
    if len(set(texts)) > 1 or texts[0].count(b"\n") < least_lines:
        sys.exit(f"the programs wrote different lines: {commands}")


def count_instructions(command, locale):
    """The instructions of one run, and its output."""
    with tempfile.TemporaryDirectory() as folder:
        # The program opens its log in the current directory; so a run leaves nothing behind.
        result = subprocess.run(
            ["valgrind", "--tool=callgrind", "--callgrind-out-file=counts", *command],
            cwd=folder, env=environment(locale), stdin=subprocess.DEVNULL, capture_output=True, check=True)
    found = re.search(rb"I\s+refs:\s+([\d,]+)", result.stderr)
    return int(found[1].replace(b",", b"")), result.stdout


def compare_starts(programs):
    print(f"{'start to exit':16} {'program':>12} {'bare':>12} {'ratio':>6}   instructions")
    commands = [[str(programs / "tavrocli"), "-showadapter"], [str(programs / "bare_listing")]]
    for locale in LOCALES:
        counts, texts = zip(*(count_instructions(command, locale) for command in commands))
        check_equal(texts, commands, 10)
        print(f"{locale:16} {counts[0]:12,} {counts[1]:12,} {counts[0] / counts[1]:6.2f}")


def run_once(command, count, folder):
    """The seconds of processor time of one run, and what it wrote to a pipe."""
    reading, writing = os.pipe()
    process = subprocess.Popen(command, cwd=folder, env=environment("C.UTF-8", count), stdin=subprocess.DEVNULL,
                               stdout=writing)
    os.close(writing)
    with open(reading, "rb", buffering=0) as stream:
        text = b"".join(iter(lambda: stream.read(READ_SIZE), b""))
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{command} ended with {process.returncode}")
    return usage.ru_utime + usage.ru_stime, text


def compare_listings(programs, counts, runs):
    """The best of several runs of each program, taken in turn so that all meet the same conditions."""
    print(f"{'list':8} {'entries':>7} {'program':>12} {'asking':>12} {'ratio':>6} {'plain':>12} {'ratio':>6}"
          "   processor time")
    for what, keyword in (("portals", "-portal"), ("targets", "-target")):
        commands = [
            [str(programs / "tavrocli"), "-iscsi", MAC, keyword, "-listall"],
            [str(programs / "plain_lines"), what, "ask"],
            [str(programs / "plain_lines"), what],
        ]
        with tempfile.TemporaryDirectory() as folder:
            for count in counts:
                best = [float("inf")] * len(commands)
                for _ in range(runs):
                    times, texts = zip(*(run_once(command, count, folder) for command in commands))
                    check_equal(texts, commands, count)
                    best = list(map(min, best, times))
                columns = "".join(f" {time * 1000:9.1f} ms {best[0] / time:6.2f}" for time in best[1:])
                print(f"{what:8} {count:7} {best[0] * 1000:9.1f} ms{columns}")


def main():
    programs = pathlib.Path(sys.argv[1]).resolve()
    is_short = "--short" in sys.argv
    if shutil.which("valgrind"):
        compare_starts(programs)
    else:
        print("start to exit: valgrind is not here, so nothing is counted")
    compare_listings(programs, (1_000,) if is_short else COUNTS, 1 if is_short else RUNS)


if __name__ == "__main__":
    main()
