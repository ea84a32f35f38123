"""What the modules for adapters, booting and saved configurations send for a host, and what they refuse to send: each
is asked directly, for the simulator's own host."""

import copy
import importlib
import json
import os
import subprocess
from xml.etree import ElementTree

import pytest

from fleet import TAVROHOST

ETHERNET = "02-00-5E-10-00-00"
STORAGE = "02-00-5E-10-00-02"
FCOE = "10:00:02:00:5E:10:00:04"
UNDIVIDABLE = "02-00-5E-30-00-00"


@pytest.fixture(scope="module", name="captured")
def fixture_captured(tmp_path_factory):
    folder = tmp_path_factory.mktemp("host")
    # Without a host file the simulator takes its own host.
    done = subprocess.run([TAVROHOST, "capture"], stdout=subprocess.PIPE, cwd=folder, check=True,
                          env={**os.environ, "TAVROSIM_HOST": str(folder / "host.json")})
    return json.loads(done.stdout)


@pytest.fixture(name="document")
def fixture_document(captured):
    return copy.deepcopy(captured)


@pytest.fixture(name="ask")
def fixture_ask(ask_module, document):
    """ask(module, options): the commands that the module needs; what is not given is as Ansible fills it in."""
    return lambda module, **given: ask_module(module, document, given)


@pytest.fixture(name="refusal")
def fixture_refusal(collections, ask):
    """refusal(module, options): why the module cannot do what is asked for."""
    failure = importlib.import_module("ansible_collections.tavro.fleet.plugins.module_utils.failure")
    assert failure.__file__.startswith(str(collections))

    def refusal(module, **given):
        with pytest.raises(failure.Failure) as told:
            ask(module, **given)
        return str(told.value)
    return refusal


def function_of(document, adapter, port, place):
    return document["adapters"][adapter]["ports"][port]["functions"][place]


# ---- Adapter settings ----------------------------------------------------------------------------------------------

def test_settings_are_numbered_as_the_dialogue_lists_them(ask, document):
    # Without the fourth of the list, the numbers of all behind it are one less.
    function_of(document, 0, 0, 0)["ethernet"]["settings"]["interruptModeration"] = "NA"
    command, = ask("adapter_setting", mac=ETHERNET, settings={
        "speed": "10 Gbps", "locally_administered_address": "0", "receive_buffers": "64", "jumbo_packet": "1514",
        "wake_on_magic_packet": "Enabled"})
    assert command.arguments == ["-ethernet", ETHERNET, "-setadapinfo"]
    # The address and the largest packet are so already.
    assert command.answers == {29953: 0, 29957: [9, 15, "y"], 29956: [3, 2],
                               "New Value (64~4096, step: 8) :": ["64"], 29197: "y"}


@pytest.mark.parametrize("settings, reason", [
    ({"flow_control": "Sometimes"}, "settings.flow_control: Sometimes is none of the choices: Disabled, Rx Enabled, "
                                    "Tx Enabled, Rx & Tx Enabled, Auto Negotiation"),
    ({"receive_buffers": "1001"}, "settings.receive_buffers: 1001 is no multiple of 8 within 64 and 4096"),
    ({"receive_buffers": "8192"}, "settings.receive_buffers: 8192 is no multiple of 8 within 64 and 4096"),
    ({"receive_buffers": "512x"}, "settings.receive_buffers: 512x is no multiple of 8 within 64 and 4096"),
    ({"locally_administered_address": "02-00"}, "settings.locally_administered_address: 02-00 is no MAC address"),
])
def test_a_setting_that_would_not_be_taken_is_not_sent(refusal, settings, reason):
    assert refusal("adapter_setting", mac=ETHERNET, settings=settings) == reason


def test_a_setting_that_the_adapter_does_not_have_is_told(refusal):
    assert refusal("adapter_setting", mac=UNDIVIDABLE, settings={"jumbo_packet": "9014"}) == (
        f"settings.jumbo_packet: Ethernet {UNDIVIDABLE} does not have this setting")


