"""Makes host files up: adapters with functions of each kind, and what they know and do already."""

from model.host import portal_of

ADDRESSES = [f"192.0.2.{number}" for number in (10, 11, 12, 13, 14, 99, 100, 101, 102, 103)]
ADDRESSES_IPV6 = ["2001:db8::10", "2001:DB8:0:0:0:0:0:11", "2001:db8::0012", "2001:db8::100", "2001:db8::101"]
MASKS = ["255.255.255.0", "255.255.0.0", "255.255.255.255", "0.0.0.0"]
GATEWAYS = ["192.0.2.1", "192.0.2.254", "0.0.0.0"]
PORTAL_ADDRESSES = ["198.51.100.20", "198.51.100.21", "198.51.100.22", "2001:db8:5::20", "2001:db8:5::21"]
PORT_NUMBERS = ["3260", "3260", "3260", "860", "70000"]
SECRETS = ["vault-secret-1", "host-secret-12", "sixteen-letters-", "twelve-chars"]
LONGEST_TARGET = "iqn.2015-01.com.example:" + "t" * 199
TARGETS = [*(f"iqn.2015-01.com.example:storage.{name}" for name in ("disks", "tapes", "vault", "Disks")), LONGEST_TARGET]
INITIATORS = ["iqn.2015-01.com.example:host", "iqn.2015-01.com.example:other"]
LAST_SESSION_IDS = [0, 1, 7, 98, 99998, 4294967293, 4294967295]
SEPARATORS = ["-", ":", ""]


def make_host(chance):
    """A host file as JSON. What it knows already hangs together, as commands would have left it."""
    free = Free(chance)
    fabric = make_fabric(chance, free)
    network = [make_target(chance, name) for name in chance.sample(TARGETS, chance.randint(1, len(TARGETS)))]
    host = {"name": "stress-host", "initiator": {"name": INITIATORS[0]}, "adapters": [], "iscsiTargets": network,
            "fcoeFabric": fabric}
    for number in range(chance.randint(1, 3)):
        host["adapters"].append(make_adapter(chance, number, free, network))
    if chance.random() < 0.03:
        host["adapters"].append(make_crowd(len(host["adapters"]), free))
    functions = [function for adapter in host["adapters"] for port in adapter["ports"] for function in port["functions"]]
    for target in fabric["targets"]:
        if chance.random() < 0.5:
            target["initiators"] = [wwn for function in functions for wwn in wwns_of(function) if chance.random() < 0.4]
    return host


class Free:
    """What no two functions may share."""

    def __init__(self, chance):
        self.addresses = chance.sample(ADDRESSES, len(ADDRESSES))
        self.addresses_ipv6 = chance.sample(ADDRESSES_IPV6, len(ADDRESSES_IPV6))
        self.fcid = chance.choice([0x010400, 0x0104FD, 0xEFFFF0, 0xFFFFF4])
        self.number = 0

    def next_number(self):
        self.number += 1
        return self.number

    def next_fcid(self, chance):
        self.fcid += chance.choice([1, 1, 2, 3])
        if self.fcid > 0xFFFFFF:
            self.fcid = 0x010800
        return f"{self.fcid:06X}"


def spelled(chance, digits):
    """A MAC or WWN, with any separators and in any case."""
    pairs = [digits[place:place + 2] for place in range(0, len(digits), 2)]
    text = chance.choice(SEPARATORS).join(pairs)
    return text if chance.random() < 0.5 else text.lower()


def make_adapter(chance, number, free, network):
    is_converged = chance.random() < 0.85
    model = chance.choice(["CNA 4610K", "CNA 4910K", "CNA 3910K", "CNA 1000"])
    adapter = {"name": f"Tavro {model} {number}", "number": number, "type": "CNA" if is_converged else "Ethernet",
               "partitionState": 1, "ports": []}
    if chance.random() < 0.5:
        adapter["state"] = chance.choice(["0", "0", "0", "6"])
    ports = chance.choice([1, 2, 4])
    for port in range(ports):
        kinds = ["ethernet", "iscsi", "fcoe"] if is_converged else ["ethernet"]
        kinds = [kind for kind in kinds if chance.random() < 0.8]
        mac = f"02005E{number:02X}{port:02X}00"
        functions = [make_function(chance, kind, port + ports * place, mac, free, network)
                     for place, kind in enumerate(kinds)]
        adapter["ports"].append({"name": f"Port {port + 1}", "functions": functions})
    return adapter


def make_crowd(number, free):
    """An adapter whose functions have all addresses that DHCP could give."""
    leases = [f"192.0.2.{last}" for last in range(100, 200)]
    leases = [text for text in leases if text not in ADDRESSES or text in free.addresses]
    functions = [{"number": place, "mac": f"02005ECC00{place:02X}",
                  "ethernet": {"interface": f"crowd{place}", "tcpIp": {"address": text}}}
                 for place, text in enumerate(leases)]
    ports = [{"name": "Port 1", "functions": functions}]
    return {"name": f"Tavro NIC {number}", "number": number, "type": "Ethernet", "partitionState": 1, "ports": ports}


