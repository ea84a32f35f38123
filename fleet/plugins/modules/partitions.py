#!/usr/bin/python
"""Divides an adapter into functions."""

DOCUMENTATION = r"""
module: partitions
short_description: Divide an adapter into functions
description:
  - Divides an adapter into functions, with the personality of each port's second one and the bandwidth of each, or
    undoes that.
  - What is not given stays as it is.
version_added: 5.2.3
author:
  - Tavro (@tavro)
options:
  mac:
    description:
      - The MAC of any function of the adapter. Letter case and separators do not matter.
    type: str
    required: true
  mode:
    description:
      - Whether the adapter is divided.
    type: str
    choices: [single, partitioned]
    required: true
  ports:
    description:
      - What ports have.
    type: list
    elements: dict
    default: []
    suboptions:
      number:
        description:
          - The number of the port, counted from 1.
        type: int
        required: true
      flow_control:
        description:
          - The flow control.
        type: str
        choices: [Auto, Tx Enabled, Rx Enabled, Tx/Rx Enabled, Disabled]
      personality:
        description:
          - What the port's second function is for. On an adapter for Ethernet only it is always C(ethernet). Of an
            adapter that is not divided it does not count.
        type: str
        choices: [ethernet, iscsi, fcoe]
  functions:
    description:
      - The bandwidth of functions. Of an adapter that is not divided it does not count.
    type: list
    elements: dict
    default: []
    suboptions:
      number:
        description:
          - The number of the function, 0 to 7.
        type: int
        required: true
      lower_limit:
        description:
          - The least bandwidth, in percent.
        type: int
      upper_limit:
        description:
          - The largest bandwidth, in percent.
        type: int
notes:
  - As a rule the change takes effect when the host restarts. Functions come and go with it. An adapter that is divided
    as is wanted is left alone, even when something else waits for the restart, which then still comes.
    M(tavro.fleet.cli) sends the command all the same.
  - Adapters with four ports, and those whose partitions are fixed, refuse each change.
extends_documentation_fragment:
  - tavro.fleet.common
  - tavro.fleet.common.attributes
"""

EXAMPLES = r"""
- name: Divide the adapter, with storage on both ports
  tavro.fleet.partitions:
    mac: 02-00-5E-10-00-00
    mode: partitioned
    ports:
      - {number: 1, personality: iscsi}
      - {number: 2, personality: fcoe, flow_control: Tx/Rx Enabled}
    functions:
      - {number: 2, lower_limit: 40}
      - {number: 3, lower_limit: 40, upper_limit: 80}
  register: adapter

- name: Restart the host
  ansible.builtin.reboot:
  when: adapter.restart_required
"""

RETURN = r"""
commands:
  description:
    - The command lines of tavrocli, and how each went.
  returned: always
  type: list
  elements: dict
  sample: [{"arguments": ["-npar", "02-00-5E-10-00-00", "-set"], "outcome": "done"}]
restart_required:
  description:
    - Whether what was changed takes effect when the host restarts.
  returned: always
  type: bool
"""

from ansible_collections.tavro.fleet.plugins.module_utils.flow import Command, Failure, bring_about, fleet_module
from ansible_collections.tavro.fleet.plugins.module_utils.host import KINDS
from ansible_collections.tavro.fleet.plugins.module_utils.partitions import (
    MOST_FUNCTIONS, NOT_PARTITIONED, functions_of_port)

FLOW_CONTROLS = ["Auto", "Tx Enabled", "Rx Enabled", "Tx/Rx Enabled", "Disabled"]
PERSONALITIES = ["ethernet", "iscsi", "fcoe"]
OPTIONS = {
    "mac": {"type": "str", "required": True},
    "mode": {"type": "str", "choices": ["single", "partitioned"], "required": True},
    "ports": {
        "type": "list",
        "elements": "dict",
        "default": [],
        "options": {
            "number": {"type": "int", "required": True},
            "flow_control": {"type": "str", "choices": FLOW_CONTROLS},
            "personality": {"type": "str", "choices": PERSONALITIES},
        },
    },
    "functions": {
        "type": "list",
        "elements": "dict",
        "default": [],
        "options": {
            "number": {"type": "int", "required": True},
            "lower_limit": {"type": "int"},
            "upper_limit": {"type": "int"},
        },
    },
}
MODE_ANSWERS = {"single": 1, "partitioned": 2}
LIMITS = {"lower_limit": ("lowerLimit", "0"), "upper_limit": ("upperLimit", "100")}
PORTS_WITH_FLOW_CONTROL = 4


