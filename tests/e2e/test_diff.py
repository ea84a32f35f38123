"""`tavrohost diff`: what differs between two host files, for people and as JSON Patch."""

import json

import jsonpatch
import pytest

from host_tool import default_host, expect_trouble, get, put, run_tool_unread, text_of

ISCSI = "02-00-5E-10-00-02"
SECRETS = ("initiator-secret-1", "portal-secret-2", "boot-secret-3", "target-secret-4")


def changed_host():
    """The simulator's own host after what administrators do, things in another order."""
    host = default_host()
    host["adapters"].reverse()
    host["name"] = "größer"
    adapter = host["adapters"][-1]
    adapter["ports"][0]["functions"].reverse()
    iscsi = next(each for each in adapter["ports"][0]["functions"] if "iscsi" in each)["iscsi"]
    iscsi["tcpIp"]["address"] = "192.0.2.99"
    iscsi["storage"]["portals"].insert(0, {"address": "198.51.100.21", "port": "3261"})
    iscsi["storage"]["lastSessionId"] = 7
    return host


def secret_host():
    host = default_host()
    host["initiator"]["login"] = {"initiatorSecret": SECRETS[0]}
    iscsi = host["adapters"][0]["ports"][0]["functions"][1]["iscsi"]
    iscsi["storage"]["portals"][0]["login"] = {"targetSecret": SECRETS[1]}
    iscsi["boot"] = {"chapSecret": SECRETS[2]}
    host["iscsiTargets"].append({"name": "iqn.new", "portals": [], "chap": {
        "targetName": "t", "targetSecret": SECRETS[3]}})
    return host


def test_changes_for_people(sandbox):
    before, after = put(sandbox, "a.json", default_host()), put(sandbox, "b.json", changed_host())
    result = sandbox.run_tool(["diff", before, after])
    assert (result.exit_code, result.errors) == (1, b"")
    assert text_of(result.output) == f"""\
Host
  name: demo-host → größer
Adapter Tavro CNA 4610K
  Port 1
    iSCSI {ISCSI}
      tcpIp.address: 192.0.2.20 → 192.0.2.99
      storage.portals[198.51.100.21:3261]: added
        address: 198.51.100.21
        port: 3261
"""
    counted = text_of(sandbox.run_tool(["diff", "--counters", before, after]).output)
    assert "      storage.lastSessionId: 0 → 7\n" in counted


def test_no_difference(sandbox):
    host = put(sandbox, "a.json", default_host())
    other = default_host()
    other["adapters"].reverse()  # things are matched by identity
    put(sandbox, "b.json", other)
    for arguments in ([host, host], [host, "b.json"]):
        result = sandbox.run_tool(["diff", *arguments])
        assert (result.exit_code, result.output, result.errors) == (0, b"", b"")
    # Another order is no difference; the patch makes it all the same.
    result = sandbox.run_tool(["diff", "--json", host, "b.json"])
    assert (result.exit_code, result.errors) == (0, b"")
    patch = json.loads(result.output)
    assert {step["op"] for step in patch} == {"move"}
    assert jsonpatch.apply_patch(default_host(), patch) == other


@pytest.mark.parametrize("make", [changed_host, secret_host])
def test_the_patch_makes_one_file_of_the_other(sandbox, make):
    before, after = put(sandbox, "a.json", default_host()), put(sandbox, "b.json", make())
    result = sandbox.run_tool(["diff", "--json", "--counters", "--with-secrets", before, after])
    assert (result.exit_code, result.errors) == (1, b"")
    put(sandbox, "patched.json", jsonpatch.apply_patch(get(sandbox, before), json.loads(result.output)))
    result = sandbox.run_tool(["diff", "--json", "--counters", "--with-secrets", "patched.json", after])
    assert (result.exit_code, json.loads(result.output)) == (0, [])


def test_secrets_are_told_nowhere_unless_asked_for(sandbox):
    before, after = put(sandbox, "a.json", default_host()), put(sandbox, "b.json", secret_host())
    text = text_of(sandbox.run_tool(["diff", before, after]).output)
    assert "  initiator.login.initiatorSecret: (secret changed)\n" in text
    patch = text_of(sandbox.run_tool(["diff", "--json", before, after]).output)
    full = text_of(sandbox.run_tool(["diff", "--json", "--with-secrets", before, after]).output)
    for secret in SECRETS:
        assert secret not in text + patch
        assert secret in full
    # What the patch without secrets makes is still a host file.
    put(sandbox, "patched.json", jsonpatch.apply_patch(get(sandbox, before), json.loads(patch)))
    assert sandbox.run_tool(["check", "patched.json"]).exit_code == 0


def test_standard_input(sandbox):
    after = put(sandbox, "b.json", changed_host())
    text = json.dumps(default_host())
    assert sandbox.run_tool(["diff", "-", after], text.encode()).exit_code == 1
    assert sandbox.run_tool(["diff", after, "-"], text.encode()).exit_code == 1
    expect_trouble(sandbox, ["diff", "-", "-"], "standard input can be only one of the files")


def test_trouble(sandbox):
    host = put(sandbox, "a.json", default_host())
    damaged = put(sandbox, "damaged.json", {"name": "secret-name", "adapters": [{"name": "secret-name"}]})
    expect_trouble(sandbox, ["diff", host, "none.json"], "none.json: there is no such file")
    expect_trouble(sandbox, ["diff", damaged, host], 'damaged.json: adapters[0]: "number" is missing')
    expect_trouble(sandbox, ["diff", host, "-"], "standard input: line 1, column 1: the text ends too early")
    expect_trouble(sandbox, ["diff", host], "B is required")
    expect_trouble(sandbox, ["diff", "--with-secrets", host, host], "--json")
    code, errors = run_tool_unread(sandbox, ["diff", host, put(sandbox, "b.json", changed_host())])
    assert (code, errors) == (2, "tavrohost: standard output cannot be written\n")


def test_help(sandbox):
    result = sandbox.run_tool(["diff", "--help"])
    assert (result.exit_code, result.errors) == (0, b"")
    words = [line.split() for line in text_of(result.output).splitlines()]
    for name in ("A", "B"):
        assert [name, "TEXT"] in [line[:2] for line in words]
    for option in ("--json", "--counters", "--with-secrets"):
        assert option in [line[0] for line in words if line]
