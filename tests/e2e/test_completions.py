"""The completion scripts, run by the shells that they are for; that of PowerShell is parsed."""

import json
import os
import re
import shlex
import shutil
import subprocess
import time

import pytest

from completion_forms import all_macs, ports, wanted_offers
from program import ROOT, TESTS, Sandbox
from terminal import Terminal

pytestmark = pytest.mark.platforms("native")
NEEDS_GRAMMAR = "not run here: needs node and tree-sitter-powershell from npm"
TIME_LIMIT_OF_LISTING = 5  # seconds


class ShellPlace(Sandbox):
    """A place where shells are run, with the programs on the path."""

    def __init__(self, platform, folder):
        super().__init__(platform, folder)
        self.scripts = platform.folder / "completions"
        self.programs = platform.folder / "bin"
        self.temporary = self.folder / "temporary"
        self.temporary.mkdir()

    def command(self, arguments=()):
        return list(arguments)

    def environment(self, *arguments, **keywords):
        path = f"{self.programs}:/usr/bin:/bin"
        return super().environment(*arguments, **keywords) | {
            "PATH": path, "TMPDIR": str(self.temporary), "PS1": "$ ", "TERM": "xterm"}

    def run_shell(self, shell, text):
        """What the shell prints that runs a text; it says nothing on standard error."""
        run = subprocess.run([shell], input=text, cwd=self.work, env=self.environment(), capture_output=True, text=True,
                             check=True, timeout=120)
        assert run.stderr == ""
        return run.stdout

    def check_is_clean(self):
        assert (os.listdir(self.work), os.listdir(self.temporary)) == ([], [])

    def put_program(self, text):
        """Puts a shell script into the program's place."""
        self.programs = self.folder / "programs"
        self.programs.mkdir()
        (self.programs / "tavrocli").write_text("#!/bin/sh\n" + text, encoding="utf-8")
        (self.programs / "tavrocli").chmod(0o755)


@pytest.fixture
def place(platform, tmp_path):
    return ShellPlace(platform, tmp_path)


def offers_of_bash(place, lines):
    """What is offered at the end of each line. Readline parts words at colons; so does this."""
    text = f"source {shlex.quote(str(place.scripts / 'tavrocli'))}\n"
    for line in lines:
        words = re.findall(r":+|[^\s:]+", line) + ([""] if line.endswith(" ") else [])
        text += (f"COMP_LINE={shlex.quote(line)} COMP_POINT=${{#COMP_LINE}} COMP_WORDS=({shlex.join(words)}) "
                 f"COMP_CWORD={len(words) - 1}\n_tavrocli {shlex.quote(words[0])}\n"
                 '(IFS=$\'\\t\'; printf "%s\\n" "${COMPREPLY[*]}")\n')
    answers = [[word for word in answer.split("\t") if word] for answer in place.run_shell("bash", text).splitlines()]
    return dict(zip(lines, answers, strict=True))


# A key of the line editor lists what may follow each line of a file, as the Tab key does at its end.
PROBE_OF_ZSH = r"""
fpath=($SCRIPTS $fpath)
autoload -Uz compinit && compinit -u -D
zstyle ':completion:*' list-prompt ''
LISTMAX=1000
compadd() {
    local -a found
    builtin compadd -O found "$@"
    print -r -- "${(@pj:\t:)found}" >>$PROBED.new
    builtin compadd "$@"
}
probe() {
    local line
    for line in "${(@f)$(<$PROBED.lines)}"; do
        BUFFER=$line CURSOR=$#line
        print -r -- "> $line" >>$PROBED.new
        zle list-choices
    done
    BUFFER=
    mv $PROBED.new $PROBED
}
zle -N probe
bindkey '^X' probe
print ready to probe
"""


def offers_of_zsh(place, lines):
    probed = place.folder / "probed"
    start = place.folder / "probe.zsh"
    start.write_text(PROBE_OF_ZSH, encoding="utf-8")
    probed.with_suffix(".lines").write_text("\n".join(lines), encoding="utf-8")
    with Terminal(place, ["zsh", "-f", "-i"], env={"PROBED": str(probed), "SCRIPTS": str(place.scripts)}) as shell:
        shell.type(f"source {start}\r")
        shell.wait_for("ready to probe")
        shell.type("\x18")
        shell.wait_until(lambda _: probed.exists())
    answers = {}
    for line in probed.read_text(encoding="utf-8").splitlines():
        if line.startswith("> "):
            answers[line[2:]] = []
        else:
            answers[list(answers)[-1]] += [word for word in line.split("\t") if word]
    assert list(answers) == list(lines)
    return answers


