"""`tavrohost capture`: what it asks of a library, what it writes, and that its twin tells the same."""

import json
import os
import random
import re
import shutil
import stat
import subprocess

import jsonschema
import pytest

from program import LIBRARY, ROOT, WINE

SCHEMA = json.loads((ROOT / "docs" / "host.schema.json").read_text(encoding="utf-8"))
DEFAULT_HOST = ROOT / "simulator" / "default_host.json"
SECRET = "a-very-secret-text"
# What a capture may ask for: whatever reads, but pings and the export.
READING = {2, 6, 7, 8, 10, 14, 15, 17, 19, 20, 25, 30, 33, 35, 36, 37, 38, 39, 40, 43, 46, 47, 49, 52, 53, 58, 60, 62, 63,
           65, 67, 70}
QUERIES = {"Initialize", "Uninitialize", "GetHostName", "GetDiscoveredAdapters", "GetPortWWNs", "GetPartitionState",
           "GetAdapterType", "GetAdapterPortNumber", "GetLastErrorMessage"}
IDENTIFYING = re.compile(
    r"(?:[0-9A-F]{2}[-:]){5,7}[0-9A-F]{2}|iqn\.[^\"]+|eui\.[^\"]+|\b\d{1,3}(?:\.\d{1,3}){3}\b", re.IGNORECASE)
COMMANDS = {"native": 24, "sanitize": 12, "windows": 8}  # of one host


@pytest.fixture
def host(sandbox):
    """A sandbox with the model, and the built-in host in its file."""
    sandbox.write_script(None)
    shutil.copy(DEFAULT_HOST, sandbox.host)
    return sandbox


def capture(sandbox, *arguments, env=None):
    return sandbox.run_tool(["capture", *arguments], env=env)


def captured(sandbox, *arguments, env=None):
    """The text of a capture, which has to be a host file."""
    result = capture(sandbox, *arguments, env=env)
    assert (result.exit_code, result.errors) == (0, b"")
    text = result.output.decode("utf-8")
    jsonschema.Draft202012Validator(SCHEMA).validate(json.loads(text))
    return text


def test_only_reads(host):
    captured(host)  # reading counters has written the file in full
    before = json.loads(host.host.read_bytes())
    host.calls()
    captured(host)
    calls = host.calls()
    assert len(calls) > 100
    for call in calls:
        assert call.get("operation") in READING if call["call"] == "DoOperation" else call["call"] in QUERIES
    after = json.loads(host.host.read_bytes())
    assert after != before
    assert without_counters(after) == without_counters(before)


def without_counters(value):
    """What a host file says but for what reading counts on."""
    if isinstance(value, dict):
        return {name: without_counters(member) for name, member in value.items() if name != "statistics"}
    return [without_counters(element) for element in value] if isinstance(value, list) else value


def test_writes_a_file_for_its_owner(host):
    target = host.folder / "twin.json"
    result = capture(host, "-o", host.platform.path(target))
    assert (result.exit_code, result.output, result.errors) == (0, b"", b"")
    assert json.loads(target.read_text(encoding="utf-8"))["captured"]["answers"]
    if not host.platform.is_windows:
        assert stat.S_IMODE(os.stat(target).st_mode) == 0o600


def test_leaves_a_file_of_a_likely_name_alone(host):
    other = host.folder / "twin.json.new"
    other.write_text("another capture", encoding="utf-8")
    for _ in range(2):
        result = capture(host, "-o", host.platform.path(host.folder / "twin.json"))
        assert (result.exit_code, result.errors) == (0, b"")
    assert other.read_text(encoding="utf-8") == "another capture"
    assert {path.name for path in host.folder.glob("twin.json*")} == {"twin.json", "twin.json.new", "twin.json.lock"}


@pytest.mark.platforms("native", "sanitize")
def test_standard_output_has_a_name(host):
    captured(host)  # reading counters has written the file in full
    text = json.loads(captured(host, "-o", "/dev/stdout"))
    assert text["captured"]["answers"]


@pytest.mark.platforms("native", "sanitize")
def test_writes_into_a_pipe(host):
    pipe = host.folder / "pipe"
    os.mkfifo(pipe)
    read = host.folder / "read"
    with open(read, "wb") as target, subprocess.Popen(["cat", str(pipe)], stdout=target) as reader:
        result = capture(host, "-o", str(pipe))
        if result.exit_code != 0:
            reader.kill()
    assert (result.exit_code, result.output, result.errors) == (0, b"", b"")
    assert json.loads(read.read_text(encoding="utf-8"))["captured"]["answers"]
    assert stat.S_ISFIFO(os.stat(pipe).st_mode)


