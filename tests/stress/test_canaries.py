"""Secrets that stand nowhere else are led through every flow, and looked for in all that is left of it: the screen, the
log, the trace, files, errors about damaged files, and a core taken at each question."""

import json
import os
import random
import signal
import subprocess

import pytest

from canaries import Canaries, Watch, host_with_secrets, with_canaries
from dialogue_page import answers_document, read_dialogues
from limits import SECONDS, run_within
from questions import every_question, go_to
from terminal import Terminal
from test_capture import reading_commands
from test_crash_dumps import ALLOW_CORES, allow_cores
from test_run import folders_in

pytestmark = pytest.mark.platforms("native", "sanitize")
ON_EACH = pytest.mark.platforms("native", "sanitize", "windows")

NAME = "iqn.2015-01.com.example:host"
MAC = "02-00-5E-10-00-02"
DIALOGUES = read_dialogues()
COMMANDS = [*reading_commands(host_with_secrets()), ["-export"], ["-about"],
            ["-iscsi", MAC, "-portal", "-add", "198.51.100.20"], ["-iscsi", MAC, "-portal", "-remove", "198.51.100.77"],
            ["-iscsi", MAC, "-target", "-login", "iqn.2015-01.com.example:storage.vault", "2001:db8::20", "3260"]]


@pytest.fixture
def watch(sandbox, chance):
    watch = Watch(sandbox, Canaries(chance), {sandbox.host})
    watch.put_host()
    return watch


def run(watch, arguments, typed="", **env):
    sandbox = watch.sandbox
    return run_within(sandbox, sandbox.command(arguments), sandbox.platform.encode(typed, "en_US.UTF-8"),
                      env=watch.environment() | env)


def run_tool(watch, arguments, **env):
    return run_within(watch.sandbox, watch.sandbox.tool_command(arguments), env=watch.environment() | env)


# ---- What a host has -------------------------------------------------------------------------------

@pytest.mark.parametrize("arguments", COMMANDS, ids=" ".join)
def test_a_command_on_a_host_full_of_secrets(watch, arguments):
    result = run(watch, [*arguments, "-debug"], typed="y\n")
    assert (result.errors, result.exit_code) == (b"", 0)
    assert {"trace.jsonl", "tavrocli.log"} <= watch.check(result.output)


TOOL_COMMANDS = {
    "capture": ["capture"],
    "capture to a file": ["capture", "-o", "captured.json"],
    "anonymous capture": ["capture", "--anonymous"],
    "check": ["check", "HOST"],
    "check as JSON": ["check", "--json", "HOST"],
    "diff": ["diff", "HOST", "OTHER"],
    "diff as JSON": ["diff", "--json", "OTHER", "HOST"],
    "diff to nothing": ["diff", "HOST", "EMPTY"],
    "rehearse": ["rehearse", "--json", "--", "-iscsi", MAC, "-portal", "-remove", "198.51.100.77"],
    "rehearse on a captured host": ["rehearse", "--keep", "kept.json", "--save", "plan.json", "--",
                                    "-iscsi", MAC, "-portal", "-add", "198.51.100.20"],
    "run": ["run", "--json", "--", "-iscsi", "-getinitiator"],
    "run without a report": ["run", "--", "-iscsi", MAC, "-getbootconfig"],
    "restart": ["restart", "HOST"],
}
SILENT = ("capture to a file", "check", "restart")  # with nothing to be told


@ON_EACH
@pytest.mark.parametrize("command", TOOL_COMMANDS)
def test_a_command_of_tavrohost_on_a_host_full_of_secrets(watch, command):
    host = watch.sandbox.host
    other, empty = host.with_name("other.json"), host.with_name("empty.json")
    changed = with_canaries(host_with_secrets(), Canaries(watch.canaries.chance))
    other.write_text(json.dumps(changed), encoding="utf-8")
    empty.write_text('{"name": "empty", "adapters": []}', encoding="utf-8")
    others = Canaries(watch.canaries.chance)
    with_canaries(changed, others)
    watch.canaries.made |= {text: text for text in others.made}
    watch.inputs.add(other)
    places = {"HOST": host, "OTHER": other, "EMPTY": empty}
    arguments = [watch.sandbox.platform.path(places[word]) if word in places else word for word in TOOL_COMMANDS[command]]
    result = run_tool(watch, arguments)
    assert result.exit_code in (0, 1), result
    assert result.output or command in SILENT
    watch.check(result.output, result.errors)
    assert folders_in(watch.sandbox.folder / "temporary") == []


# ---- What is typed ---------------------------------------------------------------------------------

