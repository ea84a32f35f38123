"""A plugin of pytest: collects the tests once, then runs those that are asked for, each time in a process of its own.

MUTATION_PIPES holds two file descriptors. On the first one comes a line for each run, a list of the tests' names as JSON.
The other one gets objects as JSON, one a line: all tests once they are collected, and for each run what starts, what failed
(the run ends there), and the end, with whether processes are left that the tests have started. pytest is the first process
of its sandbox, which inherits them."""

import json
import os

import pytest

failed = []


def pytest_runtest_logreport(report):
    if report.failed:
        failed.append(report.nodeid)


@pytest.hookimpl(tryfirst=True)
def pytest_runtestloop(session):
    incoming, outgoing = (int(number) for number in os.environ["MUTATION_PIPES"].split())
    with os.fdopen(incoming) as requests, os.fdopen(outgoing, "w") as answers:
        def answer(**said):
            answers.write(json.dumps(said) + "\n")
            answers.flush()

        items = {item.nodeid: item for item in session.items}
        answer(tests=list(items))
        for line in requests:
            child = os.fork()
            if child == 0:
                try:
                    run([items[name] for name in json.loads(line)], answer)
                finally:
                    os._exit(0)
            os.waitpid(child, 0)
            answer(end=True, left=are_others_left())
    return True


def run(chosen, answer):
    for item, following in zip(chosen, [*chosen[1:], None]):
        answer(start=item.nodeid)
        item.config.hook.pytest_runtest_protocol(item=item, nextitem=following)
        if failed:
            answer(failed=item.nodeid)
            return


def are_others_left():
    """Whether a process runs that is none of a sandbox's own; those that have ended are forgotten."""
    try:
        while os.waitpid(-1, os.WNOHANG)[0]:
            pass
    except ChildProcessError:
        return False
    return True
