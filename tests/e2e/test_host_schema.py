"""Every host file of the tree is what the published schema says."""

import json
import re

import jsonschema
import pytest

import cases
from program import ROOT, TESTS

SCHEMA = json.loads((ROOT / "docs" / "host.schema.json").read_text(encoding="utf-8"))
GUIDE = (ROOT / "docs" / "simulator.md").read_text(encoding="utf-8")
FENCED = re.compile(r"^```json\n(.*?)^```$", re.MULTILINE | re.DOTALL)
INDENTED = re.compile(r"(?:^ {4}.*\n)+", re.MULTILINE)
# What a piece of a host in the guide is, by its first member.
PIECES = {
    "iscsiTargets": {"properties": {"iscsiTargets": SCHEMA["properties"]["iscsiTargets"]}},
    "captured": {"properties": {"captured": SCHEMA["properties"]["captured"]}},
    "name": {"$ref": "#/$defs/Adapter"},
    "ethernet": {"properties": {"ethernet": {"$ref": "#/$defs/EthernetPart"}}},
}


def validator(schema):
    return jsonschema.Draft202012Validator(schema)


def errors_of(host, schema=None):
    found = validator(schema or SCHEMA).iter_errors(host)
    return [f"{error.json_path}: {error.message}" for error in found]


def test_the_schema_is_one():
    jsonschema.Draft202012Validator.check_schema(SCHEMA)


@pytest.mark.parametrize("path", [
    pytest.param(path, id=path.name)
    for path in [ROOT / "simulator" / "default_host.json", *sorted((TESTS / "hosts").glob("*.json"))]
])
def test_host_files(path):
    assert errors_of(json.loads(path.read_text(encoding="utf-8"))) == []


def test_hosts_of_the_cases():
    hosts = {case.name: case.host for case in cases.load_all() if case.host is not None}
    assert hosts
    for name, host in hosts.items():
        assert errors_of(json.loads(host) if isinstance(host, str) else host) == [], name


def test_the_guides_host():
    hosts = [host for host in map(json.loads, FENCED.findall(GUIDE)) if "adapters" in host]
    assert len(hosts) == 1
    assert errors_of(hosts[0]) == []


def test_the_guides_pieces_of_hosts():
    seen = set()
    for block in INDENTED.findall(FENCED.sub("", GUIDE)):
        piece = as_json(block)
        if piece is None or "call" in piece:
            continue
        first = next(iter(piece))
        assert errors_of(piece, {"$defs": SCHEMA["$defs"]} | PIECES[first]) == [], block
        seen.add(first)
    assert seen == set(PIECES)


def as_json(text):
    """The object that a block is, with or without its braces; None for a block that is none."""
    for whole in (text, "{" + text + "}"):
        try:
            return json.loads(whole)
        except ValueError:
            pass
    return None


@pytest.mark.parametrize("change", [
    {"format": 2}, {"name": 5}, {"adaptors": []}, {"adapters": [{}]}, {"isnsServers": [7]},
])
def test_what_is_no_host_is_found(change):
    host = {"name": "h", "adapters": []}
    assert errors_of(host) == []
    assert errors_of(host | change) != []


CAPTURED = {
    "answers": [
        {"call": "GetHostName", "output": "h"},
        {"call": "GetPortWWNs", "adapter": "a", "port": "p", "status": 5, "error": {"code": 5, "message": "No."}},
        {"call": "DoOperation", "operation": 10, "request": "02-00-5E-10-00-02", "input": "t",
         "output": ["t", "", "", "", "", "", ""]},
    ],
    "host": {"name": "h", "adapters": []},
}


def test_what_was_captured():
    host = {"name": "h", "adapters": [], "captured": CAPTURED}
    assert errors_of(host) == []


@pytest.mark.parametrize("change", [
    {"answers": {}}, {"answers": [{}]}, {"answers": [{"call": "Initialize"}]}, {"answers": [{"call": "DoOperation"}]},
    {"answers": [{"call": "GetHostName", "input": "x"}]}, {"answers": [{"call": "GetHostName", "times": 1}]},
    {"answers": [{"call": "GetHostName", "status": -1}]}, {"answers": [{"call": "GetHostName", "error": {"reason": ""}}]},
    {"host": {}}, {"host": {"name": "h"}}, {"host": {"name": "h", "adapters": [{}]}},
    {"host": {"name": "h", "adapters": [], "captured": CAPTURED}}, {"file": "h"},
])
def test_what_cannot_have_been_captured_is_found(change):
    host = {"name": "h", "adapters": [], "captured": CAPTURED | change}
    assert errors_of(host) != []
