"""Arguments reach the program as they were typed."""

import pytest

from program import DEFAULT_LOCALE


@pytest.mark.parametrize("argument", ["*", "-abou?", "-a*", '"-about"', "'-about'"])
def test_wildcards_and_quotes_are_not_interpreted(sandbox, argument):
    """The only file to be found has a command's name, so that an expansion would run that command."""
    (sandbox.work / "-about").write_bytes(b"")
    result = sandbox.run([argument])
    assert result.output == sandbox.platform.encode(" \n#28674\n", DEFAULT_LOCALE)
