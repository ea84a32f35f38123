#!/usr/bin/python
"""Sets the FIP VLAN of an FCoE function."""

DOCUMENTATION = r"""
module: fip
short_description: Set the FIP VLAN of an FCoE function
description:
  - Sets the VLAN ID of the FCoE initialization protocol (FIP).
version_added: 5.2.3
author:
  - Tavro (@tavro)
options:
  wwn:
    description:
      - The port WWN of the function. Letter case and separators do not matter.
    type: str
    required: true
  vlan_id:
    description:
      - The FIP VLAN ID, 0 (no VLAN) to 4094.
    type: int
    required: true
extends_documentation_fragment:
  - tavro.fleet.common
  - tavro.fleet.common.attributes
"""

EXAMPLES = r"""
- name: Find FCoE in its VLAN
  tavro.fleet.fip:
    wwn: 10:00:02:00:5E:10:00:04
    vlan_id: 1002
"""

RETURN = r"""
commands:
  description:
    - The command line of tavrocli, and how it went.
  returned: always
  type: list
  elements: dict
  sample: [{"arguments": ["-fcoe", "10:00:02:00:5E:10:00:04", "-setfip", "1002"], "outcome": "done"}]
restart_required:
  description:
    - Whether what was changed takes effect when the host restarts.
  returned: always
  type: bool
"""

from ansible_collections.tavro.fleet.plugins.module_utils.flow import Command, bring_about, fleet_module

OPTIONS = {
    "wwn": {"type": "str", "required": True},
    "vlan_id": {"type": "int", "required": True},
}


def needed(host, options):
    """The command that sets the VLAN. Which ones there are, the library knows."""
    function = host.function("fcoe", options["wwn"])
    there = function.part.get("fipVlanId", "")
    if (int(there) if there.isdigit() else there) == options["vlan_id"]:
        return []
    return [Command(["-fcoe", function.identifier, "-setfip", options["vlan_id"]])]


def main():
    """Runs the module."""
    bring_about(fleet_module(OPTIONS), needed)


if __name__ == "__main__":
    main()
