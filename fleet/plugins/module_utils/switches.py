"""Switches and numbers as options and the settings of boots have them."""

from .failure import Failure

# What is answered for a switch to become so.
SWITCH_ANSWERS = {"Enabled": "y", "Disabled": "n"}


def switch(given):
    """What a host calls a switch that is given as true or false; None for one that is not given."""
    return {True: "Enabled", False: "Disabled", None: None}[given]


def number_within(option, number, most):
    """The number, which has to be within 0 and `most`; None, which is not given, stays None."""
    if number is not None and not 0 <= number <= most:
        raise Failure(f"{option}: {number} is not within 0 and {most}")
    return number