SHELLS = {"bash": offers_of_bash, "zsh": offers_of_zsh}
each_shell = pytest.mark.parametrize("shell", list(SHELLS))


def as_sets(offers):
    for line, words in offers.items():
        assert len(words) == len(set(words)), f"offered twice behind {line!r}"
    return {line: set(words) for line, words in offers.items()}


def trimmed(offers, line):
    """What bash is told to put behind the last colon of the word at the end of the line."""
    typed = line.rsplit(" ", 1)[1]
    return {offer[typed.rfind(":") + 1:] for offer in offers if offer.startswith(typed)}


@each_shell
def test_every_beginning_of_every_command(place, shell):
    usage = subprocess.run(["tavrocli", "-help"], env=place.environment(), cwd=place.folder, capture_output=True,
                           text=True, check=True).stdout
    wanted = {" ".join(["tavrocli", *typed, ""]): offers for typed, offers in wanted_offers(usage).items()}
    assert {"-about", "-help", "-iscsi", "-npar"} < wanted["tavrocli "]
    assert as_sets(SHELLS[shell](place, wanted)) == wanted
    place.check_is_clean()


@each_shell
def test_a_word_that_has_been_begun(place, shell):
    fcoe = "tavrocli -fcoe 10:00:02:00:5E:"
    wanted = {
        "tavrocli -i": {"-import", "-iscsi"},
        "tavrocli -about": {"-about"},
        "tavrocli -x": set(),
        "tavrocli -iscsi 02-00-5E-20": {"02-00-5E-20-00-04", "02-00-5E-20-00-06"},
        "tavrocli -iscsi -": {"-getinitiator", "-setinitiator", "-isns"},
        "tavrocli -npar 02-00-5E-30-00-00 -s": {"-set"},
        "tavrocli -x 02-00-5E-10-00-02 ": set(),
        "tavrocli -about -debug ": set(),
        "tavrocli -iscsi -setinitiator iqn.2015-01.com.example:a -m": {"-mp", "-mutualchap"},
        "tavrocli -iscsi -setinitiator iqn.2015-01.com.example:a -mp -hd -m": {"-mutualchap"},
        fcoe: ports("fcoe"),
        fcoe + "20": {"10:00:02:00:5E:20:00:05", "10:00:02:00:5E:20:00:07"},
    }
    if shell == "bash":
        wanted |= {line: trimmed(wanted[line], line) for line in (fcoe, fcoe + "20")}
    assert as_sets(SHELLS[shell](place, wanted)) == wanted
    place.check_is_clean()


@each_shell
def test_tavrohost(place, shell):
    commands = ("capture", "rehearse", "run", "diff", "check", "restart", "schema")
    wanted = {"tavrohost ": {*commands, "--help", "--version"}, "tavrohost r": {"run", "rehearse", "restart"}}
    for command in commands:
        told = subprocess.run(["tavrohost", command, "--help"], env=place.environment(), cwd=place.folder,
                              capture_output=True, text=True, check=True).stdout
        options = set(re.findall(r"^ +(?:-\w,)?(--[\w-]+)", told, re.MULTILINE))
        assert "--help" in options
        wanted[f"tavrohost {command} -"] = options | ({"--"} if "behind --" in told else set())
    wanted |= {
        "tavrohost schema h": {"host"},
        "tavrohost run --json --js": set(),
        "tavrohost run --timeout ": set(),
        "tavrohost unknown ": set(),
        "tavrohost run -- -npar ": all_macs(),
        "tavrohost rehearse --json -- -ethernet 02-00-5E-10-00-00 -gett": {"-gettcpip"},
        "tavrohost diff --json -- -npar ": set(),
    }
    assert len(wanted["tavrohost run -"]) == 7
    # A short name needs no completion; what stands behind it does. Zsh looks for files in several ways, each asked here.
    (place.work / "twin.json").write_text("", encoding="utf-8")
    if shell == "bash":
        wanted |= {"tavrohost capture -o tw": {"twin.json"}, "tavrohost capture -o ": {"twin.json"}}
    assert as_sets(SHELLS[shell](place, wanted)) == wanted


