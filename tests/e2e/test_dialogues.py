"""The long dialogues on a real terminal: a prompt stands on the screen before its answer is typed, an answer is
echoed, a secret shows stars only, and what was typed reaches the library."""

import pytest

from terminal import Terminal

MAC = "02-00-5E-00-00-01"
WWN = "10:00:02:00:5E:00:00:01"
SECRET = "Zk7!pw-abc"


def script(*answers):
    return {"messages": "numbers", "model": False, "answers": list(answers)}


def query(name, value):
    return {"call": name, "output": value}


def operation(code, **more):
    return {"call": "DoOperation", "operation": code} | more


class Dialogue:
    """A conversation with the program; remembers the lines that have to stand on the screen afterwards."""

    def __init__(self, terminal):
        self.terminal = terminal
        self.expected = []

    def answer(self, number, typed, label=""):
        prompt = f"{label}#{number} :"
        self.terminal.answer(prompt, typed)
        self.expected.append(f"        {prompt} {typed}".rstrip())

    def secret(self, number, typed, shown=None):
        prompt = f"#{number} :"
        self.terminal.answer_secret(prompt, typed)
        self.expected.append(f"        {prompt} {'*' * len(typed) if shown is None else shown}".rstrip())

    def check_screen(self):
        """Every question stands there with its answer, in order."""
        assert [line for line in self.terminal.lines() if line in self.expected] == self.expected


def input_of(calls, code):
    return next(call["input"] for call in calls if call.get("operation") == code)


def test_iscsi_boot(sandbox):
    sandbox.write_script(script(query("GetPartitionState", 1), operation(20, status=1)))
    with Terminal(sandbox, ["-iscsi", MAC, "-setbootconfig"]) as terminal:
        dialogue = Dialogue(terminal)
        for number, typed in ((26658, "yes"), (28690, "y"), (26660, "N"), (26663, "61"), (26689, "60"),
                              (26702, "0"), (26666, "192.0.2.10"), (26667, "x"), (28673, "255.255.255.0"),
                              (26668, "192.0.2.1"), (26669, "iqn.example:boot"), (26670, "user")):
            dialogue.answer(number, typed)
        dialogue.secret(26671, SECRET)
        dialogue.secret(26690, "other")
        dialogue.secret(26671, "Zk7!pxx\b\bw-abc", shown="*" * len(SECRET))
        dialogue.secret(26690, SECRET)
        for number, typed in ((26673, "y"), (26674, "192.0.2.50"), (26675, ""), (26676, "3"), (26677, "first"),
                              (26678, "first user")):
            dialogue.answer(number, typed)
        dialogue.secret(26679, "")
        dialogue.secret(26693, "")
        for number, typed in ((26681, "n"), (26705, "n"), (26707, "y"), (26708, "y")):
            dialogue.answer(number, typed)
        assert terminal.wait_for_end() == 0
        dialogue.check_screen()
        assert SECRET not in terminal.text() and SECRET.encode() not in terminal.written
        assert b"other" not in terminal.written
    values = {0: "Enabled", 2: "Disabled", 4: "60", 6: "0", 8: "192.0.2.10", 9: "255.255.255.0", 10: "192.0.2.1",
              11: "iqn.example:boot", 12: "user", 13: SECRET, 14: "Enabled", 15: "192.0.2.50", 16: "3260", 17: "3",
              18: "first", 19: "first user", 21: "Disabled", 28: "Disabled", 30: "Enabled", 31: "Enabled"}
    assert input_of(sandbox.calls(), 21) == [values.get(position, "") for position in range(32)]


def test_fcoe_boot(sandbox):
    target = [f"t{number}" for number in range(1, 12)]
    sandbox.write_script(script(
        query("GetPartitionState", 3), operation(35, output=[target]),
        operation(37, output=[[f"l{number}" for number in range(1, 12)]])))
    with Terminal(sandbox, ["-fcoe", WWN, "-setbootconfig"]) as terminal:
        dialogue = Dialogue(terminal)
        for number, typed in ((22273, "x"), (22273, "o"), (22274, "o"), (22274, "Y"), (22275, "9"), (22275, "8"),
                              (22276, "255"), (22277, ""), (22277, "0"), (22279, "t3"), (22280, "l2"), (22280, "l1"),
                              (22281, "n"), (22282, "n")):
            dialogue.answer(number, typed)
        assert terminal.wait_for_end() == 0
        dialogue.check_screen()
        assert terminal.lines()[-1] == "                #22290"
    assert input_of(sandbox.calls(), 44) == [
        "One Time Disabled", "Enabled", "", 255, 0, 8, [["t3", "l1", "Disabled"]] + [["", "", ""]] * 7]


