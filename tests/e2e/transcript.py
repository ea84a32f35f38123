"""Reads a screen as a case writes it: blocks that are shown by name, marks, and what is typed. README.md tells how."""

import re
import shlex
import string

TAB, BLANK, END = "→", "␣", "⏎"
TYPED = re.compile("(?P<shown>[^«»]*)«(?P<typed>[^«»]*)»")


class TranscriptError(Exception):
    """A screen that cannot be understood."""


class Blocks:
    """Texts that screens show by name; knows which of them were shown."""

    def __init__(self, texts):
        self.texts = texts
        self.shown = set()

    def expand(self, screen, within=(), values=None):
        """The screen with every `${block name=value …}` replaced; in a block, `${name:-default}` is a value."""
        place = Values(self, within, values or {})
        try:
            text = Template(screen).substitute(place)
        except ValueError:
            raise TranscriptError("a $ that begins no ${…}; a real one is written $$") from None
        unknown = sorted(set(place.values) - place.used)
        if unknown:
            raise TranscriptError(f"block {within[-1]!r} has no value {unknown[0]!r}")
        return text


class Template(string.Template):
    idpattern = "(?!)"  # braces are the only way
    braceidpattern = r"[^{}\n]+"


class Values:
    """What stands for the words between the braces, in one screen or block."""

    def __init__(self, blocks, within, values):
        self.blocks, self.within, self.values, self.used = blocks, within, values, set()

    def __getitem__(self, words):
        name, is_value, default = words.partition(":-")
        if not is_value:
            return self.block(words)
        if not self.within:
            raise TranscriptError(f"${{{words}}}: a value stands in a block")
        self.used.add(name)
        return self.values.get(name, default)

    def block(self, words):
        try:
            name, *given = split_words(words)
        except ValueError as error:
            raise TranscriptError(f"${{{words}}}: {error}") from None
        if name not in self.blocks.texts:
            raise TranscriptError(f"there is no block {name!r}")
        if name in self.within:
            raise TranscriptError(f"block {name!r} shows itself")
        pairs = [word.partition("=") for word in given]
        if not all(equals for _, equals, _ in pairs) or len({key for key, _, _ in pairs}) < len(pairs):
            raise TranscriptError(f"${{{words}}}: after the block come name=value, each name once")
        self.blocks.shown.add(name)
        values = {key: value for key, _, value in pairs}
        return self.blocks.expand(self.blocks.texts[name], (*self.within, name), values).removesuffix("\n")


def split_words(text):
    """The words of a line as a shell splits it."""
    return shlex.split(text) if set(text) & set("'\"\\") else text.split()


def read_screen(text):
    """The output, and the lines typed, of a screen whose blocks are expanded."""
    output, typed = "", []
    if text.endswith("\n\n"):
        raise TranscriptError(f"an empty line at the end of a screen is written {END}")
    *lines, open_line = text.split("\n")
    for line in [*lines, *([open_line] if open_line else [])]:
        answer = TYPED.fullmatch(line)
        if answer:
            output += unmark(answer["shown"])
            typed.append(unmark(answer["typed"]))
        else:
            if "«" in line or "»" in line:
                raise TranscriptError(f"what is typed stands at the end of its line, as «text»: {line!r}")
            if line.endswith(" "):
                raise TranscriptError(f"a blank at the end of a line is written {BLANK}: {line!r}")
            if END in line and line != END:
                raise TranscriptError(f"{END} stands alone in its line: {line!r}")
            output += unmark(line.removesuffix(END)) + "\n"
    ends_open = open_line and not TYPED.fullmatch(open_line)
    return output.removesuffix("\n") if ends_open else output, typed


def read_questions(text):
    """What is asked on such a screen: the line as it stands when it is answered, and the answer."""
    answers = filter(None, map(TYPED.fullmatch, text.split("\n")))
    return [(unmark(answer["shown"]), unmark(answer["typed"])) for answer in answers]


def unmark(text):
    """The text with real tabs and blanks for their marks."""
    if "\t" in text:
        raise TranscriptError(f"a tab is written {TAB}: {text!r}")
    return text.replace(TAB, "\t").replace(BLANK, " ")
