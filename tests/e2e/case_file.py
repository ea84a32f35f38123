"""Reads a file of cases as YAML: its entries, each with its place, and what it shares with others."""

import re

import yaml

from transcript import Blocks

SHARED = "shared.yaml"  # holds what the files of its folder, and of the folders in it, have in common
SHARED_KEYS = {"blocks", "values"}


class CaseError(Exception):
    """A case that cannot be understood; `place` is the file and the line, where they are known."""

    def __init__(self, text, place=None):
        super().__init__(f"{place}: {text}" if place else text)
        self.text, self.place = text, place


class Mapping(dict):
    """A mapping that knows where it stands, and where its keys do."""

    def __init__(self, content=(), source=None, line=0):
        super().__init__(content)
        self.source, self.line = source, line
        self.lines = {}  # of the keys that stand in it, not of those merged into it

    def place(self, key=None):
        return self.source and self.source.place(self.lines.get(key, self.line))


class Source:
    """What is parsed for one file: the text of the shared files above it, and then its own, as one list. Anchors
    hold in one document alone; in this way those of a shared file hold in the others too."""

    def __init__(self, file, root):
        folders = [folder for folder in reversed(file.parents) if folder == root or root in folder.parents]
        shared = [folder / SHARED for folder in folders if (folder / SHARED).exists()]
        self.parts = [(part, read_lines(part)) for part in dict.fromkeys([*shared, file])]
        self.text = "".join(f"{line}\n" for _, lines in self.parts for line in lines)
        self.own_line = sum(len(lines) for _, lines in self.parts[:-1])

    def place(self, line):
        """The file and the line of a line of the whole text, counted from 0."""
        for file, lines in self.parts[:-1]:
            if line < len(lines):
                return f"{file}:{line + 1}"
            line -= len(lines)
        return f"{self.parts[-1][0]}:{line + 1}"


def read_lines(file):
    return file.read_text(encoding="utf-8").removesuffix("\n").split("\n")


class Loader(yaml.CSafeLoader):
    """Plain words are texts, whatever they look like ("20:00:02", "Yes"), except for integers, true, false and null;
    a key stands once."""

    yaml_implicit_resolvers = {}

    def __init__(self, source):
        super().__init__(source.text)
        self.source = source

    def mapping(self, node):
        content = Mapping(source=self.source, line=node.start_mark.line)
        yield content
        for key, _ in node.value:
            name = key.value if key.tag.endswith(":merge") else self.construct_object(key)
            line = key.start_mark.line
            if name in content.lines:
                raise CaseError(f"the key {name!r} stands twice", self.source.place(line))
            content.lines[name] = line
        content.update(self.construct_mapping(node))


Loader.add_constructor("tag:yaml.org,2002:map", Loader.mapping)
for kind, pattern, first in [("bool", "true|false", "tf"), ("null", "null", "n"), ("merge", "<<", "<"),
                             ("int", "-?(0|[1-9][0-9]*)", "-0123456789")]:
    Loader.add_implicit_resolver(f"tag:yaml.org,2002:{kind}", re.compile(f"^({pattern})$"), list(first))


class CaseFile:
    """The entries of a file, and the blocks that its screens can show."""

    def __init__(self, file, root):
        self.file = file
        self.area = file.relative_to(root).with_suffix("").as_posix()
        self.source = Source(file, root)
        entries = self.parse(Loader.get_single_data)
        require(isinstance(entries, list) and all(isinstance(entry, Mapping) for entry in entries),
                "no list of cases", f"{file}:1")
        self.cases = []
        self.block_places = {}
        texts = {}
        for entry in entries:
            if not SHARED_KEYS & set(entry):
                self.cases.append(entry)
                continue
            check_keys(entry, SHARED_KEYS)
            for name, text in entry.get("blocks", {}).items():
                place = entry["blocks"].place(name)
                require(isinstance(text, str), f"the block {name!r} is no text", place)
                require(name not in texts, f"there are two blocks {name!r}", place)
                texts[name] = text
                self.block_places[name] = place
        for entry in self.cases[:1]:
            require(entry.line >= self.source.own_line, "a case in a shared file", entry.place())
        self.blocks = Blocks(texts)

    def parse(self, method):
        loader = Loader(self.source)
        try:
            return method(loader)
        except yaml.MarkedYAMLError as error:
            text = ": ".join(filter(None, [error.context, error.problem]))
            raise CaseError(text, self.source.place(error.problem_mark.line)) from None
        except yaml.reader.ReaderError as error:
            line = self.source.text.encode()[:error.position].count(b"\n")
            text = f"the character U+{error.character:04X} cannot stand in YAML; write it as an escape"
            raise CaseError(text, self.source.place(line)) from None
        finally:
            loader.dispose()

    def anchors(self):
        """The places of the anchors that hold in the file by name, and the names of those it uses."""
        return self.parse(self.read_anchors)

    def read_anchors(self, loader):
        places, used = {}, set()
        while loader.check_event():
            event = loader.get_event()
            if isinstance(event, yaml.AliasEvent):
                used.add(event.anchor)
            elif getattr(event, "anchor", None):
                places[event.anchor] = self.source.place(event.start_mark.line)
        return places, used


def check_keys(entry, known):
    unknown = sorted(set(entry) - known)
    require(not unknown, f"unknown keys {unknown}; known are {sorted(known)}", place_of(entry, *unknown[:1]))


def place_of(entry, key=None):
    return entry.place(key) if isinstance(entry, Mapping) else None


def require(condition, text, place=None):
    if not condition:
        raise CaseError(text, place)
