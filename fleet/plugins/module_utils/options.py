"""What the argument specifications of the modules have in common; the fragment `common` documents it."""

COMMON_OPTIONS = {
    "tavrohost": {"type": "path"},
    "library": {"type": "path"},
    "time_limit": {"type": "int", "default": 300},
}

# Of modules with secrets. `no_log` is said, since the name looks like that of a secret.
SECRET_OPTIONS = {
    "update_secret": {"type": "str", "choices": ["always", "on_create"], "default": "on_create", "no_log": False},
}
