"""Holds the manual's page on languages to the program."""

import json
import re
import subprocess

import pytest

from dialogue_page import CODE, MANUAL, table_rows
from program import ROOT

PAGE = (MANUAL / "languages.md").read_text(encoding="utf-8")
ENVIRONMENTS = table_rows(PAGE, "| Environment | Messages |")
ENGLISH_WORDS = table_rows(PAGE, "| Command | What stays English |")
KANA = re.compile("[\u3041-\u30ff]")
HAN = re.compile("[\u4e00-\u9fff]")
COMMAND_FOLDERS = ("boot", "ethernet", "fcoe", "iscsi", "partition")  # of the program's sources
LITERAL = re.compile(r'(L)?"((?:[^"\\\n]|\\.)*)"')
WORD = re.compile("[A-Za-z]{3}")
SHOWING = re.compile(r"\b(?:console::Print|Show)\w*\(([^;{}]*)\);")
NO_WORDS = {"[Port", "min", "max", "step"}  # the name of a port, and the library's names of bounds


def language_of(text):
    return "Japanese" if KANA.search(text) else "Chinese" if HAN.search(text) else "English"


@pytest.mark.platforms("native")
@pytest.mark.parametrize("row", ENVIRONMENTS, ids=[row[0].strip("`") for row in ENVIRONMENTS])
def test_the_environment_chooses_the_language(sandbox, row):
    sandbox.write_script(None)
    stated = dict(pair.split("=") for pair in " ".join(CODE.findall(row[0])).split())
    result = sandbox.run(["-help"], env={"LC_ALL": None} | stated)
    assert language_of(result.output.decode()) == row[1].partition(":")[0]


def plain(text):
    """A literal of a source, or a text of the page, without blanks, tabs and rules at its ends."""
    return text.replace("\\t", " ").replace("\\n", " ").strip(" -,") + (" -" if text.endswith("- ") else "")


def english_of(source):
    """What a source prints itself: its wide texts, wherever they stand, and the others that it hands to what shows."""
    texts = [text for is_wide, text in LITERAL.findall(source) if is_wide]
    texts += [text for shown in SHOWING.findall(source) for _, text in LITERAL.findall(shown)]
    return {plain(text) for text in texts if WORD.search(text)} - NO_WORDS


def folder_of(command):
    """Where the source of a command stands."""
    if "bootconfig" in command:
        return "boot"
    return "partition" if "-npar" in command else re.search("-(iscsi|fcoe|ethernet) ", command)[1]


def test_every_word_that_stays_english_is_told():
    """Both ways: what the program prints itself, and what the page has of it."""
    printed = {(folder, text) for folder in COMMAND_FOLDERS for path in (ROOT / "src" / folder).rglob("*.cpp")
               for text in english_of(path.read_text(encoding="utf-8"))}
    told = {(folder_of(row[0]), plain(text)) for row in ENGLISH_WORDS for text in CODE.findall(row[1])}
    assert printed

    def agree(said, stated):
        return said[0] == stated[0] and said[1].startswith(stated[1])

    assert [said for said in printed if not any(agree(said, stated) for stated in told)] == []
    assert [stated for stated in told if not any(agree(said, stated) for said in printed)] == []


@pytest.mark.platforms("native")
def test_values_and_details_stay_english(sandbox):
    sandbox.write_script(None)
    settings = sandbox.run(["-ethernet", "02-00-5E-10-00-00", "-getadapinfo"], locale="ja_JP.UTF-8").output.decode()
    assert KANA.search(settings) and "Auto Negotiation" in settings and "Enabled" in settings
    refused = sandbox.run(["-fcoe", "10:00:02:00:5E:99:00:04", "-portinfo"], locale="ja_JP.UTF-8").output.decode()
    lines = dict(line.split(": ", 1) for line in refused.splitlines() if ": " in line)
    assert "Error Details" in refused
    assert KANA.search(lines["Message"]) and KANA.search(lines["Action"])
    assert lines["Details"] == '[port WWN "10:00:02:00:5E:99:00:04"]'
    headings = dict.fromkeys(re.findall('"([A-Z][a-z]+:)"', PAGE))
    host_fails = {"call": "DoOperation", "operation": 33, "status": 5,
                  "error": {"message": "M", "details": "D", "action": "A", "additional": "X"}}
    sandbox.write_script({"answers": [host_fails]})
    refused = sandbox.run(["-fcoe", "10:00:02:00:5E:10:00:04", "-portinfo"], locale="ja_JP.UTF-8").output.decode()
    assert refused.split("Error Details\n\n")[1] == "".join(
        f"{heading} {text}\n" for heading, text in zip(headings, ("M", "[D]", "A", "X"), strict=True))


@pytest.mark.platforms("native")
def test_names_are_shown_byte_by_byte(sandbox):
    sandbox.write_script(None)
    name, shown = re.search("`(\\S+)` as `(\\S+)`", PAGE).groups()
    [told] = re.findall("`(iconv [^`]*)`", PAGE)
    text = (ROOT / "simulator" / "default_host.json").read_text(encoding="utf-8")
    sandbox.host.write_text(text.replace('"name": "demo-host"', f'"name": "{name}"', 1), encoding="utf-8")
    for locale in ("C", "en_US.UTF-8", "ja_JP.UTF-8"):
        output = sandbox.run(["-showadapter"], locale=locale).output.decode()
        assert f" : {shown}\n" in output and name not in output
        readable = subprocess.run(told.split(), input=output.encode(), capture_output=True, check=False)
        assert (readable.returncode == 0) == (locale != "ja_JP.UTF-8")
        assert (f" : {name}\n".encode() in readable.stdout) == (readable.returncode == 0)
    assert json.loads(sandbox.run_tool(["capture"]).output)["name"] == name
