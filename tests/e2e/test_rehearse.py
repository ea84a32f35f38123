"""`tavrohost rehearse` and `run --plan`: a command is done on a twin, the host itself only read; a saved rehearsal is done
on the host once, and only while the host is what it was."""

import contextlib
import json
import os
import stat
import subprocess

import jsonpatch
import jsonschema
import pytest

from program import ROOT

ETHERNET = "02-00-5E-10-00-00"
SECRET = "a-secret-of-16-b"
SET_ADDRESS = ["-ethernet", ETHERNET, "-modifytcpip", "-ipv4", "-static", "0", "192.0.2.77", "255.255.255.0", "192.0.2.1"]
LEASE = ["-ethernet", ETHERNET, "-modifytcpip", "-ipv4", "-dhcp", "0"]
PERSONALITY = ["-res", ETHERNET, "-set"]
CHOOSE_FCOE = {"format": 1, "answers": [{"message": 29456, "answers": ["2"]}, {"message": 29197, "answers": ["y"]}]}
READING = {2, 6, 7, 8, 10, 14, 15, 17, 19, 20, 25, 30, 33, 35, 36, 37, 38, 39, 40, 43, 46, 47, 49, 52, 53, 58, 60, 62, 63,
           65, 67, 70}


def schema(name):
    return json.loads((ROOT / "docs" / f"{name}.schema.json").read_text(encoding="utf-8"))


STORE = {f"{name}.schema.json": schema(name) for name in ("host", "answers", "plan", "run", "rehearsal")}


def validate(document, name):
    resolver = jsonschema.RefResolver("", STORE[f"{name}.schema.json"], STORE)
    jsonschema.Draft202012Validator(STORE[f"{name}.schema.json"], resolver=resolver).validate(document)


@pytest.fixture
def host(sandbox):
    """A sandbox whose library plays the built-in host from a file, with real messages; its first plan is `plan`."""
    sandbox.write_script(None)
    text = (ROOT / "simulator" / "default_host.json").read_text(encoding="utf-8")
    sandbox.host.write_text(text, encoding="utf-8")
    sandbox.plan = sandbox.work / "plan.json"
    return sandbox


def rehearse(sandbox, command, *options, **names):
    return sandbox.run_tool(["rehearse", *options, "--", *command], **names)


def report_of(result, name):
    report = json.loads(result.output)
    validate(report, name)
    return report


def save(sandbox, command, *options):
    result = rehearse(sandbox, command, "--save", "plan.json", *options)
    assert sandbox.plan.exists(), result
    return result


def run_plan(sandbox, *options):
    return sandbox.run_tool(["run", "--plan", "plan.json", *options])


def text_of(sandbox, result):
    return result.output.decode("utf-8").replace("\r\n", "\n")


def answers(sandbox, document):
    (sandbox.work / "answers.json").write_text(json.dumps(document), encoding="utf-8")
    return ["--answers", "answers.json"]


def edit(sandbox, change):
    """Changes the host by hand, as somebody else would between two commands."""
    document = json.loads(sandbox.host.read_text(encoding="utf-8"))
    change(document)
    sandbox.host.write_text(json.dumps(document), encoding="utf-8")


@pytest.mark.parametrize("name", ["plan", "rehearsal"])
def test_the_schemas_are_schemas(name):
    jsonschema.Draft202012Validator.check_schema(schema(name))


def test_the_host_is_only_read_and_the_difference_shown(host):
    before = host.host.read_bytes()
    result = rehearse(host, SET_ADDRESS)
    operations = {call["operation"] for call in host.calls() if "operation" in call}
    assert result.exit_code == 0
    assert "On the twin, the command was done.\n" in text_of(host, result)
    assert "tcpIp.address: 192.0.2.10 → 192.0.2.77\n" in text_of(host, result)
    assert operations and operations <= READING
    # Reading counters moves them on and nothing else.
    (host.work / "before.json").write_bytes(before)
    same = host.run_tool(["diff", "before.json", host.platform.path(host.host)])
    assert (same.exit_code, same.output) == (0, b"")


def test_what_nobody_can_know_is_never_told_as_success(host):
    result = rehearse(host, LEASE)
    assert result.exit_code == 1
    assert "Whether the host does the same is not certain." in text_of(host, result)
    assert f"  SetEthernetTcpIp (68) of {ETHERNET}: what the DHCP server hands out is not known before\n" in text_of(host, result)
    report = report_of(rehearse(host, LEASE, "--json"), "rehearsal")
    assert (report["outcome"], report["certain"]) == ("uncertain", False)
    assert [entry["operation"] for entry in report["uncertainties"]] == [68]


