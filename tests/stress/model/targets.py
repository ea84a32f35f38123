"""The targets that a port's initiator knows, logins to them and logouts."""

from model.addresses import NO_ISCSI
from model.outcome import Outcome
from model.portals import portal_through, sessions_with, stays_without, where
from model.words import DEFAULT_PORT, is_ip, is_port_number, is_session_list, read_login, sessions_of

UNKNOWN_TARGET = "The initiator does not know this target."
HAS_SESSION, NO_SESSION = "There is a session with the target.", "There is no session with the target."
NO_SUCH_NUMBER, NO_NUMBER_LEFT = "The target has no session of this number.", "The host file has no session number left."
NO_REPLY = "The target does not reply at this portal."
WANTS_CHAP, WANTS_MUTUAL, NO_MUTUAL = (f"The target {words} CHAP authentication."
                                       for words in ("wants", "wants mutual", "does not offer mutual"))
UNKNOWN_NAMES = {side: f"The target does not know this {side} CHAP name." for side in ("target", "initiator")}
WRONG_SECRETS = {side: f"The {side} CHAP secret does not match." for side in ("target", "initiator")}
REPEATED = "There is a session with the target through this portal already."
ELSEWHERE = "There is a session with the target through another portal already."
NAME_NOT_USABLE = "The initiator name is not usable."
REASONS = (UNKNOWN_TARGET, HAS_SESSION, NO_SESSION, NO_SUCH_NUMBER, NO_NUMBER_LEFT, NO_REPLY, WANTS_CHAP, WANTS_MUTUAL,
           NO_MUTUAL, *UNKNOWN_NAMES.values(), *WRONG_SECRETS.values(), REPEATED, ELSEWHERE, NAME_NOT_USABLE)
HIGHEST_SESSION = 4294967295
LONGEST_NAME = 223


def set_initiator(host, words, keyboard):
    outcome = Outcome()
    login = read_login(words[4:], keyboard, outcome)
    if not words[3].strip() or len(words[3]) > LONGEST_NAME:
        return outcome.refuse(NAME_NOT_USABLE)
    host.initiator.update(name=words[3], login=login)
    return outcome.say(26370)


def show_initiator(host, words, keyboard):
    return Outcome().row(26369, host.initiator["name"])


def known_target(function, name):
    return next((target for target in function["targets"] if target["name"] == name), None)


def log_in(host, words, keyboard):
    outcome = Outcome().say(28691)
    if not is_ip(words[6]):
        return outcome.reject(28673)
    name, portal = words[5].strip(" "), {"address": words[6], "port": DEFAULT_PORT}
    if len(words) > 7:
        if is_port_number(words[7]):
            portal["port"] = words[7]
        else:
            outcome.say(28684)
    function = host.function("iscsi", words[2])
    listed = [target["name"].strip(" ") for target in function["targets"]] if function else []
    is_confirmed = name not in listed
    if is_confirmed:
        outcome.row(24591, "")
        if keyboard.line()[:1] not in ("y", "Y"):
            return outcome.reject(24592)
    login = read_login(words[7:], keyboard, outcome)
    if not function:
        return outcome.refuse(NO_ISCSI)
    refusals = [NO_REPLY] if not host.answers_at(name, portal) else [
        *refusals_of_chap(host.network[name].get("chap"), login), *refusals_of_sessions(host, function, name, portal, login)]
    if refusals:
        return outcome.refuse(*refusals)
    open_session(host, function, name, portal, login)
    if is_confirmed:
        function["targets"].append({"name": name, "portal": dict(portal), "discovery": "Static"})
    return outcome.say(24593)


def refusals_of_chap(wanted, login):
    """Why a target does not let the login in; where there are several reasons, any of them may be told."""
    if not wanted:
        return
    wants_mutual, offered = bool(wanted.get("initiatorName")), login["authentication"]
    if offered == "None":
        yield WANTS_CHAP
    if wants_mutual and offered != "Mutual CHAP":
        yield WANTS_MUTUAL
    if not wants_mutual and offered == "Mutual CHAP":
        yield NO_MUTUAL
    sides = {"None": (), "One-way CHAP": ("target",), "Mutual CHAP": ("target", "initiator")}[offered]
    for side in sides if wants_mutual else sides[:1]:
        if login[f"{side}ChapName"] != wanted[f"{side}Name"]:
            yield UNKNOWN_NAMES[side]
        if login[f"{side}Secret"] != wanted[f"{side}Secret"]:
            yield WRONG_SECRETS[side]


def refusals_of_sessions(host, function, name, portal, login):
    """Who wants to be the only one of an initiator suffers no other session with the target."""
    own = host.initiator["name"]
    for session in sessions_with(function, name):
        if (session["initiatorName"] or own) == own and "No" in (login["multipath"], session["multipath"]):
            yield REPEATED if session["portal"] == portal else ELSEWHERE
    if next_session(function) > HIGHEST_SESSION:
        yield NO_NUMBER_LEFT


