"""Holds the picture of the README to what the programs print: it is drawn anew and compared."""

import pytest

import picture
from program import ROOT


@pytest.mark.platforms("native", "sanitize")
def test_the_picture_is_what_the_session_shows(platform, tmp_path):
    drawn = picture.draw(picture.play(platform, tmp_path / "sandbox"))
    assert (ROOT / "docs" / "pictures" / "session.svg").read_text(encoding="utf-8") == drawn, "run scripts/picture"
