"""The program on a real terminal: a pseudo-terminal natively, a console window under Wine."""

import pytest

from terminal import Terminal

STARS = "*" * 74
REASON = "アダプターが見つかりません。"
FAILING_HOST_NAME = {
    "messages": "numbers",
    "model": False,
    "answers": [{
        "call": "GetHostName", "status": 1,
        "error": {"code": 1, "message": REASON, "action": "接続を確認", "additional": "", "details": "状態 4"},
    }],
}


def shown(text):
    """How a text looks on a screen: tabs reach to multiples of 8, blanks at the end of a line are not seen."""
    return "\n".join(line.expandtabs(8).rstrip() for line in text.split("\n")).rstrip("\n")


def test_about(sandbox):
    with Terminal(sandbox, ["-about"]) as terminal:
        assert terminal.wait_for_end() == 0
        lines = terminal.lines()
    assert lines[0] == ""
    assert lines[1] == lines[5] == " " * 16 + STARS
    assert lines[2].startswith(" " * 32) and lines[2].endswith("(5.2.3.1)")
    assert "2015" in lines[3]
    assert lines[4] == ""
    assert len(lines) == 6


@pytest.mark.parametrize("locale", ["ja_JP.UTF-8", "en_US.UTF-8"])
def test_japanese_arrives_whole(sandbox, locale):
    """A console shows every character, whatever its code page."""
    sandbox.write_script(FAILING_HOST_NAME)
    with Terminal(sandbox, ["-nonsense"], locale) as terminal:
        assert terminal.wait_for_end() == 0
        text = terminal.text()
    expected = [" ", "#24837", "", "Error Details", "", f"Message: {REASON}", "Details: [状態 4]",
                "Action: 接続を確認", " ", "#28674"]
    assert text == shown("\n".join(expected))


@pytest.mark.parametrize("locale", ["ja_JP.UTF-8", "zh_CN.UTF-8", "en_US.UTF-8"])
@pytest.mark.parametrize("argument", ["-help", "-showadapter"])
def test_a_screen_shows_what_a_pipe_gets(sandbox, argument, locale):
    sandbox.write_script(None)
    result = sandbox.run([argument], locale=locale)
    piped = result.output.decode(sandbox.platform.encoding(locale)).replace("\r\n", "\n")
    with Terminal(sandbox, [argument], locale, rows=300) as terminal:
        assert terminal.wait_for_end() == 0
        text = terminal.text()
    assert text == shown(piped)
