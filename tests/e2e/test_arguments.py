"""Arguments reach the program as they were typed, or not at all."""

import subprocess

import pytest

from program import DEFAULT_LOCALE, TIME_LIMIT, WINE, check_that_wine_works, copy_file

# What stands behind the program's name on a Windows command line, and the arguments that the C runtime's rules
# make of it: blanks and tabs part; quotes keep them; backslashes count only in front of a quote, where a pair
# stands for one and a single one makes the quote a character; two quotes within quotes are one character.
SPLIT = {
    r'"ab\"c" "\\" d': ['ab"c', "\\", "d"],
    r'a\\\b d"e f"g h': [r"a\\\b", "de fg", "h"],
    r'a\\\"b c d': [r"a\"b", "c", "d"],
    r'a\\\\"b c" d e': [r"a\\b c", "d", "e"],
    '"a""b"': ['a"b'],
    '"a b': ["a b"],
    'a "b c\\': ["a", "b c\\"],
    "a\tb \t c": ["a", "b", "c"],
    '"" a ""': ["", "a", ""],
    r"a\ b": ["a\\", "b"],
    r'"a b\\" c': ["a b\\", "c"],
    "a\nb\vc": ["a\nb\vc"],
    'a"b c"d"e"': ["ab cde"],
    "a  ": ["a"],
    "* ?": ["*", "?"],
    "'a b'": ["'a", "b'"],
}

LOOK_ALIKES = "é日＂xµ∞"


@pytest.mark.parametrize("argument", ["*", "-abou?", "-a*", '"-about"', "'-about'"])
def test_wildcards_and_quotes_are_not_interpreted(sandbox, argument):
    """The only file to be found has a command's name, so that an expansion would run that command."""
    (sandbox.work / "-about").write_bytes(b"")
    result = sandbox.run([argument])
    assert result.output == sandbox.platform.encode(" \n#28674\n", DEFAULT_LOCALE)


def run_raw(sandbox, program, tail, locale=DEFAULT_LOCALE):
    """Runs a Windows program with this text behind its name on the command line."""
    programs = sandbox.platform.folder / "programs"
    line = sandbox.folder / "line"
    line.write_bytes(f'"{sandbox.platform.path(program)}" {tail}'.encode("utf-16-le", "surrogatepass"))
    result = subprocess.run(
        [str(WINE), str(programs / "start_raw.exe"), sandbox.platform.path(line)],
        cwd=sandbox.work, env=sandbox.environment(locale), stdin=subprocess.DEVNULL, capture_output=True,
        timeout=TIME_LIMIT, check=False,
    )
    check_that_wine_works(result.args, result.returncode, result.stderr)
    return result


@pytest.mark.platforms("windows")
@pytest.mark.parametrize("tail", SPLIT)
def test_the_command_line_is_split_as_the_runtime_does(sandbox, tail):
    result = run_raw(sandbox, sandbox.platform.folder / "programs" / "show_arguments.exe", tail)
    assert (result.returncode, result.stderr) == (0, b"")
    shown = result.stdout.decode("ascii").split()
    taken, runtime = shown[1:shown.index("runtime")], shown[shown.index("runtime") + 1:]
    assert shown[0] == "taken"
    assert [bytes.fromhex(word[1:]).decode("ascii") for word in taken[1:]] == SPLIT[tail]
    assert taken == runtime


def set_initiator(name):
    return ["-iscsi", "-setinitiator", name]


def names_set(sandbox):
    """The initiator names that reached the library, as bytes."""
    return [
        b"".join(bytes([ord(unit) - 0xF700]) if 0xF700 <= ord(unit) <= 0xF7FF else unit.encode("utf-8")
                 for unit in call["input"][0])
        for call in sandbox.calls() if call.get("operation") == 31
    ]


REFUSED = [
    (LOOK_ALIKES, "en_US.UTF-8"),
    ("日", "en_US.UTF-8"),
    ("\N{FULLWIDTH QUOTATION MARK}x", "en_US.UTF-8"),
    ("∞", "en_US.UTF-8"),
    ("é", "ja_JP.UTF-8"),
]


def check_is_refused(sandbox, result, position):
    output, errors, code = result
    assert (output, code) == (b"", 0)
    line = errors.decode("ascii")
    assert line.endswith("\r\n") and line.count("\n") == 1
    assert f"argument {position} " in line
    assert sandbox.calls() == []
    assert not (sandbox.work / "tavrocli.log").exists()


@pytest.mark.platforms("windows")
@pytest.mark.parametrize("name, locale", REFUSED)
def test_what_the_code_page_lacks_is_refused(sandbox, name, locale):
    result = sandbox.run(set_initiator(name), locale=locale)
    check_is_refused(sandbox, (result.output, result.errors, result.exit_code), 3)


@pytest.mark.platforms("windows")
def test_the_first_refused_argument_is_named(sandbox):
    """An argument that nothing reads counts as well; there, it might be a name that was to be quoted."""
    result = sandbox.run(["-about", "é", "日", "∞"])
    check_is_refused(sandbox, (result.output, result.errors, result.exit_code), 3)


@pytest.mark.platforms("windows")
@pytest.mark.parametrize("locale", ["en_US.UTF-8", "hi_IN.UTF-8"])
def test_half_a_surrogate_pair_is_refused(sandbox, locale):
    result = run_raw(sandbox, sandbox.binaries / "tavrocli.exe", "-iscsi -setinitiator a\ud83db", locale)
    check_is_refused(sandbox, (result.stdout, result.stderr, result.returncode), 3)


@pytest.mark.platforms("windows")
@pytest.mark.parametrize("name, locale, code_page", [
    ("éµx€", "en_US.UTF-8", "cp1252"),
    ("日本∞ｱソ", "ja_JP.UTF-8", "cp932"),
    ("设定", "zh_CN.UTF-8", "cp936"),
    (LOOK_ALIKES + "\U0001F600", "hi_IN.UTF-8", "utf-8"),
])
def test_what_the_code_page_has_arrives_in_it(sandbox, name, locale, code_page):
    result = sandbox.run(set_initiator(name), locale=locale)
    assert (result.errors, result.exit_code) == (b"", 0)
    assert names_set(sandbox) == [name.encode(code_page)]


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("name", [LOOK_ALIKES.encode(), b"\xff\xfe\x80"])
def test_bytes_are_not_interpreted(sandbox, name):
    result = sandbox.run(set_initiator(name))
    assert (result.errors, result.exit_code) == (b"", 0)
    assert names_set(sandbox) == [name]


def test_the_programs_own_name_is_in_any_script(sandbox):
    folder = sandbox.folder / LOOK_ALIKES
    folder.mkdir()
    for file in sandbox.binaries.iterdir():
        copy_file(file, folder / file.name)
    sandbox.binaries = folder
    result = sandbox.run(["no-command"])
    assert (result.output, result.errors) == (sandbox.platform.encode(" \n#28674\n", DEFAULT_LOCALE), b"")
