"""The rules by which cases are read, on small texts; and the example of README.md, which has to run."""

import json
import re

import pytest

import cases
from case_file import CaseError
from program import TESTS
from test_cases import test_case as run_case
from transcript import Blocks, TranscriptError, read_screen

ECHO = "- {name: n, args: -x, screen: '#1'}\n"
CASE = "- name: n\n  args: -x\n  screen: '#1'\n"  # more keys can follow


def write(root, **texts):
    """Writes files by their paths; `a__b` is a/b.yaml."""
    for name, text in texts.items():
        file = root / f"{name.replace('__', '/')}.yaml"
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")
    return file


@pytest.fixture
def load(tmp_path):
    """Writes files and reads the last one."""
    return lambda **texts: cases.load_file(write(tmp_path, **texts), tmp_path)


def step_of(case_list):
    (case,) = case_list
    (step,) = case.steps
    return step


def check_refusal(root, text, message, line, **others):
    """The message names the file and the line."""
    file = write(root, **others, wrong=text)
    with pytest.raises(CaseError, match=message) as refusal:
        cases.load_file(file, root)
    assert str(refusal.value).startswith(f"{file}:{line}: ")


@pytest.mark.parametrize("screen, output, typed", [
    ("", "", []),
    ("a\nb\n", "a\nb\n", []),
    ("a\nb", "a\nb", []),  # the last line is open
    ("a\n⏎\n", "a\n\n", []),
    ("\n⏎\n", "\n\n", []),
    ("→a→→b\n", "\ta\t\tb\n", []),
    ("a ␣\n␣ b\n", "a  \n  b\n", []),
    ("ask : «y»\n", "ask : ", ["y"]),
    ("ask : «y»", "ask : ", ["y"]),
    ("ask : «y»\n\nask : «no way »\nend\n", "ask : \nask : end\n", ["y", "no way "]),
    ("«»\n«→␣»\n", "", ["", "\t "]),
])
def test_screen(screen, output, typed):
    assert read_screen(screen) == (output, typed)


@pytest.mark.parametrize("screen, message", [
    ("a \n", "blank at the end of a line"),
    ("a\tb\n", "a tab is written"),
    ("a\n\n", "empty line at the end"),
    ("a⏎\n", "stands alone in its line"),
    ("«y» a\n", "at the end of its line"),
    ("«y»«n»\n", "at the end of its line"),
    ("«y\n", "at the end of its line"),
    ("y»\n", "at the end of its line"),
])
def test_screen_with_a_wrong_mark(screen, message):
    with pytest.raises(TranscriptError, match=message):
        read_screen(screen)


BLOCKS = {
    "title": "---\n${text:-Title}\n---\n",
    "line": "= ${value:-}\n",
    "both": "${title text=Both}\n${line}\n",
    "open": "no line end",
    "own": "${own}\n",
}


@pytest.mark.parametrize("screen, expanded", [
    ("${title}\nend\n", "---\nTitle\n---\nend\n"),
    ("${title text='two words'}\n", "---\ntwo words\n---\n"),
    ("${title text=}\n", "---\n\n---\n"),
    ("${line value=a=b}\n${line}\n", "= a=b\n= \n"),
    ("${both}\n", "---\nBoth\n---\n= \n"),
    ("<${open}>\n", "<no line end>\n"),
    ("$$ and $${title}\n", "$ and ${title}\n"),
])
def test_blocks(screen, expanded):
    assert Blocks(BLOCKS).expand(screen) == expanded


@pytest.mark.parametrize("screen, message", [
    ("${other}\n", "there is no block 'other'"),
    ("${title wrong=1}\n", "block 'title' has no value 'wrong'"),
    ("${title text}\n", "name=value"),
    ("${title text=1 text=2}\n", "each name once"),
    ("${title text='1}\n", "No closing quotation"),
    ("${text:-Title}\n", "a value stands in a block"),
    ("${own}\n", "block 'own' shows itself"),
    ("$title\n", r"a \$ that begins no"),
    ("5 $\n", r"a \$ that begins no"),
])
def test_blocks_that_are_wrong(screen, message):
    with pytest.raises(TranscriptError, match=message):
        Blocks(BLOCKS).expand(screen)


def test_blocks_know_which_were_shown():
    blocks = Blocks(BLOCKS)
    blocks.expand("${both}\n")
    assert blocks.shown == {"both", "title", "line"}


def test_what_is_typed_follows_the_screen_and_is_followed_by_what_nothing_reads(load):
    step = step_of(load(a="- name: n\n  args: -x\n  screen: |\n    ask : «y»\n    end\n  typed: ['1', no]\n"))
    assert (step.output, step.typed, step.typed_as_is) == ("ask : end\n", "y\n1\nno\n", False)


