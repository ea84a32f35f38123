#!/usr/bin/python
"""Sets data center bridging of an FCoE function."""

DOCUMENTATION = r"""
module: dcb
short_description: Set data center bridging of an FCoE function
description:
  - Switches data center bridging (DCB) on or off, and sets which priorities have flow control and which group each
    priority belongs to.
  - What is not given stays as it is. Whether the settings of the other side are taken over, and the bandwidths of the
    groups, cannot be set.
version_added: 5.2.3
author:
  - Tavro (@tavro)
options:
  wwn:
    description:
      - The port WWN of the function. Letter case and separators do not matter.
    type: str
    required: true
  enabled:
    description:
      - Whether data center bridging is on.
    type: bool
  flow_control_priorities:
    description:
      - The priorities, 0 to 7, with flow control. An empty list is none.
    type: list
    elements: int
  priority_groups:
    description:
      - For each group the list of its priorities. Each of the priorities 0 to 7 belongs to one group.
    type: dict
notes:
  - The driver of the function has to be one that can be configured.
extends_documentation_fragment:
  - tavro.fleet.common
  - tavro.fleet.common.attributes
"""

EXAMPLES = r"""
- name: Lose no frames of storage
  tavro.fleet.dcb:
    wwn: 10:00:02:00:5E:10:00:04
    enabled: true
    flow_control_priorities: [3, 4]
    priority_groups:
      0: [0, 1, 2, 5, 6, 7]
      1: [3, 4]
"""

RETURN = r"""
commands:
  description:
    - The command line of tavrocli, and how it went.
  returned: always
  type: list
  elements: dict
  sample: [{"arguments": ["-fcoe", "10:00:02:00:5E:10:00:04", "-setdcb"], "outcome": "done"}]
restart_required:
  description:
    - Whether what was changed takes effect when the host restarts.
  returned: always
  type: bool
"""

import re

from ansible_collections.tavro.fleet.plugins.module_utils.flow import Command, Failure, bring_about, fleet_module

OPTIONS = {
    "wwn": {"type": "str", "required": True},
    "enabled": {"type": "bool"},
    "flow_control_priorities": {"type": "list", "elements": "int"},
    "priority_groups": {"type": "dict"},
}
RULES = {"required_one_of": [("enabled", "flow_control_priorities", "priority_groups")]}
PRIORITIES = range(8)
# The questions, of the lists with the one that asks whether they change.
CHANGE = 22018
ENABLE = 22019
FLOW_CONTROL = (22021, 22022)
GROUPS = (22024, 22025)
MAP = (22032, 22038)


def needed(host, options):
    """The command that sets what differs, and answers that keep the rest."""
    function = host.function("fcoe", options["wwn"])
    there = function.part.get("dcb", {})
    is_on = there.get("state") == "Enable"
    enabled = is_on if options["enabled"] is None else options["enabled"]
    told = _lists_told(there)
    changes = {questions: text for questions, (text, value) in _lists_wanted(options).items()
               if value != told[questions]}
    if enabled == is_on and not changes:
        return []
    answers = {CHANGE: "y", ENABLE: _yes(enabled)}
    for asks, question in (FLOW_CONTROL, GROUPS, MAP):
        text = changes.get((asks, question))
        answers[asks] = _yes(text)
        if text:
            answers[question] = text
    return [Command(["-fcoe", function.identifier, "-setdcb"], answers)]


def _lists_wanted(options):
    """The lists that are given, by their questions: as text to type, and as they are compared."""
    wanted = {}
    if options["flow_control_priorities"] is not None:
        numbers = _flow_control(options["flow_control_priorities"])
        # A comma has to be there, also behind a single one.
        wanted[FLOW_CONTROL] = ",".join(map(str, numbers)) + ("," if len(numbers) < 2 else ""), numbers
    if options["priority_groups"] is not None:
        groups = _groups(options["priority_groups"])
        wanted[GROUPS] = _group_text(groups), groups
        wanted[MAP] = _map_text(groups), groups
    return wanted


def _lists_told(there):
    return {
        FLOW_CONTROL: _numbers(there.get("flowControlPriorities", "")),
        GROUPS: _groups_of(there.get("groupMap", "")),
        MAP: _groups_of_map(there.get("priorityMap", "")),
    }


def _yes(value):
    return "y" if value else "n"


def _flow_control(wanted):
    """The priorities in order."""
    wrong = [number for number in wanted if number not in PRIORITIES]
    if wrong:
        raise Failure(f"flow_control_priorities: {wrong[0]} is no priority, 0 to 7")
    return sorted(set(wanted))


def _groups(wanted):
    """The priorities in order, by group."""
    try:
        groups = {int(group): sorted(int(number) for number in numbers) for group, numbers in wanted.items() if numbers}
    except (TypeError, ValueError):
        raise Failure("priority_groups: give each group, a number, a list of priorities") from None
    if sorted(sum(groups.values(), [])) != list(PRIORITIES) or min(groups) < 0:
        raise Failure("priority_groups: each of the priorities 0 to 7 has to be in one group")
    return groups


def _numbers(text):
    return sorted({int(number) for number in re.findall(r"\d+", text)})


def _groups_of(text):
    """Groups as hosts tell them, "group:priorities,..."."""
    parts = (item.split(":") for item in text.split(",") if item.count(":") == 1)
    return {int(group): _numbers(numbers) for group, numbers in parts if group.strip().isdigit() and _numbers(numbers)}


def _groups_of_map(text):
    """The groups of a map as hosts tell it, "priority:group,..."."""
    groups = {}
    for priority, group in re.findall(r"(\d+)\s*:\s*(\d+)", text):
        groups.setdefault(int(group), []).append(int(priority))
    return {group: sorted(numbers) for group, numbers in groups.items()}


def _group_text(groups):
    return ",".join(f"{group}:{' '.join(map(str, groups[group]))}" for group in sorted(groups))


def _map_text(groups):
    group_of = {number: group for group, numbers in groups.items() for number in numbers}
    return ",".join(f"{number}:{group_of[number]}" for number in PRIORITIES)


def main():
    """Runs the module."""
    bring_about(fleet_module(OPTIONS, **RULES), needed)


if __name__ == "__main__":
    main()
