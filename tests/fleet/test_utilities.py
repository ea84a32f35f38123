"""What the modules share, one piece at a time."""

import contextlib
import importlib
import re
import types

import pytest

from fleet import OPERATIONS, ROOT


@pytest.fixture(name="utility")
def fixture_utility(collections):
    """utility(name): one of the collection's module_utils, as it was installed."""
    def load(name):
        module = importlib.import_module(f"ansible_collections.tavro.fleet.plugins.module_utils.{name}")
        assert module.__file__.startswith(str(collections))
        return module
    return load


def test_the_operations_that_read_are_told_by_their_names(utility):
    # What tavrohost knows as changing or reaching out; the pings reach out.
    certainty = (ROOT / "twin" / "rehearse" / "certainty.cpp").read_text()
    table = re.search(r"DoubtRows\[\] = \{(.*?)\n\};", certainty, re.S).group(1)
    changing = {name for name in re.findall(r"\{OperationCode::(\w+),", table) if not name.startswith("Ping")}
    reading = utility("flow").READING
    assert changing == {name for name in OPERATIONS.values() if not name.startswith(reading)}


FUNCTIONS = [
    {"number": 0, "mac": "02-00-5E-10-00-00", "ethernet": {"interface": "eth0"}},
    {"number": 2, "mac": "02-00-5E-10-00-02", "ethernet": {"interface": "eth1"}},
    {"number": 3, "mac": "02-00-5E-10-00-02", "iscsi": {}},
    {"number": 4, "mac": "02-00-5E-10-00-04",
     "fcoe": {"portWwn": "10:00:02:00:5E:10:00:04", "nodeWwn": "20:00:02:00:5E:10:00:04"}},
]
DOCUMENT = {
    "name": "small-host",
    "adapters": [{"name": "First", "ports": [{"name": "Port 1", "functions": FUNCTIONS}]}],
    "captured": {"answers": [
        {"call": "DoOperation", "operation": 63, "request": "02-00-5E-10-00-00", "status": 9},
        {"call": "DoOperation", "operation": 63, "request": "02-00-5E-10-00-02", "status": 0, "output": ["x"]}]},
}


def test_a_function_is_found_by_its_kind_and_its_identifier_however_it_is_written(utility):
    host = utility("host").Host(DOCUMENT)
    assert host.function("iscsi", "02:00:5e:10:00:02").part == {}
    assert host.function("ethernet", "02005E100002").part == {"interface": "eth1"}
    function = host.function("fcoe", "1000-0200-5e10-0004")
    assert function.identifier == "10:00:02:00:5E:10:00:04"
    assert (function.adapter["name"], function.port["name"]) == ("First", "Port 1")
    assert host.any_function("02005e100004").kind == "fcoe"
    assert host.any_function("02005e100002").kind == "ethernet"


def test_a_function_of_another_kind_is_not_found(utility):
    with pytest.raises(utility("failure").Failure) as told:
        utility("host").Host(DOCUMENT).function("fcoe", "02-00-5E-10-00-02")
    assert str(told.value) == ("The host has no FCoE function 02-00-5E-10-00-02; "
                               "there are: FCoE 10:00:02:00:5E:10:00:04")


def test_an_answer_is_found_unless_it_was_refused(utility):
    host = utility("host").Host(DOCUMENT)
    assert host.answer(63, "02:00:5e:10:00:02") == ["x"]
    assert host.answer(63, "02-00-5E-10-00-00") is None
    assert host.answer(64, "02-00-5E-10-00-02") is None


