"""Entry points that a library lacks, from each look-up of each command on: the command ends as it promises. What it says
then is told by the cases of libraries that lack an entry point from the start."""

import pytest

from damaged_runs import Player, cases_of, players, problems_of
from test_cases import prepare
from test_misbehaving_library import COMMANDS

ENTRY_POINTS = sorted(COMMANDS)
OF_ENDLESS = 100  # so many look-ups of an output without end


class LookUps:
    """A step of a case, as often as one likes with entry points that are missing from a look-up on."""

    def __init__(self, player):
        self.player = player
        self.file = player.sandbox.folder / "look-ups"

    def run(self, number=0, name=""):
        """The run in which this one, or each entry point without a name, is missing from the look-up of that number on;
        and the names that were looked up."""
        self.file.unlink(missing_ok=True)
        run = self.player.run(self.player.environment() | {
            "TAVROSIM_TRACE": None,
            "LD_PRELOAD": str(self.player.sandbox.platform.folder / "programs" / "missing_exports.so"),
            "MISSING_LOOKUPS": str(self.file),
            "MISSING_FROM": str(number) if number else "",
            "MISSING_NAME": name,
        })
        return run, self.file.read_text(encoding="ascii").split()


def look_ups_of(platform, folder, command):
    """The steps of the command in the cases, as far as they make a call in a context of its own, with the names that each
    looks up."""
    met = set()
    for player in players(platform, folder, cases_of(platform, command), command):
        contexts = {call.context() for call in player.calls}
        if not contexts <= met:
            met |= contexts
            look_ups = LookUps(player)
            names = look_ups.run()[1]
            yield look_ups, names if player.step.output_start is None else names[:OF_ENDLESS]


@pytest.mark.platforms("native", "sanitize")
def test_missing_from_a_look_up_on(platform, tmp_path, case_command, part_of, record_property):
    runs = 0
    found = []
    for look_ups, names in look_ups_of(platform, tmp_path, case_command):
        pairs = [(number, missing) for number, name in enumerate(names, 1) for missing in (name, "")]
        for number, missing in part_of(pairs):
            runs += 1
            run, looked_up = look_ups.run(number, missing)
            assert looked_up[:number] == names[:number]
            found += [f"{look_ups.player.step.arguments}: {missing or 'all'} from look-up {number} on: {problem}"
                      for problem in problems_of(run)]
    record_property("runs", runs)
    assert not found, "\n".join(found[:20])


@pytest.mark.platforms("windows")
def test_missing_from_the_start_under_wine(platform, tmp_path, case_command, chance):
    chosen = [case for case in cases_of(platform, case_command) if (case.steps[0].script or {}).get("messages") == "numbers"]
    if chosen:
        case = chance.choice(chosen)
        sandbox = prepare(case, platform, tmp_path / "sandbox")
        sandbox.use_library_without(chance.choice(ENTRY_POINTS))
        player = Player(sandbox, case, case.steps[0])
        assert problems_of(player.run(player.step.env)) == []
