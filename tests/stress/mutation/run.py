"""The mutation run: changes the sources in small ways, one at a time, and finds those changes that no test notices."""

import argparse
import dataclasses
import fcntl
import hashlib
import json
import pathlib
import random
import re
import sys
import time

import yaml

import build
import coverage
import makers
import suites

ROOTS = ("src", "library", "simulator", "twin", "linux", "completions")
KNOWN = build.HERE / "survivors.yaml"
HIGHEST_USERS = 1  # objects made with a header; changing one that more are made with takes minutes
LINK_SECONDS = 300
OUTCOMES = ("invalid", "equivalent", "same", "killed", "survived", "accepted")
TRIES = 400  # lines that are looked at for one mutant, before the folder is done


def arguments():
    parser = argparse.ArgumentParser(prog="scripts/stress mutate", description=__doc__)
    parser.add_argument("--seed", type=int, help="what the choice of mutants follows from (default: a new one)")
    parser.add_argument("--count", type=int, default=8, help="mutants of each folder that change an object file (8)")
    parser.add_argument("--folder", action="append", help="only this folder, as src/cli; can be given several times")
    parser.add_argument("--minutes", type=float, default=1e9, help="begin no further mutant after that time")
    parser.add_argument("--measure", action="store_true", help="measure anew which tests execute which lines")
    return parser.parse_args()


def say(text):
    print(f"{time.strftime('%H:%M:%S')} {text}", flush=True)


class Folder:
    """The mutants of one folder, in the order of the seed."""

    def __init__(self, name, files, tree, seed):
        self.name = name
        self.tree = tree
        self.chance = random.Random(f"{seed} {name}")
        self.lines = [(file, number) for file in files for number in lines_of_code(tree.place / file)]
        self.mutants = {}
        self.taken = set()

    def next(self):
        """(file, mutant), or None when no more is found. Each line of code is as likely as any other."""
        for _ in range(TRIES):
            file, line = self.chance.choice(self.lines)
            if file not in self.mutants:
                self.mutants[file] = self.made_of(file)
            of_line = [each for each in self.mutants[file] if each.line == line]
            if of_line:
                mutant = self.chance.choice(of_line)
                if (file, mutant) not in self.taken:
                    self.taken.add((file, mutant))
                    return file, mutant
        return None

    def made_of(self, file):
        """Kept from run to run, since clang takes seconds for a source."""
        path = self.tree.place / file
        source = path.read_bytes()
        content = hashlib.sha256(source + pathlib.Path(makers.__file__).read_bytes()).hexdigest()
        kept = self.tree.place.parent / "mutants" / f"{file.replace('/', '-')}-{content[:16]}.json"
        if kept.exists():
            return [makers.Mutant(**{**each, "replacement": each["replacement"].encode()})
                    for each in json.loads(kept.read_text(encoding="utf-8"))]
        try:
            made = makers.mutants_of(str(path), source, self.tree.arguments_for(file))
        except makers.Unreadable as error:
            say(f"{file} is left out: {error}")
            return []
        kept.parent.mkdir(exist_ok=True)
        kept.write_text(json.dumps([{**dataclasses.asdict(each), "replacement": each.replacement.decode()}
                                    for each in made]), encoding="utf-8")
        return made


def lines_of_code(path):
    """The numbers of the lines that are neither empty, comments, includes nor braces alone."""
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        if not re.fullmatch(r"[\s{};]*|\s*//.*|#.*|(using|namespace) .*", line):
            yield number


def folders_of(tree, seed, wanted):
    """(folders, headers that too many sources use)."""
    files, left_out = {}, []
    for path in sorted(path for root in ROOTS for path in (tree.place / root).rglob("*") if path.suffix in (".cpp", ".h")):
        file = str(path.relative_to(tree.place))
        sources = tree.sources_of(file)
        if sources is None or len(sources) > HIGHEST_USERS:
            left_out.append(file)
        elif sources:  # none has one of the other platform
            files.setdefault("/".join(file.split("/")[:-1][:2]), []).append(file)
    unknown = set(wanted or ()) - set(files)
    if unknown:
        sys.exit(f"there is no such folder: {', '.join(sorted(unknown))}")
    return [Folder(name, of_folder, tree, seed) for name, of_folder in files.items()
            if not wanted or name in wanted], left_out


class Survivors:
    """Those that are known, with their reasons, so that they are not tried again."""

    def __init__(self, path):
        entries = yaml.safe_load(path.read_text(encoding="utf-8")) or []
        self.known = {(entry["file"], entry["line"], entry["change"]): entry for entry in entries}

    def find(self, file, line, change):
        """"same" (the program does the same) or "accepted"; None for what is not known."""
        entry = self.known.get((file, line, change))
        return entry and ("same" if entry.get("same") else "accepted")


