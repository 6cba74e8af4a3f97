"""The library's performance targets, and whether the figures meet them."""

# Those on the heap: an arena frees nothing until everything is freed, so it cannot hold rules that
# come and go.
MESSAGES = ["messages"]
WITHOUT_ALLOCATION = ["equality", "stage_change", "type_change", "removal", "text_walk"]
# Looking up a place among all entries takes longer the more there are.
LOOKING_UP = ["insertion", "replacement", "removal"]
GROWTH = 1.15


class Target:
    """A text, the figure at each size, and whether they pass: None where nothing was measured."""

    def __init__(self, text, limit, values, passed=None, stretch=None):
        self.text, self.limit, self.values = text, limit, values
        known = [value for value in values if value is not None]
        self.passed = passed if passed is not None else (
            all(value <= limit for value in known) if known else None
        )
        self.stretched = stretch is not None and all(value <= stretch for value in known)
        self.stretch = stretch

    def verdict(self):
        if self.passed is None:
            return "not measured"
        if not self.passed:
            return "FAIL"
        return "PASS, stretch too" if self.stretched else "PASS"


def ratio(a, b):
    return None if a is None or b is None else a / b


def of_quickest(figures, text, operation, peers, peer_operations, limit, stretch=None):
    """The library's time for an operation, divided by the peers' fastest way to do it."""
    values = [
        ratio(
            figures.time("filters", operation, size),
            figures.quickest(peers, peer_operations, size),
        )
        for size in figures.sizes
    ]
    return Target(text, limit, values, stretch=stretch)


def of_bytes(figures):
    yield of_quickest(
        figures, "rules to bytes, against messages built and serialized",
        "to_bytes", MESSAGES, ["tree_to_bytes"], 0.5, 0.15,
    )
    yield of_quickest(
        figures, "bytes to rules, against messages parsed",
        "from_bytes", MESSAGES, ["from_bytes"], 1.0, 0.7,
    )


def of_peers(figures):
    names = {
        "build": "build", "to_bytes": "to bytes", "from_bytes": "from bytes",
        "copy": "copy", "equality": "equality",
    }
    ways = {"equality": ["equality", "equality_of_bytes"]}
    for operation, name in names.items():
        same = ways.get(operation, [operation])
        yield of_quickest(
            figures, f"{name}, against libnftnl", operation, ["nftnl"], same, 1 / 3
        )
        yield of_quickest(figures, f"{name}, against messages", operation, MESSAGES, same, 1.0)
    yield of_quickest(
        figures, "build and copy into a group, against messages",
        "group_build", MESSAGES, ["group_build"], 1.0,
    )
    yield of_quickest(
        figures, "text, against the messages' debug text", "text", MESSAGES, ["text"], 0.8
    )


def exact_allocations(figures, text, operation, expected):
    """The allocations per rule must be exactly those expected at each size."""
    values = [figures.count("allocations", "filters", operation, s) for s in figures.sizes]
    known = [pair for pair in zip(values, figures.sizes) if pair[0] is not None]
    passed = all(value == expected(size) for value, size in known) if known else None
    return Target(text, None, values, passed=passed)


def of_allocations(figures):
    def of(operation):
        return lambda size: figures.count("allocations", "filters", operation, size)

    # The inserted entries are a subset of the group's.
    for operation in "insertion", "replacement":
        yield exact_allocations(
            figures, f"allocations of {operation}: those of a copy in a node",
            operation, of("node_copy"),
        )
    yield exact_allocations(
        figures, "allocations of a group's copy: those of each entry's copy, and a node each",
        "copy", lambda size: of("entry_copy")(size) + 1,
    )
    for operation in WITHOUT_ALLOCATION:
        name = operation.replace("_", " ")
        yield exact_allocations(figures, f"allocations of {name}: none", operation, lambda _: 0)


def growth(figures, operation):
    """How the instructions per rule grow from the fewest rules to the most."""
    few, many = figures.sizes[0], figures.sizes[-1]
    return ratio(
        figures.count("instructions", "filters", operation, many),
        figures.count("instructions", "filters", operation, few),
    )


def of_growth(figures, operations):
    grown = {o: growth(figures, o) for o in operations if o not in LOOKING_UP}
    worst = max(grown, key=lambda operation: grown[operation] or 0)
    yield Target(
        "instructions per rule with the most rules, against the fewest; the worst: "
        + worst.replace("_", " "),
        GROWTH,
        [None] * (len(figures.sizes) - 1) + [grown[worst]],
    )


def all_targets(figures, operations):
    yield from of_bytes(figures)
    yield from of_peers(figures)
    yield from of_allocations(figures)
    yield from of_growth(figures, operations)
