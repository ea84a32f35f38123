"""Plays the cases beside a library that damages one answer of the simulator, for each distinct call that they make."""

import dataclasses
import functools
import os
import re
import tempfile
import threading

import cases
from limits import SECONDS
from program import LIBRARY
from test_cases import compare_run, numbered_steps, prepare, run_step

BLOCK = 1 << 16
PREFIX = "TAVROAPI_"
# A question as a screen of the cases shows it, with numbered messages; what is typed there follows.
QUESTION = re.compile(r"#(\d+)[^\n#]*«")
NUMBER = re.compile(rb"#(\d+)")
# What the program may say of an answer that it cannot use, a count that is no number for example.
ONE_LINE = re.compile(rb"tavrocli: [^\n]*\n")


@dataclasses.dataclass(frozen=True)
class Call:
    """A call of the library in a run, as tests/libraries/damaging.cpp reports it."""

    ordinal: int
    entry: str  # without its prefix
    operation: str
    message: str  # which one was fetched last
    content: str  # what the answer holds: "t" texts, "n" numbers, "l" lists, "i" lists in lists

    def context(self):
        """What tells it from others of the command: where in it the call is made."""
        return self.entry, self.operation, self.message


@dataclasses.dataclass(frozen=True)
class Run:
    output_end: bytes  # the last of it
    errors: bytes
    exit_code: int
    report: list  # lines, as words

    @property
    def last_message(self):
        return next((words[1] for words in reversed(self.report) if words[0] == "end"), "")


# Words that change how a command does its work; it is known by the others that begin alike.
OPTIONS = {"-hd", "-dd", "-mp", "-onewaychap", "-mutualchap", "-debug"}


def command_of(arguments):
    """The words of a command line that tell the command."""
    words = [word.lower() for word in arguments if re.match("-[a-z]", word, re.IGNORECASE)]
    return " ".join(word for word in words if word not in OPTIONS)


@functools.cache
def all_cases():
    return cases.load_all()


def commands():
    """Every command of the cases."""
    return sorted({command_of(step.arguments) for case in all_cases() for step in case.steps})


@functools.cache
def questions():
    """The numbers of the messages that ask, from the screens of all cases."""
    numbers = {number for file in cases.case_files() for number in QUESTION.findall(file.read_text(encoding="utf-8"))}
    assert len(numbers) > 30
    return numbers


@functools.cache
def known_ends():
    """The numbers of the messages with which outputs end in cases, the line left open, or are repeated without end."""
    steps = [step for case in all_cases() for step in case.steps]
    ends = [step.output for step in steps if step.output and not step.output.endswith("\n")]
    ends += [step.output_start for step in steps if step.output_start]
    return {numbers[-1] for numbers in (re.findall(r"#(\d+)", end) for end in ends) if numbers}


def without_numbers(line):
    return re.sub(r"\d+", "0", line)


@functools.cache
def question_lines():
    """The lines that ask in the cases, as they stand when they are answered, whatever numbers they hold."""
    return {without_numbers(line) for case in all_cases() for step in case.steps for line, _ in step.questions if line}


@functools.cache
def endless_lines():
    """The last lines, without their numbers, of the starts of outputs without end in the cases."""
    starts = [step.output_start for case in all_cases() for step in case.steps if step.output_start]
    return {without_numbers(line) for start in starts for line in start.splitlines()[-4:]
            if line.strip() and "#" not in line}


def is_known_end(number):
    return number in questions() or number in known_ends()


class Player:
    """A step of a case, beside a library of tests/libraries: as it is, and as often as one likes with other answers."""

    def __init__(self, sandbox, case, step):
        self.sandbox = sandbox
        self.case = case
        self.step = step
        self.report = sandbox.folder / "report"
        self.before = self.after = self.host()  # around the step
        self.calls = []

    def environment(self, fault=""):
        path = self.sandbox.platform.path
        return self.step.env | {
            "DAMAGING_LIBRARY": path(self.sandbox.platform.folder / "bin" / LIBRARY),
            "DAMAGING_REPORT": path(self.report),
            "DAMAGING_FAULT": fault,
        } | ({"TAVROSIM_TRACE": None} if fault else {})

    def record(self):
        """Runs the step as it is, which must be as the case says, and takes down its calls."""
        if self.step.restarted:
            self.sandbox.restart_host()
        self.before = self.host()
        step = dataclasses.replace(self.step, env=self.environment(), restarted=False)
        problems = compare_run(step, self.sandbox.platform, self.case.name, run_step(self.sandbox, step))
        assert not problems, "\n".join(problems)
        self.after = self.host()
        self.calls = [Call(int(words[0]), words[1].removeprefix(PREFIX), *words[2:])
                      for words in self.reported() if words[0] != "end"]

    def host(self):
        return self.sandbox.host.read_bytes() if self.sandbox.host.exists() else None

    def put_host(self, content):
        if content is None:
            self.sandbox.host.unlink(missing_ok=True)
        else:
            self.sandbox.host.write_bytes(content)

    def reported(self):
        return [line.split() for line in self.report.read_text(encoding="ascii").splitlines()]

    def run(self, environment):
        """Runs the step once more, and reads all that it prints; the host is as before afterwards."""
        step, platform = self.step, self.sandbox.platform
        typed = step.typed if step.typed_as_is else step.typed.replace("\n", platform.line_end)
        for name, content in self.case.files.items():
            (self.sandbox.work / name).write_bytes(content)
        self.sandbox.write_script(step.script)
        self.report.unlink(missing_ok=True)
        self.put_host(self.before)
        with tempfile.TemporaryFile() as stdin, tempfile.TemporaryFile() as stderr:
            stdin.write(typed.encode(platform.encoding(step.locale), errors="replace"))
            stdin.seek(0)
            with self.sandbox.start(step.arguments, step.locale, environment, stdin=stdin, stderr=stderr) as process:
                end = read_all(process)
            stderr.seek(0)
            run = Run(end, stderr.read(), process.returncode, self.reported() if self.report.exists() else [])
        self.put_host(self.after)
        return run


