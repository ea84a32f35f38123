"""Runs with a limit of time, so that a program that waits for somebody fails a test soon."""

import subprocess

from program import Result

SECONDS = 60  # far more than any of these runs takes on a busy machine, and more than the wait for a lock


def run_within(sandbox, command, typed=b"", seconds=SECONDS, env=None, **options):
    """Runs a command of the sandbox to its end, like Sandbox.run."""
    with subprocess.Popen(command, cwd=sandbox.work, env=sandbox.environment(extra=env), stdin=subprocess.PIPE,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, **options) as process:
        try:
            output, errors = process.communicate(typed, timeout=seconds)
        except subprocess.TimeoutExpired:
            process.kill()
            raise AssertionError(f"it did not end within {seconds} seconds: {command}") from None
    return Result(output, errors, process.returncode)
