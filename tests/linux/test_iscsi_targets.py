"""Discovery, logins and LUNs against a real target."""

import json
import os
import pathlib
import shutil
import stat

import pytest

from iscsi_servers import INITIATOR, NAME, PORT, Server, Tap, Target, closes_behind
from machine import NOBODY, rows_of

ACCEPTED = "The target accepted the login, but this host keeps no sessions."
REFUSED = "The target does not accept the CHAP names and secrets."
NOT_PROVEN = "The target does not prove who it is with the initiator CHAP name and secret."
UNKNOWN = "There is no such target at this portal."
ONE_WAY = ("incoming", "first-secret-1")
MUTUAL = (*ONE_WAY, "outgoing", "second-secret2")
STATE = pathlib.Path("/var/lib/tavrocli/state.json")


@pytest.fixture
def port(machine):
    """The MAC of a port of a host whose initiator has a name."""
    mac = machine.add_pair()
    machine.cli("-iscsi", "-setinitiator", INITIATOR)
    return mac


@pytest.fixture
def target(machine, tmp_path):
    """Three targets: one that lets anybody in, one that wants CHAP, one that proves itself as well."""
    made = Target(machine, tmp_path)
    made.add_user("incoming", "first-secret-1")
    made.add_user("outgoing", "second-secret2")
    made.add("open", 16 << 20, 100 << 20, 3 << 40)
    made.add("chap", 32 << 20, users=["incoming"])
    made.add("mutual", 64 << 20, users=["incoming"], outgoing="outgoing")
    return made


def add_portal(machine, port, address="127.0.0.1", number=PORT):
    return machine.cli("-iscsi", port, "-portal", "-add", address, number)


def listed_targets(machine, port):
    """Name, discovery and state of each target that is listed."""
    screen = machine.cli("-iscsi", port, "-target", "-listall")
    rows = [line.split("   \t") for line in screen.splitlines() if "   \t" in line]
    return {name: (discovery, state) for state, discovery, name in rows}


def log_in(machine, port, name, *secrets, option="-onewaychap", number=PORT, known=True):
    """Logs in and types the names and secrets; a target that no list has is confirmed first."""
    typed = ("" if known else "y\n") + "".join(f"{text}\n" for text in secrets)
    options = [option] if secrets else []
    return machine.cli("-iscsi", port, "-target", "-login", NAME + name, "127.0.0.1", number, *options, typed=typed)


def luns_of(machine, port, name):
    """The rows of each LUN, by its number."""
    luns = {}
    for label, value in rows_of(machine.cli("-iscsi", port, "-target", "-lunlist", NAME + name)):
        if label == "LUN":
            lun = luns.setdefault(value, {})
        elif luns:
            lun[label] = value
    return luns


def kept_logins():
    interfaces = json.loads(STATE.read_text())["interfaces"]
    return {login["target"]: login for login in interfaces.get("va", {}).get("logins", [])}


def test_a_portal_is_kept_once_it_has_told_its_targets(machine, port, target):
    assert "The target portal was added." in add_portal(machine, port)
    assert f"127.0.0.1 : \t{PORT}" in machine.cli("-iscsi", port, "-portal", "-listall")
    found = ("SendTargets", "Not connected")
    assert listed_targets(machine, port) == {NAME + name: found for name in ("chap", "mutual", "open")}
    assert listed_targets(machine, machine.mac("vb")) == {}, "each interface has portals of its own"
    told = machine.rows("-iscsi", port, "-target", "-getinfo", NAME + "open")
    assert (told["Portal Address"], told["Portal Port Number"], told["Portal Group"]) == ("127.0.0.1", str(PORT), "1")
    assert "The target portal was removed." in machine.cli("-iscsi", port, "-portal", "-remove", "127.0.0.1", PORT)
    assert listed_targets(machine, port) == {}
    again = machine.cli("-iscsi", port, "-portal", "-remove", "127.0.0.1", PORT)
    assert "The initiator does not know this portal." in again


