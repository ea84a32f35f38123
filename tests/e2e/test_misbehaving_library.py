"""What the program makes of a library that breaks the contract: nothing but a line, and never an abort."""

import itertools

import pytest

from program import LIBRARY

pytestmark = pytest.mark.platforms("sanitize", "windows")

MAC = "02-00-5E-00-00-01"
ABOUT = ["-about"]
# A command that calls the entry point, and what it needs besides.
COMMANDS = {
    "Initialize": (ABOUT, {}),
    "Uninitialize": (ABOUT, {}),
    "GetHostName": (ABOUT, {}),
    "GetDiscoveredAdapters": (ABOUT, {}),
    "GetPortWWNs": (ABOUT, {}),
    "GetLocalizeMessage": (["-nonsense"], {}),
    "DoOperation": (["-iscsi", "-getinitiator"], {}),
    "GetLastErrorMessage": (["-iscsi", "-getinitiator"], {"MISBEHAVING_FAIL": "DoOperation"}),
    "GetPartitionState": (["-npar", MAC, "-get"], {}),
    "GetAdapterType": (["-res", MAC, "-get"], {}),
    "GetAdapterPortNumber": (["-npar", MAC, "-set"], {}),
}
UNKNOWN = "an exception of an unknown type"
LINES = {
    "exception": "thrown by {entry}",
    "lines": "thrown  by {entry} ",
    "silent": "",
    "speechless": "",
    "memory": "std::bad_alloc",
    "derived": "an exception of the library's own",
    "int": UNKNOWN,
    "pointer": UNKNOWN,
    "struct": UNKNOWN,
}


def run(sandbox, arguments, throw="", stdin="", **environment):
    """Runs the program beside the library; returns the result and the entry points called, in order."""
    if sandbox.binaries == sandbox.platform.folder / "bin":
        sandbox.use_library(sandbox.platform.folder / "variants" / "misbehaving" / LIBRARY)
    calls = sandbox.folder / "calls"
    calls.unlink(missing_ok=True)
    environment["MISBEHAVING_THROW"] = throw
    environment["MISBEHAVING_CALLS"] = sandbox.platform.path(calls)
    result = sandbox.run(arguments, stdin, env=environment)
    return result, calls.read_text(encoding="utf-8").splitlines()


def error_line(sandbox, text):
    return sandbox.platform.encode(f"tavrocli: {text}\n", "en_US.UTF-8")


@pytest.mark.parametrize("entry, kind", itertools.product(COMMANDS, LINES))
def test_an_exception_is_told_in_one_line(sandbox, entry, kind):
    arguments, environment = COMMANDS[entry]
    result, calls = run(sandbox, arguments, f"{entry}={kind}", **environment)
    assert result.errors == error_line(sandbox, LINES[kind].format(entry=entry))
    assert result.exit_code == 0
    # What threw is not called again, and what was initialized is uninitialized.
    after = [] if entry in ("Initialize", "Uninitialize") else ["Uninitialize"]
    assert calls[calls.index(entry):] == [entry] + after


@pytest.mark.parametrize("entry", [entry for entry in COMMANDS if entry not in ("Initialize", "Uninitialize")])
def test_of_two_exceptions_the_first_is_told(sandbox, entry):
    arguments, environment = COMMANDS[entry]
    result, calls = run(sandbox, arguments, f"{entry}=exception Uninitialize=int", **environment)
    assert (result.errors, result.exit_code) == (error_line(sandbox, f"thrown by {entry}"), 0)
    assert calls[-1] == "Uninitialize"


def test_an_exception_after_a_refused_start(sandbox):
    result, calls = run(sandbox, ABOUT, "GetLastErrorMessage=struct", MISBEHAVING_FAIL="Initialize")
    assert (result.errors, result.exit_code) == (error_line(sandbox, UNKNOWN), 0)
    assert calls == ["Initialize", "GetLastErrorMessage"]


def test_what_was_printed_before_an_exception_stays(sandbox):
    """The last line is left open; it is written nevertheless."""
    result, calls = run(sandbox, ["-npar", MAC, "-set"], "Uninitialize=int", stdin="1\nn\n")
    assert result.errors == error_line(sandbox, UNKNOWN)
    end = "\n\t\t#29195\n\n\t#29197 : \n\t#29198 : "
    assert result.output.endswith(sandbox.platform.encode(end, "en_US.UTF-8"))
    assert "DoOperation" not in calls


@pytest.mark.parametrize("sent, received, loss", [
    ("5", "5", "0"),
    ("5", "0", "100"),
    ("10", "4", "60"),
    # Of nothing, nothing is lost.
    ("0", "0", "0"),
    ("0", "3", "0"),
    ("0", "-2147483648", "0"),
    # The arithmetic has 32 bits all along; here a hundred times what was lost is the smallest number.
    ("-1", "-536870913", "-2147483648"),
    ("-1", "-2147483648", "100"),
    ("-1", "-1", "0"),
    ("-2147483648", "2147483647", "0"),
])
def test_counts_of_the_ping(sandbox, sent, received, loss):
    result, _ = run(sandbox, ["-iscsi", MAC, "-ping", "192.0.2.1"], MISBEHAVING_COUNTS=f"{sent} {received}")
    assert (result.errors, result.exit_code) == (b"", 0)
    lines = result.output.decode("utf-8").splitlines()
    assert lines[-4:] == [
        " #26375 : 192.0.2.1", f" #26372 : {sent}", f" #26373 : {received}", f" #26376 : {loss}%",
    ]
