"""Names that hold sequences for terminals, C1 characters and bytes that are no UTF-8, from every source: a terminal's screen
is unharmed, and a pipe gets them as they are."""

import copy
import json
import os

import pytest

import cases
from hostile import bad_bytes, check_unharmed, hostile_text, in_a_pipe, masked
from host_tool import DEFAULT_HOST
from limits import SECONDS
from program import PLATFORMS, Sandbox
from terminal import Terminal
from test_capture import reading_commands
from test_cases import prepare

pytestmark = pytest.mark.platforms("native", "sanitize")

ROWS = 50  # of the screen; what is longer scrolls


def on_a_terminal(sandbox, arguments, env=None, expected=None, locale="en_US.UTF-8"):
    with Terminal(sandbox, arguments, env=env, locale=locale, rows=ROWS) as terminal:
        status = terminal.wait_for_end(SECONDS)
        check_unharmed(terminal, expected)
    return status


def run_both(sandbox, arguments, env=None):
    """Through a pipe and on a terminal, which has to show the same with every control character masked."""
    start = sandbox.host.read_bytes() if sandbox.host.exists() else None
    result = sandbox.run(arguments, env=env)
    assert (result.errors, result.exit_code) == (b"", 0)
    if start is not None:
        sandbox.host.write_bytes(start)
    try:
        expected = masked(result.output.decode("utf-8"))
    except UnicodeDecodeError:  # the bytes of an argument, say
        expected = None
    assert on_a_terminal(sandbox, arguments, env, expected) == 0
    return result.output


# ---- Every text that a library returns -------------------------------------------------------------

def places_of_texts(value, path=()):
    """The paths to all texts in an answer's outputs and error."""
    if isinstance(value, str):
        yield path
    elif isinstance(value, (list, dict)):
        for key, member in value.items() if isinstance(value, dict) else enumerate(value):
            yield from places_of_texts(member, (*path, key))


def texts_of(script):
    return [("answers", number, name, *path)
            for number, answer in enumerate(script["answers"]) for name in ("output", "error") if name in answer
            for path in places_of_texts(answer[name])]


def changed(value, path, change):
    """The JSON value with another text at a path."""
    value = copy.deepcopy(value)
    place = value
    for key in path[:-1]:
        place = place[key]
    place[path[-1]] = change(place[path[-1]])
    return value


def keywords(case):
    return {word for word in case.steps[0].arguments if word.startswith("-")}


def cases_with_texts():
    """Those of commands that ask nothing (another text could make one ask, and at the end of the input it asks on and on), and
    have texts to show."""
    all_cases = cases.load_all()
    asking = [keywords(case) for case in all_cases if case.steps[0].questions]
    return [case for case in all_cases
            if not any(words <= keywords(case) for words in asking)
            and PLATFORMS["native"] in case.platforms and case.has_library and case.without is None
            and case.steps[0].output is not None and not case.steps[0].typed and case.steps[0].script
            and texts_of(case.steps[0].script)]


def pytest_generate_tests(metafunc):
    if "case" in metafunc.fixturenames:
        runs = [(case, PLATFORMS[name]) for case in cases_with_texts() for name in ("native", "sanitize")]
        metafunc.parametrize("case, platform", runs, ids=[f"{platform.name}:{case.name}" for case, platform in runs])


@pytest.mark.parametrize("make", [hostile_text, bad_bytes], ids=lambda make: make.__name__)
def test_a_text_of_a_library(case, platform, make, tmp_path, chance):
    """One text of the case's answers is hostile; where the same text without harm is shown, so is the hostile one."""
    step = case.steps[0]
    path = chance.choice(texts_of(step.script))
    text = make(chance)
    shown = {}
    for name, suffix in (("harmless", "XharmlessZ"), ("hostile", text)):
        sandbox = prepare(case, platform, tmp_path / name)
        sandbox.write_script(changed(step.script, path, lambda before, suffix=suffix: before + suffix))
        shown[name] = run_both_of(sandbox, step)
    if b"XharmlessZ" in shown["harmless"]:
        assert any(bytes_ in shown["hostile"] for bytes_ in in_a_pipe(text)), shown["hostile"]


def run_both_of(sandbox, step):
    result = sandbox.run(step.arguments, locale=step.locale, env=step.env)
    expected = masked(result.output.decode("utf-8"))
    with Terminal(sandbox, step.arguments, env=step.env, locale=step.locale, rows=ROWS) as terminal:
        terminal.wait_for_end(SECONDS)
        check_unharmed(terminal, expected if not result.errors else None)
    return result.output


# ---- Every name of a host --------------------------------------------------------------------------

