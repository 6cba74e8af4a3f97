"""Draws the cost per rule against the number of rules, a panel for each operation."""

import math

from figures import COMPARED, SUBJECTS

COLUMNS = 3
WIDTH, HEIGHT = 300, 250  # of a panel with its margins
LEFT, RIGHT, TOP, BOTTOM = 62, 14, 34, 46

# Ink, paper and lines, then the subjects; on light and on dark paper.
LIGHT = {
    "ink": "#1f2328", "paper": "#ffffff", "grid": "#d0d7de", "filters": "#0550ae",
    "messages": "#bc4c00", "arena": "#8250df", "nftnl": "#1a7f37", "struct": "#57606a",
}
DARK = {
    "ink": "#e6edf3", "paper": "#0d1117", "grid": "#30363d", "filters": "#58a6ff",
    "messages": "#f0883e", "arena": "#bc8cff", "nftnl": "#3fb950", "struct": "#8b949e",
}
DASHES = {
    "filters": "none", "messages": "7 3", "arena": "2 3", "nftnl": "10 3 2 3", "struct": "1 5"
}


def colours(palette):
    """Style rules without variables, which not every viewer supports."""
    yield f"text {{ fill: {palette['ink']}; }}"
    yield f".axis {{ stroke: {palette['ink']}; }}"
    yield f".paper {{ fill: {palette['paper']}; }}"
    yield f".grid {{ stroke: {palette['grid']}; }}"
    for subject in SUBJECTS:
        yield f".{subject} {{ stroke: {palette[subject]}; fill: {palette[subject]}; }}"


def style():
    rules = [
        "text { font: 12px system-ui, sans-serif; }",
        ".title { font-weight: 600; font-size: 14px; }",
        ".curve { stroke-width: 2; }",
        *colours(LIGHT),
        "@media (prefers-color-scheme: dark) {",
        *colours(DARK),
        "}",
        ".axis, .curve { fill: none; }",
    ]
    return "\n".join(rules)


class Scale:
    """Maps a logarithmic axis onto pixels."""

    def __init__(self, low, high, first, last):
        self.low, self.high, self.first, self.last = low, high, first, last

    def __call__(self, value):
        share = math.log(value / self.low) / math.log(self.high / self.low)
        return round(self.first + share * (self.last - self.first), 1)


def text(x, y, content, anchor="middle", extra=""):
    return f'<text x="{x}" y="{y}" text-anchor="{anchor}" {extra}>{content}</text>'


def curve(points, subject):
    path = " ".join(f"{x},{y}" for x, y in points)
    yield (
        f'<polyline class="{subject} curve" points="{path}" '
        f'stroke-dasharray="{DASHES[subject]}"/>'
    )
    for x, y in points:
        yield f'<circle class="{subject}" cx="{x}" cy="{y}" r="3"/>'


def decades(low, high):
    return [10**power for power in range(round(math.log10(low)), round(math.log10(high)) + 1)]


def axes(sizes, across, up, title):
    yield text(LEFT, TOP - 12, title, "start", 'class="title"')
    for value in decades(up.low, up.high):
        y = up(value)
        yield f'<line class="grid" x1="{LEFT}" x2="{WIDTH - RIGHT}" y1="{y}" y2="{y}"/>'
        yield text(LEFT - 6, y + 4, f"{value:,}", "end")
    for size in sizes:
        x = across(size)
        yield f'<line class="grid" x1="{x}" x2="{x}" y1="{TOP}" y2="{HEIGHT - BOTTOM}"/>'
        yield text(x, HEIGHT - BOTTOM + 16, f"{size:,}")
    yield f'<path class="axis" d="M{LEFT} {TOP}V{HEIGHT - BOTTOM}H{WIDTH - RIGHT}"/>'
    middle = (LEFT + WIDTH - RIGHT) / 2
    yield text(middle, HEIGHT - BOTTOM + 34, "rules in the group")
    turned = f'transform="rotate(-90 14 {(TOP + HEIGHT - BOTTOM) / 2})"'
    yield text(14, (TOP + HEIGHT - BOTTOM) / 2, "ns per rule", "middle", turned)


def legend(subjects):
    for row, subject in enumerate(subjects):
        y = TOP + 10 + 24 * row
        yield from curve([(LEFT, y), (LEFT + 40, y)], subject)
        yield text(LEFT + 52, y + 4, SUBJECTS[subject], "start")


def points_of(figures, subject, own, other):
    operation = own if subject == "filters" else other
    times = [(size, figures.get("time", subject, operation, size)) for size in figures.sizes]
    return [(size, time) for size, time in times if time]


def draw(figures):
    panels = [
        (title, {s: points_of(figures, s, own, other) for s in figures.subjects})
        for title, own, other in COMPARED
    ]
    values = [
        time for _, curves in panels for points in curves.values() for _, time in points
    ]
    low = 10 ** math.floor(math.log10(min(values)))
    top = 10 ** math.ceil(math.log10(max(values)))
    # Room beside the first and the last size; a single size is in the middle.
    edges = figures.sizes[0] * 0.7, figures.sizes[-1] * 1.4
    across = Scale(*edges, LEFT, WIDTH - RIGHT)
    up = Scale(low, top, HEIGHT - BOTTOM, TOP)

    parts = []
    for number, (title, curves) in enumerate(panels):
        parts.append(panel(number, axes(figures.sizes, across, up, title)))
        for subject, points in curves.items():
            points = [(across(size), up(time)) for size, time in points]
            parts.append(panel(number, curve(points, subject)))
    parts.append(panel(len(panels), legend(figures.subjects)))
    rows = -(-(len(panels) + 1) // COLUMNS)
    wide, high = COLUMNS * WIDTH, rows * HEIGHT
    return (
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {wide} {high}" role="img" '
        f'aria-label="Nanoseconds per rule against the number of rules">\n'
        f"<style>\n{style()}\n</style>\n"
        f'<rect class="paper" width="{wide}" height="{high}"/>\n'
        + "\n".join(parts)
        + "\n</svg>\n"
    )


def panel(number, parts):
    x, y = number % COLUMNS * WIDTH, number // COLUMNS * HEIGHT
    return f'<g transform="translate({x} {y})">\n' + "\n".join(parts) + "\n</g>"
