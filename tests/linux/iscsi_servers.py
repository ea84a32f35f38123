"""What answers on the loopback address: a real iSCSI target, servers that misbehave, and one that listens in between."""

import re
import socket
import struct
import subprocess
import threading
import time

import pytest

NO_TARGET = "not run here: needs tgtd to start"
NAME = "iqn.2020-01.com.example:"
PORT = 3270
INITIATOR = NAME + "host"


class Target:
    """A tgtd with a control socket of its own."""

    def __init__(self, machine, folder, portal=f"127.0.0.1:{PORT}", control=7, within=()):
        self.command = ["tgtadm", "-C", str(control), "--lld", "iscsi"]
        self.folder = folder
        self.count = 0
        subprocess.run(["mkdir", "-p", "/run/tgtd"], check=True)
        with open(folder / "tgtd.log", "wb") as log:
            try:
                self.process = machine.start(
                    *within, "tgtd", "--iscsi", f"portal={portal}", "-C", str(control), "-f", "--nr_iothreads=1",
                    stdout=log, stderr=log)
            except FileNotFoundError:
                pytest.skip(NO_TARGET)
        deadline = time.monotonic() + 10
        while subprocess.run([*self.command, "--op", "show", "--mode", "sys"], capture_output=True).returncode != 0:
            if self.process.poll() is not None or time.monotonic() > deadline:
                pytest.skip(NO_TARGET)
            time.sleep(0.02)

    def do(self, *arguments):
        return subprocess.run([*self.command, *map(str, arguments)], check=True, capture_output=True, text=True).stdout

    def add(self, name, *disks, users=(), outgoing=None):
        """A target whose disks have so many bytes, numbered from 1 on, and who may log in to it."""
        self.count += 1
        target = ("--tid", self.count)
        self.do("--op", "new", "--mode", "target", *target, "-T", NAME + name)
        for lun, size in enumerate(disks, 1):
            file = self.folder / f"{name}{lun}"
            with open(file, "wb") as disk:
                disk.truncate(size)
            self.do("--op", "new", "--mode", "logicalunit", *target, "--lun", lun, "-b", file)
        for user in users:
            self.do("--op", "bind", "--mode", "account", *target, "--user", user)
        if outgoing:
            self.do("--op", "bind", "--mode", "account", *target, "--user", outgoing, "--outgoing")
        self.do("--op", "bind", "--mode", "target", *target, "-I", "ALL")
        return NAME + name

    def add_user(self, name, secret):
        self.do("--op", "new", "--mode", "account", "--user", name, "--password", secret)

    def serial_numbers(self):
        """By target and LUN, as the target itself tells them."""
        told = {}
        target = lun = None
        for line in self.do("--op", "show", "--mode", "target").splitlines():
            if match := re.match(r"Target \d+: (\S+)", line):
                target = match[1]
            elif match := re.match(r"\s+LUN: (\d+)", line):
                lun = match[1]
            elif match := re.match(r"\s+SCSI SN: (\S+)", line):
                told[target, lun] = match[1]
        return told

    def stop(self):
        self.process.kill()
        self.process.wait()


class Server:
    """Listens on the loopback address, and has `answer` talk to each that connects."""

    def __init__(self, answer, port=0):
        self.listening = socket.create_server(("127.0.0.1", port))
        self.port = self.listening.getsockname()[1]
        self.answer = answer
        self.taken = []
        threading.Thread(target=self.take, daemon=True).start()

    def take(self):
        while True:
            try:
                taken, _ = self.listening.accept()
            except OSError:
                return
            self.taken.append(taken)
            threading.Thread(target=self.answer, args=(taken,), daemon=True).start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        # Who waits in another thread for a connection would keep the port otherwise, and take the next one.
        self.listening.shutdown(socket.SHUT_RDWR)
        self.listening.close()
        for taken in self.taken:
            taken.close()


def first(connection):
    """Waits for what the initiator says first."""
    return connection.recv(65536)


def says(answer):
    """Answers with these bytes, or with what is made of the request, and keeps the connection."""
    def talk(connection):
        request = first(connection)
        connection.sendall(answer(request) if callable(answer) else answer)
    return talk


def closes_behind(text=b""):
    def answer(connection):
        first(connection)
        connection.sendall(text)
        connection.shutdown(socket.SHUT_RDWR)
    return answer


def resets(connection):
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
    connection.close()


def login_response(status=0, data=b""):
    """Makes the answer to a login, as the protocol lays it out."""
    def answer(request):
        header = struct.pack(">BBBBB3s", 0x23, 0x87, 0, 0, 0, len(data).to_bytes(3, "big"))
        task = request[16:20]
        return header + bytes(8) + task + bytes(16) + struct.pack(">H", status) + bytes(10) + data + bytes(-len(data) % 4)
    return answer


class Tap(Server):
    """Hands everything on to the target, and keeps what the initiator said."""

    def __init__(self, port=PORT):
        self.said = bytearray()
        self.behind = port
        super().__init__(self.hand_on)

    def hand_on(self, connection):
        with socket.create_connection(("127.0.0.1", self.behind)) as target:
            threading.Thread(target=self.copy, args=(target, connection), daemon=True).start()
            self.copy(connection, target, self.said)

    @staticmethod
    def copy(source, sink, kept=None):
        try:
            while data := source.recv(65536):
                if kept is not None:
                    kept += data
                sink.sendall(data)
            sink.shutdown(socket.SHUT_WR)
        except OSError:
            pass

    def keys(self):
        """The keys and values of the texts in what the initiator said."""
        pairs = re.findall(rb"([A-Z][A-Za-z0-9_]+)=([^\0]*)\0", bytes(self.said))
        return {key.decode(): value.decode("latin-1") for key, value in pairs}
