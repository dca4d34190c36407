"""The results as a table on the terminal, and as docs/benchmarks.md."""
import statistics

from figures.pictures import PICTURES
from figures.rows import verdict

TITLES = ("what", "to", "ours", "peer's", "ratio", "spread", "processor", "goal", "aim", "", "memory", "peer's")
GROWTH_TITLES = ("what", "amounts of work", "times", "exponent", "spread", "memory at most")


def _quantity(value, unit):
    step, names = {"ms": (1000, ("ms", "s")), "KB": (1024, ("KB", "MB", "GB"))}[unit]
    rank = 0
    while abs(value) >= step and rank + 1 < len(names):
        value, rank = value / step, rank + 1
    return f"{value:.3g} {names[rank]}" if abs(value) < 1000 else f"{value:.0f} {names[rank]}"


def _number(value, digits=3):
    return "" if value is None else f"{value:.{digits}f}"


def _memory(kilobytes):
    return _quantity(kilobytes, "KB") if kilobytes else ""


def _spread(value):
    return f"{value['q1']:.3f} to {value['q3']:.3f}"


def _comparison(row):
    return (row["what"], row["against"], _quantity(row["ours"]["median"], row["unit"]),
            _quantity(row["peer"]["median"], row["unit"]), _number(row["value"]["median"]), _spread(row["value"]),
            _number(row.get("processor")), _number(row["goal"]), _number(row["aim"]), verdict(row),
            *map(_memory, row["peaks"]))


def _growth(row):
    return (row["what"], ", ".join(f"{size:,}" for size in row["sizes"]),
            ", ".join(_quantity(time, "ms") for time in row["times"]), _number(row["value"]["median"], 2),
            f"{row['value']['q1']:.2f} to {row['value']['q3']:.2f}", _memory(row["peaks"][0]))


def _tables(group):
    """Titles and lines: its comparisons, and what it tells of growth."""
    for titles, cells_of, growth in ((TITLES, _comparison, False), (GROWTH_TITLES, _growth, True)):
        rows = [row for row in group["rows"] if (row["against"] == "growth") == growth]
        if rows:
            yield titles, [cells_of(row) for row in rows]


def printed(groups):
    """All groups one below the other, in columns as wide as they need."""
    tables = [table for group in groups.values() for table in _tables(group)]
    text = []
    for kind in (TITLES, GROWTH_TITLES):
        lines = [kind] + [line for titles, lines in tables if titles == kind for line in lines]
        widths = [max(map(len, cells)) for cells in zip(*lines)]
        if len(lines) > 1:
            text += ["  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip() for line in lines] + [""]
    return "\n".join(text)


def _markdown(titles, lines):
    return "\n".join(["| " + " | ".join(titles) + " |", "|" + "---|" * len(titles)]
                     + ["| " + " | ".join(line) + " |" for line in lines])


def _picture(name, text):
    return (f'<picture>\n  <source media="(prefers-color-scheme: dark)" srcset="{PICTURES.name}/{name}.dark.svg">\n'
            f'  <img alt="{text}" src="{PICTURES.name}/{name}.light.svg">\n</picture>')


HEAD = """# Benchmarks

Every figure that this program is held to, beside other programs that did the same work in the same round. All of it is
what `bench/run` measured and wrote; [bench/README.md](../bench/README.md) says what each row does, and
[benchmarks.json](benchmarks.json) has the numbers. Seconds differ from machine to machine: ratios are what counts.

- *ratio*: ours to the peer's, the median of the rounds' ratios; below 1 we are the faster or the smaller. *spread*: the
  middle half of them. *processor*: the same by processor time.
- *goal* and *aim*: upper bounds of the ratio that this project has set itself.
- *memory*: the most physical memory that a process has had, program and libraries included.
"""


def _caution(groups, cores):
    busy = statistics.median(group["load"] for group in groups.values()) > cores
    return "The machine had other work meanwhile: take the ratios for rough ones.\n\n" if busy else ""


def markdown(results):
    groups, machine = results["groups"], results["machine"]
    rows = [row for group in groups.values() for row in group["rows"]]
    goals = [row for row in rows if row["goal"] is not None]
    missed = [f"- {row['what']} : {row['against']}" for row in goals if verdict(row) == "MISSED"]
    text = [HEAD, f"Measured with {results['version']}, on {machine['cores']} cores "
            f"({machine['processor']}, {machine['system']}). Of {len(goals)} goals {len(goals) - len(missed)} are met"
            + (";\nthese are missed:\n\n" + "\n".join(missed) if missed else ".") + "\n",
            _caution(groups, machine["cores"]) + _picture("ratios", "The ratio of each comparison, on a logarithmic scale") + "\n"]
    for group in groups.values():
        tables = list(_tables(group))
        if not tables:
            continue
        text.append(f"## {group['title']}\n\n{group['rounds']} round{'s' * (group['rounds'] != 1)}; "
                    f"load of the machine {group['load']:.1f}.\n")
        for titles, lines in tables:
            if titles == GROWTH_TITLES:
                text.append("The time is the work's amount to the power of *exponent*: 1 is ten times the time for ten "
                            "times the work, less where\nwhat any amount costs has its part (a start, a file that waits "
                            "for the disk). The line is fitted by least squares on the\nlogarithms.\n\n"
                            + _picture("growth", "Time by amount of work, both logarithmic") + "\n")
            text.append(_markdown(titles, lines) + "\n")
    text.append("## Versions of the others\n\n" + _markdown(("program or library", "version"), results["versions"].items()))
    return "\n".join(text) + "\n"
