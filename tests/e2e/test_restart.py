"""`tavrohost restart`: what waits in a host file for the host's restart is put in force."""

import json
import os
import stat

import jsonpatch
import pytest

from host_tool import default_host, expect_trouble, get, put, run_tool_unread, text_of

SECRET = "portal-secret"


def waiting_host():
    """The simulator's own host with a VLAN ID and a personality that wait."""
    host = default_host()
    ports = host["adapters"][0]["ports"]
    ports[0]["functions"][0]["ethernet"]["tcpIp"]["pendingVlanId"] = "12"
    # Port 2 becomes one for iSCSI: it loses its FCoE function.
    ports[1]["resources"]["pendingPersonality"] = "iSCSI"
    host["iscsiTargets"][0]["chap"] = {"targetName": "t", "targetSecret": SECRET}
    return host


CHANGES = """\
Adapter Tavro CNA 4610K
  Port 1
    Ethernet 02-00-5E-10-00-00
      tcpIp.vlanId: 0 → 12
      tcpIp.pendingVlanId: 12 → (none)
  Port 2
    resources.personality: FCoE → iSCSI
    resources.pendingPersonality: iSCSI → (none)
    FCoE 10:00:02:00:5E:10:00:05: removed
      number: 5
      mac: 02-00-5E-10-00-05
      portWwn: 10:00:02:00:5E:10:00:05
      nodeWwn: 20:00:02:00:5E:10:00:05
      fcid: 010500
      hardware.deviceName: fcoe1
"""


def test_what_waited_is_in_force_and_shown(sandbox):
    name = put(sandbox, "h.json", waiting_host())
    result = sandbox.run_tool(["restart", name])
    assert (result.exit_code, result.errors) == (0, b"")
    assert text_of(result.output) == CHANGES
    ports = get(sandbox, name)["adapters"][0]["ports"]
    assert ports[0]["functions"][0]["ethernet"]["tcpIp"]["vlanId"] == "12"
    assert [function["number"] for function in ports[1]["functions"]] == [1, 3]
    again = sandbox.run_tool(["restart", name])
    assert (again.exit_code, again.output, again.errors) == (0, b"", b"")


def test_as_patch(sandbox):
    name = put(sandbox, "h.json", waiting_host())
    before = get(sandbox, name)
    result = sandbox.run_tool(["restart", "--json", name])
    assert (result.exit_code, result.errors) == (0, b"")
    put(sandbox, "patched.json", jsonpatch.apply_patch(before, json.loads(result.output)))
    assert sandbox.run_tool(["diff", "patched.json", name]).exit_code == 0
    assert SECRET.encode() not in result.output
    assert json.loads(sandbox.run_tool(["restart", "--json", name]).output) == []


def test_trouble_leaves_the_file_as_it_is(sandbox):
    expect_trouble(sandbox, ["restart", "none.json"], "none.json: there is no such file")
    assert not (sandbox.work / "none.json").exists()
    expect_trouble(sandbox, ["restart", "-"], "only a file can be restarted", json.dumps(waiting_host()))
    expect_trouble(sandbox, ["restart"], "FILE is required")
    damaged = put(sandbox, "damaged.json", waiting_host() | {"adapters": SECRET})
    expect_trouble(sandbox, ["restart", damaged], "damaged.json: adapters: an array is wanted, not a text")
    assert get(sandbox, damaged)["adapters"] == SECRET


def test_lost_output_is_told_though_the_host_is_restarted(sandbox):
    name = put(sandbox, "h.json", waiting_host())
    assert run_tool_unread(sandbox, ["restart", name]) == (2, "tavrohost: standard output cannot be written\n")
    assert sandbox.run_tool(["restart", name]).output == b""


@pytest.mark.platforms("native", "sanitize")
def test_a_file_keeps_its_mode(sandbox):
    name = put(sandbox, "h.json", waiting_host())
    os.chmod(sandbox.work / name, 0o640)
    assert sandbox.run_tool(["restart", name]).exit_code == 0
    assert stat.S_IMODE(os.stat(sandbox.work / name).st_mode) == 0o640


def test_help(sandbox):
    result = sandbox.run_tool(["restart", "--help"])
    assert (result.exit_code, result.errors) == (0, b"")
    assert "FILE" in text_of(result.output) and "--json" in text_of(result.output)
