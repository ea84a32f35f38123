"""The documentation of how an initiator logs in."""


class ModuleDocFragment:
    """The options of module_utils/login.py."""

    DOCUMENTATION = r"""
options:
  multipath:
    description:
      - Whether there can be several sessions with a target.
    type: bool
  header_digest:
    description:
      - Whether headers have a CRC32C checksum.
    type: bool
  data_digest:
    description:
      - Whether data has a CRC32C checksum.
    type: bool
  authentication:
    description:
      - Who has to prove who they are. C(one_way_chap) is the initiator, C(mutual_chap) the target as well.
    type: str
    choices: [none, one_way_chap, mutual_chap]
  target_chap_name:
    description:
      - The CHAP name that is given to the target.
    type: str
  target_chap_secret:
    description:
      - The CHAP secret that is given to the target, 12 to 16 characters.
    type: str
  initiator_chap_name:
    description:
      - The CHAP name that the target has to give with C(mutual_chap).
    type: str
  initiator_chap_secret:
    description:
      - The CHAP secret that the target has to give with C(mutual_chap), 12 to 16 characters.
    type: str
"""
