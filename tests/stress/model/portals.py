"""The target portals that a port's initiator knows."""

from model.addresses import NO_ISCSI
from model.host import portal_of
from model.outcome import Outcome
from model.words import DEFAULT_PORT, is_ip, is_port_number, read_login

UNKNOWN_PORTAL, PORTAL_IN_USE = "The initiator does not know this portal.", "The portal is in use by a session."
REASONS = (UNKNOWN_PORTAL, PORTAL_IN_USE)


def where(portal):
    return {"address": portal["address"], "port": portal["port"]}


def sessions_with(function, name):
    return [session for session in function["sessions"] if session["target"] == name]


def portal_through(function, target):
    """Where a target is reached: its first session tells it, or else how it became known."""
    sessions = sessions_with(function, target["name"])
    return sessions[0]["portal"] if sessions else target["portal"]


def add_portal(host, words, keyboard):
    outcome = Outcome()
    if not is_ip(words[5]):
        return outcome.reject(28673)
    portal = {"address": words[5], "port": DEFAULT_PORT}
    if len(words) > 6:
        if is_port_number(words[6]):
            portal["port"] = words[6]
        else:
            outcome.say(28684)
    login = read_login(words[6:], keyboard, outcome)
    outcome.say(28691)
    function = host.function("iscsi", words[2])
    if not function:
        return outcome.refuse(NO_ISCSI)
    known = next((item for item in function["portals"] if where(item) == portal), None)
    if known:
        known["login"] = login
    else:
        function["portals"].append({**portal, "login": login})
    discover(host, function, portal)
    return outcome.say(25604)


def discover(host, function, portal):
    """The targets that answer there are known from now on; what is known already stays as it is."""
    names = [target["name"] for target in function["targets"]]
    for name in host.network:
        if name not in names and host.answers_at(name, portal):
            function["targets"].append({"name": name, "portal": dict(portal), "discovery": "SendTargets"})


def remove_portal(host, words, keyboard):
    outcome = Outcome()
    if not is_ip(words[5]):
        return outcome.reject(28673)
    portal = {"address": words[5], "port": words[6] if len(words) > 6 else DEFAULT_PORT}
    if not is_port_number(portal["port"]):
        outcome.say(28684)
    function = host.function("iscsi", words[2])
    if not function:
        return outcome.say(28691).refuse(NO_ISCSI)
    active = [target for target in function["targets"] if sessions_with(function, target["name"])]
    if any(portal_through(function, target)["address"] == words[5] for target in active):
        return outcome.reject(25607)
    outcome.say(28691)
    known = next((item for item in function["portals"] if where(item) == portal), None)
    if not known:
        return outcome.refuse(UNKNOWN_PORTAL)
    if any(session["portal"] == portal for session in function["sessions"]):
        return outcome.refuse(PORTAL_IN_USE)
    function["portals"].remove(known)
    function["targets"] = [target for target in function["targets"] if stays_without(host, function, target, portal)]
    return outcome.say(25605)


def stays_without(host, function, target, portal):
    """Whether a target is known without a portal; it tells another one from now on where it told that one."""
    if target["discovery"] == "Static" or target["portal"] != portal:
        return True
    ways = ways_to(host, function, target["name"])
    if ways:
        target["portal"] = dict(ways[0])
    return bool(ways)


def ways_to(host, function, name):
    """Where a target is reached: its portals that are known, in its order, and then those of its sessions."""
    known = [where(portal) for portal in function["portals"]]
    own = [portal_of(portal) for portal in host.network.get(name, {"portals": []})["portals"]]
    return [portal for portal in own if portal in known] + [item["portal"] for item in sessions_with(function, name)]


def list_portals(host, words, keyboard):
    outcome = Outcome().say(28691)
    function = host.function("iscsi", words[2])
    if not function:
        outcome.say(25603)
        outcome.refusals = frozenset([NO_ISCSI])
        return outcome
    rule = "-" * 54
    outcome.row(25601, "").say(rule, 25602, rule)
    outcome.say(*[f"{portal['address']} : {portal['port']}" for portal in function["portals"]] or [25606])
    return outcome.say(rule)
