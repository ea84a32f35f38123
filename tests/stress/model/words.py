"""What the words of a command may be, and the questions that login options bring."""

import re

LOGIN = {
    "multipath": "Yes", "headerDigest": "No", "dataDigest": "No", "authentication": "None",
    "targetChapName": "", "targetSecret": "", "initiatorChapName": "", "initiatorSecret": "",
}
SWITCHES = {"-mp": ("multipath", "No"), "-hd": ("headerDigest", "CRC32C"), "-dd": ("dataDigest", "CRC32C")}
METHODS = {"-onewaychap": "One-way CHAP", "-mutualchap": "Mutual CHAP"}
DEFAULT_PORT = "3260"

_H, _DOTTED = "[0-9a-fA-F]{1,4}", "((25[0-5]|(2[0-4]|1{0,1}[0-9]){0,1}[0-9]).){3,3}(25[0-5]|(2[0-4]|1{0,1}[0-9]){0,1}[0-9])"
_GROUPS = [f"({_H}:){{1,{7 - after}}}(:{_H}){{1,{after}}}" for after in range(2, 6)]
IPV6 = re.compile("|".join([
    f"({_H}:){{7}}{_H}", f"({_H}:){{1,7}}:", f"({_H}:){{1,6}}:{_H}", *_GROUPS, f"{_H}:((:{_H}){{1,6}})",
    f":((:{_H}){{1,7}}|:)", f"fe80:(:{_H}){{0,4}}%[0-9a-zA-Z]{{1,}}",
    # Whatever stands between the numbers of the embedded IPv4 address counts as its dot.
    f"::(ffff(:0{{1,4}}){{0,1}}:){{0,1}}{_DOTTED}", f"({_H}:){{1,4}}:{_DOTTED}",
]))


def is_number(text):
    return text.isascii() and text.isdigit()


def octets_of(text):
    """The numbers of an IPv4 address as the program reads it, with dots too many; None for any other text."""
    pieces = [piece for piece in text.split(".") if piece]
    is_address = len(pieces) == 4 and all(is_number(piece) and int(piece) <= 255 for piece in pieces)
    return tuple(map(int, pieces)) if is_address else None


def is_ipv4(text):
    return octets_of(text) is not None


def is_ipv6(text):
    return IPV6.fullmatch(text) is not None


def is_ip(text):
    return is_ipv4(text) or is_ipv6(text)


def is_in_range(text, maximum):
    return is_number(text) and int(text) <= maximum


def is_port_number(text):
    return all("0" <= character <= "9" for character in text)


def is_session_list(text):
    pieces = [piece for piece in text.split(",") if piece]
    return bool(pieces) and all(is_in_range(piece, 99999) for piece in pieces)


def sessions_of(text):
    """The session IDs of a list; what stands behind a comma in front is one text."""
    ids = []
    while "," in text[1:] and text[0] != ",":
        piece, _, text = text.partition(",")
        ids.append(piece)
    return ids + [text] if text else ids


def read_login(words, keyboard, outcome):
    """The login options among the words; what they ask is answered at the keyboard."""
    login = dict(LOGIN)
    for word in words:
        if word in SWITCHES:
            option, value = SWITCHES[word]
            login[option] = value
        elif word in METHODS:
            login["authentication"] = METHODS[word]
            read_credentials(login, "target", 28692, keyboard, outcome)
            if word == "-mutualchap":
                read_credentials(login, "initiator", 28694, keyboard, outcome)
    return login


def read_credentials(login, side, question, keyboard, outcome):
    login[f"{side}ChapName"] = keyboard.line()
    outcome.row(question, "")
    secret = keyboard.line()
    outcome.row(question + 1, "*" * len(secret))
    while not 12 <= len(secret) <= 16:
        secret = keyboard.line()
        outcome.row(28696, "*" * len(secret))
    login[f"{side}Secret"] = secret
