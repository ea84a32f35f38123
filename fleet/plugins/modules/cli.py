#!/usr/bin/python
"""Has any command of tavrocli done."""

DOCUMENTATION = r"""
module: cli
short_description: Do any command of tavrocli
description:
  - For what no other module of the collection does, such as a ping or a reset of counters.
  - The module does not know what is wanted, so the command is done each time. Whether it changed the host is told by
    the operations that it called of the management library; commands that only read, and pings, change nothing.
version_added: 5.2.3
author:
  - Tavro (@tavro)
options:
  arguments:
    description:
      - The arguments of tavrocli, without secrets.
    type: list
    elements: str
    required: true
  answers:
    description:
      - Answers to the questions of the command. Where one question is named several times, the answers follow one
        another.
    type: list
    elements: dict
    default: []
    suboptions:
      message:
        description:
          - The number of the message that is the question.
        type: int
      prompt:
        description:
          - The text of a question that is no message.
        type: str
      lines:
        description:
          - The answers, in the order in which the question is asked.
        type: list
        elements: str
        default: []
      secret:
        description:
          - The answer, where it is a secret.
        type: str
notes:
  - The command runs in a folder of its own, which is gone afterwards.
  - What a copy of the host refuses in check mode without knowing the host's own answer, such as a ping, becomes a
    warning.
extends_documentation_fragment:
  - tavro.fleet.common
  - tavro.fleet.common.attributes
"""

EXAMPLES = r"""
- name: Reset the counters of a port
  tavro.fleet.cli:
    arguments: [-ethernet, 02-00-5E-10-00-00, -resetstat]

- name: Use a port for FCoE
  tavro.fleet.cli:
    arguments: [-res, 02-00-5E-10-00-00, -set]
    answers:
      - message: 29456
        lines: ["2"]
      - message: 29197
        lines: ["y"]
"""

RETURN = r"""
output:
  description:
    - What the command printed.
  returned: always
  type: str
calls:
  description:
    - The calls of the management library, as C(tavrohost schema run) describes them.
  returned: success
  type: list
  elements: dict
commands:
  description:
    - The command line, and how it went.
  returned: always
  type: list
  elements: dict
  sample: [{"arguments": ["-ethernet", "02-00-5E-10-00-00", "-resetstat"], "outcome": "done"}]
restart_required:
  description:
    - Whether what was changed takes effect when the host restarts.
  returned: always
  type: bool
"""

from ansible_collections.tavro.fleet.plugins.module_utils.command import Secret
from ansible_collections.tavro.fleet.plugins.module_utils.flow import Command, do_once, fleet_module

OPTIONS = {
    "arguments": {"type": "list", "elements": "str", "required": True},
    "answers": {
        "type": "list",
        "elements": "dict",
        "default": [],
        "options": {
            "message": {"type": "int"},
            "prompt": {"type": "str"},
            "lines": {"type": "list", "elements": "str", "default": []},
            "secret": {"type": "str", "no_log": True},
        },
        "required_one_of": [("message", "prompt")],
        "mutually_exclusive": [("message", "prompt"), ("lines", "secret")],
    },
}


def answers_by_question(entries):
    """The answers in the order in which they are given, by question."""
    answers = {}
    for entry in entries:
        question = entry["prompt"] if entry["message"] is None else entry["message"]
        answers.setdefault(question, []).extend(
            entry["lines"] if entry["secret"] is None else [Secret(entry["secret"])])
    return answers


def main():
    """Runs the module."""
    module = fleet_module(OPTIONS)
    answers = answers_by_question(module.params["answers"])
    # What the command reaches is not known here, and so not whether a twin can know how it ends.
    do_once(module, Command(module.params["arguments"], answers, foreseeable=False))


if __name__ == "__main__":
    main()
