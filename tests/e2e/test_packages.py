"""The packages: what lies in them, that they are alike whenever they are made, and that each can be installed into a
clean system, used, and removed without a trace. `scripts/package` has to have made them."""

import gzip
import json
import os
import shutil
import stat
import struct
import subprocess
import zipfile

import pytest

from clean_root import CleanRoot, needed_by
from program import LIBRARY, PLATFORMS, ROOT, WINE, finish
from test_version import VERSION

PACKAGES = ROOT / "build" / "packages"
PROGRAM_PACKAGE = PACKAGES / f"tavrocli_{VERSION}_amd64.deb"
SIMULATOR_PACKAGE = PACKAGES / f"tavrocli-simulator_{VERSION}_amd64.deb"
LINUX_PACKAGE = PACKAGES / f"tavrocli-linux_{VERSION}_amd64.deb"
DEBS = (PROGRAM_PACKAGE, SIMULATOR_PACKAGE, LINUX_PACKAGE)
NAMES = ("tavrocli", "tavrocli-simulator", "tavrocli-linux")
FLEET_PACKAGE = PACKAGES / f"ansible-collection-tavro_{VERSION}_all.deb"
ALL_DEBS = (*DEBS, FLEET_PACKAGE)
ZIP_FOLDER = f"tavrocli-{VERSION}-windows-x64"
ZIP = PACKAGES / f"{ZIP_FOLDER}.zip"
TITLE = f"Tavro Converged Network Adapter CLI({VERSION})"
REFUSAL = "tavrocli: cannot load /usr/lib/tavrocli/tavro.dll: cannot open shared object file: No such file or directory\n"


@pytest.fixture(autouse=True)
def packages_are_made():
    missing = [str(file) for file in (*ALL_DEBS, ZIP) if not file.exists()]
    assert missing == [], "scripts/package makes them"


def paths_in(package):
    listing = subprocess.run(["dpkg-deb", "--fsys-tarfile", package], check=True, capture_output=True)
    names = subprocess.run(["tar", "-t"], input=listing.stdout, check=True, capture_output=True)
    return {name.removeprefix("./") for name in names.stdout.decode().splitlines() if not name.endswith("/")}


DOCUMENTS = {"install.md", "CHANGELOG.md", "SECURITY.md"} | {
    f"schemas/{path.name}" for path in (ROOT / "docs").glob("*.schema.json")} | {
    f"html/{path.stem}.html" for path in (ROOT / "docs" / "manual").glob("*.md") if path.stem != "README"} | {
    "html/index.html", "html/tavrohost.html", "html/linux.html"}


