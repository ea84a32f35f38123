"""What chooses the platforms and prepares the runs is shared with the tests under stress."""

pytest_plugins = ["platforms", "wine_retry"]
