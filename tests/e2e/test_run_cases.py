"""Every case of the program, run by `tavrohost run`: it prints the same, sends the same, and the exit status tells what
the calls say."""

import dataclasses

import cases
import pytest
from program import PLATFORMS
from test_cases import compare_run, numbered_steps, prepare, run_step

# The operation that decides each command, by the words that name it.
DECIDING = {
    ("-iscsi", "-portinfo"): 2, ("-iscsi", "-portstat"): 15, ("-iscsi", "-defparam"): 19,
    ("-iscsi", "-getinitiator"): 30, ("-iscsi", "-setinitiator"): 31,
    ("-iscsi", "-portal", "-listall"): 6, ("-iscsi", "-portal", "-add"): 4, ("-iscsi", "-portal", "-remove"): 5,
    ("-iscsi", "-target", "-listall"): 7, ("-iscsi", "-target", "-listactive"): 8,
    ("-iscsi", "-target", "-getinfo"): 10, ("-iscsi", "-target", "-login"): 11,
    ("-iscsi", "-target", "-logout"): 12, ("-iscsi", "-target", "-remove"): 13, ("-iscsi", "-target", "-lunlist"): 14,
    ("-iscsi", "-target", "-sessioninfo"): 17,
    ("-iscsi", "-modifytcpip", "-dhcp"): 3, ("-iscsi", "-modifytcpip", "-static"): 3,
    ("-iscsi", "-isns", "-listall"): 25, ("-iscsi", "-isns", "-add"): 23, ("-iscsi", "-isns", "-remove"): 24,
    ("-iscsi", "-ping"): 18, ("-iscsi", "-getbootconfig"): 20, ("-iscsi", "-setbootconfig"): 21,
    ("-fcoe", "-portinfo"): 33, ("-fcoe", "-portstat"): 38, ("-fcoe", "-resetstat"): 42,
    ("-fcoe", "-target", "-listactive"): 35, ("-fcoe", "-target", "-getinfo"): 36,
    ("-fcoe", "-target", "-pbindinfo"): 39, ("-fcoe", "-target", "-lunlist"): 37,
    ("-fcoe", "-getdcbinfo"): 40, ("-fcoe", "-getdcbconfig"): 46, ("-fcoe", "-setdcb"): 45, ("-fcoe", "-ping"): 41,
    ("-fcoe", "-getbootconfig"): 43, ("-fcoe", "-setbootconfig"): 44,
    ("-fcoe", "-getfip"): 47, ("-fcoe", "-setfip"): 48,
    ("-fcoe", "-getvirtualportinfo"): 49, ("-fcoe", "-createvirtualport"): 50, ("-fcoe", "-deletevirtualport"): 51,
    ("-fcoe", "-getvirtualporttarget"): 52, ("-fcoe", "-getvirtualporttargetlun"): 53,
    ("-npar", "-get"): 58, ("-npar", "-set"): 59, ("-res", "-get"): 60, ("-res", "-set"): 61,
    ("-ethernet", "-portinfo"): 62, ("-ethernet", "-getadapinfo"): 63, ("-ethernet", "-setadapinfo"): 64,
    ("-ethernet", "-portstat"): 65, ("-ethernet", "-resetstat"): 66, ("-ethernet", "-gettcpip"): 67,
    ("-ethernet", "-modifytcpip"): 68, ("-ethernet", "-getxml"): 69,
}
IMPORTING = {3, 4, 11, 31}
SUCCESSES = {0, 201}
# Under Wine one case of each of these files, dialogues among them; a start takes a second there.
ON_WINDOWS = ("adapters/showadapter", "ethernet/setadapinfo", "fcoe/setdcb", "fcoe/setbootconfig", "import/import",
              "iscsi/setbootconfig", "iscsi/setinitiator", "messages/encoding", "partition/npar_set", "start/startup")


