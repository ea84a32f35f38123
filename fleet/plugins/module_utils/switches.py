"""Switches and numbers as options and hosts have them."""

import re

from .failure import Failure

# What is answered for a switch to become so.
SWITCH_ANSWERS = {"Enabled": "y", "Disabled": "n"}


def switch(given):
    """What a host calls a switch that is given as true or false; None for one that is not given."""
    return {True: "Enabled", False: "Disabled", None: None}[given]


def same_switch(first, second):
    """Whether two texts, such as Yes and No, are the same, in whatever letters."""
    return first.lower() == second.lower()


def same_number(first, second):
    """Whether two texts are the same number, however it is written; texts that are none are compared as they are."""
    are_numbers = all(re.fullmatch("[0-9]+", text) for text in (first, second))
    return int(first) == int(second) if are_numbers else first == second


def number_within(option, number, most):
    """The number, which has to be within 0 and `most`; None, which is not given, stays None."""
    if number is not None and not 0 <= number <= most:
        raise Failure(f"{option}: {number} is not within 0 and {most}")
    return number
