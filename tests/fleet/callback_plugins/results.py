"""Writes the result of each task on each host as a line of JSON, for the tests."""

import json
import os

from ansible.plugins.callback import CallbackBase

DOCUMENTATION = """
name: results
type: notification
short_description: results as lines of JSON
description: Each line holds the host, the task, and its result.
"""


class CallbackModule(CallbackBase):
    """Appends to the file that FLEET_RESULTS names."""

    CALLBACK_VERSION = 2.0
    CALLBACK_TYPE = "notification"
    CALLBACK_NAME = "results"

    def _write(self, outcome, failed):
        result = dict(outcome._result, failed=failed)
        line = {"host": outcome._host.name, "task": outcome._task.get_name(), "result": result}
        with open(os.environ["FLEET_RESULTS"], "a", encoding="utf-8") as file:
            file.write(json.dumps(line) + "\n")

    def v2_runner_on_ok(self, result):
        self._write(result, False)

    def v2_runner_on_failed(self, result, ignore_errors=False):
        self._write(result, True)

    def v2_runner_on_unreachable(self, result):
        self._write(result, True)
