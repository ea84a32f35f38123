"""A saved iSCSI configuration, as `tavrocli -import` reads it: what of it a host does not have."""

import re
from xml.etree import ElementTree

from .addresses import DEFAULT_ISCSI_PORT, is_portal, same_address
from .failure import Failure
from .switches import same_number, same_switch

INITIATOR = "Initiator_Login"
LOGIN_MEMBERS = {
    "Multipath": "multipath",
    "Header_Digest": "headerDigest",
    "Data_Digest": "dataDigest",
    "Auth_Method": "authentication",
    "Target_CHAPName": "targetChapName",
    "Initiator_CHAPName": "initiatorChapName",
}
# How what is told of a login and of settings is compared, where that is not letter by letter.
COMPARED = {
    **dict.fromkeys(("Multipath", "Header_Digest", "Data_Digest", "Auth_Method", "Dhcp_Enabled", "Dhcp_Enabled_IPv6"),
                    same_switch),
    **dict.fromkeys(("Vlan_Id", "Vlan_Priority", "Max_Frame_Size", "Static_Prefixlen"), same_number),
    **dict.fromkeys(("IP_Address", "Subnet_Mask", "Default_Gateway", "Static_IPv6", "Gateway_IPv6"), same_address),
}
SECRETS = ("Target_Secret", "Initiator_Secret")
TCPIP_MEMBERS = {
    "Vlan_Id": "vlanId",
    "Vlan_Priority": "vlanPriority",
    "Dhcp_Enabled": "dhcp",
    "IP_Address": "address",
    "Subnet_Mask": "subnetMask",
    "Default_Gateway": "gateway",
    "Max_Frame_Size": "maxFrameSize",
    "Dhcp_Enabled_IPv6": "dhcpIPv6",
    "Static_IPv6": "addressIPv6",
    "Static_Prefixlen": "prefixLengthIPv6",
    "Gateway_IPv6": "gatewayIPv6",
}
# What DHCP decides.
LEASED = {
    "Dhcp_Enabled": ("IP_Address", "Subnet_Mask", "Default_Gateway"),
    "Dhcp_Enabled_IPv6": ("Static_IPv6", "Gateway_IPv6"),
}


class SavedConfiguration:
    """The content of a file for the import; fails for one that is not well-formed, and for one that says nothing.

    The first element is the place of the initiator. Each further one is an adapter, by the value of its first
    attribute; in it each one is a function, by the name of its port and its own number, the first two attributes.
    """

    def __init__(self, content):
        try:
            self._top = ElementTree.fromstring(content)
        except (ElementTree.ParseError, ValueError) as error:
            raise Failure(f"content: is not well-formed: {error}") from None
        if not any(element.tag == INITIATOR for element in self._top[:1]) and not any(map(len, self._top[1:])):
            raise Failure("content: has neither an initiator nor a function")
        for element in self._top.iter():
            if re.search(r"[^\x00-\x7f]", element.get("value", "")):
                raise Failure(f"content: the value of {element.tag} has letters that the import does not take")

    def missing_functions(self, document):
        """Names of the functions that are not on the host, for messages."""
        return [name for _, entry, name in self._functions(document) if entry is None]

    def without_what_is_there(self, document, with_secrets):
        """The part (bytes) that the host does not have, None for nothing. with_secrets: the initiator and the portals
        that have secrets count as missing."""
        top = ElementTree.Element(self._top.tag)
        initiator = next(iter(self._top), None)
        is_missing = initiator is not None and initiator.tag == INITIATOR and (
            not _has_initiator(document.get("initiator", {}), initiator) or with_secrets and _has_secret(initiator))
        # An element of another name keeps the initiator's place.
        top.append(initiator if is_missing else ElementTree.Element("Nothing"))
        for adapter, entry, _ in self._functions(document):
            parts = [part for part in entry["element"] if _is_missing(entry["function"], part, with_secrets)] \
                if entry else []
            if parts:
                is_missing = True
                function = ElementTree.SubElement(ElementTree.SubElement(top, adapter.tag, adapter.attrib),
                                                  entry["element"].tag, entry["element"].attrib)
                function.extend(parts)
        # With the mark, the import does not take the file for one in the host's code page.
        return ElementTree.tostring(top, encoding="unicode").encode("utf-8-sig") if is_missing else None

    def _functions(self, document):
        """For each function: the element of its adapter, its own element with the host's function (None where the host
        has none), and its name."""
        for adapter in list(self._top)[1:]:
            number = _attribute(adapter, 0)
            ports = [port for entry in document["adapters"] if str(entry["number"]) == number
                     for port in entry["ports"]]
            for element in adapter:
                port_name, function_number = _attribute(element, 0), _attribute(element, 1)
                found = [function for port in ports if port["name"] == port_name for function in port["functions"]
                         if str(function["number"]) == function_number]
                entry = {"element": element, "function": found[0]} if found else None
                yield adapter, entry, f"adapter {number}, {port_name}, function {function_number}"


def _attribute(element, position):
    return next(iter(list(element.attrib.values())[position:]), "")


def _values(element):
    """The values of an element's children by name; those without a value are as if they were not there."""
    return {child.tag: child.get("value") for child in element if child.get("value")}


def _has_secret(element):
    return any(name in SECRETS for name in _values(element))


def _has_initiator(there, element):
    values = _values(element)
    login = there.get("login", {})
    return (values.get("Initiator_Name", there.get("name")) == there.get("name")
            and all(_is_same(name, login.get(member, ""), values[name]) for name, member in LOGIN_MEMBERS.items()
                    if name in values))


def _is_missing(function, element, with_secrets):
    """Whether the host's function does not have what a child of the function's element says."""
    storage = function.get("iscsi", {}).get("storage", {})
    if element.tag == "TCP_IP_Setting":
        return not _has_settings(function.get("iscsi", {}).get("tcpIp", {}), _values(element))
    if element.tag == "Portal_Login":
        return not _has_portal(storage, _values(element)) or with_secrets and _has_secret(element)
    if element.tag == "Target_Login":
        return not _has_session(storage, _values(element))
    return False


def _has_settings(there, values):
    wanted = {name: values[name] for name in TCPIP_MEMBERS if name in values}
    if same_switch(values.get("Vlan_Enabled", ""), "No"):
        wanted["Vlan_Id"] = "0"
    for switch, leased in LEASED.items():
        if same_switch(values.get(switch, ""), "Yes"):
            wanted = {name: value for name, value in wanted.items() if name not in leased}
    # A setting that a function does not have is told as an empty text, and is not taken over.
    for name in ("Vlan_Priority", "Max_Frame_Size"):
        if not there.get(TCPIP_MEMBERS[name]):
            wanted.pop(name, None)
    return all(_is_same(name, there.get(TCPIP_MEMBERS[name], ""), value) for name, value in wanted.items())


def _has_portal(storage, values):
    return any(is_portal(portal, values.get("IP_Address", ""), values.get("Port_Number", DEFAULT_ISCSI_PORT))
               for portal in storage.get("portals", []))


def _has_session(storage, values):
    """A target that is not to be connected needs no session. Multipath would open a further one each time."""
    if values.get("Status") != "Connected":
        return True
    return any(session["target"] == values.get("Target_Name")
               and is_portal(session["portal"], values.get("Portal_IP", ""),
                             values.get("Portal_PortNumber", DEFAULT_ISCSI_PORT))
               for session in storage.get("sessions", []))


def _is_same(name, told, value):
    compare = COMPARED.get(name)
    return compare(told, value) if compare else told == value