def test_a_portal_of_ipv6_is_told_as_it_was_typed(machine, port, target):
    target.do("--op", "new", "--mode", "portal", "--param", "portal=[::1]:3271")
    assert "The target portal was added." in add_portal(machine, port, "0:0:0:0:0:0:0:1", 3271)
    assert "The target portal was added." in add_portal(machine, port, "::1", 3271)
    portals = machine.cli("-iscsi", port, "-portal", "-listall")
    assert "0:0:0:0:0:0:0:1 : \t3271" in portals and portals.count(" : \t") == 1
    assert len(listed_targets(machine, port)) == 3
    assert set(luns_of(machine, port, "open")) == {"0", "1", "2", "3"}


def test_nothing_is_kept_of_a_portal_where_nothing_answers(machine, port):
    screen = add_portal(machine, port)
    assert "No service takes connections at this portal." in screen and "Connection refused" in screen
    assert ":\t" not in machine.cli("-iscsi", port, "-portal", "-listall")


def test_a_portal_that_goes_away_does_not_hide_the_others(machine, port, target, tmp_path):
    other = Target(machine, tmp_path, f"127.0.0.1:{PORT + 1}", control=8)
    other.add("elsewhere", 1 << 20)
    add_portal(machine, port)
    add_portal(machine, port, number=PORT + 1)
    assert len(listed_targets(machine, port)) == 4
    target.stop()
    assert set(listed_targets(machine, port)) == {NAME + "elsewhere"}
    other.stop()
    screen = machine.cli("-iscsi", port, "-target", "-listall")
    assert "No service takes connections at this portal." in screen and f"127.0.0.1:{PORT}" in screen


def test_the_luns_are_told_as_the_target_made_them(machine, port, target):
    add_portal(machine, port)
    luns = luns_of(machine, port, "open")
    assert set(luns) == {"0", "1", "2", "3"}
    assert luns["0"]["Capacity"] == luns["0"]["Block Size"] == "", "the controller has no blocks"
    assert [luns[lun]["Capacity"] for lun in "123"] == ["16 MB", "100 MB", "3 TB"]
    serials = target.serial_numbers()
    for lun, told in luns.items():
        assert told["Vendor"] == "IET"
        assert told["LUN Serial Number"] == serials[NAME + "open", lun]
        assert told["Connection State"] == "Not connected"
    assert {luns[lun]["Product"] for lun in "123"} == {"VIRTUAL-DISK"}
    assert {luns[lun]["Block Size"] for lun in "123"} == {"512"}
    unknown = machine.cli("-iscsi", port, "-target", "-lunlist", NAME + "none")
    assert "The initiator does not know this target." in unknown


@pytest.mark.parametrize("name, option, secrets", [
    ("open", "-onewaychap", ()),
    ("chap", "-onewaychap", ONE_WAY),
    ("mutual", "-onewaychap", ONE_WAY),
    ("mutual", "-mutualchap", MUTUAL),
], ids=["nobody", "one way", "one way of both", "mutual"])
def test_an_accepted_login_is_kept_for_the_luns(machine, port, target, name, option, secrets):
    add_portal(machine, port)
    if secrets:
        assert REFUSED in machine.cli("-iscsi", port, "-target", "-lunlist", NAME + name)
    assert ACCEPTED in log_in(machine, port, name, *secrets, option=option)
    assert "1" in luns_of(machine, port, name)
    assert set(kept_logins()) == {NAME + name}
    assert listed_targets(machine, port)[NAME + name] == ("SendTargets", "Not connected"), "no session is kept"
    assert " : " not in target.do("--op", "show", "--mode", "conn", "--tid", 1), "the target has no connection either"
    assert "The target was removed." in machine.cli("-iscsi", port, "-target", "-remove", NAME + name)
    assert kept_logins() == {}
    assert "No login at this target is kept." in machine.cli("-iscsi", port, "-target", "-remove", NAME + name)