def test_what_each_package_holds():
    program, simulator, linux = map(paths_in, DEBS)
    assert program == {f"usr/share/doc/tavrocli/{name}" for name in DOCUMENTS} | {
        "usr/bin/tavrocli", "usr/lib/tavrocli/tavrocli", "usr/share/man/man1/tavrocli.1.gz",
        "usr/bin/tavrohost", "usr/lib/tavrocli/tavrohost", "usr/share/man/man1/tavrohost.1.gz",
        "usr/share/bash-completion/completions/tavrocli", "usr/share/bash-completion/completions/tavrohost",
        "usr/share/zsh/vendor-completions/_tavrocli",
        "usr/share/doc/tavrocli/examples/cnadiscovery.xml", "usr/share/doc/tavrocli/examples/tavrocli.ps1",
        "usr/share/doc/tavrocli/copyright", "usr/share/doc/tavrocli/changelog.gz",
    }
    assert simulator == {
        "usr/bin/tavrocli-rehearse", "usr/share/man/man1/tavrocli-rehearse.1.gz",
        "usr/share/bash-completion/completions/tavrocli-rehearse", "usr/share/zsh/vendor-completions/_tavrocli-rehearse",
        "usr/lib/tavrocli/simulator/tavrocli", "usr/lib/tavrocli/simulator/tavro.dll",
        "usr/share/doc/tavrocli-simulator/simulator.md", "usr/share/doc/tavrocli-simulator/examples/default_host.json",
        "usr/share/doc/tavrocli-simulator/copyright", "usr/share/doc/tavrocli-simulator/changelog.gz",
    }
    assert linux == {
        "usr/bin/tavrocli-linux", "usr/share/man/man1/tavrocli-linux.1.gz",
        "usr/bin/tavrohost-linux", "usr/share/man/man1/tavrohost-linux.1.gz",
        "usr/lib/tavrocli/linux/tavrocli", "usr/lib/tavrocli/linux/tavrohost", "usr/lib/tavrocli/linux/tavro.dll",
        "usr/share/bash-completion/completions/tavrocli-linux", "usr/share/bash-completion/completions/tavrohost-linux",
        "usr/share/zsh/vendor-completions/_tavrocli-linux", "usr/share/doc/tavrocli-linux/linux.md",
        "usr/share/doc/tavrocli-linux/copyright", "usr/share/doc/tavrocli-linux/changelog.gz",
    }
    assert [name for name in program if name.endswith(".dll")] == []
    with zipfile.ZipFile(ZIP) as archive:
        names = {name.removeprefix(ZIP_FOLDER + "/") for name in archive.namelist()}
    assert names == {f"docs/{name}" for name in DOCUMENTS} | {
        "tavrocli.exe", "tavrohost.exe", "simulator/tavrocli-rehearse.exe", "simulator/tavro.dll",
        "simulator/simulator.md", "simulator/examples/default_host.json", "completions/tavrocli.ps1",
        "examples/cnadiscovery.xml", "docs/copyright.txt",
    }
    assert [name for name in names if name.lower().endswith(".dll")] == ["simulator/tavro.dll"]


def test_the_packages_tell_the_one_version():
    for package in ALL_DEBS:
        version = subprocess.run(["dpkg-deb", "-f", package, "Version"], check=True, capture_output=True, text=True)
        assert version.stdout == f"{VERSION}\n"


def test_lintian_finds_nothing_and_nothing_is_overridden():
    result = subprocess.run(["lintian", "--show-overrides", "--allow-root", *ALL_DEBS], capture_output=True, text=True)
    assert (result.stdout, result.returncode) == ("", 0), result.stderr


def test_packed_again_each_package_has_the_same_bytes(tmp_path):
    """Somewhere else, by a careful user in another time zone. Building again is tried by `scripts/package`, since it
    takes long."""
    subprocess.run(["bash", "-c", 'umask 077 && exec "$0" --repack "$1"', ROOT / "scripts" / "package", tmp_path / "again"],
                   env=os.environ | {"TZ": "Asia/Tokyo", "LC_ALL": "ja_JP.UTF-8"}, check=True, capture_output=True)
    for package in (*ALL_DEBS, ZIP):
        assert (tmp_path / "again" / package.name).read_bytes() == package.read_bytes(), package.name


@pytest.mark.platforms("native", "windows")
def test_the_programs_tell_neither_where_nor_when_they_were_built(platform):
    for name in (platform.program, platform.tool, LIBRARY):
        content = (platform.folder / "bin" / name).read_bytes()
        assert content.count(str(ROOT).encode()) == 0
        if platform.is_windows:
            header = struct.unpack_from("<I", content, 0x3C)[0]
            assert struct.unpack_from("<I", content, header + 8) == (0,)


def test_the_package_for_this_host_names_the_libraries_that_it_needs():
    assert {"libnl-3-200", "libpci3", "libiscsi7"} <= set(needed_by(LINUX_PACKAGE))


@pytest.fixture(scope="module")
def clean_root(tmp_path_factory):
    return CleanRoot(tmp_path_factory.mktemp("clean") / "root", DEBS)


def install(root, *packages):
    root.dpkg("--install", *(f"/packages/{package.name}" for package in packages))


def lines_of(result):
    assert (result.stderr, result.returncode) == ("", 0)
    return [line.strip() for line in result.stdout.splitlines()]


