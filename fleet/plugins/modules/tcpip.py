#!/usr/bin/python
"""Sets the TCP/IP settings of a function."""

DOCUMENTATION = r"""
module: tcpip
short_description: Set the TCP/IP settings of an Ethernet or iSCSI function
description:
  - Gives a function a fixed address, or has it take one by DHCP, and sets its VLAN.
  - What is not given stays as it is.
version_added: 5.2.3
author:
  - Tavro (@tavro)
options:
  mac:
    description:
      - The MAC of the function. Letter case and separators do not matter.
    type: str
    required: true
  kind:
    description:
      - Of which kind the function is, since two of different kinds may have the same MAC.
    type: str
    choices: [ethernet, iscsi]
    required: true
  version:
    description:
      - The IP version. An iSCSI function takes settings of C(ipv4) only.
    type: str
    choices: [ipv4, ipv6]
    default: ipv4
  dhcp:
    description:
      - Whether the address comes from DHCP. Which one it is does not count then.
    type: bool
    default: false
  address:
    description:
      - The fixed address. Is needed unless I(dhcp=true), and does not fit there; nor do the three that follow.
    type: str
  subnet_mask:
    description:
      - The subnet mask of a fixed IPv4 address. Is needed where the function has none.
    type: str
  prefix_length:
    description:
      - The prefix length of a fixed IPv6 address. Is needed where the function has none.
    type: int
  gateway:
    description:
      - The default gateway beside a fixed address. C(0.0.0.0) or C(::) is none.
    type: str
  vlan_id:
    description:
      - The VLAN ID, 0 (no VLAN) to 4094, of both IP versions.
      - The VLAN ID of an Ethernet function takes effect when the host restarts. A change without I(vlan_id) before
        that takes back what waits.
      - What is compared is the VLAN ID in force. To want it back while another one waits for the restart sends nothing,
        and the other one still comes with the restart. M(tavro.fleet.cli) sends the command all the same.
    type: int
notes:
  - Each change sets the largest frame to 1500 bytes and the VLAN priority to 0, and that of an iSCSI function the IPv6
    prefix length to 124. A warning tells where that changes something.
  - A change of an iSCSI function to DHCP overwrites its IPv6 settings.
extends_documentation_fragment:
  - tavro.fleet.common
  - tavro.fleet.common.attributes
"""

EXAMPLES = r"""
- name: Give the storage port its address
  tavro.fleet.tcpip:
    mac: 02-00-5E-10-00-02
    kind: iscsi
    address: 192.0.2.29
    subnet_mask: 255.255.255.0
    gateway: 192.0.2.1

- name: Take an IPv6 address by DHCP
  tavro.fleet.tcpip:
    mac: 02-00-5E-10-00-00
    kind: ethernet
    version: ipv6
    dhcp: true
"""

RETURN = r"""
commands:
  description:
    - The command lines of tavrocli, and how each went.
  returned: always
  type: list
  elements: dict
  sample:
    - arguments: ["-ethernet", "02-00-5E-10-00-00", "-modifytcpip", "-ipv6", "-dhcp", "0"]
      outcome: done
restart_required:
  description:
    - Whether what was changed takes effect when the host restarts.
  returned: always
  type: bool
"""

from ansible_collections.tavro.fleet.plugins.module_utils.addresses import (
    ipv4_address, ipv6_address, is_none, same_address)
from ansible_collections.tavro.fleet.plugins.module_utils.flow import Command, Failure, bring_about, fleet_module
from ansible_collections.tavro.fleet.plugins.module_utils.switches import same_number