@pytest.mark.parametrize("name, option, secrets, reason", [
    ("chap", "-onewaychap", (), REFUSED),
    ("chap", "-onewaychap", ("incoming", "other-secret-1"), REFUSED),
    ("chap", "-onewaychap", ("incominh", "first-secret-1"), REFUSED),
    ("mutual", "-mutualchap", (*ONE_WAY, "outgoing", "other-secret-2"), NOT_PROVEN),
    ("mutual", "-mutualchap", (*ONE_WAY, "outgoinh", "second-secret2"), NOT_PROVEN),
    ("open", "-mutualchap", MUTUAL, NOT_PROVEN),
], ids=["no secret", "wrong secret", "wrong name", "wrong proof", "wrong prover", "no proof"])
def test_a_refused_login_is_not_kept(machine, port, target, name, option, secrets, reason):
    add_portal(machine, port)
    assert reason in log_in(machine, port, name, *secrets, option=option)
    assert kept_logins() == {}


def test_a_target_that_is_not_there_is_unknown(machine, port, target):
    screen = log_in(machine, port, "none", known=False)
    assert UNKNOWN in screen and "0x0203" in screen


def test_a_target_that_no_portal_told_is_listed_by_its_login(machine, port, target):
    assert ACCEPTED in log_in(machine, port, "open", known=False)
    assert listed_targets(machine, port) == {NAME + "open": ("Static", "Not connected")}
    assert "1" in luns_of(machine, port, "open")


def test_the_initiators_own_login_counts_where_none_is_given(machine, port, target):
    add_portal(machine, port)
    assert REFUSED in log_in(machine, port, "chap")
    machine.cli("-iscsi", "-setinitiator", INITIATOR, "-onewaychap", typed="".join(f"{text}\n" for text in ONE_WAY))
    assert ACCEPTED in log_in(machine, port, "chap")
    assert "1" in luns_of(machine, port, "chap")


def test_an_accepted_login_stays_as_it_was_when_the_initiators_own_changes(machine, port, target):
    assert ACCEPTED in log_in(machine, port, "open", known=False)
    typed = "".join(f"{text}\n" for text in ONE_WAY)
    machine.cli("-iscsi", "-setinitiator", INITIATOR, "-onewaychap", typed=typed)
    assert ACCEPTED in log_in(machine, port, "chap", known=False)
    assert "1" in luns_of(machine, port, "open"), "it lets nobody in with CHAP"
    machine.cli("-iscsi", "-setinitiator", INITIATOR)
    assert "1" in luns_of(machine, port, "chap"), "it lets nobody in without"


def test_a_wish_for_digests_is_told_to_the_target(machine, port, target):
    with Tap() as tap:
        login = ["-iscsi", port, "-target", "-login", NAME + "open", "127.0.0.1", tap.port]
        assert "The target does not use header digests." in machine.cli(*login, "-hd", typed="y\n")
        assert tap.keys()["HeaderDigest"] == "CRC32C"
        target.do("--op", "update", "--mode", "target", "--tid", 1, "--name", "HeaderDigest", "--value", "CRC32C")
        assert ACCEPTED in machine.cli(*login, "-hd", typed="y\n")
        assert set(luns_of(machine, port, "open")) == {"0", "1", "2", "3"}
    machine.cli("-iscsi", "-setinitiator", INITIATOR, "-hd")
    with Tap() as tap:
        assert ACCEPTED in log_in(machine, port, "open", number=tap.port)
        assert tap.keys()["HeaderDigest"] == "CRC32C", "the initiator's wish counts for every login"


