"""Reads the manual's page of dialogues: for each its questions, and a session with what is typed in it."""

import dataclasses
import re

from program import ROOT

MANUAL = ROOT / "docs" / "manual"
SECTION = re.compile(r"^## ([^\n]+)\n(.*?)(?=^## |\Z)", re.MULTILINE | re.DOTALL)
SESSION = re.compile(r"^```dialogue\n\$ tavrocli ([^\n]+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
SECRETS = re.compile(r"^Typed at the stars: (.*?)\.$", re.MULTILINE | re.DOTALL)
TYPED = re.compile(r"^(.*)«(.*)»$", re.MULTILINE)
HEAD = "| Question | Number | Asked | Answer | Refused |"
CODE = re.compile(r"`([^`]+)`")
REFUSED = re.compile(r"`([^`]+)`: `([^`]+)`")
FUNCTION = re.compile(r"^\[PF\d+\]")  # stands in front of a question about a function


@dataclasses.dataclass(eq=False)  # two rows can be alike
class Question:
    prompt: str
    number: int  # of its message; None for a prompt that is none
    answer: str  # what the page says of the answers that are accepted
    refused: str  # an answer that is not accepted, or None
    complaint: str  # what that is met with

    def key(self):
        """How an answers file names it."""
        return {"prompt": self.prompt} if self.number is None else {"message": self.number}


@dataclasses.dataclass
class Answer:
    prompt: str  # the line that asks, blanks at its ends aside
    question: Question
    text: str
    is_secret: bool


@dataclasses.dataclass
class Dialogue:
    name: str
    questions: list
    arguments: list
    screen: str  # as a user sees it in the end
    answers: list


def table_rows(text, head):
    """The rows of the table under this head, as lists of cells."""
    lines = text[text.index(head):].splitlines()
    rows = []
    for line in lines[2:]:
        if not line.startswith("|"):
            break
        rows.append([cell.strip() for cell in line.strip("|").split("|")])
    return rows


def read_question(row):
    prompt, number, _, answer, refused = row
    example = REFUSED.fullmatch(refused)
    assert example or not refused, f"this is no example of a refused answer: {refused}"
    return Question(CODE.fullmatch(prompt)[1], int(number) if number.isdigit() else None, answer,
                    *(example.groups() if example else (None, None)))


def match(questions, others, prompts):
    """The question that each prompt asks: of those with its text the next one in the table, from its start after its end;
    else one of the other dialogues, which can be entered from this one."""
    place = -1
    for prompt in prompts:
        texts = (FUNCTION.sub("", prompt), FUNCTION.sub("", prompt).removesuffix(" :"))
        after = [*range(place + 1, len(questions)), *range(place + 1)]
        found = next((i for i in after if questions[i].prompt in texts), None)
        if found is None:
            other = next((question for question in others if question.prompt in texts), None)
            assert other is not None, f"the session asks what no table has: {prompt}"
            yield other
        else:
            place = found
            yield questions[found]


def read_session(text, questions, others):
    """What is typed at the start, the screen as a user sees it in the end, and the answers."""
    [(command, session)] = SESSION.findall(text)
    stated = SECRETS.search(text)
    secrets = iter(CODE.findall(stated[1]) if stated else [])
    typed = [(before.strip(), line) for before, line in TYPED.findall(session)]
    answers = []
    for (prompt, line), question in zip(typed, match(questions, others, [prompt for prompt, _ in typed])):
        is_secret = line != "" and set(line) == {"*"}
        answer = next(secrets) if is_secret else line
        assert len(answer) == len(line), f"the stars of {prompt!r} are others"
        answers.append(Answer(prompt, question, answer, is_secret))
    assert next(secrets, None) is None, "a secret is told that is not typed"
    return command.split(), TYPED.sub(r"\1\2", session), answers


def read_dialogues():
    """The dialogues of the page by their names."""
    sections = dict(SECTION.findall((MANUAL / "dialogues.md").read_text(encoding="utf-8")))
    questions = {name: [read_question(row) for row in table_rows(text, HEAD)] for name, text in sections.items()}
    every = [question for of_dialogue in questions.values() for question in of_dialogue]
    return {name: Dialogue(name, questions[name], *read_session(text, questions[name], every))
            for name, text in sections.items()}


def answers_document(answers):
    """The document that gives these answers, and the environment that holds its secrets."""
    entries, secrets = [], {}
    for answer in answers:
        given = answer.text
        if answer.is_secret:
            name = f"SECRET_{len(secrets)}"
            secrets[name] = answer.text
            given = {"environment": name}
        known = next((entry for entry in entries if answer.question.key().items() <= entry.items()), None)
        if known is None:
            entries.append(answer.question.key() | {"answers": [given]})
        else:
            known["answers"].append(given)
    return {"format": 1, "answers": entries}, secrets
