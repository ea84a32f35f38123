"""Fails when a test stands in the tree and is not run, or when the cases repeat themselves."""

import collections
import json
import pathlib
import re
import subprocess
import sys

import pytest

import cases
from case_file import CaseFile, read_lines
from program import ROOT, TESTS
from transcript import Blocks

UNIT = ROOT / "tests" / "unit"
LONGEST_CASE_FILE = 600  # lines
REPEATED_RUN = 6  # so many lines, or more, that stand elsewhere too are a repetition, wherever they are indented to
LARGEST_REPETITION = 15  # percent of the lines of all files of cases


@pytest.mark.platforms("sanitize", "windows")
def test_every_unit_test_is_built(platform):
    """What the unit test programs are made of is read from the build's own list of compiled files."""
    commands = json.loads((platform.folder / "compile_commands.json").read_text(encoding="utf-8"))
    compiled = {entry["file"] for entry in commands if "_tests.dir" in entry["command"]}
    compiled |= {source for file in compiled for source in included_sources(file)}
    standing = {str(path) for path in UNIT.rglob("*.cpp")}
    if platform.system == "windows":
        standing -= {str(path) for path in (UNIT / "linux").rglob("*.cpp")}
    assert sorted(standing - compiled) == []


def included_sources(file):
    """The sources of a folder that are compiled as one, where the file is such a one."""
    return re.findall(r'^#include "(.*\.cpp)"$', pathlib.Path(file).read_text(encoding="utf-8"), re.MULTILINE)


@pytest.mark.platforms("sanitize", "windows")
def test_every_unit_test_program_is_run(platform):
    listing = subprocess.run(
        ["ctest", "--test-dir", str(platform.folder), "--show-only=json-v1"],
        check=True, capture_output=True, text=True,
    )
    run = " ".join(" ".join(test.get("command", [])) for test in json.loads(listing.stdout)["tests"])
    built = [path.name for path in (platform.folder / "unit").rglob("*_tests*") if path.suffix in ("", ".exe")]
    assert built, "no unit test program was built"
    assert [name for name in built if name not in run] == []


def test_every_unit_test_source_holds_a_test():
    """A file of helpers has a header beside it."""
    empty = [
        path.name
        for path in UNIT.rglob("*.cpp")
        if not re.search(r"^(TYPED_)?TEST(_[FP])?\(", path.read_text(encoding="utf-8"), re.MULTILINE)
        and not path.with_suffix(".h").exists()
    ]
    assert empty == []


def test_every_file_of_unit_tests_is_a_source():
    others = [path for path in UNIT.rglob("*") if path.is_file()
              and path.suffix not in (".cpp", ".h") and path.name != "CMakeLists.txt"]
    assert [path.name for path in others if not named_by_its_folder(path)] == []


def named_by_its_folder(path):
    lists = path.with_name("CMakeLists.txt")
    return lists.exists() and path.name in lists.read_text(encoding="utf-8")


@pytest.fixture(scope="module")
def collected():
    """The ids of every test that a full run on all platforms collects."""
    listing = subprocess.run(
        [sys.executable, "-m", "pytest", "--collect-only", "-q", "-p", "no:cacheprovider", "--platform=all",
         str(TESTS)],
        check=True, capture_output=True, text=True,
    )
    return [line for line in listing.stdout.splitlines() if "::" in line]


def test_every_case_is_run(collected):
    wanted = []
    for file in (TESTS / "cases").rglob("*"):
        if file.is_dir():
            continue
        assert file.suffix == ".yaml", f"{file.name} is no file of cases"
        content = CaseFile(file, TESTS / "cases")
        wanted += [f"{content.area}/{entry['name']}" for entry in content.cases]
    assert wanted, "there is no case"
    assert [name for name in wanted if not any(line.endswith(f":{name}]") for line in collected)] == []


def test_every_case_is_run_on_the_platforms_it_names():
    for case in cases.load_all():
        assert case.platforms, f"{case.name} is run on no platform"