def line_text(source, mutant):
    return source.split(b"\n")[mutant.line - 1].decode().strip()


def change_text(source, mutant):
    """What became of what, each on one line."""
    before, after = (" ".join(text.decode().split()) for text in (source[mutant.start:mutant.end], mutant.replacement))
    return f"{before} -> {after}"


class Run:
    """Tries mutants on a build whose tests are known."""

    def __init__(self, tree, folder, tests_measured, units, served):
        self.tree = tree
        self.folder = folder
        self.coverage = tests_measured
        self.units = units
        self.served = served
        self.seconds = {test["name"]: test["seconds"] for test in tests_measured.tests}

    def outcome(self, file, source, mutant):
        """What became of a mutant, as a dictionary with "result": invalid, equivalent, killed or survived."""
        self.tree.write(file, mutant.applied_to(source))
        before = {}
        try:
            objects = self.tree.compile(file)
            if objects is None:
                return {"result": "invalid"}
            if not objects:
                return {"result": "equivalent"}
            how, bits = self.coverage.tests_of(file, mutant.line, mutant.last_line)
            tests = self.coverage.chosen(bits)
            if not tests:
                return {"result": "survived", "by": "no test executes it"}
            before = self.tree.exchange(objects)
            found = self.first_failure(tests)
            return {"result": "killed" if found else "survived", "by": found or f"{len(tests)} tests of the {how}"}
        finally:
            self.tree.exchange(before)
            # Last, so that an object that was left behind would be compiled anew.
            self.tree.write(file, source)

    def first_failure(self, tests, unchanged_too=False):
        of_suite = {}
        for test in tests:
            of_suite.setdefault(test["suite"], []).append(test["name"])
        programs = [suite for suite in of_suite if suite not in self.served]
        before = self.times_of(programs)
        if programs:
            failure = self.link(programs)
            if failure:
                return failure
        after = self.times_of(programs)
        for suite in programs:
            if before[suite] == after[suite] and not unchanged_too:
                continue  # nothing of the mutant is in it
            found = self.units.run(self.tree.build / suite, of_suite[suite], self.seconds_of)
            if found:
                return found
        if any(suite in self.served for suite in of_suite):
            failure = self.link(build.TARGETS)
            if failure:
                return failure
        for suite, served in self.served.items():
            names = of_suite.get(suite, [])
            while names:
                found = served.run(names, self.seconds_of)
                if found is None:
                    break
                # A test that fails now and then is no proof.
                if found.endswith("(no end)") or served.run([found], self.seconds_of):
                    return found
                names = names[names.index(found) + 1:]
        return None

    def times_of(self, programs):
        """When each was linked; None where there is none."""
        paths = {program: self.tree.build / program for program in programs}
        return {program: path.stat().st_mtime_ns if path.exists() else None for program, path in paths.items()}

    def doubt(self, kept):
        """Runs the tests that caught a mutant once more, on the sources as they are. What was caught by one that fails is
        not known, and taken out of the results."""
        results = [json.loads(line) for line in kept.read_text(encoding="utf-8").splitlines()]
        catching = {each["by"].removesuffix(" (no end)").removesuffix(" (a crash)")
                    for each in results if each["result"] == "killed"}
        failing = {test["name"] for test in self.coverage.tests
                   if test["name"] in catching and self.first_failure([test], unchanged_too=True)}
        for name in sorted(failing):
            say(f"fails without any mutant: {name}")
        with open(kept, "w", encoding="utf-8") as written:
            for each in results:
                if each["result"] != "killed" or not each["by"].startswith(tuple(failing) or ("\n",)):
                    written.write(json.dumps(each, ensure_ascii=False) + "\n")

    def seconds_of(self, name):
        return self.seconds.get(name, 0)

    def link(self, targets):
        """Links, and makes what programs of the build make. A failure counts, since all compiles."""
        try:
            status, _ = suites.run_sandboxed(self.folder, ["ninja", "-C", self.tree.build, *targets], LINK_SECONDS,
                                             self.tree.build)
        except suites.Stuck:
            return "the build (no end)"
        return "the build" if status != 0 else None


def table(results, known, left_out):
    """Text with the figures of each folder. What is known by now is told as that, whenever it was found."""
    rows = {}
    for each in results:
        row = rows.setdefault(each["folder"], dict.fromkeys(OUTCOMES, 0))
        row[result_of(each, known)] += 1
    total = {outcome: sum(row[outcome] for row in rows.values()) for outcome in OUTCOMES}
    return "\n".join([
        "| Folder | Change what it does | Caught | Not caught, with a reason | Not caught | Do the same | Do not compile |",
        "|---|---|---|---|---|---|---|",
        *(table_row(f"`{name}/`", row) for name, row in sorted(rows.items())), table_row("all", total), "",
        f"Left out, since many sources use them: {left_out} headers."])


