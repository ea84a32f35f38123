#!/usr/bin/python
"""Imports a saved iSCSI configuration."""

DOCUMENTATION = r"""
module: config_import
short_description: Import a saved iSCSI configuration
description:
  - Applies a saved iSCSI configuration, as C(tavrocli -import) reads it from C(cnadiscovery.xml), to a host; the
    initiator, TCP/IP settings, portals, and sessions with the targets whose status is C(Connected).
  - Only what the host does not have is imported. What the host has beyond the configuration stays.
version_added: 5.2.3
author:
  - Tavro (@tavro)
options:
  content:
    description:
      - The configuration, an XML document. It holds CHAP secrets, and so appears nowhere.
    type: str
    required: true
  skip_missing:
    description:
      - Whether functions that the host does not have are passed over. Otherwise the module fails.
    type: bool
    default: false
notes:
  - Numbers are compared as numbers, and switches such as C(Yes) and C(none) in whatever letters.
  - Of a portal its address and port are compared, of a session those and the target. How they log in is imported with
    those that are new.
  - I(update_secret=always) imports the initiator and the portals that have secrets each time. A target with a session
    is left alone, since each import could open another one.
extends_documentation_fragment:
  - tavro.fleet.common
  - tavro.fleet.common.attributes
  - tavro.fleet.common.secrets
"""

EXAMPLES = r"""
- name: Import the host's own configuration
  tavro.fleet.config_import:
    content: "{{ lookup('ansible.builtin.file', 'saved/' ~ inventory_hostname ~ '.xml') }}"
"""

RETURN = r"""
commands:
  description:
    - The command lines of tavrocli, and how each went.
  returned: always
  type: list
  elements: dict
  sample: [{"arguments": ["-import"], "outcome": "done"}]
restart_required:
  description:
    - Whether what was changed takes effect when the host restarts.
  returned: always
  type: bool
"""

from ansible_collections.tavro.fleet.plugins.module_utils.flow import Command, Failure, bring_about, fleet_module
from ansible_collections.tavro.fleet.plugins.module_utils.options import SECRET_OPTIONS
from ansible_collections.tavro.fleet.plugins.module_utils.saved import SavedConfiguration

OPTIONS = dict(SECRET_OPTIONS, **{
    "content": {"type": "str", "required": True, "no_log": True},
    "skip_missing": {"type": "bool", "default": False},
})
FILE = "cnadiscovery.xml"


def needed(host, options):
    """The command that imports what the host does not have."""
    saved = SavedConfiguration(options["content"])
    missing = saved.missing_functions(host.document)
    if missing and not options["skip_missing"]:
        raise Failure("content: the host does not have " + "; ".join(missing))
    part = saved.without_what_is_there(host.document, with_secrets=False)
    if part is None and options["update_secret"] == "on_create":
        return []
    sent = saved.without_what_is_there(host.document, with_secrets=options["update_secret"] == "always")
    return [Command(["-import"], files={FILE: sent}, provable=part is not None)] if sent else []


def main():
    """Runs the module."""
    bring_about(fleet_module(OPTIONS), needed)


if __name__ == "__main__":
    main()