def chap(*arguments, mutual):
    """A flow with CHAP: the arguments, and what is typed at each prompt, with a refused secret before each accepted one."""
    answers = [("Target CHAP name :", "user", False), ("Target CHAP secret :", "too-short", True),
               ("Target CHAP secret :", "target-secret-1", True)]
    if mutual:
        answers += [("Initiator CHAP name :", "user", False), ("Initiator CHAP secret :", "too-long-by-some-characters", True),
                    ("Initiator CHAP secret :", "initiator-sec-1", True)]
    return [*arguments, "-mutualchap" if mutual else "-onewaychap"], answers


REFUSED = "The secret must have 12 to 16 characters :"  # asks anew
ALL_THE_SAME = "The target has not been discovered. Log in to it all the same? (y/n) :"


def flows():
    commands = {"initiator": ["-iscsi", "-setinitiator", NAME],
                "portal": ["-iscsi", MAC, "-portal", "-add", "198.51.100.20", "3260"],
                "portal that answers nothing": ["-iscsi", MAC, "-portal", "-add", "198.51.100.99", "3260"],
                "port that is not there": ["-iscsi", "02-00-5E-99-00-02", "-portal", "-add", "198.51.100.21", "3260"],
                "login": ["-iscsi", MAC, "-target", "-login", "iqn.2015-01.com.example:storage.vault", "2001:db8::20", "3260"]}
    made = {}
    for name, command in commands.items():
        for mutual in (False, True):
            arguments, answers = chap(*command, mutual=mutual)
            first = [(ALL_THE_SAME, "y", False)] if name == "login" else []
            made[f"{name}, {'mutual' if mutual else 'one way'}"] = arguments, first + answers
    for name in ("CHAP", "iSCSI boot"):
        dialogue = DIALOGUES[name]
        made[name] = dialogue.arguments, [(answer.prompt, answer.text, answer.is_secret) for answer in dialogue.answers]
    return made


FLOWS = flows()


def lead(watch, flow):
    """The arguments, and what is typed, with canaries for the secrets."""
    arguments, answers = FLOWS[flow]
    return arguments, [(prompt, watch.canaries.in_place_of(text) if is_secret else text, is_secret)
                       for prompt, text, is_secret in answers]


@ON_EACH
@pytest.mark.parametrize("flow", FLOWS)
def test_typed_into_a_pipe(watch, flow):
    arguments, answers = lead(watch, flow)
    result = run(watch, [*arguments, "-debug"], "".join(f"{text}\n" for _, text, _ in answers))
    assert (result.errors, result.exit_code) == (b"", 0)
    assert result.output.count(b"*" * 12) >= 1
    watch.check(result.output)


@ON_EACH
@pytest.mark.parametrize("flow", FLOWS)
def test_typed_on_a_terminal(watch, flow):
    arguments, answers = lead(watch, flow)
    with Terminal(watch.sandbox, [*arguments, "-debug"], env=watch.environment()) as terminal:
        before = None
        for prompt, text, is_secret in answers:
            again = is_secret and before == prompt
            (terminal.answer_secret if is_secret else terminal.answer)(REFUSED if again else prompt, text)
            before = prompt
        terminal.wait_for_end(SECONDS)
        watch.check(terminal.written, terminal.text().encode())


@pytest.mark.parametrize("source", ["file", "environment"])
@pytest.mark.parametrize("name", ["CHAP", "iSCSI boot"])
@pytest.mark.parametrize("command", ["run", "run --json", "rehearse", "rehearse --json"])
def test_answered_beforehand(watch, name, source, command):
    """Its file or variable is an input; the report, the twin, the plan and all that is temporary hold none."""
    dialogue = DIALOGUES[name]
    document, secrets = answers_document(dialogue.answers)
    secrets = {variable: watch.canaries.in_place_of(text) for variable, text in secrets.items()}
    text = json.dumps(document)
    if source == "file":
        for variable, secret in secrets.items():
            file = watch.sandbox.folder / f"secret of {variable}"
            file.write_text(secret, encoding="utf-8")
            watch.inputs.add(file)
            path = json.dumps(watch.sandbox.platform.path(file))
            text = text.replace(f'{{"environment": "{variable}"}}', f'{{"file": {path}}}')
    (watch.sandbox.work / "answers.json").write_text(text, encoding="utf-8")
    kept = ["--keep", "kept.json", "--save", "plan.json"] if command.startswith("rehearse") else []
    result = run_tool(watch, [*command.split(), "--answers", "answers.json", *kept, "--", *dialogue.arguments],
                      **(secrets if source == "environment" else {}))
    assert result.exit_code in (0, 1), result
    files = watch.check(result.output, result.errors)
    assert not kept or result.exit_code or {"kept.json", "plan.json"} <= files
    assert folders_in(watch.sandbox.folder / "temporary") == []


