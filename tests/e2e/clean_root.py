"""A folder that is a small Debian system of its own: dpkg, and what the packages to be tried say that they need. It is
made of the files of this system's packages, so that a library that a package needs and does not name is missing there."""

import os
import pathlib
import re
import shutil
import subprocess

import pytest

from program import ROOT

AS_ROOT = ROOT / "scripts" / "lib" / "as_root"
DPKG = pathlib.Path("/var/lib/dpkg")
# What dpkg needs to be run, beyond what it names itself; and what checks manual pages.
TOOLS = ("dpkg", "dash", "tar", "diffutils", "coreutils", "libc-bin", "mandoc")
MERGED_FOLDERS = ("bin", "sbin", "lib", "lib64")
SKIPPED = re.compile(r"/usr/share/(doc|man|locale|info|lintian|bug)(/|$)|/\.$")
NEED = "not run here: needs to mount and to change the root, as root or in a user namespace"
ENTER = 'eval "$2" && mount --rbind /proc "$1/proc" && exec chroot "$1" env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin ' \
        'LC_ALL=C.UTF-8 sh -c \'cd "$HOME" && exec "$@"\' sh "${@:3}"'


def needed_by(package_file):
    """The names of the packages that a package file depends on."""
    field = subprocess.run(["dpkg-deb", "-f", package_file, "Depends"], check=True, capture_output=True, text=True)
    return alternatives(field.stdout)


def alternatives(field):
    """The names in a field of dependencies, versions left out; the first one where several would do."""
    return [re.match(r"[^\s(:|]+", name.strip()).group() for name in field.split(",") if name.strip()]


def installed_packages():
    """The records of this system's packages, by name."""
    text = (DPKG / "status").read_text(encoding="utf-8")
    records = (record for record in text.split("\n\n") if "\nStatus: install ok installed\n" in record)
    return {re.match(r"Package: (\S+)", record).group(1): record for record in records}


def providers(installed):
    """By the name of what is no package of its own, the package that provides it."""
    return {provided: name for name, record in installed.items()
            for field in re.findall(r"^Provides: (.*)$", record, re.MULTILINE) for provided in alternatives(field)}


def with_dependencies(names, installed):
    """The names, and those of all packages that they need."""
    chosen, waiting, provider = set(), list(names), providers(installed)
    while waiting:
        name = waiting.pop()
        name = name if name in installed else provider[name]
        if name in chosen:
            continue
        chosen.add(name)
        for field in re.findall(r"^(?:Pre-)?Depends: (.*)$", installed[name], re.MULTILINE):
            waiting += alternatives(field)
    return sorted(chosen)


class CleanRoot:
    """The system lies in `folder`, which is empty or does not exist yet; `package_files` are not installed, but can be:
    they lie in its folder /packages."""

    def __init__(self, folder, package_files):
        self.folder = folder
        for name in MERGED_FOLDERS:
            (folder / "usr" / name).mkdir(parents=True)
            (folder / name).symlink_to(f"usr/{name}")
        for name in ("proc", "tmp", "root", "packages", "var/log", "var/lib/dpkg/info", "var/lib/dpkg/updates"):
            (folder / name).mkdir(parents=True)
        installed = installed_packages()
        needed = [name for file in package_files for name in needed_by(file)]
        names = with_dependencies([*TOOLS, *needed], installed)
        (folder / "var/lib/dpkg/status").write_text("\n\n".join(installed[name] for name in names) + "\n", encoding="utf-8")
        for name in names:
            self._take_over(name)
        for file in package_files:
            shutil.copy(file, folder / "packages")
        if subprocess.run(self._command(":", "true"), capture_output=True).returncode != 0:
            pytest.skip(NEED)

    def _take_over(self, name):
        """Copies the files of a package of this system, and dpkg's list of them."""
        lists = [file for file in (DPKG / "info" / f"{name}.list", *DPKG.glob(f"info/{name}:*.list")) if file.exists()]
        shutil.copy(lists[0], self.folder / "var/lib/dpkg/info")
        for path in lists[0].read_text(encoding="utf-8").splitlines():
            target = self.folder / path.lstrip("/")
            if SKIPPED.search(path) or not os.path.lexists(path) or os.path.lexists(target):
                continue
            if os.path.isdir(path) and not os.path.islink(path):
                target.mkdir(parents=True)
            else:
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy2(path, target, follow_symlinks=False)

    def _command(self, before, *command):
        return [AS_ROOT, "unshare", "--mount", "--net", "bash", "-c", ENTER, "bash", self.folder, before, *command]

    def run(self, *command, before=":"):
        """Runs a command in this system, as its root, in the home folder /root. It has a network of its own, with
        nothing in it but what a text for the shell, run by the system around it, has put there `before`."""
        return subprocess.run(self._command(before, *command), capture_output=True, text=True, stdin=subprocess.DEVNULL)

    def dpkg(self, *arguments):
        result = self.run("dpkg", *arguments)
        assert result.returncode == 0, result.stdout + result.stderr
        assert "warning" not in result.stderr, result.stderr

    def files(self):
        """All that lies there, each with what it is: without dpkg's own records and logs, but with the list of the
        packages that dpkg knows."""
        found = {"packages": self.run("dpkg-query", "-W").stdout}
        for path in self.folder.rglob("*"):
            name = str(path.relative_to(self.folder))
            if not name.startswith(("var/lib/dpkg/", "var/log/")):
                status = path.lstat()
                is_folder = path.is_dir() and not path.is_symlink()
                found[name] = (status.st_mode, None if is_folder else (status.st_size, status.st_mtime_ns))
        return found
