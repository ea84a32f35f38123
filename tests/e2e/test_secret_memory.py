"""What is left of a secret in memory: nothing, whichever way the program took it. The library of these tests looks at
the program's writable memory when everything else has ended; it finds eight characters of the secret that stand
together, as bytes or as wide characters. Freed memory is kept as it is: by the sanitizer's own allocator, and in the
program without sanitizers by one that frees nothing."""

import json
import subprocess

import pytest

from terminal import Terminal

pytestmark = pytest.mark.platforms("native", "sanitize")

# All characters differ; and no eight of them follow one another in any table.
SECRET = "Zk7!pwQm4?rXsU9y"
LONG = SECRET + "x" * 300  # longer than the room that is made for a secret at first
MAC = "02-00-5E-00-00-01"
NAME = "iqn.2015-01.com.example:host"
LIST_TARGETS = 7  # comes before the first question


class Watched:
    """The program beside the library that watches, and what that reported."""

    def __init__(self, sandbox):
        libraries = sandbox.platform.folder / "secret_memory"
        sandbox.use_library(libraries / "tavro.dll")
        self.sandbox = sandbox
        self.report = sandbox.folder / "report"
        self.env = {
            "TAVRO_SECRET": bytes(255 - byte for byte in SECRET.encode()).hex(),
            "TAVRO_SECRET_REPORT": str(self.report),
            # Otherwise the system's loader stores the processor's registers, and what a copy left in them.
            "LD_BIND_NOW": "1",
        }
        if sandbox.platform.name == "native":
            self.env["LD_PRELOAD"] = str(libraries / "keep_freed.so")

    def run(self, arguments, typed="", env=None):
        return self.sandbox.run(arguments, typed, env=self.env | (env or {}))

    def given(self):
        """How many secrets each operation got, in order; checks that nothing is left and no core would be."""
        lines = self.report.read_text(encoding="utf-8").splitlines()
        assert [line for line in lines if line.startswith("left")] == []
        title, size = lines[-1].split()
        assert title == "searched" and int(size) > 100_000
        operations = [line.split(maxsplit=4) for line in lines if line.startswith("operation")]
        given = {int(operation): int(count) for _, operation, _, count, _ in operations}
        assert {core for _, operation, _, _, core in operations if int(operation) != LIST_TARGETS} <= {"no core"}
        return given


@pytest.fixture
def watched(sandbox):
    return Watched(sandbox)


CHAP = f"target user\n{LONG}\n{SECRET[:11]}\n{SECRET}\ninitiator user\n{SECRET}x\n{SECRET}\n"


@pytest.mark.parametrize("arguments, typed, operation", [
    (["-iscsi", "-setinitiator", NAME], CHAP, 31),
    (["-iscsi", MAC, "-portal", "-add", "192.0.2.9", "3260"], CHAP, 4),
    (["-iscsi", MAC, "-target", "-login", NAME, "192.0.2.9", "3260"], "y\n" + CHAP, 11),
], ids=["initiator", "portal", "target"])
def test_login_options(watched, arguments, typed, operation):
    assert watched.run([*arguments, "-mutualchap"], typed).exit_code == 0
    given = watched.given()
    given.pop(LIST_TARGETS, None)
    assert given == {operation: 2}


def test_login_options_given_twice(watched):
    watched.run(["-iscsi", "-setinitiator", NAME, "-onewaychap", "-onewaychap"],
                f"user\n{SECRET}\nuser\nanothersecret\n")
    assert watched.given() == {31: 0}


@pytest.mark.parametrize("arguments, operation", [
    (["-iscsi", "-getinitiator"], 30), (["-iscsi", MAC, "-getbootconfig"], 20)], ids=["initiator", "boot"])
def test_secrets_of_the_library(watched, arguments, operation):
    assert watched.run(arguments).exit_code == 0
    assert list(watched.given()) == [operation]


def boot_dialogue(*secrets):
    """What is typed for a whole boot configuration; each secret as the two lines of its questions."""
    initiator, first, second = ("\n".join(lines) for lines in secrets)
    address = "192.0.2.1"
    return "\n".join([
        "y", "y", "1", "1", address, address, address, NAME, "user", initiator,
        "y", address, "", "0", NAME, "user", first,
        "y", address, "0", "", NAME, "user", second,
        "n", "y", "y", ""])


def test_boot_dialogue(watched):
    typed = boot_dialogue((LONG, SECRET, SECRET, SECRET), (SECRET, SECRET), (LONG, LONG))
    watched.run(["-iscsi", MAC, "-setbootconfig"], typed)
    assert watched.given() == {20: 0, 21: 3}


def test_secrets_taken_back(watched):
    """Also what was typed and taken back is a secret."""
    back = "\b" * len(SECRET)
    typed = boot_dialogue((SECRET + back + "other", "other"), ("", ""), ("", ""))
    watched.run(["-iscsi", MAC, "-setbootconfig"], typed)
    assert watched.given() == {20: 0, 21: 0}


def test_input_that_is_not_read(watched):
    watched.run(["-iscsi", "-setinitiator", NAME, "-onewaychap"], f"user\nanothersecret\n{SECRET}\n")
    assert watched.given() == {31: 0}


def test_input_that_is_read_with_an_answer(watched):
    """A pipe hands over more than the answer, so no core must be left from then on."""
    watched.run(["-iscsi", MAC, "-target", "-login", NAME, "192.0.2.9"], f"y\n{SECRET}\n")
    assert watched.given() == {LIST_TARGETS: 0, 11: 0}