def test_numbers_of_ranges_are_compared_and_sent_as_numbers(ask):
    there = {"receive_buffers": "0512", "transmit_buffers": "00256"}
    command, = ask("adapter_setting", mac=ETHERNET, settings=there)
    sent = [answer for question, answer in command.answers.items() if str(question).startswith("New Value")]
    assert sent == [["256"]]
    assert ask("adapter_setting", mac=ETHERNET, settings={"receive_buffers": "0512"}) == []


# ---- Partitions and personalities ----------------------------------------------------------------------------------

def test_partitions_are_asked_port_by_port(ask):
    command, = ask("partitions", mac=STORAGE, mode="partitioned", ports=[{"number": 2, "personality": "iscsi"}],
                   functions=[{"number": 1, "lower_limit": 10}, {"number": 4, "upper_limit": 90}])
    assert command.arguments == ["-npar", STORAGE, "-set"]
    # Functions 0, 2, 4, 6 are those of the first port, 1, 3, 5, 7 those of the second.
    assert command.answers == {29185: 2, 29187: [1, 1], 29191: [1, 2], 29197: "y",
                               29188: ["0", "0", "0", "0", "10", "0", "0", "0"],
                               29189: ["100", "100", "90", "100", "100", "100", "100", "100"]}


def test_an_adapter_that_is_divided_so_is_left_alone(ask):
    assert ask("partitions", mac="02-00-5E-20-00-00", mode="partitioned",
               ports=[{"number": 3, "flow_control": "Tx/Rx Enabled", "personality": "iscsi"}],
               functions=[{"number": 7, "lower_limit": 40, "upper_limit": 80}]) == []
    assert ask("partitions", mac=ETHERNET, mode="single") == []


def test_partitions_that_take_something_from_another_function_say_so(ask, document):
    adapter = document["adapters"][0]
    adapter["partitionState"] = 3
    adapter["partitions"]["functions"][4]["personality"] = "iSCSI"
    wanted = {"mac": ETHERNET, "mode": "partitioned", "ports": [{"number": 1, "personality": "ethernet"}]}
    assert ask("partitions", **wanted) == []
    command, = ask("partitions", **wanted, functions=[{"number": 0, "lower_limit": 1}])
    assert command.warning == "function 4 is for iSCSI and becomes one for Ethernet"


@pytest.mark.parametrize("options, reason", [
    ({"ports": [{"number": 3}]}, "ports: the adapter has no port 3; it has 2"),
    ({"functions": [{"number": 8}]}, "functions: there is no function 8; they are 0 to 7"),
    ({"functions": [{"number": 1, "upper_limit": 101}]}, "functions: upper_limit 101 is not within 0 and 100"),
])
def test_partitions_that_cannot_be_are_told(refusal, options, reason):
    assert refusal("partitions", mac=ETHERNET, mode="partitioned", **options) == reason


def test_an_adapter_for_ethernet_takes_no_other_personality(refusal):
    ports = [{"number": 1, "personality": "iscsi"}]
    assert refusal("partitions", mac=UNDIVIDABLE, mode="partitioned", ports=ports) == (
        "ports: the adapter's type is Ethernet, all of its functions are for Ethernet")


@pytest.mark.parametrize("mac, personality, count", [
    (ETHERNET, "iscsi", 0), (ETHERNET, "fcoe", 1), ("10:00:02:00:5e:10:00:05", "fcoe", 0),
    # What these tell does not count: the first is partitioned, the second for Ethernet only.
    ("02-00-5E-20-00-00", "iscsi", 1), (UNDIVIDABLE, "iscsi", 1),
])
def test_a_personality_is_sent_where_it_differs(ask, mac, personality, count):
    assert len(ask("personality", mac=mac, personality=personality)) == count


# ---- Booting -------------------------------------------------------------------------------------------------------

