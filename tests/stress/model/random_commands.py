"""Makes commands up that mean something to a host, or nearly do: what is there, what is not, and what lies at the limits."""

import dataclasses

from model import random_hosts
from model.commands import RESTART
from model.host import portal_of
from model.random_hosts import INITIATORS, PORTAL_ADDRESSES, SECRETS, TARGETS, spelled

NO_ADDRESSES = ["192.0.2.256", "192.0.2", "1.2.3.4.5", "", "192.0.2.x", "-static", "2001:db8::g", ":", "12345::"]
ADDRESSES = [*random_hosts.ADDRESSES, "192..0.2.77", ".192.0.2.78.", "192.0.2.010", "192.0.2.104", "0.0.0.0",
             "255.255.255.255"]
ADDRESSES_IPV6 = [*random_hosts.ADDRESSES_IPV6, "2001:0DB8::0010", "2001:db8:0::11", "::", "0:0:0:0:0:0:0:0", "fe80::1%eth0",
                  "2001:DB8:85A3:42:1000:8A2E:370:7334", "::ffff:192.0.2.10", ":".join(["ffff"] * 8)]
VLANS = ["0", "0", "1", "12", "4093", "4094", "00", "0012"]
NO_VLANS = ["4095", "-1", "1a", "65536", "9999999"]
PREFIXES, NO_PREFIXES = ["0", "1", "64", "127", "128", "064"], ["129", "-1", "x", "1000"]
NO_PORT_NUMBERS = ["32x60", "-1", "3260 ", "-mp", "-onewaychap"]
OPTIONS = ["-mp", "-hd", "-dd", "-onewaychap", "-mutualchap", "-oneWayCHAP", "-MP", "word"]
UNKNOWN_MAC, UNKNOWN_WWN = "02005E99FFFF", "100002005E99FFFF"


@dataclasses.dataclass(frozen=True)
class Step:
    arguments: tuple
    lines: tuple = ()  # what is typed at its questions, as far as it goes


def make_step(chance, host):
    makers = [(make, weight) for kind, make, weight in MAKERS
              if not kind or any(function["kind"] == kind for function in host.functions) or chance.random() < 0.02]
    make = chance.choices([make for make, _ in makers], [weight for _, weight in makers])[0]
    arguments, lines = make(chance, host)
    if chance.random() < 0.03 and len(arguments) > 1:  # something is forgotten
        arguments = arguments[:chance.randrange(1, len(arguments))]
    return Step(tuple(arguments), tuple(lines))


def function_of(chance, host, kind):
    """A function of that kind, seldom none; with its name."""
    there = [function for function in host.functions if function["kind"] == kind]
    if there and chance.random() < 0.96:
        function = chance.choice(there)
        return function, spelled(chance, function["id"])
    others = [function["id"] for function in host.functions if function["kind"] != kind]
    return None, spelled(chance, chance.choice([UNKNOWN_WWN if kind == "fcoe" else UNKNOWN_MAC, *others]))


def mostly(chance, right, wrong, share=0.9):
    return chance.choice(right if chance.random() < share else wrong)


def taken_address(chance, host, name):
    return chance.choice([function["tcpIp"][name] for function in host.functions if "tcpIp" in function] or [""])


def make_iscsi_tcp_ip(chance, host):
    return ["-iscsi", function_of(chance, host, "iscsi")[1], "-modifytcpip", *make_tcp_ip_words(chance, host)], []


def make_tcp_ip_words(chance, host):
    vlan = mostly(chance, VLANS, NO_VLANS)
    if chance.random() < 0.4:
        return ["-dhcp", vlan]
    address = taken_address(chance, host, "address")
    if chance.random() < 0.7:
        address = mostly(chance, ADDRESSES, NO_ADDRESSES)
    return ["-static", vlan, address, mostly(chance, random_hosts.MASKS, NO_ADDRESSES, 0.95),
            mostly(chance, random_hosts.GATEWAYS, NO_ADDRESSES, 0.95)]


def make_ethernet_tcp_ip(chance, host):
    words = ["-ethernet", function_of(chance, host, "ethernet")[1], "-modifytcpip"]
    if chance.random() < 0.5:
        return [*words, "-ipv4", *make_tcp_ip_words(chance, host)], []
    words.append(mostly(chance, ["-ipv6"], ["-IPv4", "x", "-ip6"]))
    vlan = mostly(chance, VLANS, NO_VLANS)
    if chance.random() < 0.4:
        return [*words, "-dhcp", vlan], []
    address = taken_address(chance, host, "addressIPv6")
    if chance.random() < 0.7:
        address = mostly(chance, ADDRESSES_IPV6, NO_ADDRESSES)
    rest = [mostly(chance, PREFIXES, NO_PREFIXES), mostly(chance, ["2001:db8::1", "::"], NO_ADDRESSES)]
    return [*words, "-static", vlan, address, *rest[:chance.randint(0, 2)]], []