# The members of a host file that are free texts; by their names alone, wherever they stand.
FREE = {"alias", "serialNumber", "partNumber", "firmwareVersion", "interface", "deviceName", "symbolicName", "vendor", "product",
        "capacity", "volumes", "blockSize", "deviceType", "targetName", "initiatorName", "driver", "fcoe", "name"}


def hostile_host(chance):
    """The simulator's own host, every free text of it hostile; and these texts. Where the targets keep their names, commands
    find them."""
    texts = []
    kept = ("Port ", "iqn.") if chance.random() < 0.5 else "Port "

    def hostile(value, key=None):
        if isinstance(value, dict):
            return {name: hostile(member, name) for name, member in value.items()}
        if isinstance(value, list):
            return [hostile(element) for element in value]
        if isinstance(value, str) and key in FREE and not value.startswith(kept):
            texts.append(chance.choice((hostile_text, bad_bytes))(chance))
            return value + texts[-1]
        return value

    text = json.dumps(hostile(copy.deepcopy(DEFAULT_HOST)), ensure_ascii=False)
    return text, texts


COMMANDS = [*reading_commands(DEFAULT_HOST), ["-showadapter", "-debug"]]


@pytest.fixture
def host(sandbox, chance):
    sandbox.write_script(None)
    text, sandbox.texts = hostile_host(chance)
    sandbox.host.write_text(text, encoding="utf-8")
    return sandbox


@pytest.mark.parametrize("arguments", COMMANDS, ids=" ".join)
def test_the_names_of_a_host(host, arguments):
    output = run_both(host, arguments)
    assert b"The host file cannot be used" not in output
    if arguments[0] == "-showadapter":
        assert any(bytes_ in output for text in host.texts for bytes_ in in_a_pipe(text))
    log = host.work / "tavrocli.log"
    if "-debug" in arguments:  # there each is a dot
        line_ends_aside = log.read_text(encoding="utf-8").replace("\n", "").replace("\t", "")
        assert line_ends_aside and masked(line_ends_aside) == line_ends_aside


TOOL_COMMANDS = {
    "capture": ["capture", "-o", "captured.json"],
    "check": ["check", "HOST"],
    "diff": ["diff", "OTHER", "HOST"],
    "diff back": ["diff", "HOST", "OTHER"],
    "rehearse": ["rehearse", "--host", "HOST", "--", "-iscsi", "-isns", "-remove", "192.0.2.5"],
    "run": ["run", "--", "-showadapter"],
    "restart": ["restart", "HOST"],
}


@pytest.mark.parametrize("command", TOOL_COMMANDS)
def test_the_names_of_a_host_through_tavrohost(host, command, chance):
    other = host.folder / "other.json"
    other.write_text(hostile_host(chance)[0], encoding="utf-8")
    places = {"HOST": str(host.host), "OTHER": str(other)}
    host.tool_arguments = [places.get(word, word) for word in TOOL_COMMANDS[command]]
    host.command = lambda arguments: host.tool_command(host.tool_arguments)
    assert on_a_terminal(host, []) in (0, 1)


# ---- What a user hands over ------------------------------------------------------------------------

ARGUMENTS = [["-iscsi", "HERE", "-portinfo"], ["-fcoe", "HERE", "-target", "-listactive"], ["-ethernet", "HERE", "-portstat"],
             ["-npar", "HERE", "-get"], ["-HERE"], ["HERE"], ["-iscsi", "-isns", "-add", "HERE"], ["-iscsi", "-setinitiator", "HERE"],
             ["-iscsi", "02-00-5E-10-00-02", "-portal", "-add", "HERE"], ["-iscsi", "02-00-5E-10-00-02", "-target", "-getinfo", "HERE"],
             ["-fcoe", "10:00:02:00:5E:10:00:04", "-setfip", "HERE"], ["-fcoe", "10:00:02:00:5E:10:00:04", "-target", "-ping", "HERE"],
             ["-iscsi", "02-00-5E-10-00-02", "-ping", "HERE"], ["-showadapter", "HERE"]]
PATTERNS = range(6)


def hostile_argument(chance):
    """As Python hands it over: bytes that are no UTF-8 stand as surrogates."""
    text = chance.choice((hostile_text, bad_bytes))(chance).replace("\x00", "\x01")
    return "".join(chr(0xDC00 + ord(letter) - 0xF700) if 0xF780 <= ord(letter) <= 0xF7FF else letter for letter in text)


@pytest.mark.parametrize("number", PATTERNS)
@pytest.mark.parametrize("arguments", ARGUMENTS, ids=" ".join)
def test_an_argument(sandbox, arguments, number, chance):
    sandbox.write_script(None)
    given = hostile_argument(chance)
    run_both(sandbox, [word.replace("HERE", given) for word in arguments])


