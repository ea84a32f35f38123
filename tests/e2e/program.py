"""Runs the built program on a platform, in a folder of its own, away from the user's settings."""

import dataclasses
import json
import os
import pathlib
import shutil
import subprocess
import threading

TESTS = pathlib.Path(__file__).resolve().parent
ROOT = TESTS.parent.parent
WINE = ROOT / "scripts" / "lib" / "wine"
LIBRARY = "tavro.dll"
DEFAULT_LOCALE = "en_US.UTF-8"
WINDOWS_LOCALES = {"en_US.UTF-8": "English_United States.1252", "ja_JP.UTF-8": "Japanese_Japan.932"}
TIME_LIMIT = 300  # seconds; far more than any run takes on a busy machine; a hanging program ends in a failure


@dataclasses.dataclass(frozen=True)
class Platform:
    """One build of the program: `sanitize` is the native program with sanitizers."""

    name: str
    system: str  # "native" or "windows": what a case's "platforms" speaks of
    has_variants: bool  # whether the build holds the libraries that lack an entry point

    @property
    def folder(self):
        return ROOT / "build" / self.name

    @property
    def program(self):
        return "tavrocli.exe" if self.is_windows else "tavrocli"

    @property
    def tool(self):
        return "tavrohost.exe" if self.is_windows else "tavrohost"

    @property
    def is_windows(self):
        return self.system == "windows"

    @property
    def line_end(self):
        return "\r\n" if self.is_windows else "\n"

    def encode(self, text, locale):
        """The bytes that the program writes to a pipe for a text, given with "\\n" as line end."""
        text = text.replace("\n", self.line_end)
        return text.encode(self.encoding(locale), errors="replace")

    def encoding(self, locale):
        """Name of the encoding of redirected output: the system's code page on Windows."""
        if not self.is_windows:
            return "utf-8"
        return {"ja": "cp932", "zh": "cp936", "hi": "utf-8"}.get(locale[:2], "cp1252")

    def locale_name(self, locale):
        """What the system's C library calls a locale of a run."""
        return WINDOWS_LOCALES[locale] if self.is_windows else locale

    def path(self, path):
        """A path in the form that the program understands."""
        text = os.fspath(path)
        return "Z:" + text.replace("/", "\\") if self.is_windows else text


PLATFORMS = {
    platform.name: platform
    for platform in (
        Platform("native", "native", has_variants=False),
        Platform("sanitize", "native", has_variants=True),
        Platform("windows", "windows", has_variants=True),
    )
}


@dataclasses.dataclass
class Result:
    output: bytes
    errors: bytes
    exit_code: int


