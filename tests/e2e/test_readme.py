"""Holds the README's table of the demo host to the host that the simulator plays."""

import json
import re

from program import ROOT

HOST = ROOT / "simulator" / "default_host.json"
TABLE = re.compile(r"<!-- demo host: begin -->\n(.*?)\n<!-- demo host: end -->", re.DOTALL)


def code(*texts):
    return ", ".join(f"`{text}`" for text in texts)


def rows(host):
    """What the table has to show: each function, target and address that a command can name."""
    yield "What", "Where", "Name in commands", "IP addresses; CHAP"
    yield "---", "---", "---", "---"
    for adapter in host["adapters"]:
        for port in adapter["ports"]:
            for function in port["functions"]:
                yield function_row(f"{adapter['name'].removeprefix('Tavro ')}, {port['name']}", function)
    for target in host["iscsiTargets"]:
        yield "iSCSI target", ", ".join(map(portal, target["portals"])), code(target["name"]), chap(target.get("chap"))
    for target in host["fcoeFabric"]["targets"]:
        yield "FCoE target", target["symbolicName"], code(target["portWwn"]), ""
    yield "iSCSI initiator", "the host", code(host["initiator"]["name"]), ""
    yield "iSNS server", "the network", code(*host["isnsServers"]), ""
    yield "Answer a ping", "the network", ", ".join(map(reachable, host["reachable"])), ""


def function_row(place, function):
    (kind,) = {"ethernet", "iscsi", "fcoe"} & set(function)
    part = function[kind]
    tcp_ip = part.get("tcpIp", {})
    addresses = [tcp_ip[name] for name in ("address", "addressIPv6") if name in tcp_ip]
    name = {"ethernet": "Ethernet", "iscsi": "iSCSI", "fcoe": "FCoE"}[kind]
    return name, place, code(part["portWwn"] if kind == "fcoe" else function["mac"]), ", ".join(addresses)


def portal(where):
    return f"{where['address']} port {where['port']}" if "port" in where else where["address"]


def chap(wanted):
    if not wanted:
        return "no CHAP"
    target = f"{code(wanted['targetName'])}, secret {code(wanted['targetSecret'])}"
    if "initiatorName" not in wanted:
        return f"one-way: {target}"
    return f"mutual: {target}; initiator {code(wanted['initiatorName'])}, secret {code(wanted['initiatorSecret'])}"


def reachable(place):
    loss = f" ({place['lossPercent']} % lost)" if "lossPercent" in place else ""
    return code(place["address"]) + loss


def shown_rows():
    (table,) = TABLE.findall((ROOT / "README.md").read_text(encoding="utf-8"))
    return [tuple(cell.strip() for cell in line.strip("|").split("|")) for line in table.splitlines()]


def test_the_table_shows_the_demo_host():
    assert shown_rows() == list(rows(json.loads(HOST.read_text(encoding="utf-8"))))
