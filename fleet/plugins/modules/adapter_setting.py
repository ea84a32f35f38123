#!/usr/bin/python
"""Sets adapter settings of an Ethernet function."""

DOCUMENTATION = r"""
module: adapter_setting
short_description: Set adapter settings of an Ethernet function
description:
  - Sets what the adapter of an Ethernet function does for it, such as offloads, queues and the largest packet.
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
  settings:
    description:
      - The settings, in the words of the adapter. One that it does not take is answered with those that it takes.
    type: dict
    required: true
    suboptions:
      speed:
        description:
          - Speed, such as C(Auto Negotiation).
        type: str
      flow_control:
        description:
          - Flow control, such as C(Rx & Tx Enabled).
        type: str
      priority_and_vlan:
        description:
          - Priority and VLAN, such as C(VLAN Enabled).
        type: str
      interrupt_moderation:
        description:
          - Interrupt moderation.
        type: str
      checksum_offload_ipv4:
        description:
          - IPv4 checksum offload, such as C(Rx Enabled).
        type: str
      checksum_offload_ipv6:
        description:
          - IPv6 checksum offload.
        type: str
      locally_administered_address:
        description:
          - A MAC in the place of the adapter's own, or C(0) for its own.
        type: str
      receive_side_scaling:
        description:
          - Receive side scaling.
        type: str
      jumbo_packet:
        description:
          - The largest packet in bytes, such as C(9014).
        type: str
      receive_side_scaling_queues:
        description:
          - The number of queues for receive side scaling.
        type: str
      receive_buffers:
        description:
          - The number of receive buffers.
        type: str
      transmit_buffers:
        description:
          - The number of transmit buffers.
        type: str
      large_send_offload_ipv4:
        description:
          - Large send offload (IPv4).
        type: str
      large_send_offload_ipv6:
        description:
          - Large send offload (IPv6).
        type: str
      receive_segment_coalescing:
        description:
          - Receive segment coalescing.
        type: str
      single_root_virtualization:
        description:
          - SR-IOV.
        type: str
      wake_on_magic_packet:
        description:
          - Wake on magic packet.
        type: str
extends_documentation_fragment:
  - tavro.fleet.common
  - tavro.fleet.common.attributes
"""

EXAMPLES = r"""
- name: Take large packets, with more buffers
  tavro.fleet.adapter_setting:
    mac: 02-00-5E-10-00-00
    settings:
      jumbo_packet: 9014
      receive_buffers: 1024
      flow_control: Rx Enabled
"""

RETURN = r"""
commands:
  description:
    - The command lines of tavrocli, and how each went.
  returned: always
  type: list
  elements: dict
  sample: [{"arguments": ["-ethernet", "02-00-5E-10-00-00", "-setadapinfo"], "outcome": "done"}]
restart_required:
  description:
    - Whether what was changed takes effect when the host restarts.
  returned: always
  type: bool
"""

import re

from ansible_collections.tavro.fleet.plugins.module_utils.flow import Command, Failure, bring_about, fleet_module
from ansible_collections.tavro.fleet.plugins.module_utils.host import normalised