def test_the_program_installed_used_and_removed(clean_root):
    before = clean_root.files()
    install(clean_root, PROGRAM_PACKAGE)
    result = clean_root.run("tavrocli", "-about")
    assert (result.stdout, result.stderr, result.returncode) == ("", REFUSAL, 0)
    assert lines_of(clean_root.run("tavrohost", "--version")) == [f"tavrohost {VERSION}"]
    # The library of the adapters' maker is put where the message says.
    library = clean_root.folder / "usr" / "lib" / "tavrocli" / LIBRARY
    shutil.copy(PLATFORMS["native"].folder / "bin" / LIBRARY, library)
    assert TITLE in lines_of(clean_root.run("tavrocli", "-about"))
    library.unlink()
    (clean_root.folder / "root" / "tavrocli.log").unlink()
    clean_root.dpkg("--purge", "tavrocli")
    assert clean_root.files() == before


def test_the_simulator_installed_used_and_removed(clean_root):
    before = clean_root.files()
    install(clean_root, SIMULATOR_PACKAGE)
    installed = clean_root.files()
    assert "Host Name : demo-host" in lines_of(clean_root.run("tavrocli-rehearse", "-showadapter"))
    lines_of(clean_root.run("tavrocli-rehearse", "-iscsi", "-isns", "-add", "192.0.2.77"))
    assert "192.0.2.77" in " ".join(lines_of(clean_root.run("tavrocli-rehearse", "-iscsi", "-isns", "-listall")))
    assert clean_root.run("tavrocli", "-about").returncode == 127
    # What the user has from it is the user's.
    home = clean_root.folder / "root"
    (home / "tavrocli.log").unlink()
    assert (home / ".local/share/tavro/host.json").exists()
    shutil.rmtree(home / ".local")
    assert clean_root.files() == installed
    clean_root.dpkg("--purge", "tavrocli-simulator")
    assert clean_root.files() == before


def test_the_package_for_this_host_installed_used_and_removed(clean_root):
    before = clean_root.files()
    install(clean_root, LINUX_PACKAGE)
    pair = "ip link add va address 02:00:5e:10:00:01 type veth peer name vb address 02:00:5e:10:00:02"
    shown = lines_of(clean_root.run("tavrocli-linux", "-showadapter", before=pair))
    assert [line for line in shown if "Port Identifier" in line] == [
        f"Port Identifier                   : 02-00-5E-10-00-0{end}" for end in (1, 1, 2, 2)]
    captured = clean_root.run("tavrohost-linux", "capture", "-o", "-", before=pair)
    assert {adapter["name"] for adapter in json.loads(captured.stdout)["adapters"]} == {"veth va", "veth vb"}
    assert clean_root.run("tavrocli", "-about").returncode == 127
    (clean_root.folder / "root" / "tavrocli.log").unlink()
    # What the library keeps is root's, stays when the package goes, and goes with its last trace.
    state = clean_root.folder / "var" / "lib" / "tavrocli"
    assert not state.exists()
    reset = lines_of(clean_root.run("tavrocli-linux", "-ethernet", "02-00-5E-10-00-01", "-resetstat", before=pair))
    assert "The statistics were reset." in reset
    assert (stat.S_IMODE(state.stat().st_mode), stat.S_IMODE((state / "state.json").stat().st_mode)) == (0o700, 0o600)
    (clean_root.folder / "root" / "tavrocli.log").unlink()
    clean_root.dpkg("--remove", "tavrocli-linux")
    assert (state / "state.json").exists()
    clean_root.dpkg("--purge", "tavrocli-linux")
    assert clean_root.files() == before


def test_the_program_finds_neither_library_of_the_others(clean_root):
    before = clean_root.files()
    install(clean_root, *DEBS)
    assert clean_root.run("tavrocli", "-showadapter").stderr == REFUSAL
    capture = ["tavrohost", "capture", "-o", "-"]
    assert clean_root.run(*capture).returncode == 2
    assert clean_root.run(*capture, "--library", f"/usr/lib/tavrocli/simulator/{LIBRARY}").returncode == 0
    shutil.rmtree(clean_root.folder / "root" / ".local")  # the simulated host, whose counters were read
    assert TITLE in lines_of(clean_root.run("tavrocli-rehearse", "-about"))
    assert TITLE in lines_of(clean_root.run("tavrocli-linux", "-about"))
    (clean_root.folder / "root" / "tavrocli.log").unlink()
    clean_root.dpkg("--purge", *NAMES)
    assert clean_root.files() == before