def test_a_secret_is_cut_off(watched):
    """Nobody sees the stars any more, so the program ends; the secret was half typed."""
    process = watched.sandbox.start(["-iscsi", "-setinitiator", NAME, "-onewaychap"], env=watched.env)
    process.stdin.write(f"user\n{SECRET}".encode())
    process.stdin.flush()
    shown = b""
    while shown.count(b"*") < len(SECRET):
        shown += process.stdout.read(1)
    process.stdout.close()
    process.stdout = None
    _, errors = process.communicate(b"z")
    assert (process.returncode, errors) == (0, b"")
    assert watched.given() == {}


def test_on_a_terminal(watched):
    arguments = ["-iscsi", "-setinitiator", NAME, "-onewaychap"]
    with Terminal(watched.sandbox, arguments, env=watched.env) as terminal:
        terminal.answer("#28692 :", "user")
        terminal.answer_secret("#28693 :", LONG)
        terminal.answer_secret("#28696 :", SECRET)
        assert terminal.wait_for_end() == 0
    assert watched.given() == {31: 1}


@pytest.mark.parametrize("secret, abandoned, given", [
    (SECRET, False, {31: 2}), (SECRET[:12], False, {31: 0}), (SECRET, True, {}), (LONG, False, {}),
    (f"{SECRET}\n{SECRET}", False, {})], ids=["accepted", "short", "abandoned", "refused", "two lines"])
def test_answers_from_a_file(watched, secret, abandoned, given):
    """The watched program in which the answers come from files."""
    file = watched.sandbox.folder / "secret"
    file.write_text(f"{secret}\n", encoding="utf-8")
    answers = [(28692, "user"), (28693, {"file": str(file)}), (28694, "user"), (28695, {"file": str(file)})]
    entries = [{"message": number, "answers": [answer]} for number, answer in answers[:2 if abandoned else 4]]
    document = watched.sandbox.folder / "answers.json"
    document.write_text(json.dumps({"format": 1, "answers": entries}), encoding="utf-8")
    watched.sandbox.tool_arguments = ["run", "--answers", str(document)]
    result = watched.run(["-iscsi", "-setinitiator", NAME, "-mutualchap"])
    assert result.exit_code == (0 if given else 2)
    assert watched.given() == given


def test_typed_into_the_watched_program(watched):
    watched.sandbox.tool_arguments = ["run", "--json"]
    assert watched.run(["-iscsi", "-setinitiator", NAME, "-mutualchap"], CHAP).exit_code == 0
    assert watched.given() == {31: 2}


LOGIN = f'<Target_Secret value="{LONG}"/><Initiator_Secret value="{SECRET}"/>'
INITIATOR = f"<Initiator_Login>{LOGIN}</Initiator_Login>"
PORTAL = f"<Portal_Login>{LOGIN}</Portal_Login>"
TARGET = f'<Target_Login><Status value="Connected"/>{LOGIN}</Target_Login>'


def configuration(initiator="<Other/>", port=""):
    return f'<C>{initiator}<A number="1"><P port="Port 1" number="2">{port}</P></A></C>'


@pytest.mark.parametrize("text, given", [
    (configuration(INITIATOR), {31: 2}),
    (configuration(port=PORTAL), {4: 2}),
    (configuration(port=TARGET), {11: 2}),
], ids=["initiator", "portal", "target"])
def test_import(watched, text, given):
    (watched.sandbox.work / "cnadiscovery.xml").write_text(text, encoding="utf-8")
    watched.run(["-import"])
    assert watched.given() == given


def test_import_of_a_value_given_twice(watched):
    twice = f'<Target_Secret value="{SECRET}"/><Target_Secret value="{"x" * 40}"/>'
    (watched.sandbox.work / "cnadiscovery.xml").write_text(
        configuration(f"<Initiator_Login>{twice}</Initiator_Login>"), encoding="utf-8")
    watched.run(["-import"])
    assert watched.given() == {31: 0}


@pytest.mark.parametrize("text", [configuration(INITIATOR)[:-4], INITIATOR + "\N{NO-BREAK SPACE}"],
                         ids=["open", "text behind"])
def test_import_of_a_malformed_file(watched, text):
    (watched.sandbox.work / "cnadiscovery.xml").write_text(text, encoding="utf-8")
    watched.run(["-import"])
    assert watched.given() == {}


@pytest.mark.parametrize("encoding, locale", [
    ("utf-8-sig", "en_US.UTF-8"), ("utf-16-le", "en_US.UTF-8"), ("latin-1", "C"), ("latin-1", "en_US.ISO-8859-1")])
def test_import_in_other_encodings(watched, encoding, locale):
    """A file in the encoding of the locale has no mark."""
    locales = watched.sandbox.folder / "locales"
    locales.mkdir()
    subprocess.run(["localedef", "-i", "en_US", "-f", "ISO-8859-1", str(locales / "en_US.ISO-8859-1")], check=True)
    text = configuration(INITIATOR).replace("<C>", "<C><!--\N{LATIN SMALL LETTER E WITH ACUTE}-->")
    (watched.sandbox.work / "cnadiscovery.xml").write_bytes(text.encode(encoding))
    env = {"LOCPATH": str(locales)} if locale.endswith("8859-1") else {}
    watched.run(["-import"], env={"LC_ALL": locale} | env)
    assert watched.given() == {31: 2}


@pytest.mark.parametrize("tail", ["\0".encode("utf-16-le") + LOGIN.encode("utf-16-le"), b"\n"],
                         ids=["text behind a zero", "half a unit"])
def test_import_of_odd_ends(watched, tail):
    text = configuration(INITIATOR).encode("utf-16-le")
    (watched.sandbox.work / "cnadiscovery.xml").write_bytes(text + tail)
    watched.run(["-import"])
    assert watched.given() == {31: 2}