def test_json_tells_the_same(host):
    report = report_of(rehearse(host, SET_ADDRESS, "--json"), "rehearsal")
    assert (report["outcome"], report["certain"], report["uncertainties"]) == ("done", True, [])
    assert {"kind": "changed", "adapter": "Tavro CNA 4610K", "port": "Port 1", "function": f"Ethernet {ETHERNET}",
            "member": "tcpIp.address", "before": "192.0.2.10", "after": "192.0.2.77"} in report["changes"]
    assert any(step["path"].endswith("/tcpIp/address") and step["value"] == "192.0.2.77" for step in report["patch"])


def test_a_refused_command_is_told_and_no_plan_saved(host):
    unknown = [word if word != ETHERNET else "02-00-5E-99-00-00" for word in SET_ADDRESS]
    result = rehearse(host, unknown, "--save", "plan.json")
    assert result.exit_code == 1
    assert "Nothing was changed.\n" in text_of(host, result)
    assert b"no plan was saved" in result.errors
    assert not host.plan.exists()


def test_a_host_file_needs_no_library(host):
    before = host.host.read_bytes()
    host.use_library(None)
    result = rehearse(host, SET_ADDRESS, "--host", host.platform.path(host.host))
    assert result.exit_code == 0
    assert "192.0.2.77" in text_of(host, result)
    assert host.host.read_bytes() == before
    assert host.calls() == []


def test_a_damaged_host_file_is_named_with_the_place(host):
    host.host.write_text('{"name": "x", "adapters": 5}', encoding="utf-8")
    result = rehearse(host, SET_ADDRESS, "--host", host.platform.path(host.host))
    assert result.exit_code == 2
    assert b"adapters: " in result.errors


def test_a_plan_is_done_once(host):
    assert save(host, PERSONALITY, *answers(host, CHOOSE_FCOE)).exit_code == 0
    validate(json.loads(host.plan.read_text(encoding="utf-8")), "plan")
    first = run_plan(host)
    assert first.exit_code == 0
    assert text_of(host, first).endswith("\nWhat happened is what was rehearsed.\n")
    assert "pendingPersonality" in host.host.read_text(encoding="utf-8")
    after = host.host.read_bytes()
    host.calls()
    second = run_plan(host)
    assert second.exit_code == 2
    assert b"this plan was used" in second.errors
    assert host.host.read_bytes() == after
    assert host.calls() == []


@pytest.mark.platforms("native", "sanitize")
def test_only_its_owner_reads_a_plan(host):
    save(host, SET_ADDRESS)
    assert stat.S_IMODE(os.stat(host.plan).st_mode) == 0o600


def test_a_plan_is_refused_when_the_host_has_changed_where_it_works(host):
    save(host, SET_ADDRESS)
    edit(host, lambda document: document["adapters"][0]["ports"][0]["functions"][0]["ethernet"]["tcpIp"].update(address="192.0.2.55"))
    result = run_plan(host)
    assert result.exit_code == 1
    assert "Nothing was done." in text_of(host, result)
    assert "tcpIp.address: 192.0.2.10 → 192.0.2.55\n" in text_of(host, result)
    assert "192.0.2.77" not in host.host.read_text(encoding="utf-8")
    report = report_of(run_plan(host, "--json"), "run")
    assert (report["outcome"], report["plan"]["run"], report["calls"]) == ("refused", False, [])
    assert [change["member"] for change in report["plan"]["changes"]] == ["tcpIp.address"]
    edit(host, lambda document: document["adapters"][0]["ports"][0]["functions"][0]["ethernet"]["tcpIp"].update(address="192.0.2.10"))
    assert run_plan(host).exit_code == 0


def test_what_changes_elsewhere_does_not_matter(host):
    save(host, SET_ADDRESS)
    edit(host, lambda document: document["adapters"][2]["ports"][0]["functions"][0]["ethernet"].update(tcpIp={"address": "192.0.2.66"}))
    assert run_plan(host).exit_code == 0


def test_what_happened_is_compared_with_what_was_rehearsed(host):
    save(host, PERSONALITY, *answers(host, CHOOSE_FCOE))
    # A host that refuses personalities from now on tells nobody before it is asked.
    edit(host, lambda document: document["adapters"][0]["ports"][0]["resources"].update(completionCode=5))
    result = run_plan(host, "--json")
    report = report_of(result, "run")
    assert result.exit_code == 1
    assert report["outcome"] == "refused"
    assert (report["plan"]["run"], report["plan"]["as_rehearsed"]) == (True, False)
    assert b"used\": true" in host.plan.read_bytes()


def test_a_plan_asks_nobody(host):
    result = rehearse(host, PERSONALITY, "--save", "plan.json", stdin="2\ny\n")
    assert result.exit_code == 2
    assert b"29456" in result.errors
    assert not host.plan.exists()


