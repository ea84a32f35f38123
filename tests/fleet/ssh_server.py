"""An sshd of the loopback address, for the current user, that shares nothing with the machine's own."""

import contextlib
import getpass
import os
import pathlib
import socket
import subprocess
import time

SSHD = "/usr/sbin/sshd"
ADDRESS = "127.0.0.1"
STARTS = 5  # since somebody may take the port in between
TIME_LIMIT = 30  # seconds
# Of root, sshd wants this folder, which only the system's own makes; so it gets a /run of its own.
OWN_RUN = "mount -t tmpfs -o mode=755 tmpfs /run && mkdir /run/sshd && exec \"$@\""
CONFIGURATION = """
ListenAddress {address}:{port}
HostKey {folder}/host_key
AuthorizedKeysFile {folder}/user_key.pub
AllowUsers {user}
AuthenticationMethods publickey
PermitRootLogin prohibit-password
StrictModes no
UsePAM no
PidFile none
PermitTTY no
PermitUserRC no
PermitUserEnvironment no
DisableForwarding yes
UseDNS no
SetEnv HOME={folder}/home
Subsystem sftp internal-sftp
"""


def can_run():
    """Whether sshd can be run here: by root only where there are mount namespaces."""
    return os.getuid() != 0 or subprocess.run([*_own_run(), "true"], check=False, capture_output=True).returncode == 0


class SshServer:
    """Runs as long as the `with` block; all its files are in the folder. Its users' home is there as well."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        (self.folder / "home").mkdir(parents=True)
        self.port = None
        self._process = None

    def __enter__(self):
        for key in ("host_key", "user_key"):
            _run("ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-C", key, "-f", str(self.folder / key))
        for _ in range(STARTS):
            if self._starts():
                return self
        raise AssertionError(f"sshd does not start: {self.log()}")

    def __exit__(self, *_):
        self._process.terminate()
        self._process.wait(TIME_LIMIT)

    def log(self):
        return (self.folder / "log").read_text()

    def variables(self):
        """How Ansible reaches it: with its own key and list of known hosts, and nothing of the user's settings."""
        options = {
            "UserKnownHostsFile": self.folder / "known_hosts", "GlobalKnownHostsFile": "none",
            "StrictHostKeyChecking": "yes", "UpdateHostKeys": "no", "IdentitiesOnly": "yes", "IdentityAgent": "none",
            "ControlMaster": "no", "ControlPath": "none"}
        return {
            "ansible_connection": "ssh", "ansible_python_interpreter": "/usr/bin/python3",
            "ansible_host": ADDRESS, "ansible_port": self.port,
            "ansible_user": getpass.getuser(), "ansible_ssh_private_key_file": str(self.folder / "user_key"),
            "ansible_ssh_args": " ".join(["-F none", *(f"-o {name}={value}" for name, value in options.items())]),
            "ansible_ssh_use_tty": False}

    def _starts(self):
        with socket.socket() as free:
            free.bind((ADDRESS, 0))
            self.port = free.getsockname()[1]
        configuration = self.folder / "sshd_config"
        configuration.write_text(CONFIGURATION.format(
            address=ADDRESS, port=self.port, folder=self.folder, user=getpass.getuser()))
        key = " ".join((self.folder / "host_key.pub").read_text().split()[:2])
        (self.folder / "known_hosts").write_text(f"[{ADDRESS}]:{self.port} {key}\n")
        command = [SSHD, "-D", "-E", str(self.folder / "log"), "-f", str(configuration)]
        # pylint: disable=consider-using-with  # __exit__ ends it
        self._process = subprocess.Popen([*(_own_run() if os.getuid() == 0 else []), *command],
                                         stdin=subprocess.DEVNULL, cwd=self.folder)
        end = time.monotonic() + TIME_LIMIT
        while self._process.poll() is None and time.monotonic() < end:
            with contextlib.suppress(OSError), socket.create_connection((ADDRESS, self.port), timeout=1) as connection:
                if connection.recv(4) == b"SSH-" and self._process.poll() is None:
                    return True
            time.sleep(0.02)
        self._process.kill()
        self._process.wait()
        return False


def _own_run():
    return ["/usr/bin/unshare", "--mount", "--propagation", "private", "--", "/bin/sh", "-c", OWN_RUN, "sh"]


def _run(*command):
    subprocess.run(command, check=True, capture_output=True, timeout=TIME_LIMIT)