def some_portal(chance, host, function, weights=(1, 2, 1)):
    """Address and port number of a portal: one that is known, one of a target, or any, by these weights."""
    known = [(portal["address"], portal["port"]) for portal in function["portals"]] if function else []
    offered = [tuple(portal_of(portal).values()) for target in host.network.values() for portal in target["portals"]]
    made_up = [(chance.choice(PORTAL_ADDRESSES), chance.choice(["3260", "03260", "0", "99999"]))]
    pools = [(pool, weight) for pool, weight in zip((known, offered, made_up), weights) if pool]
    return list(chance.choice(chance.choices([pool for pool, _ in pools], [weight for _, weight in pools])[0]))


def portal_words(chance, host, function, weights=(1, 2, 1)):
    address, port = some_portal(chance, host, function, weights)
    if chance.random() < 0.06:
        address = chance.choice(NO_ADDRESSES)
    if chance.random() < 0.06:
        return [address, chance.choice(NO_PORT_NUMBERS)]
    return [address] if port == "3260" and chance.random() < 0.5 else [address, port]


def option_words(chance, words, behind):
    """Login options, which need the port number in front of them."""
    if len(words) == behind or chance.random() < 0.5:
        return []
    return chance.sample(OPTIONS, chance.choice([1, 1, 2, 3]))


def make_portal_add(chance, host):
    function, mac = function_of(chance, host, "iscsi")
    words = portal_words(chance, host, function)
    words += option_words(chance, words, 1)
    return ["-iscsi", mac, "-portal", "-add", *words], make_lines(chance, words, {})


def make_portal_remove(chance, host):
    function, mac = function_of(chance, host, "iscsi")
    return ["-iscsi", mac, "-portal", "-remove", *portal_words(chance, host, function, (8, 2, 1))], []


def some_target(chance, host, function):
    known = [target["name"] for target in function["targets"]] if function else []
    active = [session["target"] for session in function["sessions"]] if function else []
    pools = [pool for pool in (known, known, active, list(host.network), list(host.network)) if pool]
    strange = [*TARGETS, "iqn.none", TARGETS[0].upper(), random_hosts.LONGEST_TARGET + "t"]
    return mostly(chance, chance.choice(pools), strange, 0.95)


def make_login(chance, host):
    """A login that would mostly succeed, with the options that the target wants, or with any."""
    function, mac = function_of(chance, host, "iscsi")
    name = some_target(chance, host, function)
    target = host.network.get(name, {"portals": []})
    portals = [list(portal_of(portal).values()) for portal in target["portals"]]
    if not portals and chance.random() < 0.8:  # nothing answers for it
        return make_portal_add(chance, host)
    words = chance.choice(portals) if portals and chance.random() < 0.9 else portal_words(chance, host, function)
    chap = target.get("chap", {})
    if len(words) > 1:
        wanted, any_ones = options_for(chance, chap), one_method(option_words(chance, words, 1))
        words = words + (wanted if chance.random() < 0.7 else any_ones)
    is_known = function and name in [known["name"] for known in function["targets"]]
    lines = [] if is_known else [mostly(chance, ["y", "Yes"], ["n", "", " y"])]
    if chance.random() < 0.02:
        name = f" {name} "
    return ["-iscsi", mac, "-target", "-login", name, *words], lines + make_lines(chance, words, chap)


def options_for(chance, chap):
    method = ["-mutualchap"] if chap.get("initiatorName") else ["-onewaychap"] if chap else []
    return method + [option for option in ("-mp", "-hd") if chance.random() < 0.3]


def one_method(words):
    """Of two methods the last one counts; what a session tells of the names of the first is nowhere said."""
    return [word for word in words if word != "-onewaychap" or "-mutualchap" not in words]


def make_lines(chance, words, chap):
    """What is typed for CHAP: what is wanted, at times a wrong name or secret, and secrets that are refused."""
    sides = [side for word in words
             for side in {"-onewaychap": ["target"], "-mutualchap": ["target", "initiator"]}.get(word, [])]
    wrong = chance.randrange(2 * len(sides)) if sides and chance.random() < 0.3 else None
    lines = []
    for place, side in enumerate(sides):
        lines.append(chap.get(f"{side}Name", "vault") if wrong != 2 * place else chance.choice(["", "nobody"]))
        if chance.random() < 0.1:
            lines.append(chance.choice(["", "eleven-char", "seventeen-letters"]))
        lines.append(chap.get(f"{side}Secret", SECRETS[0]) if wrong != 2 * place + 1 else chance.choice(SECRETS))
    return lines