def test_all_that_stays_of_an_iscsi_boot_is_sent_again(ask, document):
    function_of(document, 0, 0, 1)["iscsi"]["boot"].update(
        address="192.0.2.20", initiatorName="iqn.example:a", retryCount="3",
        secondTarget={"used": "Enabled", "address": "192.0.2.9", "port": "", "lun": "4", "name": "iqn.example:t"})
    command, = ask("iscsi_boot", mac=STORAGE, link_up_delay=5)
    answers = {question: getattr(answer, "text", answer) for question, answer in command.answers.items()}
    again, = answers.pop(26693)
    assert again.text == ""
    assert answers == {
        26658: "y", 26660: "y", 26663: "5", 26702: "3", 26666: "192.0.2.20", 26667: "0.0.0.0", 26668: "0.0.0.0",
        26669: "iqn.example:a", 26670: "", 26671: "", 26690: "", 26673: "n", 26681: "y", 26682: "192.0.2.9",
        26683: "4", 26684: "3260", 26685: "iqn.example:t", 26686: "", 26687: "", 26705: "n", 26707: "n", 26708: "n"}


def test_the_secrets_of_both_targets_are_repeated_in_order(ask):
    target = {"address": "192.0.2.9", "name": "t"}
    command, = ask("iscsi_boot", mac=STORAGE, first_target={**target, "chap_secret": "one"},
                   second_target={**target, "chap_secret": "two"})
    assert [secret.text for secret in command.answers[26693]] == ["one", "two"]


@pytest.mark.parametrize("update, count", [("on_create", 0), ("always", 1)])
def test_a_secret_alone_is_sent_when_it_is_asked_for(ask, update, count):
    commands = ask("iscsi_boot", mac=STORAGE, chap_name="", chap_secret="s", update_secret=update)
    assert len(commands) == count and not any(command.provable for command in commands)


@pytest.mark.parametrize("options, reason", [
    ({"tcpip_by_dhcp": False}, "address: is needed, since the function has none and DHCP is not used"),
    ({"first_target": {}}, "first_target.address: is needed, since the target has none"),
    ({"busy_retries": 100}, "busy_retries: 100 is not within 0 and 99"),
    ({"chap_name": "a"},
     "chap_secret: is needed, since each change sets the secrets anew, and there is the CHAP name a"),
    ({"chap_name": "a", "chap_secret": "s\ny"}, "chap_secret: is no single line"),
    ({"gateway": "2001:db8::1"}, "gateway: 2001:db8::1 is no IPv4 address"),
])
def test_an_iscsi_boot_that_cannot_be_is_told(refusal, options, reason):
    assert refusal("iscsi_boot", mac=STORAGE, **options) == reason


def test_an_fcoe_boot_sends_targets_up_to_the_last_one_that_differs(ask, document):
    array, tapes, archive = ("50:00:02:00:5E:40:00:01", "50:00:02:00:5E:40:00:02", "50:00:02:00:5E:40:00:03")
    boot = function_of(document, 0, 0, 2)["fcoe"]["boot"]
    boot["targets"][:3] = [{"target": array, "lun": "1", "state": "Enabled"},
                           {"target": tapes, "lun": "0", "state": "Enabled"},
                           {"target": archive, "lun": "0", "state": "Enabled"}]
    wanted = [{"wwn": array.lower(), "lun": 1}, {"wwn": tapes, "enabled": False}, {"wwn": archive}]
    command, = ask("fcoe_boot", wwn=FCOE, state="one_time_disabled", targets=wanted)
    assert command.answers == {22273: "o", 22274: "n", 22275: 3, 22276: 30, 22277: 15, 22279: [array, tapes],
                               22280: ["1", "0"], 22281: ["y", "n"], 22282: ["y", "n"]}
    wanted[1]["enabled"] = True
    assert ask("fcoe_boot", wwn=FCOE, targets=wanted) == []
    # The first target cannot be left out.
    assert ask("fcoe_boot", wwn=FCOE, login_retries=4)[0].answers[22279] == [array]


