#!/usr/bin/python
"""Adds a target portal to an iSCSI function, or removes it."""

DOCUMENTATION = r"""
module: portal
short_description: Add or remove a target portal of an iSCSI function
description:
  - Adds a portal to those that an iSCSI function asks for targets, or removes it.
  - How to log in there is told by no host. It is sent when the portal is added, and again with
    I(update_secret=always).
version_added: 5.2.3
author:
  - Tavro (@tavro)
options:
  mac:
    description:
      - The MAC of the function. Letter case and separators do not matter.
    type: str
    required: true
  address:
    description:
      - The IPv4 or IPv6 address of the portal.
    type: str
    required: true
  port:
    description:
      - The TCP port of the portal.
    type: int
    default: 3260
  state:
    description:
      - Whether the function knows the portal. A portal through which there is a session cannot be removed, so log out
        before, with M(tavro.fleet.target).
    type: str
    choices: [present, absent]
    default: present
notes:
  - Where nothing else is said, the login is one with multipath, without digests and without CHAP of its own.
extends_documentation_fragment:
  - tavro.fleet.login
  - tavro.fleet.common
  - tavro.fleet.common.attributes
  - tavro.fleet.common.secrets
"""

EXAMPLES = r"""
- name: Know a portal
  tavro.fleet.portal:
    mac: 02-00-5E-10-00-02
    address: 198.51.100.20

- name: Know a portal that wants CHAP
  tavro.fleet.portal:
    mac: 02-00-5E-10-00-02
    address: 198.51.100.22
    port: 860
    authentication: one_way_chap
    target_chap_name: backup
    target_chap_secret: "{{ vault_backup_secret }}"
"""

RETURN = r"""
commands:
  description:
    - The command line of tavrocli, and how it went.
  returned: always
  type: list
  elements: dict
  sample:
    - arguments: ["-iscsi", "02-00-5E-10-00-02", "-portal", "-add", "198.51.100.20", "3260"]
      outcome: done
restart_required:
  description:
    - Whether what was changed takes effect when the host restarts.
  returned: always
  type: bool
"""

from ansible_collections.tavro.fleet.plugins.module_utils.addresses import ip_address, is_portal, tcp_port
from ansible_collections.tavro.fleet.plugins.module_utils.flow import Command, bring_about, fleet_module
from ansible_collections.tavro.fleet.plugins.module_utils.login import LOGIN_OPTIONS, LOGIN_RULES, Login

OPTIONS = dict(
    LOGIN_OPTIONS,
    mac={"type": "str", "required": True},
    address={"type": "str", "required": True},
    port={"type": "int", "default": 3260},
    state={"type": "str", "choices": ["present", "absent"], "default": "present"},
)


def needed(host, options):
    """The command that adds the portal or removes it."""
    function = host.function("iscsi", options["mac"])
    address, port = ip_address("address", options["address"]), tcp_port("port", options["port"])
    known = [portal for portal in function.part.get("storage", {}).get("portals", [])
             if is_portal(portal, address, port)]
    line = ["-iscsi", function.identifier, "-portal"]
    if options["state"] == "absent":
        return [Command(line + ["-remove", portal["address"], port]) for portal in known]
    login = Login(options)
    if known and not login.sends_secrets():
        return []
    return [Command(line + ["-add", address, port] + login.words(), login.answers(), provable=not known)]


def main():
    """Runs the module."""
    bring_about(fleet_module(OPTIONS, **LOGIN_RULES), needed)


if __name__ == "__main__":
    main()
