"""Draws the picture of the README: a session of a shell on a terminal, played with the built programs on the simulator.
Run as a program, it writes the picture of the native build to standard output; scripts/picture does so."""

import html
import itertools
import pathlib
import sys
import tempfile

from program import PLATFORMS, Sandbox
from terminal import Terminal

PORT = "02-00-5E-10-00-02"
TARGET = "iqn.2015-01.com.example:storage.backup"
PROMPT, CONTINUED = "$", ">"  # of the shell
# What is typed behind which prompt, and whether the terminal itself shows the keys: the shell does that of its own.
SESSION = [
    (PROMPT, "tavrohost rehearse -- -ethernet 02-00-5E-10-00-00 -modifytcpip -ipv4 \\", False),
    (CONTINUED, "-static 0 192.0.2.77 255.255.255.0 192.0.2.1", False),
    (PROMPT, f"tavrocli -iscsi {PORT} -target -login {TARGET} \\", False),
    (CONTINUED, "198.51.100.20 3260 -onewaychap", False),
    ("Target CHAP name :", "backup", True),
    ("Target CHAP secret :", "example-secret", False),
    (PROMPT, f"tavrocli -iscsi {PORT} -target -listactive", False),
]
COLUMNS = 98  # the widest line of the session, and two
ROWS = 120

FONT_SIZE = 14
CELL_WIDTH = 8.4  # what fonts of this size have
LINE_HEIGHT = 19
MARGIN = 20
BAR = 32  # the window's upper edge

STYLE = """
text { fill: #1f2328; white-space: pre; }
.bold { font-weight: bold; }
.green { fill: #1a7f37; }
.window { fill: #f6f8fa; stroke: #d0d7de; }
.button { fill: #afb8c1; }
@media (prefers-color-scheme: dark) {
  text { fill: #e6edf3; }
  .green { fill: #3fb950; }
  .window { fill: #161b22; stroke: #3d444d; }
  .button { fill: #484f58; }
}
"""


class ShellSandbox(Sandbox):
    """A sandbox whose command is a shell that finds the programs, and which plays the built-in host."""

    def command(self, arguments=()):
        return ["bash", "--norc", "--noprofile", "-i"]

    def environment(self, *arguments):
        variables = super().environment(*arguments) | {
            "PATH": f"{self.binaries}:/usr/bin:/bin",
            "PS1": r"\[\e[32m\]$\[\e[0;1m\] ",  # a green prompt, and what is typed is bold
            "PS0": r"\e[0m",
            "PS2": r"\[\e[1m\]> ",
            "HISTFILE": "",
            "INPUTRC": "/dev/null",
        }
        return {name: value for name, value in variables.items() if not name.startswith("TAVROSIM_")}


def play(platform, folder):
    """Plays the session; gives the lines of the screen, each as its cells up to the last that is no blank."""
    with Terminal(ShellSandbox(platform, folder), rows=ROWS, columns=COLUMNS) as terminal:
        for prompt, typed, is_shown in SESSION:
            (terminal.answer if is_shown else terminal.answer_secret)(prompt, typed)
        terminal.wait_for_secret_prompt(PROMPT)
        rows = terminal.prompt_row + 1
        assert len(terminal.lines()) == rows < ROWS, "the screen is not high enough"
        return [[terminal.screen.buffer[row][column] for column in range(len(line))]
                for row, line in enumerate(terminal.lines())]


def draw(lines):
    """The picture as a text of SVG, light or dark as the reader prefers. What the screen shows stays text."""
    width = round(COLUMNS * CELL_WIDTH + 2 * MARGIN)
    height = BAR + len(lines) * LINE_HEIGHT + MARGIN
    title = "A session of tavrohost and tavrocli on a terminal"
    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" viewBox="0 0 {width} {height}" '
        f'font-family="ui-monospace, Menlo, Consolas, \'DejaVu Sans Mono\', monospace" font-size="{FONT_SIZE}" '
        'xml:space="preserve" role="img" aria-labelledby="title">',
        f'<title id="title">{title}</title>',
        f"<style>{STYLE}</style>",
        f'<rect class="window" x="0.5" y="0.5" width="{width - 1}" height="{height - 1}" rx="8"/>',
        *(f'<circle class="button" cx="{MARGIN + 18 * place}" cy="17" r="5"/>' for place in range(3)),
    ]
    for row, line in enumerate(lines):
        parts += draw_line(line, BAR + row * LINE_HEIGHT + FONT_SIZE)
    return "\n".join([*parts, "</svg>", ""])


def draw_line(cells, y):
    """The texts of a line: one for each run of cells that look alike, at its column and as wide as its cells, whatever
    font the reader has."""
    column = 0
    for look, run in itertools.groupby(cells, key=look_of):
        text = "".join(cell.data for cell in run)
        shown = text.strip()
        if shown:
            start = column + len(text) - len(text.lstrip())
            kind = f' class="{look}"' if look else ""
            yield (f'<text{kind} x="{MARGIN + start * CELL_WIDTH:.1f}" y="{y}" '
                   f'textLength="{len(shown) * CELL_WIDTH:.1f}">{html.escape(shown, quote=False)}</text>')
        column += len(text)


def look_of(cell):
    """The classes of a cell in the picture."""
    return " ".join(["bold"] * cell.bold + ([] if cell.fg == "default" else [cell.fg]))


if __name__ == "__main__":
    with tempfile.TemporaryDirectory() as scratch:
        sys.stdout.write(draw(play(PLATFORMS["native"], pathlib.Path(scratch) / "sandbox")))
