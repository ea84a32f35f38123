"""What the tests of tavrohost's commands on host files share."""

import copy
import json
import os
import subprocess

from program import ROOT, finish

DEFAULT_HOST = json.loads((ROOT / "simulator" / "default_host.json").read_text(encoding="utf-8"))


def default_host():
    """A copy of the simulator's own host, to be changed."""
    return copy.deepcopy(DEFAULT_HOST)


def put(sandbox, name, content):
    """Writes a file of the current directory: a JSON value or a text."""
    text = content if isinstance(content, str) else json.dumps(content, ensure_ascii=False)
    (sandbox.work / name).write_text(text, encoding="utf-8")
    return name


def get(sandbox, name):
    return json.loads((sandbox.work / name).read_text(encoding="utf-8"))


def text_of(output):
    """Standard output or error as text, its line ends as "\\n"."""
    return output.decode("utf-8").replace("\r\n", "\n")


def expect_trouble(sandbox, arguments, said, stdin=""):
    """tavrohost prints nothing, says this on standard error, and ends with 2."""
    result = sandbox.run_tool(arguments, stdin)
    assert (result.exit_code, result.output) == (2, b""), (result.output, result.errors)
    assert said in text_of(result.errors)


def run_tool_unread(sandbox, arguments):
    """Runs tavrohost while nobody reads its standard output; returns exit code and standard error."""
    reading, writing = os.pipe()
    os.close(reading)
    process = subprocess.Popen(
        sandbox.tool_command(arguments), cwd=sandbox.work, env=sandbox.environment(),
        stdin=subprocess.DEVNULL, stdout=writing, stderr=subprocess.PIPE,
    )
    os.close(writing)
    _, errors = finish(process, None)
    return process.returncode, text_of(errors)
