"""The virtual ports of an FCoE port, and the VLAN of its fabric."""

from model.host import bare
from model.outcome import Outcome, StartsWith

NO_FCOE = "No FCoE function of this host has this port WWN."
NOT_A_WWN, WWN_IN_USE, NO_ADDRESS = ("The WWN is not valid.", "The WWN is in use on this host.",
                                     "The fabric has no address left for another virtual port.")
NO_SUCH_PORT, NOT_A_VLAN = "The port does not have this virtual port.", "The FIP VLAN ID is not valid."
REASONS = (NO_FCOE, NOT_A_WWN, WWN_IN_USE, NO_ADDRESS, NO_SUCH_PORT, NOT_A_VLAN)
WRITE_FIP, CREATE, DELETE = 48, 50, 51
ADDRESSES, HIGHEST_FCID = 255, 0xFFFFFF  # of a port's virtual ports, and of the whole fabric


def is_wwn(text):
    return len(bare(text)) == 16 and all(character in "0123456789ABCDEF" for character in bare(text))


def ports_of(host):
    """All FCoE ports of the host, physical and virtual ones."""
    physical = [function for function in host.functions if function["kind"] == "fcoe"]
    return physical + [port for function in physical for port in function["virtualPorts"]]


def free_fcid(host, function):
    """The next address behind the port's own that nobody in the fabric has; None when there is none left."""
    taken = {int(port["fcid"], 16) for port in (*ports_of(host), *host.fabric.get("targets", []))}
    own = int(function["fcid"], 16)
    free = (fcid for fcid in range(own + 1, min(own + ADDRESSES, HIGHEST_FCID) + 1) if fcid not in taken)
    return next(free, None)


def create(host, words, keyboard):
    outcome = Outcome()
    function = host.function("fcoe", words[2])
    if not function:
        return outcome.refuse_in_silence(CREATE, NO_FCOE)
    before, refusals = len(function["virtualPorts"]), []
    for wwn in words[4:]:
        fcid = free_fcid(host, function)
        if not is_wwn(wwn):
            refusals.append(NOT_A_WWN)
        elif bare(wwn) in [bare(port["portWwn"]) for port in ports_of(host)]:
            refusals.append(WWN_IN_USE)
        elif not fcid:
            refusals.append(NO_ADDRESS)
        else:
            function["virtualPorts"].append({"portWwn": wwn, "nodeWwn": function["nodeWwn"], "fcid": f"{fcid:06X}"})
    if refusals:
        del function["virtualPorts"][before:]
        return outcome.refuse_in_silence(CREATE, *refusals)
    return outcome.say("Create success for virtual port")


def delete(host, words, keyboard):
    outcome = Outcome()
    function = host.function("fcoe", words[2])
    if not function:
        return outcome.refuse_in_silence(DELETE, NO_FCOE)
    left, refusals = list(function["virtualPorts"]), []
    for wwn in words[4:]:
        port = next((item for item in left if bare(item["portWwn"]) == bare(wwn)), None)
        if port:
            left.remove(port)
        else:
            refusals += [NO_SUCH_PORT] if is_wwn(wwn) else [NO_SUCH_PORT, NOT_A_WWN]
    if refusals:
        return outcome.refuse_in_silence(DELETE, *refusals)
    function["virtualPorts"] = left
    return outcome.say("Delete success for virtual port")


def set_fip(host, words, keyboard):
    """The VLAN IDs that are usable are 1 to 4094."""
    outcome = Outcome()
    function = host.function("fcoe", words[2])
    vlan = words[4]
    is_vlan = vlan.isascii() and vlan.isdigit() and 1 <= int(vlan) <= 4094
    if not function or not is_vlan:
        return outcome.refuse_in_silence(WRITE_FIP, *([] if function else [NO_FCOE]), *([] if is_vlan else [NOT_A_VLAN]))
    function["fipVlanId"] = vlan
    return outcome.say(f"Set success{vlan}")


def get_fip(host, words, keyboard):
    function = host.function("fcoe", words[2])
    return Outcome().say(*[f"FIP VLAN ID is {function['fipVlanId']}"] if function else [])


def list_ports(host, words, keyboard):
    outcome = Outcome()
    function = host.function("fcoe", words[2])
    if not function:
        return outcome
    outcome.say(f"There are totally {len(function['virtualPorts'])} virtual ports.")
    for port in function["virtualPorts"]:
        outcome.say("Virtual Port" + "-" * 44, f"Port WWN:{port['portWwn']}", f"Node WWN:{port['nodeWwn']}")
        outcome.say(StartsWith("Fabric Name:"), f"Parent WWPN:{function['portWwn']}", StartsWith("FCF MacAddress:"))
        outcome.say(StartsWith("FCF Node WWN:"), StartsWith("FCF Port WWN:"), f"FCID:{port['fcid']}", StartsWith("FCMap:"))
        outcome.say(f"Fabric VLAN:{function['fipVlanId']}", StartsWith("Fabric Prioirty:"))
        outcome.say(f"FPMA Mac Address:{fpma(host, port)}", "-" * 57)
    return outcome


def fpma(host, port):
    """The MAC address that a fabric provides: its FC-MAP and the FCID."""
    digits = host.fabric["fcMap"] + port["fcid"]
    return "-".join(digits[place:place + 2] for place in range(0, len(digits), 2))


def list_targets(host, words, keyboard):
    """The targets that admit the virtual port: those that admit everybody, and those that name it."""
    outcome = Outcome()
    function = host.function("fcoe", words[2])
    if not function or bare(words[4]) not in [bare(port["portWwn"]) for port in function["virtualPorts"]]:
        return outcome
    for target in host.fabric.get("targets", []):
        if not target.get("initiators") or bare(words[4]) in map(bare, target["initiators"]):
            outcome.say("Virtual Port" + "-" * 44, f"Port Name:{target['portWwn']}", f"Node Name:{target['nodeWwn']}")
            outcome.say(f"FCID:{target['fcid']}", StartsWith("SCSI Bus Number:"), StartsWith("SCSI Target Number:"))
            outcome.say("-" * 57)
    return outcome