def next_session(function):
    return max([function["lastSessionId"], *(session["id"] for session in function["sessions"])]) + 1


def open_session(host, function, name, portal, login):
    function["lastSessionId"] = next_session(function)
    session = {name: login[name] for name in login if "Secret" not in name}
    function["sessions"].append({"id": function["lastSessionId"], "target": name, "portal": dict(portal),
                                 "initiatorName": host.initiator["name"], **session, "immediateData": "No"})


def log_out(host, words, keyboard):
    outcome = Outcome()
    if len(words) > 6 and not is_session_list(words[6]):
        outcome.refusals = frozenset(["Invalid session IDs"])
        return outcome.row(28689, words[6])
    ids = sessions_of(words[6]) if len(words) > 6 else ["0"]
    outcome.say(28691)
    function = host.function("iscsi", words[2])
    if not function:
        return outcome.refuse(NO_ISCSI)
    name, sessions = words[5], sessions_with(function, words[5])
    ended = [session for session in sessions if ids == ["0"] or str(session["id"]) in ids]
    refusals = [] if known_target(function, name) else [UNKNOWN_TARGET]
    refusals += [] if sessions else [NO_SESSION]
    refusals += [NO_SUCH_NUMBER] if ids != ["0"] and len(ended) < len(set(ids)) else []
    if refusals:
        return outcome.refuse(*refusals)
    function["sessions"] = [session for session in function["sessions"] if session not in ended]
    forget_unreached(host, function, name)
    return outcome.say(24639)


def forget_unreached(host, function, name):
    """A target whose portal was removed needs another way: a known portal, or a session that is left."""
    target, known = known_target(function, name), map(where, function["portals"])
    if target and target["portal"] not in known and not stays_without(host, function, target, target["portal"]):
        function["targets"].remove(target)


def remove_target(host, words, keyboard):
    outcome = Outcome()
    function = host.function("iscsi", words[2])
    if not function:
        return outcome.refuse(NO_ISCSI)
    target = known_target(function, words[5])
    if not target:
        return outcome.refuse(UNKNOWN_TARGET)
    if sessions_with(function, words[5]):
        return outcome.refuse(HAS_SESSION)
    function["targets"].remove(target)
    return outcome.say(24594)


def list_targets(host, words, keyboard):
    is_active = words[4] == "-listactive"
    outcome = Outcome().say(28691)
    function = host.function("iscsi", words[2])
    if not function:
        return outcome.say(24581 if is_active else 24579).refuse(NO_ISCSI)
    rule = "-" * 96
    outcome.say(24580 if is_active else 24577, rule, 24578, rule)
    rows = [f"{state_of(function, target)} {target['discovery']} {target['name']}" for target in function["targets"]
            if not is_active or sessions_with(function, target["name"])]
    return outcome.say(*rows or [24645]).say(rule)


def state_of(function, target):
    return "Connected" if sessions_with(function, target["name"]) else "Not connected"


def show_target(host, words, keyboard):
    outcome = Outcome().say(28691)
    function = host.function("iscsi", words[2])
    target = function and known_target(function, words[5])
    if not target:
        return outcome.say(24590).refuse(UNKNOWN_TARGET if function else NO_ISCSI)
    outcome.title(24582).row(24583, target["name"])
    outcome.row(24584, host.network.get(target["name"], {}).get("alias", "")).row(24585, state_of(function, target))
    portal = portal_through(function, target)
    outcome.row(24586, portal["address"]).row(24587, portal["port"]).row(24588, None)
    return outcome.row(24589, target["discovery"]).ends_a_table()


SESSION_ROWS = {24612: "authentication", 24613: "targetChapName", 24614: "initiatorChapName", 24615: "headerDigest",
                24616: "dataDigest", 24617: "multipath", 24620: "immediateData"}


def show_session(host, words, keyboard):
    outcome = Outcome()
    function = host.function("iscsi", words[2])
    if not function:
        return outcome.say(frozenset(["status - 36870"])).say(24638).refuse(NO_ISCSI)
    sessions = sessions_with(function, words[5])
    session = next((item for item in sessions if str(item["id"]) == words[6]), None)
    if not session:
        return outcome.say(24638).refuse(NO_SUCH_NUMBER, *([] if sessions else [NO_SESSION, UNKNOWN_TARGET]))
    told = {24596: session["target"], 24597: words[6], 24604: session["portal"]["address"],
            24605: session["portal"]["port"], 24606: session["initiatorName"] or host.initiator["name"],
            **{label: session[name] for label, name in SESSION_ROWS.items()}}
    outcome.title(24595)
    for label in (*range(24596, 24623), *range(24624, 24638)):
        outcome.row(label, told.get(label))
    return outcome.ends_a_table()
