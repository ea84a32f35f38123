"""Holds the manual's page of dialogues to the program: each session is played on a terminal, its answers are given through
an answers file, each refused answer is refused, and no question of the program is missing."""

import dataclasses
import json
import re

import pytest

import catalogues
from dialogue_page import CODE, MANUAL, answers_document, read_dialogues, table_rows
from host_tool import put
from program import ROOT
from terminal import Terminal

DIALOGUES = read_dialogues()
PAGE = (MANUAL / "dialogues.md").read_text(encoding="utf-8")
UNKNOWN_PORTS = table_rows(PAGE, "| Command with an unknown port | Prints |")
ASKED_FIRST = table_rows(PAGE, "| Command with an unknown port | Asks | Then prints |")
NAMES = ["CHAP", "iSCSI boot", "FCoE boot", "DCB", "Partitions", "Personalities", "Adapter settings", "Value editor"]
# Where the questions of each are asked.
SOURCES = {
    "CHAP": ["cli/login_options", "iscsi/targets"],
    "iSCSI boot": ["boot/iscsi_boot_dialogue"],
    "FCoE boot": ["boot/fcoe_boot_dialogue"],
    "DCB": ["fcoe/dcb_dialogue"],
    "Partitions": ["partition/partition_dialogue", "partition/confirmation"],
    "Personalities": ["partition/personality", "partition/confirmation"],
    "Adapter settings": ["ethernet/adapter_settings"],
    "Value editor": ["ethernet/value_editor"],
}
ENOUGH = 1 << 16  # bytes of what a dialogue prints; at the end of its input it repeats without end
WRITING = {11, 21, 31, 44, 45, 59, 61, 64}  # the operations that end the dialogues
ASKED = re.compile(r"MessageId::((?!AskYesOrNo)Ask\w+|Confirm\w+Secret)\b")
REFUSALS = [(name, place) for name, dialogue in DIALOGUES.items()
            for place, question in enumerate(dialogue.questions) if question.refused is not None]


BRANCH = re.compile(r"`(.)` or `(.)`[^`;]*: `([^`]{2,})`")  # two letters that end the dialogue with a sentence
BOUNDS = re.compile(r"from (\d+) to (\d+)|`(\d)`,? (?:to|or) `(\d)`")
LENGTHS = re.compile(r"(\d+) to (\d+) characters")


def accepted_answers(question):
    """Each letter and bound that the page names, each with the sentence that ends the dialogue then, or None."""
    cell = question.answer
    ends = {letter: ending for first, second, ending in BRANCH.findall(cell) for letter in (first, second)}
    answers = [text for text in CODE.findall(cell) if len(text) == 1]
    answers += [bound for bounds in BOUNDS.findall(cell) for bound in bounds if bound]
    answers += ["x" * int(length) for lengths in LENGTHS.findall(cell) for length in lengths]
    answers += [""] if "also an empty one" in cell else []
    return {answer: ends.get(answer) for answer in answers}


ACCEPTED = [(name, place, answer, ending) for name, dialogue in DIALOGUES.items()
            for place, question in enumerate(dialogue.questions)
            for answer, ending in accepted_answers(question).items()]


@pytest.fixture
def host(sandbox):
    """The built-in host, with real messages."""
    sandbox.write_script(None)
    return sandbox


def asked_in(path):
    names = {name: number for number, name in catalogues.read_names().items()}
    return {names[name] for name in ASKED.findall(path.read_text(encoding="utf-8"))}


def every_prompt():
    return {question.prompt for dialogue in DIALOGUES.values() for question in dialogue.questions}


def run_with(host, arguments, answers):
    document, secrets = answers_document(answers)
    put(host, "answers.json", document)
    result = host.run_tool(["run", "--json", "--answers", "answers.json", "--", *arguments], env=secrets)
    return result.exit_code, json.loads(result.output)


def test_each_dialogue_is_there():
    assert list(DIALOGUES) == NAMES


@pytest.mark.parametrize("name", NAMES)
def test_the_questions_are_those_of_the_program(name):
    texts = catalogues.read_texts("english")
    questions = [question for question in DIALOGUES[name].questions if question.number is not None]
    assert {question.number: question.prompt for question in questions} == \
        {question.number: texts[question.number] for question in questions}
    asked = set().union(*(asked_in(ROOT / "src" / f"{source}.cpp") for source in SOURCES[name]))
    assert asked and {question.number for question in questions} == asked


def test_no_file_asks_in_another_dialogue():
    asking = {str(path.relative_to(ROOT / "src").with_suffix(""))
              for path in (ROOT / "src").rglob("*.cpp") if asked_in(path)}
    assert asking == {source for sources in SOURCES.values() for source in sources}


