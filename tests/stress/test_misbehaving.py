"""A library that breaks the contract in any of the distinct calls of the cases: it lets exceptions out, writes where it
should only read, and returns what are no characters. The program ends as it promises."""

import itertools

import pytest

from damaged_runs import Matrix, calls_of_one_case, distinct_calls, problems_of

THROWN = {
    "exception": "thrown by the library",
    "memory": "std::bad_alloc",
    "derived": "an exception of the library's own",
    "speechless": "",
    "int": "an exception of an unknown type",
    "struct": "an exception of an unknown type",
    "lines": "thrown  by the library ",
}
MISBEHAVIOUR = {f"throws: {word}": (f"throw={word}", "") for word in THROWN} | {
    "throws at once": ("skip throw=exception", ""),
    "throws behind an answer without end": ("text=long throw=lines", "t"),
    "writes into its inputs": ("inputs", ""),
    "writes into its inputs and fails": ("inputs status=1", ""),
    "returns what are no characters": ("text=wild", "t"),
}


def problems(player, fault, call, run):
    """An exception is told in one line, the first one where there are two, and a library that was initialized is
    uninitialized."""
    found = problems_of(run)
    if "throw=" in fault:
        word = fault.split("throw=")[1]
        told = f"tavrocli: {THROWN[word]}\n"
        if call.entry == "Uninitialize" and player.step.errors:
            told = player.step.errors
        if run.errors != player.sandbox.platform.encode(told, player.step.locale):
            found.append(f"standard error {run.errors[:2000]!r}")
        started = call.entry != "Initialize" and any(each.entry == "Uninitialize" for each in player.calls)
        if any(words[1] == "TAVROAPI_Uninitialize" for words in run.report if words[0] != "end") != started:
            found.append("not uninitialized" if started else "uninitialized")
    return found


@pytest.mark.platforms("native", "sanitize")
def test_misbehaviour(platform, tmp_path, case_command, part_of, record_property):
    matrix = Matrix(MISBEHAVIOUR, problems)
    for player, call in distinct_calls(platform, tmp_path, case_command):
        matrix.play(player, call, part_of(matrix.fitting(call)))
    matrix.end(record_property)


@pytest.mark.platforms("windows")
def test_misbehaviour_under_wine(platform, tmp_path, case_command, chance, record_property):
    matrix = Matrix(MISBEHAVIOUR, problems)
    for player, call in itertools.islice(calls_of_one_case(platform, tmp_path, case_command, chance), 2):
        matrix.play(player, call, [chance.choice(matrix.fitting(call))])
    matrix.end(record_property)
