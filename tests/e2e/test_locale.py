"""The user's locale outside Windows, where each category has its own and any of them may not be installed."""

import re

import pytest

pytestmark = pytest.mark.platforms("native", "sanitize")

MISSING = "xx_XX.UTF-8"
JAPANESE = "ja_JP.UTF-8"
ENGLISH = "en_US.UTF-8"
KANA = re.compile("[\u3041-\u30ff]")
IMPORT_FILE = '<Config><Initiator_Login><Initiator_Name value="é"/></Initiator_Login></Config>'


def environment(**variables):
    """The environment's locales: these and no others."""
    return {"LC_ALL": None} | variables


NAMES = [
    (environment(LANG=JAPANESE), JAPANESE, True),
    (environment(LANG=JAPANESE, LC_TIME=MISSING), JAPANESE, True),
    (environment(LANG=JAPANESE, LC_NUMERIC=MISSING), JAPANESE, True),
    (environment(LANG=JAPANESE, LC_PAPER=MISSING), JAPANESE, True),
    (environment(LANG=JAPANESE, LC_CTYPE=MISSING), JAPANESE, True),
    (environment(LANG=ENGLISH, LC_MESSAGES=JAPANESE, LC_TIME=MISSING), JAPANESE, True),
    (environment(LANG=JAPANESE, LC_MESSAGES=ENGLISH, LC_TIME=MISSING), ENGLISH, False),
    (environment(LANG=JAPANESE, LC_MESSAGES=MISSING), JAPANESE, True),
    (environment(LANG=JAPANESE, LC_ALL=MISSING), JAPANESE, True),
    (environment(LANG=MISSING, LC_MESSAGES=JAPANESE), JAPANESE, True),
    (environment(LANG=MISSING, LC_CTYPE=JAPANESE), "", False),
    (environment(LANG=MISSING), "", False),
    (environment(LC_TIME=MISSING), "C", False),
    # All are installed: the name of several locales, which the library is handed as far as it has room.
    (environment(LANG=JAPANESE, LC_TIME=ENGLISH), "LC_CTYPE=ja_JP.UTF-8;LC_NUMERI", True),
    (environment(LANG=ENGLISH, LC_MESSAGES=JAPANESE), "LC_CTYPE=en_US.UTF-8;LC_NUMERI", False),
]


@pytest.mark.parametrize("variables, name, is_japanese", NAMES)
def test_language(sandbox, variables, name, is_japanese):
    sandbox.write_script({"model": False, "answers": []})
    result = sandbox.run(["-help"], env=variables)
    assert result.errors == b""
    assert bool(KANA.search(result.output.decode("utf-8"))) == is_japanese
    start = sandbox.calls()[0]
    assert (start["call"], start["locale"]) == ("Initialize", name)


# The library is handed one byte for each character that was read: the one of "é", or the two that the file has,
# which the trace shows as the letter that they make in UTF-8. A single one it shows in a private way.
ONE_BYTE = "\uf7e9"
TWO_BYTES = "é"


@pytest.mark.parametrize("variables, value", [
    (environment(LANG=ENGLISH), ONE_BYTE),
    (environment(LANG=ENGLISH, LC_TIME=MISSING), ONE_BYTE),
    (environment(LANG=ENGLISH, LC_MESSAGES=MISSING), ONE_BYTE),
    (environment(LANG=MISSING, LC_CTYPE=ENGLISH), ONE_BYTE),
    (environment(LANG=ENGLISH, LC_CTYPE=MISSING), ONE_BYTE),
    (environment(LANG=ENGLISH, LC_ALL=MISSING), ONE_BYTE),
    # Without a locale of characters each byte is a character.
    (environment(LANG=MISSING), TWO_BYTES),
    (environment(LC_CTYPE=MISSING), TWO_BYTES),
])
def test_encoding_of_an_import_file_without_mark(sandbox, variables, value):
    (sandbox.work / "cnadiscovery.xml").write_text(IMPORT_FILE, encoding="utf-8")
    sandbox.run(["-import"], env=variables)
    operations = [call for call in sandbox.calls() if call["call"] == "DoOperation"]
    assert [operation["operation"] for operation in operations] == [31]
    assert operations[0]["input"][0] == value
