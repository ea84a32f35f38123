"""The makers of mutants find each kind of mistake in a fixed text, and nothing in what is no behaviour."""

import pathlib
import sys

import pytest

sys.path.append(str(pathlib.Path(__file__).resolve().parent / "mutation"))

import makers  # noqa: E402  # pylint: disable=wrong-import-position

ARGUMENTS = ["-x", "c++", "-std=c++20"]


def changes(text):
    """Each mutant as (line, kind, the whole line as it reads then)."""
    source = text.encode()
    found = makers.mutants_of("/source.cpp", source, ARGUMENTS)
    return [(each.line, each.kind, each.applied_to(source).decode().splitlines()[each.line - 1].strip()) for each in found]


@pytest.mark.parametrize("statement, expected", [
    ("if (a < 1) { a = 2; }", [
        ("negate", "if (!(a < 1)) { a = 2; }"), ("comparison", "if (a <= 1) { a = 2; }"),
        ("constant", "if (a < 2) { a = 2; }"), ("constant", "if (a < 0) { a = 2; }"),
        ("delete", "if (a < 1) { {}; }"),
        ("constant", "if (a < 1) { a = 3; }"), ("constant", "if (a < 1) { a = 1; }")]),
    ("if (const int c = b; a == c) { return; }", [
        ("negate", "if (const int c = b; !(a == c)) { return; }"),
        ("comparison", "if (const int c = b; a != c) { return; }"),
        ("delete", "if (const int c = b; a == c) { {}; }")]),
    ("if (!IsOdd(a)) { throw a; }", [
        ("negate", "if (IsOdd(a)) { throw a; }"), ("delete", "if (!IsOdd(a)) { {}; }")]),
    ("while (a > b && b >= a) { --a; }", [
        ("negate", "while (!(a > b && b >= a)) { --a; }"), ("comparison", "while (a >= b && b >= a) { --a; }"),
        ("operator", "while (a > b || b >= a) { --a; }"), ("comparison", "while (a > b && b > a) { --a; }"),
        ("delete", "while (a > b && b >= a) { {}; }"), ("operator", "while (a > b && b >= a) { ++a; }")]),
    ("for (int i = a; i != b; i++) { Take(i, b); }", [
        ("negate", "for (int i = a; !(i != b); i++) { Take(i, b); }"),
        ("comparison", "for (int i = a; i == b; i++) { Take(i, b); }"),
        ("operator", "for (int i = a; i != b; i--) { Take(i, b); }"),
        ("delete", "for (int i = a; i != b; i++) { {}; }"),
        ("swap", "for (int i = a; i != b; i++) { Take(b, i); }")]),
    ("const int c = IsOdd(a) ? a + b : a * b;", [
        ("negate", "const int c = !(IsOdd(a)) ? a + b : a * b;"), ("operator", "const int c = IsOdd(a) ? a - b : a * b;"),
        ("operator", "const int c = IsOdd(a) ? a + b : a / b;")]),
    ("const bool c = true; const char d = ';'; const wchar_t* e = L\"word\";", [
        ("constant", "const bool c = false; const char d = ';'; const wchar_t* e = L\"word\";"),
        ("constant", "const bool c = true; const char d = 'x'; const wchar_t* e = L\"word\";"),
        ("text", "const bool c = true; const char d = ';'; const wchar_t* e = L\"\";")]),
    ("a |= 0x0Fu;", [
        ("delete", "{};"), ("operator", "a &= 0x0Fu;"), ("constant", "a |= 0x10u;"), ("constant", "a |= 0xeu;")]),
    ("const bool c = Word{1} == Word{a};", [
        ("comparison", "const bool c = Word{1} != Word{a};"), ("constant", "const bool c = Word{2} == Word{a};"),
        ("constant", "const bool c = Word{0} == Word{a};")]),
])
def test_each_mistake_is_made(statement, expected):
    text = f"""struct Word {{ int number; }};
bool operator==(Word, Word); bool operator!=(Word, Word); bool IsOdd(int); void Take(int, int);
void Change(int a, int b) {{
    {statement}
}}
"""
    assert sorted(change[1:] for change in changes(text)) == sorted(expected)
    assert {change[0] for change in changes(text)} == {4}


def test_an_answer_is_turned_round():
    text = "bool IsSame(int a, int b) {\n    return a == b;\n}\n"
    assert changes(text) == [(2, "negate", "return !(a == b);"), (2, "comparison", "return a != b;")]


def test_a_statement_of_several_lines_leaves_the_lines_behind_it_where_they_are():
    text = "void Take(int, int);\nvoid Change(int a) {\n    Take(a,\n         a);\n    Take(a, a);\n}\n"
    source = text.encode()
    first, second = makers.mutants_of("/source.cpp", source, ARGUMENTS)
    assert (first.line, first.last_line, second.line, second.last_line) == (3, 4, 5, 5)
    assert first.applied_to(source).decode() == text.replace("Take(a,\n         a);", "{}\n;")


@pytest.mark.parametrize("text", [
    "static_assert(1 < 2);\n",
    "enum class Code { First = 17, Second };\n",
    "#define LIMIT 12\nint Limit() { return LIMIT; }\n",
    "// if (a < 1)\n/* a == 2 */\n",
])
def test_what_is_no_behaviour_of_this_text_is_left_alone(text):
    assert not changes(text)


def test_a_text_that_is_no_program_is_told():
    with pytest.raises(makers.Unreadable):
        changes("int Limit() { return 1 }\n")
