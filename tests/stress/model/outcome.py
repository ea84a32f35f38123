"""What a command is expected to print, put together of the messages of the table."""

import catalogues

TEXTS = catalogues.read_texts("english")
WAIT = TEXTS[28691]
FILLER = "filler-filler"  # answers a question that nobody expected, so that no dialogue goes on for ever

# Lines that are there or not, without a promise: of an error, and the address that a link has by itself.
UNTOLD = ("Details:", "Action:", "Additional:", f"{TEXTS[30237]} :")


class StartsWith(str):
    """A line of which only the start is told."""


class Outcome:
    """Printed lines in order, each with single blanks: a text, `StartsWith`, or a set of texts of which one is right.
    Of an error only the heading and the message count: its details and actions are left out."""

    def __init__(self):
        self.lines = []
        self.refusals = frozenset()  # the messages of which one tells why nothing was done; empty when it was done
        self.traced = None  # of a command that fails in silence: the operation whose error tells the reason

    def say(self, *lines):
        """Texts, and numbers of messages."""
        for line in lines:
            line = TEXTS[line] if isinstance(line, int) else line
            self.lines.append(line if isinstance(line, frozenset) else type(line)(" ".join(line.split())))
        return self

    def row(self, label, value):
        """A label, as a text or a message's number, with its value; None is a value that nothing promises."""
        label = TEXTS[label] if isinstance(label, int) else label
        return self.say(StartsWith(f"{label} :") if value is None else f"{label} : {value}")

    def title(self, message, value=""):
        return self.rule().say(f"{TEXTS[message]} : {value}" if value else message).rule()

    def rule(self):
        return self.say("-" * 67)

    def ends_a_table(self):
        return self.say("-" * 65, "-" * 78)

    def refuse(self, *messages):
        """The library says no, for one of these reasons."""
        self.refusals = frozenset(messages)
        return self.say("Error Details", frozenset(f"Message: {message}" for message in messages))

    def reject(self, number):
        """The program says no before it asks the library."""
        self.refusals = frozenset([TEXTS[number]])
        return self.say(number)

    def refuse_in_silence(self, operation, *messages):
        self.refusals, self.traced = frozenset(messages), operation
        return self


class Keyboard:
    """What is typed at the questions of one command: the lines it was made with, then valid ones without end."""

    def __init__(self, lines):
        self.lines, self.typed = list(lines), []

    def line(self):
        self.typed.append(self.lines.pop(0) if self.lines else FILLER)
        return self.typed[-1]


def prints(lines):
    """The lines of an output as an `Outcome` has them."""
    kept = (" ".join(line.split()) for line in lines)
    return [line for line in kept if line and not line.startswith(UNTOLD)]


def is_as_expected(line, expected):
    if isinstance(expected, StartsWith):
        return line.startswith(expected)
    return line in expected if isinstance(expected, frozenset) else line == expected


def first_difference(lines, expected):
    """The first line that is not as expected, as a text; None where all are."""
    for number in range(max(len(lines), len(expected))):
        line = lines[number] if number < len(lines) else None
        wanted = expected[number] if number < len(expected) else None
        if line is None or wanted is None or not is_as_expected(line, wanted):
            wanted = sorted(wanted) if isinstance(wanted, frozenset) else wanted
            return f"line {number + 1}: {line!r} is printed, expected is {wanted!r}"
    return None
