"""Runs a test again whose Wine ended by itself, twice at most; the summary counts these as "rerun". A plugin of its own,
since the packaged one for failing tests asks a server about every test, which took a third of the time of all."""

import pytest
from _pytest.runner import runtestprotocol

from program import WineBroke

TRIES = 3


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    outcome = yield
    outcome.get_result().wine_broke = call.excinfo is not None and call.excinfo.errisinstance(WineBroke)


def pytest_runtest_protocol(item, nextitem):
    item.ihook.pytest_runtest_logstart(nodeid=item.nodeid, location=item.location)
    for tries_left in reversed(range(TRIES)):
        reports = runtestprotocol(item, nextitem=nextitem, log=False)
        broke = any(report.wine_broke for report in reports)
        if not broke or not tries_left:
            break
        report = reports[-1]
        report.outcome = "rerun"
        item.ihook.pytest_runtest_logreport(report=report)
        item._initrequest()  # its fixtures are made anew
    for report in reports:
        item.ihook.pytest_runtest_logreport(report=report)
    item.ihook.pytest_runtest_logfinish(nodeid=item.nodeid, location=item.location)
    return True


def pytest_report_teststatus(report):
    return ("rerun", "R", "RERUN") if report.outcome == "rerun" else None


def pytest_terminal_summary(terminalreporter):
    for report in terminalreporter.stats.get("rerun", []):
        terminalreporter.write_line(f"run again, since Wine ended by itself: {report.nodeid}")
