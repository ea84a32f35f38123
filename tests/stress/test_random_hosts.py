"""Random hosts and random sequences of commands: after each of them the program has printed what a second, simple model of
its promises tells, and the listing commands and the host file show the state that the model has."""

import collections
import copy
import json
import random
import shlex

import catalogues
import pytest

from limits import run_within
from model import commands, outcome
from model.host import Host, read_state
from model.outcome import FILLER, first_difference, prints
from model.random_commands import make_step
from model.random_hosts import make_host
from program import DEFAULT_LOCALE

# How many sequences are in each of ten parts, and how many steps in each. Of a share of the parts that share of their
# sequences is run: with a tenth, a hundredth.
PARTS, LENGTHS = range(10), {"native": (200, 30), "sanitize": (10, 30), "windows": (5, 10)}
LAST_LISTINGS = 2  # of all things at the end of a sequence, for each of its steps
MOST_REPLAYS = 150  # while the shortest sequence that differs is searched for
SPARE_ANSWERS = [FILLER] * 12
# The listing commands of a function, by its kind.
LISTINGS = {
    "ethernet": [["-gettcpip"]],
    "iscsi": [["-portinfo"], ["-portal", "-listall"], ["-target", "-listall"], ["-target", "-listactive"]],
    "fcoe": [["-getvirtualportinfo"], ["-getfip"]],
}
MOST_TOUCHED = {  # of these listings the ones that a command is most likely to change
    "-modifytcpip": [0], "-portal": [1, 2], "-target": [2, 3], "-createvirtualport": [0], "-deletevirtualport": [0],
    "-setfip": [1],
}


class Difference(Exception):
    """The program and the model are not of one mind."""


class Play:
    """One host file, and the model of it beside the program."""

    def __init__(self, sandbox, file, figures):
        self.sandbox, self.figures = sandbox, figures
        self.model = Host(copy.deepcopy(file))
        sandbox.host.write_text(json.dumps(file, ensure_ascii=False), encoding="utf-8")

    def run(self, step):
        """Runs a command on both and compares what is printed, why it was refused, and the host file."""
        expected, typed = commands.serve(self.model, step.arguments, step.lines)
        if step.arguments == commands.RESTART:
            self.sandbox.restart_host()
            self.figures["commands"]["the host's restart"] += 1
        else:
            lines = self.print_lines(step.arguments, typed, expected.traced)
            self.expect(lines, expected.lines)
            self.count(step, expected, self.reason_of(expected, lines))
        state = read_state(json.loads(self.sandbox.host.read_text(encoding="utf-8")))
        if state != self.model.state:
            raise Difference("\n".join(differences(state, self.model.state)))

    def count(self, step, expected, reason):
        key, _ = commands.form_of(["", *step.arguments])
        self.figures["commands"][" ".join(key or ["no command"])] += 1
        if expected.refusals:
            self.figures["refusals"][reason] += 1

    def reason_of(self, expected, lines):
        """Why a command was refused: the one of the expected reasons that was told, on the screen or in the trace."""
        if not expected.traced:
            told = [line.removeprefix("Message: ").partition(" : ")[0] for line in lines]
            return next((line for line in told if line in expected.refusals), "")
        calls = [call for call in self.sandbox.calls() if call.get("operation") == expected.traced]
        messages = [call.get("error", {}).get("message", "nothing") for call in calls]
        if len(messages) != 1 or messages[0] not in expected.refusals:
            raise Difference(f"refused because of {messages}, expected is one of {sorted(expected.refusals)}")
        return messages[0]

    def print_lines(self, arguments, typed=(), is_traced=False):
        self.sandbox.trace.unlink(missing_ok=True)
        trace = {"TAVROSIM_TRACE_OUTPUTS": "1"} if is_traced else {"TAVROSIM_TRACE": None}
        keys = self.sandbox.platform.encode("".join(f"{line}\n" for line in (*typed, *SPARE_ANSWERS)), DEFAULT_LOCALE)
        result = run_within(self.sandbox, self.sandbox.command(arguments), keys, env=trace)
        if (result.exit_code, result.errors) != (0, b""):
            raise Difference(f"exit code {result.exit_code}, standard error {result.errors!r}")
        return prints(result.output.decode("latin-1").splitlines())

    def expect(self, lines, expected):
        difference = first_difference(lines, expected)
        if difference:
            raise Difference(difference)

    def read_back(self, listings):
        """Compares what listing commands show."""
        for arguments in listings:
            expected, _ = commands.serve(self.model, arguments)
            try:
                self.expect(self.print_lines(arguments), expected.lines)
            except Difference as difference:
                raise Difference(f"{shlex.join(arguments)}: {difference}") from None
            self.figures["listings"] += 1

    def listings_of(self, function, places=None):
        option = f"-{function['kind']}"
        forms = LISTINGS[function["kind"]]
        return [[option, function["id"], *form] for place, form in enumerate(forms) if places is None or place in places]

    def details_of(self, function):
        """The commands that show one target, session or virtual port each."""
        for target in function.get("targets", []):
            yield ["-iscsi", function["id"], "-target", "-getinfo", target["name"]]
        for session in function.get("sessions", []):
            yield ["-iscsi", function["id"], "-target", "-sessioninfo", session["target"], str(session["id"])]
        for port in function.get("virtualPorts", []):
            yield ["-fcoe", function["id"], "-getvirtualporttarget", port["portWwn"]]

    def touched(self, step, chance):
        """The listings of what a step was about, and one of anything else."""
        words = step.arguments
        kind = words[0].lstrip("-") if words else ""
        function = self.model.function(kind, words[1]) if len(words) > 2 else None
        listings = self.listings_of(function, MOST_TOUCHED.get(words[2], [0])) if function else []
        if function:
            listings += [item for item in self.details_of(function) if item[-1] in words[4:] or item[-2] in words[4:]][:2]
        if words[1:2] == ("-setinitiator",):
            listings.append(["-iscsi", "-getinitiator"])
        others = [item for other in self.model.functions for item in (*self.listings_of(other), *self.details_of(other))]
        return listings + ([chance.choice(others)] if others else [])

    def everything(self):
        return [item for function in self.model.functions
                for item in (*self.listings_of(function), *self.details_of(function))]


