"""What targets that play false get from the initiator: no login without a proof, no crash, no end of memory, no end of time."""

import os
import socket
import subprocess
import time

import pytest

from fake_target import (
    ASYNC, COMMAND, DATA_IN, ENTER, LEAVE, LOGOUT, LOGOUT_RESPONSE, NOP_IN, R2T, REJECT, SCSI_RESPONSE, STAY, TEXT, TEXT_RESPONSE,
    FakeTarget, by_answers, by_chap, disk, proves, refused, sense, tells, unit)
from iscsi_servers import INITIATOR, NAME

ACCEPTED = "The target accepted the login, but this host keeps no sessions."
NOT_PROVEN = "The target does not prove who it is with the initiator CHAP name and secret."
NOT_ASKED = "The target lets the initiator in without CHAP."
INVALID = "What replies there does not speak iSCSI."
REFUSED = "The target refuses the request."
TOO_MUCH = "The target has more to tell than this host reads."
ONE_WAY = ("incoming", "first-secret-1")
MUTUAL = (*ONE_WAY, "outgoing", "second-secret2")
PROOF = proves("outgoing", "second-secret2")
TARGET = NAME + "a"


@pytest.fixture
def port(machine):
    mac = machine.add_pair()
    machine.cli("-iscsi", "-setinitiator", INITIATOR)
    return mac


def log_in(machine, port, server, *secrets, options=()):
    typed = "y\n" + "".join(f"{text}\n" for text in secrets)
    chap = {0: [], 2: ["-onewaychap"], 4: ["-mutualchap"]}[len(secrets)]
    return machine.cli("-iscsi", port, "-target", "-login", TARGET, "127.0.0.1", server.port, *chap, *options, typed=typed)


def add_portal(machine, port, server):
    return machine.cli("-iscsi", port, "-portal", "-add", "127.0.0.1", server.port)


def luns_with(machine, port, answers):
    """What -lunlist prints of a target that answers so."""
    with FakeTarget(answers=answers) as server:
        assert ACCEPTED in log_in(machine, port, server)
        return machine.cli("-iscsi", port, "-target", "-lunlist", TARGET)


def test_mutual_chap_accepts_who_knows_the_secret(machine, port):
    with FakeTarget(by_chap(PROOF)) as server:
        assert ACCEPTED in log_in(machine, port, server, *MUTUAL)


ZEROS = b"CHAP_N=outgoing\0CHAP_R=0x" + b"0" * 32 + b"\0"
IMPOSTORS = {
    "skips it": by_answers((LEAVE, b"AuthMethod=None\0"), (ENTER, b"")),
    "skips it, with a proof": by_answers((LEAVE, b"AuthMethod=None\0CHAP_R=zz\0"), (ENTER, b"")),
    "skips it, with zeros": by_answers((LEAVE, b"AuthMethod=None\0" + ZEROS), (ENTER, b"")),
    "proves it later": by_answers((LEAVE, b"AuthMethod=None\0"), (ENTER, b"CHAP_R=zz\0")),
    "leaves before a challenge": by_answers((STAY, b"AuthMethod=CHAP\0"), (LEAVE, ZEROS), (ENTER, b"")),
    "goes to the end at once": by_answers((ENTER, ZEROS), (ENTER, b"")),
    "says nothing of it": by_chap(lambda number, challenge: b""),
    "has zeros": by_chap(lambda number, challenge: ZEROS),
    "has the name alone": by_chap(lambda number, challenge: b"CHAP_N=outgoing\0"),
    "knows another secret": by_chap(proves("outgoing", "other-secret-2")),
    "has another name": by_chap(proves("incoming", "second-secret2")),
}


@pytest.mark.parametrize("impostor", IMPOSTORS.values(), ids=IMPOSTORS)
def test_mutual_chap_refuses_a_target_that(machine, port, impostor):
    with FakeTarget(impostor) as server:
        screen = log_in(machine, port, server, *MUTUAL)
        assert NOT_PROVEN in screen or INVALID in screen, screen
        assert all(request.opcode == LOGOUT for request in server.requests)


def test_one_way_chap_wants_to_be_asked(machine, port):
    with FakeTarget(by_chap(lambda number, challenge: b"")) as server:
        assert ACCEPTED in log_in(machine, port, server, *ONE_WAY)
    with FakeTarget() as server:
        assert NOT_ASKED in log_in(machine, port, server, *ONE_WAY)


def test_another_algorithm_of_chap_is_told(machine, port):
    with FakeTarget(by_answers((STAY, b"AuthMethod=CHAP\0"), (STAY, b"CHAP_A=7\0CHAP_I=7\0CHAP_C=0xab\0"))) as server:
        assert "The target wants CHAP with another algorithm than MD5." in log_in(machine, port, server, *ONE_WAY)


