"""Holds the manual's page on scripts to the program: each row is done on the simulator through `tavrohost run --json`, and no
command that changes something is missing."""

import json
import re
import shutil

import pytest

from dialogue_page import CODE, MANUAL, answers_document, read_dialogues, table_rows
from host_tool import put
from program import ROOT

PAGE = (MANUAL / "scripts.md").read_text(encoding="utf-8")
PROOFS = table_rows(PAGE, "| Change | Proof | Shows | In force |")
VERDICTS = table_rows(PAGE, "| Command | Decided by | Refused, for example | Told |")
EXIT_STATUSES = table_rows(PAGE, "| | `tavrohost run` exits with | `outcome` |")
SHOWN = re.compile(r"(?:(no|less) )?`([^`]+)`")
DIALOGUES = {" ".join(dialogue.arguments): dialogue for dialogue in reversed(read_dialogues().values())}

COMMAND = re.compile(r"\{\.code = CommandCode\{(\d+)\},\s*\.form = \{(.*?)\},\s*\n(.*?)\.handler", re.DOTALL)
FORM_ELEMENT = re.compile(r'"([^"]+)"|(?:\w+\()?operand::\w+\)?')
CHANGING = re.compile(r"\bChanges<OperationCode::(\w+)")
OPERATION = re.compile(r"\bOperationCode::(\w+)")


@pytest.fixture
def host(sandbox):
    """The built-in host, with real messages, and beside it the file that an import reads."""
    sandbox.write_script(None)
    shutil.copy(ROOT / "docs" / "cnadiscovery.xml", sandbox.work)
    return sandbox


def sources(folder):
    return [path.read_text(encoding="utf-8") for path in sorted((ROOT / folder).rglob("*.cpp"))]


def command_table():
    """For each code the words of its form, None where an operand stands, and the names of the operations that decide."""
    table = {}
    for source in sources("src"):
        for code, form, rest in COMMAND.findall(source):
            decision = re.search(r"\.decidedBy = (.*?),\n", rest, re.DOTALL)[1]
            stated = re.search(rf"constexpr Decision {re.escape(decision)} =(.*?);", source, re.DOTALL)
            words = [found[1] for found in FORM_ELEMENT.finditer(form)]
            table[int(code)] = words, OPERATION.findall(stated[1] if stated else decision)
    return table


TABLE = command_table()


def changing_codes():
    """Those that an operation decides which changes the simulated host."""
    changing = set(CHANGING.findall("\n".join(sources("simulator/model"))))
    assert changing
    return {code for code, (_, operations) in TABLE.items() if changing & set(operations)}


def code_of(command):
    """The code of a command as it is typed, which may be incomplete behind its keywords."""
    typed = command.split()
    fitting = {code: len([word for word in words if word]) for code, (words, _) in TABLE.items()
               if all(word is None or typed[place:place + 1] == [word] for place, word in enumerate(words))}
    return max(fitting, key=fitting.get)


def ids(rows):
    return [str(place) for place, _ in enumerate(rows)]


def run_json(host, command, with_answers=True):
    """Runs a command, a dialogue with the answers of its session; returns the exit status and the report."""
    options, secrets = [], {}
    if command in DIALOGUES:
        document, secrets = answers_document(DIALOGUES[command].answers if with_answers else [])
        options = ["--answers", put(host, "answers.json", document)]
    result = host.run_tool(["run", "--json", *options, "--", *command.split()], env=secrets)
    return result.exit_code, json.loads(result.output)


def status_of(what):
    """What the page says of a run: its exit status and its outcome."""
    [row] = [row for row in EXIT_STATUSES if what in row[0]]
    return int(row[1]), CODE.fullmatch(row[2])[1]


def shown_by(host, command):
    result = host.run(command.split())
    assert (result.exit_code, result.errors) == (0, b"")
    return " ".join(result.output.decode().split())


def number_behind(label, text):
    return int(re.search(re.escape(" ".join(label.split())) + r" (\d+)", text)[1])


def test_every_command_is_known():
    assert set(TABLE) == set(range(2, 64)) - {31}


