"""What differs between two host files, as Ansible shows differences."""

from .host import KINDS

# What others offer on the network, what a library said once, and what goes on by itself.
LEFT_OUT = {"format", "captured", "iscsiTargets", "fcoeFabric", "reachable", "statistics", "lastSessionId",
            "temperature"}
# No library tells them back; a twin holds a stand-in where one was sent.
SECRETS = {"targetSecret", "initiatorSecret", "chapSecret"}
# Nor how an initiator logs in to a portal.
UNTOLD_OF_PORTALS = {"login"}
# What an element of a list is known by: the first of these members that it has.
KNOWN_BY = ("name", "portWwn", "targetPortWwn", "address", "number", "id")
# What waits for the restart.
WAITING = ("pendingPartitions", "pendingPersonality", "pendingVlanId")


def difference(before, after, twin=None):
    """The members of two host files that differ, as "before" and "after".

    Lists are told as objects whose keys are what their elements are known by. twin is the host file of a twin with
    which the same was done: a library does not tell what waits for the restart, so that is taken from there.
    """
    before, after = _readable(before), _readable(after)
    if twin:
        _add_waiting(after, _readable(twin))
    before, after = _only_differing(before, after)
    return {"before": before, "after": after}


def _readable(value):
    if isinstance(value, dict):
        left_out = LEFT_OUT | SECRETS | (UNTOLD_OF_PORTALS if "address" in value else set())
        return {key: _readable(member) for key, member in value.items() if key not in left_out}
    if isinstance(value, list) and any(isinstance(element, dict) for element in value):
        members = {}
        for position, element in enumerate(value):
            name = _name(element) or str(position)
            members[f"{name} ({position})" if name in members else name] = _readable(element)
        return members
    return value


def _name(element):
    for kind, title in KINDS.items():
        if kind in element:
            return f"{title} {element[kind].get('portWwn') or element['mac']}"
    for member in KNOWN_BY:
        if member in element:
            return f"{element[member]}:{element['port']}" if "port" in element else str(element[member])
    return None


def _add_waiting(after, twin):
    for key, value in twin.items():
        if key in WAITING:
            after[key] = value
        elif isinstance(value, dict) and isinstance(after.get(key), dict):
            _add_waiting(after[key], value)


def _only_differing(before, after):
    lost, new = {}, {}
    for key in sorted(set(before) | set(after)):
        if key in before and key in after:
            if before[key] == after[key]:
                continue
            if all(isinstance(side[key], dict) or side[key] == [] for side in (before, after)):
                lost[key], new[key] = _only_differing(before[key] or {}, after[key] or {})
                continue
        if key in before:
            lost[key] = before[key]
        if key in after:
            new[key] = after[key]
    return lost, new