def test_a_digest_that_is_not_agreed_to_is_told(machine, port):
    with FakeTarget() as server:
        assert "The target does not use header digests." in log_in(machine, port, server, options=["-hd"])


OPCODES = (NOP_IN, SCSI_RESPONSE, 0x22, 0x23, TEXT_RESPONSE, DATA_IN, LOGOUT_RESPONSE, R2T, ASYNC, REJECT)


@pytest.mark.parametrize("asked, proper", [(TEXT, TEXT_RESPONSE), (LOGOUT, LOGOUT_RESPONSE), (COMMAND, DATA_IN)],
                         ids=["discovery", "logout", "command"])
def test_no_answer_of_another_kind_ends_the_program(machine, port, asked, proper):
    """The program ends with 0 on each, which Machine.cli looks at."""
    made = {}
    # A command that is answered with the target's end of the session ends soon, a silent one does not.
    answers = disk([0]) | tells(b"TargetName=" + TARGET.encode()) | {asked: lambda request, number: made["answer"](request)}
    with FakeTarget(answers=answers) as server:
        if asked == COMMAND:
            assert ACCEPTED in log_in(machine, port, server)
        for opcode in OPCODES:
            if opcode in (proper, ASYNC):
                continue
            for data in (b"", b"A" * 64):
                made["answer"] = lambda request, opcode=opcode, data=data: unit(opcode, request, data, flags=0x81)
                start = time.monotonic()
                if asked == TEXT:
                    assert "The target portal was added." not in add_portal(machine, port, server), opcode
                elif asked == LOGOUT:
                    assert ACCEPTED in log_in(machine, port, server), opcode
                    machine.cli("-iscsi", port, "-target", "-remove", TARGET)
                else:
                    screen = machine.cli("-iscsi", port, "-target", "-lunlist", TARGET)
                    assert "Error Details" in screen, opcode
                assert time.monotonic() - start < 3, opcode


