"""`tavrohost run --answers`: questions answered from a document."""

import dataclasses
import json
import re
import signal
import time

import jsonschema
import pytest

import cases
from program import LIBRARY, PLATFORMS, ROOT, TIME_LIMIT
from test_cases import compare_run, numbered_steps, prepare, run_step
from test_run import MAC, PERSONALITY_ANSWERS, SECRET, SET_INITIATOR, SET_PERSONALITY, run_json, script, watched
from test_run_cases import OUTPUTS, as_the_case_traces, expected_status
from terminal import Terminal

SCHEMA = json.loads((ROOT / "docs" / "answers.schema.json").read_text(encoding="utf-8"))
CHAP_SECRET = SECRET[:16]

__all__ = ["watched"]  # a fixture


def write_answers(sandbox, *entries):
    document = {"format": 1, "answers": list(entries)}
    jsonschema.Draft202012Validator(SCHEMA).validate(document)
    path = sandbox.folder / "answers.json"
    path.write_text(json.dumps(document), encoding="utf-8")
    return sandbox.platform.path(path)


def message(number, *answers, **more):
    return {"message": number, "answers": list(answers)} | more


def run_with_answers(sandbox, arguments, *entries, **names):
    sandbox.tool_arguments = ["run", "--answers", write_answers(sandbox, *entries)]
    return sandbox.run(arguments, **names)


def operations(sandbox, number):
    return [call for call in sandbox.calls() if call.get("operation") == number]


def test_the_schema_is_one():
    jsonschema.Draft202012Validator.check_schema(SCHEMA)


def test_answers_stand_for_standard_input(watched):
    script(watched, *PERSONALITY_ANSWERS, {"operation": 61})
    result = run_with_answers(watched, SET_PERSONALITY, message(29456, "2"), message(29197, "y"), stdin="1\nn\n")
    assert (result.exit_code, result.errors) == (0, b"")
    [call] = operations(watched, 61)
    assert call["input"][0] == "2"


@pytest.mark.platforms("native", "windows")
def test_answers_reach_the_library_as_if_they_were_typed(watched):
    """In the encoding in which they would be typed; what it lacks cannot be typed."""
    script(watched, {"operation": 31})
    answers = [message(28692, "Zoë"), message(28693, {"environment": "CHAP"})]
    result = run_with_answers(watched, SET_INITIATOR, *answers, env={"CHAP": CHAP_SECRET})
    [answered] = operations(watched, 31)
    watched.tool_arguments = ["run"]
    assert watched.run(SET_INITIATOR, stdin=f"Zoë\n{CHAP_SECRET}\n").exit_code == result.exit_code == 0
    assert [answered] == operations(watched, 31)
    if watched.platform.is_windows:
        result = run_with_answers(watched, SET_INITIATOR, message(28692, "発信者"))
        assert result.exit_code == 2
        assert b"holds a character that the console's code page lacks" in result.errors


@pytest.mark.platforms("native", "sanitize")
def test_answers_may_come_from_standard_input(watched):
    script(watched, *PERSONALITY_ANSWERS, {"operation": 61})
    watched.tool_arguments = ["run", "--answers", "-"]
    document = {"format": 1, "answers": [message(29456, "2"), message(29197, "y")]}
    assert watched.run(SET_PERSONALITY, stdin=json.dumps(document)).exit_code == 0


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("entries, sentence", [
    pytest.param([message(29456, "2")], 'question 29197 "#29197 :" has no answer', id="none"),
    pytest.param([message(29456, "3", "2"), message(29197, "y")], 'the answer to question 29456 "#29456 :" was refused',
                 id="refused"),
    pytest.param([message(29456, "2"), message(29197, "maybe", repeat=True)],
                 'the answer to question 29197 "#29197 :" was refused', id="refused without end"),
])
def test_what_cannot_be_answered_ends_the_command(watched, entries, sentence):
    script(watched, *PERSONALITY_ANSWERS, {"operation": 61})
    result = run_with_answers(watched, SET_PERSONALITY, *entries)
    assert (result.exit_code, result.errors.decode().rstrip("\r\n")) == (2, f"tavrohost: {sentence}")
    assert operations(watched, 61) == []


def test_the_report_tells_why_a_command_was_ended(watched):
    script(watched, *PERSONALITY_ANSWERS)
    result, report = run_json(watched, SET_PERSONALITY, "--answers", write_answers(watched, message(29456, "2")))
    assert result.exit_code == 2
    assert (report["outcome"], report["failure"]) == ("failed", 'question 29197 "#29197 :" has no answer')
    assert report["output"].endswith("\t#29197 : ")


def ask_for_secret(sandbox, answer, *options, **names):
    script(sandbox, {"operation": 31})
    answers = write_answers(sandbox, message(28692, "user"), message(28693, answer))
    return run_json(sandbox, SET_INITIATOR, "--answers", answers, **names)


