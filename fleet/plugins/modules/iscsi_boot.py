#!/usr/bin/python
"""Sets how an iSCSI function boots."""

DOCUMENTATION = r"""
module: iscsi_boot
short_description: Set how an iSCSI function boots
description:
  - Sets whether and from which targets an iSCSI function boots.
  - What is not given stays as it is. Secrets cannot stay, since no host tells them, and the command sets all of them
    anew. With a CHAP name, one that is given or one that the host has, its secret has to be given whenever anything is
    changed.
version_added: 5.2.3
author:
  - Tavro (@tavro)
options:
  mac:
    description:
      - The MAC of the function. Letter case and separators do not matter.
    type: str
    required: true
  tcpip_by_dhcp:
    description:
      - Whether the function takes its TCP/IP settings from DHCP.
    type: bool
  iscsi_by_dhcp:
    description:
      - Whether the function takes its iSCSI settings from DHCP.
    type: bool
  link_up_delay:
    description:
      - How long the link is waited for, 0 to 60 seconds.
    type: int
  busy_retries:
    description:
      - How often a failed boot is tried again, 0 to 99.
    type: int
  address:
    description:
      - The IPv4 address, where it does not come from DHCP.
    type: str
  subnet_mask:
    description:
      - The IPv4 subnet mask.
    type: str
  gateway:
    description:
      - The IPv4 gateway.
    type: str
  initiator_name:
    description:
      - The initiator's iSCSI name.
    type: str
  chap_name:
    description:
      - The initiator's CHAP name. An empty one is none.
    type: str
  chap_secret:
    description:
      - The initiator's CHAP secret.
    type: str
  first_target:
    description:
      - The target that is tried first.
    type: dict
    suboptions: &target
      used:
        description:
          - Whether the target is used. All else of one that is not is forgotten.
        type: bool
        default: true
      address:
        description:
          - The IPv4 address of the target.
        type: str
      port:
        description:
          - The port of the target. Of a target without one it becomes 3260.
        type: int
      lun:
        description:
          - The LUN.
        type: int
      name:
        description:
          - The target's iSCSI name.
        type: str
      chap_name:
        description:
          - The target's CHAP name. An empty one is none.
        type: str
      chap_secret:
        description:
          - The target's CHAP secret.
        type: str
  second_target:
    description:
      - The target that is tried next.
    type: dict
    suboptions: *target
  bind_address:
    description:
      - Whether booting is bound to the address that the adapter listing tells of the function.
    type: bool
  target_is_first_disk:
    description:
      - Whether the target becomes the first disk.
    type: bool
  boot_from_target:
    description:
      - Whether the host boots from the target.
    type: bool
notes:
  - Addresses that are neither given nor set become 0.0.0.0 with a change.
extends_documentation_fragment:
  - tavro.fleet.common
  - tavro.fleet.common.attributes
  - tavro.fleet.common.secrets
"""

EXAMPLES = r"""
- name: Boot from the disk array
  tavro.fleet.iscsi_boot:
    mac: 02-00-5E-10-00-02
    tcpip_by_dhcp: true
    iscsi_by_dhcp: false
    initiator_name: iqn.2015-01.com.example:web-1
    chap_name: web-1
    chap_secret: "{{ initiator_secret }}"
    first_target:
      address: 198.51.100.20
      lun: 0
      name: iqn.2015-01.com.example:storage.disks
      chap_name: disks
      chap_secret: "{{ target_secret }}"
    boot_from_target: true
"""

RETURN = r"""
commands:
  description:
    - The command lines of tavrocli, and how each went.
  returned: always
  type: list
  elements: dict
  sample: [{"arguments": ["-iscsi", "02-00-5E-10-00-02", "-setbootconfig"], "outcome": "done"}]
restart_required:
  description:
    - Whether what was changed takes effect when the host restarts.
  returned: always
  type: bool
"""

from ansible_collections.tavro.fleet.plugins.module_utils.addresses import same_address
from ansible_collections.tavro.fleet.plugins.module_utils.flow import Command, bring_about, fleet_module
from ansible_collections.tavro.fleet.plugins.module_utils.iscsi_boot import (
    TARGET_SECRET_AGAIN, TARGETS, answers_of, target_answers, wanted_members, wanted_target)
from ansible_collections.tavro.fleet.plugins.module_utils.options import SECRET_OPTIONS

TARGET_OPTIONS = {
    "used": {"type": "bool", "default": True},
    "address": {"type": "str"},
    "port": {"type": "int"},
    "lun": {"type": "int"},
    "name": {"type": "str"},
    "chap_name": {"type": "str"},
    "chap_secret": {"type": "str", "no_log": True},
}
OPTIONS = dict(SECRET_OPTIONS, **{
    "mac": {"type": "str", "required": True},
    "tcpip_by_dhcp": {"type": "bool"},
    "iscsi_by_dhcp": {"type": "bool"},
    "link_up_delay": {"type": "int"},
    "busy_retries": {"type": "int"},
    "address": {"type": "str"},
    "subnet_mask": {"type": "str"},
    "gateway": {"type": "str"},
    "initiator_name": {"type": "str"},
    "chap_name": {"type": "str"},
    "chap_secret": {"type": "str", "no_log": True},
    "first_target": {"type": "dict", "options": TARGET_OPTIONS},
    "second_target": {"type": "dict", "options": TARGET_OPTIONS},
    "bind_address": {"type": "bool"},
    "target_is_first_disk": {"type": "bool"},
    "boot_from_target": {"type": "bool"},
})


def needed(host, options):
    """The command that sets what differs."""
    function = host.function("iscsi", options["mac"])
    there = function.part.get("boot", {})
    wanted = wanted_members(options)
    targets = {option: wanted_target(option, options[option]) for option in TARGETS}
    is_so = all(same_address(there.get(member, ""), value) for member, value in wanted.items())
    is_so = is_so and all(same_address(there.get(TARGETS[option][0], {}).get(member, ""), value)
                          for option, target in targets.items() for member, value in target.items())
    if is_so and not (options["update_secret"] == "always" and _has_secret(options)):
        return []
    answers = answers_of(options, {**there, **wanted})
    again = []
    for option, target in targets.items():
        member, questions = TARGETS[option]
        more, secret = target_answers(option, questions, options[option], {**there.get(member, {}), **target})
        answers.update(more)
        again += secret
    if again:
        answers[TARGET_SECRET_AGAIN] = again
    return [Command(["-iscsi", function.identifier, "-setbootconfig"], answers=answers, provable=not is_so)]


def _has_secret(options):
    return any(part and part["chap_secret"] for part in (options, options["first_target"], options["second_target"]))


def main():
    """Runs the module."""
    bring_about(fleet_module(OPTIONS), needed)


if __name__ == "__main__":
    main()
