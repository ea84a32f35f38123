"""Runs the tests of a build: the unit tests, and those that a process of pytest serves, all of them in a sandbox."""

import json
import os
import pathlib
import re
import select
import subprocess
import sys
import time

HERE = pathlib.Path(__file__).resolve().parent
TEST_SECONDS = 20  # what a test may take in any case, besides three times what it took when it was measured
START_SECONDS = 900
STARTED = re.compile(r"\[ RUN      \] ([\w./]+)")
FAILED = re.compile(r"\[  FAILED  \] ([\w./]+)")


class Stuck(Exception):
    """Something did not end in its time."""


def sandboxed(folder, *command):
    return [str(HERE / "sandbox"), str(folder), *map(str, command)]


def run_sandboxed(folder, command, seconds, directory):
    """(exit code, output) of a command. Raises Stuck; what the command started has ended then."""
    process = subprocess.Popen(
        sandboxed(folder, "env", "-C", directory, *command), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT)
    try:
        output, _ = process.communicate(timeout=seconds)
    except subprocess.TimeoutExpired:
        process.kill()
        process.communicate()
        raise Stuck(command[0]) from None
    return process.returncode, output.decode(errors="replace")


class Lines:
    """The lines of a pipe."""

    def __init__(self, descriptor):
        self.descriptor = descriptor
        self.pending = b""

    def next(self, seconds):
        """The next line, None at the end. Raises Stuck when none comes in that time."""
        if seconds < 0:
            raise Stuck()
        end = time.monotonic() + seconds
        while b"\n" not in self.pending:
            if not select.select([self.descriptor], [], [], max(0, end - time.monotonic()))[0]:
                raise Stuck()
            read = os.read(self.descriptor, 65536)
            if not read:
                return None
            self.pending += read
        line, _, self.pending = self.pending.partition(b"\n")
        return line.decode(errors="replace")


class UnitTests:
    """The programs of unit tests of a build."""

    def __init__(self, build, folder):
        self.build = build
        self.folder = folder

    def programs(self):
        return sorted(path for path in (self.build / "unit").rglob("*tests") if os.access(path, os.X_OK) and path.is_file())

    def names(self, program):
        """All tests of a program, as its filter wants them."""
        listed = subprocess.run([program, "--gtest_list_tests"], capture_output=True, text=True, check=True,
                                cwd=self.folder).stdout
        names, suite = [], ""
        for line in listed.splitlines():
            name = line.split("#")[0].rstrip()
            if not line.startswith(" "):
                suite = name
            elif not name.strip().startswith("DISABLED_"):
                names.append(suite + name.strip())
        return [name for name in names if "." in name]

    def run(self, program, names, seconds_of):
        """The name of the first of the tests that failed, or ended the program, or did not end; None if none did."""
        filters = pathlib.Path(self.folder) / "unit_test_filter"
        filters.write_text("--gtest_filter=" + ":".join(names) + "\n", encoding="utf-8")
        process = subprocess.Popen(
            sandboxed(self.folder, "env", "-C", "/tmp", program, f"--gtest_flagfile={filters}", "--gtest_fail_fast"),
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        running, told, end = "the start", Lines(process.stdout.fileno()), time.monotonic() + TEST_SECONDS
        try:
            while True:
                line = told.next(end - time.monotonic())
                if line is None:
                    break
                failed, started = FAILED.match(line), STARTED.match(line)
                if failed:
                    return failed[1]
                if started:
                    running = started[1]
                    end = time.monotonic() + TEST_SECONDS + 3 * seconds_of(running)
            return f"{running} (a crash)" if process.wait() != 0 else None
        except Stuck:
            return f"{running} (no end)"
        finally:
            process.kill()
            process.wait()
            process.stdout.close()


class ServedTests:
    """The tests that one process of pytest has collected."""

    def __init__(self, tree, folder, command, arguments):
        self.tree = tree
        self.folder = folder
        self.command = command  # what pytest is started by
        self.arguments = arguments
        self.process = None
        self.names = []

    def start(self):
        for_requests, requests = os.pipe()
        answers, for_answers = os.pipe()
        log = open(pathlib.Path(self.folder) / "pytest.log", "ab")
        plugins = self.tree / HERE.relative_to(HERE.parent.parent.parent)
        self.process = subprocess.Popen(
            sandboxed(self.folder, "env", "-C", self.tree, *self.command, sys.executable, "-m", "pytest", "-q",
                      "-p", "no:cacheprovider", "-p", "served_tests", "--basetemp=/tmp/pytest", *self.arguments),
            pass_fds=(for_requests, for_answers), stdin=subprocess.DEVNULL, stdout=log, stderr=log,
            env={**os.environ, "MUTATION_PIPES": f"{for_requests} {for_answers}", "PYTHONPATH": str(plugins),
                 "PYTHONDONTWRITEBYTECODE": "1"})
        log.close()
        os.close(for_requests)
        os.close(for_answers)
        self.requests = os.fdopen(requests, "w")
        self.answers = Lines(answers)
        names = set(self.answer(START_SECONDS)["tests"])
        # Of those for both builds, which are one here.
        self.names = sorted(name for name in names
                            if "sanitize" not in name or name.replace("sanitize", "native") not in names)

    def stop(self):
        """Ends the process, and all that tests have left behind."""
        if self.process is not None:
            self.process.kill()
            self.process.wait()
            self.requests.close()
            os.close(self.answers.descriptor)
            self.process = None

    def answer(self, seconds):
        line = self.answers.next(seconds)
        if line is None:
            raise Stuck()
        return json.loads(line)

    def run(self, names, seconds_of):
        """Runs tests until one fails: its name, or None. `seconds_of` tells what a test takes. A test that does not end
        fails."""
        if self.process is None:
            self.start()
        self.requests.write(json.dumps(names) + "\n")
        self.requests.flush()
        running, found, allowed = "", None, START_SECONDS
        try:
            while True:
                said = self.answer(allowed)
                if "end" in said:
                    if said["left"]:
                        self.stop()
                    return found
                if "start" in said:
                    running = said["start"]
                    allowed = TEST_SECONDS + 3 * seconds_of(running)
                found = said.get("failed", found)
        except Stuck:
            self.stop()
            return found or f"{running} (no end)"