def test_plain_words_are_texts(load):
    step = step_of(load(a="- {name: n, args: -x, screen: '#1',\n"
                          "   script: [{call: C, output: [20:00:02, Yes, off, 1e3, 007, 2015-01-01, ~]}]}\n"))
    assert step.script["answers"] == [
        {"call": "C", "output": ["20:00:02", "Yes", "off", "1e3", "007", "2015-01-01", "~"]}]


def test_integers_truth_and_null_are_what_they_are(load):
    step = step_of(load(a=CASE + "  script: [{call: C, output: [0, -7, true, null, '1']}]\n"))
    assert json.dumps(step.script["answers"][0]["output"]) == '[0, -7, true, null, "1"]'


@pytest.mark.parametrize("args, words", [
    ("-a 'b c' \"\" d\\ e", ["-a", "b c", "", "d e"]),
    ("''", []),
    ("['a b', '']", ["a b", ""]),
])
def test_arguments(load, args, words):
    assert step_of(load(a=f"- name: n\n  args: {args}\n  screen: '#1'\n")).arguments == words


def test_defaults_of_script_and_calls(load):
    step = step_of(load(a="- {name: n, args: -x, screen: '#1', script: [{operation: 5}, {call: Initialize}],\n"
                          "   calls: [{operation: 5}, {call: C, status: 3}]}\n"))
    assert step.script == {"messages": "numbers", "model": False,
                           "answers": [{"call": "DoOperation", "operation": 5}, {"call": "Initialize"}]}
    assert step.calls == [{"call": "DoOperation", "status": 0, "operation": 5}, {"call": "C", "status": 3}]


def test_a_list_like_another(load):
    step = step_of(load(a="- values:\n    - &record [a, [b, c], d]\n"
                          "- name: n\n  args: -x\n  screen: '#1'\n"
                          "  script: [{operation: 5, output: {like: *record, 2: {like: *record, 0: e}}}]\n"
                          "  calls: [{operation: 5, input: {like: {like: *record, 1: f}, 0: g}}]\n"))
    assert step.script["answers"][0]["output"] == ["a", ["b", "c"], ["e", ["b", "c"], "d"]]
    assert step.calls[0]["input"] == ["g", "f", "d"]


def test_a_case_like_another(load):
    first, second = load(a="- &first\n  name: one\n  args: -x\n  screen: '#1'\n  exitCode: 3\n"
                           "- <<: *first\n  name: two\n  args: -y\n")
    assert (first.name, first.steps[0].arguments) == ("a/one", ["-x"])
    assert (second.name, second.steps[0].arguments) == ("a/two", ["-y"])
    assert first.steps[0].exit_code == second.steps[0].exit_code == 3


def test_shared_files_hold_in_their_folder_and_below(load):
    step = step_of(load(
        shared="- values:\n    - &call {operation: 5}\n- blocks:\n    title: |\n      top\n",
        family__shared="- blocks:\n    line: |\n      ${title}\n      line\n",
        family__model__a="- {name: n, args: -x, screen: '${line}', calls: [*call]}\n",
    ))
    assert (step.output, step.calls[0]["operation"]) == ("top\nline", 5)
    with pytest.raises(CaseError, match="there is no block 'line'"):
        load(b="- {name: n, args: -x, screen: '${line}'}\n")


def test_an_anchor_of_another_file_does_not_hold(tmp_path):
    check_refusal(tmp_path, "- {name: n, args: -x, screen: '#1',\n   calls: [*call]}\n", "undefined alias", 2,
                  a="- values:\n    - &call {operation: 5}\n- {name: n, args: -x, screen: '#1', calls: [*call]}\n")


