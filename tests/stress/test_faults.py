"""Each distinct call that the cases make of the library gets each fault of one table: the program ends as it promises."""

import itertools

import pytest

from damaged_runs import Matrix, Run, calls_of_one_case, distinct_calls, problems_of, repeats_a_question

# What is done to a call (tests/libraries/faults.h), and what its answer must hold for that (`Call.content`).
FAULTS = {
    "a status": ("skip status=1", ""),
    "-1": ("skip status=4294967295", ""),
    "a status beside the answer": ("status=1", ""),
    "replies to the iSCSI ping are missing": ("status=36887", ""),
    "replies to the FCoE ping are missing": ("status=32768", ""),
    "untouched records": ("skip", ""),
    "100,000 entries": ("entries=100000", "l"),
    "no entries": ("entries=0", "l"),
    "100,000 entries in an entry": ("inner=100000", "i"),
    "lists of different length": ("uneven", "l"),
    "texts of 1 MiB": ("text=long", "t"),
    "control characters": ("text=control", "t"),
    "invalid UTF-8": ("text=bytes", "t"),
    "long numbers as texts": ("text=digits", "t"),
    "long negative numbers as texts": ("text=negative", "t"),
    "no texts": ("text=empty", "t"),
    "largest numbers": ("number=largest", "n"),
    "smallest numbers": ("number=smallest", "n"),
    "numbers of the sign alone": ("number=sign", "n"),
}


@pytest.mark.platforms("native", "sanitize")
def test_faults(platform, tmp_path, case_command, part_of, record_property):
    matrix = Matrix(FAULTS)
    for player, call in distinct_calls(platform, tmp_path, case_command):
        matrix.play(player, call, part_of(matrix.fitting(call)))
    matrix.end(record_property)


@pytest.mark.platforms("windows")
def test_faults_under_wine(platform, tmp_path, case_command, chance, record_property):
    matrix = Matrix(FAULTS)
    for player, call in itertools.islice(calls_of_one_case(platform, tmp_path, case_command, chance), 2):
        matrix.play(player, call, [chance.choice(matrix.fitting(call))])
    matrix.end(record_property)


@pytest.mark.parametrize("output, errors, exit_code", [
    (b"", b"", -11),
    (b"", b"", 1),
    (b"", b"tavrocli: one\ntavrocli: two\n", 0),
    (b"", b"==1==ERROR: AddressSanitizer: heap-buffer-overflow\n", 0),
    (b"#26371\nhalf a line", b"", 0),
    (b" #26371 : ", b"", 0),
])
def test_what_is_found(output, errors, exit_code):
    """The checks themselves."""
    assert problems_of(Run(output, errors, exit_code, [["end", "26371"]]))
    assert not problems_of(Run(b"#26371\n\t#29197 : ", b"tavrocli: one\n", 0, [["end", "29197"]]))


@pytest.mark.parametrize("text, is_known", [
    (b"\n\t\t#29196\n" * 5000, True),
    (b"\n" * 5000, True),
    (b"\n\t\t#26371\n" * 5000, False),
    (b"".join(b"\n\t\t#29196 %d\n" % number for number in range(5000)), False),
])
def test_what_is_repeated(text, is_known):
    assert repeats_a_question(text) == is_known
