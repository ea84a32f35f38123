"""Texts that would do harm on a terminal, and what a screen looks like that none of them harmed."""

import pyte

# Each alone would be seen on a terminal that heeds it, or does a terminal of some kind harm.
HARM = (
    "\x1b[2J", "\x1b[1;1H", "\x1b[31;1m", "\x1b[?1049h", "\x1b[?25l", "\x1b[4h", "\x1b[3;5r", "\x1b#8", "\x1bc", "\x1bM", "\x1b(0",
    "\x1b]0;owned\x07", "\x1b]2;owned\x1b\\", "\x1bP$q\x1b\\", "\x1b[6n", "\x1b[c", "\x1bH", "\x1b[3g", "\x1b",
    "\x9b2J", "\x9b1;1H", "\x9d0;owned\x9c", "\x90q\x9c", "\x85", "\x84", "\x8d", "\x88",
    "\r", "\r\x1b[K", "\b\b\b\b", "\x0e", "\x0f", "\x0b", "\x0c", "\x00", "\x07", "\x7f", "\x18", "\x1a", "\x01",
)
BYTES = tuple(map(chr, (*range(1, 9), *range(11, 32), *range(127, 160))))


def hostile_text(chance):
    """Some of them in a row, with letters between them by which each place is found again."""
    pieces = [chance.choice(chance.choice((HARM, HARM, BYTES))) for _ in range(chance.randint(1, 4))]
    return "X" + "Y".join(pieces) + "Z"


def bad_bytes(chance):
    """Bytes that are no UTF-8, as scripts and host files write them: single, cut short, too long, out of range."""
    sequence = chance.choice((b"\xff", b"\x9b2J", b"\xc3", b"\xe2\x82", b"\xf0\x9f\x98", b"\xc0\x9b", b"\xe0\x80\x9b",
                              b"\xed\xa0\x80", b"\xf4\x90\x80\x80", b"\x80\x85"))
    return "X" + "".join(chr(0xF700 + byte) if byte >= 0x80 else chr(byte) for byte in sequence) + "Z"


def in_a_pipe(text):
    """The bytes that may stand for it in a pipe: of a wide text, and of one whose bytes are taken for characters."""
    narrow = b"".join(bytes([ord(letter) - 0xF700]) if 0xF780 <= ord(letter) <= 0xF7FF else letter.encode() for letter in text)
    return {text.encode(), narrow, narrow.decode("latin-1").encode()}


def masked(text):
    """As it has to stand on a terminal: each control character but the tab and the line's end is a question mark."""
    return "".join("?" if letter not in "\t\n" and (letter < " " or "\x7f" <= letter <= "\x9f") else letter for letter in text)


def written_cells(screen):
    return {(row, column): cell for row, cells in screen.buffer.items() for column, cell in cells.items()}


def check_unharmed(terminal, expected=None):
    """What arrived steers nothing, and the screen is that of a terminal that got this text, where it is given, alone."""
    text = terminal.written.decode("utf-8")
    assert masked(text.replace("\r\n", "\n")) == text.replace("\r\n", "\n")
    if expected is not None:
        assert text == expected.replace("\n", "\r\n")
    screen = terminal.screen
    fresh = pyte.Screen(screen.columns, screen.lines)
    pyte.Stream(fresh).feed(text)
    assert written_cells(screen) == written_cells(fresh)
    untouched = pyte.Screen(screen.columns, screen.lines)
    for name in ("title", "icon_name", "mode", "margins", "charset", "g0_charset", "g1_charset", "tabstops"):
        assert getattr(screen, name) == getattr(untouched, name), name
    assert screen.cursor.attrs == untouched.cursor.attrs and not screen.cursor.hidden
    plain = screen.default_char
    assert all(cell._replace(data=" ") == plain for row in screen.buffer.values() for cell in row.values())