@pytest.mark.parametrize("text, message, line", [
    ("", "no list of cases", 1),
    ("name: n\n", "no list of cases", 1),
    ("- blocks: {a: b}\n", "no case in the file", 1),
    ("- name: [\n", "did not find expected node content", 2),
    ("- args: -x\n  screen: '#1'\n", "a case has no name", 1),
    (ECHO + "\n" + ECHO, "two cases have the same name", 3),
    (CASE + "  args: -y\n", "the key 'args' stands twice", 4),
    (CASE + "  script: [{call: C,\n    call: D}]\n", "the key 'call' stands twice", 5),
    ("- name: n\n  args: -x\n  output: '#1'\n", "case 'n': unknown keys \\['output'\\]", 3),
    ("- name: n\n  screen: '#1'\n", 'case \'n\': no "args"', 1),
    ("- name: n\n  args: -x\n", "exactly one of", 1),
    (CASE + "  then:\n    - args: -y\n      screen: a\n      host: {}\n",
     "unknown keys \\['host'\\]", 7),
    ("- name: n\n  args: -x\n  then:\n    - args: -y\n      screen: a\n  screen: |\n    ${block}\n",
     "there is no block 'block'", 6),
    ("- name: n\n  args: -x\n  screen: |\n    #1\n    «y» b\n", "at the end of its line", 3),
    ("- name: n\n  args: [a, 1]\n  screen: '#1'\n", '"args" holds texts; 1 needs quotes', 2),
    ("- name: n\n  args: -x\n  screen: 1\n", '"screen" cannot be 1', 3),
    ("- name: n\n  args: -x\n  screen: «y»\n  stdinText: y\n", '"stdinText" beside other lines', 1),
    (CASE + "  calls:\n    - {operation: 1,\n       input: {like: [a], 1: b}}\n",
     "a position is one of 0 to 0, not 1", 6),
    (CASE + "  hostFile: hosts/other.json\n", "there is no file .*other.json", 1),
    (CASE + "  script: scripts/other.json\n", "there is no file .*other.json", 1),
    (CASE + "  files:\n    f: {path: other}\n", "there is no file .*other", 1),
    (CASE + "  files:\n    f: {text: t, encoding: utf-99}\n", "unknown encoding", 5),
    (CASE + "  files:\n    f: [t]\n", "a file is a text", 1),
    (CASE + "  files:\n    f: {path: other,\n        cut: 1}\n", "unknown keys \\['cut'\\]", 6),
    (CASE + "  files:\n    f: {text: t,\n        size: 1}\n", "unknown keys \\['size'\\]", 6),
    (CASE + "  script:\n    answer: []\n", "unknown keys \\['answer'\\]", 5),
    (CASE + "  calls: []\n  allCalls: []\n", '"calls" and "allCalls" together', 1),
    (CASE + "  platforms: [linux]\n", '"platforms" are among', 1),
    (CASE + "  platforms: []\n", '"platforms" are among', 1),
    (CASE + "  host: {}\n  hostFile: hosts/fcoe.json\n", '"host" and "hostFile" together', 1),
    (CASE + "  without: C\n  library: none\n", '"without" and "library" together', 1),
    (CASE + "  library: other\n", 'the only "library" is "none"', 1),
    ("- blocks:\n    a: b\n    c: [d]\n" + ECHO, "the block 'c' is no text", 3),
    ("- blocks:\n    a: b\n- blocks:\n    a: c\n" + ECHO, "there are two blocks 'a'", 4),
    ("- values:\n    - &one [a]\n    - &one [b]\n" + ECHO, "duplicate anchor", 3),
    ("- blocks:\n    a: b\n  name: n\n", "unknown keys \\['name'\\]", 3),
    ("- name: n\n  args: -x\n  screen: \x07\n", "U\\+0007 cannot stand in YAML", 3),
])
def test_mistakes_are_told_with_file_and_line(tmp_path, text, message, line):
    check_refusal(tmp_path, text, message, line)


def test_lines_are_counted_behind_shared_files(tmp_path):
    check_refusal(tmp_path, ECHO + "- name: m\n  wrong: 1\n", "unknown keys", 3, shared="- blocks:\n    a: b\n")


def test_a_shared_file_holds_no_case(load):
    with pytest.raises(CaseError, match=r"shared\.yaml:1: a case in a shared file"):
        load(shared=ECHO, a=ECHO)


def test_what_nobody_uses_is_told_with_file_and_line(tmp_path):
    write(
        tmp_path,
        shared="- blocks:\n    used: a\n    unused: b\n- values:\n    - &used [{call: C}]\n    - &unused [d]\n",
        a="- blocks:\n    mine: e\n- &case\n  name: n\n  args: -x\n  screen: ${used}\n  calls: *used\n",
        folder__shared="- values:\n    - &far f\n",
    )
    assert cases.unused_shares(tmp_path) == [
        f"{tmp_path}/a.yaml:2: nobody uses the block 'mine'",
        f"{tmp_path}/a.yaml:3: nobody uses the anchor 'case'",
        f"{tmp_path}/folder/shared.yaml:2: nobody uses the anchor 'far'",
        f"{tmp_path}/shared.yaml:3: nobody uses the block 'unused'",
        f"{tmp_path}/shared.yaml:6: nobody uses the anchor 'unused'",
    ]


def test_the_example_of_the_readme_runs(load, platform, tmp_path):
    (example,) = re.findall(r"^```yaml\n(.*?)^```$", (TESTS / "README.md").read_text(encoding="utf-8"),
                            re.MULTILINE | re.DOTALL)
    for number, case in enumerate(load(example=example)):
        run_case(case, platform, tmp_path / str(number))