def differences(actual, expected, place="host file"):
    """Where two JSON values are not the same."""
    if isinstance(actual, dict) and isinstance(expected, dict) and actual.keys() == expected.keys():
        pairs = [(f"{place}.{name}", actual[name], expected[name]) for name in actual]
    elif isinstance(actual, list) and isinstance(expected, list) and len(actual) == len(expected):
        pairs = [(f"{place}[{number}]", *pair) for number, pair in enumerate(zip(actual, expected))]
    else:
        return [] if actual == expected else [f"{place}: it has {actual!r}, expected is {expected!r}"]
    return [found for name, one, other in pairs for found in differences(one, other, name)]


def new_figures():
    return {"commands": collections.Counter(), "refusals": collections.Counter(), "listings": 0}


def play(sandbox, file, count, chance, figures):
    """Makes so many steps up as it goes; returns them, and the difference that ended them or None."""
    game, steps = Play(sandbox, file, figures), []
    try:
        for _ in range(count):
            steps.append(make_step(chance, game.model))
            game.run(steps[-1])
            game.read_back(game.touched(steps[-1], chance))
        everything = game.everything()
        game.read_back(chance.sample(everything, min(len(everything), LAST_LISTINGS * count)))
    except Difference as difference:
        return steps, str(difference)
    return steps, None


def replay(sandbox, file, steps):
    """The difference that given steps meet, all listings read after each; None for none."""
    game = Play(sandbox, file, new_figures())
    try:
        game.read_back(game.everything())
        for step in steps:
            game.run(step)
        game.read_back(game.everything())
    except Difference as difference:
        return str(difference)
    return None


def shortened(sandbox, file, steps):
    """The steps without those that the difference does not need, and that difference."""
    left = MOST_REPLAYS
    size = max(len(steps) // 2, 1)
    difference = replay(sandbox, file, steps)
    while difference and size and left > 0:
        for start in range(len(steps) - size, -1, -size):
            fewer = steps[:start] + steps[start + size:]
            found = replay(sandbox, file, fewer)
            left -= 1
            if found:
                steps, difference = fewer, found
        size //= 2
    return steps, difference


def told(name, file, steps, difference):
    lines = [f"{name}: {difference}", "", "Host:", json.dumps(file), "", "Steps:"]
    for step in steps:
        typed = f"  typed: {step.lines}" if step.lines else ""
        lines.append(shlex.join(step.arguments) + typed)
    return "\n".join(lines)


@pytest.mark.parametrize("part", PARTS)
def test_each_step_does_what_is_promised(sandbox, platform, part, chance, scaled, record_property):
    sandbox.write_script(None)
    sequences, count = LENGTHS[platform.name]
    figures, sequences = new_figures(), scaled(sequences)
    for number in range(sequences):
        own = random.Random(chance.random())
        file = make_host(own)
        steps, difference = play(sandbox, file, count, own, figures)
        if difference:
            fewer, shortest = shortened(sandbox, file, steps)
            pytest.fail(told(f"sequence {number}", file, fewer or steps, shortest or difference), pytrace=False)
    record_property("sequences", sequences)
    record_property("listings", figures["listings"])
    for kind in ("commands", "refusals"):
        for name, count in figures[kind].items():
            record_property(f"{kind}: {name}", count)


def test_the_reasons_of_the_model_stand_in_the_tables():
    texts = {row[0] for row in catalogues.read_error_texts()}
    assert [text for text in commands.REASONS if text not in texts] == []
    assert outcome.TEXTS[28689] == "Invalid session IDs"