def test_a_difference_names_what_differs(utility):
    def host(storage, secret):
        function = {"number": 2, "mac": "m", "iscsi": {"storage": storage}}
        adapter = {"name": "A", "ports": [{"name": "Port 1", "functions": [function]}]}
        return {"initiator": {"login": {"targetSecret": secret}}, "adapters": [adapter]}

    def stays(digest):
        return {"address": "a", "port": "2", "login": {"dataDigest": digest}}
    before = host({"portals": [{"address": "a", "port": "1"}, stays("No")], "statistics": {"logins": 1}}, "")
    after = host({"portals": [stays("CRC32C"), {"address": "b"}], "statistics": {"logins": 2}}, "s")
    after["reachable"] = [{"address": "c"}]

    def around(portals):
        return {"adapters": {"A": {"ports": {"Port 1": {"functions": {
            "iSCSI m": {"iscsi": {"storage": {"portals": portals}}}}}}}}}

    assert utility("difference").difference(before, after) == {
        "before": around({"a:1": {"address": "a", "port": "1"}}), "after": around({"b": {"address": "b"}})}


def test_a_difference_tells_what_waits_from_the_twin(utility):
    before = {"adapters": [{"name": "A", "type": "CNA"}]}
    twin = {"adapters": [{"name": "A", "type": "other", "pendingPartitions": {"mode": "MF"}}]}
    assert utility("difference").difference(before, before, twin) == {
        "before": {"adapters": {"A": {}}}, "after": {"adapters": {"A": {"pendingPartitions": {"mode": "MF"}}}}}


def test_elements_with_one_name_are_all_told(utility):
    before = {"targets": [{"name": "t", "at": 1}, {"name": "t", "at": 2}]}
    after = {"targets": [{"name": "t", "at": 1}, {"name": "t", "at": 3}]}
    assert utility("difference").difference(before, after) == {
        "before": {"targets": {"t (1)": {"at": 2}}}, "after": {"targets": {"t (1)": {"at": 3}}}}


def test_a_secret_stands_in_no_answers_document(utility):
    command = utility("command")
    kept = []

    def keep(text):
        kept.append(text)
        return "/kept"
    document = command.answers_document({28692: "name", 28693: command.Secret("hidden"), "New:": [1, 2]}, keep)
    assert kept == ["hidden"] and b"hidden" not in document
    assert document == (b'{"format": 1, "answers": [{"message": 28692, "answers": ["name"]}, '
                        b'{"message": 28693, "answers": [{"file": "/kept"}]}, '
                        b'{"prompt": "New:", "answers": ["1", "2"]}]}')


@pytest.mark.parametrize("first, second, same", [
    ("2001:DB8::0077", "2001:db8::77", True), ("192.0.2.1", "192.0.2.2", False), ("Yes", "Yes", True),
    ("", "::", False),
])
def test_addresses_are_compared_however_they_are_written(utility, first, second, same):
    assert utility("addresses").same_address(first, second) is same


@pytest.mark.parametrize("first, second, same", [
    ("0512", "512", True), ("512", "5120", False), ("", "0", False), ("x", "x", True), ("\u00b2", "2", False)])
def test_numbers_are_compared_however_they_are_written(utility, first, second, same):
    assert utility("switches").same_number(first, second) is same


def test_a_wrong_address_names_its_option(utility):
    with pytest.raises(utility("failure").Failure) as told:
        utility("addresses").ipv4_address("gateway", "2001:db8::1")
    assert str(told.value) == "gateway: 2001:db8::1 is no IPv4 address"


@pytest.mark.parametrize("kind, readings", {"Failure": 2, "Ended": 1}.items())
def test_a_module_that_is_to_end_does_not_read_the_host_again(utility, monkeypatch, tmp_path, kind, readings):
    flow, tool = utility("flow"), utility("tool")
    host_file = tmp_path / "host.json"
    host_file.write_text("{}")
    read, failed = [], {}

    class Host(contextlib.nullcontext):
        """In the place of tavrohost."""
        remarks = []

        def __init__(self, _):
            super().__init__(self)

        def capture(self):
            read.append(kind)
            return host_file

    def interrupted(work):
        work.capture()
        work.result["changed"] = True
        raise getattr(tool, kind)("interrupted")
    monkeypatch.setattr(flow, "Tool", Host)
    module = types.SimpleNamespace(check_mode=False, fail_json=failed.update, exit_json=lambda **_: None)
    flow._finish(module, interrupted)  # pylint: disable=protected-access
    assert len(read) == readings and failed["msg"] == "interrupted" and ("diff" in failed) == (readings == 2)
