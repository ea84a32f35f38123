"""Logging in to an iSCSI target on a real terminal."""

from terminal import Terminal

MAC = "02-00-5E-10-00-02"
NAME = "iqn.2015-01.com.example:disks"
LOGIN = ["-iscsi", MAC, "-target", "-login", NAME, "192.0.2.20", "3260", "-onewaychap"]


def test_question_and_secret(sandbox):
    """The rest of the answer's line is not taken for the CHAP name, and a secret shows as stars."""
    with Terminal(sandbox, LOGIN) as terminal:
        terminal.answer("#24591 :", "yes")
        terminal.answer("#28692 :", "target user")
        terminal.answer_secret("#28693 :", "targetsecret")
        assert terminal.wait_for_end() == 0
        lines = [line.strip() for line in terminal.lines()]
        assert b"targetsecret" not in terminal.written
    assert lines == ["", "#28691", "", "#24591 : yes", "", "#28692 : target user", "",
                     "#28693 : ************", "", "#24593"]
    options = ["Yes", "No", "No", "One-way CHAP", "target user", "targetsecret", "", ""]
    operations = [call for call in sandbox.calls() if call["call"] == "DoOperation"]
    assert operations[-1]["input"] == [1, "No", NAME, "", "192.0.2.20", "3260", options]


def test_question_answered_no(sandbox):
    with Terminal(sandbox, LOGIN) as terminal:
        terminal.answer("#24591 :", "n")
        assert terminal.wait_for_end() == 0
        lines = [line.strip() for line in terminal.lines()]
    assert lines == ["", "#28691", "", "#24591 : n", "", "#24592"]
