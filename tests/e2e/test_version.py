"""The version is stated once; the programs, the simulator and what Windows shows of their files tell the same."""

import re
import struct
import xml.etree.ElementTree

import pytest

from program import ROOT

VERSION = "5.2.3.1"
RESOURCE_VERSION, RESOURCE_MANIFEST = 16, 24
ASSEMBLY = "{urn:schemas-microsoft-com:asm.v1}"
RIGHTS = "{urn:schemas-microsoft-com:asm.v3}"
SYSTEMS = "{urn:schemas-microsoft-com:compatibility.v1}"
SUPPORTED_SYSTEMS = {  # the numbers by which Windows knows the releases; 10 stands for 11 as well
    "8": "{4a2f28e3-53b9-4441-ba9c-d69d4a4a6e38}",
    "8.1": "{1f676c76-80e1-4239-95bb-83d0f6d0da78}",
    "10": "{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}",
}


RESOURCES = {  # by file: what Windows calls it, whether it is a program (1) or a library (2), what the manifest calls it
    "tavrocli.exe": ("tavrocli", 1, "Tavro.TavroCli"),
    "tavrohost.exe": ("tavrohost", 1, "Tavro.TavroHost"),
    "tavro.dll": ("tavro", 2, None),
}
NO_SOURCES = {"build", "docs", "tests", "CHANGELOG.md"}
# The simulated adapters have a driver, of the same version in hosts that do not say otherwise.
DRIVER_VERSIONS = {"simulator/host/former_hardware.cpp", "simulator/host/hardware.h"}


def test_the_version_is_stated_once():
    names = [path for path in ROOT.iterdir() if path.name not in NO_SOURCES and not path.name.startswith(".")]
    files = [file for path in names for file in ([path] if path.is_file() else path.rglob("*")) if file.is_file()]
    numbers = re.compile(re.sub(r"\\\.", "[.,] ?", re.escape(VERSION)).encode())
    found = {str(file.relative_to(ROOT)): len(numbers.findall(file.read_bytes())) for file in files}
    assert {name: count for name, count in found.items() if count and name not in DRIVER_VERSIONS} == {"CMakeLists.txt": 1}
    assert f"project(tavrocli VERSION {VERSION} " in (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")


def test_the_programs_tell_it(sandbox):
    about = sandbox.run(["-about"])
    assert f"Tavro Converged Network Adapter CLI({VERSION})" in [line.strip() for line in about.output.decode().splitlines()]
    version = sandbox.run_tool(["--version"])
    assert (version.output, version.errors, version.exit_code) == (f"tavrohost {VERSION}\n".encode(), b"", 0)


def test_the_log_begins_with_the_simulator_its_version_and_the_host_file(sandbox):
    log = sandbox.work / "tavrocli.log"
    sandbox.write_script(None)
    sandbox.run(["-about", "-debug"])
    first = log.read_text(encoding="utf-8").splitlines()
    assert re.fullmatch(rf"\S+ \S+ UTC  Simulator {VERSION}, built-in host", first[0])
    sandbox.host.write_text('{"name": "small", "adapters": []}', encoding="utf-8")
    sandbox.run(["-about", "-debug"])
    second = log.read_text(encoding="utf-8").splitlines()[len(first):]
    assert second[0].endswith(f'  Simulator {VERSION}, host file "{sandbox.platform.path(sandbox.host)}"')
    assert " Initialize debug 1 " in second[1]


def test_the_details_of_a_failed_initialization_name_the_simulator_its_version_and_the_host_file(sandbox):
    sandbox.write_script(None)
    host = sandbox.platform.path(sandbox.host)
    sandbox.host.write_text('{"name": 5, "adapters": []}', encoding="utf-8")
    result = sandbox.run(["-showadapter"])
    details = f'Details: [{host}: name: a text is wanted, not a number; Simulator {VERSION}, host file "{host}"]'
    assert result.output.decode().splitlines().count(details) == 2, result.output.decode()


@pytest.mark.platforms("windows")
@pytest.mark.parametrize("file", RESOURCES)
def test_the_version_resource(platform, file):
    name, kind, _ = RESOURCES[file]
    resource = read_resource((platform.folder / "bin" / file).read_bytes(), RESOURCE_VERSION)
    fixed = resource.index(struct.pack("<I", 0xFEEF04BD))
    numbers = struct.unpack_from("<4I", resource, fixed + 8)  # of the file, then of the product
    assert [f"{high >> 16}.{high & 0xFFFF}.{low >> 16}.{low & 0xFFFF}"
            for high, low in (numbers[:2], numbers[2:])] == [VERSION, VERSION]
    assert struct.unpack_from("<I", resource, fixed + 36) == (kind,)
    texts = {"FileVersion": VERSION, "ProductVersion": VERSION, "InternalName": name, "OriginalFilename": file,
             "ProductName": "Tavro CLI", "CompanyName": "Tavro"}
    assert {name: version_text(resource, name) for name in texts} == texts
    assert ("Simulated" in version_text(resource, "FileDescription")) == (file == "tavro.dll")


@pytest.mark.platforms("windows")
@pytest.mark.parametrize("file", [file for file, (_, _, identity) in RESOURCES.items() if identity])
def test_the_manifest(platform, file):
    resource = read_resource((platform.folder / "bin" / file).read_bytes(), RESOURCE_MANIFEST)
    manifest = xml.etree.ElementTree.fromstring(resource)
    identity = manifest.find(ASSEMBLY + "assemblyIdentity")
    assert identity.get("name") == RESOURCES[file][2]
    assert identity.get("version") == VERSION
    assert identity.get("processorArchitecture") == "amd64"
    level = manifest.find(f".//{RIGHTS}requestedExecutionLevel")
    assert (level.get("level"), level.get("uiAccess")) == ("asInvoker", "false")
    systems = {system.get("Id") for system in manifest.iter(SYSTEMS + "supportedOS")}
    assert systems == set(SUPPORTED_SYSTEMS.values())


def version_text(resource, name):
    """The value of a string of the version resource; it starts at the next multiple of four bytes."""
    key = (name + "\0").encode("utf-16-le")
    start = (resource.index(key) + len(key) + 3) // 4 * 4
    return resource[start:].decode("utf-16-le").split("\0", 1)[0]


def read_resource(program, kind):
    """The content of the first resource of a kind (a number) in a program file of Windows."""
    header = struct.unpack_from("<I", program, 0x3C)[0]
    section_count = struct.unpack_from("<H", program, header + 6)[0]
    optional_size = struct.unpack_from("<H", program, header + 20)[0]
    sections = header + 24 + optional_size
    for section in range(sections, sections + 40 * section_count, 40):
        name, _, address, _, base = struct.unpack_from("<8s4I", program, section)
        if name.rstrip(b"\0") == b".rsrc":
            break
    else:
        raise AssertionError("the program has no resources")

    def entries(directory):
        named, numbered = struct.unpack_from("<2H", program, base + directory + 12)
        start = base + directory + 16
        return [struct.unpack_from("<2I", program, start + 8 * entry) for entry in range(named + numbered)]

    directory = dict(entries(0))[kind]
    while directory & 0x80000000:  # a folder: of kinds, then of names, then of languages
        directory = entries(directory & 0x7FFFFFFF)[0][1]
    content, size = struct.unpack_from("<2I", program, base + directory)
    return program[base + content - address:][:size]