def chosen_cases():
    """All natively, a few under Wine."""
    all_cases = cases.load_all()
    runs = [(case, PLATFORMS["native"]) for case in all_cases if PLATFORMS["native"] in case.platforms]
    windows = PLATFORMS["windows"]
    for area in ON_WINDOWS:
        of_area = [case for case in all_cases if case.name.startswith(area + "/") and windows in case.platforms]
        runs.append((of_area[0], windows))
    return runs


def pytest_generate_tests(metafunc):
    runs = chosen_cases()
    metafunc.parametrize("case, platform", runs, ids=[f"{platform.name}:{case.name}" for case, platform in runs])


def expected_status(step, has_library, calls):
    """What the calls of a run say about it, as the trace has them."""
    if not has_library or step.errors:
        return 2
    if not any(call["call"] == "Initialize" and call["status"] == 0 for call in calls):
        return 1
    words = [word for word in step.arguments if word != "-debug"]
    if words[:1] in (["-about"], ["-help"]):
        return 0
    if words[:1] == ["-showadapter"]:
        return status_of(calls, lambda call: call["call"] in ("GetDiscoveredAdapters", "GetPortWWNs"),
                         {"GetDiscoveredAdapters", "GetPortWWNs"})
    if words[:1] == ["-import"]:
        ports = [call for call in calls if call["call"] in ("GetDiscoveredAdapters", "GetPortWWNs")]
        if any(call["status"] != 0 for call in ports):
            return 1
        return status_of(calls, lambda call: call.get("operation") in IMPORTING, set())
    found = [operation for names, operation in DECIDING.items() if set(names) <= set(words)]
    return status_of(calls, lambda call: call.get("operation") in found, set())


def tells_success(call):
    """Whether the records of a call that has returned 0 say that all was done: a ping may have lost replies."""
    if call.get("operation") == 18:
        return int(call["output"][1]) >= 5
    if call.get("operation") == 41:
        return call["output"][5] in ("", "0")
    return True


def status_of(calls, decides, wanted):
    deciding = [call for call in calls if decides(call)]
    is_done = (deciding != [] and wanted <= {call["call"] for call in deciding}
               and all(call["status"] == 0 and call.get("result", 0) in SUCCESSES and tells_success(call)
                       for call in deciding))
    return 0 if is_done else 1


OUTPUTS = {"TAVROSIM_TRACE_OUTPUTS": "1"}


def as_the_case_traces(calls, step):
    """The calls without what the trace tells here beyond what it tells in the case."""
    if not OUTPUTS.items() <= step.env.items():
        calls = [{name: value for name, value in call.items() if name not in ("output", "error", "result")}
                 for call in calls]
    if step.all_calls is not None:
        names, wanted = [[call["call"] for call in some] for some in (calls, step.all_calls)]
        if names[-2:] == ["GetLastErrorMessage", "Uninitialize"] and wanted[-2:] != names[-2:]:
            del calls[-2]  # the library was asked why the last call had failed
    return calls


def reason_of_trouble(step, has_library):
    """How the line begins in which tavrohost tells why the run has failed."""
    if not has_library:
        return b"tavrohost: cannot load "
    if step.errors:
        return b"tavrohost: the command failed: " + step.errors.removeprefix("tavrocli: ").strip().encode()
    return b"tavrohost: standard output cannot be written"


def test_case(case, platform, tmp_path):
    sandbox = prepare(case, platform, tmp_path)
    sandbox.tool_arguments = ["run"]
    for place, step in numbered_steps(case):
        result, calls = run_step(sandbox, dataclasses.replace(step, env=step.env | OUTPUTS))
        is_cut_off = step.output_start is not None
        status = 2 if is_cut_off else expected_status(step, case.has_library, calls)
        expected = dataclasses.replace(step, exit_code=status)
        if expected.exit_code == 2:
            *others, last = result.errors.splitlines(keepends=True)
            assert last.startswith(reason_of_trouble(step, case.has_library))
            result.errors = b"".join(others)
        problems = compare_run(expected, platform, place, (result, as_the_case_traces(calls, step)))
        if problems:
            pytest.fail("\n".join(problems))
