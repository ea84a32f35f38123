"""Reads the cases under cases/: what each key means stands in README.md."""

import dataclasses
import json

from case_file import SHARED, CaseError, CaseFile, check_keys, place_of, require
from program import DEFAULT_LOCALE, PLATFORMS, ROOT, TESTS
from transcript import TranscriptError, read_questions, read_screen, split_words

CASES = TESTS / "cases"
DEFAULT_SCRIPT = {"messages": "numbers", "model": False, "answers": []}

SCREEN_KEYS = {"screen", "screenStart", "outputText"}
STEP_KEYS = SCREEN_KEYS | {
    "args", "typed", "stdinText", "script", "env", "locale", "stderr", "calls", "allCalls", "exitCode", "restarted",
}
CASE_KEYS = STEP_KEYS | {"name", "about", "files", "host", "hostFile", "without", "library", "platforms", "then"}
SCRIPT_KEYS = {"messages", "model", "answers"}
KINDS = {  # what stands under a key, where it is one thing only
    "args": (str, list), "screen": str, "screenStart": str, "outputText": str, "typed": list, "stdinText": str,
    "env": dict, "stderr": str, "calls": list, "allCalls": list, "exitCode": int, "files": dict, "hostFile": str,
    "without": str, "platforms": list, "then": list, "restarted": bool,
}


@dataclasses.dataclass
class Step:
    arguments: list
    typed: str
    questions: list  # what the screen asks, with what is typed there
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
    restarted: bool  # whether the simulated host restarts before


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
    return [case for file in case_files() for case in load_file(file)]


def case_files(root=CASES):
    """The files that hold cases, in a fixed order."""
    return [file for file in sorted(root.rglob("*.yaml")) if file.name != SHARED]


def load_file(file, root=CASES):
    return read_cases(CaseFile(file, root))


def read_cases(content):
    """The cases of a file; afterwards its blocks know which of them were shown."""
    require(content.cases, "no case in the file", f"{content.file}:1")
    cases = {}
    for entry in content.cases:
        case = read_case(content.area, entry, content.blocks)
        if case.name in cases:
            raise CaseError("two cases have the same name", place_of(entry, "name"))
        cases[case.name] = case
    return list(cases.values())


def unused_shares(root=CASES):
    """What stands in a file to be shared, and no case of a file in which it holds uses: one text each."""
    standing, used = {}, set()
    for file in sorted(root.rglob("*.yaml")):
        content = CaseFile(file, root)
        if file.name != SHARED:
            read_cases(content)
        anchors, named = content.anchors()
        standing |= {place: f"the block {name!r}" for name, place in content.block_places.items()}
        standing |= {place: f"the anchor {name!r}" for name, place in anchors.items()}
        used |= {content.block_places[name] for name in content.blocks.shown} | {anchors[name] for name in named}
    return [f"{place}: nobody uses {what}" for place, what in sorted(standing.items()) if place not in used]


def referenced_files():
    """The paths of every host and script file that a case names."""
    paths = set()
    for file in case_files():
        for entry in CaseFile(file, CASES).cases:
            named = [entry.get("hostFile"), entry.get("script")]
            named += [step.get("script") for step in entry.get("then", [])]
            paths.update(TESTS / name for name in named if isinstance(name, str))
    return paths


