"""Plays the sessions that documents show, as their reader would type them."""

import re
import subprocess

SESSION = re.compile(r"^```console\n(.*?)^```$", re.MULTILINE | re.DOTALL)
PROMPT = "$ "
TIME_LIMIT = 300  # seconds


def steps(page):
    """Each command that a page shows, with what it prints."""
    shown = []
    for session in SESSION.findall(page.read_text(encoding="utf-8")):
        for line in session.splitlines(keepends=True):
            if line.startswith(PROMPT):
                shown.append((line.removeprefix(PROMPT).strip(), []))
            else:
                shown[-1][1].append(line)
    return [(command, "".join(lines)) for command, lines in shown]


def without_ends(text):
    return "".join(line.rstrip() + "\n" for line in text.splitlines())


class Shell:
    """A shell in a folder; one command at a time, without anybody at the keyboard."""

    def __init__(self, folder, environment):
        self.folder = folder
        self.environment = environment
        self.status = 0

    def run(self, command):
        process = subprocess.run(
            ["bash", "-c", f"(exit {self.status})\n{command}"],
            cwd=self.folder, env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT, timeout=TIME_LIMIT, check=False,
        )
        self.status = process.returncode
        return process.stdout.decode("utf-8")

    def play(self, page):
        """Runs what the page shows, and holds it to what is printed. Files that a session shows with `cat` before there
        are any are written as they are shown. Blanks at the ends of lines cannot be seen in a page, and do not count."""
        for command, expected in steps(page):
            shown_file = re.fullmatch(r"cat (\S+)", command)
            if shown_file and not (self.folder / shown_file[1]).exists():
                (self.folder / shown_file[1]).write_text(expected, encoding="utf-8")
            printed = without_ends(self.run(command))
            assert printed == without_ends(expected), f"the page shows something else for: {command}"
