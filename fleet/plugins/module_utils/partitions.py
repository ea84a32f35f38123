"""How adapters are divided into functions."""

# The partition state of an adapter that is not divided.
NOT_PARTITIONED = 1
# More functions than these no adapter has.
MOST_FUNCTIONS = 8


def functions_of_port(port, port_count):
    """The numbers of the functions that a port of a divided adapter has; ports are counted from 0."""
    return list(range(port, MOST_FUNCTIONS, port_count))