def partition_script(*answers):
    return script(query("GetPartitionState", 1), query("GetAdapterType", "CNA"), query("GetAdapterPortNumber", 2),
                  *answers)


def test_partitions(sandbox):
    sandbox.write_script(partition_script(operation(59, result=201)))
    with Terminal(sandbox, ["-npar", MAC, "-set"]) as terminal:
        dialogue = Dialogue(terminal)
        dialogue.answer(29185, "3")
        dialogue.answer(29185, "2")
        for port, personality in ((0, "2"), (1, "3")):
            dialogue.answer(29187, "5")
            dialogue.answer(29191, personality)
            for function in range(port, 8, 2):
                dialogue.answer(29188, "007", label=f"[PF{function}]")
                dialogue.answer(29189, "93", label=f"[PF{function}]")
        dialogue.answer(29197, "y")
        assert terminal.wait_for_end() == 0
        dialogue.check_screen()
        assert terminal.lines()[-1] == "                #29458"

    def function(personality="3", companion="16"):
        return ["", personality, "7", "93", "", "", "", "", "", companion]

    functions = [function() for _ in range(8)]
    functions[2], functions[3] = function("5", "0"), function("9", "0")
    assert input_of(sandbox.calls(), 59) == (
        ["7", "2"] + [""] * 4 + ["4", "4", "", ""] + [""] * 4 + functions + [0, 2])


@pytest.mark.parametrize("command, questions", [
    ("-npar", ((29185, "1"), (29187, "1"), (29187, "1"), (29197, "n"))),
    ("-res", ((29456, "0"), (29456, "2"), (29197, "N"))),
])
def test_nothing_is_sent_without_consent(sandbox, command, questions):
    sandbox.write_script(partition_script())
    with Terminal(sandbox, [command, MAC, "-set"]) as terminal:
        dialogue = Dialogue(terminal)
        for number, typed in questions:
            dialogue.answer(number, typed)
        assert terminal.wait_for_end() == 0
        dialogue.check_screen()
        assert terminal.lines()[-1].strip().startswith("#29198")
    assert not {59, 61} & {call.get("operation") for call in sandbox.calls()}


def test_personality(sandbox):
    sandbox.write_script(partition_script(operation(60, output=["now"]), operation(61, result=201)))
    with Terminal(sandbox, ["-res", MAC, "-set"]) as terminal:
        dialogue = Dialogue(terminal)
        for number, typed in ((29456, "12"), (29456, "1"), (29197, "Y")):
            dialogue.answer(number, typed)
        assert terminal.wait_for_end() == 0
        dialogue.check_screen()
        assert terminal.lines()[-1] == "                #29458"
    assert input_of(sandbox.calls(), 61) == ["1", 0]


@pytest.mark.parametrize("command, questions", [
    ("-npar", ((29185, "1"), (29187, "1"), (29187, "1"))), ("-res", ((29456, "2"),)),
])
def test_an_unclear_consent_is_complained_about_until_the_user_breaks_off(sandbox, command, questions):
    sandbox.write_script(partition_script())
    with Terminal(sandbox, [command, MAC, "-set"], rows=40) as terminal:
        dialogue = Dialogue(terminal)
        for number, typed in questions:
            dialogue.answer(number, typed)
        dialogue.answer(29197, "yes")
        # The complaint alone fills the screen, and goes on; its last line may be on its way.
        terminal.wait_until(lambda lines: {line.strip() for line in lines[:-1]} == {"", "#29196"})
        assert not terminal.has_ended
    assert not {59, 61} & {call.get("operation") for call in sandbox.calls()}