def read_all(process):
    """The end of the output. Where it is a question without end, nobody reads it any more after a while. A process that
    takes too long is killed."""
    watch = threading.Timer(SECONDS, process.kill)
    watch.start()
    end = b""
    try:
        while block := os.read(process.stdout.fileno(), BLOCK):
            end = (end + block)[-BLOCK:]
            if len(end) == BLOCK and repeats_a_question(end):
                process.stdout.close()
                break
        process.wait()
    finally:
        watch.cancel()
    return end


def repeats_a_question(text):
    """Whether the text is the same few lines again and again, of which one asks or tells that an answer was refused; or has
    no words, for want of messages."""
    last = text[-200:]
    period = len(text) - len(last) - text.rfind(last, 0, -1)
    if 2 * period > len(text) or text[period:] != text[:-period]:
        return False
    few = text[:2 * period]
    lines = {without_numbers(line) for line in few.decode(errors="replace").splitlines()}
    return (not few.strip(b" \t\r\n:") or bool(lines & endless_lines())
            or any(is_known_end(number.decode()) for number in NUMBER.findall(few)))


def cases_of(platform, command):
    """The cases of the command that are played beside a whole library on the platform."""
    return [case for case in all_cases()
            if platform in case.platforms and not case.without and case.has_library
            and any(command_of(step.arguments) == command for step in case.steps)]


def players(platform, folder, chosen, command):
    """The steps of these cases with the command, recorded."""
    for number, case in enumerate(chosen):
        sandbox = prepare(case, platform, folder / str(number))
        sandbox.use_library(platform.folder / "variants" / "damaging" / LIBRARY)
        for _, step in numbered_steps(case):
            player = Player(sandbox, case, step)
            player.record()
            if command_of(step.arguments) == command:
                yield player


def distinct_calls(platform, folder, command):
    """Each call in a context of its own that the command makes in the cases, with what plays its step."""
    met = set()
    for player in players(platform, folder, cases_of(platform, command), command):
        for call in player.calls:
            if call.context() not in met:
                met.add(call.context())
                yield player, call


def calls_of_one_case(platform, folder, command, chance):
    """Those of a step of one of the cases, in any order; for a platform on which all would take too long."""
    for player in players(platform, folder, [chance.choice(cases_of(platform, command))], command):
        yield from ((player, call) for call in chance.sample(player.calls, len(player.calls)))


def problems_of(run):
    """What is wrong with a run of the program beside whatever library: it ends by itself with the exit code 0, says at
    most one line of its own, and leaves no line open but that of a question."""
    problems = []
    if run.exit_code != 0:
        problems.append(f"exit code {run.exit_code}")
    if run.errors and not ONE_LINE.fullmatch(run.errors):
        problems.append(f"standard error {run.errors[:2000]!r}")
    open_line = run.output_end[run.output_end.rfind(b"\n") + 1:]
    shown = [number.decode() for number in NUMBER.findall(open_line)]
    if (open_line and not any(map(is_known_end, [run.last_message, *shown]))
            and without_numbers(open_line.decode(errors="replace")) not in question_lines()):
        problems.append(f"an open line: {open_line[-100:]!r}")
    return problems


class Matrix:
    """Faults by their names: what is done to a call (tests/libraries/faults.h), what its answer must hold for that
    (`Call.content`), and what tells the problems of the run."""

    def __init__(self, faults, problems=lambda player, fault, call, run: problems_of(run)):
        self.faults = faults
        self.problems = problems
        self.calls = self.runs = 0
        self.found = []

    def fitting(self, call):
        return [name for name, (_, needed) in self.faults.items() if set(needed) <= set(call.content)]

    def play(self, player, call, names):
        self.calls += bool(names)
        for name in names:
            self.runs += 1
            fault = self.faults[name][0]
            run = player.run(player.environment(f"{call.ordinal} {fault}"))
            problems = self.problems(player, fault, call, run)
            if [words[0] for words in run.report[:1]] != [str(call.ordinal)]:
                problems.append("the call was not made again")
            self.found += [f"{player.case.name} {player.step.arguments} {call}: {name}: {problem}" for problem in problems]

    def end(self, record_property):
        """The report holds the figures."""
        record_property("calls", self.calls)
        record_property("runs", self.runs)
        assert not self.found, "\n".join(self.found[:20])