def test_every_changing_command_has_its_rows():
    changing = changing_codes()
    assert {code_of(CODE.findall(row[0])[-1]) for row in PROOFS} == changing
    stated = [code_of(CODE.fullmatch(row[0])[1]) for row in VERDICTS]
    assert sorted(stated) == sorted(changing)
    deciding = {code: CODE.findall(row[1]) for code, row in zip(stated, VERDICTS)}
    assert deciding == {code: TABLE[code][1] for code in changing}


@pytest.mark.platforms("native")
@pytest.mark.parametrize("row", PROOFS, ids=ids(PROOFS))
def test_a_change_is_proved(host, row):
    *before, change = CODE.findall(row[0])
    proof, in_force = CODE.fullmatch(row[1])[1], row[3]
    kind, shown = SHOWN.fullmatch(row[2]).groups()
    for command in [*before, *([proof, proof] if kind == "less" else [])]:  # each reading lets counters go on
        assert run_json(host, command)[0] == 0
    was = shown_by(host, proof)
    status, report = run_json(host, change)
    assert (status, report["outcome"]) == status_of("The change")
    operations = TABLE[code_of(change)][1]
    decisive = [call for call in report["calls"] if call.get("name") in operations]
    assert decisive and all(call["status"] == 0 for call in decisive)
    assert report["restart_required"] == (in_force == "after the restart")
    if report["restart_required"]:
        assert shown not in shown_by(host, proof)
        host.restart_host()
    else:
        assert in_force == "at once"
    now = shown_by(host, proof)
    if kind == "less":
        assert number_behind(shown, now) < number_behind(shown, was)
    else:
        assert (shown in now, shown in was) == ((False, True) if kind == "no" else (True, False))


@pytest.mark.platforms("native")
@pytest.mark.parametrize("row", VERDICTS, ids=ids(VERDICTS))
def test_a_refusal_is_told(host, row):
    refused, without_file = re.fullmatch(r"`([^`]+)`( without the file)?", row[2]).groups()
    if without_file:
        (host.work / "cnadiscovery.xml").unlink()
    else:
        assert refused in ("-iscsi -setinitiator",) or code_of(refused) == code_of(CODE.fullmatch(row[0])[1])
    status, report = run_json(host, refused)
    assert (status, report["outcome"]) == status_of("The refused example")
    if row[3] == "nothing":
        assert report["output"] == "" and "error" not in report
    else:
        told = [report["output"], report.get("error", {}).get("message", "")]
        assert any(CODE.fullmatch(row[3])[1] in text for text in told)
    assert host.run(refused.split()).exit_code == 0


@pytest.mark.platforms("native")
def test_without_a_library_no_change_is_run(host):
    host.use_library(None)
    for row in PROOFS:
        status, report = run_json(host, CODE.findall(row[0])[-1])
        assert (status, report["outcome"]) == status_of("without the management library")
        assert report["calls"] == []


@pytest.mark.platforms("native")
def test_a_dialogue_without_answers_is_not_led(host):
    dialogues = [change for row in PROOFS for change in CODE.findall(row[0]) if change in DIALOGUES]
    assert len(dialogues) == 6
    for dialogue in dialogues:
        status, report = run_json(host, dialogue, with_answers=False)
        assert (status, report["outcome"]) == status_of("lacks the answers")
        assert report["failure"].endswith(" has no answer")


@pytest.mark.platforms("windows")
@pytest.mark.parametrize("row", [row for row in PROOFS if "-setfip" in row[0] or "`-res " in row[0]])
def test_a_change_is_proved_on_windows(host, row):
    test_a_change_is_proved(host, row)


@pytest.mark.platforms("native")
def test_the_language_of_scripts_is_english(host):
    outputs = {locale: host.run(["-showadapter"], locale=locale, env={"LANG": "ja_JP.UTF-8"}).output
               for locale in ("ja_JP.UTF-8", "en_US.UTF-8", "C")}
    assert outputs["C"] == outputs["en_US.UTF-8"] != outputs["ja_JP.UTF-8"]
