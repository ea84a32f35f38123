"""The questions of `tavrocli -iscsi <MAC> -setbootconfig`, and how options answer them."""

from .addresses import ipv4_address
from .command import Secret
from .failure import Failure
from .switches import SWITCH_ANSWERS, number_within, switch

# What a host calls an option, and the question for it.
SWITCHES = {
    "tcpip_by_dhcp": ("tcpIpByDhcp", 26658),
    "iscsi_by_dhcp": ("parametersByDhcp", 26660),
    "bind_address": ("addressBinding", 26705),
    "target_is_first_disk": ("targetIsFirstDisk", 26707),
    "boot_from_target": ("bootFromTarget", 26708),
}
NUMBERS = {"link_up_delay": ("linkUpDelay", 26663, 60), "busy_retries": ("retryCount", 26702, 99)}
ADDRESSES = {"address": ("address", 26666), "subnet_mask": ("subnetMask", 26667), "gateway": ("gateway", 26668)}
NAMES = {"initiator_name": ("initiatorName", 26669), "chap_name": ("chapName", 26670)}
SECRET_QUESTIONS = (26671, 26690)
# Of a target: what a host calls an option. The questions are others for each.
TARGET_MEMBERS = {"address": "address", "port": "port", "lun": "lun", "name": "name", "chap_name": "chapName"}
TARGETS = {
    "first_target": ("firstTarget", {"used": 26673, "address": 26674, "port": 26675, "lun": 26676, "name": 26677,
                                     "chap_name": 26678, "chap_secret": 26679}),
    "second_target": ("secondTarget", {"used": 26681, "address": 26682, "port": 26684, "lun": 26683, "name": 26685,
                                       "chap_name": 26686, "chap_secret": 26687}),
}
# The question for the secret of a target, again, is the same for both.
TARGET_SECRET_AGAIN = 26693
DEFAULT_PORT = "3260"
NO_ADDRESS = "0.0.0.0"


def wanted_members(options):
    """The members that are given, beside those of targets and secrets."""
    wanted = {member: switch(options[option]) for option, (member, _) in SWITCHES.items()}
    for option, (member, _, most) in NUMBERS.items():
        wanted[member] = _text(number_within(option, options[option], most))
    for option, (member, _) in ADDRESSES.items():
        wanted[member] = options[option] and ipv4_address(option, options[option])
    for option, (member, _) in NAMES.items():
        wanted[member] = _one_line(option, options[option])
    return {member: value for member, value in wanted.items() if value is not None}


def wanted_target(option, given):
    """The members of a target that are given."""
    if given is None:
        return {}
    wanted = {"used": switch(given["used"])}
    if given["used"]:
        wanted.update({member: _text(given[name]) for name, member in TARGET_MEMBERS.items()})
        wanted["address"] = given["address"] and ipv4_address(f"{option}.address", given["address"])
        for name in ("name", "chap_name"):
            _one_line(f"{option}.{name}", given[name])
        for name in ("port", "lun"):
            number_within(f"{option}.{name}", given[name], 2 ** 32 - 1)
    return {member: value for member, value in wanted.items() if value is not None}


def answers_of(options, boot):
    """Answers to all questions but those about targets. boot is as it is to be."""
    answers = {question: SWITCH_ANSWERS.get(boot.get(member), "n") for member, question in SWITCHES.values()}
    answers.update({question: boot.get(member) or "0" for member, question, _ in NUMBERS.values()})
    answers.update({question: boot.get(member) or NO_ADDRESS for member, question in ADDRESSES.values()})
    answers.update({question: boot.get(member, "") for member, question in NAMES.values()})
    if boot.get("tcpIpByDhcp") == "Disabled" and boot.get("address") in (None, "", NO_ADDRESS):
        raise Failure("address: is needed, since the function has none and DHCP is not used")
    secret = _secret("chap_secret", options["chap_secret"], boot.get("chapName"))
    answers.update({question: secret for question in SECRET_QUESTIONS})
    return answers


def target_answers(option, questions, given, target):
    """Answers to the questions about a target that is to be so, and the list of those to the repeated secret."""
    answers = {questions["used"]: SWITCH_ANSWERS.get(target.get("used"), "n")}
    if target.get("used") != "Enabled":
        return answers, []
    if not target.get("address"):
        raise Failure(f"{option}.address: is needed, since the target has none")
    answers.update({questions[name]: target.get(member, "") for name, member in TARGET_MEMBERS.items()})
    answers[questions["port"]] = target.get("port") or DEFAULT_PORT
    secret = _secret(f"{option}.chap_secret", (given or {}).get("chap_secret"), target.get("chapName"))
    answers[questions["chap_secret"]] = secret
    return answers, [secret]


def _secret(option, given, chap_name):
    """The answer for a secret. The command would forget one that is not given, so it has to be, beside a name."""
    if given is None and chap_name:
        raise Failure(f"{option}: is needed, since each change sets the secrets anew, and there is the CHAP name "
                      f"{chap_name}")
    return Secret(_one_line(option, given or "", tell=False))


def _one_line(option, text, tell=True):
    if text is not None and ("\n" in text or "\r" in text or "\0" in text):
        raise Failure(f"{option}: is no single line" + (f": {text!r}" if tell else ""))
    return text


def _text(value):
    return None if value is None else str(value)
