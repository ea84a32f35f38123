"""Secrets that stand nowhere else, and the search for them."""

import copy
import dataclasses
import json
import string

from host_tool import DEFAULT_HOST

PIECE = 6  # characters of a secret that are found where they stand together
ENCODINGS = ("utf-8", "utf-16-le", "utf-32-le")


class Canaries:
    """Makes secrets, all different, and remembers them."""

    def __init__(self, chance):
        self.chance = chance
        self.made = {}  # by what each stands for

    def in_place_of(self, text):
        """Of the same length; the same for the same text."""
        if text not in self.made:
            letters = string.ascii_letters + string.digits
            self.made[text] = "".join(self.chance.sample(letters, len(text)))
        return self.made[text]

    def found_in(self, content):
        """The canaries of which a piece stands in the bytes: as characters of some encoding, or as hexadecimal digits."""
        return [canary for canary in self.made.values() if any(piece in content for piece in pieces(canary))]


def pieces(secret):
    """What gives a secret away. One that is shorter than a piece is never looked for."""
    for start in range(len(secret) - PIECE + 1):
        piece = secret[start:start + PIECE]
        yield from (piece.encode(encoding) for encoding in ENCODINGS)
        yield from (piece.encode().hex().encode(), piece.encode().hex().upper().encode())


SECRETS = ("targetSecret", "initiatorSecret", "chapSecret")


def host_with_secrets():
    """The simulator's own host, with a secret wherever a host file has room for one; each is told by its place."""
    host = copy.deepcopy(DEFAULT_HOST)
    host["initiator"]["login"] = login("initiator")
    for adapter in host["adapters"]:
        for port in adapter["ports"]:
            for function in port["functions"]:
                if "iscsi" in function:
                    add_secrets(function)
    return host


def login(place):
    return {"authentication": "Mutual CHAP", "targetChapName": "target-user", "targetSecret": f"{place}-target"[:16],
            "initiatorChapName": "initiator-user", "initiatorSecret": f"{place}-initiator"[:16]}


def add_secrets(function):
    place = function["mac"][-5:]
    iscsi = function["iscsi"]
    boot = iscsi.setdefault("boot", {})
    boot["chapSecret"] = f"{place}-bootboot"
    for target in ("firstTarget", "secondTarget"):
        boot.setdefault(target, {})["chapSecret"] = f"{place}-{target}"[:16]
    for portal in iscsi.setdefault("storage", {}).setdefault("portals", [{"address": "198.51.100.77"}]):
        portal["login"] = login(f"{place}-p")


def with_canaries(value, canaries):
    """A JSON value in which each secret is a canary."""
    if isinstance(value, dict):
        return {name: canaries.in_place_of(member) if name in SECRETS else with_canaries(member, canaries)
                for name, member in value.items()}
    return [with_canaries(element, canaries) for element in value] if isinstance(value, list) else value


@dataclasses.dataclass
class Watch:
    """A sandbox in which all that is left of a run is searched."""

    sandbox: object
    canaries: Canaries
    inputs: set  # the files that hold secrets, since a user put them there

    def put_host(self):
        """The host full of secrets, in the host file."""
        host = with_canaries(host_with_secrets(), self.canaries)
        self.sandbox.write_script(None)
        self.sandbox.host.write_text(json.dumps(host, indent=1), encoding="utf-8")
        self.sandbox.host.chmod(0o600)

    def environment(self):
        """The trace holds what it may, and what is temporary lies where it is found."""
        temporary = self.sandbox.folder / "temporary"
        temporary.mkdir(exist_ok=True)
        return {"TAVROSIM_TRACE_SECRETS": None, "TAVROSIM_TRACE_OUTPUTS": "1", "TMPDIR": str(temporary)}

    def check(self, *shown):
        """Nothing that was shown, and no file but the inputs, holds a canary. Returns the names of the files."""
        assert self.canaries.made
        for content in shown:
            assert self.canaries.found_in(content) == [], content
        files = [path for path in self.sandbox.folder.rglob("*") if path.is_file() and path not in self.inputs]
        assert [path.name for path in files if self.canaries.found_in(path.read_bytes())] == []
        return {path.name for path in files}