def test_a_secret_from_a_file_appears_nowhere(watched):
    file = watched.folder / "the secret"
    file.write_text(CHAP_SECRET + "\n", encoding="utf-8")
    result, report = ask_for_secret(watched, {"file": watched.platform.path(file)})
    assert (result.exit_code, report["outcome"]) == (0, "done")
    assert CHAP_SECRET.encode() not in result.output + result.errors
    [call] = operations(watched, 31)
    assert CHAP_SECRET in call["input"][1]


def test_a_secret_from_the_environment_appears_nowhere(watched):
    result, _ = ask_for_secret(watched, {"environment": "CHAP"}, env={"CHAP": CHAP_SECRET})
    assert result.exit_code == 0
    assert CHAP_SECRET.encode() not in result.output + result.errors
    [call] = operations(watched, 31)
    assert CHAP_SECRET in call["input"][1]


@pytest.mark.platforms("sanitize")
def test_a_secret_stands_in_no_temporary_file(watched):
    """Looked for while the library has the secret and does not come back."""
    watched.use_library(watched.platform.folder / "variants" / "misbehaving" / LIBRARY)
    file = watched.folder / "the secret"
    file.write_text(CHAP_SECRET, encoding="utf-8")
    answers = write_answers(watched, message(28692, "user"), message(28693, {"file": str(file)}))
    watched.tool_arguments = ["run", "--json", "--answers", answers]
    process = watched.start(SET_INITIATOR, env={
        "MISBEHAVING_THROW": "DoOperation=sleep", "MISBEHAVING_CALLS": str(watched.folder / "called")})
    end = time.monotonic() + TIME_LIMIT
    files = {}
    while b"SetInitiator" not in files.get("journal", b""):
        assert time.monotonic() < end
        try:
            files = {path.name: path.read_bytes() for path in watched.temporary.glob("tavrohost-*/*")}
        except FileNotFoundError:
            pass  # the job was on its way to its place
    assert {"job.json", "output", "journal"} <= set(files)
    assert b"the secret" in files["job.json"]
    assert all(CHAP_SECRET.encode() not in content for content in files.values())
    process.terminate()
    process.communicate(timeout=TIME_LIMIT)
    assert process.returncode == -signal.SIGTERM


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("answer, told", [
    pytest.param(CHAP_SECRET, "asks for a secret, which has to come from a file or the environment", id="text"),
    pytest.param({"environment": "NOT_SET"}, "there is no environment variable NOT_SET", id="variable"),
    pytest.param({"file": "no such file"}, "no such file cannot be read", id="file"),
    pytest.param({"file": "."}, ". cannot be read", id="folder"),
    pytest.param({"environment": "TWO_LINES"}, "the environment variable TWO_LINES must hold one line without control "
                 "characters, of at most 4000 bytes", id="two lines"),
])
def test_a_secret_has_to_be_where_it_should(watched, answer, told):
    result, report = ask_for_secret(watched, answer, env={"TWO_LINES": f"{CHAP_SECRET}\ny"})
    assert result.exit_code == 2
    assert 'question 28693 "#28693 :"' in report["failure"]
    assert report["failure"].endswith(told)
    assert CHAP_SECRET.encode() not in result.output + result.errors
    assert operations(watched, 31) == []


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("content, told", [
    pytest.param("", b"answers.json: ", id="empty"),
    pytest.param('{"format": 1}', b"answers.json: answers: is missing", id="no answers"),
    pytest.param('{"format": 2, "answers": []}', b"answers.json: format: ", id="newer"),
    pytest.param(None, b"answers.json: there is no such file", id="missing"),
])
def test_damaged_answers_are_told_and_nothing_is_done(watched, content, told):
    path = watched.folder / "answers.json"
    if content is not None:
        path.write_text(content, encoding="utf-8")
    watched.tool_arguments = ["run", "--answers", watched.platform.path(path)]
    result = watched.run(SET_PERSONALITY)
    assert (result.exit_code, result.output) == (2, b"")
    assert told in result.errors
    assert watched.calls() == []


@pytest.mark.platforms("native", "windows")
def test_a_terminal_shows_answers_as_if_they_were_typed(watched):
    script(watched, *PERSONALITY_ANSWERS)
    watched.tool_arguments = ["run", "--answers", write_answers(watched, message(29456, "2"))]
    with Terminal(watched, SET_PERSONALITY) as terminal:
        assert terminal.wait_for_end() == 2
        shown = [line.strip() for line in terminal.lines()]
    assert "#29456 : 2" in shown
    assert shown[-2:] == ["#29197 :", 'tavrohost: question 29197 "#29197 :" has no answer']


