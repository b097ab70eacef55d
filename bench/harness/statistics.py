"""Medians with their spread."""

from statistics import median, quantiles


def summary(values):
    """The median, and the middle half of the values around it."""
    if len(values) < 2:
        return {"median": values[0], "low": values[0], "high": values[0]}
    low, _, high = quantiles(values, n=4, method="inclusive")
    return {"median": median(values), "low": low, "high": high}


def number(value):
    """Three digits that count, and no more."""
    if value >= 100:
        return f"{value:.0f}"
    return f"{value:.1f}" if value >= 10 else f"{value:.2f}"


def with_spread(one):
    """ "1.94 ±0.02": the half of the middle half's width."""
    half = (one["high"] - one["low"]) / 2
    return f"{number(one['median'])} ±{half:.2f}"


def time(nanoseconds):
    """A time in the unit that suits it."""
    for unit, size in (("ns", 1), ("µs", 1e3), ("ms", 1e6)):
        if nanoseconds < size * 1000:
            return f"{number(nanoseconds / size)} {unit}"
    return f"{number(nanoseconds / 1e9)} s"


def table(head, rows):
    """A table as a page has it, its columns aligned."""
    rows = [[str(cell) for cell in row] for row in [head, *rows]]
    widths = [max(len(row[column]) for row in rows) for column in range(len(head))]
    lines = ["| " + " | ".join(c.ljust(w) for c, w in zip(row, widths)) + " |" for row in rows]
    lines.insert(1, "|" + "|".join("-" * (w + 2) for w in widths) + "|")
    return "\n".join(lines)
