"""A target on the loopback address that goes through a login as a test wants it, and answers then what the test makes up."""

import hashlib
import struct

from iscsi_servers import Server

NOBODY = 0xFFFFFFFF
LOGIN, TEXT, COMMAND, LOGOUT = 0x03, 0x04, 0x01, 0x06
TEXT_RESPONSE, SCSI_RESPONSE, DATA_IN, LOGOUT_RESPONSE, NOP_IN, R2T, ASYNC, REJECT = 0x24, 0x21, 0x25, 0x26, 0x20, 0x31, 0x32, 0x3F
# The second byte of a login's answers: security to operation, and operation to the full feature phase.
STAY, LEAVE, ENTER = 0x00, 0x81, 0x87


class Request:
    def __init__(self, header, data):
        self.opcode, self.flags = header[0] & 0x3F, header[1]
        self.tag, self.lun, self.cdb = header[16:20], header[8:16], header[32:48]
        self.transfer = header[20:24]
        self.number, self.confirmed = (int.from_bytes(header[at:at + 4], "big") for at in (24, 28))
        self.data = data
        self.keys = dict(pair.split(b"=", 1) for pair in data.split(b"\0") if b"=" in pair)


def receive(connection, size):
    got = b""
    while len(got) < size:
        piece = connection.recv(size - len(got))
        if not piece:
            raise ConnectionError
        got += piece
    return got


def request_from(connection):
    header = receive(connection, 48)
    size = int.from_bytes(header[5:8], "big")
    return Request(header, receive(connection, (size + 3) // 4 * 4)[:size])


def unit(opcode, request, data=b"", flags=0x80, response=0, status=0, tag=None, length=None, number=1):
    """The unit that answers the request, as the protocol lays it out."""
    return (struct.pack(">BBBBB3s", opcode, flags, response, status, 0, (length or len(data)).to_bytes(3, "big")) + bytes(8)
            + (request.tag if tag is None else tag) + struct.pack(">IIII", NOBODY, number, request.number, (request.number + 100) % (1 << 32)) + bytes(12)
            + data + bytes(-len(data) % 4))


def login_answer(request, flags, text=b""):
    header = bytearray(unit(0x23, request, text, flags))
    header[20:24] = bytes(4)
    header[15] = 1
    return bytes(header)


def sense(key):
    return struct.pack(">HBBB", 18, 0x70, 0, key) + bytes(15)


def refused(request, status=2, data=b""):
    return unit(SCSI_RESPONSE, request, data, status=status)


def lets_in(connection):
    """A login without any authentication."""
    while True:
        request = request_from(connection)
        leaves = LEAVE if request.flags & 0x0C == 0 else ENTER
        connection.sendall(login_answer(request, leaves, b"AuthMethod=None\0" if leaves == LEAVE else b""))
        if leaves == ENTER:
            return


def by_chap(proof):
    """A login by CHAP; `proof` makes the last answer's text of the initiator's challenge: a number and bytes."""
    def log_in(connection):
        connection.sendall(login_answer(request_from(connection), STAY, b"AuthMethod=CHAP\0"))
        connection.sendall(login_answer(request_from(connection), STAY, b"CHAP_A=5\0CHAP_I=7\0CHAP_C=0x" + b"ab" * 16 + b"\0"))
        request = request_from(connection)
        number = bytes([int(request.keys.get(b"CHAP_I", b"0"))])
        challenge = bytes.fromhex(request.keys.get(b"CHAP_C", b"0x").decode()[2:])
        connection.sendall(login_answer(request, LEAVE, proof(number, challenge)))
        connection.sendall(login_answer(request_from(connection), ENTER))
    return log_in


def proves(name, secret):
    """The text that proves the target's secret to the initiator."""
    return lambda number, challenge: b"CHAP_N=%s\0CHAP_R=0x%s\0" % (
        name.encode(), hashlib.md5(number + secret.encode() + challenge).hexdigest().encode())


def by_answers(*answers):
    """A login that is answered with these flags and texts, whatever is asked."""
    def log_in(connection):
        for flags, text in answers:
            connection.sendall(login_answer(request_from(connection), flags, text))
    return log_in


class FakeTarget(Server):
    """`answers` has what each opcode is answered with: a function of the request and the number of the answer."""

    def __init__(self, log_in=lets_in, answers=None, port=0):
        self.log_in = log_in
        self.answers = {LOGOUT: lambda request, number: unit(LOGOUT_RESPONSE, request, number=number)} | (answers or {})
        self.requests = []
        super().__init__(self.talk, port)

    def talk(self, connection):
        try:
            self.log_in(connection)
            number = 10
            while True:
                request = request_from(connection)
                self.requests.append(request)
                answer = self.answers[request.opcode](request, number)
                for piece in answer if not isinstance(answer, bytes) else [answer]:
                    connection.sendall(piece)
                number += 1
        except (OSError, ValueError, KeyError):
            connection.close()


def tells(*texts):
    """Answers a question for the targets."""
    return {TEXT: lambda request, number: unit(TEXT_RESPONSE, request, b"".join(text + b"\0" for text in texts), number=number)}


def disk(luns, listed=None, inquire=None, serial=None):
    """Answers commands as a target with these LUNs does; each part can be replaced."""
    def data(request, number, content):
        return unit(DATA_IN, request, content, flags=0x81, number=number)

    def command(request, number):
        code, page = request.cdb[0], request.cdb[1]
        if code == 0xA0:
            listing = struct.pack(">II", 8 * len(luns), 0) + b"".join(struct.pack(">H6x", lun) for lun in luns)
            return listed(request, number) if listed else data(request, number, listing[:int.from_bytes(request.cdb[6:10], "big")])
        if code == 0x12 and page == 0:
            return inquire(request, number) if inquire else data(
                request, number, bytes([0, 0, 5, 2, 31, 0, 0, 0]) + b"EXAMPLE Disk Array      0001")
        if code == 0x12:
            return serial(request, number) if serial else data(request, number, b"\x00\x80\x00\x04S123")
        if code == 0x25:
            return data(request, number, struct.pack(">II", 2047, 512))
        return unit(SCSI_RESPONSE, request, sense(5), status=2, number=number)
    return {COMMAND: command}
