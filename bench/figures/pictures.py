"""The pictures of docs/benchmarks.md, light and dark: the same bytes for the same results."""
from pathlib import Path

from figures.rows import verdict

PICTURES = Path("docs/benchmarks")
THEMES = {
    "light": {"ink": "#1f2328", "grid": "#d1d9e0", "ours": "#0969da", "missed": "#cf222e", "plain": "#818b98"},
    "dark": {"ink": "#f0f6fc", "grid": "#3d444d", "ours": "#4493f8", "missed": "#f85149", "plain": "#9198a1"},
}
LINES = ("#0969da", "#bf8700", "#1a7f37", "#cf222e", "#8250df", "#bc4c00")


def _figure(theme, height):
    from matplotlib.figure import Figure

    figure = Figure(figsize=(9, height), layout="constrained")
    axes = figure.add_subplot()
    axes.tick_params(which="both", colors=theme["ink"], labelsize=8)
    axes.grid(axis="both", which="major", color=theme["grid"], linewidth=0.5)
    axes.set_axisbelow(True)
    for spine in axes.spines.values():
        spine.set_visible(False)
    return figure, axes


def _ratios(theme, rows):
    figure, axes = _figure(theme, 0.2 * len(rows) + 1)
    places = range(len(rows))
    values = [row["value"]["median"] for row in rows]
    colours = {"MISSED": theme["missed"], "": theme["plain"]}
    # Bars begin at 1: to the left we are better.
    axes.barh(places, [value - 1 for value in values], left=1, height=0.6,
              color=[colours.get(verdict(row), theme["ours"]) for row in rows])
    for place, row in zip(places, rows):
        axes.plot([row["value"]["q1"], row["value"]["q3"]], [place, place], color=theme["ink"], linewidth=1)
        if row["goal"] is not None:
            axes.plot([row["goal"]] * 2, [place - 0.4, place + 0.4], color=theme["ink"], linewidth=1.5)
    axes.axvline(1, color=theme["ink"], linewidth=0.8)
    axes.set_xscale("log")
    axes.set_yticks(places, [f"{row['what']} : {row['against']}" for row in rows])
    axes.invert_yaxis()
    axes.margins(y=0.01)
    axes.set_xlabel("ours to the other's (blue: a goal met, red: missed, grey: none; upright line: the goal)",
                    color=theme["ink"], fontsize=8)
    return figure


def _growth(theme, rows):
    figure, axes = _figure(theme, 4)
    for row, colour in zip(rows, LINES):
        axes.plot(row["sizes"], row["times"], marker="o", markersize=3, color=colour,
                  label=f"{row['what']}: {row['value']['median']:.2f}")
    axes.set_xscale("log")
    axes.set_yscale("log")
    axes.set_xlabel("records or rows", color=theme["ink"], fontsize=8)
    axes.set_ylabel("milliseconds", color=theme["ink"], fontsize=8)
    legend = axes.legend(title="exponent", labelcolor=theme["ink"], frameon=False, fontsize=8, loc="center left",
                         bbox_to_anchor=(1, 0.5))
    legend.get_title().set(color=theme["ink"], fontsize=8)
    return figure


def draw(results):
    import matplotlib

    # Letters stay letters, and identifiers do not change from run to run.
    matplotlib.rcParams |= {"svg.fonttype": "none", "svg.hashsalt": "opnimp", "font.family": "sans-serif",
                            "font.sans-serif": ["DejaVu Sans"]}
    rows = [row for group in results["groups"].values() for row in group["rows"]]
    growth = [row for row in rows if row["against"] == "growth"]
    PICTURES.mkdir(exist_ok=True)
    # What a window adds can come out below nothing; a logarithmic scale has no place for that.
    ratios = [row for row in rows if row not in growth and row["value"]["median"] > 0]
    for name, draw_one, of in (("ratios", _ratios, ratios), ("growth", _growth, growth)):
        for scheme, theme in THEMES.items():
            draw_one(theme, of).savefig(PICTURES / f"{name}.{scheme}.svg", transparent=True,
                                        metadata={"Date": None, "Creator": None})
