#!/usr/bin/python3
"""Finds sources that forget an include where the build compiles the sources of a folder as one: clang reads each of
them by itself. Usage: check_includes.py BUILD_FOLDER [PART_OF_A_PATH]

Only reading counts here. Functions of templates need not be made for it, which takes most of a compiler's time; clang
does not make them once a fatal error has come. So each source is read with such an error behind its end, and passes
when that is its only one. Tests are left out: they are compiled as one in every build."""

import json
import os
import re
import shlex
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from functools import cache
from pathlib import Path

# What takes longest to read is precompiled, for those sources alone that include it, themselves or by what they include.
SLOW = ("nlohmann/json.hpp", "CLI/CLI.hpp")
TESTS = Path(__file__).resolve().parents[2] / "tests"
END = "the_end_of_the_source"


def sources_of(build):
    """Each source but those of tests that is compiled with others, and the folders and macros that it sees."""
    found = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        file = Path(entry["file"])
        if file.parent.name == "Unity":
            words = shlex.split(entry["command"])
            options = [word for word in words if word.startswith(("-I", "-D", "-std="))]
            options += [f"-isystem{words[i + 1]}" for i, word in enumerate(words) if word == "-isystem"]
            for source in re.findall(r'^#include "(.*)"$', file.read_text(), re.MULTILINE):
                if TESTS not in Path(source).parents:
                    found[source] = tuple(options)
    return found


def folders_of(options):
    return tuple(option[2:] for option in options if option.startswith("-I"))


@cache
def included(file, folders):
    """The slow headers that a file includes, itself or by what it includes."""
    slow = set()
    for name in re.findall(r'^ *# *include [<"](.*)[">]', Path(file).read_text(), re.MULTILINE):
        if name in SLOW:
            slow.add(name)
        else:
            for folder in (os.path.dirname(file), *folders):
                path = os.path.join(folder, name)
                if os.path.isfile(path):
                    slow |= included(path, folders)
                    break
    return frozenset(slow)


def clang(*arguments, **more):
    command = ["clang++", "-w", "-fno-caret-diagnostics", "-fno-color-diagnostics", *arguments]
    return subprocess.run(command, capture_output=True, text=True, check=False, **more)


def precompiled(scratch, folder, headers):
    file = Path(scratch) / ("_".join(sorted(headers)).replace("/", "_") + ".h")
    file.write_text("".join(f"#include <{name}>\n" for name in SLOW if name in headers))
    made = clang("-std=c++20", f"-isystem{folder}", "-x", "c++-header", str(file), "-o", f"{file}.pch")
    if made.returncode != 0:
        sys.exit(made.stderr)
    return f"{file}.pch"


def errors_of(source, options, header):
    text = f'#include "{source}"\n#include "{END}"\n'
    read = clang(*options, "-include-pch", header, "-fsyntax-only", "-x", "c++", "-", input=text)
    if read.stderr == f"<stdin>:2:10: fatal error: '{END}' file not found\n":
        return ""
    return read.stderr or f"{source}: clang did not read it\n"


def main():
    build = Path(sys.argv[1]).resolve()
    part = sys.argv[2] if len(sys.argv) > 2 else ""
    sources = {source: options for source, options in sources_of(build).items() if part in source}
    if not sources:
        sys.exit(f"{build} compiles no such source with others")
    with tempfile.TemporaryDirectory() as scratch, ThreadPoolExecutor(os.cpu_count()) as readers:
        needs = {source: included(source, folders_of(options)) for source, options in sources.items()}
        kinds = sorted(set(needs.values()), key=sorted)
        headers = dict(zip(kinds, readers.map(lambda kind: precompiled(scratch, build / "third_party", kind), kinds)))
        errors = readers.map(lambda source: errors_of(source, sources[source], headers[needs[source]]), sources)
        wrong = [text for text in errors if text]
    print("".join(wrong), end="")
    print(f"{len(sources)} sources, each read by itself: {len(wrong)} wrong")
    return 1 if wrong else 0


sys.exit(main())