def test_data_digests_are_refused_wherever_they_are_wished(machine, port, target):
    place = ["127.0.0.1", PORT]
    for command in (
        [port, "-target", "-login", NAME + "open", *place], [port, "-portal", "-add", *place],
        ["-setinitiator", INITIATOR + "2"],
    ):
        screen = machine.cli("-iscsi", *command, "-dd", typed="y\n")
        assert "This host cannot do that." in screen and "data digests" in screen, command
    assert listed_targets(machine, port) == {}
    assert machine.rows("-iscsi", "-getinitiator")["iSCSI Initiator Name"] == INITIATOR


def test_one_secret_for_both_sides_is_refused_before_it_is_used(machine, port, target):
    same = ("incoming", "first-secret-1", "outgoing", "first-secret-1")
    with Tap() as tap:
        place = ["127.0.0.1", tap.port]
        for command in (
            [port, "-target", "-login", NAME + "mutual", *place], [port, "-portal", "-add", *place],
            ["-setinitiator", INITIATOR],
        ):
            typed = ("y\n" if "-login" in command else "") + "".join(f"{text}\n" for text in same)
            screen = machine.cli("-iscsi", *command, "-mutualchap", typed=typed)
            assert "The two CHAP secrets are the same." in screen, command
        assert not tap.taken and kept_logins() == {}


def test_a_name_that_no_target_can_have_is_refused_before_it_is_looked_for(machine, port, target):
    names = (" ", "iqn.a b", "iqn.\x1b[2J", "iqn.\x9b2J", "iqn." + "a" * 220)
    with Tap() as tap:
        for name in names:
            screen = machine.cli("-iscsi", port, "-target", "-login", name, "127.0.0.1", tap.port, typed="y\n")
            assert "The target name is not usable." in screen, name
        assert not tap.taken
    for command in ("-getinfo", "-remove", "-lunlist"):
        for name in names:
            assert "The target name is not usable." in machine.cli("-iscsi", port, "-target", command, name), name
    assert kept_logins() == {}


def test_blanks_around_a_name_do_not_count(machine, port, target):
    add_portal(machine, port)
    padded = f" {NAME}open "
    assert ACCEPTED in machine.cli("-iscsi", port, "-target", "-login", padded, "127.0.0.1", PORT)
    assert machine.rows("-iscsi", port, "-target", "-getinfo", padded)["Target Name"] == NAME + "open"
    assert "VIRTUAL-DISK" in machine.cli("-iscsi", port, "-target", "-lunlist", padded)
    assert "The target was removed." in machine.cli("-iscsi", port, "-target", "-remove", padded)


def test_without_the_right_to_keep_nothing_is_begun(machine, port, target):
    """Neither where nothing is kept so far, nor where something is."""
    for name_is_secret in (True, False):
        if not name_is_secret:
            pathlib.Path("/etc/iscsi/initiatorname.iscsi").chmod(0o644)
        for fresh in (True, False):
            if fresh:
                shutil.rmtree("/var/lib/tavrocli")
            else:
                add_portal(machine, port)
                log_in(machine, port, "open")
            before = STATE.read_bytes() if STATE.exists() else None
            with Tap() as tap:
                place = ["127.0.0.1", tap.port]
                for command in (
                    ["-portal", "-add", *place], ["-target", "-login", NAME + "open", *place],
                    ["-target", "-remove", NAME + "open"], ["-portal", "-remove", "127.0.0.1", PORT],
                ):
                    screen = machine.cli("-iscsi", port, *command, typed="y\n", user=NOBODY)
                    assert "CAP_DAC_OVERRIDE" in screen and "/var/lib" in screen, command
                assert not tap.taken
            assert (STATE.read_bytes() if STATE.exists() else None) == before


def test_a_name_that_may_not_be_read_is_not_told_to_be_missing(machine, port, target):
    """The state may be used, so that the file of the name is what is left."""
    shutil.rmtree("/var/lib/tavrocli")
    os.chmod("/var/lib", 0o777)
    try:
        screen = machine.cli("-iscsi", port, "-portal", "-add", "127.0.0.1", PORT, user=NOBODY)
    finally:
        os.chmod("/var/lib", 0o755)
    assert "CAP_DAC_OVERRIDE" in screen and "initiatorname.iscsi" in screen and "has no name" not in screen


