"""Holds the manual to its own order, to the texts of the program, and its renderings to the rules of manual pages. That it
tells of every command stands in the unit tests, beside the command table; its sessions are played as the guide's are."""

import re
import subprocess

import pytest

import catalogues
from program import ROOT

MANUAL = ROOT / "docs" / "manual"
CONTENTS = re.compile(r"^- \[(.*)\]\((\w+\.md)\)", re.MULTILINE)
LINK = re.compile(r"\]\(([^)#\s]*)(?:#([^)]*))?\)")
COMMAND = re.compile(r"^### `(-[^`]*)`\n(.*?)(?=^#{1,3} |\Z)", re.MULTILINE | re.DOTALL)
OUTCOME = re.compile(r"^- (Success|Failure): (.*?)(?=\n\n|\n- |\Z)", re.MULTILINE | re.DOTALL)
FENCED = re.compile(r"^```.*?^```$", re.MULTILINE | re.DOTALL)
LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
TRAPS = [
    "An unknown login option is ignored",
    "Every word but `-ipv4` addresses IPv6",
    "A fixed IPv6 address without a gateway resets it",
    "DHCP without a VLAN ID does nothing",
    "Every change of TCP/IP settings resets the frame size",
    "A forgotten operand is taken from the next word",
    "The first word behind an address is its port number",
    "Dialogues repeat without end at the end of input",
    "Only y, Y, n and N end some questions",
    "Commands that the restricted state stops",
    "Every run creates `tavrocli.log`",
    "A name outside the code page shows as other characters",
]
SECTIONS = ["NAME", "SYNOPSIS", "DESCRIPTION"]
LAST_SECTIONS = ["EXIT STATUS", "ENVIRONMENT", "FILES", "SEE ALSO"]


def read(page):
    return page.read_text(encoding="utf-8")


PAGES = sorted(MANUAL.glob("*.md"))
COMMANDS = [found.groups() for page in PAGES for found in COMMAND.finditer(FENCED.sub("", read(page)))]


@pytest.fixture(scope="module")
def rendered(tmp_path_factory):
    folder = tmp_path_factory.mktemp("manual")
    subprocess.run([ROOT / "scripts" / "manual", folder], check=True, capture_output=True)
    return folder


def test_the_contents_name_every_page_once_by_its_title():
    listed = [(file, title) for title, file in CONTENTS.findall(read(MANUAL / "README.md"))]
    standing = [(page.name, read(page).split("\n", 1)[0].removeprefix("# ")) for page in PAGES if page.name != "README.md"]
    assert sorted(listed) == standing


def anchor(heading):
    """What a heading is called in links: small, blanks as hyphens, without marks."""
    return re.sub(r"[^\w -]", "", heading.lower()).replace(" ", "-")


@pytest.mark.parametrize("page", [*PAGES, ROOT / "docs" / "tavrohost.md", ROOT / "docs" / "linux.md"], ids=lambda page: page.stem)
def test_every_link_leads_somewhere(page):
    for file, place in LINK.findall(FENCED.sub("", read(page))):
        if re.match(r"\w+:", file):
            continue
        target = page.parent / file if file else page
        assert target.exists(), file
        if place:
            headings = re.findall(r"^#+ (.*)$", FENCED.sub("", read(target)), re.MULTILINE)
            assert place in [anchor(heading) for heading in headings]


@pytest.mark.parametrize("form, text", COMMANDS, ids=[form for form, _ in COMMANDS])
def test_a_command_tells_how_it_ends(form, text):
    outcomes = [kind for kind, _ in OUTCOME.findall(text)]
    only_shows = re.match(r"\s*(Shows|Lists)\b", text) and "-set" not in form
    assert outcomes == (["Failure"] if only_shows else ["Success", "Failure"])


def test_every_sentence_that_the_manual_quotes_is_one_of_the_program():
    texts = list(catalogues.read_texts("english").values())
    for source in (ROOT / "src").rglob("*.cpp"):
        texts += LITERAL.findall(read(source))
    quoted = [" ".join(quote.split()) for _, text in COMMANDS for _, outcome in OUTCOME.findall(text)
              for quote in re.findall(r"`([^`]*)`", outcome)]
    sentences = [quote for quote in quoted if re.match(r"[A-Za-z]+ ", quote) and not quote.startswith("tavro")]
    assert len(sentences) > 60
    assert [quote for quote in sentences if not any(quote in text for text in texts)] == []


def test_each_trap_stands_in_a_box():
    traps = re.split(r"^## ", read(MANUAL / "traps.md"), flags=re.MULTILINE)[1:]
    assert [trap.split("\n", 1)[0] for trap in traps] == TRAPS
    for trap in traps:
        assert trap.split("\n\n", 1)[1].startswith("> **Trap.** ")
        assert "```console\n$ " in trap, "nothing is played that shows it"


@pytest.mark.platforms("windows")
def test_a_name_outside_the_code_page_is_shown_with_question_marks(sandbox):
    sandbox.write_script(None)
    host = read(ROOT / "simulator" / "default_host.json")
    sandbox.host.write_text(host.replace('"name": "demo-host"', '"name": "Büro"', 1), encoding="utf-8")
    # Code page 932 has neither of the characters that the two bytes of the letter are shown as.
    assert b" : B??ro\r\n" in sandbox.run(["-showadapter"], locale="ja_JP.UTF-8").output


@pytest.mark.parametrize("page", ["tavrocli.1", "tavrohost.1"])
def test_the_manual_page_has_no_findings(rendered, page):
    found = subprocess.run(["mandoc", "-T", "lint", rendered / page], capture_output=True, text=True, check=False)
    assert (found.stdout, found.stderr, found.returncode) == ("", "", 0)


@pytest.mark.parametrize("page", ["tavrocli.1", "tavrohost.1"])
def test_the_manual_page_has_the_usual_sections(rendered, page):
    text = read(rendered / page)
    version = re.search(r"project\(tavrocli VERSION ([\d.]+)", read(ROOT / "CMakeLists.txt"))[1]
    name = page.removesuffix(".1")
    assert text.startswith(f'.TH {name.upper()} 1 "')
    assert f'"{name} {version}"' in text.split("\n", 1)[0]
    sections = re.findall(r"^\.SH (.*)$", text, re.MULTILINE)
    assert sections[:3] == SECTIONS
    assert sections[-4:] == LAST_SECTIONS
    assert len(sections) == len(set(sections))


def test_the_manual_page_has_every_command(rendered):
    shown = subprocess.run(["mandoc", "-T", "ascii", "-O", "width=200", rendered / "tavrocli.1"],
                           capture_output=True, text=True, check=True).stdout
    lines = [re.sub(r".\x08", "", line).strip() for line in shown.split("\n")]
    assert [form for form, _ in COMMANDS if form not in lines] == []


def test_the_pages_are_rendered_and_their_links_lead_to_each_other(rendered):
    folder = rendered / "html"
    names = {"index.html", "tavrohost.html", "linux.html"} | {page.with_suffix(".html").name for page in PAGES if page.stem != "README"}
    assert {page.name for page in folder.iterdir()} == names
    for page in folder.iterdir():
        text = read(page)
        for file, place in re.findall(r'<a\s+href="([^"#]*)(?:#([^"]*))?"', text):
            target = read(folder / file) if file else text
            assert not place or f'id="{place}"' in target, (page.name, file, place)