def test_a_file_that_cannot_be_written(host):
    result = capture(host, "-o", host.platform.path(host.folder / "missing" / "twin.json"))
    assert (result.exit_code, result.output) == (2, b"")
    assert result.errors.startswith(b"tavrohost: ")


def test_a_library_that_refuses_to_begin(host):
    host.host.write_text("{", encoding="utf-8")
    result = capture(host)
    assert (result.exit_code, result.output) == (2, b"")
    assert b"The host file cannot be used." in result.errors


def test_what_a_library_says_stays_in_one_line(host):
    host.write_script({"model": False, "answers": [
        {"call": "Initialize", "status": 9, "error": {"message": "One\nline.\u007f", "details": "Two\r\nof them."}}]})
    result = capture(host)
    assert (result.exit_code, result.output) == (2, b"")
    [line] = result.errors.splitlines()
    assert line == b"tavrohost: the library cannot be used (status 9): One?line.? Two??of them."


def test_a_library_that_says_nothing(host):
    host.write_script({"model": False, "answers": [{"call": "Initialize", "status": 9}]})
    result = capture(host)
    assert (result.exit_code, result.output) == (2, b"")
    assert result.errors.splitlines() == [b"tavrohost: the library cannot be used (status 9)"]


def test_a_library_that_is_missing(host):
    result = capture(host, "--library", host.platform.path(host.folder / "no.dll"))
    assert (result.exit_code, result.output) == (2, b"")
    assert b"cannot load" in result.errors


def test_a_library_by_its_path(host):
    text = captured(host, "--library", host.platform.path(host.binaries / LIBRARY))
    assert json.loads(text)["name"] == json.loads(DEFAULT_HOST.read_text(encoding="utf-8"))["name"]


@pytest.mark.platforms("sanitize", "windows")
@pytest.mark.parametrize("entry_point", ["GetPortWWNs", "DoOperation", "GetLastErrorMessage", "GetHostName"])
def test_a_library_that_lacks_an_entry_point(host, entry_point):
    host.use_library_without(entry_point)
    answers = json.loads(captured(host))["captured"]["answers"]
    assert entry_point not in {answer["call"] for answer in answers}
    assert answers


@pytest.mark.platforms("sanitize", "windows")
def test_a_library_that_lacks_the_first_entry_point(host):
    host.use_library_without("Initialize")
    result = capture(host)
    assert (result.exit_code, result.output) == (2, b"")
    assert b"TAVROAPI_Initialize" in result.errors


# ---- Secrets -----------------------------------------------------------------------------------

def with_secrets(sandbox):
    login = ["Yes", "No", "No", "Mutual CHAP", "name", SECRET, "other", SECRET]
    boot = [""] * 32
    boot[13] = boot[20] = boot[27] = SECRET
    sandbox.write_script({"answers": [
        {"call": "DoOperation", "operation": 30, "output": ["iqn.2015-01.com.example:a", login]},
        {"call": "DoOperation", "operation": 20, "output": boot},
    ]})


def test_leaves_secrets_out(host):
    with_secrets(host)
    text = captured(host)
    assert "iqn.2015-01.com.example:a" in text
    assert SECRET not in text


def test_keeps_secrets_that_are_wanted(host):
    with_secrets(host)
    document = json.loads(captured(host, "--with-secrets"))
    assert document["initiator"]["login"]["targetSecret"] == SECRET
    boots = [
        function["iscsi"]["boot"]
        for adapter in document["adapters"] for port in adapter["ports"] for function in port["functions"]
        if "iscsi" in function
    ]
    assert boots
    for boot in boots:
        assert boot["chapSecret"] == boot["firstTarget"]["chapSecret"] == boot["secondTarget"]["chapSecret"] == SECRET
    initiator = next(answer for answer in document["captured"]["answers"] if answer.get("operation") == 30)
    assert initiator["output"][1][5] == initiator["output"][1][7] == SECRET


# ---- Anonymity ---------------------------------------------------------------------------------