class Sandbox:
    """A folder for the runs of one test: the current directory of the program (`work`), the host file, and
    behind them the files that steer and watch the library."""

    def __init__(self, platform, folder):
        self.platform = platform
        self.folder = pathlib.Path(folder)
        self.work = self.folder / "work"
        self.home = self.folder / "home"
        self.host = self.folder / "host.json"
        self.script = self.folder / "script.json"
        self.trace = self.folder / "trace.jsonl"
        self.binaries = platform.folder / "bin"
        self.tool_arguments = None  # those of tavrohost that runs the program, up to "--"; None runs the program itself
        self.work.mkdir(parents=True)
        self.home.mkdir()

    def use_library(self, library):
        """Puts copies of the programs beside another library (a path), or beside none (None)."""
        place = self.folder / "bin"
        place.mkdir()
        for program in (self.platform.program, self.platform.tool):
            copy_file(self.platform.folder / "bin" / program, place / program)
        if library is not None:
            copy_file(library, place / LIBRARY)
        self.binaries = place

    def use_library_without(self, entry_point):
        """Uses the library variant that lacks an entry point (its name without prefix)."""
        self.use_library(self.platform.folder / "variants" / entry_point / LIBRARY)

    def write_script(self, script):
        """The script of the next runs; None for none."""
        if script is None:
            self.script.unlink(missing_ok=True)
        else:
            self.script.write_text(json.dumps(script, ensure_ascii=False), encoding="utf-8")

    def environment(self, locale=DEFAULT_LOCALE, extra=None):
        """The whole environment of a run; `extra` adds to it, and takes away what it names with None."""
        path = self.platform.path
        variables = {
            "PATH": "/usr/bin:/bin",
            "LC_ALL": locale,
            "LOCPATH": str(ROOT / "build" / "locales"),
            "HOME": str(self.home),
            "XDG_CONFIG_HOME": str(self.home / "config"),
            "XDG_DATA_HOME": str(self.home / "data"),
            "XDG_STATE_HOME": str(self.home / "state"),
            "TAVROSIM_HOST": path(self.host),
            "TAVROSIM_TRACE": path(self.trace),
            "TAVROSIM_TRACE_SECRETS": "1",
            "UBSAN_OPTIONS": "print_stacktrace=1",
        }
        if self.script.exists():
            variables["TAVROSIM_SCRIPT"] = path(self.script)
        variables.update(extra or {})
        return {name: value for name, value in variables.items() if value is not None}

    def command(self, arguments=()):
        if self.tool_arguments is None:
            return self._start_of(self.platform.program) + list(arguments)
        return self._start_of(self.platform.tool) + [*self.tool_arguments, "--", *arguments]

    def _start_of(self, name):
        program = str(self.binaries / name)
        return [str(WINE), program] if self.platform.is_windows else [program]

    def tool_command(self, arguments):
        """The command line of tavrohost itself."""
        return self._start_of(self.platform.tool) + list(arguments)

    def run_tool(self, arguments, stdin="", locale=DEFAULT_LOCALE, env=None):
        """Runs tavrohost itself to its end, like `run`."""
        process = subprocess.Popen(
            self.tool_command(arguments), cwd=self.work, env=self.environment(locale, env),
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
        )
        output, errors = finish(process, stdin if isinstance(stdin, bytes) else self.platform.encode(stdin, locale))
        return Result(output, errors, process.returncode)

    def start(self, arguments=(), locale=DEFAULT_LOCALE, env=None, **streams):
        """Starts the program and returns its process; by default with pipes for all three streams."""
        for name in ("stdin", "stdout", "stderr"):
            streams.setdefault(name, subprocess.PIPE)
        return subprocess.Popen(
            self.command(arguments),
            cwd=self.work,
            env=self.environment(locale, env),
            **streams,
        )

    def run(self, arguments=(), stdin="", locale=DEFAULT_LOCALE, env=None):
        """Runs the program to its end; `stdin` is what is typed, with "\\n" as line end."""
        process = self.start(arguments, locale, env)
        typed = stdin if isinstance(stdin, bytes) else self.platform.encode(stdin, locale)
        output, errors = finish(process, typed)
        return Result(output, errors, process.returncode)

    def run_until(self, size, arguments=(), stdin=b"", locale=DEFAULT_LOCALE, env=None):
        """Runs the program, reads `size` bytes of output and closes the pipe; the program has to end by
        itself. Returns the bytes read."""
        process = self.start(arguments, locale, env)
        watch = threading.Timer(TIME_LIMIT, process.kill)  # ends a read that would never return
        watch.start()
        try:
            process.stdin.write(stdin)
            process.stdin.close()
        except BrokenPipeError:
            pass
        start = process.stdout.read(size)
        process.stdout.close()
        process.stdin = process.stdout = None
        _, errors = finish(process, None)
        watch.cancel()
        return Result(start, errors, process.returncode)

    def restart_host(self):
        """Restarts the simulated host: what is pending in its file is in force afterwards."""
        result = self.run_tool(["restart", self.platform.path(self.host)])
        assert (result.exit_code, result.errors) == (0, b"")

    def calls(self):
        """The calls that the library traced, in order, as decoded JSON; and forgets them."""
        if not self.trace.exists():
            return []
        lines = self.trace.read_text(encoding="utf-8").splitlines()
        self.trace.unlink()
        return [json.loads(line) for line in lines]


# How Wine itself ends, rarely: its exit code, and a text on standard error.
ENDS_OF_WINE = (
    # The host's loader ended it while it was exiting. Seen on a busy machine; why is not known.
    (127, b"Inconsistency detected by ld.so: dl-fini.c:"),
    # It found the place of Windows' shared data taken (scripts/lib/wine avoids this where it may).
    (1, b"failed to map the shared user data"),
)


class WineBroke(Exception):
    """Wine ended in a way of its own, so that its exit code is not the program's. The test that meets it is run
    again and counted (wine_retry.py)."""


def check_that_wine_works(command, exit_code, errors):
    if str(WINE) in command and any(exit_code == code and text in errors for code, text in ENDS_OF_WINE):
        raise WineBroke(errors.decode(errors="replace"))


def finish(process, typed):
    try:
        output, errors = process.communicate(typed, timeout=TIME_LIMIT)
    except subprocess.TimeoutExpired:
        process.kill()
        process.communicate()
        raise AssertionError(f"the program did not end within {TIME_LIMIT} seconds") from None
    check_that_wine_works(process.args, process.returncode, errors or b"")
    return output, errors


def copy_file(source, target):
    """A hard link where possible: a symbolic one would lead the program to the library beside the original."""
    try:
        os.link(source, target)
    except OSError:
        shutil.copy2(source, target)