def test_a_secret_where_none_belongs(watch):
    """Among the login options, and as an answer in the document itself: the reports do not repeat it."""
    word = watch.canaries.in_place_of("a-secret-by-mistake")
    result = run_tool(watch, ["run", "--json", "--", "-iscsi", "-setinitiator", NAME, "-onewaychap", word])
    assert json.loads(result.output)["arguments"][-1] == "***"
    watch.check(result.output, result.errors)
    document = watch.sandbox.work / "answers.json"
    document.write_text(json.dumps({"format": 1, "answers": [
        {"message": 28692, "answers": ["user"]}, {"message": 28693, "answers": [word]}]}), encoding="utf-8")
    watch.inputs.add(document)
    for options in (["--json"], []):
        result = run_tool(watch, ["run", *options, "--answers", "answers.json", "--",
                                  "-iscsi", "-setinitiator", NAME, "-onewaychap"])
        assert result.exit_code == 2
        watch.check(result.output, result.errors)


# ---- A core at each question -----------------------------------------------------------------------

WITH_SECRETS = [place for place in every_question() if place.dialogue.name in ("CHAP", "iSCSI boot")]
# Ends a process with a core.
CORE_SIGNALS = (signal.SIGABRT, signal.SIGQUIT, signal.SIGSEGV, signal.SIGSYS, signal.SIGXCPU)


@pytest.fixture
def typing(sandbox, chance):
    """A watch over what is typed alone, on the built-in host: what a library keeps in memory is not the program's."""
    sandbox.write_script(None)
    return Watch(sandbox, Canaries(chance), {sandbox.host})


def texts(watch, dialogue):
    """What is typed, with canaries for the secrets."""
    return [watch.canaries.in_place_of(answer.text) if answer.is_secret else answer.text for answer in dialogue.answers]


def check_core(watch, place, status, ending, shown):
    """Once a secret was asked for there is no core; before, it holds none. A system that keeps cores elsewhere tells
    whether there is one all the same."""
    assert os.WTERMSIG(status) == ending
    is_past_a_secret = any(answer.is_secret for answer in place.dialogue.answers[:place.number + 1])
    if is_past_a_secret:
        assert not os.WCOREDUMP(status)
        assert list(watch.sandbox.work.glob("core*")) == []
    watch.check(shown)


@pytest.mark.platforms("native")
@pytest.mark.parametrize("place", WITH_SECRETS, ids=str)
def test_a_core_on_a_terminal(typing, place, monkeypatch):
    monkeypatch.setattr("terminal.heed_signals", heed_all)
    ending = typing.canaries.chance.choice(CORE_SIGNALS)
    typed = texts(typing, place.dialogue)
    with Terminal(typing.sandbox, place.dialogue.arguments, env=typing.environment() | ALLOW_CORES) as terminal:
        go_to(terminal, place, typed)
        if place.asked.is_secret:
            terminal.type(typed[place.number][:8])
            terminal.wait_for("*" * 8, SECONDS)
        os.kill(terminal.child.pid, ending)
        terminal.wait_for_end(SECONDS)
        check_core(typing, place, terminal.child.status, ending, terminal.written)


@pytest.mark.platforms("native")
@pytest.mark.parametrize("place", WITH_SECRETS, ids=str)
def test_a_core_of_a_pipe(typing, place):
    """A secret waits in the pipe already, without its line's end; but for the question that takes a single character."""
    ending = typing.canaries.chance.choice(CORE_SIGNALS)
    typed = texts(typing, place.dialogue)
    waiting = typing.canaries.in_place_of("waits-in-the-pipe") if place.asked.prompt != ALL_THE_SAME else ""
    environment = typing.sandbox.environment(extra=typing.environment() | ALLOW_CORES)
    with subprocess.Popen(typing.sandbox.command(place.dialogue.arguments), cwd=typing.sandbox.work, env=environment,
                          stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          preexec_fn=heed_all) as process:
        process.stdin.write(("".join(f"{line}\n" for line in typed[:place.number]) + waiting).encode())
        process.stdin.flush()
        shown = read_prompts(process, [answer.prompt for answer in place.dialogue.answers[:place.number + 1]])
        os.kill(process.pid, ending)
        _, status = os.waitpid(process.pid, 0)
        process.returncode = -os.WTERMSIG(status)
        shown += process.stdout.read() + process.stderr.read()
    check_core(typing, place, status, ending, shown)


def heed_all():
    allow_cores()
    for number in CORE_SIGNALS:
        signal.signal(number, signal.SIG_DFL)


def read_prompts(process, prompts):
    """Reads up to the last of these prompts."""
    shown, place = b"", 0
    for prompt in prompts:
        while prompt.encode() not in shown[place:]:
            byte = process.stdout.read(1)
            assert byte, f"{prompt!r} was not asked: {shown.decode()}"
            shown += byte
        place = shown.index(prompt.encode(), place) + len(prompt.encode())
    return shown


# ---- Damaged files ---------------------------------------------------------------------------------

