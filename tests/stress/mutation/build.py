"""The two builds of a mutation run: one to be asked what tests execute, one in which mutants take the place of sources."""

import json
import os
import pathlib
import shlex
import shutil
import subprocess

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent.parent
TARGETS = ["all"]
MUTATED = "-O1 -DNDEBUG -w"
MEASURED = "-O0 -DNDEBUG -w -gline-tables-only -fsanitize-coverage=trace-pc-guard,pc-table,no-prune"
COMPILE_SECONDS = 300


class Tree:
    """A copy of the tree's files with a build of its own, natively by clang."""

    def __init__(self, place):
        self.place = place
        self.build = place / "build" / "native"

    def prepare(self, flags, link_flags="", options=()):
        """Copies what has changed, and builds."""
        tracked = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT,
                                 capture_output=True, check=True).stdout.decode().split("\0")
        for name in filter(None, tracked):
            source, copy = ROOT / name, self.place / name
            if not source.is_file() or (copy.is_file() and copy.read_bytes() == source.read_bytes()):
                continue
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)
        link_flags = f"-fuse-ld=lld {link_flags}"
        subprocess.run(
            ["cmake", "-S", self.place, "-B", self.build, "-G", "Ninja", "-DCMAKE_CXX_COMPILER=clang++",
             "-DCMAKE_BUILD_TYPE=Mutation", f"-DCMAKE_CXX_FLAGS_MUTATION={flags}", "-DTAVRO_BUILD_TESTS=ON",
             *(f"-DCMAKE_{kind}_LINKER_FLAGS={link_flags}" for kind in ("EXE", "SHARED", "MODULE")), *options],
            check=True, stdout=subprocess.DEVNULL)
        subprocess.run(["ninja", "-C", self.build, *TARGETS], check=True, stdout=subprocess.DEVNULL)
        # Tests that need libraries which the native build lacks are run on "sanitize" alone. This build has them.
        sanitize = self.build.parent / "sanitize"
        sanitize.unlink(missing_ok=True)
        sanitize.symlink_to(self.build.name)
        # What unit tests read.
        subprocess.run(["ctest", "--test-dir", self.build, "-R", "^make_"], check=True, stdout=subprocess.DEVNULL)


def measured_tree(folder, marks):
    """The build in which every block that is executed leaves a mark in the folder `marks`."""
    marks.mkdir(exist_ok=True)
    marks.chmod(0o777)
    runtime = folder / "coverage_runtime.o"
    subprocess.run(["clang++", "-std=c++20", "-O2", "-fPIC", "-fvisibility=hidden", f'-DCOVERAGE_FOLDER="{marks}"',
                    "-c", HERE / "coverage_runtime.cpp", "-o", runtime], check=True)
    tree = Tree(folder / "coverage")
    tree.prepare(MEASURED, str(runtime), ["-DTAVRO_BUILD_BY_FOLDER=ON"])
    return tree


class MutatedTree(Tree):
    """The build in which mutants are compiled, one at a time."""

    def prepare_for_mutants(self):
        self.prepare(MUTATED)
        commands = json.loads((self.build / "compile_commands.json").read_text(encoding="utf-8"))
        self.commands = {os.path.relpath(each["file"], self.place): shlex.split(each["command"]) for each in commands}
        self.objects = {file: command[command.index("-o") + 1] for file, command in self.commands.items()}
        self.users = self.users_of_headers()

    def users_of_headers(self):
        """For each header the sources whose objects were made with it; precompiled ones name None."""
        source_of = {path: file for file, path in self.objects.items()}
        listed = subprocess.run(["ninja", "-C", self.build, "-t", "deps"], capture_output=True, text=True,
                                check=True).stdout
        users, source = {}, None
        for line in listed.splitlines():
            if line and not line.startswith(" "):
                source = source_of.get(line.split(": #deps")[0])
            elif line.strip():
                path = os.path.relpath(os.path.join(self.build, line.strip()), self.place)
                users.setdefault(path, set()).add(source)
        return users

    def sources_of(self, file):
        """The sources that have to be compiled when a file changes: itself, or what includes it; None for a header that is
        precompiled."""
        if file in self.commands:
            return [file]
        users = self.users.get(file, set())
        return None if None in users or any("cmake_pch" in user for user in users) else sorted(users)

    def arguments_for(self, file):
        """Those by which clang's library reads a file."""
        command = list(self.commands[file if file in self.commands else self.sources_of(file)[0]][1:])
        del command[command.index("-o"):]
        return [*command, "-x", "c++"]

    def outputs_of(self, path):
        """What is linked of an object directly."""
        told = subprocess.run(["ninja", "-C", self.build, "-t", "query", path], capture_output=True, text=True,
                              check=True).stdout
        names = told.partition("  outputs:")[2].split()
        return [self.build / name for name in names if (self.build / name).is_file()]

    def write(self, file, content):
        """Writes a source of the tree as if it had not changed."""
        path = self.place / file
        status = path.stat()
        path.write_bytes(content)
        os.utime(path, ns=(status.st_atime_ns, status.st_mtime_ns))

    def compile(self, file):
        """Compiles what depends on a file. Gives the objects that differ, as {object: new content}; None where a source
        does not compile."""
        changed, made = {}, self.build / "mutant.o"
        for source in self.sources_of(file):
            command = list(self.commands[source])
            command[command.index("-o") + 1] = str(made)
            made.unlink(missing_ok=True)
            try:
                if subprocess.run(command, cwd=self.build, capture_output=True, check=False,
                                  timeout=COMPILE_SECONDS).returncode != 0:
                    return None
            except subprocess.TimeoutExpired:
                return None
            content, path = made.read_bytes(), self.build / self.objects[source]
            if content != path.read_bytes():
                changed[path] = content
        return changed

    def exchange(self, objects):
        """Puts objects in the place of those of the build, and gives those. ninja is not to compile anything for that,
        but to link."""
        before = {}
        for path, content in objects.items():
            before[path] = path.read_bytes()
            status = path.stat()
            path.write_bytes(content)
            os.utime(path, ns=(status.st_atime_ns, status.st_mtime_ns))
            for output in self.outputs_of(os.path.relpath(path, self.build)):
                output.unlink()
        return before
