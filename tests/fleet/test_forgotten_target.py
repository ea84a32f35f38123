"""A target that is to be absent. No portal reaches that of the first host, which forgets it with its last session. The
second host knows the portal, and refuses to remove the target."""

import pytest
from test_iscsi import DISKS, FORGETTING, PORTAL, document_to_start_from, function_of, target

TASKS = {"absent": target(FORGETTING, DISKS, state="absent")}


class Plays:
    def __init__(self, fleet):
        self.forgetting, self.refusing = fleet.hosts
        document = self.forgetting.read()
        function_of(document, FORGETTING)["storage"].update(portals=[])
        self.forgetting.write(document)
        self.refusing.refuse("The site keeps this.", "RemoveTarget")
        self.rehearsed = fleet.play(TASKS, "--check", "--diff").of_task("absent")
        self.done = fleet.play(TASKS, "--diff").of_task("absent")
        self.again = fleet.play(TASKS, hosts=[self.forgetting]).result(self.forgetting, "absent")


@pytest.fixture(scope="module", name="plays")
def fixture_plays(make_fleet):
    document = document_to_start_from()
    storage = function_of(document, FORGETTING)["storage"]
    storage.update(portals=[PORTAL], sessions=[each for each in storage["sessions"] if each["target"] == DISKS],
                   targets=[each for each in storage["targets"] if each["name"] == DISKS])
    return Plays(make_fleet(2, document))


def test_a_target_that_is_forgotten_with_its_sessions_is_absent(plays):
    name = plays.forgetting.name
    for result in (plays.rehearsed[name], plays.done[name]):
        assert not result["failed"] and result["changed"]
    assert plays.rehearsed[name]["diff"] == plays.done[name]["diff"]
    storage = function_of(plays.forgetting.read(), FORGETTING)["storage"]
    assert (storage["targets"], storage["sessions"]) == ([], [])
    assert not plays.again["failed"] and not plays.again["changed"] and not plays.again["commands"]


def test_a_target_that_is_kept_fails_with_the_hosts_own_reason(plays):
    assert plays.rehearsed[plays.refusing.name]["changed"]
    result = plays.done[plays.refusing.name]
    assert result["failed"] and result["changed"]
    assert result["msg"].endswith(": The site keeps this. (site 7)")
    assert [command["outcome"] for command in result["commands"]] == ["done", "refused"]