def test_names_nobody_when_anonymous(host):
    text = captured(host, "--anonymous")
    original = DEFAULT_HOST.read_text(encoding="utf-8")
    # The range of nobody's addresses and of masks, and versions, which look like addresses.
    kept = re.compile(r"0\.0\.0\.0|255\..*|5\.2\..*")
    values = {value for value in IDENTIFYING.findall(original) if not kept.fullmatch(value)}
    assert len(values) > 30
    left = {value for value in values if re.search(rf"(?<!\w){re.escape(value)}(?![\w:-])", text)}
    assert left == set()
    assert json.loads(original)["name"] not in text
    models = {adapter["name"] for adapter in json.loads(original)["adapters"]}
    assert {adapter["name"] for adapter in json.loads(text)["adapters"]} == models


# ---- The twin tells the same -------------------------------------------------------------------

def reading_commands(document):
    """The commands that show something of a host file's functions, each with what it takes."""
    yield ["-showadapter"]
    yield ["-iscsi", "-getinitiator"]
    yield ["-iscsi", "-isns", "-listall"]
    for adapter in document["adapters"]:
        for port in adapter["ports"]:
            for function in port["functions"]:
                yield ["-npar", function["mac"], "-get"]
                yield ["-res", function["mac"], "-get"]
                if "ethernet" in function:
                    for command in ("-portinfo", "-portstat", "-gettcpip"):
                        yield ["-ethernet", function["mac"], command]
                elif "iscsi" in function:
                    yield from iscsi_commands(function)
                else:
                    yield from fcoe_commands(function, document)


def iscsi_commands(function):
    start = ["-iscsi", function["mac"]]
    for command in (["-portinfo"], ["-portstat"], ["-defparam"], ["-getbootconfig"], ["-portal", "-listall"],
                    ["-target", "-listall"], ["-target", "-listactive"]):
        yield [*start, *command]
    for target in function["iscsi"].get("storage", {}).get("targets", []):
        for command in ("-getinfo", "-lunlist", "-sessioninfo"):
            yield [*start, "-target", command, target["name"]]


def fcoe_commands(function, document):
    start = ["-fcoe", function["fcoe"]["portWwn"]]
    for command in (["-portinfo"], ["-portstat"], ["-getdcbinfo"], ["-getdcbconfig"], ["-getfip"], ["-getbootconfig"],
                    ["-target", "-listactive"], ["-target", "-pbindinfo"], ["-getvirtualportinfo"]):
        yield [*start, *command]
    for target in document["fcoeFabric"].get("targets", []):
        for command in ("-getinfo", "-lunlist"):
            yield [*start, "-target", command, target["portWwn"]]
    for port in function["fcoe"].get("virtualPorts", []):
        for command in ("-getvirtualporttarget", "-getvirtualporttargetlun"):
            yield [*start, command, port["portWwn"]]


def make_random_host(sandbox, seed):
    program = sandbox.platform.folder / "programs" / ("random_host.exe" if sandbox.platform.is_windows else "random_host")
    start = [str(WINE), str(program)] if sandbox.platform.is_windows else [str(program)]
    subprocess.run([*start, str(seed), sandbox.platform.path(sandbox.host)], check=True, env=sandbox.environment())


def expect_twin_to_tell_the_same(sandbox, seed):
    platform = sandbox.platform
    sandbox.write_script(None)
    make_random_host(sandbox, seed)
    twin = sandbox.folder / "twin.json"
    original = sandbox.host.read_bytes()
    result = capture(sandbox, "-o", platform.path(twin))
    assert (result.exit_code, result.output, result.errors) == (0, b"", b"")
    sandbox.host.write_bytes(original)  # with the counters as they were captured
    all_commands = list(reading_commands(json.loads(original)))
    commands = random.Random(seed).sample(all_commands, min(len(all_commands), COMMANDS[platform.name]))
    twin_text = twin.read_bytes()
    for command in commands:
        real = sandbox.run(command)
        played = sandbox.run(command, env={"TAVROSIM_HOST": platform.path(twin)})
        assert played == real, command
    assert twin.read_bytes() == twin_text


@pytest.mark.platforms("native")
@pytest.mark.parametrize("seed", range(10))
def test_twin_tells_what_the_host_tells(sandbox, seed):
    expect_twin_to_tell_the_same(sandbox, seed)


@pytest.mark.platforms("sanitize", "windows")
@pytest.mark.parametrize("seed", range(3))
def test_twin_tells_what_the_host_tells_elsewhere(sandbox, seed):
    expect_twin_to_tell_the_same(sandbox, seed)
