"""What every module does once it knows its options: bring a host into a wanted state, or have a command done there."""

import json

from ansible.module_utils.basic import AnsibleModule

from .command import Command
from .difference import difference
from .failure import Failure
from .host import Host
from .options import COMMON_OPTIONS
from .tool import Ended, Tool

# The names of operations that leave a host as it is begin so.
READING = ("Read", "List", "Ping")
# Outcomes of a command that was done; on a twin it can be uncertain whether the host does the same.
DONE = ("done", "uncertain")


def fleet_module(options, **rules):
    """The AnsibleModule of a module with these options beside the common ones; rules are further arguments of it."""
    return AnsibleModule(argument_spec=dict(COMMON_OPTIONS, **options), supports_check_mode=True, **rules)


def bring_about(module, needed):
    """Brings the host into the wanted state, or rehearses that in check mode, and ends the module.

    needed(host, options) tells the commands (a list of Command) that bring a host into the wanted state; none when it
    is in that state. It is asked before, and again afterwards, when nothing may be needed any more. It raises a Failure
    for what cannot be had.
    """
    def flow(work):
        before = work.capture()
        commands = needed(Host(before), module.params)
        work.carry_out(commands)
        if commands:
            work.prove(needed)
    _finish(module, flow)


def do_once(module, command):
    """Has a Command done, or rehearsed in check mode, and ends the module. Whether it changed the host is told by what
    it called of the management library; what a twin refuses without knowing that of the host counts as well."""
    def flow(work):
        if module.check_mode or module._diff:  # pylint: disable=protected-access  # no other way tells
            work.capture()
        report = work.carry_out([command])[0]
        is_done = report["outcome"] in DONE
        work.result.update(output=report["output"], calls=report["calls"], changed=_changed_host(report, is_done))
        work.tell_difference()
    _finish(module, flow)


def read(module, tell):
    """Ends a module that only reads with the members that tell(document of the host) gives."""
    def flow(work):
        work.result = dict({"changed": False}, **tell(work.capture()))
    _finish(module, flow)


def _finish(module, flow):
    work = None
    try:
        with Tool(module) as tool:
            work = _Work(module, tool)
            try:
                flow(work)
            except Ended:
                raise
            except Failure:
                work.tell_part()
                raise
    except Failure as failure:
        module.fail_json(msg=str(failure), **dict(work.result if work else {}, **failure.facts))
    module.exit_json(**work.result)