def make_function(chance, kind, number, mac, free, network):
    """An iSCSI function may have the MAC of the Ethernet function of its port, every other has one of its own."""
    if kind != "ethernet" and (kind == "fcoe" or chance.random() < 0.7):
        mac = mac[:-2] + f"{free.next_number():02X}"
    make = {"ethernet": make_ethernet, "iscsi": make_iscsi, "fcoe": make_fcoe}[kind]
    return {"number": number, "mac": spelled(chance, mac), kind: make(chance, free, network)}


def make_ethernet(chance, free, network):
    return {"interface": f"eth{free.next_number()}", **make_tcp_ip(chance, free)}


def make_tcp_ip(chance, free):
    if chance.random() < 0.2:
        return {}
    settings = {"vlanId": chance.choice(["0", "1", "12", "4094"]), "dhcp": chance.choice(["Yes", "No", "No"]),
                "vlanPriority": chance.choice(["0", "5"]), "maxFrameSize": chance.choice(["1500", "9000"])}
    if free.addresses and chance.random() < 0.8:
        settings.update(address=free.addresses.pop(), subnetMask=chance.choice(MASKS), gateway=chance.choice(GATEWAYS))
    if free.addresses_ipv6 and chance.random() < 0.5:
        settings.update(addressIPv6=free.addresses_ipv6.pop(), dhcpIPv6=chance.choice(["Yes", "No"]),
                        prefixLengthIPv6=chance.choice(["64", "128", "0"]), gatewayIPv6="2001:db8::1")
    return {"tcpIp": {name: text for name, text in settings.items() if chance.random() < 0.9}}


def make_portal(chance):
    portal = {"address": chance.choice(PORTAL_ADDRESSES), "port": chance.choice(PORT_NUMBERS)}
    return {"address": portal["address"]} if portal["port"] == "3260" and chance.random() < 0.5 else portal


def make_portals(chance, highest):
    portals = []
    for _ in range(chance.randint(0, highest)):
        portal = make_portal(chance)
        if portal_of(portal) not in map(portal_of, portals):
            portals.append(portal)
    return portals


def make_target(chance, name):
    target = {"name": name, "alias": chance.choice(["", "Disks"]), "portals": make_portals(chance, 3)}
    if chance.random() < 0.6:
        target["chap"] = {"targetName": "vault", "targetSecret": chance.choice(SECRETS)}
        if chance.random() < 0.6:
            target["chap"].update(initiatorName="host", initiatorSecret=chance.choice(SECRETS))
    return target


def make_iscsi(chance, free, network):
    return {**make_tcp_ip(chance, free), **({"storage": make_storage(chance, network)} if chance.random() < 0.8 else {})}


def make_storage(chance, network):
    portals, targets, sessions = make_portals(chance, 4), [], []
    for target in network:
        reached = [portal for portal in portals if portal_of(portal) in map(portal_of, target["portals"])]
        if reached and chance.random() < 0.8:
            targets.append({"name": target["name"], "portal": portal_of(reached[0]), "discovery": "SendTargets"})
        elif target["portals"] and chance.random() < 0.2:
            targets.append({"name": target["name"], "portal": portal_of(target["portals"][0]), "discovery": "Static"})
        if targets and targets[-1]["name"] == target["name"] and chance.random() < 0.5:
            sessions += make_sessions(chance, target, len(sessions))
    if chance.random() < 0.2:  # it was there once
        portal = portal_of(make_portal(chance))
        targets.append({"name": "iqn.2015-01.com.example:gone", "portal": portal, "discovery": "Static"})
    last = chance.choice(LAST_SESSION_IDS)
    return {"portals": portals, "targets": targets, "sessions": sessions, "lastSessionId": last}


def make_sessions(chance, target, count):
    """Sessions with a target, of which one that wants to be the only one is the only one."""
    is_alone = chance.random() < 0.3
    return [{"id": chance.choice([0, 90, 99990]) + count + number + 1, "target": target["name"],
             "portal": portal_of(chance.choice(target["portals"])), "initiatorName": chance.choice(["", *INITIATORS]),
             "multipath": "No" if is_alone else "Yes"} for number in range(1 if is_alone else chance.randint(1, 3))]


def make_fabric(chance, free):
    targets = [{"portWwn": f"500002005E4000{number:02X}", "nodeWwn": f"510002005E4000{number:02X}",
                "fcid": free.next_fcid(chance)} for number in range(chance.randint(0, 3))]
    return {"fcMap": "0EFC00", "targets": targets}


def make_fcoe(chance, free, network):
    number = free.next_number()
    part = {"portWwn": spelled(chance, f"100002005E1000{number:02X}"),
            "nodeWwn": spelled(chance, f"200002005E1000{number:02X}"),
            "fcid": free.next_fcid(chance), "fipVlanId": chance.choice(["1", "1002", "4094"])}
    part["virtualPorts"] = [
        {"portWwn": spelled(chance, f"2{place + 1}0002005E1000{number:02X}"), "nodeWwn": part["nodeWwn"],
         "fcid": free.next_fcid(chance)} for place in range(chance.choice([0, 0, 1, 3]))]
    return part


def wwns_of(function):
    part = function.get("fcoe")
    return [port["portWwn"] for port in (part, *part["virtualPorts"])] if part else []
