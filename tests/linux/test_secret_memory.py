"""What is left of a secret in memory when the program and the library for Linux hosts have ended: nothing, whether it was
typed or came out of the library's state. Freed memory is kept as it is, and searched as well."""

import pytest

from iscsi_servers import INITIATOR, NAME, PORT, Target
from machine import ROOT
from test_iscsi_targets import ACCEPTED, NOT_PROVEN, REFUSED

# All characters differ; no eight of them follow one another in any table. A short text lies within the object that a long
# one only refers to.
SECRETS = ["Zk7!pwQm4?rXsU9y", "Zk7!pwQm4?rX"]
OTHER = "another secret"
LIBRARIES = ROOT / "build" / "native" / "secret_memory"

pytestmark = pytest.mark.parametrize("machine", ["native"], indirect=True)


class Watched:
    """The program, of whose memory is reported what it holds of one secret."""

    def __init__(self, machine, secret):
        self.machine = machine
        self.report = machine.folder / "report"
        self.environment = {
            "TAVRO_SECRET": bytes(255 - byte for byte in secret.encode()).hex(),
            "TAVRO_SECRET_REPORT": str(self.report),
            "LD_BIND_NOW": "1",
            "LD_PRELOAD": f"{LIBRARIES / 'search_at_end.so'}:{LIBRARIES / 'keep_freed.so'}",
        }

    def __call__(self, *arguments, typed=()):
        """What the program shows; it must leave nothing."""
        self.report.unlink(missing_ok=True)
        screen = self.machine.cli(
            "-iscsi", *arguments, typed="".join(f"{text}\n" for text in typed), environment=self.environment)
        *found, size = self.report.read_text(encoding="utf-8").splitlines()
        assert found == [], arguments
        assert size.startswith("searched ") and int(size.split()[1]) > 100_000
        return screen


@pytest.mark.parametrize("secret", SECRETS, ids=["long", "short"])
def test_nothing_is_left_of_a_secret(machine, tmp_path, secret):
    port = machine.add_pair()
    target = Target(machine, tmp_path)
    target.add_user("incoming", secret)
    target.add_user("outgoing", OTHER)
    target.add("chap", 1 << 20, users=["incoming"])
    target.add("mutual", 1 << 20, users=["incoming"], outgoing="outgoing")
    run = Watched(machine, secret)
    place = ["127.0.0.1", PORT]
    one_way, mutual = ("incoming", secret), ("incoming", secret, "outgoing", OTHER)

    def login(name, option, *typed):
        return run(port, "-target", "-login", NAME + name, *place, option, typed=typed)

    assert "was set" in run("-setinitiator", INITIATOR, "-onewaychap", typed=one_way)
    assert INITIATOR in run("-getinitiator")
    assert "was added" in run(port, "-portal", "-add", *place, "-onewaychap", typed=one_way)
    run(port, "-portal", "-add", *place, "-mutualchap", typed=("incoming", OTHER, "own", secret))
    assert ACCEPTED in login("chap", "-onewaychap", *one_way)
    assert ACCEPTED in login("mutual", "-mutualchap", *mutual)
    assert ACCEPTED in login("mutual", "-mutualchap", *mutual)
    assert REFUSED in login("chap", "-onewaychap", "incominh", secret)
    assert NOT_PROVEN in login("mutual", "-mutualchap", "incoming", secret, "outgoinh", OTHER)
    assert NOT_PROVEN in login("mutual", "-mutualchap", "incoming", secret, "outgoing", "a wrong secret")
    assert str(PORT) in run(port, "-portal", "-listall")
    assert NAME + "chap" in run(port, "-target", "-listall")
    assert "VIRTUAL-DISK" in run(port, "-target", "-lunlist", NAME + "chap")
    assert "VIRTUAL-DISK" in run(port, "-target", "-lunlist", NAME + "mutual")
    assert "was removed" in run(port, "-target", "-remove", NAME + "chap")
    assert "was removed" in run(port, "-portal", "-remove", *place)
    assert "was set" in run("-setinitiator", INITIATOR)
    target.stop()
    assert "No service takes connections" in run(port, "-target", "-lunlist", NAME + "mutual")