class _Work:
    """One run of a module: where it stands, and the result so far."""

    def __init__(self, module, tool):
        self.result = {"changed": False, "commands": [], "restart_required": False}
        self._module = module
        self._tool = tool
        self._taken = []  # The commands so far, each with its report.
        self._before = None  # The path of the host file before,
        self._twin = None    # and, in check mode, afterwards.

    def capture(self):
        """What the host tells now, as a document."""
        path = self._tool.capture()
        self._before = self._before or path
        self._twin = self._twin or path
        for remark in self._tool.remarks:
            self._module.warn(remark)
        self._tool.remarks.clear()
        return _document(path)

    def carry_out(self, commands):
        """Does the commands, or rehearses them: their reports. Fails at the first one that is not done."""
        if len(commands) > 1:
            self._foresee(commands)
        for command in commands:
            if command.warning:
                self._module.warn(f"{command}: {command.warning}")
            if self._module.check_mode:
                report, self._twin = self._tool.rehearse(command, self._twin)
            else:
                report = self._run(command)
            self._take(command, report)
        return [report for _, report in self._taken]

    def prove(self, needed):
        """Reads back, tells the difference, and fails where the wanted state is not there although it should be."""
        after = self.tell_difference()
        missing = [command for command in needed(Host(after), self._module.params) if command.provable]
        for command, report in self._taken if missing else []:
            if command.dispensable and report["outcome"] not in DONE:
                self._refuse(command, report)
        if missing and not self.result["restart_required"] and self._is_certain():
            raise Failure("The host took the commands and yet is not as wanted; still needed: "
                          + "; ".join(str(command) for command in missing))

    def tell_difference(self):
        """Adds what differs between before and now to the result: the document of the host, or of the twin, now. None
        where the host was not read before."""
        if not self._before:
            return None
        before = _document(self._before)
        if self._module.check_mode:
            after = _document(self._twin)
            self.result["diff"] = difference(before, after)
            return after
        after = self.capture()
        twin = self._rehearsed() if self.result["restart_required"] else None
        self.result["diff"] = difference(before, after, twin)
        return after

    def tell_part(self):
        """Adds the difference after a failure that came when something was done, where the host can be read."""
        if "diff" in self.result or not self.result["changed"]:
            return
        try:
            self.tell_difference()
        except Failure:
            pass  # The failure that came first is the one to tell.

    def _foresee(self, commands):
        """Fails where one of several commands is refused on a twin. On the host those before it would be done by then,
        such as the end of a session that is to be opened anew."""
        path = self._before
        for command in commands:
            report, path = self._tool.rehearse(command, path)
            if not _may_pass(command, report) and _is_foreseen(command, report):
                raise Failure(f"Nothing was sent, since a copy of the host does not do {_line(report)}: "
                              f"{_reason(report)}", error=report.get("error"), output=report["output"])

    def _run(self, command):
        try:
            return self._tool.run(command)
        except Failure:
            self.result["changed"] = True  # Nobody knows how far it came.
            raise

    def _take(self, command, report):
        """Adds a report to the result, and fails unless the command was done."""
        self._taken.append((command, report))
        self.result["commands"].append({"arguments": report["arguments"], "outcome": report["outcome"]})
        self.result["restart_required"] |= report["restart_required"]
        for uncertainty in report.get("uncertainties", []):
            self._module.warn(f"{_line(report)}: not certain: {uncertainty['reason']}")
        if report["outcome"] in DONE:
            self.result["changed"] = True
        elif not _may_pass(command, report):
            self._refuse(command, report)

    def _refuse(self, command, report):
        """Fails with the reason why a command was not done, or warns where that is not certain."""
        if self._module.check_mode and not _is_foreseen(command, report):
            self._module.warn(f"{_line(report)}: not rehearsed, since a copy of the host knows too little: "
                              f"{_reason(report)}")
            self.result["changed"] = True
            return
        # What was not done to its end may have changed the host all the same.
        self.result["changed"] |= _changed_host(report)
        raise Failure(f"{_line(report)}: {_reason(report)}", error=report.get("error"), output=report["output"])

    def _rehearsed(self):
        """The document of a twin with which the same was done: it tells what waits for the restart. None where the twin
        does not do the same."""
        path = self._before
        for command, _ in self._taken:
            report, path = self._tool.rehearse(command, path)
            if not _may_pass(command, report):
                return None
        return _document(path)

    def _is_certain(self):
        return all(report.get("certain", True) for _, report in self._taken)


def _document(path):
    with open(path, encoding="utf-8") as file:
        return json.load(file)


def _line(report):
    """The command line of a report, in which words that can be secrets are masked."""
    return " ".join(["tavrocli"] + report["arguments"])


def _may_pass(command, report):
    """Whether the next command may follow this one."""
    return report["outcome"] in DONE or report["outcome"] == "refused" and command.dispensable


def _is_foreseen(command, report):
    """Whether the host ends a command as its twin did, which did not do it."""
    return report["outcome"] != "refused" or command.foreseeable or report["certain"]


def _changed_host(report, is_done=True):
    """Whether a command called an operation that changes something, and that was not refused. Of a command that was not
    done, refused ones count too."""
    return any(call["call"] == "DoOperation" and not call.get("name", "").startswith(READING)
               and not (is_done and call.get("status"))
               for call in report["calls"])


def _reason(report):
    """Why a command was not done: what the run says, the library, or the command itself."""
    if "failure" in report:
        return report["failure"]
    error = report.get("error")
    if error:
        return f"{error['message']} ({error['details']})" if error["details"] else error["message"]
    lines = [line.strip() for line in report["output"].splitlines() if line.strip()]
    return lines[-1] if lines else "refused without a word"


__all__ = ["Command", "Failure", "bring_about", "do_once", "fleet_module", "read"]