def wrong_kind(text, canary, chance):
    """In the place of the secret stands a value of another kind, which holds it."""
    value = chance.choice((f'["{canary}"]', f'{{"{canary}": 1}}', f'{{"a": ["{canary}"]}}', f'[{{"{canary}": "{canary}"}}]'))
    return text.replace(f'"{canary}"', value, 1)


def as_a_name(text, canary, chance):
    """The secret is the name of a member, once or twice."""
    return text.replace(f'"{canary}"', f'"a", "{canary}": 1' + chance.choice(("", f', "{canary}": 2')), 1)


def cut_off(text, canary, chance):
    return text[:text.index(canary) + chance.randint(0, len(canary))]


def lost_character(text, canary, chance):
    """One of the characters around it is missing."""
    place = text.index(canary) + chance.choice((-1, -2, -3, len(canary), len(canary) + 1))
    return text[:place] + text[place + 1:]


def bad_character(text, canary, chance):
    place = text.index(canary) + chance.randrange(len(canary))
    return text[:place] + chance.choice(("\udcff", "\\x", "\\ud800", "\n", "\x00", "\x1b", "\\u12", '"')) + text[place:]


def without_quotes(text, canary, chance):
    return text.replace(f'"{canary}"', canary, 1)


DAMAGES = (wrong_kind, as_a_name, cut_off, lost_character, bad_character, without_quotes)
ROUNDS = range(20)
READERS = {
    "the program": ["-showadapter", "-debug"],
    "check": ["check", "HOST"],
    "diff": ["diff", "HOST", "HOST"],
    "rehearse": ["rehearse", "--json", "--host", "HOST", "--", "-about"],
    "capture": ["capture"],
}


@pytest.mark.parametrize("number", ROUNDS)
@pytest.mark.parametrize("reader", READERS)
@pytest.mark.parametrize("damage", DAMAGES, ids=lambda damage: damage.__name__)
def test_a_damaged_host_file(watch, damage, reader, number):
    """Whatever is wrong with it, what is said of it quotes nothing."""
    host = watch.sandbox.host
    chance = watch.canaries.chance
    text = damage(host.read_text(encoding="utf-8"), chance.choice([*watch.canaries.made.values()]), chance)
    host.write_bytes(text.encode("utf-8", errors="surrogateescape"))
    arguments = [watch.sandbox.platform.path(host) if word == "HOST" else word for word in READERS[reader]]
    result = (run if reader == "the program" else run_tool)(watch, arguments)
    assert result.exit_code in ((0,) if reader == "the program" else (0, 1, 2)), result
    watch.check(result.output, result.errors)


CONFIGURATION = """<Config>
  <Initiator_Login><Target_Secret value="{0}"/><Initiator_Secret value="{1}"/></Initiator_Login>
  <Adapter number="0"><Function port="Port 1" number="2">
    <Portal_Login><Target_Secret value="{2}"/><Initiator_Secret value="{3}"/></Portal_Login>
    <Target_Login><Status value="Connected"/><Target_Secret value="{4}"/><Initiator_Secret value="{5}"/></Target_Login>
  </Function></Adapter>
</Config>"""


def damage_somewhere(text, chance):
    """Some characters are missing, doubled or others."""
    for _ in range(chance.randint(1, 3)):
        place = chance.randrange(len(text))
        text = text[:place] + chance.choice(("", text[place] * 2, "<", '"', "&", "\x00", "\udcff", "]]>")) + text[place + 1:]
    return text[:chance.randint(0, len(text))] if chance.random() < 0.2 else text


@pytest.mark.parametrize("number", range(60))
def test_an_import(watch, number):
    """The first is whole, the others are damaged; secrets are longer than they may be in some."""
    chance = watch.canaries.chance
    secrets = [watch.canaries.in_place_of(f"imported {index}".ljust(chance.choice((12, 16, 40)))) for index in range(6)]
    text = CONFIGURATION.format(*secrets)
    file = watch.sandbox.work / "cnadiscovery.xml"
    file.write_bytes((damage_somewhere(text, chance) if number else text).encode("utf-8", errors="surrogateescape"))
    watch.inputs.add(file)
    result = run(watch, ["-import", "-debug"])
    assert (result.errors, result.exit_code) == (b"", 0)
    watch.check(result.output)


# ---- The search itself -----------------------------------------------------------------------------

@pytest.mark.parametrize("hide", [str.encode, lambda text: text.encode("utf-16-le"), lambda text: text.encode("utf-32-le"),
                                  lambda text: text.encode().hex().encode(), lambda text: text[3:9].encode()])
def test_a_canary_is_found(hide):
    canaries = Canaries(random.Random(1))
    canary = canaries.in_place_of("twelve-chars")
    assert canaries.found_in(b"x" + hide(canary) + b"y") == [canary]
    assert canaries.found_in(canary[:5].encode()) == []
