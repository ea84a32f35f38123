"""What the documentation of all modules has in common."""


class ModuleDocFragment:
    """Options, attributes and return values that several modules share."""

    DOCUMENTATION = r"""
options:
  tavrohost:
    description:
      - The program C(tavrohost) on the host.
      - Searched in C(PATH) when it is not given.
    type: path
  library:
    description:
      - The management library that is used in the place of the installed one.
    type: path
  time_limit:
    description:
      - How many seconds each reading of the host, each rehearsal and each command may take, 1 to 1000000.
      - What takes longer is ended, and the module fails.
    type: int
    default: 300
requirements:
  - tavrohost
  - Python 3.7 or later
notes:
  - What takes effect when the host restarts can be read by nobody before. Until then each run sends it again.
"""

    ATTRIBUTES = r"""
attributes:
  check_mode:
    description: Can tell what would be changed without changing the host.
    support: full
    details:
      - Each command is rehearsed on a copy of the host. The host itself is only read.
      - What cannot be known without the host becomes a warning.
  diff_mode:
    description: Tells what differs on the host before and after.
    support: full
    details:
      - The whole host is compared, but for counters, secrets, how portals are logged in to, and what others offer on
        the network.
"""

    SECRETS = r"""
options:
  update_secret:
    description:
      - When to send the secrets, which no host tells back.
      - C(on_create) sends them with whatever else has to be changed, and not where the host shows no difference.
      - C(always) sends them each time, which counts as a change each time.
    type: str
    choices: [always, on_create]
    default: on_create
"""