def test_the_default_parameters_are_those_that_are_proposed(machine, port, target):
    with Tap() as tap:
        assert ACCEPTED in log_in(machine, port, "chap", *ONE_WAY, number=tap.port, known=False)
        said = tap.keys()
    assert said["InitiatorName"] == INITIATOR and said["TargetName"] == NAME + "chap"
    told = machine.rows("-iscsi", port, "-defparam")
    for label, key in {
        "Maximum Connections": "MaxConnections",
        "Initial R2T": "InitialR2T",
        "Immediate Data": "ImmediateData",
        "Maximum Burst Length": "MaxBurstLength",
        "First Burst Length": "FirstBurstLength",
        "Default Time to Wait": "DefaultTime2Wait",
        "Default Time to Retain": "DefaultTime2Retain",
        "Maximum Outstanding R2T": "MaxOutstandingR2T",
        "Data PDU in Order": "DataPDUInOrder",
        "Data Sequence in Order": "DataSequenceInOrder",
        "Error Recovery Level": "ErrorRecoveryLevel",
        "Maximum Receive Segment Length": "MaxRecvDataSegmentLength",
    }.items():
        assert told[label] == said[key], label
    for label, key in {"Header Digest": "HeaderDigest", "Data Digest": "DataDigest"}.items():
        assert (told[label], said[key]) == ("No", "None"), label


def test_no_secret_is_seen_anywhere_but_in_the_state(machine, port, target, tmp_path):
    trace, log = tmp_path / "trace", tmp_path / "tavrocli.log"
    screens = []

    def run(*arguments, typed=()):
        text = "".join(f"{line}\n" for line in typed)
        screens.append(machine.cli(*arguments, "-debug", typed=text, environment={"TAVROLINUX_TRACE": str(trace)}))

    with Tap() as tap:
        place = ["127.0.0.1", tap.port]
        run("-iscsi", "-setinitiator", INITIATOR, "-mutualchap", typed=MUTUAL)
        run("-iscsi", "-getinitiator")
        run("-iscsi", port, "-portal", "-add", *place, "-onewaychap", typed=ONE_WAY)
        run("-iscsi", port, "-target", "-login", NAME + "mutual", *place, "-mutualchap", typed=MUTUAL)
        run("-iscsi", port, "-target", "-login", NAME + "chap", *place, "-onewaychap", typed=ONE_WAY)
        run("-iscsi", port, "-target", "-lunlist", NAME + "mutual")
        run("-iscsi", port, "-target", "-listall")
        said = bytes(tap.said)
    assert ACCEPTED in screens[3] and ACCEPTED in screens[4] and "VIRTUAL-DISK" in screens[5]
    secrets = (ONE_WAY[1], MUTUAL[3])
    for secret in secrets:
        assert secret not in "".join(screens)
        assert secret.encode() not in said
        for file in (trace, log):
            assert secret not in file.read_text(encoding="utf-8"), file
    assert "iqn.2020-01.com.example:mutual" in trace.read_text(encoding="utf-8")
    assert log.stat().st_size > 0
    assert all(secret in STATE.read_text() for secret in secrets)
    for root in ("/etc/iscsi", "/run", "/var/lib"):
        for folder, _, files in os.walk(root):
            for file in files:
                path = pathlib.Path(folder, file)
                if path != STATE and path.is_file():
                    assert not any(secret.encode() in path.read_bytes() for secret in secrets), path
    assert stat.S_IMODE(STATE.stat().st_mode) == 0o600
    assert stat.S_IMODE(STATE.parent.stat().st_mode) == 0o700