DOCUMENTS = [["check", "HERE"], ["diff", "HERE", "HERE"], ["restart", "HERE"], ["HERE"], ["check", "--HERE"], ["capture", "-o", "HERE/x"],
             ["capture", "--library", "HERE"], ["run", "--answers", "HERE", "--", "-about"], ["run", "--plan", "HERE"],
             ["run", "--", "HERE"], ["schema", "HERE"], ["run", "--timeout", "HERE", "--", "-about"],
             ["rehearse", "--host", "HERE", "--", "-about"]]


@pytest.mark.parametrize("number", PATTERNS)
@pytest.mark.parametrize("arguments", DOCUMENTS, ids=" ".join)
def test_an_argument_of_tavrohost(sandbox, arguments, number, chance):
    sandbox.write_script(None)
    given = hostile_argument(chance)
    sandbox.command = lambda _: sandbox.tool_command([word.replace("HERE", given) for word in arguments])
    on_a_terminal(sandbox, [])


@pytest.mark.parametrize("number", PATTERNS)
@pytest.mark.parametrize("variable", ["TAVROSIM_HOST", "TAVROSIM_SCRIPT", "TAVROSIM_TRACE"])
def test_the_path_of_a_file(sandbox, variable, number, chance):
    """There is a folder of this name, so that the name is told."""
    sandbox.write_script(None)
    path = sandbox.work / hostile_argument(chance)
    path.mkdir()
    output = run_both(sandbox, ["-showadapter"], env={variable: str(path)})
    assert b"is a folder" in output


ANSWERS = {"answers": [{"message": 28692, "answers": ["HERE"]}, {"message": 28693, "answers": [{"file": "HERE"}]}]}
DOCUMENT_TEXTS = {
    "answers": (ANSWERS | {"format": 1}, ["run", "--answers", "FILE", "--", "-iscsi", "-setinitiator", "a", "-onewaychap"]),
    "a member of answers": ({"format": 1, "HERE": 1} | ANSWERS, ["run", "--answers", "FILE", "--", "-about"]),
    "a member of a host": ({"name": "h", "adapters": [], "HERE": 1}, ["check", "FILE"]),
    "a value of a host": (json.loads(json.dumps(DEFAULT_HOST).replace("02-00-5E-10-00-02", "HERE")), ["check", "FILE"]),
    "a plan": ({"format": 1, "HERE": "HERE"}, ["run", "--plan", "FILE"]),
}


@pytest.mark.parametrize("number", PATTERNS)
@pytest.mark.parametrize("source", DOCUMENT_TEXTS)
def test_a_text_of_a_document(sandbox, source, number, chance):
    sandbox.write_script(None)
    document, arguments = DOCUMENT_TEXTS[source]
    text = json.dumps(chance.choice((hostile_text, bad_bytes))(chance), ensure_ascii=chance.random() < 0.5)[1:-1]
    file = sandbox.work / "document.json"
    file.write_text(json.dumps(document).replace("HERE", text), encoding="utf-8")
    sandbox.command = lambda _: sandbox.tool_command([word.replace("FILE", "document.json") for word in arguments])
    assert on_a_terminal(sandbox, []) in (1, 2)


IMPORT = """<Config><Initiator_Login><Initiator_Name value="HERE"/><Target_CHAP_Name value="HERE"/></Initiator_Login>
<HERE a="HERE"/><Adapter number="0" name="HERE"><Function port="Port 1" number="2"><TCPIP><IPAddress value="HERE"/></TCPIP>
<Portal_Login><Portal_Address value="HERE"/></Portal_Login><Target_Login><Target_Name value="HERE"/></Target_Login>
</Function></Adapter></Config>"""


@pytest.mark.parametrize("number", range(20))
def test_an_import(sandbox, number, chance):
    sandbox.write_script(None)
    file = sandbox.work / "cnadiscovery.xml"
    file.write_bytes(os.fsencode(IMPORT.replace("HERE", hostile_argument(chance))))
    run_both(sandbox, ["-import"])


def test_harm_is_noticed(platform, tmp_path):
    """The checks themselves: a program that passes a name through harms the screen."""
    sandbox = Sandbox(platform, tmp_path)
    for harm in ("\\033[2J", "\\033]0;owned\\007", "\\302\\233K", "\\r"):
        sandbox.command = lambda _, harm=harm: ["printf", f"a name {harm} and more\\n"]
        with pytest.raises(AssertionError):
            on_a_terminal(sandbox, [])
    sandbox.command = lambda _: ["printf", "a name\\n"]
    assert on_a_terminal(sandbox, [], expected="a name\n") == 0
