"""Holds the manual's page on languages to the program."""

import json
import re

import pytest

from dialogue_page import CODE, MANUAL, table_rows
from program import ROOT

PAGE = (MANUAL / "languages.md").read_text(encoding="utf-8")
ENVIRONMENTS = table_rows(PAGE, "| Environment | Messages |")
ENGLISH_WORDS = table_rows(PAGE, "| Command | What stays English |")
KANA = re.compile("[\u3041-\u30ff]")
HAN = re.compile("[\u4e00-\u9fff]")
PRINTED = re.compile(r'\bPrint(?:Line|Narrow|NarrowLine)?\((?:ToWide\()?L?"([^"]*[A-Za-z]{3}[^"]*)"')
TITLE = "[Port "  # not a word that could be translated, the name of a port


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
    """A literal of a source, or a text of the page, without blanks and tabs at its ends."""
    return text.replace("\\t", " ").replace("\\n", " ").strip()


def test_every_word_that_stays_english_is_told():
    """Both ways: what the program prints itself, and what the page has of it."""
    sources = [path.read_text(encoding="utf-8") for path in (ROOT / "src").rglob("*.cpp")]
    printed = {plain(text) for source in sources for text in PRINTED.findall(source) if TITLE not in text}
    told = [plain(text) for row in ENGLISH_WORDS for text in CODE.findall(row[1])]
    assert printed
    assert [text for text in printed if not any(text.startswith(start) for start in told)] == []
    assert [start for start in told if not any(text.startswith(start) for text in printed)] == []


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


@pytest.mark.platforms("native")
def test_names_are_shown_byte_by_byte(sandbox):
    sandbox.write_script(None)
    name, shown = re.search("`(\\S+)` as `(\\S+)`", PAGE).groups()
    text = (ROOT / "simulator" / "default_host.json").read_text(encoding="utf-8")
    sandbox.host.write_text(text.replace('"name": "demo-host"', f'"name": "{name}"', 1), encoding="utf-8")
    for locale in ("C", "en_US.UTF-8", "ja_JP.UTF-8"):
        output = sandbox.run(["-showadapter"], locale=locale).output.decode()
        assert f" : {shown}\n" in output and name not in output
        assert f" : {name}\n" in output.encode("latin-1", errors="replace").decode(errors="replace")
    assert json.loads(sandbox.run_tool(["capture"]).output)["name"] == name
