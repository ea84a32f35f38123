"""What completion has to offer, by what the usage screen and the manual tell of the commands, and by the simulator's
own host."""

import re

from host_tool import DEFAULT_HOST

# The commands that the usage screen does not show, as the manual has them.
NOT_ON_THE_SCREEN = """\
-help
-fcoe <portWWN> -getfip
-fcoe <portWWN> -setfip <VLAN ID>
-fcoe <portWWN> -getvirtualportinfo
-fcoe <portWWN> -createvirtualport <WWN>
-fcoe <portWWN> -deletevirtualport <WWN>
-fcoe <portWWN> -getvirtualporttarget <WWN>
-fcoe <portWWN> -getvirtualporttargetlun <WWN>
-ethernet <MAC> -getxml
"""
# Behind these -debug is a word too much, one more WWN, or makes the option not count.
WITHOUT_DEBUG = ("-getfip", "-createvirtualport", "-deletevirtualport", "-pcount", "-timeout")
LOGIN_OPTIONS = {"-mp", "-hd", "-dd", "-onewaychap", "-mutualchap"}
LOGIN = "[login options]"
WORD = re.compile(r"-\w+|\[?<[^>]+>\]?|\[[^\]]+\]")
SAMPLES = {"-iscsi": "02-00-5E-10-00-02", "-fcoe": "10:00:02:00:5E:10:00:04"}  # of the others: the first port's MAC


def ports(kind):
    """The port identifiers of a kind of functions of the simulator's own host."""
    functions = [function for adapter in DEFAULT_HOST["adapters"] for port in adapter["ports"]
                 for function in port["functions"] if kind in function]
    return {function["fcoe"]["portWwn"] if kind == "fcoe" else function["mac"] for function in functions}


def all_macs():
    return {function["mac"] for adapter in DEFAULT_HOST["adapters"] for port in adapter["ports"]
            for function in port["functions"]}


def ports_of(family):
    return ports(family[1:]) if family in ("-iscsi", "-fcoe", "-ethernet") else all_macs()


def forms(usage):
    """The forms of all commands, each as a tuple of words. The usage screen writes words that forms share only once,
    and what follows in the same column."""
    lines = usage.replace("\r", "").split("\n")
    start, end = lines.index("tavrocli -about"), next(i for i, line in enumerate(lines) if line.startswith("* <-mp>"))
    found, above = set(), ""
    for line in filter(None, lines[start:end]):
        indent = len(line) - len(line.lstrip())
        above = above[:indent] + line[indent:]
        found.add(tuple(read_words(above.removeprefix("tavrocli"))))
    assert len(found) == end - start - 2, "a form stands twice on the usage screen"  # there are two empty lines
    return found | {tuple(read_words(line)) for line in NOT_ON_THE_SCREEN.splitlines()}


def read_words(text):
    return [LOGIN if "login option" in word else word for word in WORD.findall(text)]


def wanted_offers(usage):
    """For each beginning of a command line, as a tuple of arguments: the set of all that may be typed next."""
    known = forms(usage)
    wanted = {}
    for form in known:
        for size in range(len(form) + 1):
            longer = [other for other in known if other[:size] == form[:size] and len(other) > size]
            offers = [words_at(other, size) for other in longer] or [words_behind(form)]
            wanted[tuple(typed_for(form, place) for place in range(size))] = set().union(*offers)
    return wanted


def typed_for(form, place):
    word = form[place]
    if word == LOGIN:
        return "-mp"
    if word.startswith("-"):
        return word
    return SAMPLES.get(form[0], "02-00-5E-10-00-00") if place == 1 else "1"


def words_at(form, place):
    word = form[place]
    if word == LOGIN:
        return LOGIN_OPTIONS | {"-debug"}
    if word.startswith("-"):
        return {word}
    return ports_of(form[0]) if place == 1 else set()


def words_behind(form):
    if form[-1] == LOGIN:
        return (LOGIN_OPTIONS | {"-debug"}) - {"-mp"}
    return set() if set(form) & set(WITHOUT_DEBUG) else {"-debug"}
