"""The message texts of our libraries as they stand in its sources, and what the three languages owe one another."""

import json
import re

from program import ROOT, TESTS

LANGUAGES = ("english", "japanese", "chinese")
OTHERS = LANGUAGES[1:]
ENTRY = re.compile(r'^    \{(\d+), L"((?:[^"\\]|\\.)*)"\},$', re.MULTILINE)
# The tables of error texts; their rows hold the languages in the order above.
LIBRARIES = ("library", "simulator", "linux")
ERROR_TEXT_TABLES = [ROOT / library / "messages" / "error_texts.h" for library in LIBRARIES]
TEXT = r'L"((?:[^"\\\n]|\\.)*)"'
ERROR_ROW = re.compile(rf"^    \{{{TEXT},\n     {TEXT},\n     {TEXT}\}},$", re.MULTILINE)
WIDE_LITERAL = re.compile(r'L"((?:[^"\\\n]|\\.|"\s+L")*)"')
ENUMERATOR = re.compile(r"^    (\w+) = (\d+),$", re.MULTILINE)
CHARACTERS = {
    "english": "[ -~]",
    "japanese": "[ -~\u3041-\u30fa\u30fc\u4e00-\u9fff\u3001\u3002\u300c\u300d\uff5e]",
    "chinese": "[ -~\u4e00-\u9fff\u3001\u3002\u201c\u201d\uff08\uff09\uff0c\uff1a\uff1f]",
}
EAST_ASIAN = "[\u3041-\u30ff\u4e00-\u9fff]"
# Every text can be shown in the code page of its language; the older set has no character of the other script.
ENCODINGS = {"english": "ascii", "japanese": "cp932", "chinese": "gb2312"}
LATIN_WORD = re.compile(r"[A-Za-z][A-Za-z0-9]*(?:[-/][A-Za-z0-9]+)*")
NUMBER = re.compile(r"(?<![A-Za-z0-9-])\d+(?![A-Za-z0-9])")
SPELLED_NUMBERS = {"one": "1", "first": "1", "each": "1", "second": "2", "four": "4"}
# What a text may end with, by what stands there in each language.
ENDINGS = {"english": ("...", ".", "?", ":"), "japanese": ("...", "。", "?", ":"), "chinese": ("...", "。", "？", "：")}


def read_texts(language):
    """The texts by their ids."""
    source = (ROOT / "library" / "messages" / f"{language}.cpp").read_text(encoding="utf-8")
    return {int(number): json.loads(f'"{text}"') for number, text in ENTRY.findall(source)}


def read_error_texts():
    """The rows of the error texts of all libraries, each in the order of LANGUAGES."""
    sources = [path.read_text(encoding="utf-8") for path in ERROR_TEXT_TABLES]
    return [[json.loads(f'"{text}"') for text in row] for source in sources for row in ERROR_ROW.findall(source)]


def read_literals():
    """Every wide text of the libraries' sources beside those tables, adjacent ones joined as the compiler does."""
    paths = [path for library in LIBRARIES for path in (ROOT / library).rglob("*.[ch]*") if path not in ERROR_TEXT_TABLES]
    return {json.loads('"' + re.sub(r'"\s+L"', "", literal) + '"')
            for path in paths for literal in WIDE_LITERAL.findall(path.read_text(encoding="utf-8"))}


def read_names():
    """The names under which the program shows the messages, by their ids."""
    source = (ROOT / "src" / "mgmt" / "message_id.h").read_text(encoding="utf-8")
    return {int(number): name for name, number in ENUMERATOR.findall(source)}


def lines_of(file):
    lines = (TESTS / file).read_text(encoding="utf-8").split("\n")
    return [line for line in lines[:-1] if not line.startswith("#")]


COMMON_TERMS, ENGLISH_WORDS = (
    set(group.split("\n")) for group in "\n".join(lines_of("messages/terms.txt")).split("\n\n")
)


class Glossary:
    """The terms of `messages/glossary.txt`; a term is known by the number of its line."""

    def __init__(self):
        self.rows = [
            [[text.strip() for text in column.split(" | ")] for column in line.split(" = ")]
            for line in lines_of("messages/glossary.txt") if line
        ]
        assert all(len(row) == len(LANGUAGES) for row in self.rows)
        self.terms = [self._terms_of(column) for column in range(len(LANGUAGES))]
        # A rendering that may stand for other things as well.
        self.vague = {text.lstrip("～") for row in self.rows for column in row for text in column
                      if text.startswith("～")}
        english = "|".join(
            (r"\b" if text[0].isalpha() else "") + re.escape(text) + (r"(?:e?s)?\b" if text[-1].isalpha() else "")
            for text in longest_first(self.terms[0])
        )
        others = ["|".join(map(re.escape, longest_first(terms))) for terms in self.terms[1:]]
        self.patterns = [re.compile(pattern) for pattern in (english, *others)]

    def _terms_of(self, column):
        terms = {}
        for number, row in enumerate(self.rows):
            for text in row[column]:
                terms.setdefault(text.lstrip("～"), set()).add(number)
        return terms

    def find(self, text, column):
        """Each term found in a text, in the singular, and the lines that it may stand for."""
        terms = self.terms[column]
        for match in self.patterns[column].finditer(text.lower() if column == 0 else text):
            word = match.group()
            term = next(form for form in (word, word.removesuffix("s"), word.removesuffix("es")) if form in terms)
            yield term, terms[term]

    def faults(self, english, text, language):
        column = LANGUAGES.index(language)
        wanted, found = list(self.find(english, 0)), list(self.find(text, column))
        all_wanted = set().union(*(lines for _, lines in wanted))
        all_found = set().union(*(lines for _, lines in found))
        for word, lines in wanted:
            if not lines & all_found:
                yield f'"{word}" is not rendered as the glossary says'
        for word, lines in found:
            if word not in self.vague and not lines & all_wanted:
                yield f'"{word}" stands for nothing in "{english}"'