@pytest.mark.parametrize("wwn, options, reason", [
    (FCOE, {"state": "enabled"}, "targets: the function has none, and the command sets at least one; name it"),
    (FCOE, {"targets": [{"wwn": "50:00:02:00:5E:40:00:09"}]},
     f"targets: FCoE {FCOE} does not see 50:00:02:00:5E:40:00:09"),
    ("10:00:02:00:5E:10:00:05", {"targets": [{"wwn": "50:00:02:00:5E:40:00:03"}]},
     "targets: FCoE 10:00:02:00:5E:10:00:05 does not see 50:00:02:00:5E:40:00:03"),
    (FCOE, {"targets": [{"wwn": "50:00:02:00:5E:40:00:01", "lun": 7}]},
     "targets: 50:00:02:00:5E:40:00:01 has no LUN 7; there are: 0, 1"),
    (FCOE, {"login_retries": 9}, "login_retries: 9 is not within 0 and 8"),
])
def test_an_fcoe_boot_that_cannot_be_is_told(refusal, wwn, options, reason):
    assert refusal("fcoe_boot", wwn=wwn, **options) == reason


# ---- Saved configurations ------------------------------------------------------------------------------------------

INITIATOR = ('<Initiator_Login><Initiator_Name value="iqn.2015-01.com.example:demo-host"/>{more}</Initiator_Login>')
PORTAL = ('<Portal_Login><IP_Address value="{address}"/><Port_Number value="3260"/>'
          '<Target_Secret value="s"/></Portal_Login>')
TARGET = ('<Target_Login><Target_Name value="t"/><Status value="{status}"/><Portal_IP value="198.51.100.20"/>'
          '<Portal_PortNumber value="3260"/></Target_Login>')


def saved(*parts, initiator="", port="Port 1"):
    return (f'<CNA_Configuration>{INITIATOR.format(more=initiator)}<Adapter number="0">'
            f'<Function port="{port}" number="2">{"".join(parts)}</Function></Adapter></CNA_Configuration>')


def sent(commands):
    """The names of the elements that are imported, below the document's top and below functions."""
    command, = commands
    top = ElementTree.fromstring(command.files["cnadiscovery.xml"])
    return [element.tag for element in top], [part.tag for part in top.findall("Adapter/Function/*")]


def test_only_what_is_missing_is_imported(ask):
    known, unknown = PORTAL.format(address="198.51.100.20"), PORTAL.format(address="198.51.100.21")
    assert ask("config_import", content=saved(known)) == []
    assert sent(ask("config_import", content=saved(known, unknown))) == (["Nothing", "Adapter"], ["Portal_Login"])
    assert sent(ask("config_import", content=saved(known, initiator='<Data_Digest value="CRC32C"/>'))) == (
        ["Initiator_Login"], [])


def test_secrets_are_imported_each_time_when_that_is_asked_for(ask):
    commands = ask("config_import", content=saved(PORTAL.format(address="198.51.100.20")), update_secret="always")
    assert sent(commands) == (["Nothing", "Adapter"], ["Portal_Login"]) and not commands[0].provable


def test_a_session_is_opened_once(ask, document):
    connected = saved(TARGET.format(status="Connected"))
    assert sent(ask("config_import", content=connected))[1] == ["Target_Login"]
    assert ask("config_import", content=saved(TARGET.format(status="Disconnected"))) == []
    function_of(document, 0, 0, 1)["iscsi"]["storage"]["sessions"] = [
        {"id": 1, "target": "t", "portal": {"address": "198.51.100.20"}}]
    assert ask("config_import", content=connected) == []


