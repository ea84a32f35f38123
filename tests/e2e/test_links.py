"""Follows the links of the documents: each leads to a file of the tree, and to a heading in it where it names one."""

import re

import pytest

from program import ROOT

DOCUMENTS = sorted([*ROOT.glob("*.md"), *(ROOT / "docs").rglob("*.md"), *(ROOT / "fleet").glob("*.md"),
                    *ROOT.glob("tests/*/README.md")])
LINK = re.compile(r"\]\(([^()\s]+)\)")
FENCE = re.compile(r"^```.*?^```$", re.MULTILINE | re.DOTALL)
CODE = re.compile(r"`[^`\n]*`")
HEADING = re.compile(r"^#+ (.*)$", re.MULTILINE)


def links(text):
    return LINK.findall(CODE.sub("", FENCE.sub("", text)))


def anchors(text):
    """What the headings are called in links: lower case, hyphens for blanks, no punctuation."""
    return {re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-")
            for heading in HEADING.findall(FENCE.sub("", text))}


def broken_links(document):
    for link in links(document.read_text(encoding="utf-8")):
        if re.match(r"https?:", link):
            continue
        path, _, anchor = link.partition("#")
        file = document.parent / path if path else document
        if not file.exists():
            yield link
        elif anchor and anchor not in anchors(file.read_text(encoding="utf-8")):
            yield link


@pytest.mark.parametrize("document", DOCUMENTS, ids=lambda path: str(path.relative_to(ROOT)))
def test_the_links_lead_somewhere(document):
    assert list(broken_links(document)) == []


def test_a_broken_link_is_found(tmp_path):
    (tmp_path / "other.md").write_text("# A `title`, or two\n\n```\n# no heading\n```\n", encoding="utf-8")
    page = tmp_path / "page.md"
    page.write_text("[a](other.md#a-title-or-two) [b](other.md#no-heading) [c](none.md) `[d](none.md)` ![e](none.svg)\n"
                    "[f](https://example.com/none.md) [g](#here)\n\n## Here\n\n    code\n\n```\n[h](none.md)\n```\n\n"
                    "[i](#there)\n", encoding="utf-8")
    assert list(broken_links(page)) == ["other.md#no-heading", "none.md", "none.svg", "#there"]


def test_the_tests_that_hold_the_promises_of_security_are_there():
    named = re.findall(r"`((?:e2e|unit)/[\w./]+)`", (ROOT / "SECURITY.md").read_text(encoding="utf-8"))
    assert len(named) > 5
    assert [path for path in named if not (ROOT / "tests" / path).exists()] == []


def unmarked_tests(text):
    """The tests that exist on one system only and do not say so: a mark counts for the tests before it in its sentence."""
    for part in re.split(r"(?<=[.;)])\s", text):
        for ending, system in (("_posix_test", "Linux"), ("_win32_test", "Windows")):
            for path in re.findall(rf"`([\w/]+{ending}\.cpp)`", part):
                if f": {system}" not in part[part.index(path):]:
                    yield path


def test_the_promises_of_security_say_where_a_test_of_one_system_runs():
    assert list(unmarked_tests((ROOT / "SECURITY.md").read_text(encoding="utf-8"))) == []
    assert list(unmarked_tests("(`a_posix_test.cpp`; `b_posix_test.cpp`: Linux, and `c_win32_test.cpp`). D: Windows.")) == [
        "a_posix_test.cpp", "c_win32_test.cpp"]
