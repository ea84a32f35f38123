"""`tavrohost check`: all that is wrong with a host file."""

import json

import jsonschema
import pytest

from host_tool import default_host, expect_trouble, put, run_tool_unread, text_of
from program import ROOT, TESTS

SCHEMA = json.loads((ROOT / "docs" / "findings.schema.json").read_text(encoding="utf-8"))
SECRET = "never-to-be-seen"


def damaged_host():
    """A host with three errors and two warnings."""
    host = default_host()
    host["isnsServers"] = [SECRET, 5]
    host[SECRET] = {}
    host["adapters"][1]["number"] = 0
    functions = host["adapters"][0]["ports"][0]["functions"]
    functions[0]["mac"] = SECRET
    functions[1]["iscsi"]["tcpIp"]["gateway"] = SECRET
    return host


FINDINGS = [
    ("isnsServers[1]", "error", "a text is wanted, not a number"),
    ("", "error", "member 9 is unknown"),
    ("adapters[0].ports[0].functions[0].mac", "error", "a MAC of 12 hexadecimal digits is wanted"),
    ("adapters[1].number", "warning", "another adapter has this number"),
    ("adapters[0].ports[0].functions[1].iscsi.tcpIp.gateway", "warning", "an IPv4 address is wanted"),
]


def findings_of(result):
    document = json.loads(result.output)
    jsonschema.Draft202012Validator(SCHEMA).validate(document)
    return [(each["place"], each["severity"], each["text"]) for each in document["findings"]]


def test_all_findings_with_their_places(sandbox):
    name = put(sandbox, "h.json", damaged_host())
    result = sandbox.run_tool(["check", name])
    assert (result.exit_code, result.errors) == (1, b"")
    assert text_of(result.output) == "".join(
        f"h.json: {place + ': ' if place else ''}{'warning: ' if severity == 'warning' else ''}{text}\n"
        for place, severity, text in FINDINGS
    )
    result = sandbox.run_tool(["check", "--json", name])
    assert (result.exit_code, findings_of(result), result.errors) == (1, FINDINGS, b"")
    assert SECRET.encode() not in result.output


def test_a_right_file(sandbox):
    name = put(sandbox, "h.json", default_host())
    result = sandbox.run_tool(["check", name])
    assert (result.exit_code, result.output, result.errors) == (0, b"", b"")
    assert findings_of(sandbox.run_tool(["check", "--json", name])) == []


@pytest.mark.platforms("native", "sanitize")
def test_the_host_files_of_the_tests_are_right(sandbox):
    for path in sorted((TESTS / "hosts").glob("*.json")):
        result = sandbox.run_tool(["check", str(path)])
        assert (result.exit_code, result.output) == (0, b""), path


def test_warnings_alone_are_findings(sandbox):
    host = default_host()
    host["adapters"][1]["number"] = 0
    assert sandbox.run_tool(["check", put(sandbox, "h.json", host)]).exit_code == 1


def test_standard_input_and_a_syntax_error(sandbox):
    result = sandbox.run_tool(["check", "-"], b'{"name": "h",\n  5}')
    assert (result.exit_code, text_of(result.output)) == (1, "standard input: line 2, column 3: a syntax error\n")
    assert sandbox.run_tool(["check", "-"], json.dumps(default_host()).encode()).exit_code == 0


def test_trouble(sandbox):
    expect_trouble(sandbox, ["check", "none.json"], "none.json: there is no such file")
    expect_trouble(sandbox, ["check", "."], "is a folder")
    expect_trouble(sandbox, ["check"], "FILE is required")
    code, errors = run_tool_unread(sandbox, ["check", put(sandbox, "h.json", damaged_host())])
    assert (code, errors) == (2, "tavrohost: standard output cannot be written\n")


def test_help(sandbox):
    result = sandbox.run_tool(["check", "--help"])
    assert (result.exit_code, result.errors) == (0, b"")
    assert "FILE" in text_of(result.output) and "--json" in text_of(result.output)


def test_the_schema_is_printed_and_one(sandbox):
    jsonschema.Draft202012Validator.check_schema(SCHEMA)
    assert json.loads(sandbox.run_tool(["schema", "findings"]).output) == SCHEMA