def test_an_unusable_name_in_the_file_is_refused_before_it_goes_on_the_wire(machine, port, target):
    file = pathlib.Path("/etc/iscsi/initiatorname.iscsi")
    with Tap() as tap:
        for name in (f'"{INITIATOR}"', f"{INITIATOR} # mine", "host"):
            file.write_text(f"InitiatorName={name}\n", encoding="ascii")
            screen = add_portal(machine, port, number=tap.port)
            assert "The initiator name is not usable." in screen and str(file) in screen, name
        assert not tap.taken


def test_a_portal_is_the_same_in_both_families_and_none_without_an_address(machine, port, target):
    add_portal(machine, port)
    assert "The target portal was added." in add_portal(machine, port, "::ffff:127.0.0.1")
    assert machine.cli("-iscsi", port, "-portal", "-listall").count(" : \t") == 1
    assert "The target portal was removed." in machine.cli("-iscsi", port, "-portal", "-remove", "::ffff:7f00:1", PORT)
    for address in ("0.0.0.0", "::", "::ffff:0.0.0.0"):
        assert "No portal has this address." in add_portal(machine, port, address), address


def test_the_login_of_a_portal_counts_for_its_targets(machine, port, target):
    typed = "".join(f"{text}\n" for text in ONE_WAY)
    machine.cli("-iscsi", port, "-portal", "-add", "127.0.0.1", PORT, "-onewaychap", typed=typed)
    assert "1" in luns_of(machine, port, "chap") and kept_logins() == {}


def test_a_target_is_shown_and_asked_where_it_accepted_the_login(machine, port, target):
    """Another portal told it; what is in between counts who connects."""
    other = PORT + 1
    target.do("--op", "new", "--mode", "portal", "--param", f"portal=127.0.0.1:{other}")
    add_portal(machine, port)
    getinfo = ["-iscsi", port, "-target", "-getinfo", NAME + "chap"]
    assert machine.rows(*getinfo)["Portal Port Number"] == str(PORT)
    with Tap(other) as tap:
        assert ACCEPTED in log_in(machine, port, "chap", *ONE_WAY, number=tap.port)
        assert machine.rows(*getinfo)["Portal Port Number"] == str(tap.port)
        assert machine.rows(*getinfo)["Discovery"] == "SendTargets"
        before = len(tap.taken)
        assert "1" in luns_of(machine, port, "chap")
        assert len(tap.taken) == before + 1
    machine.cli("-iscsi", port, "-target", "-remove", NAME + "chap")
    assert machine.rows(*getinfo)["Portal Port Number"] == str(PORT)


def test_a_kept_login_that_is_not_accepted_any_more_is_named(machine, port, target):
    assert ACCEPTED in log_in(machine, port, "chap", *ONE_WAY, known=False)
    target.do("--op", "delete", "--mode", "account", "--user", "incoming")
    target.add_user("incoming", "other-secret-1")
    target.do("--op", "bind", "--mode", "account", "--tid", 2, "--user", "incoming")
    screen = machine.cli("-iscsi", port, "-target", "-lunlist", NAME + "chap")
    assert "The target does not accept the login that is kept of it." in screen and "-target -login" in screen
    assert ACCEPTED in log_in(machine, port, "chap", "incoming", "other-secret-1")
    assert "1" in luns_of(machine, port, "chap")


def test_sessions_are_refused(machine, port):
    for command in ("-sessioninfo", "-logout"):
        screen = machine.cli("-iscsi", port, "-target", command, NAME + "open", "1")
        assert "an initiator that keeps sessions" in screen, command
    assert "an iSCSI driver that counts" in machine.cli("-iscsi", port, "-portstat")
    assert "There is no target." in machine.cli("-iscsi", port, "-target", "-listactive")


def test_a_server_that_ends_every_connection_counts_for_nothing(machine, port, target):
    add_portal(machine, port)
    target.stop()
    with Server(closes_behind(), PORT):
        assert "The other side ended the connection." in machine.cli("-iscsi", port, "-target", "-listall")
