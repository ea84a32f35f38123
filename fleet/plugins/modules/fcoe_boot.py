#!/usr/bin/python
"""Sets how an FCoE function boots."""

DOCUMENTATION = r"""
module: fcoe_boot
short_description: Set how an FCoE function boots
description:
  - Sets whether and from which targets an FCoE function boots.
  - What is not given stays as it is.
version_added: 5.2.3
author:
  - Tavro (@tavro)
options:
  wwn:
    description:
      - The port WWN of the function. Letter case and separators do not matter.
    type: str
    required: true
  state:
    description:
      - Whether the function boots. C(one_time_disabled) leaves out the next time.
    type: str
    choices: [enabled, disabled, one_time_disabled]
  fabric_discovery:
    description:
      - Whether targets are found through the fabric.
    type: bool
  login_retries:
    description:
      - How often a login is tried again, 0 to 8.
    type: int
  busy_retries:
    description:
      - How often a busy target is tried again, 0 to 255.
    type: int
  link_up_delay:
    description:
      - How long the link is waited for, 0 to 60 seconds.
    type: int
  targets:
    description:
      - The first targets, up to eight, in the order in which they are tried. Those behind them stay as they are, since
        the command cannot clear any.
      - The function has to see them, with the LUN; also those that stay, as far as they stand before one that is
        changed.
    type: list
    elements: dict
    default: []
    suboptions:
      wwn:
        description:
          - The port WWN of the target.
        type: str
        required: true
      lun:
        description:
          - The LUN.
        type: int
        default: 0
      enabled:
        description:
          - Whether the target is booted from.
        type: bool
        default: true
notes:
  - The command sets at least one target, so a function without any needs one with its first change.
extends_documentation_fragment:
  - tavro.fleet.common
  - tavro.fleet.common.attributes
"""

EXAMPLES = r"""
- name: Boot from the disk array
  tavro.fleet.fcoe_boot:
    wwn: 10:00:02:00:5E:10:00:04
    state: enabled
    link_up_delay: 20
    targets:
      - {wwn: "50:00:02:00:5E:40:00:01", lun: 0}
      - {wwn: "50:00:02:00:5E:40:00:02", lun: 0, enabled: false}
"""

RETURN = r"""
commands:
  description:
    - The command lines of tavrocli, and how each went.
  returned: always
  type: list
  elements: dict
  sample: [{"arguments": ["-fcoe", "10:00:02:00:5E:10:00:04", "-setbootconfig"], "outcome": "done"}]
restart_required:
  description:
    - Whether what was changed takes effect when the host restarts.
  returned: always
  type: bool
"""

from ansible_collections.tavro.fleet.plugins.module_utils.flow import Command, Failure, bring_about, fleet_module
from ansible_collections.tavro.fleet.plugins.module_utils.host import normalised
from ansible_collections.tavro.fleet.plugins.module_utils.switches import SWITCH_ANSWERS, number_within, switch

STATES = {"enabled": "Enabled", "disabled": "Disabled", "one_time_disabled": "One Time Disabled"}
STATE_ANSWERS = {"Enabled": "y", "Disabled": "n", "One Time Disabled": "o"}
MOST_TARGETS = 8
# Each number: its option, what a host calls it, the question for it, and the largest one.
NUMBERS = [
    ("login_retries", "loginRetries", 22275, 8),
    ("busy_retries", "busyRetries", 22276, 255),
    ("link_up_delay", "linkUpDelay", 22277, 60),
]
OPTIONS = {
    "wwn": {"type": "str", "required": True},
    "state": {"type": "str", "choices": list(STATES)},
    "fabric_discovery": {"type": "bool"},
    "login_retries": {"type": "int"},
    "busy_retries": {"type": "int"},
    "link_up_delay": {"type": "int"},
    "targets": {
        "type": "list",
        "elements": "dict",
        "default": [],
        "options": {
            "wwn": {"type": "str", "required": True},
            "lun": {"type": "int", "default": 0},
            "enabled": {"type": "bool", "default": True},
        },
    },
}


def needed(host, options):
    """The command that sets what differs."""
    function = host.function("fcoe", options["wwn"])
    there = function.part.get("boot", {})
    wanted = _wanted(options, there)
    targets_there = _targets_there(there)
    changed = [place for place, target in enumerate(wanted["targets"]) if target != targets_there[place]]
    if not changed and all(there.get(member) == value for member, value in wanted.items() if member != "targets"):
        return []
    # The dialogue goes from the first target on, and cannot leave out any.
    asked = wanted["targets"][:max(changed, default=0) + 1] or targets_there[:1]
    answers = {
        22273: STATE_ANSWERS.get(wanted["state"], "n"),
        22274: SWITCH_ANSWERS.get(wanted["fabricDiscovery"], "n"),
        **{question: wanted[member] for _, member, question, _ in NUMBERS},
        22279: [_seen(host, function, target) for target in asked],
        22280: [target["lun"] for target in asked],
        22281: [SWITCH_ANSWERS.get(target["state"], "n") for target in asked],
        22282: ["y"] * (len(asked) - 1) + ["n"],
    }
    return [Command(["-fcoe", function.identifier, "-setbootconfig"], answers=answers)]


def _wanted(options, there):
    """The members that the settings are to have: those that are given, and beside them those that stay."""
    if len(options["targets"]) > MOST_TARGETS:
        raise Failure(f"targets: a function has {MOST_TARGETS} at most")
    wanted = {
        "state": STATES[options["state"]] if options["state"] else there.get("state", "Disabled"),
        "fabricDiscovery": switch(options["fabric_discovery"]) or there.get("fabricDiscovery", "Disabled"),
    }
    for option, member, _, most in NUMBERS:
        given = number_within(option, options[option], most)
        wanted[member] = there.get(member, 0) if given is None else given
    known = {normalised(target["target"]): target["target"] for target in _targets_there(there)}
    wanted["targets"] = [{
        "target": known.get(normalised(target["wwn"]), target["wwn"]),
        "lun": str(target["lun"]),
        "state": switch(target["enabled"]),
    } for target in options["targets"]]
    return wanted


def _targets_there(there):
    """All places for targets; those that are empty have empty texts."""
    targets = [{member: target.get(member, "") for member in ("target", "lun", "state")}
               for target in there.get("targets", [])]
    return targets + [{"target": "", "lun": "", "state": ""}] * (MOST_TARGETS - len(targets))


def _seen(host, function, target):
    """The WWN of a target, as the function sees it; fails where it does not see it, or not the LUN: no answer would be
    accepted then."""
    if not target["target"]:
        raise Failure("targets: the function has none, and the command sets at least one; name it")
    for seen in host.document.get("fcoeFabric", {}).get("targets", []):
        initiators = [normalised(initiator) for initiator in seen.get("initiators", [])]
        if normalised(seen["portWwn"]) != normalised(target["target"]):
            continue
        if initiators and normalised(function.identifier) not in initiators:
            break
        luns = [str(lun["number"]) for lun in seen.get("luns", [])]
        if target["lun"] not in luns:
            raise Failure(f"targets: {seen['portWwn']} has no LUN {target['lun']}; there are: "
                          + (", ".join(luns) or "none"))
        return seen["portWwn"]
    raise Failure(f"targets: {function} does not see {target['target']}")


def main():
    """Runs the module."""
    bring_about(fleet_module(OPTIONS), needed)


if __name__ == "__main__":
    main()