def test_a_secret_stays_where_it_is(host):
    login = ["-iscsi", "-setinitiator", "iqn.2015-01.com.example:another", "-onewaychap"]
    given = answers(host, {"format": 1, "answers": [
        {"message": 28692, "answers": ["storage"]}, {"message": 28693, "answers": [{"environment": "CHAP_SECRET"}]}]})
    result = rehearse(host, login, "--json", "--save", "plan.json", "--keep", "twin.json", *given, env={"CHAP_SECRET": SECRET})
    report = report_of(result, "rehearsal")
    assert (result.exit_code, report["outcome"]) == (1, "uncertain")
    assert [entry["reason"] for entry in report["uncertainties"]] == ["whether the host takes over a secret cannot be read back"]
    assert SECRET not in text_of(host, result) + result.errors.decode("utf-8", "replace")
    assert SECRET not in host.plan.read_text(encoding="utf-8")
    twin = json.loads((host.work / "twin.json").read_text(encoding="utf-8"))
    assert twin["initiator"]["name"] == "iqn.2015-01.com.example:another"
    assert twin["initiator"]["login"]["targetSecret"] == ""
    assert run_plan(host).exit_code == 2  # the variable is not there any more


def files_in(temporary):
    """The files of the private folders; none while one of these goes."""
    try:
        return list(temporary.glob("tavrohost-*/*"))
    except FileNotFoundError:
        return []


@pytest.mark.platforms("native", "sanitize")
def test_a_secret_stands_in_no_temporary_file(host):
    """Looked for as long as the twin lives, until the twin with the change was seen."""
    temporary = host.folder / "temporary"
    temporary.mkdir()
    name = "iqn.2015-01.com.example:another"
    given = answers(host, {"format": 1, "answers": [
        {"message": 28692, "answers": ["storage"]}, {"message": 28693, "answers": [{"environment": "CHAP_SECRET"}]}]})
    command = host.tool_command(["rehearse", "--host", host.platform.path(host.host), *given, "--",
                                 "-iscsi", "-setinitiator", name, "-onewaychap"])
    seen = set()
    for _ in range(30):
        process = subprocess.Popen(command, cwd=host.work, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL,
                                   env=host.environment() | {"TMPDIR": str(temporary), "CHAP_SECRET": SECRET})
        while process.poll() is None:
            for path in files_in(temporary):
                with contextlib.suppress(OSError):  # it is gone, or on its way to its place
                    seen.add(path.read_bytes())
        assert process.returncode == 1
        if any(name.encode() in content and b'"adapters"' in content for content in seen):
            break
    else:
        pytest.fail("the twin with the change was never seen")
    assert all(SECRET.encode() not in content for content in seen)


def test_a_secret_of_the_twin_is_known_to_it(host):
    """A login that the twin's own target accepts is accepted with that secret only."""
    def want_chap(document):
        document["iscsiTargets"][0]["chap"] = {"targetName": "storage", "targetSecret": SECRET}
    edit(host, want_chap)
    target = json.loads(host.host.read_text(encoding="utf-8"))["iscsiTargets"][0]
    login = ["-iscsi", "02-00-5E-10-00-02", "-target", "-login", target["name"], target["portals"][0]["address"], "-onewaychap"]
    given = answers(host, {"format": 1, "answers": [
        {"message": 28692, "answers": ["storage"]}, {"message": 28693, "answers": [{"environment": "CHAP_SECRET"}]}]})
    options = ["--json", "--host", host.platform.path(host.host), *given]
    outcomes = {}
    for secret in (SECRET, "another-secret-1"):
        report = report_of(rehearse(host, login, *options, env={"CHAP_SECRET": secret}), "rehearsal")
        outcomes[secret] = report["outcome"]
    assert outcomes == {SECRET: "uncertain", "another-secret-1": "refused"}


def test_an_import_makes_no_plan(host):
    result = rehearse(host, ["-import"], "--save", "plan.json")
    assert result.exit_code == 2
    assert b"which no plan can hold" in result.errors
    assert not host.plan.exists()
    assert host.calls() == []


def test_what_waits_for_the_restart_on_a_twin_does_not_keep_a_plan_from_being_run(host):
    given = answers(host, CHOOSE_FCOE)
    assert rehearse(host, PERSONALITY, "--keep", "twin.json", *given).exit_code == 0
    assert "pendingPersonality" in (host.work / "twin.json").read_text(encoding="utf-8")
    save(host, SET_ADDRESS, "--host", "twin.json")
    assert host.run_tool(["run", *given, "--", *PERSONALITY]).exit_code == 0
    result = run_plan(host)
    assert result.exit_code == 0, result
    assert text_of(host, result).endswith("\nWhat happened is what was rehearsed.\n")


