"""Reads the cases under cases/: what each key means stands in README.md."""

import dataclasses
import json

from program import DEFAULT_LOCALE, PLATFORMS, ROOT, TESTS

CASES = TESTS / "cases"
DEFAULT_SCRIPT = {"messages": "numbers", "model": False, "answers": []}

STEP_KEYS = {
    "args", "stdin", "stdinText", "script", "env", "locale", "output", "outputText", "outputStart",
    "stderr", "calls", "allCalls", "exitCode",
}
CASE_KEYS = STEP_KEYS | {"name", "about", "files", "host", "hostFile", "without", "library", "platforms", "then"}
SCRIPT_KEYS = {"messages", "model", "answers"}


class CaseError(Exception):
    """A case that cannot be understood."""


@dataclasses.dataclass
class Step:
    arguments: list
    typed: str
    typed_as_is: bool  # otherwise each "\n" becomes the platform's line end
    script: dict  # None: no script at all
    env: dict
    locale: str
    output: str  # None: not compared, since only the start is
    output_start: str
    errors: str
    calls: list  # None: not compared
    all_calls: list
    exit_code: int


@dataclasses.dataclass
class Case:
    name: str  # with the file's path under cases/ in front
    steps: list
    files: dict  # what lies in the current directory: name to bytes
    host: object  # JSON value, text of a host file, or None
    without: str
    has_library: bool
    platforms: list


def load_all():
    """Every case of every file, in a fixed order."""
    return [case for file in sorted(CASES.rglob("*.json")) for case in load_file(file)]


def load_file(file):
    area = file.relative_to(CASES).with_suffix("").as_posix()
    try:
        content = json.loads(file.read_text(encoding="utf-8"), object_pairs_hook=without_repeated_keys)
        entries = content if isinstance(content, list) else [content]
        require(entries, "no case in the file")
        cases = [read_case(area, entry) for entry in entries]
        names = [case.name for case in cases]
        require(len(names) == len(set(names)), "two cases have the same name")
        return cases
    except (CaseError, ValueError) as error:
        raise CaseError(f"{file}: {error}") from None


def referenced_files():
    """The paths of every host and script file that a case names."""
    paths = set()
    for file in sorted(CASES.rglob("*.json")):
        content = json.loads(file.read_text(encoding="utf-8"))
        for entry in content if isinstance(content, list) else [content]:
            named = [entry.get("hostFile"), entry.get("script")]
            named += [step.get("script") for step in entry.get("then", [])]
            paths.update(TESTS / name for name in named if isinstance(name, str))
    return paths


def read_case(area, entry):
    require(isinstance(entry, dict) and isinstance(entry.get("name"), str), "a case has no name")
    try:
        check_keys(entry, CASE_KEYS)
        systems = {platform.system for platform in PLATFORMS.values()}
        wanted = entry.get("platforms", sorted(systems))
        require(wanted and set(wanted) <= systems, f'"platforms" are among {sorted(systems)}')
        require(not ("host" in entry and "hostFile" in entry), '"host" and "hostFile" together')
        require(not ("without" in entry and "library" in entry), '"without" and "library" together')
        require(entry.get("library", "none") == "none", 'the only "library" is "none"')
        host = entry.get("host")
        if "hostFile" in entry:
            host = (TESTS / entry["hostFile"]).read_text(encoding="utf-8")
        steps = []
        for step in [entry] + entry.get("then", []):
            if step is not entry:
                check_keys(step, STEP_KEYS)
            step = {key: entry[key] for key in ("script", "env", "locale") if key in entry} | step
            telling = {"allCalls"} if entry.get("without") == "DoOperation" else {"calls", "allCalls"}
            require(shows_something(step) or telling & set(step),
                    f"step {len(steps) + 1} expects no output; {' or '.join(sorted(telling))} tell what the program did")
            steps.append(read_step(step, has_host=host is not None))
        return Case(
            name=f"{area}/{entry['name']}",
            steps=steps,
            files={name: file_content(content) for name, content in entry.get("files", {}).items()},
            host=host,
            without=entry.get("without"),
            has_library="library" not in entry,
            platforms=[
                platform
                for platform in PLATFORMS.values()
                if platform.system in wanted and (platform.has_variants or "without" not in entry)
            ],
        )
    except CaseError as error:
        raise CaseError(f"case {entry['name']!r}: {error}") from None