@pytest.mark.parametrize("name", NAMES)
def test_the_session_has_every_question(name):
    """But for those of the editor, which has its own; and in the order of the table, the first time that they come."""
    dialogue = DIALOGUES[name]
    order = []
    for answer in dialogue.answers:
        if answer.question in dialogue.questions and answer.question not in order:
            order.append(answer.question)
    assert order == dialogue.questions


@pytest.mark.platforms("native")
@pytest.mark.parametrize("command, printed", UNKNOWN_PORTS)
def test_an_unknown_port_is_met_before_the_first_question(host, command, printed):
    result = host.run(CODE.fullmatch(command)[1].split())
    output = result.output.decode()
    assert not any(prompt in output for prompt in every_prompt())
    assert (CODE.fullmatch(printed)[1] in output) if printed != "nothing" else output == ""


@pytest.mark.platforms("native")
@pytest.mark.parametrize("command, asks, printed", ASKED_FIRST)
def test_an_unknown_port_is_met_after_the_questions(host, command, asks, printed):
    prompts = CODE.findall(asks)
    answers = ["y" if "(y/n)" in prompt else "vault-secret-1" for prompt in prompts]
    result = host.run(CODE.fullmatch(command)[1].split(), "".join(f"{answer}\n" for answer in answers))
    told = result.output.decode()
    shown = re.findall("|".join(map(re.escape, every_prompt() | {CODE.fullmatch(printed)[1]})), told)
    assert shown == [*prompts, CODE.fullmatch(printed)[1]]


def play(host, dialogue):
    with Terminal(host, dialogue.arguments) as terminal:
        for answer in dialogue.answers:
            ask = terminal.answer_secret if answer.is_secret else terminal.answer
            ask(answer.prompt, answer.text)
        assert terminal.wait_for_end() == 0
        screen = "\n".join(terminal.lines())
    assert screen == "\n".join(line.rstrip() for line in dialogue.screen.splitlines())


@pytest.mark.platforms("native")
@pytest.mark.parametrize("name", NAMES)
def test_the_session_is_what_a_terminal_shows(host, name):
    play(host, DIALOGUES[name])


@pytest.mark.platforms("windows")
@pytest.mark.parametrize("name", ["CHAP", "Personalities"])
def test_the_session_is_what_a_console_shows(host, name):
    play(host, DIALOGUES[name])


@pytest.mark.platforms("native")
@pytest.mark.parametrize("name", NAMES)
def test_the_numbers_make_an_answers_file(host, name):
    dialogue = DIALOGUES[name]
    status, report = run_with(host, dialogue.arguments, dialogue.answers)
    assert (status, report["outcome"]) == (0, "done"), report


@pytest.mark.platforms("native")
@pytest.mark.parametrize("name, place", REFUSALS, ids=[f"{name}-{place}" for name, place in REFUSALS])
def test_a_refused_answer_is_met_with_what_the_page_tells(host, name, place):
    dialogue = DIALOGUES[name]
    question = dialogue.questions[place]
    first = next(place for place, answer in enumerate(dialogue.answers) if answer.question is question)
    typed = [*dialogue.answers[:first], dataclasses.replace(dialogue.answers[first], text=question.refused)]
    status, report = run_with(host, dialogue.arguments, typed)
    assert (status, report["outcome"]) == (2, "failed")
    assert re.fullmatch("the answer to question .* was refused", report["failure"])
    lines = "".join(f"{answer.text}\n" for answer in typed)
    output = host.run_until(ENOUGH, dialogue.arguments, lines.encode()).output.decode()
    assert question.complaint in output and question.complaint not in dialogue.screen
    assert not any(call.get("operation") in WRITING for call in host.calls())


@pytest.mark.platforms("native")
@pytest.mark.parametrize("name, place, answer, ending", ACCEPTED)
def test_each_answer_that_the_page_names_is_accepted(host, name, place, answer, ending):
    """The answers end there: then a further question has none, or the dialogue is over."""
    dialogue = DIALOGUES[name]
    question = dialogue.questions[place]
    first = next(place for place, given in enumerate(dialogue.answers) if given.question is question)
    typed = [*dialogue.answers[:first], dataclasses.replace(dialogue.answers[first], text=answer)]
    status, report = run_with(host, dialogue.arguments, typed)
    if "failure" in report:
        assert status == 2 and re.search(" has no (further )?answer$", report["failure"])
    if ending is not None:
        assert "failure" not in report and ending in report["output"]
        assert not any(call.get("operation") in WRITING for call in host.calls())
