"""Comparing answers that come from a map of the module, which is read from the switch again every now and then."""


def agree(one, other):
    """Whether both calls give the same. The counters of a map that comes of age between the two differ for this
    reason alone, but a map that was just loaded stays as it is for half a minute."""
    return any(one() == other() for _ in range(3))
