"""Command lines of tavrocli, and the answers to what they ask."""

import json


class Secret:
    """A text that stands in no command line, document or message. It reaches tavrohost through a file of its own."""

    def __init__(self, text):
        self.text = text


class Command:
    """A command line of tavrocli.

    arguments: its words, without secrets.
    answers: for each question the answer, or the list of answers where it is asked more than once. A question is the
        number of the message that is its prompt, or, where the prompt is no message, its text. An answer is a Secret or
        anything whose `str` is the line to type.
    files: contents (bytes) by name of files that the command reads in its current directory.
    provable: whether a reading of the host tells that it was done. A command that only sends a secret is not provable,
        and is still "needed" afterwards.
    foreseeable: whether a twin can know how it ends. Where what others on the network say decides, and the twin knows
        nothing of them, its refusal is a warning, and not that of the host.
    dispensable: whether a command before it may have done it as well. Its refusal counts only when the reading
        afterwards tells that it is still needed.
    warning: what the user has to know of it beforehand, such as a setting that is lost by it.
    """

    def __init__(self, arguments, answers=None, files=None, provable=True, foreseeable=True,
                 dispensable=False, warning=None):
        self.arguments = [str(argument) for argument in arguments]
        self.answers = answers or {}
        self.files = files or {}
        self.provable = provable
        self.foreseeable = foreseeable
        self.dispensable = dispensable
        self.warning = warning

    def __str__(self):
        return "tavrocli " + " ".join(self.arguments)


def answers_document(answers, keep_secret):
    """The answers as the JSON (bytes) that tavrohost reads. keep_secret(text) makes a file of a secret: its path."""
    questions = []
    for question, lines in answers.items():
        lines = lines if isinstance(lines, list) else [lines]
        known_by = "message" if isinstance(question, int) else "prompt"
        texts = [{"file": keep_secret(line.text)} if isinstance(line, Secret) else str(line) for line in lines]
        questions.append({known_by: question, "answers": texts})
    return json.dumps({"format": 1, "answers": questions}).encode()