def test_a_refusal_by_completion_code_is_not_certain(host):
    edit(host, lambda document: document["adapters"][0]["ports"][0]["resources"].update(completionCode=5))
    result = rehearse(host, PERSONALITY, "--json", "--host", host.platform.path(host.host), *answers(host, CHOOSE_FCOE))
    report = report_of(result, "rehearsal")
    assert (result.exit_code, report["outcome"], report["certain"]) == (1, "refused", False)
    assert [(entry["operation"], entry["reason"]) for entry in report["uncertainties"]] == [
        (61, "the twin refuses it by rules that the host may not have")]


def test_of_a_failed_run_nothing_is_certain(host):
    result = rehearse(host, PERSONALITY, "--json", "--host", host.platform.path(host.host), *answers(host, {"format": 1, "answers": []}))
    report = report_of(result, "rehearsal")
    assert (result.exit_code, report["outcome"], report["certain"]) == (2, "failed", False)


def test_the_patch_fits_the_file_that_was_given(host):
    def take_out(document):
        document["adapters"][0]["ports"][0]["functions"][1]["iscsi"] = {}
    edit(host, take_out)
    document = json.loads(host.host.read_text(encoding="utf-8"))
    result = rehearse(host, ["-iscsi", "02-00-5E-10-00-02", "-portal", "-add", "198.51.100.20"],
                      "--json", "--host", host.platform.path(host.host), "--keep", "twin.json")
    patched = jsonpatch.apply_patch(document, report_of(result, "rehearsal")["patch"])
    [portal] = patched["adapters"][0]["ports"][0]["functions"][1]["iscsi"]["storage"]["portals"]
    assert portal["address"] == "198.51.100.20"
    (host.work / "patched.json").write_text(json.dumps(patched), encoding="utf-8")
    assert host.run_tool(["diff", "patched.json", "twin.json"]).exit_code == 0


def test_a_port_that_is_not_told_leaves_the_others(host):
    refusal = {"call": "GetPortWWNs", "status": 5, "error": {"code": 5, "message": "The port does not answer."}}
    host.write_script({"answers": [refusal | {"adapter": "Tavro CNA 4610K", "port": "Port 2"}] * 2})
    result = rehearse(host, SET_ADDRESS)
    assert result.exit_code == 0
    assert b"does not tell Port 2 of Tavro CNA 4610K (GetPortWWNs): The port does not answer." in result.errors
    host.write_script({"answers": [refusal] * 20})
    result = rehearse(host, SET_ADDRESS)
    assert result.exit_code == 2
    assert b"(GetPortWWNs): The port does not answer." in result.errors


def test_a_word_that_may_be_a_secret_is_saved_nowhere(host):
    login = ["-iscsi", "-setinitiator", "iqn.2015-01.com.example:another", "-onewaychap", "storage", SECRET]
    result = rehearse(host, login, "--save", "plan.json")
    assert result.exit_code == 2
    assert SECRET.encode() not in result.output + result.errors
    assert not host.plan.exists()


def test_a_host_that_cannot_be_captured_is_not_rehearsed_on(host):
    host.write_script({"answers": [{"call": "GetDiscoveredAdapters", "status": 5,
                                    "error": {"code": 5, "message": "The adapters do not answer."}}]})
    result = rehearse(host, SET_ADDRESS)
    assert result.exit_code == 2
    assert b"(GetDiscoveredAdapters): The adapters do not answer." in result.errors


def test_a_library_that_only_says_yes_is_found_out(host):
    save(host, SET_ADDRESS)
    # A library that says yes and does nothing.
    host.write_script({"answers": [{"call": "DoOperation", "operation": 68}]})
    result = run_plan(host, "--json")
    report = report_of(result, "run")
    assert result.exit_code == 1
    assert (report["outcome"], report["plan"]["as_rehearsed"]) == ("done", False)
    assert "tcpIp.address" in [change["member"] for change in report["plan"]["changes"]]


def test_arguments_beside_a_plan_are_refused(host):
    save(host, SET_ADDRESS)
    result = run_plan(host, "--", *SET_ADDRESS)
    assert result.exit_code == 2
    assert b"--plan" in result.errors


@pytest.mark.parametrize("content, told", [
    (None, b"there is no such file"),
    ("{", b"line 1"),
    ("{}", b"\"format\" is missing"),
])
def test_what_is_no_plan_is_refused(host, content, told):
    if content is not None:
        host.plan.write_text(content, encoding="utf-8")
    result = run_plan(host)
    assert result.exit_code == 2
    assert told in result.errors
    assert host.calls() == []