@each_shell
def test_files_of_tavrohost(place, shell):
    for name in ("before one.json", "before two.json", "other.json"):
        (place.work / name).write_text("", encoding="utf-8")
    with shell_on_terminal(place, shell) as terminal:
        for line in ("check ot", "run --plan ot", "capture -o ot"):
            terminal.type(f"tavrohost {line}\t")
            terminal.wait_for(f"tavrohost {line}her.json")
            terminal.type("\x15")
        for begun, shared, whole in (
            ("check be", "check before\\", "check before\\ one.json"),
            ("run --plan \"be", "run --plan \"before", "run --plan \"before one.json"),
            ("diff 'be", "diff 'before", "diff 'before one.json"),
        ):
            terminal.type(f"tavrohost {begun}\t")
            terminal.wait_for(f"tavrohost {shared}")
            terminal.type("o\t")
            terminal.wait_for(f"tavrohost {whole}")
            terminal.type("\x15")


def shell_on_terminal(place, shell):
    """The shell as a user starts it, with the completion in place."""
    terminal = Terminal(place, [shell, "--norc", "-i"] if shell == "bash" else [shell, "-f", "-i"])
    terminal.type(f"source {shlex.quote(str(place.scripts / 'tavrocli'))}; echo star''ted\r" if shell == "bash" else
                  f"fpath=({shlex.quote(str(place.scripts))} $fpath); autoload -Uz compinit; compinit -u -D;"
                  " echo star''ted\r")
    terminal.wait_for("started")
    return terminal


@each_shell
def test_the_tab_key(place, shell):
    with shell_on_terminal(place, shell) as terminal:
        terminal.type("tavrocli -fc\t")
        terminal.wait_for("tavrocli -fcoe")
        terminal.type("1\t")
        terminal.wait_for("tavrocli -fcoe 10:00:02:00:5E:")
        terminal.type("1\t")
        terminal.wait_for("tavrocli -fcoe 10:00:02:00:5E:10:00:0")
        terminal.type("4\t-pi\t\t")
        terminal.wait_for("tavrocli -fcoe 10:00:02:00:5E:10:00:04 -pi")
        terminal.type("\x15tavrocli -npar 02-00-5E-30-00-01 \ts\t\r")
        terminal.wait_for("tavrocli -npar 02-00-5E-30-00-01 -set")
        terminal.wait_for("The adapter")
    assert os.listdir(place.temporary) == []


def test_zsh_names_the_operand(place):
    with shell_on_terminal(place, "zsh") as terminal:
        terminal.type("tavrocli -iscsi 02-00-5E-10-00-02 -portal -add 192.0.2.1 \t")
        terminal.wait_for("Port Number")


@each_shell
@pytest.mark.parametrize("library", ["rehearse", "linux"])
def test_the_programs_of_other_packages(place, shell, library):
    """No program is there by its usual name."""
    programs = place.folder / "programs"
    programs.mkdir()
    for program in ("tavrocli", "tavrohost"):
        (programs / f"{program}-{library}").symlink_to(place.programs / program)
    place.programs = programs
    with shell_on_terminal(place, shell) as terminal:
        terminal.type(f"tavrocli-{library} -isc\t02-00-5E-10\t")
        terminal.wait_for(f"tavrocli-{library} -iscsi 02-00-5E-10-00-0")
        if library == "linux":
            terminal.type("\x15tavrohost-linux rehearse -- -isc\t02-00-5E-10\t")
            terminal.wait_for("tavrohost-linux rehearse -- -iscsi 02-00-5E-10-00-0")


def test_in_zsh_the_next_completer_is_asked_when_nothing_fits(place):
    with shell_on_terminal(place, "zsh") as terminal:
        terminal.type("zstyle ':completion:*' completer _complete _approximate\r")
        terminal.type("tavrocli -abuot\t")
        terminal.wait_for("tavrocli -about")


@each_shell
def test_the_program_is_run_as_it_is_typed(place, shell):
    (place.work / "tools").symlink_to(place.programs)
    place.programs = place.folder / "nothing"
    line = "tools/tavrocli -iscsi 02-00-5E-10"
    assert as_sets(SHELLS[shell](place, [line])) == {line: {"02-00-5E-10-00-02", "02-00-5E-10-00-03"}}
    assert os.listdir(place.work) == ["tools"]


@each_shell
def test_a_program_that_is_missing_or_fails(place, shell):
    place.programs = place.folder / "nothing"
    line = "tavrocli -ethernet "
    assert SHELLS[shell](place, [line]) == {line: []}
    place.put_program("echo no library >&2; exit 3\n")
    assert SHELLS[shell](place, [line]) == {line: []}
    place.check_is_clean()