def test_what_dhcp_decides_is_not_compared(ask, document):
    settings = ('<TCP_IP_Setting><Dhcp_Enabled value="Yes"/><IP_Address value="192.0.2.99"/><Vlan_Enabled value="No"/>'
                '<Vlan_Id value="5"/></TCP_IP_Setting>')
    assert sent(ask("config_import", content=saved(settings)))[1] == ["TCP_IP_Setting"]
    function_of(document, 0, 0, 1)["iscsi"]["tcpIp"]["dhcp"] = "Yes"
    assert ask("config_import", content=saved(settings)) == []


@pytest.mark.parametrize("initiator, parts", {
    "": ['<Portal_Login><IP_Address value="198.51.100.20"/><Port_Number value="03260"/></Portal_Login>',
         '<Portal_Login><IP_Address value="198.51.100.20"/></Portal_Login>'],
    '<Multipath value="YES"/><Auth_Method value="none"/><Header_Digest value="no"/>': [
        '<TCP_IP_Setting><Dhcp_Enabled value="no"/><IP_Address value="192.0.2.20"/><Vlan_Enabled value="Yes"/>'
        '<Vlan_Id value="012"/></TCP_IP_Setting>',
        '<TCP_IP_Setting><Vlan_Enabled value="YES"/><Vlan_Id value="12"/></TCP_IP_Setting>'],
}.items())
def test_other_spellings_are_there_already(ask, document, initiator, parts):
    function_of(document, 0, 0, 1)["iscsi"]["tcpIp"]["vlanId"] = "12"
    function_of(document, 0, 0, 1)["iscsi"]["storage"]["portals"] = [{"address": "198.51.100.20", "port": ""}]
    document["initiator"]["login"].update(multipath="Yes", authentication="None", headerDigest="No")
    for part in parts:
        assert ask("config_import", content=saved(part, initiator=initiator)) == []


def test_switches_in_small_letters_count(ask, document):
    function_of(document, 0, 0, 1)["iscsi"]["tcpIp"].update(dhcp="Yes", vlanId="0")
    settings = ('<TCP_IP_Setting><Dhcp_Enabled value="yes"/><IP_Address value="192.0.2.99"/><Vlan_Enabled value="no"/>'
                '<Vlan_Id value="5"/></TCP_IP_Setting>')
    assert ask("config_import", content=saved(settings)) == []


def test_a_session_is_known_by_its_portal_however_it_is_written(ask, document):
    function_of(document, 0, 0, 1)["iscsi"]["storage"]["sessions"] = [
        {"id": 1, "target": "t", "portal": {"address": "198.51.100.20"}}]
    connected = TARGET.format(status="Connected")
    assert ask("config_import", content=saved(connected.replace("3260", "03260"))) == []
    assert sent(ask("config_import", content=saved(connected.replace("3260", "03261"))))[1] == ["Target_Login"]


@pytest.mark.parametrize("content", [
    "<CNA_Configuration/>", "<a><Adapter number='0'/></a>", "<a><Nothing/><Adapter number='0'/></a>",
    "<a><Adapter number='0'><Function port='Port 1' number='2'/></Adapter></a>"])
def test_a_configuration_that_says_nothing_is_told(refusal, content):
    assert refusal("config_import", content=content) == "content: has neither an initiator nor a function"


def test_letters_that_the_import_does_not_take_are_told(refusal):
    assert refusal("config_import", content=saved(initiator='<Target_CHAPName value="m\u00fcller"/>')) == (
        "content: the value of Target_CHAPName has letters that the import does not take")


def test_a_function_that_is_not_there_is_passed_over_only_on_request(ask, refusal):
    content = saved(PORTAL.format(address="198.51.100.21"), port="Port 9")
    assert refusal("config_import", content=content) == (
        "content: the host does not have adapter 0, Port 9, function 2")
    assert ask("config_import", content=content, skip_missing=True) == []


@pytest.mark.parametrize("content", ["<CNA_Configuration>", "", "<a/><b/>"])
def test_what_is_not_well_formed_is_told(refusal, content):
    assert refusal("config_import", content=content).startswith("content: is not well-formed: ")
