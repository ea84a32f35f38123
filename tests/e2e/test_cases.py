"""Runs the cases of cases/ on the platforms."""

import difflib
import json

import pytest

import cases
from program import Sandbox


def pytest_generate_tests(metafunc):
    if "case" in metafunc.fixturenames:
        runs = [(case, platform) for case in cases.load_all() for platform in case.platforms]
        metafunc.parametrize(
            "case, platform", runs, ids=[f"{platform.name}:{case.name}" for case, platform in runs]
        )


def test_case(case, platform, tmp_path):
    sandbox = prepare(case, platform, tmp_path)
    for place, step in numbered_steps(case):
        problems = compare_run(step, platform, place, run_step(sandbox, step))
        if problems:
            pytest.fail("\n".join(problems))


def prepare(case, platform, folder):
    """A sandbox in which the steps of a case can be run."""
    sandbox = Sandbox(platform, folder)
    if case.without is not None:
        sandbox.use_library_without(case.without)
    if not case.has_library:
        sandbox.use_library(None)
    for name, content in case.files.items():
        (sandbox.work / name).write_bytes(content)
    if case.host is not None:
        text = case.host if isinstance(case.host, str) else json.dumps(case.host, ensure_ascii=False)
        sandbox.host.write_text(text, encoding="utf-8")
    return sandbox


def numbered_steps(case):
    return [(f"step {number} ({' '.join(step.arguments)})", step) for number, step in enumerate(case.steps, 1)]


def run_step(sandbox, step):
    """Runs a step and returns its result and the calls that the library traced."""
    platform = sandbox.platform
    if step.restarted:
        sandbox.restart_host()
    sandbox.write_script(step.script)
    if step.typed_as_is:
        typed = step.typed.encode(platform.encoding(step.locale))
    else:
        typed = platform.encode(step.typed, step.locale)
    if step.output_start is not None:
        size = len(platform.encode(step.output_start, step.locale))
        result = sandbox.run_until(size, step.arguments, typed, step.locale, step.env)
    else:
        result = sandbox.run(step.arguments, typed, step.locale, step.env)
    return result, sandbox.calls()


def compare_run(step, platform, place, run):
    """What differs between a step and a run of it."""
    result, calls = run
    output = step.output if step.output_start is None else step.output_start
    problems = compare_text(f"{place}: standard output", platform.encode(output, step.locale), result.output)
    problems += compare_text(
        f"{place}: standard error", platform.encode(step.errors, step.locale), result.errors
    )
    if result.exit_code != step.exit_code:
        problems.append(f"{place}: exit code {result.exit_code} instead of {step.exit_code}")
    if step.calls is not None:
        operations = [call for call in calls if call["call"] == "DoOperation"]
        problems += compare_calls(f"{place}: operations", step.calls, operations)
    if step.all_calls is not None:
        expected_calls = [with_start_values(call, platform, step.locale) for call in step.all_calls]
        problems += compare_calls(f"{place}: calls", expected_calls, calls)
    return problems


def with_start_values(call, platform, locale):
    """Adds to Initialize what the case leaves out since it is the same in most runs."""
    if call["call"] != "Initialize":
        return call
    call = {"debug": 0} | call
    return call if "locale" in call else call | {"locale": platform.locale_name(locale)}


def compare_text(title, expected, got):
    if expected == got:
        return []
    return difference(title, split_lines(expected), split_lines(got))


def compare_calls(title, expected, got):
    if expected == got:
        return []

    def as_lines(calls):
        return [json.dumps(call, sort_keys=True, ensure_ascii=False) for call in calls]

    return difference(title, as_lines(expected), as_lines(got))


def split_lines(text):
    return [repr(line)[1:] for line in text.splitlines(keepends=True)]


def difference(title, expected, got):
    lines = [line for line in difflib.ndiff(expected, got) if not line.startswith("?")]
    return [f"{title} (- expected, + got):"] + ["    " + line for line in lines]