def needed(host, options):
    """The command that divides the adapter anew."""
    function = host.any_function(options["mac"])
    adapter = function.adapter
    told = adapter.get("partitions", {})
    port_count = len(adapter["ports"])
    flow_controls = _flow_controls(told, options["ports"], port_count)
    functions = _functions(told, options, adapter["type"], port_count)
    if _is_so(adapter, options["mode"], flow_controls, functions):
        return []
    # The questions go from port to port, and in each from function to function.
    in_order = [number for port in range(port_count) for number in functions_of_port(port, port_count)]
    seconds = _second_functions(port_count).values()
    answers = {
        29185: MODE_ANSWERS[options["mode"]],
        29187: [FLOW_CONTROLS.index(name) + 1 for name in flow_controls],
        29191: [_names().index(functions[number]["personality"]) + 1 for number in seconds] or [1],
        29188: [functions[number]["lowerLimit"] for number in in_order],
        29189: [functions[number]["upperLimit"] for number in in_order],
        29197: "y",
    }
    return [Command(["-npar", function.mac, "-set"], answers=answers, warning=_lost(adapter, functions, options))]


def _names():
    return [KINDS[personality] for personality in PERSONALITIES]


def _second_functions(port_count):
    """The number of each port's second function, where it has one, by the place of the port."""
    functions = {port: functions_of_port(port, port_count) for port in range(port_count)}
    return {port: numbers[1] for port, numbers in functions.items() if len(numbers) > 1}


def _flow_controls(told, ports, port_count):
    there = told.get("flowControl", [])
    wanted = [there[port] if port < len(there) and there[port] in FLOW_CONTROLS else FLOW_CONTROLS[0]
              for port in range(min(port_count, PORTS_WITH_FLOW_CONTROL))]
    for port in ports:
        position = port["number"] - 1
        if not 0 <= position < port_count:
            raise Failure(f"ports: the adapter has no port {port['number']}; it has {port_count}")
        if port["flow_control"]:
            if position >= len(wanted):
                raise Failure(f"ports: port {port['number']} has no flow control of its own")
            wanted[position] = port["flow_control"]
    return wanted


def _functions(told, options, adapter_type, port_count):
    """What each function is to have, in the host's words. Each but the second ones becomes one for Ethernet."""
    there = told.get("functions", [])
    seconds = _second_functions(port_count)
    takes_all = adapter_type == "CNA"
    wanted = []
    for number in range(MOST_FUNCTIONS):
        function = there[number] if number < len(there) else {}
        stays = takes_all and number in seconds.values() and function.get("personality") in _names()
        wanted.append({"personality": function["personality"] if stays else "Ethernet",
                       **{member: function.get(member) or default for member, default in LIMITS.values()}})
    for port in options["ports"]:
        if not port["personality"]:
            continue
        if not takes_all and port["personality"] != "ethernet":
            raise Failure(f"ports: the adapter's type is {adapter_type}, all of its functions are for Ethernet")
        if port["number"] - 1 not in seconds:
            raise Failure(f"ports: port {port['number']} has no second function")
        wanted[seconds[port["number"] - 1]]["personality"] = KINDS[port["personality"]]
    for function in options["functions"]:
        if not 0 <= function["number"] < MOST_FUNCTIONS:
            raise Failure(f"functions: there is no function {function['number']}; they are 0 to {MOST_FUNCTIONS - 1}")
        for option, (member, _) in LIMITS.items():
            if function[option] is not None:
                wanted[function["number"]][member] = _percentage(option, function[option])
    return wanted


def _percentage(option, number):
    if not 0 <= number <= 100:
        raise Failure(f"functions: {option} {number} is not within 0 and 100")
    return str(number)


def _is_so(adapter, mode, flow_controls, functions):
    """Whether the adapter is divided so. What other functions than the second ones are for does not count."""
    told = adapter.get("partitions", {})
    is_single = adapter["partitionState"] == NOT_PARTITIONED
    if is_single != (mode == "single") or told.get("flowControl", [])[:len(flow_controls)] != flow_controls:
        return False
    if is_single:
        return True
    there = told.get("functions", [])
    if len(there) < len(functions):
        return False
    seconds = _second_functions(len(adapter["ports"])).values()
    return (all(there[number].get("personality") == functions[number]["personality"] for number in seconds)
            and all(function.get(member) == wanted[member] for function, wanted in zip(there, functions)
                    for member, _ in LIMITS.values()))


def _lost(adapter, functions, options):
    """A warning of other functions than the second ones that lose what they are for."""
    if options["mode"] == "single" or adapter["partitionState"] == NOT_PARTITIONED:
        return None
    seconds = _second_functions(len(adapter["ports"])).values()
    lost = [f"function {number} is for {there['personality']} and becomes one for Ethernet"
            for number, there in enumerate(adapter.get("partitions", {}).get("functions", []))
            if number < len(functions) and number not in seconds and there.get("personality", "Ethernet") != "Ethernet"]
    return ", ".join(lost) or None


def main():
    """Runs the module."""
    bring_about(fleet_module(OPTIONS), needed)


if __name__ == "__main__":
    main()