def test_every_shared_block_and_value_is_used():
    assert cases.unused_shares() == []


def test_no_file_of_cases_is_too_long():
    lengths = {str(file): len(lines) for file, lines in lines_of_cases().items()}
    assert lengths, "there is no case"
    assert {file: length for file, length in lengths.items() if length > LONGEST_CASE_FILE} == {}


def test_cases_repeat_little():
    files = [[line.strip() for line in lines] for lines in lines_of_cases().values()]
    repeated, total = sum(map(sum, find_repetitions(files))), sum(map(len, files))
    assert 100 * repeated < LARGEST_REPETITION * total, f"{repeated} of {total} lines are repetitions"


def lines_of_cases():
    return {file: read_lines(file) for file in (TESTS / "cases").rglob("*.yaml")}


def find_repetitions(files):
    """For each line of each file, whether it is part of a run of lines that stands elsewhere too."""
    runs = [[tuple(lines[start:start + REPEATED_RUN]) for start in range(len(lines) - REPEATED_RUN + 1)]
            for lines in files]
    count = collections.Counter(run for file_runs in runs for run in file_runs)
    return [[any(count[run] > 1 for run in file_runs[max(0, place - REPEATED_RUN + 1):place + 1])
             for place in range(len(lines))]
            for lines, file_runs in zip(files, runs)]


def test_repetitions_are_found():
    other = [*"123456"]
    assert find_repetitions([[*"xabcdef"], [*"abcdefy"], other]) == [[False] + [True] * 6, [True] * 6 + [False],
                                                                     [False] * 6]
    assert find_repetitions([[*"abcde"], [*"abcde"]]) == [[False] * 5] * 2


@pytest.mark.parametrize("expected, is_enough", [
    ({"screen": ""}, False),
    ({"screen": "\n␣\n"}, False),
    ({"screen": "«y»\n"}, False),
    ({"outputText": "\n"}, False),
    ({"screenStart": "⏎\n"}, False),
    ({"screen": "", "exitCode": 0, "without": "Uninitialize"}, False),
    ({"screen": "", "calls": [], "without": "DoOperation"}, False),  # there are none that could be seen
    ({"screen": "#1", "calls": [], "then": [{"args": "", "screen": ""}]}, False),
    ({"screen": "", "calls": []}, True),
    ({"screen": "", "allCalls": [], "without": "DoOperation"}, True),
    ({"screen": "#1"}, True),
    ({"outputText": "#1"}, True),
    ({"screen": "", "stderr": "an error\n"}, True),
])
def test_a_case_that_expects_no_output_looks_at_the_calls(expected, is_enough):
    entry = {"name": "n", "args": ""} | expected
    if is_enough:
        assert cases.read_case("area", entry, Blocks({})).steps
    else:
        with pytest.raises(cases.CaseError, match="expects no output"):
            cases.read_case("area", entry, Blocks({}))


def test_every_python_test_is_run(collected):
    files = {line.split("::")[0].rsplit("/", 1)[-1] for line in collected}
    assert sorted({path.name for path in TESTS.rglob("test_*.py")} - files) == []


def test_every_other_file_is_used():
    """Host and script files are named by a case, or in a test written in Python; modules are imported."""
    texts = [path.read_text(encoding="utf-8") for path in TESTS.glob("*.py")]
    referenced = cases.referenced_files()
    unused = []
    for path in TESTS.rglob("*"):
        relative = path.relative_to(TESTS)
        if path.is_dir() or {"cases", "__pycache__"} & set(relative.parts):
            continue
        if path.name in ("README.md", "pytest.ini", "conftest.py") or re.fullmatch(r"test_\w+\.py", path.name):
            continue
        if path.suffix == ".py":
            use = rf'^((import|from) {path.stem}\b|pytest_plugins = .*"{path.stem}")'
            used = any(re.search(use, text, re.MULTILINE) for text in texts)
        else:
            used = path in referenced or any(str(relative) in text for text in texts)
        if not used:
            unused.append(str(relative))
    assert unused == []
