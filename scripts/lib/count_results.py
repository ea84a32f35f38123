"""Adds up the test reports in a folder and prints "N passed, N failed" as the last line.

usage: count_results.py FOLDER [FAILED-STEP...]

A skipped or disabled test counts as failed: a test that stands in the tree is run. A failed step (a build, a
check, a test program that crashed) counts as one more failure. The exit code is 0 when something passed and
nothing failed.
"""

import pathlib
import sys
import xml.etree.ElementTree as ElementTree


def count(report):
    """Returns (passed, texts of the failures) of one report in the JUnit form of GoogleTest and pytest."""
    passed, failures = 0, []
    for case in ElementTree.parse(report).iter("testcase"):
        wrong = [child.tag for child in case if child.tag in ("failure", "error", "skipped")]
        if case.get("status") == "notrun":
            wrong.append("not run")
        if wrong:
            failures.append(f"{case.get('classname')}.{case.get('name')}: {', '.join(wrong)}")
        else:
            passed += 1
    return passed, failures


def main(folder, failed_steps):
    passed, failed = 0, 0
    for report in sorted(pathlib.Path(folder).rglob("*.xml")):
        try:
            report_passed, failures = count(report)
        except ElementTree.ParseError as error:
            report_passed, failures = 0, [f"unreadable report: {error}"]
        print(f"{report.relative_to(folder).with_suffix('')}: {report_passed} passed, {len(failures)} failed")
        for failure in failures:
            print(f"    {failure}")
        passed += report_passed
        failed += len(failures)
    for step in failed_steps:
        print(f"failed step: {step}")
    failed += len(failed_steps)
    print(f"{passed} passed, {failed} failed")
    return 0 if passed > 0 and failed == 0 else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
