"""Adds up the test reports in a folder and prints "N passed, N failed" as the last line.

usage: count_results.py FOLDER [FAILED-STEP...]

A skipped or disabled test counts as failed: a test that stands in the tree is run. The exception is a test that needs
what this machine or user does not have, and says so: one of NEEDS. It is neither passed nor failed, and told by name.
A failed step (a build, a check, a test program that crashed) counts as one more failure. The exit code is 0 when
something passed and nothing failed.
"""

import pathlib
import sys
import xml.etree.ElementTree as ElementTree

# What a test may lack, in the words by which it skips itself. Nothing else excuses one.
NEEDS = (
    "not run here: needs root, or a user namespace with other users",
    "not run here: needs a file system with access lists",
    "not run here: needs node and tree-sitter-powershell from npm",
    "not run here: needs a network and mount namespace of its own",
    "not run here: needs tgtd to start",
    "not run here: needs /dev/net/tun",
    "not run here: needs a kernel with interfaces of the kind bridge",
    "not run here: needs a kernel with interfaces of the kind bond",
    "not run here: needs a kernel with interfaces of the kind vrf",
    "not run here: needs to mount and to change the root, as root or in a user namespace",
)


def need_of(case):
    """What a skipped test says it needs; None for every other test."""
    skipped = [child for child in case if child.tag == "skipped"]
    others = [child for child in case if child.tag in ("failure", "error")]
    said = " ".join(skipped[0].get("message", "").split()) if len(skipped) == 1 and not others else ""
    return next((need for need in NEEDS if said.endswith(need)), None)


def count(report):
    """Returns (passed, texts of the failures, texts of what is not run here) of one report in the JUnit form of
    GoogleTest and pytest."""
    passed, failures, unrun = 0, [], []
    for case in ElementTree.parse(report).iter("testcase"):
        need = need_of(case)
        if need:
            unrun.append(f"{case.get('classname')}.{case.get('name')}: {need}")
            continue
        wrong = [child.tag for child in case if child.tag in ("failure", "error", "skipped")]
        if case.get("status") == "notrun":
            wrong.append("not run")
        if wrong:
            failures.append(f"{case.get('classname')}.{case.get('name')}: {', '.join(wrong)}")
        else:
            passed += 1
    return passed, failures, unrun


def main(folder, failed_steps):
    passed, failed = 0, 0
    for report in sorted(pathlib.Path(folder).rglob("*.xml")):
        try:
            report_passed, failures, unrun = count(report)
        except ElementTree.ParseError as error:
            report_passed, failures, unrun = 0, [f"unreadable report: {error}"], []
        beside = f", {len(unrun)} not run here" if unrun else ""
        print(f"{report.relative_to(folder).with_suffix('')}: {report_passed} passed, {len(failures)} failed{beside}")
        for text in failures + unrun:
            print(f"    {text}")
        passed += report_passed
        failed += len(failures)
    for step in failed_steps:
        print(f"failed step: {step}")
    failed += len(failed_steps)
    print(f"{passed} passed, {failed} failed")
    return 0 if passed > 0 and failed == 0 else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
