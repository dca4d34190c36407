"""What the samples of a group come to: a row for each comparison, and one for each fit of growth.

A sample is [milliseconds, milliseconds of processor time, peak memory in kilobytes, items]; a side has
one a round. A row is what is kept, printed and compared with an earlier one.
"""
import math
import statistics
from dataclasses import dataclass

TIME, PROCESSOR, MEMORY, ITEMS = range(4)


@dataclass(frozen=True)
class Compare:
    """A row: `ours` to `peer` in the same round. Goal and aim are upper bounds of the ratio."""

    what: str
    against: str
    ours: str
    peer: str
    goal: float | None = None
    aim: float | None = None
    column: int = TIME
    less: str = ""  # a side whose time is taken from ours first
    unit: str = "ms"
    by_clock: bool = False  # the processor's time is not known


@dataclass(frozen=True)
class Growth:
    """A row: how the time of these sides grows with the work, whose amounts are `sizes`."""

    what: str
    sizes: tuple
    sides: tuple
    against = "growth"
    goal: float | None = None


class DifferentWork(Exception):
    pass


def spread(values):
    """Median and quartiles."""
    quartiles = statistics.quantiles(values, n=4, method="inclusive") if len(values) > 1 else values * 3
    return dict(zip(("q1", "median", "q3"), quartiles))


def exponent(sizes, times):
    """The slope of the line through the logarithms, by least squares: time grows with size to this power."""
    return statistics.linear_regression([math.log(s) for s in sizes], [math.log(t) for t in times]).slope


def column(samples, which):
    return [sample[which] for sample in samples]


def _same_items(figure, samples):
    # A constant, such as the size of a file, has no items.
    items = {sample[ITEMS] for side in (figure.ours, figure.peer) for sample in samples[side]} - {None}
    if len(items) > 1:
        raise DifferentWork(f"{figure.ours} and {figure.peer} did not do the same work: {sorted(items)} items")


def _ratio(ours, peer):
    """Round by round: what slows the machine down slows both sides of a round."""
    return spread([a / b for a, b in zip(ours, peer)])


def _compare(figure, samples):
    _same_items(figure, samples)
    ours, peer = samples[figure.ours], samples[figure.peer]
    own = column(ours, figure.column)
    if figure.less:
        own = [a - b for a, b in zip(own, column(samples[figure.less], figure.column))]
    row = {
        "value": _ratio(own, column(peer, figure.column)),
        "unit": "KB" if figure.column == MEMORY else figure.unit,
        "ours": spread(own),
        "peer": spread(column(peer, figure.column)),
        "peaks": [statistics.median(column(side, MEMORY)) for side in (ours, peer)],
        "aim": figure.aim,
    }
    if figure.column == TIME and not figure.less and not figure.by_clock and all(column(ours + peer, PROCESSOR)):
        row["processor"] = _ratio(column(ours, PROCESSOR), column(peer, PROCESSOR))["median"]
    return row


def _growth(figure, samples):
    times = [column(samples[side], TIME) for side in figure.sides]
    return {
        "value": spread([exponent(figure.sizes, of_round) for of_round in zip(*times)]),
        "unit": "ms",
        "sizes": list(figure.sizes),
        "times": [statistics.median(of_size) for of_size in times],
        "peaks": [statistics.median(column(samples[figure.sides[-1]], MEMORY)), 0],
    }


def rows_of(figures, samples):
    """The rows whose sides were measured; a missing peer leaves its rows out."""
    rows = []
    for figure in figures:
        sides = figure.sides if isinstance(figure, Growth) else [figure.ours, figure.peer]
        if not all(side in samples for side in sides):
            continue
        row = {"what": figure.what, "against": figure.against, "goal": figure.goal}
        row |= (_growth if isinstance(figure, Growth) else _compare)(figure, samples)
        rows.append(row | {"rounds": len(samples[sides[0]])})
    return rows


def verdict(row):
    if row["goal"] is None:
        return ""
    value = row["value"]["median"]
    if row.get("aim") is not None and value <= row["aim"]:
        return "aim met"
    return "goal met" if value <= row["goal"] else "MISSED"


def slower(earlier, later):
    """What became slower by more than a tenth beyond the spread, and what cannot be told, in lines."""
    found, untold = [], []
    now = {(row["what"], row["against"]): row for row in later}
    for row in earlier:
        name = f"{row['what']} : {row['against']}"
        new = now.get((row["what"], row["against"]))
        if new is None:
            untold.append(f"{name}: not measured this time")
            continue
        was, is_now = row["value"], new["value"]
        width = max(value["q3"] - value["q1"] for value in (was, is_now))
        if is_now["median"] - was["median"] > 0.1 * was["median"] + width:
            found.append(f"{name}: {is_now['median']:.3f}, was {was['median']:.3f} (spread {width:.3f})")
    return found, untold
