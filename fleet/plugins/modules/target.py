#!/usr/bin/python
"""Logs an iSCSI function in to a target, or out."""

DOCUMENTATION = r"""
module: target
short_description: Log an iSCSI function in to a target, or out
description:
  - Opens a session with an iSCSI target through a portal, ends sessions, or makes the function forget a target.
version_added: 5.2.3
author:
  - Tavro (@tavro)
options:
  mac:
    description:
      - The MAC of the function. Letter case and separators do not matter.
    type: str
    required: true
  name:
    description:
      - The target's iSCSI name. Letter case counts.
    type: str
    required: true
  address:
    description:
      - The IPv4 or IPv6 address of the portal through which the session goes. Without one, sessions through all portals
        are ended.
    type: str
  port:
    description:
      - The TCP port of the portal.
    type: int
    default: 3260
  state:
    description:
      - C(connected) means that there is a session through the portal, with what is given of how to log in. A session
        with another login is ended, and opened anew.
      - C(disconnected) means that there is none.
      - C(absent) means that there is none through any portal, and that the function does not know the target.
    type: str
    choices: [connected, disconnected, absent]
    default: connected
notes:
  - Where nothing else is said, a new session is one with multipath, without digests and without CHAP of its own.
  - With I(update_secret=always) the session is ended and opened anew each time.
  - Sessions are ended whether their LUNs are in use or not. When the login that follows fails, there is none.
    One that a copy of the host refuses is not tried, and the sessions stay.
  - Whether a target accepts a login cannot be known before it is asked. Check mode warns of that.
extends_documentation_fragment:
  - tavro.fleet.login
  - tavro.fleet.common
  - tavro.fleet.common.attributes
  - tavro.fleet.common.secrets
"""

EXAMPLES = r"""
- name: Have a session with mutual CHAP
  tavro.fleet.target:
    mac: 02-00-5E-10-00-02
    name: iqn.2015-01.com.example:storage.vault
    address: 2001:db8::20
    authentication: mutual_chap
    target_chap_name: vault
    target_chap_secret: "{{ vault_target_secret }}"
    initiator_chap_name: "{{ inventory_hostname }}"
    initiator_chap_secret: "{{ vault_initiator_secret }}"

- name: End all sessions with a target
  tavro.fleet.target:
    mac: 02-00-5E-10-00-02
    name: iqn.2015-01.com.example:storage.backup
    state: disconnected
"""

RETURN = r"""
commands:
  description:
    - The command lines of tavrocli, and how each went.
  returned: always
  type: list
  elements: dict
  sample:
    - arguments: ["-iscsi", "02-00-5E-10-00-02", "-target", "-logout", "iqn.2015-01.com.example:storage.backup", "1"]
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
from ansible_collections.tavro.fleet.plugins.module_utils.names import iscsi_name

OPTIONS = dict(
    LOGIN_OPTIONS,
    mac={"type": "str", "required": True},
    name={"type": "str", "required": True},
    address={"type": "str"},
    port={"type": "int", "default": 3260},
    state={"type": "str", "choices": ["connected", "disconnected", "absent"], "default": "connected"},
)
RULES = dict(LOGIN_RULES, required_if=[("state", "connected", ["address"])])
# Answers the question that is asked of a target that was not discovered.
CONFIRMATION = {24591: "y"}


def needed(host, options):
    """The commands that log out, log in and remove."""
    function = host.function("iscsi", options["mac"])
    storage = function.part.get("storage", {})
    name = iscsi_name("name", options["name"])
    line = ["-iscsi", function.identifier, "-target"]
    sessions = [session for session in storage.get("sessions", []) if session["target"] == name]
    known = [target for target in storage.get("targets", []) if target["name"] == name]
    if options["state"] == "absent":
        # With its last session a target may be forgotten by itself.
        return _logout(line, name, sessions) + [
            Command(line + ["-remove", name], dispensable=bool(sessions)) for _ in known[:1]]
    if options["address"] is not None:
        address, port = ip_address("address", options["address"]), tcp_port("port", options["port"])
        sessions = [session for session in sessions if is_portal(session["portal"], address, port)]
        known = [target for target in known if is_portal(target["portal"], address, port)]
    if options["state"] == "disconnected":
        return _logout(line, name, sessions)
    login = Login(options)
    is_there = any(login.agrees(session) for session in sessions)
    if is_there and not login.sends_secrets():
        return []
    return _logout(line, name, sessions, provable=not is_there) + [Command(
        line + ["-login", name, address, port] + login.words(), {**CONFIRMATION, **login.answers()},
        provable=not is_there, foreseeable=bool(known))]


def _logout(line, name, sessions, provable=True):
    """The command that ends these sessions."""
    numbers = ",".join(str(session["id"]) for session in sessions)
    return [Command(line + ["-logout", name, numbers], provable=provable)] if sessions else []


def main():
    """Runs the module."""
    bring_about(fleet_module(OPTIONS, **RULES), needed)


if __name__ == "__main__":
    main()
