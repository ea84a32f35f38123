"""A question that one character answers does not wait for the end of its line."""

import subprocess

from program import DEFAULT_LOCALE, TIME_LIMIT


def test_a_login_is_confirmed_by_one_character(sandbox):
    sandbox.write_script({"messages": "numbers", "model": False, "answers": []})
    process = sandbox.start(["-iscsi", "02-00-5E-10-00-01", "-target", "-login", "T", "192.0.2.20"])
    process.stdin.write(b"y")
    process.stdin.flush()
    try:
        assert process.wait(timeout=TIME_LIMIT) == 0
    except subprocess.TimeoutExpired:
        process.kill()
        raise
    output = process.stdout.read()
    process.stdin.close()
    expected = " \n#28691\n\n\t#24591 :  \n#24593\n"
    assert output == sandbox.platform.encode(expected, DEFAULT_LOCALE)