def read_case(area, entry, blocks):
    require(isinstance(entry.get("name"), str), "a case has no name", place_of(entry))
    try:
        check_step(entry, CASE_KEYS)
        systems = {platform.system for platform in PLATFORMS.values()}
        wanted = entry.get("platforms", sorted(systems))
        require(wanted and set(wanted) <= systems, f'"platforms" are among {sorted(systems)}')
        require(not ("host" in entry and "hostFile" in entry), '"host" and "hostFile" together')
        require(not ("without" in entry and "library" in entry), '"without" and "library" together')
        require(entry.get("library", "none") == "none", 'the only "library" is "none"')
        host = entry.get("host")
        if "hostFile" in entry:
            host = existing(TESTS / entry["hostFile"]).read_text(encoding="utf-8")
        taken_over = {key: entry[key] for key in ("script", "env", "locale") if key in entry}
        return Case(
            name=f"{area}/{entry['name']}",
            steps=[read_step(step, entry, taken_over, blocks) for step in [entry, *entry.get("then", [])]],
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
        raise CaseError(f"case {entry['name']!r}: {error.text}", error.place or place_of(entry)) from None


def check_step(step, keys):
    check_keys(step, keys)
    for key in set(step) & set(KINDS):
        require(isinstance(step[key], KINDS[key]), f'"{key}" cannot be {step[key]!r}', place_of(step, key))
    for key in {"args", "typed", "platforms"} & set(step):
        for word in step[key]:
            require(isinstance(word, str), f'"{key}" holds texts; {word!r} needs quotes', place_of(step, key))


def read_step(step, case, taken_over, blocks):
    if step is not case:
        check_step(step, STEP_KEYS)
    place = place_of(step)
    shown = sorted(SCREEN_KEYS & set(step))
    require("args" in step, 'no "args"', place)
    require(len(shown) == 1, f"exactly one of {sorted(SCREEN_KEYS)} is needed", place)
    require(not ("calls" in step and "allCalls" in step), '"calls" and "allCalls" together', place)
    try:
        output, typed, questions = step.get("outputText"), [], []
        if "outputText" not in step:
            screen = blocks.expand(step[shown[0]])
            output, typed = read_screen(screen)
            questions = read_questions(screen)
    except TranscriptError as error:
        raise CaseError(str(error), place_of(step, *shown)) from None
    errors = step.get("stderr", "")
    typed += step.get("typed", [])
    require(not (typed and "stdinText" in step), '"stdinText" beside other lines that are typed', place)
    telling = {"allCalls"} if case.get("without") == "DoOperation" else {"calls", "allCalls"}
    require((output + errors).strip() or telling & set(step),
            f"a step expects no output; {' or '.join(sorted(telling))} tell what the program did", place)
    step = taken_over | step
    return Step(
        arguments=split_words(step["args"]) if isinstance(step["args"], str) else step["args"],
        typed=step.get("stdinText", "".join(f"{line}\n" for line in typed)),
        typed_as_is="stdinText" in step,
        questions=questions,
        script=read_script(step.get("script", {}), has_host={"host", "hostFile"} & set(case)),
        env=step.get("env", {}),
        locale=step.get("locale", DEFAULT_LOCALE),
        output=None if "screenStart" in step else output,
        output_start=output if "screenStart" in step else None,
        errors=errors,
        calls=read_calls(step.get("calls")),
        all_calls=read_calls(step.get("allCalls")),
        exit_code=step.get("exitCode", 0),
        restarted=step.get("restarted", False),
    )


def read_script(script, has_host):
    """A list is a script's answers; an answer to an operation is one of DoOperation."""
    if script is None:
        return None
    if isinstance(script, str):
        script = json.loads(existing(TESTS / script).read_text(encoding="utf-8"))
    if isinstance(script, list):
        script = {"answers": script}
    check_keys(script, SCRIPT_KEYS)
    script = DEFAULT_SCRIPT | {"model": bool(has_host)} | script
    answers = [{"call": "DoOperation"} | answer if "operation" in answer else answer for answer in script["answers"]]
    return script | {"answers": with_likes(answers)}


def read_calls(calls):
    """A call that names no entry point is DoOperation; one that names no status returned 0."""
    if calls is None:
        return None
    return with_likes([{"call": "DoOperation", "status": 0} | call for call in calls])


def with_likes(value):
    """The value with lists in place of their differences to others: {like: a list, position: another value, …}."""
    if isinstance(value, list):
        return [with_likes(item) for item in value]
    if not isinstance(value, dict):
        return value
    if "like" not in value:
        return {key: with_likes(item) for key, item in value.items()}
    items = list(with_likes(value["like"]))
    for position, item in value.items():
        if position != "like":
            require(isinstance(position, int) and 0 <= position < len(items),
                    f"a position is one of 0 to {len(items) - 1}, not {position!r}", place_of(value, position))
            items[position] = with_likes(item)
    return items


def file_content(content):
    """The bytes of a text, of {"path": "a file, relative to the tree's root"}, or of
    {"text": …, "encoding": "one of Python's", "cut": how many bytes are missing at the end}."""
    if isinstance(content, str):
        return content.encode()
    require(isinstance(content, dict) and {"path", "text"} & set(content),
            f'a file is a text, a "path" or a "text" with its encoding: {content!r}')
    if "path" in content:
        check_keys(content, {"path"})
        return existing(ROOT / content["path"]).read_bytes()
    check_keys(content, {"text", "encoding", "cut"})
    try:
        encoded = content["text"].encode(content.get("encoding", "utf-8"))
    except (LookupError, UnicodeError) as error:
        raise CaseError(str(error), place_of(content)) from None
    return encoded[:len(encoded) - content.get("cut", 0)]


def existing(path):
    require(path.is_file(), f"there is no file {path}")
    return path