def flood(opcode, size, flags=0):
    """Answers with units of that kind without end."""
    def answer(request, number):
        many = unit(opcode, request, b"A" * size, flags=flags, tag=b"\xff" * 4 if opcode == NOP_IN else None) * max(1, 65536 // (48 + size))
        while True:
            yield many
    return answer


@pytest.mark.parametrize("asked, answer", [
    (COMMAND, flood(DATA_IN, 65536)),
    (COMMAND, flood(DATA_IN, 4)),
    (COMMAND, flood(NOP_IN, 0)),
    (TEXT, flood(TEXT_RESPONSE, 65536, flags=0x40)),
    (TEXT, flood(NOP_IN, 0)),
    (LOGOUT, flood(NOP_IN, 0)),
], ids=["data", "small data", "signs of life", "text", "signs of life in a discovery", "signs of life at the end"])
def test_a_flood_ends_soon_and_fills_no_memory(machine, port, asked, answer):
    with FakeTarget(answers=tells(b"TargetName=" + TARGET.encode()) | disk([0])) as server:
        assert ACCEPTED in log_in(machine, port, server)
        server.answers[asked] = answer
        command = {
            COMMAND: ["-target", "-lunlist", TARGET],
            TEXT: ["-portal", "-add", "127.0.0.1", str(server.port)],
            LOGOUT: ["-target", "-login", TARGET, "127.0.0.1", str(server.port)],
        }[asked]
        start = time.monotonic()
        with subprocess.Popen([str(machine.programs / "tavrocli"), "-iscsi", port, *command], cwd=machine.folder,
                              env=machine.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE) as program:
            screen = program.stdout.read().decode()
            assert time.monotonic() - start < 12
            # The peak of what the program had in memory.
            _, status, usage = os.wait4(program.pid, 0)
            program.returncode = status
        assert status == 0
        assert usage.ru_maxrss < 400 << 10, "in KiB"
        assert "Error Details" in screen


def luns_told(screen):
    """The numbers of the LUNs that are listed."""
    return [line.split(":", 1)[1].strip() for line in screen.splitlines() if line.split(":")[0].strip() == "LUN"]


def test_each_lun_is_told_once_and_large_numbers_too(machine, port):
    assert luns_told(luns_with(machine, port, disk([0, 5, 5, 0, 0x4100, 0x7FFF]))) == ["0", "5", "256", "16383"]


def test_a_unit_that_has_something_to_tell_first_is_asked_again(machine, port):
    told = []

    def attention(request, number):
        told.append(number)
        return refused(request, data=sense(6)) if len(told) == 1 else unit(
            DATA_IN, request, b"\x00\x80\x00\x04S123", flags=0x81, number=number)
    assert "S123" in luns_with(machine, port, disk([0], serial=attention))
    assert len(told) == 2


@pytest.mark.parametrize("status, data, asked", [(2, sense(5), 1), (0x18, b"", 1), (8, b"", 3), (2, b"", 1), (2, b"\0", 1)],
                         ids=["by its sense", "reserved", "busy", "without sense", "with half of it"])
def test_a_refused_command_is_told_with_its_status(machine, port, status, data, asked):
    requests = []

    def listed(request, number):
        requests.append(request)
        return refused(request, status, data)
    screen = luns_with(machine, port, disk([0], listed=listed))
    assert REFUSED in screen and f"SCSI status 0x{status:02x}" in screen
    assert len(requests) == asked


def test_a_rejected_question_is_told(machine, port):
    with FakeTarget(answers={TEXT: lambda request, number: unit(REJECT, request, bytes(48), response=5)}) as server:
        screen = add_portal(machine, port, server)
        assert REFUSED in screen and "reject reason 0x05" in screen


def test_more_than_the_host_reads_is_told(machine, port):
    assert TOO_MUCH in luns_with(machine, port, disk(range(1025)))
    many = [b"TargetName=iqn.2020-01.com.example:%d" % number for number in range(4097)]
    with FakeTarget(answers=tells(*many)) as server:
        assert TOO_MUCH in add_portal(machine, port, server)


@pytest.mark.parametrize("text", [b"TargetAddress=127.0.0.1:3260,1", b"TargetName=" + b"a" * 20 + b"\xff\0Other=1", b"Name"],
                         ids=["without a target", "of another kind", "without a value"])
def test_a_text_that_tells_no_targets_is_invalid(machine, port, text):
    with FakeTarget(answers=tells(text)) as server:
        assert INVALID in add_portal(machine, port, server)


def test_a_list_of_targets_may_come_in_pieces(machine, port):
    """Names are cut anywhere, and one piece has nothing."""
    names = [f"{NAME}{number}" for number in range(40)]
    text = b"".join(b"TargetName=%s\0TargetAddress=127.0.0.1:3260,1\0" % name.encode() for name in names)
    pieces = [text[:100], b"", text[100:777], text[777:]]
    asked = []

    def piece(request, number):
        place = int.from_bytes(request.transfer, "big") if asked else 0
        asked.append(request)
        last = place == len(pieces) - 1
        made = bytearray(unit(TEXT_RESPONSE, request, pieces[place], flags=0x80 if last else 0x40, number=number))
        made[20:24] = b"\xff" * 4 if last else (place + 1).to_bytes(4, "big")
        return bytes(made)
    with FakeTarget(answers={TEXT: piece}) as server:
        assert "The target portal was added." in add_portal(machine, port, server)
        assert len(asked) == len(pieces)
        assert [request.data for request in asked[1:]] == [b""] * 3 and all(request.flags == 0x80 for request in asked)
        assert len({request.tag for request in asked}) == 1
        # What has come is confirmed, by the number of the answer.
        assert [request.confirmed for request in asked[1:]] == [11, 12, 13]
        asked.clear()
        screen = machine.cli("-iscsi", port, "-target", "-listall")
        assert all(f"{name}\n" in screen for name in names)
        assert [request.opcode for request in server.requests].count(LOGOUT) == 2


def test_a_piece_that_nothing_can_follow_is_invalid(machine, port):
    with FakeTarget(answers={TEXT: lambda request, number: unit(TEXT_RESPONSE, request, b"TargetName=iqn.a\0", flags=0)}) as server:
        assert INVALID in add_portal(machine, port, server)


def test_a_login_in_pieces_is_told_as_such(machine, port):
    with FakeTarget(by_answers((0x44, b"InitialR2T=No\0Immediate"), (ENTER, b"Data=Yes\0"))) as server:
        assert "The target replies to the login in several pieces." in log_in(machine, port, server)


def test_a_portal_by_name_is_passed_over_and_asks_no_server_of_names(machine, port):
    with open("/etc/resolv.conf", "w", encoding="ascii") as file:
        file.write("nameserver 127.0.0.1\n")
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as names:
        names.bind(("127.0.0.1", 53))
        names.setblocking(False)
        told = tells(b"TargetName=" + TARGET.encode(), b"TargetAddress=target.example:3260,1")
        with FakeTarget(answers=told | disk([7])) as server:
            assert "The target portal was added." in add_portal(machine, port, server)
            start = time.monotonic()
            assert luns_told(machine.cli("-iscsi", port, "-target", "-lunlist", TARGET)) == ["7"]
            assert time.monotonic() - start < 3
        with pytest.raises(BlockingIOError):
            names.recv(512)


def test_an_interface_with_a_comma_is_refused_as_such(machine, port):
    mac = machine.add_pair("v,a", "v,b")
    screen = machine.cli("-iscsi", mac, "-portal", "-add", "192.0.2.9", 3260)
    assert "An interface with a comma in its name cannot carry iSCSI connections." in screen and "v,a" in screen