def read_step(step, has_host):
    require("args" in step, 'no "args"')
    require(len({"output", "outputText", "outputStart"} & set(step)) == 1,
            'exactly one of "output", "outputText" and "outputStart" is needed')
    require(len({"stdin", "stdinText"} & set(step)) <= 1, '"stdin" and "stdinText" together')
    require(len({"calls", "allCalls"} & set(step)) <= 1, '"calls" and "allCalls" together')
    output = step.get("outputText")
    return Step(
        arguments=step["args"],
        typed=step.get("stdinText", join_lines(step.get("stdin", []))),
        typed_as_is="stdinText" in step,
        script=read_script(step.get("script", {}), has_host),
        env=step.get("env", {}),
        locale=step.get("locale", DEFAULT_LOCALE),
        output=join_lines(step["output"]) if "output" in step else output,
        output_start=join_lines(step["outputStart"]) if "outputStart" in step else None,
        errors=join_lines(step.get("stderr", [])),
        calls=read_calls(step.get("calls")),
        all_calls=read_calls(step.get("allCalls")),
        exit_code=step.get("exitCode", 0),
    )


def shows_something(step):
    shown = [step.get("outputText", ""), *(join_lines(step.get(key, [])) for key in ("output", "outputStart", "stderr"))]
    return any(text.strip() for text in shown)


def read_script(script, has_host):
    if script is None:
        return None
    if isinstance(script, str):
        script = json.loads((TESTS / script).read_text(encoding="utf-8"))
    check_keys(script, SCRIPT_KEYS)
    return DEFAULT_SCRIPT | {"model": has_host} | script


def read_calls(calls):
    """A call that names no entry point is DoOperation; one that names no status returned 0."""
    if calls is None:
        return None
    return [{"call": "DoOperation", "status": 0} | call for call in calls]


def file_content(content):
    """The bytes of a text, of lines, of {"path": "a file, relative to the tree's root"}, or of
    {"text": …, "encoding": "one of Python's", "cut": how many bytes are missing at the end}."""
    if isinstance(content, dict) and "text" in content:
        check_keys(content, {"text", "encoding", "cut"})
        encoded = content["text"].encode(content.get("encoding", "utf-8"))
        return encoded[:len(encoded) - content.get("cut", 0)]
    if isinstance(content, dict):
        require(set(content) == {"path"}, f'a file is a text, lines, a "text" or a "path": {content}')
        return (ROOT / content["path"]).read_bytes()
    return (content if isinstance(content, str) else join_lines(content)).encode()


def join_lines(lines):
    """Lines to a text; a last element {"noNewline": "text"} is a line that is left open."""
    text = ""
    for position, line in enumerate(lines):
        if isinstance(line, dict):
            require(set(line) == {"noNewline"} and position == len(lines) - 1,
                    f"only the last line can be left open: {line}")
            text += line["noNewline"]
        else:
            require("\n" not in line, f"a line end inside of a line: {line!r}")
            text += line + "\n"
    return text


def check_keys(entry, known):
    unknown = sorted(set(entry) - known)
    require(not unknown, f"unknown keys {unknown}; known are {sorted(known)}")


def without_repeated_keys(pairs):
    keys = [key for key, _ in pairs]
    require(len(keys) == len(set(keys)), f"a key stands twice in {keys}")
    return dict(pairs)


def require(condition, text):
    if not condition:
        raise CaseError(text)
