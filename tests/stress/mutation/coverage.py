"""Which tests execute which lines, measured once on a build of its own."""

import bisect
import json
import os
import pathlib
import re
import subprocess
import time

ROW = re.compile(r"0x([0-9a-f]{16})\s+(\d+)\s+\d+\s+(\d+) .*")
ENTRY = re.compile(r'\s*name: "(.*)"')


class Marks:
    """What coverage_runtime.cpp has written: for each program or library its blocks, and which of them were executed."""

    def __init__(self, folder, tree):
        self.folder = pathlib.Path(folder)
        self.tree = pathlib.Path(tree)
        self.lines = {}  # by the number of a program's blocks: for each of them the lines as (file, line)

    def clear(self):
        for path in self.folder.glob("*.marks"):
            with open(path, "r+b") as file:
                file.write(bytes(path.stat().st_size))

    def executed(self):
        """The lines that were executed since they were cleared, and the number of blocks."""
        lines, count = set(), 0
        for path in self.folder.glob("*.marks"):
            marks = path.read_bytes()
            if not any(marks):
                continue
            blocks = self.lines_of(path.stem)
            for number in executed_blocks(marks):
                count += 1
                lines.update(blocks[number])
        return lines, count

    def lines_of(self, name):
        """A copy, or a program that was started by another name, is known by its number of blocks."""
        count = name.rpartition("-")[2]
        if count not in self.lines:
            for path in sorted(self.folder.glob(f"*-{count}.blocks")):
                program, *addresses = path.read_text(encoding="utf-8").splitlines()
                if program.startswith(f"{self.tree}/"):
                    self.lines[count] = lines_of_blocks(program, [int(each, 16) for each in addresses], self.tree)
                    break
            else:
                self.lines[count] = [set()] * int(count)  # of no file of the build
        return self.lines[count]

    def known_lines(self):
        """All lines with code, of the programs and libraries that were run."""
        return {line for blocks in self.lines.values() for lines in blocks for line in lines}


def executed_blocks(marks):
    number = marks.find(1)
    while number >= 0:
        yield number
        number = marks.find(1, number + 1)


def lines_of_blocks(program, addresses, tree):
    """For each block the set of (file relative to the tree, line) that its instructions stand for."""
    order = sorted(range(len(addresses)), key=addresses.__getitem__)
    starts = [addresses[number] for number in order]
    lines = [set() for _ in addresses]
    for start, end, where in line_rows(program, tree):
        first = max(bisect.bisect_right(starts, start) - 1, 0)
        for i in range(first, bisect.bisect_left(starts, end)):
            if starts[i] < end and (i + 1 == len(starts) or start < starts[i + 1]):
                lines[order[i]].add(where)
    return lines


def line_rows(program, tree):
    """(start, end, (file, line)) for each row of the program's table of lines, of files in the tree."""
    folder = str(tree) + "/"
    text = subprocess.Popen(["llvm-dwarfdump-14", "--debug-line", program], stdout=subprocess.PIPE, text=True)
    directories, names, files, previous, name = [], [], [], None, ""
    for line in text.stdout:
        if line.startswith("0x"):
            row = ROW.match(line)
            if not files:
                files = [file_in(folder, directories, *entry) for entry in names]
            address = int(row[1], 16)
            if previous is not None and previous[1] is not None and previous[0] < address:
                yield previous[0], address, previous[1]
            number = int(row[3])
            where = files[number] and (files[number], int(row[2])) if number < len(files) else None
            previous = None if "end_sequence" in line else (address, where if row[2] != "0" else None)
        elif line.startswith("include_directories"):
            directories.append(line.split('"')[1])
        elif ENTRY.match(line):
            name = ENTRY.match(line)[1]
        elif "dir_index:" in line:
            names.append((name, int(line.split(":")[1])))
        elif line.startswith("debug_line["):
            directories, names, files, previous = [], [], [], None
    text.wait()


def file_in(folder, directories, name, directory):
    """A file of the table relative to the tree; None for one of another place, or of the build."""
    place = directories[directory] if directory < len(directories) else ""
    path = name if name.startswith("/") else f"{place}/{name}"
    if not path.startswith("/"):
        path = f"{directories[0]}/{path}"
    path = os.path.normpath(path)
    if not path.startswith(folder) or path.startswith(folder + "build/"):
        return None
    return path[len(folder):]


class Coverage:
    """The tests by number, what each takes, and for each line those that execute it (as bits)."""

    def __init__(self):
        self.tests = []  # {"suite", "name", "seconds", "blocks"}
        self.lines = {}  # file -> line -> bits of the tests

    def add(self, suite, name, seconds, lines, blocks):
        bit = 1 << len(self.tests)
        self.tests.append({"suite": suite, "name": name, "seconds": round(seconds, 3), "blocks": blocks})
        for file, line in lines:
            of_file = self.lines.setdefault(file, {})
            of_file[line] = of_file.get(line, 0) | bit

    def tests_of(self, file, first, last):
        """(how it is known, bits) for the lines of a mutant: those that execute the "line", or, where clang names no
        instruction for it, the "file"; "anywhere" for all tests where the file has none at all."""
        of_file = self.lines.get(file)
        if not of_file:
            return "anywhere", (1 << len(self.tests)) - 1
        found = [of_file[line] for line in range(first, last + 1) if line in of_file]
        how = "line" if found else "file"
        bits = 0
        for each in found or of_file.values():
            bits |= each
        return how, bits

    def chosen(self, bits):
        """The tests of these bits, those that run the least code first."""
        return sorted((test for i, test in enumerate(self.tests) if bits >> i & 1), key=lambda test: test["blocks"])

    def save(self, path):
        lines = {file: {line: hex(bits) for line, bits in of_file.items()} for file, of_file in self.lines.items()}
        path.write_text(json.dumps({"tests": self.tests, "lines": lines}), encoding="utf-8")

    @staticmethod
    def load(path):
        kept, loaded = Coverage(), json.loads(path.read_text(encoding="utf-8"))
        kept.tests = loaded["tests"]
        kept.lines = {file: {int(line): int(bits, 16) for line, bits in of_file.items()}
                      for file, of_file in loaded["lines"].items()}
        return kept


def measure(marks, units, served, say):
    """Runs every test by itself. `units` is UnitTests, `served` the suites by name."""
    coverage = Coverage()

    def add(suite, name, run):
        marks.clear()
        start = time.monotonic()
        failed = run()
        if failed:
            say(f"left out, since it fails here: {name}")
            return
        lines, blocks = marks.executed()
        coverage.add(suite, name, time.monotonic() - start, lines, blocks)

    for program in units.programs():
        say(f"measuring {program.name}")
        for name in units.names(program):
            add(str(program.relative_to(units.build)), name, lambda: subprocess.run(
                [program, f"--gtest_filter={name}"], cwd=units.folder, capture_output=True, check=False).returncode)
    for suite, tests in served.items():
        tests.start()
        say(f"measuring {len(tests.names)} tests of {suite}")
        for name in tests.names:
            add(suite, name, lambda: tests.run([name], lambda _: 60))
        tests.stop()
    for file, line in marks.known_lines():
        coverage.lines.setdefault(file, {}).setdefault(line, 0)
    return coverage
