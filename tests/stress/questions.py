"""Every question of the programs, from the sessions of the manual's page of dialogues, and how to get to one."""

import dataclasses

from dialogue_page import Dialogue, read_dialogues


@dataclasses.dataclass(frozen=True)
class Place:
    """A question in the session in which it is met for the first time."""

    dialogue: Dialogue
    number: int  # of the answer in the session, from 0

    @property
    def asked(self):
        return self.dialogue.answers[self.number]

    def __str__(self):
        return f"{self.dialogue.name} {self.number}"


def every_question():
    """The first time that each question of each dialogue comes."""
    places = []
    for dialogue in read_dialogues().values():
        met = []
        for number, answer in enumerate(dialogue.answers):
            if answer.question not in met:
                met.append(answer.question)
                places.append(Place(dialogue, number))
    return places


def go_to(terminal, place, texts=None):
    """Answers all questions before the place, with other texts perhaps, and waits for its prompt."""
    for number, answer in enumerate(place.dialogue.answers[:place.number]):
        text = texts[number] if texts else answer.text
        (terminal.answer_secret if answer.is_secret else terminal.answer)(answer.prompt, text)
    (terminal.wait_for_secret_prompt if place.asked.is_secret else terminal.wait_for_prompt)(place.asked.prompt)