def make_logout(chance, host):
    function, mac = function_of(chance, host, "iscsi")
    active = [session["target"] for session in function["sessions"]] if function else []
    name = chance.choice(active) if active and chance.random() < 0.7 else some_target(chance, host, function)
    ids = [str(session["id"]) for session in function["sessions"] if session["target"] == name] if function else []
    own = [",".join(ids), ids[0], f"{ids[-1]},"] if ids else ["1,2", "1", "3,"]
    choices = ["", "0", *own, "99999", "100000", "1,x", "-", ",7"]
    typed = chance.choices(choices, [4, 2, 4, 6, 1, 1, 1, 1, 1, 1])[0]
    return ["-iscsi", mac, "-target", "-logout", name, *([typed] if typed else [])], []


def make_target_remove(chance, host):
    function, mac = function_of(chance, host, "iscsi")
    return ["-iscsi", mac, "-target", "-remove", some_target(chance, host, function)], []


def make_virtual_ports(chance, host):
    function, wwn = function_of(chance, host, "fcoe")
    fresh = [f"30000200{chance.randrange(4):08X}" for _ in range(chance.choice([1, 1, 1, 2, 4]))]
    wwns = [wwn for wwn in dict.fromkeys(fresh) if wwn not in used_wwns(host)] or fresh
    if chance.random() < 0.15:
        wwns.insert(chance.randrange(len(wwns) + 1), chance.choice([*used_wwns(host), wwns[0]]))
    words = [spelled(chance, item) for item in wwns]
    if chance.random() < 0.08:
        words.append(chance.choice(["x", "", "30000200000000", "3000020000000000A", "-debug", "3000020000000G0A"]))
    return ["-fcoe", wwn, "-createvirtualport", *words], []


def used_wwns(host):
    functions = [function for function in host.functions if function["kind"] == "fcoe"]
    ports = [port["portWwn"] for function in functions for port in (function, *function["virtualPorts"])]
    return [wwn.replace("-", "").replace(":", "").upper() for wwn in ports] or ["300002000000000A"]


def make_virtual_port_deletion(chance, host):
    function, wwn = function_of(chance, host, "fcoe")
    own = [port["portWwn"] for port in function["virtualPorts"]] if function else []
    wwns = chance.sample(own, chance.randint(1, len(own))) if own and chance.random() < 0.85 else []
    if not wwns or chance.random() < 0.15:
        wwns.append(chance.choice([*used_wwns(host), "300002000000000F", "x", *wwns]))
    return ["-fcoe", wwn, "-deletevirtualport", *wwns], []


def make_fip(chance, host):
    vlan = mostly(chance, ["1", "2", "1003", "4094"], ["4095", "9999", "x", "-1", ""], 0.7)
    return ["-fcoe", function_of(chance, host, "fcoe")[1], "-setfip", vlan], []


def make_initiator(chance, host):
    names = [*INITIATORS, "i" * 223]
    words = [mostly(chance, names, ["i" * 224, " ", ""], 0.85), *chance.sample(OPTIONS, chance.choice([0, 0, 1, 2]))]
    return ["-iscsi", "-setinitiator", *words], make_lines(chance, words[1:], {})


def make_restart(chance, host):
    return RESTART, []


def make_nonsense(chance, host):
    words = ["-iscsi", "-fcoe", "-ethernet", UNKNOWN_MAC, "-portal", "-Add", "-modifytcpip", "-static", "-targets", "-getfip"]
    return ["-ISCSI", *chance.sample(words, chance.randint(1, 4))], []


# By the kind of function that it needs: what makes a command up, and how often.
MAKERS = [
    ("iscsi", make_iscsi_tcp_ip, 4), ("ethernet", make_ethernet_tcp_ip, 5), ("iscsi", make_portal_add, 4),
    ("iscsi", make_portal_remove, 4), ("iscsi", make_login, 12), ("iscsi", make_logout, 4), ("iscsi", make_target_remove, 2),
    ("fcoe", make_virtual_ports, 4), ("fcoe", make_virtual_port_deletion, 3), ("fcoe", make_fip, 1),
    ("iscsi", make_initiator, 1), ("ethernet", make_restart, 1), ("", make_nonsense, 0.3),
]