@pytest.mark.platforms("native")
def test_a_report_shows_no_questions_so_a_terminal_cannot_answer_them(watched):
    script(watched, *PERSONALITY_ANSWERS)
    watched.tool_arguments = ["run", "--json"]
    with Terminal(watched, SET_PERSONALITY) as terminal:
        assert terminal.wait_for_end() == 2
        assert 'tavrohost: question 29456 "#29456 :" has no answer' in terminal.text()


# ---- The dialogues of the cases ----------------------------------------------------------------------------

NUMBER = re.compile(r"#(\d+)")
# The prompts of secrets: CHAP logins, and the boot settings with their confirmations.
SECRETS = {("message", number) for number in (28693, 28695, 28696, 26671, 26679, 26687, 26690, 26693)}


# What a refused answer is met with: the messages, and the one text that is none.
REFUSALS = {22035, 22283, 22284, 22285, 22286, 22289, 26689, 26691, 26692, 26703, 28673, 28690, 28696, 28697,
            29186, 29190, 29192, 29196, 29958, 29959, 29960}
REFUSING_TEXT = "Please enter in a specified format"
# Refuses an answer in this command, and tells of a refused write in others.
VALUE_REFUSED, VALUES_ARE_ANSWERS = 29202, "-setadapinfo"


def shows_refusal(step):
    """Whether the step's screen says that an answer was refused, be it asked for again or not."""
    shown = step.output or step.output_start
    refusals = REFUSALS | ({VALUE_REFUSED} if VALUES_ARE_ANSWERS in step.arguments else set())
    return REFUSING_TEXT in shown or any(int(number) in refusals for number in NUMBER.findall(shown))


def has_questions(step):
    """Whether the step's questions can be answered by a document: each shows a number, or is a fixed prompt."""
    return bool(step.questions) and not step.typed_as_is and step.script and step.script["messages"] == "numbers"


def dialogue_cases():
    """All natively, and of each dialogue under Wine the first case in which it is led."""
    all_cases = [case for case in cases.load_all() if any(has_questions(step) for step in case.steps)]
    native, windows = PLATFORMS["native"], PLATFORMS["windows"]
    runs = [(case, native) for case in all_cases if native in case.platforms]
    dialogues = {}
    for case in all_cases:
        if windows in case.platforms:
            dialogues.setdefault(tuple(word for word in case.steps[0].arguments if word.startswith("-")), case)
    return runs + [(case, windows) for case in list(dialogues.values())[::3]]


def pytest_generate_tests(metafunc):
    if "case" in metafunc.fixturenames:
        runs = dialogue_cases()
        metafunc.parametrize("case, platform", runs, ids=[f"{platform.name}:{case.name}" for case, platform in runs])


def key_of(line):
    """What names a question in the document: the last message that its line shows, or the line's text."""
    numbers = NUMBER.findall(line)
    return ("message", int(numbers[-1])) if numbers else ("prompt", line.strip())


def answer_document(sandbox, step):
    """The step's answers; secrets lie in files of their own."""
    entries = {}
    for count, (line, typed) in enumerate(step.questions):
        key = key_of(line)
        answer = typed
        if key in SECRETS:
            file = sandbox.folder / f"answer{count}"
            file.write_bytes(typed.encode(sandbox.platform.encoding(step.locale)))
            answer = {"file": sandbox.platform.path(file)}
        entries.setdefault(key, []).append(answer)
    return write_answers(sandbox, *({kind: name, "answers": answers} for (kind, name), answers in entries.items()))


def test_dialogue(case, platform, tmp_path):
    """With answers a dialogue goes as if they were typed, up to the first that is refused or missing."""
    sandbox = prepare(case, platform, tmp_path)
    for place, step in numbered_steps(case):
        if not has_questions(step):
            sandbox.tool_arguments = None
            run_step(sandbox, step)
            continue
        sandbox.tool_arguments = ["run", "--answers", answer_document(sandbox, step)]
        silent = dataclasses.replace(step, env=step.env | OUTPUTS, typed="")
        result, calls = run_step(sandbox, silent)
        status = expected_status(step, True, calls)
        if result.exit_code == 2 or shows_refusal(step):
            assert result.exit_code == 2
            told = result.errors.decode()
            assert re.fullmatch(r'tavrohost: (the answer to )?question [^\n]* (was refused|has no answer|'
                                r'is asked again and has no further answer)\r?\n', told), told
            shown = platform.encode(step.output or step.output_start, step.locale)
            assert shown.startswith(result.output)
            assert status == 1
            return
        expected = dataclasses.replace(step, exit_code=status)
        problems = compare_run(expected, platform, place, (result, as_the_case_traces(calls, step)))
        if problems:
            pytest.fail("\n".join(problems))
