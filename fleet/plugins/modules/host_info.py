#!/usr/bin/python
"""Reads what a host has."""

DOCUMENTATION = r"""
module: host_info
short_description: Read the adapters, ports and functions of a host
description:
  - Tells all that the management library tells of a host, but for secrets.
  - Nothing is changed, pinged or exported.
version_added: 5.2.3
author:
  - Tavro (@tavro)
options:
  with_answers:
    description:
      - Whether the library's answers, word for word, come with the host.
    type: bool
    default: false
extends_documentation_fragment:
  - tavro.fleet.common
  - tavro.fleet.common.attributes
attributes:
  check_mode:
    details:
      - The module only reads.
  diff_mode:
    support: none
    details:
      - The module only reads.
"""

EXAMPLES = r"""
- name: Read the host
  tavro.fleet.host_info:
  register: host

- name: Tell the address of each Ethernet function
  ansible.builtin.debug:
    msg: "{{ item.mac }} {{ item.ethernet.tcpIp.address }}"
  loop: "{{ host.functions | selectattr('ethernet', 'defined') }}"
  loop_control:
    label: "{{ item.mac }}"
"""

RETURN = r"""
host:
  description:
    - The host, as C(tavrohost schema host) describes it.
  returned: success
  type: dict
  sample: {"name": "server-7", "initiator": {"name": "iqn.2015-01.com.example:server-7"}, "adapters": []}
functions:
  description:
    - The functions of all ports, as they stand in C(host), each with the names of its adapter and port.
  returned: success
  type: list
  elements: dict
  sample: [{"adapter": "Tavro CNA 4610K", "port": "Port 1", "number": 2, "mac": "02-00-5E-10-00-02", "iscsi": {}}]
"""

from ansible_collections.tavro.fleet.plugins.module_utils.flow import fleet_module, read

OPTIONS = {
    "with_answers": {"type": "bool", "default": False},
}


def main():
    """Runs the module."""
    module = fleet_module(OPTIONS)

    def tell(document):
        if not module.params["with_answers"]:
            document.pop("captured", None)
        functions = [
            dict(function, adapter=adapter["name"], port=port["name"])
            for adapter in document["adapters"] for port in adapter["ports"] for function in port["functions"]
        ]
        return {"host": document, "functions": functions}

    read(module, tell)


if __name__ == "__main__":
    main()
