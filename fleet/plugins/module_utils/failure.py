"""The one exception of the collection."""


class Failure(Exception):
    """Why a module cannot go on, in words for its user.

    The facts become members of the module's result, beside C(msg).
    """

    def __init__(self, message, **facts):
        super().__init__(message)
        self.facts = facts