def longest_first(texts):
    return sorted(texts, key=len, reverse=True)


GLOSSARY = Glossary()
KATAKANA_WORD = re.compile("[\u30a1-\u30fa\u30fc]+")
KATAKANA = {word for row in GLOSSARY.rows for text in row[1] for word in KATAKANA_WORD.findall(text)}
KNOWN_KATAKANA = re.compile(f"({'|'.join(longest_first(KATAKANA))})+")
# The forms of `messages/forms.txt`, each in the order of LANGUAGES.
FORMS = [[re.compile(pattern) for pattern in line.split(" = ")] for line in lines_of("messages/forms.txt") if line]


def latin_words(text):
    """The Latin words of a text in their order, terms in the singular."""
    words = LATIN_WORD.findall(text.replace("'s", ""))
    words = [word[:-1] if word.endswith("s") and word[:-1] in COMMON_TERMS else word for word in words]
    return ["ping" if word in ("Ping", "Pinging") else word for word in words]


def keys_and_terms(text):
    """Single letters are keys to press, apart from the article."""
    return sorted(word for word in latin_words(text) if word in COMMON_TERMS or len(word) == 1 and word != "a")


def ending(text, language):
    return next((place for place, mark in enumerate(ENDINGS[language]) if text.endswith(mark)), None)


def is_within(few, many):
    """Whether `few` stand in `many` in their order."""
    rest = iter(many)
    return all(item in rest for item in few)


def form_faults(text, language):
    """What is wrong with a text whatever it says."""
    strange = re.sub(CHARACTERS[language], "", text)
    if strange:
        yield f"characters of no {language} text: {strange!r}"
    if text.encode(ENCODINGS[language], errors="replace").decode(ENCODINGS[language]) != text:
        yield f"it cannot be encoded in {ENCODINGS[language]}"
    if not text or text != text.strip() or re.search(r"\s\s", text.replace("   ", " ")):
        yield "blanks that do not belong there"
    if text.count("(") != text.count(")") or text.count("（") != text.count("）"):
        yield "a bracket is open"
    if re.search(rf"[A-Za-z0-9]{EAST_ASIAN}|{EAST_ASIAN}[A-Za-z0-9]", text):
        yield "no blank between the scripts"
    if language == "chinese":
        halves = re.search(rf"{EAST_ASIAN}(?:[,:;?!]|\.(?!\.\.))|[()]|[，。：？、（）] | [，。：？、（）]", text)
        if halves:
            yield f"punctuation of the wrong width or a blank beside it: {halves.group()!r}"
    elif language == "japanese":
        if re.search(rf"{EAST_ASIAN}\(|\){EAST_ASIAN}|[、。] ", text):
            yield "a bracket without its blank, or a blank after punctuation"
        for word in KATAKANA_WORD.findall(text):
            if not KNOWN_KATAKANA.fullmatch(word):
                yield f"{word!r} is not put together of the glossary's words"
    if re.search(rf"{EAST_ASIAN} {EAST_ASIAN}", text):
        yield "a blank between words"


def pair_faults(english, text, language):
    """What a text in another language lacks, or has too much, beside the English one."""
    if re.search("[a-z]{3}", " ".join(set(LATIN_WORD.findall(english)) - COMMON_TERMS)) and english == text:
        yield "it is not translated"
    foreign = set(latin_words(text)) - set(latin_words(english))
    if foreign:
        yield f"words that the English text does not have: {sorted(foreign)}"
    if keys_and_terms(english) != keys_and_terms(text):
        yield f"other terms or keys than {keys_and_terms(english)}"
    numbers, wanted = NUMBER.findall(text), NUMBER.findall(english)
    spelled = [SPELLED_NUMBERS[word] for word in re.findall(r"\w+", english.lower()) if word in SPELLED_NUMBERS]
    if not is_within(wanted, numbers) or sorted(numbers) not in (sorted(wanted), sorted(wanted + spelled)):
        yield f"other numbers than {wanted}"
    if ending(english, "english") != ending(text, language):
        yield "it ends otherwise than the English text"
    if english.count("?") != text.count("?") + text.count("？"):
        yield "it asks where the English text does not, or the other way round"
    if len(re.findall("   ", english)) != len(re.findall("   ", text)):
        yield "other columns"
    yield from GLOSSARY.faults(english, text, language)
    for form in FORMS:
        pattern = form[LANGUAGES.index(language)]
        if form[0].search(english) and not pattern.search(text):
            yield f"it is put otherwise than the texts like it: {pattern.pattern}"
