"""The program tavrohost on the managed host."""

import collections
import json
import os
import shutil
import signal
import subprocess
import tempfile
import time

from .command import answers_document
from .failure import Failure

# How much longer than its own time limit tavrohost may take until it is ended, in seconds.
GRACE = 20
# How long it may take to end when it is asked to, in seconds: it asks its own child for 3 before it ends that by force.
POLITENESS = 5
# What tavrohost takes as its own time limit, in seconds.
TIME_LIMITS = range(1, 1000001)
# The last line that it says of a command line that it does not take.
HELP = "Run with --help for more information."

# How tavrohost ended: its exit status (negative: the signal), what it wrote (bytes), and what to add to a reason when
# it took all the time it had.
_End = collections.namedtuple("_End", "status output complaints remark")


class Ended(Failure):
    """A signal asked the module to end."""


class Tool:
    """Runs tavrohost, in a private folder that is gone when the `with` block ends, also by a signal.

    remarks: what tavrohost said on the way, for warnings.
    """

    def __init__(self, module):
        if module.params["time_limit"] not in TIME_LIMITS:
            raise Failure(f"time_limit: {module.params['time_limit']} is not within 1 and {TIME_LIMITS[-1]} seconds")
        self.remarks = []
        self._module = module
        self._program = module.params["tavrohost"] or module.get_bin_path("tavrohost")
        if not self._program:
            raise Failure("tavrohost was not found in PATH; the option tavrohost names it")
        self._folder = None

    def __enter__(self):
        for number in (signal.SIGTERM, signal.SIGHUP):
            signal.signal(number, _be_ended)
        self._folder = tempfile.mkdtemp(prefix="tavro-", dir=self._module.tmpdir)
        return self

    def __exit__(self, *_):
        shutil.rmtree(self._folder, ignore_errors=True)

    def capture(self):
        """Reads the host: the path of a new host file."""
        path = self._new_path()
        end = self._start(["capture", "--output", path])
        if end.status != 0:
            raise Failure(_reason(end, "tavrohost capture"))
        return path

    def run(self, command):
        """Does a command on the host: the report, whose schema is `tavrohost schema run`."""
        return self._report(["run", "--json"], command)

    def rehearse(self, command, host_file):
        """Does a command on the twin that a host file holds: the report (`tavrohost schema rehearsal`), and the path of
        the twin's host file afterwards, which is the same one where none was kept."""
        twin = self._new_path()
        report = self._report(["rehearse", "--json", "--host", host_file, "--keep", twin], command)
        return report, twin if os.path.exists(twin) else host_file

    def _report(self, options, command):
        folder = tempfile.mkdtemp(dir=self._folder)
        try:
            for name, content in command.files.items():
                _write(os.path.join(folder, name), content)
            # Each answers file is there for one command only, and so are the files of its secrets.
            answers = answers_document(command.answers, lambda text: self._write_new(folder, text.encode()))
            options = options + ["--answers", self._write_new(folder, answers)]
            end = self._start(options, command.arguments, folder)
        finally:
            shutil.rmtree(folder, ignore_errors=True)
        try:
            report = json.loads(end.output.decode())
        except ValueError:
            raise Failure(f"{command}: {_reason(end, f'tavrohost {options[0]}')}") from None
        if "failure" in report:
            report["failure"] += end.remark
        return report

    def _start(self, options, arguments=None, folder=None):
        """Runs tavrohost to its end: an _End. What takes too long, it ends itself; if it does not, it is ended here."""
        limit = self._module.params["time_limit"]
        library = self._module.params["library"]
        line = [self._program] + options + ["--timeout", str(limit)]
        line += ["--library", library] if library else []
        line += ["--"] + arguments if arguments is not None else []
        # What tavrohost keeps for a while goes with the private folder, even when it is ended by force.
        environment = dict(os.environ, LC_ALL="C.UTF-8", TMPDIR=self._folder)
        start = time.monotonic()
        # Files, since a pipe that a child of tavrohost still holds would hide that tavrohost has ended.
        with tempfile.TemporaryFile(dir=self._folder) as output, tempfile.TemporaryFile(dir=self._folder) as complaints:
            try:
                # pylint: disable=consider-using-with  # what ends it is below
                process = subprocess.Popen(line, stdin=subprocess.DEVNULL, stdout=output, stderr=complaints,
                                           cwd=folder or self._folder, env=environment, start_new_session=True)
            except OSError as error:
                raise Failure(f"{self._program}: {error.strerror}") from None
            try:
                process.wait(timeout=limit + GRACE)
            except subprocess.TimeoutExpired:
                raise Failure(f"tavrohost {options[0]} did not end{_limit_remark(limit)}") from None
            finally:
                _end(process)
            remark = _limit_remark(limit) if time.monotonic() - start >= limit else ""
            end = _End(process.returncode, _content(output), _content(complaints), remark)
        if end.status == 0:
            self.remarks += end.complaints.decode(errors="replace").splitlines()
        return end

    def _new_path(self):
        """A path in the private folder that does not exist."""
        return os.path.join(tempfile.mkdtemp(dir=self._folder), "host.json")

    @staticmethod
    def _write_new(folder, content):
        handle, path = tempfile.mkstemp(dir=folder)
        os.close(handle)
        _write(path, content)
        return path


def _be_ended(number, _):
    raise Ended(f"The module was ended by signal {number}")


def _write(path, content):
    """Writes a file that only its owner can read."""
    with open(os.open(path, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o600), "wb") as file:
        file.write(content)


def _content(file):
    file.seek(0)
    return file.read()


def _end(process):
    """Ends a process that has not ended, politely first: tavrohost then leaves nothing behind. Of one that was ended by
    force, ends what it has started: the process leads a group of its own."""
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(timeout=POLITENESS)
        except subprocess.TimeoutExpired:
            pass
    elif process.returncode >= 0:
        return
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    process.wait()


def _limit_remark(limit):
    return f" (time_limit: {limit} seconds)"


def _reason(end, program):
    """Why a program did not do its work: its last line on standard error, without its name, or how it ended."""
    lines = end.complaints.decode(errors="replace").split("\n")
    last = next((line for line in reversed(lines) if line.strip() not in ("", HELP)), "")
    last = last[len("tavrohost: "):] if last.startswith("tavrohost: ") else last
    if end.status < 0:
        last = f"{program} was ended by signal {-end.status}"
    return (last or f"{program} ended with {end.status}") + end.remark