READ_ADAPTER_SETTINGS = 63
# In the order of the dialogue's list: the option, what a host calls it, and its place in the library's answer.
ADDRESS = "locally_administered_address"
SETTINGS = [
    ("speed", "speed", 1),
    ("flow_control", "flowControl", 8),
    ("priority_and_vlan", "priorityAndVlan", 15),
    ("interrupt_moderation", "interruptModeration", 14),
    ("checksum_offload_ipv4", "checksumOffloadIPv4", 4),
    ("checksum_offload_ipv6", "checksumOffloadIPv6", 5),
    (ADDRESS, "locallyAdministeredAddress", 0),
    ("receive_side_scaling", "receiveSideScaling", 16),
    ("jumbo_packet", "jumboPacket", 9),
    ("receive_side_scaling_queues", "receiveSideScalingQueues", 17),
    ("receive_buffers", "receiveBuffers", 10),
    ("transmit_buffers", "transmitBuffers", 25),
    ("large_send_offload_ipv4", "largeSendOffloadIPv4", 12),
    ("large_send_offload_ipv6", "largeSendOffloadIPv6", 23),
    ("receive_segment_coalescing", "receiveSegmentCoalescing", 24),
    ("single_root_virtualization", "singleRootVirtualization", 19),
    ("wake_on_magic_packet", "wakeOnMagicPacket", 13),
]
# What is asked for with a range; others have a list, and one an address.
RANGES = ("receive_buffers", "transmit_buffers")
OPTIONS = {
    "mac": {"type": "str", "required": True},
    "settings": {"type": "dict", "required": True, "options": {option: {"type": "str"} for option, _, _ in SETTINGS}},
}
NOT_AVAILABLE = "NA"
# How a host tells that there is no address, and how one asks for that.
NO_ADDRESS = "Not Present"
OWN_ADDRESS = "0"
ADDRESS_QUESTION = "New Value ( 0 or XX-XX-XX-XX-XX-XX ):"


def needed(host, options):
    """The command that sets what differs."""
    function = host.function("ethernet", options["mac"])
    there = function.part.get("settings", {})
    available = [row for row in SETTINGS if there.get(row[1], NOT_AVAILABLE) != NOT_AVAILABLE]
    wanted = {option: _wanted(option, value) for option, value in options["settings"].items() if value is not None}
    for option in wanted:
        if option not in (name for name, _, _ in available):
            raise Failure(f"settings.{option}: {function} does not have this setting")
    differing = [row for row in available if row[0] in wanted and wanted[row[0]] != _told(row[0], there[row[1]])]
    if not differing:
        return []
    known = host.answer(READ_ADAPTER_SETTINGS, function.identifier)
    answers = {}
    for option, _, place in differing:
        question, answer = _answer(option, wanted[option], _choices(known, place))
        answers.setdefault(question, []).append(answer)
    numbers = [available.index(row) for row in differing]
    answers.update({29953: numbers[0], 29957: numbers[1:] + ["y"], 29197: "y"})
    return [Command(["-ethernet", function.identifier, "-setadapinfo"], answers=answers)]


def _wanted(option, value):
    if option in RANGES and re.fullmatch("[0-9]+", value):
        return str(int(value))
    if option != ADDRESS or value == OWN_ADDRESS:
        return value
    digits = normalised(value).upper()
    if not re.fullmatch("[0-9A-F]{12}", digits):
        raise Failure(f"settings.{option}: {value} is no MAC address")
    return "-".join(digits[at:at + 2] for at in range(0, 12, 2))


def _told(option, value):
    """What a host tells, in the form in which it is asked for."""
    if option != ADDRESS:
        return _wanted(option, value)
    return OWN_ADDRESS if value == NO_ADDRESS else _wanted(option, value)


def _choices(known, place):
    """What the library offers for a setting: texts by number."""
    return known[place][3] if known and len(known) > place else []


def _answer(option, value, choices):
    """The question for a setting, and the answer to it; fails for a value that would not be taken."""
    if option == ADDRESS:
        return ADDRESS_QUESTION, value
    if option in RANGES:
        return _number(option, value, {name: number for number, name in choices})
    for number, text in choices:
        if text == value:
            return 29956, number
    offered = ", ".join(text for _, text in choices) or "none, it cannot be changed"
    raise Failure(f"settings.{option}: {value} is none of the choices: {offered}")


def _number(option, value, bounds):
    try:
        least, most, step = bounds["min"], bounds["max"], bounds["step"]
    except KeyError:
        raise Failure(f"settings.{option}: it cannot be changed") from None
    if not re.fullmatch("[0-9]+", value) or not least <= int(value) <= most or int(value) % max(step, 1):
        raise Failure(f"settings.{option}: {value} is no multiple of {step} within {least} and {most}")
    return f"New Value ({least}~{most}, step: {step}) :", value


def main():
    """Runs the module."""
    bring_about(fleet_module(OPTIONS), needed)


if __name__ == "__main__":
    main()
