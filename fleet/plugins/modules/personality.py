#!/usr/bin/python
"""Sets what a port is used for besides Ethernet."""

DOCUMENTATION = r"""
module: personality
short_description: Set what a port is used for besides Ethernet
description:
  - Uses a port of an adapter that is not partitioned for iSCSI or for FCoE.
  - What the functions of a partitioned adapter are for is set by M(tavro.fleet.partitions).
version_added: 5.2.3
author:
  - Tavro (@tavro)
options:
  mac:
    description:
      - The MAC of any function of the port, or the port WWN of its FCoE function. Letter case and separators do not
        matter.
    type: str
    required: true
  personality:
    description:
      - What the port is used for.
    type: str
    choices: [iscsi, fcoe]
    required: true
notes:
  - As a rule the change takes effect when the host restarts. A port that is used as is wanted is left alone, even when
    another personality waits for the restart, which then still comes. M(tavro.fleet.cli) sends the command all the
    same.
extends_documentation_fragment:
  - tavro.fleet.common
  - tavro.fleet.common.attributes
"""

EXAMPLES = r"""
- name: Use a port for FCoE
  tavro.fleet.personality:
    mac: 02-00-5E-10-00-00
    personality: fcoe
  register: port

- name: Restart the host
  ansible.builtin.reboot:
  when: port.restart_required
"""

RETURN = r"""
commands:
  description:
    - The command lines of tavrocli, and how each went.
  returned: always
  type: list
  elements: dict
  sample: [{"arguments": ["-res", "02-00-5E-10-00-00", "-set"], "outcome": "done"}]
restart_required:
  description:
    - Whether what was changed takes effect when the host restarts.
  returned: always
  type: bool
"""

from ansible_collections.tavro.fleet.plugins.module_utils.flow import Command, bring_about, fleet_module
from ansible_collections.tavro.fleet.plugins.module_utils.host import KINDS
from ansible_collections.tavro.fleet.plugins.module_utils.partitions import NOT_PARTITIONED

OPTIONS = {
    "mac": {"type": "str", "required": True},
    "personality": {"type": "str", "choices": ["iscsi", "fcoe"], "required": True},
}
ANSWERS = {"iscsi": 1, "fcoe": 2}


def needed(host, options):
    """The command that sets another personality."""
    function = host.any_function(options["mac"])
    adapter, wanted = function.adapter, options["personality"]
    # What a port of other adapters tells does not count, and the command is refused there.
    counts = adapter["partitionState"] == NOT_PARTITIONED and adapter["type"] != "Ethernet"
    if counts and function.port.get("resources", {}).get("personality") == KINDS[wanted]:
        return []
    return [Command(["-res", function.mac, "-set"], answers={29456: ANSWERS[wanted], 29197: "y"})]


def main():
    """Runs the module."""
    bring_about(fleet_module(OPTIONS), needed)


if __name__ == "__main__":
    main()
