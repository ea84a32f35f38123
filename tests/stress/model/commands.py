"""The forms of the modelled commands: which words make which one, and what serves it."""

from model import addresses, portals, targets, virtual_ports
from model.outcome import Keyboard, Outcome

UNKNOWN, TOO_SHORT, RESTRICTED = 28674, 28675, 261
# By the words that make a command: the fewest words that it needs, what is said of fewer, and what serves it.
HOST_FORMS = {
    ("-setinitiator",): (4, TOO_SHORT, targets.set_initiator),
    ("-getinitiator",): (3, UNKNOWN, targets.show_initiator),
}
FORMS = {
    ("-iscsi", "-modifytcpip", "-dhcp"): (5, UNKNOWN, addresses.iscsi_dhcp),
    ("-iscsi", "-modifytcpip", "-static"): (8, TOO_SHORT, addresses.iscsi_static),
    ("-iscsi", "-portinfo"): (4, UNKNOWN, addresses.iscsi_settings),
    ("-iscsi", "-portal", "-add"): (6, TOO_SHORT, portals.add_portal),
    ("-iscsi", "-portal", "-remove"): (6, TOO_SHORT, portals.remove_portal),
    ("-iscsi", "-portal", "-listall"): (5, UNKNOWN, portals.list_portals),
    ("-iscsi", "-target", "-login"): (7, TOO_SHORT, targets.log_in),
    ("-iscsi", "-target", "-logout"): (6, TOO_SHORT, targets.log_out),
    ("-iscsi", "-target", "-remove"): (6, TOO_SHORT, targets.remove_target),
    ("-iscsi", "-target", "-listall"): (5, UNKNOWN, targets.list_targets),
    ("-iscsi", "-target", "-listactive"): (5, UNKNOWN, targets.list_targets),
    ("-iscsi", "-target", "-getinfo"): (6, TOO_SHORT, targets.show_target),
    ("-iscsi", "-target", "-sessioninfo"): (6, TOO_SHORT, targets.show_session),
    ("-ethernet", "-modifytcpip", "-dhcp"): (6, UNKNOWN, addresses.ethernet_dhcp),
    ("-ethernet", "-modifytcpip", "-static"): (6, UNKNOWN, addresses.ethernet_static),
    ("-ethernet", "-gettcpip"): (4, UNKNOWN, addresses.ethernet_settings),
    ("-fcoe", "-createvirtualport"): (5, UNKNOWN, virtual_ports.create),
    ("-fcoe", "-deletevirtualport"): (5, UNKNOWN, virtual_ports.delete),
    ("-fcoe", "-getvirtualportinfo"): (4, UNKNOWN, virtual_ports.list_ports),
    ("-fcoe", "-getvirtualporttarget"): (5, UNKNOWN, virtual_ports.list_targets),
    ("-fcoe", "-setfip"): (5, UNKNOWN, virtual_ports.set_fip),
    ("-fcoe", "-getfip"): (4, UNKNOWN, virtual_ports.get_fip),
}
# What an adapter in the restricted state refuses.
RESTRICTING = (addresses.ethernet_dhcp, addresses.ethernet_static, virtual_ports.create, virtual_ports.delete,
               virtual_ports.set_fip)
REASONS = (*addresses.REASONS, *portals.REASONS, *targets.REASONS, *virtual_ports.REASONS)
RESTART = ("restart",)  # no command of the program: the host's restart


def form_of(words):
    """The form that these words begin, with the program's name in front, and its key; nothing for unknown words."""
    family = words[1] if len(words) > 1 else ""
    if family == "-iscsi" and tuple(words[2:3]) in HOST_FORMS:
        return tuple(words[1:3]), HOST_FORMS[tuple(words[2:3])]
    second = words[5:6] if family == "-ethernet" else words[4:5]
    keys = ((family, *words[3:4]), (family, *words[3:4], *second))
    found = next((key for key in keys if key in FORMS), None)
    return (found, FORMS[found]) if found else (None, None)


def serve(host, arguments, lines=()):
    """What a command prints, and what has to be typed for that; the host changes with it."""
    keyboard, words = Keyboard(lines), ["tavrocli", *arguments]
    if tuple(arguments) == RESTART:
        addresses.restart(host)
        return Outcome(), keyboard.typed
    _, form = form_of(words)
    if not form:
        return Outcome().reject(UNKNOWN), keyboard.typed
    fewest, trouble, serving = form
    if serving is virtual_ports.get_fip and len(words) != fewest:
        trouble, fewest = UNKNOWN, len(words) + 1
    if len(words) < fewest:
        return Outcome().reject(trouble), keyboard.typed
    if host.is_restricted and serving in RESTRICTING:
        return Outcome().reject(RESTRICTED), keyboard.typed
    return serving(host, words, keyboard), keyboard.typed