LISTING = """\
[ "$LC_ALL" = C ] && [ "$*" = -showadapter ] && ! read line || exit
cat <<'END'
	-----------------
	   Host : Ethernet
	-----------------
	Number : 0
	Address : 02-00-5E-00-00-01
	Protocol : Ethernet
	Name : FCoE
	Identifier : 02-00-5E-00-00-01
	-----------------
	Number : 1
	Address : $(touch done)
	Protocol : Ethernet
	Name : a : b
	Identifier : `touch done`
	-----------------
	Number : 2
	Address : 02-00-5E-00-00-03
	Protocol : iSCSI
	Name : Ethernet
	Identifier : 02-00-5E-00-00-04
	-----------------
END
"""


@each_shell
def test_what_is_taken_from_the_listing(place, shell):
    """The rows count and not their titles, which another library words differently; and what is no address is not
    offered. For partitions and personalities the MAC address of the function is typed."""
    place.put_program(LISTING)
    wanted = {
        "tavrocli -ethernet ": {"02-00-5E-00-00-01"},
        "tavrocli -iscsi 0": {"02-00-5E-00-00-04"},
        "tavrocli -fcoe ": set(),
        "tavrocli -res ": {"02-00-5E-00-00-01", "02-00-5E-00-00-03"},
    }
    assert as_sets(SHELLS[shell](place, wanted)) == wanted
    place.check_is_clean()


@each_shell
def test_a_program_that_hangs(place, shell):
    place.put_program("echo $$ >>\"$HOME/started\"\nexec sleep 300\n")
    line = "tavrocli -res "
    start = time.monotonic()
    assert SHELLS[shell](place, [line]) == {line: []}
    assert TIME_LIMIT_OF_LISTING <= time.monotonic() - start < 60
    (number,) = (place.home / "started").read_text(encoding="utf-8").split()
    assert not os.path.exists(f"/proc/{number}")
    place.check_is_clean()


@pytest.fixture(scope="module")
def powershell_parser():
    """The parser with its grammar, got from npm in the versions that stand in its package.json."""
    folder = ROOT / "build" / "powershell_parser"
    folder.mkdir(parents=True, exist_ok=True)
    for name in ("powershell/package.json", "powershell/parse.mjs"):
        shutil.copy(TESTS / name, folder)
    if not shutil.which("node") or not shutil.which("npm"):
        pytest.skip(NEEDS_GRAMMAR)
    install = subprocess.run(
        ["npm", "install", "--ignore-scripts", "--no-audit", "--no-fund", "--no-package-lock", "--prefer-offline",
         "--fetch-retries=0", "--fetch-timeout=20000", "--loglevel=error"],
        cwd=folder, stdin=subprocess.DEVNULL, capture_output=True, text=True,
    )
    if install.returncode != 0:
        print(install.stderr)
        pytest.skip(NEEDS_GRAMMAR)
    return folder / "parse.mjs"


def test_powershell_is_parsed(platform, powershell_parser, tmp_path):
    script = (platform.folder / "completions" / "tavrocli.ps1").read_text(encoding="utf-8")
    broken = {"cut": script.rstrip()[:-1], "open text": script.replace("\n'@", "\n"),
              "keyword": script.replace("foreach (", "foreach ", 1)}
    files = {"script": script, **broken}
    for name, text in files.items():
        (tmp_path / name).write_text(text, encoding="utf-8")
    # The optimizing compiler takes longer over the grammar than the rest of this test together.
    run = subprocess.run(["node", "--liftoff-only", str(powershell_parser), *files], cwd=tmp_path, check=True, capture_output=True,
                         text=True)
    parsed = dict(zip(files, map(json.loads, run.stdout.splitlines()), strict=True))
    assert not parsed["script"]["hasError"]
    assert "Register-ArgumentCompleter" in parsed["script"]["commands"]
    assert [name for name in broken if not parsed[name]["hasError"]] == []


def test_the_scripts_tell_the_same_commands(platform):
    """What bash and zsh are run with is what PowerShell has."""
    texts = [(platform.folder / "completions" / name).read_text(encoding="utf-8")
             for name in ("tavrocli", "_tavrocli", "tavrocli.ps1", "tavrohost")]
    tables = [re.findall(r"^(?:    ')?((?:-|\w+ --).*?)'?$", text.split("_ports()")[0].split("function ")[0], re.MULTILINE)
              for text in texts]
    assert len(tables[0]) > 64
    assert all(table == tables[0] for table in tables)