def result_of(told, known):
    if told["result"] not in ("survived", "same", "accepted"):
        return told["result"]
    return known.find(told["file"], told["text"], told["change"]) or "survived"


def table_row(name, row):
    changing = row["killed"] + row["survived"] + row["accepted"]
    caught = f"{row['killed']} ({100 * row['killed'] / changing:.0f} %)" if changing else "0"
    same = row["equivalent"] + row["same"]
    return f"| {name} | {changing} | {caught} | {row['accepted']} | {row['survived']} | {same} | {row['invalid']} |"


def served_suites(tree, folder):
    """The end-to-end tests, and those of the library for Linux hosts."""
    return {
        "end to end": suites.ServedTests(tree.place, folder, [], ["--platform=native", "--platform=sanitize", "tests/e2e"]),
        "linux host": suites.ServedTests(tree.place, folder, [tree.place / "tests/linux/in_namespace"],
                                         ["-k", "native", "--ignore=tests/linux/test_fleet.py", "tests/linux"]),
    }


def measured(folder, anew):
    kept = folder / "coverage.json"
    if anew or not kept.exists():
        marks = folder / "marks"
        tree = build.measured_tree(folder, marks)
        result = coverage.measure(coverage.Marks(marks, tree.place), suites.UnitTests(tree.build, folder),
                                  served_suites(tree, folder), say)
        result.save(kept)
    return coverage.Coverage.load(kept)


def main():
    options = arguments()
    folder = build.ROOT / "build" / "mutation"
    folder.mkdir(parents=True, exist_ok=True)
    with open(folder / "lock", "w", encoding="utf-8") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        run(options, folder)


def run(options, folder):
    end = time.monotonic() + 60 * options.minutes
    tests_measured = measured(folder, options.measure)
    tree = build.MutatedTree(folder / "tree")
    tree.prepare_for_mutants()
    seed = options.seed if options.seed is not None else random.SystemRandom().randrange(1 << 32)
    folders, left_out = folders_of(tree, seed, options.folder)
    known = Survivors(KNOWN)
    kept = folder / f"results-{seed}.jsonl"
    results = [json.loads(line) for line in kept.read_text(encoding="utf-8").splitlines()] if kept.exists() else []
    done = {(each["file"], each["start"], each["end"], each["after"]): each for each in results}
    units, served = suites.UnitTests(tree.build, folder), served_suites(tree, folder)
    tries = Run(tree, folder, tests_measured, units, served)
    say(f"--seed={seed}, {len(folders)} folders, {len(tests_measured.tests)} tests")
    with open(kept, "a", encoding="utf-8") as written:
        for _ in range(options.count):
            for each in folders:
                while time.monotonic() < end:
                    chosen = each.next()
                    if chosen is None:
                        break
                    result = one(each.name, *chosen, tree, known, done, tries, written)
                    if result["result"] in ("killed", "survived", "accepted"):
                        break
    tries.doubt(kept)
    for tests in tries.served.values():
        tests.stop()
    everything = [json.loads(line) for line in kept.read_text(encoding="utf-8").splitlines()]
    print(table(everything, known, len(left_out)))
    for each in everything:
        if result_of(each, known) == "survived":
            print(f"{each['file']}:{each['line']}: {each['change']}\n    {each['text']}\n    {each['by']}")
    print(f"scripts/stress mutate --seed={seed}; {kept}")


def one(folder, file, mutant, tree, known, done, tries, written):
    """Tries one mutant, unless that has been done, and writes down what became of it."""
    source = (tree.place / file).read_bytes()
    after = mutant.replacement.decode()
    earlier = done.get((file, mutant.start, mutant.end, after))
    if earlier:
        return earlier
    start, line, change = time.monotonic(), line_text(source, mutant), change_text(source, mutant)
    found = known.find(file, line, change)
    result = {"result": found} if found else tries.outcome(file, source, mutant)
    told = {"folder": folder, "file": file, "line": mutant.line, "kind": mutant.kind, "change": change, "text": line,
            "start": mutant.start, "end": mutant.end, "after": after, **result,
            "seconds": round(time.monotonic() - start, 1)}
    written.write(json.dumps(told, ensure_ascii=False) + "\n")
    written.flush()
    say(f"{result['result']:10} {told['seconds']:5} s  {file}:{mutant.line}: {change[:70]}  {result.get('by', '')[:60]}")
    return told


if __name__ == "__main__":
    main()