OPTIONS = {
    "mac": {"type": "str", "required": True},
    "kind": {"type": "str", "choices": ["ethernet", "iscsi"], "required": True},
    "version": {"type": "str", "choices": ["ipv4", "ipv6"], "default": "ipv4"},
    "dhcp": {"type": "bool", "default": False},
    "address": {"type": "str"},
    "subnet_mask": {"type": "str"},
    "prefix_length": {"type": "int"},
    "gateway": {"type": "str"},
    "vlan_id": {"type": "int"},
}
RULES = {
    "required_if": [("dhcp", False, ["address"])],
    "mutually_exclusive": [("subnet_mask", "prefix_length")],
}
# What a host calls the settings of an IP version, in the order of the command's operands.
MEMBERS = {
    "ipv4": {"address": "address", "subnet_mask": "subnetMask", "gateway": "gateway"},
    "ipv6": {"address": "addressIPv6", "prefix_length": "prefixLengthIPv6", "gateway": "gatewayIPv6"},
}
DHCP = {"ipv4": "dhcp", "ipv6": "dhcpIPv6"}
NO_GATEWAY = {"ipv4": "0.0.0.0", "ipv6": "::"}
# Without these, a fixed address is of no use.
INDISPENSABLE = ("subnet_mask", "prefix_length")
# What a change of any function, and that of an iSCSI function, sets beside what is asked for.
SET_BACK = {"maxFrameSize": "1500", "vlanPriority": "0"}
SET_BACK_OF_ISCSI = {"prefixLengthIPv6": "124"}


def needed(host, options):
    """The command that sets what differs."""
    function = host.function(options["kind"], options["mac"])
    there = function.part.get("tcpIp", {})
    wanted = _wanted(options, there)
    if all(_is_same(there.get(member, ""), value) for member, value in wanted.items()):
        return []
    version = options["version"]
    for option in INDISPENSABLE:
        if options[option] is None and is_none(wanted.get(MEMBERS[version].get(option), "none told")):
            raise Failure(f"{option}: is needed, since the function has none")
    line = [f"-{function.kind}", function.identifier, "-modifytcpip"]
    line += [f"-{version}"] if function.kind == "ethernet" else []
    line += ["-dhcp" if options["dhcp"] else "-static", wanted["vlanId"]]
    line += [wanted[member] for member in MEMBERS[version].values() if member in wanted]
    return [Command(line, warning=_lost(function.kind, there))]


def _wanted(options, there):
    """The members that the settings are to have: those that are given, and beside them those that stay."""
    version = options["version"]
    if options["kind"] == "iscsi" and version == "ipv6":
        raise Failure("version: an iSCSI function takes IPv4 settings only")
    _check_fit(options)
    vlan = options["vlan_id"]
    wanted = {DHCP[version]: "Yes" if options["dhcp"] else "No",
              "vlanId": str(vlan) if vlan is not None else there.get("vlanId") or "0"}
    if options["dhcp"]:
        return wanted
    address = ipv4_address if version == "ipv4" else ipv6_address
    for option, member in MEMBERS[version].items():
        given = options[option]
        wanted[member] = there.get(member, "") if given is None else str(given)
        if option == "gateway" and is_none(wanted[member]):
            wanted[member] = NO_GATEWAY[version]
        if option != "prefix_length" and wanted[member]:
            wanted[member] = address(option, wanted[member])
    return wanted


def _check_fit(options):
    """Fails for an option that would not count."""
    version = options["version"]
    for option in ("address", "subnet_mask", "prefix_length", "gateway"):
        if options[option] is not None and options["dhcp"]:
            raise Failure(f"{option}: does not fit dhcp: true")
        if options[option] is not None and option not in MEMBERS[version]:
            raise Failure(f"{option}: does not fit version: {version}")


def _is_same(told, wanted):
    return same_address(told, wanted) or same_number(told, wanted) or is_none(told) and is_none(wanted)


def _lost(kind, there):
    """A warning of what each change sets back, where that is a loss."""
    set_back = dict(SET_BACK, **SET_BACK_OF_ISCSI if kind == "iscsi" else {})
    lost = [f"{member} {there[member]} becomes {value}" for member, value in set_back.items()
            if there.get(member) not in (None, "", value)]
    return ", ".join(lost) or None


def main():
    """Runs the module."""
    bring_about(fleet_module(OPTIONS, **RULES), needed)


if __name__ == "__main__":
    main()
