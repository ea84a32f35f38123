#!/usr/bin/python
"""Creates virtual ports of an FCoE function, or deletes them."""

DOCUMENTATION = r"""
module: virtual_port
short_description: Create or delete virtual ports of an FCoE function
description:
  - Creates virtual ports (NPIV) of an FCoE function, or deletes them.
  - Those that are missing are created by one command, which creates all of them or none, and so it is with those that
    are to be deleted.
version_added: 5.2.3
author:
  - Tavro (@tavro)
options:
  wwn:
    description:
      - The port WWN of the function. Letter case and separators do not matter.
    type: str
    required: true
  virtual_wwns:
    description:
      - The port WWNs of virtual ports.
    type: list
    elements: str
    required: true
  state:
    description:
      - C(present) creates those that the function does not have.
      - C(absent) deletes those that it has.
      - C(exact) creates, and deletes all others.
    type: str
    choices: [present, absent, exact]
    default: present
notes:
  - Which FCID and targets the fabric gives a new virtual port is not known before. Check mode warns of that.
extends_documentation_fragment:
  - tavro.fleet.common
  - tavro.fleet.common.attributes
"""

EXAMPLES = r"""
- name: Have two virtual ports, and no other
  tavro.fleet.virtual_port:
    wwn: 10:00:02:00:5E:10:00:04
    virtual_wwns: ["20:01:02:00:5E:10:00:04", "20:02:02:00:5E:10:00:04"]
    state: exact
"""

RETURN = r"""
commands:
  description:
    - The command lines of tavrocli, and how each went.
  returned: always
  type: list
  elements: dict
  sample:
    - arguments: ["-fcoe", "10:00:02:00:5E:10:00:04", "-createvirtualport", "20:01:02:00:5E:10:00:04"]
      outcome: done
restart_required:
  description:
    - Whether what was changed takes effect when the host restarts.
  returned: always
  type: bool
"""

from ansible_collections.tavro.fleet.plugins.module_utils.flow import Command, bring_about, fleet_module
from ansible_collections.tavro.fleet.plugins.module_utils.host import normalised
from ansible_collections.tavro.fleet.plugins.module_utils.names import wwn

OPTIONS = {
    "wwn": {"type": "str", "required": True},
    "virtual_wwns": {"type": "list", "elements": "str", "required": True},
    "state": {"type": "str", "choices": ["present", "absent", "exact"], "default": "present"},
}


def needed(host, options):
    """The commands that create and delete."""
    function = host.function("fcoe", options["wwn"])
    there = {normalised(port["portWwn"]): port["portWwn"] for port in function.part.get("virtualPorts", [])}
    wanted = {normalised(each): wwn("virtual_wwns", each) for each in options["virtual_wwns"]}
    state = options["state"]
    create = [each for key, each in wanted.items() if state != "absent" and key not in there]
    delete = [each for key, each in there.items() if state != "present" and (key in wanted) == (state == "absent")]
    # What is deleted first leaves room.
    return [Command(["-fcoe", function.identifier, word] + wwns)
            for word, wwns in (("-deletevirtualport", delete), ("-createvirtualport", create)) if wwns]


def main():
    """Runs the module."""
    bring_about(fleet_module(OPTIONS), needed)


if __name__ == "__main__":
    main()
