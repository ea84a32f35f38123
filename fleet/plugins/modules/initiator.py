#!/usr/bin/python
"""Sets the iSCSI initiator of a host."""

DOCUMENTATION = r"""
module: initiator
short_description: Set the iSCSI initiator of a host
description:
  - Sets the name of the host's iSCSI initiator, and how it logs in unless a portal or a target says otherwise.
  - What is not given stays as it is. Secrets cannot stay, since no host tells them. With CHAP they have to be given
    whenever anything is changed.
version_added: 5.2.3
author:
  - Tavro (@tavro)
options:
  name:
    description:
      - The initiator's iSCSI name. Letter case counts.
    type: str
    required: true
extends_documentation_fragment:
  - tavro.fleet.login
  - tavro.fleet.common
  - tavro.fleet.common.attributes
  - tavro.fleet.common.secrets
"""

EXAMPLES = r"""
- name: Name the initiator, and have it prove who it is
  tavro.fleet.initiator:
    name: "iqn.2015-01.com.example:{{ inventory_hostname }}"
    authentication: one_way_chap
    target_chap_name: "{{ inventory_hostname }}"
    target_chap_secret: "{{ vault_chap_secret }}"
"""

RETURN = r"""
commands:
  description:
    - The command line of tavrocli, and how it went.
  returned: always
  type: list
  elements: dict
  sample:
    - arguments: ["-iscsi", "-setinitiator", "iqn.2015-01.com.example:server-7", "-onewaychap"]
      outcome: done
restart_required:
  description:
    - Whether what was changed takes effect when the host restarts.
  returned: always
  type: bool
"""

from ansible_collections.tavro.fleet.plugins.module_utils.flow import Command, bring_about, fleet_module
from ansible_collections.tavro.fleet.plugins.module_utils.login import LOGIN_OPTIONS, Login, options_told
from ansible_collections.tavro.fleet.plugins.module_utils.names import iscsi_name

OPTIONS = dict(LOGIN_OPTIONS, name={"type": "str", "required": True})


def needed(host, options):
    """The command that sets the initiator, which sets all of it anew."""
    there = host.document.get("initiator", {})
    told = there.get("login", {})
    name = iscsi_name("name", options["name"])
    login = Login(options, options_told(told))
    differs = there.get("name") != name or not login.agrees(told)
    if not differs and not login.sends_secrets():
        return []
    return [Command(["-iscsi", "-setinitiator", name] + login.words(), login.answers(), provable=differs)]


def main():
    """Runs the module."""
    bring_about(fleet_module(OPTIONS), needed)


if __name__ == "__main__":
    main()
