"""Names as options have them and command lines take them."""

import re

from .failure import Failure
from .host import normalised

WWN_DIGITS = 16


def iscsi_name(option, text):
    """An iSCSI name that a command line can hold; a Failure names the option. Whether there can be such a name, the
    library decides."""
    if not text or text.startswith("-") or re.search(r"[\s\x00-\x1f\x7f]", text):
        raise Failure(f"{option}: {text!r} is no iSCSI name")
    return text


def wwn(option, text):
    """A WWN in its usual form, "20:01:02:00:5E:10:00:04"; a Failure names the option."""
    digits = normalised(text).upper()
    if not re.fullmatch(f"[0-9A-F]{{{WWN_DIGITS}}}", digits):
        raise Failure(f"{option}: {text} is no WWN, which has {WWN_DIGITS} hexadecimal digits")
    return ":".join(digits[position:position + 2] for position in range(0, WWN_DIGITS, 2))
