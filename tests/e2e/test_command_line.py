"""The command line of `tavrohost`, by the conventions of GNU tools, the same on every platform."""

import pytest

from host_tool import default_host, expect_trouble, put, text_of

HINT = "Run with --help for more information.\n"


@pytest.mark.parametrize("arguments, complaint", [
    pytest.param(["diff", "a.json"], "B is required", id="too few"),
    pytest.param(["schema", "host", "extra"], "The following argument was not expected: extra", id="too many"),
    pytest.param([], "A subcommand is required", id="none"),
])
def test_a_wrong_command_line_is_told_by_name_and_nothing_is_done(sandbox, arguments, complaint):
    result = sandbox.run_tool(arguments)
    assert (result.exit_code, result.output) == (2, b"")
    assert text_of(result.errors) == f"tavrohost: {complaint}\n{HINT}"


def test_help_on_a_schema_is_no_schema(sandbox):
    result = sandbox.run_tool(["schema", "host", "--help"])
    assert (result.exit_code, result.errors) == (0, b"")
    assert "Usage: " in text_of(result.output)
    assert "$schema" not in text_of(result.output)


def test_a_path_from_the_root_is_no_option(sandbox):
    """Under Wine it is one of the drive that the current directory is on."""
    name = put(sandbox, "h.json", default_host())
    path = (sandbox.work / name).resolve().as_posix()
    assert path.startswith("/")
    result = sandbox.run_tool(["check", path])
    assert (result.exit_code, result.output, result.errors) == (0, b"", b"")
    expect_trouble(sandbox, ["check", "/json"], "/json")
