#!/usr/bin/python
"""Sets the iSNS servers of a host."""

DOCUMENTATION = r"""
module: isns
short_description: Set the iSNS servers of a host
description:
  - Adds iSNS servers to those that the host's iSCSI initiator asks for targets, or removes them.
version_added: 5.2.3
author:
  - Tavro (@tavro)
options:
  servers:
    description:
      - IPv4 addresses.
    type: list
    elements: str
    required: true
  state:
    description:
      - C(present) adds those that the host does not know.
      - C(absent) removes those that it knows.
      - C(exact) adds, and removes all others.
    type: str
    choices: [present, absent, exact]
    default: present
extends_documentation_fragment:
  - tavro.fleet.common
  - tavro.fleet.common.attributes
"""

EXAMPLES = r"""
- name: Know two servers, and no other
  tavro.fleet.isns:
    servers: [192.0.2.5, 192.0.2.6]
    state: exact
"""

RETURN = r"""
commands:
  description:
    - The command lines of tavrocli, and how each went.
  returned: always
  type: list
  elements: dict
  sample: [{"arguments": ["-iscsi", "-isns", "-add", "192.0.2.6"], "outcome": "done"}]
restart_required:
  description:
    - Whether what was changed takes effect when the host restarts.
  returned: always
  type: bool
"""

from ansible_collections.tavro.fleet.plugins.module_utils.addresses import ipv4_address
from ansible_collections.tavro.fleet.plugins.module_utils.flow import Command, bring_about, fleet_module

OPTIONS = {
    "servers": {"type": "list", "elements": "str", "required": True},
    "state": {"type": "str", "choices": ["present", "absent", "exact"], "default": "present"},
}


def needed(host, options):
    """The commands that are missing."""
    known = host.document.get("isnsServers", [])
    wanted = [ipv4_address("servers", server) for server in options["servers"]]
    state = options["state"]
    add = [] if state == "absent" else [server for server in dict.fromkeys(wanted) if server not in known]
    remove = [server for server in known if (server in wanted) == (state == "absent")] if state != "present" else []
    return ([Command(["-iscsi", "-isns", "-add", server]) for server in add]
            + [Command(["-iscsi", "-isns", "-remove", server]) for server in remove])


def main():
    """Runs the module."""
    bring_about(fleet_module(OPTIONS), needed)


if __name__ == "__main__":
    main()
