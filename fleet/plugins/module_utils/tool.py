"""The program tavrohost on the managed host."""

import json
import os
import shutil
import signal
import subprocess
import tempfile

from .command import answers_document
from .failure import Failure

# How much longer than its own time limit tavrohost may take until it is ended, in seconds.
GRACE = 20


class Tool:
    """Runs tavrohost, in a private folder that is gone when the `with` block ends, also by a signal.

    remarks: what tavrohost said on the way, for warnings.
    """

    def __init__(self, module):
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
        status, _, complaints = self._start(["capture", "--output", path])
        if status != 0:
            raise Failure(_reason(complaints) or f"tavrohost capture ended with {status}")
        return path

    def run(self, command):
        """Does a command on the host: the report, whose schema is `tavrohost schema run`."""
        return self._report(["run", "--json"], command)

    def rehearse(self, command, host_file):
        """Does a command on the twin that a host file holds: the report (`tavrohost schema rehearsal`), and the path of
        the twin's host file afterwards."""
        twin = self._new_path()
        return self._report(["rehearse", "--json", "--host", host_file, "--keep", twin], command), twin

    def _report(self, options, command):
        folder = tempfile.mkdtemp(dir=self._folder)
        try:
            for name, content in command.files.items():
                _write(os.path.join(folder, name), content)
            # Each answers file is there for one command only, and so are the files of its secrets.
            answers = answers_document(command.answers, lambda text: self._write_new(folder, text.encode()))
            options = options + ["--answers", self._write_new(folder, answers)]
            status, output, complaints = self._start(options, command.arguments, folder)
        finally:
            shutil.rmtree(folder, ignore_errors=True)
        try:
            return json.loads(output.decode())
        except ValueError:
            raise Failure(f"{command}: {_reason(complaints) or f'tavrohost ended with {status}'}") from None

    def _start(self, options, arguments=None, folder=None):
        """Exit status, standard output and standard error (both bytes) of tavrohost."""
        limit = self._module.params["time_limit"]
        library = self._module.params["library"]
        line = [self._program] + options + ["--timeout", str(limit)]
        line += ["--library", library] if library else []
        line += ["--"] + arguments if arguments is not None else []
        environment = dict(os.environ, LC_ALL="C.UTF-8")
        try:
            # pylint: disable=consider-using-with  # what ends it is below
            process = subprocess.Popen(line, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                       cwd=folder or self._folder, env=environment)
        except OSError as error:
            raise Failure(f"{self._program}: {error.strerror}") from None
        try:
            output, complaints = process.communicate(timeout=limit + GRACE)
        except subprocess.TimeoutExpired:
            raise Failure(f"tavrohost {options[0]} did not end within {limit} seconds") from None
        finally:
            _end(process)
        if process.returncode == 0:
            self.remarks += complaints.decode(errors="replace").splitlines()
        return process.returncode, output, complaints

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
    raise Failure(f"The module was ended by signal {number}")


def _write(path, content):
    """Writes a file that only its owner can read."""
    with open(os.open(path, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o600), "wb") as file:
        file.write(content)


def _end(process):
    """Ends a process that has not ended, politely first: tavrohost then leaves nothing behind."""
    if process.poll() is not None:
        return
    process.terminate()
    try:
        process.communicate(timeout=5)
    except subprocess.TimeoutExpired:
        process.kill()
        process.communicate()


def _reason(complaints):
    """The last line of standard error, without the program's name."""
    lines = complaints.decode(errors="replace").split("\n")
    last = next((line for line in reversed(lines) if line.strip()), "")
    return last[len("tavrohost: "):] if last.startswith("tavrohost: ") else last