def test_the_manual_pages_are_well_formed_where_they_are_installed(clean_root):
    install(clean_root, *DEBS)
    for name in ("tavrocli.1", "tavrohost.1", "tavrocli-rehearse.1", "tavrocli-linux.1", "tavrohost-linux.1"):
        page = clean_root.folder / "tmp" / name
        page.write_bytes(gzip.decompress((clean_root.folder / "usr/share/man/man1" / f"{name}.gz").read_bytes()))
        # On standard error it misses the database that speeds up searching for pages.
        result = clean_root.run("mandoc", "-T", "lint", f"/tmp/{name}")
        assert (result.stdout, result.returncode) == ("", 0)
        page.unlink()
    clean_root.dpkg("--purge", *NAMES)


def test_installed_from_the_build_used_and_removed(tmp_path):
    build, place = PLATFORMS["native"].folder, tmp_path / "usr"
    subprocess.run(["cmake", "--install", build, "--prefix", place], check=True, capture_output=True)
    installed = {str(path.relative_to(tmp_path)) for path in place.rglob("*") if path.is_symlink() or path.is_file()}
    packed = {name.replace(".1.gz", ".1").replace("vendor-completions", "site-functions")
              for package in ALL_DEBS for name in paths_in(package)}
    assert installed == {name for name in packed if not name.endswith(("/copyright", "/changelog.gz"))}
    result = subprocess.run([place / "bin" / "tavrocli-rehearse", "-about"], cwd=tmp_path, capture_output=True, text=True)
    assert TITLE in lines_of(result)
    (tmp_path / "tavrocli.log").unlink()
    for path in (build / "install_manifest.txt").read_text(encoding="utf-8").splitlines():
        os.unlink(path)
    assert [path for path in tmp_path.rglob("*") if not path.is_dir()] == []


def tree(folder):
    return {str(path.relative_to(folder)): path.stat().st_mtime_ns for path in folder.rglob("*")}


def simulated_hosts():
    return list((ROOT / "build" / "wine").glob("drive_c/users/*/AppData/Local/Tavro"))


@pytest.mark.platforms("windows")
def test_the_zip_unpacked_used_and_removed(sandbox):
    place = sandbox.folder / "Program Files"
    with zipfile.ZipFile(ZIP) as archive:
        archive.extractall(place)
    sandbox.binaries = place / ZIP_FOLDER
    before = tree(place)
    result = sandbox.run(["-about"])
    assert (result.output, result.exit_code) == (b"", 0)
    assert result.errors.startswith(b"tavrocli: cannot load tavro.dll: ")
    assert sandbox.run_tool(["--version"]).output == f"tavrohost {VERSION}\n".encode()
    sandbox.write_script(None)
    # Wine tells %LOCALAPPDATA% itself; every other test names a host file of its own.
    for left in simulated_hosts():
        shutil.rmtree(left)
    environment = sandbox.environment(extra={"TAVROSIM_HOST": None})

    def rehearse(*arguments):
        command = [str(WINE), str(sandbox.binaries / "simulator" / "tavrocli-rehearse.exe"), *arguments]
        process = subprocess.Popen(command, cwd=sandbox.work, env=environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        output, errors = finish(process, None)
        assert (errors, process.returncode) == (b"", 0)
        return output

    assert b"Host Name : demo-host" in rehearse("-showadapter")
    rehearse("-iscsi", "-isns", "-add", "192.0.2.77")
    assert b"192.0.2.77" in rehearse("-iscsi", "-isns", "-listall")
    (data,) = simulated_hosts()
    assert (data / "host.json").exists()
    assert tree(place) == before
    # What the user has from it is the user's: the log, and the simulated host.
    (sandbox.work / "tavrocli.log").unlink()
    shutil.rmtree(data)
    shutil.rmtree(place)
    assert [*sandbox.work.iterdir(), *simulated_hosts()] == []
