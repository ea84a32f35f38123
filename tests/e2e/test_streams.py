"""What happens at the program's ends: output that nobody takes, input that is not there, languages in pipes."""

import re
import resource
import subprocess

import pytest

from program import TIME_LIMIT, finish

UNKNOWN_COMMAND = " \n#28674\n"
LANGUAGES = {
    "ja_JP.UTF-8": re.compile("[\u3041-\u30ff]"),  # kana, which only Japanese has
    "zh_CN.UTF-8": re.compile("[\u4e00-\u9fff]"),
}


def run_redirected(sandbox, redirection, arguments):
    """Runs the program with a redirection of the shell."""
    return subprocess.run(
        ["sh", "-c", f'exec "$@" {redirection}', "sh", *sandbox.command(arguments)],
        cwd=sandbox.work, env=sandbox.environment(), stdin=subprocess.DEVNULL, capture_output=True,
        timeout=TIME_LIMIT, check=False,
    )


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("redirection", [">&-", ">/dev/full"])
def test_output_closed_or_full(sandbox, redirection):
    result = run_redirected(sandbox, redirection, ["-help"])
    assert (result.returncode, result.stderr) == (0, b"")
    assert [call["call"] for call in sandbox.calls()][-1] == "Uninitialize"


@pytest.mark.platforms("native", "sanitize")
def test_output_beyond_the_limit_of_file_sizes(sandbox):
    """The limit is an error like a full disk, and no signal ends the program."""
    limit = 65536  # has room for the trace
    path = sandbox.folder / "output"
    path.write_bytes(b"." * limit)
    with path.open("ab") as output:
        process = sandbox.start(["-help"], stdout=output,
                                preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
        _, errors = finish(process, b"")
    assert (process.returncode, errors, path.stat().st_size) == (0, b"", limit)
    assert [call["call"] for call in sandbox.calls()][-1] == "Uninitialize"


def test_pipe_closed_by_its_reader(sandbox):
    process = sandbox.start(["-help"])
    process.stdout.close()
    process.stdout = None
    _, errors = finish(process, b"")
    assert (process.returncode, errors) == (0, b"")


@pytest.mark.platforms("native", "sanitize")
@pytest.mark.parametrize("redirection", ["<&-", "2>&-", "<&- 2>&-"])
def test_other_streams_closed(sandbox, redirection):
    result = run_redirected(sandbox, redirection, [])
    assert (result.returncode, result.stdout) == (0, UNKNOWN_COMMAND.encode())


@pytest.mark.parametrize("locale", LANGUAGES)
def test_messages_arrive_whole_in_a_pipe(sandbox, locale):
    """On Windows the pipe takes the code page of the language."""
    screens = {}
    sandbox.write_script({"model": False, "answers": []})
    for name in ("en_US.UTF-8", locale):
        result = sandbox.run(["-help"], locale=name)
        assert result.errors == b""
        screens[name] = result.output.decode(sandbox.platform.encoding(name)).split(sandbox.platform.line_end)
    english, other = screens["en_US.UTF-8"], screens[locale]

    # The program's own lines are the same; the library's introduction stands between them.
    start, end = 4, english.index("tavrocli -about") - 1
    other_end = other.index("tavrocli -about") - 1
    assert other[:start] == english[:start]
    assert other[other_end:] == english[end:]
    introduction = [line for line in other[start:other_end] if line.strip()]
    assert len(introduction) >= 3
    assert LANGUAGES[locale].search("".join(introduction))
    assert not any("?" in line or "\ufffd" in line for line in introduction)
    assert introduction != [line for line in english[start:end] if line.strip()]
