"""A host as a host file tells it (`tavrohost schema host`)."""

from .failure import Failure

# How the parts of a function are called, by the member that tells its kind.
KINDS = {"ethernet": "Ethernet", "iscsi": "iSCSI", "fcoe": "FCoE"}


def normalised(identifier):
    """A MAC or WWN in the form in which two of them can be compared."""
    return identifier.replace("-", "").replace(":", "").lower()


class Function:
    """A function of a port.

    identifier: the MAC, of an FCoE function the port WWN, spelled as the host spells it; commands are given this one.
    part: what the host file tells of the kind ("tcpIp", "storage", ... see EthernetPart, IscsiPart and FcoePart).
    port, adapter: where it is, as the host file has them.
    """

    def __init__(self, kind, entry, port, adapter):
        self.kind = kind
        self.part = entry[kind]
        self.identifier = self.part["portWwn"] if kind == "fcoe" else entry["mac"]
        self.mac = entry["mac"]
        self.port = port
        self.adapter = adapter

    def __str__(self):
        return f"{KINDS[self.kind]} {self.identifier}"

    def is_named(self, identifier):
        """Whether a MAC or WWN, however it is written, is that of the function."""
        return normalised(identifier) in (normalised(self.identifier), normalised(self.mac))


class Host:
    """A host file's content (`document`), and what is found in it."""

    def __init__(self, document):
        self.document = document
        self.functions = [
            Function(kind, entry, port, adapter)
            for adapter in document["adapters"]
            for port in adapter["ports"]
            for entry in port["functions"]
            for kind in KINDS if kind in entry
        ]

    def function(self, kind, identifier):
        """The function of a kind (a key of KINDS) with this MAC or, of FCoE, with this port WWN. Fails without one."""
        functions = [function for function in self.functions if function.kind == kind]
        for function in functions:
            if normalised(function.identifier) == normalised(identifier):
                return function
        raise _not_found(f"{KINDS[kind]} function", identifier, functions)

    def any_function(self, identifier):
        """The first function with this MAC or port WWN, of any kind. Fails without one."""
        for function in self.functions:
            if function.is_named(identifier):
                return function
        raise _not_found("function", identifier, self.functions)

    def answer(self, operation, request):
        """What the library answered when it was asked for an operation (its number) of a port or, with an empty text,
        of the host: the record by position, or None."""
        for answer in self.document.get("captured", {}).get("answers", []):
            if (answer.get("operation") == operation and answer.get("status", 0) == 0
                    and normalised(answer.get("request", "")) == normalised(request)):
                return answer.get("output")
        return None


def _not_found(what, identifier, functions):
    known = ", ".join(str(function) for function in functions) or "none"
    return Failure(f"The host has no {what} {identifier}; there are: {known}")
