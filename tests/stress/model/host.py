"""The state that commands change, in dictionaries and lists, and what of a host it depends on."""

import ipaddress

from model.words import LOGIN, octets_of

TCP_IP = {
    "dhcp": "No", "address": "0.0.0.0", "subnetMask": "0.0.0.0", "gateway": "0.0.0.0",
    "vlanId": "0", "pendingVlanId": "", "vlanPriority": "0", "maxFrameSize": "1500",
    "dhcpIPv6": "No", "addressIPv6": "::", "prefixLengthIPv6": "64", "gatewayIPv6": "::",
}
SESSION = {
    "initiatorName": "", "authentication": "None", "targetChapName": "", "initiatorChapName": "",
    "headerDigest": "No", "dataDigest": "No", "multipath": "Yes", "immediateData": "Yes",
}
MODELS = ("4610K", "4910K", "3910K")
KINDS = ("ethernet", "iscsi", "fcoe")


def bare(identifier):
    """A MAC or WWN as it is compared."""
    return identifier.replace("-", "").replace(":", "").upper()


def filled(defaults, members):
    """The members with the defaults of those that are left out or empty."""
    return {name: members.get(name) or default for name, default in defaults.items()}


def portal_of(member):
    return {"address": member["address"], "port": member.get("port", "3260")}


def read_function(function):
    """What commands change of a function of the host file, and what they name it by."""
    kind = next(kind for kind in KINDS if kind in function)
    part = function[kind]
    state = {"kind": kind, "id": bare(part["portWwn"] if kind == "fcoe" else function["mac"])}
    if kind != "fcoe":
        state["tcpIp"] = filled(TCP_IP, part.get("tcpIp", {}))
    if kind == "iscsi":
        storage = part.get("storage", {})
        state["portals"] = [{**portal_of(portal), "login": filled(LOGIN, portal.get("login", {}))}
                            for portal in storage.get("portals", [])]
        state["targets"] = [{**target, "portal": portal_of(target["portal"])} for target in storage.get("targets", [])]
        state["sessions"] = [{"id": session["id"], "target": session["target"], "portal": portal_of(session["portal"]),
                              **filled(SESSION, session)} for session in storage.get("sessions", [])]
        state["lastSessionId"] = storage.get("lastSessionId", 0)
    if kind == "fcoe":
        state.update({name: part[name] for name in ("portWwn", "nodeWwn", "fcid", "fipVlanId")})
        state["virtualPorts"] = [dict(port) for port in part.get("virtualPorts", [])]
    return state


def read_state(file):
    """Everything of a host file that the modelled commands change."""
    initiator = file["initiator"]
    return {
        "initiator": {"name": initiator["name"], "login": filled(LOGIN, initiator.get("login", {}))},
        "functions": [read_function(function) for adapter in file["adapters"] for port in adapter["ports"]
                      for function in port["functions"]],
    }


def is_restricted(file):
    """Whether the first adapter of a supported model with an Ethernet function on its first port tells that state."""
    for adapter in file["adapters"]:
        first = next((port for port in adapter["ports"] if port["name"] == "Port 1"), {"functions": []})
        if any(model in adapter["name"] for model in MODELS) and any("ethernet" in item for item in first["functions"]):
            return adapter.get("state") == "6"
    return False


class Host:
    def __init__(self, file):
        self.state = read_state(file)
        self.is_restricted = is_restricted(file)
        self.network = {target["name"]: target for target in file.get("iscsiTargets", [])}
        self.fabric = file.get("fcoeFabric", {"targets": []})

    @property
    def initiator(self):
        return self.state["initiator"]

    @property
    def functions(self):
        return self.state["functions"]

    def function(self, kind, identifier):
        """The function of this kind that a command names, or None."""
        name = bare(identifier)
        return next((item for item in self.functions if (item["kind"], item["id"]) == (kind, name)), None)

    def has_address(self, address, but):
        """Whether a function but that one has an address, however it is written."""
        wanted = value_of(address)
        return any(wanted in (value_of(item["tcpIp"]["address"]), value_of(item["tcpIp"]["addressIPv6"]))
                   for item in self.functions if item is not but and "tcpIp" in item)

    def answers_at(self, name, portal):
        """Whether there is a target of this name that answers at a portal."""
        return name in self.network and portal in [portal_of(item) for item in self.network[name]["portals"]]


def value_of(address):
    """What an address is, apart from how it is written."""
    octets = octets_of(address)
    try:
        return octets if octets else ipaddress.IPv6Address(address)
    except ValueError:
        return address
