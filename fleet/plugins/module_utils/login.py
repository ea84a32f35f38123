"""How an initiator logs in: the options, what a host tells of them, and the words and answers of a command."""

from .command import Secret
from .failure import Failure
from .options import SECRET_OPTIONS

# The fragment `login` documents them.
LOGIN_OPTIONS = dict(
    SECRET_OPTIONS,
    multipath={"type": "bool"},
    header_digest={"type": "bool"},
    data_digest={"type": "bool"},
    authentication={"type": "str", "choices": ["none", "one_way_chap", "mutual_chap"]},
    target_chap_name={"type": "str"},
    target_chap_secret={"type": "str", "no_log": True},
    initiator_chap_name={"type": "str"},
    initiator_chap_secret={"type": "str", "no_log": True},
)
# Of modules for which there is no authentication that stays.
LOGIN_RULES = {"required_by": {name: ["authentication"] for name in LOGIN_OPTIONS if "_chap_" in name}}

# What is asked for by the authentication: the option, the number of the question, and the member of a host.
TARGET_SIDE = [("target_chap_name", 28692, "targetChapName"), ("target_chap_secret", 28693, None)]
INITIATOR_SIDE = [("initiator_chap_name", 28694, "initiatorChapName"), ("initiator_chap_secret", 28695, None)]
QUESTIONS = {"none": [], "one_way_chap": TARGET_SIDE, "mutual_chap": TARGET_SIDE + INITIATOR_SIDE}
AUTHENTICATION_WORDS = {"none": [], "one_way_chap": ["-onewaychap"], "mutual_chap": ["-mutualchap"]}
# What hosts call them.
AUTHENTICATION_TOLD = {"none": "None", "one_way_chap": "One-way CHAP", "mutual_chap": "Mutual CHAP"}
# A member of a host, its text when the option is true and when it is false, the word of a command, and when it is said.
SWITCHES = {
    "multipath": ("multipath", "Yes", "No", "-mp", False),
    "header_digest": ("headerDigest", "CRC32C", "No", "-hd", True),
    "data_digest": ("dataDigest", "CRC32C", "No", "-dd", True),
}
SECRET_BYTES = range(12, 17)


class Login:
    """How to log in, by the options of a module.

    stays: the options that are taken from a host where they are not given, as `options_told` makes them.
    """

    def __init__(self, options, stays=None):
        given = {name: options[name] for name in LOGIN_OPTIONS if options[name] is not None}
        self._given = given
        self._all = dict({"multipath": True, "authentication": "none"}, **dict(stays or {}, **given))
        self._questions = QUESTIONS[self._all["authentication"]]
        for name, _, _ in self._questions:
            _check_line(name, self._all.get(name, ""), "secret" in name)

    def agrees(self, told):
        """Whether what a host tells is what the options say. What is not given, and what is not told, agrees."""
        return all(told.get(member, text) == text for member, text in self._members())

    def sends_secrets(self):
        """Whether secrets are to be sent even where nothing differs."""
        return self._given["update_secret"] == "always" and any(name in self._given for name, _, _ in self._questions
                                                                if "secret" in name)

    def words(self):
        """The login options of a command line."""
        switches = [word for name, (_, _, _, word, said) in SWITCHES.items() if self._all.get(name, False) is said]
        return switches + AUTHENTICATION_WORDS[self._all["authentication"]]

    def answers(self):
        """The answers to the questions of a command with these words."""
        missing = [name for name, _, _ in self._questions if name not in self._all]
        if missing:
            authentication = AUTHENTICATION_TOLD[self._all["authentication"]]
            raise Failure(f"{missing[0]}: is needed, since {authentication} is set anew with all that belongs to it")
        return {number: Secret(self._all[name]) if "secret" in name else self._all[name]
                for name, number, _ in self._questions}

    def _members(self):
        """What a host has to tell: the members and their texts."""
        for name, (member, true, false, _, _) in SWITCHES.items():
            if name in self._given:
                yield member, true if self._given[name] else false
        if "authentication" in self._given:
            yield "authentication", AUTHENTICATION_TOLD[self._given["authentication"]]
        for name, _, member in self._questions:
            if member and name in self._given:
                yield member, self._given[name]


def options_told(told):
    """The options that say what a host tells, for `stays`."""
    options = {name: told[member] == true for name, (member, true, _, _, _) in SWITCHES.items() if member in told}
    options.update((name, key) for name, key in (
        ("authentication", next((key for key, text in AUTHENTICATION_TOLD.items()
                                 if text == told.get("authentication")), None)),
        ("target_chap_name", told.get("targetChapName")),
        ("initiator_chap_name", told.get("initiatorChapName"))) if key)
    return options


def _check_line(name, text, is_secret):
    if text and not text.isprintable():
        raise Failure(f"{name}: has a character that cannot be typed")
    if is_secret and text and len(text.encode()) not in SECRET_BYTES:
        raise Failure(f"{name}: a CHAP secret has {SECRET_BYTES[0]} to {SECRET_BYTES[-1]} characters")
