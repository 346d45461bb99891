"""Draws the plots of a study from its table: the median over the seeds as a line, and all seeds as the band
around it; one line for each value of a parameter.

    [[plots]]
    name = "taxes"                        # of the files, SVG and PNG
    title = "What taxes do"
    x = "steps"                           # a parameter, or day
    x_label = "Tax on homes"
    y = ["lastIncome", "happiness"]       # or one figure; a panel for each
    y_label = ["Income (money a day)", "Happiness (0 to 100)"]
    lines = "school"                      # a parameter; optional, and so is lines_label
    where = { pump = 1 }                  # a value for each parameter that is neither

The same table gives the same bytes.
"""
import csv
import os
import statistics
import textwrap

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt

COLOURS = ["#0072b2", "#d55e00", "#009e73", "#cc79a7", "#806000", "#56b4e9"] # told apart by every eye
STYLE = {
    "svg.hashsalt": "orlavane",
    "font.family": "DejaVu Sans",
    "font.size": 9,
    "axes.titlesize": 11,
    "axes.titlelocation": "left",
    "axes.spines.top": False,
    "axes.spines.right": False,
    "axes.grid": True,
    "axes.axisbelow": True,
    "grid.color": "#e4e4e4",
    "legend.frameon": False,
    "axes.prop_cycle": matplotlib.cycler(color=COLOURS),
}


def number_or_none(text):
    try:
        return float(text)
    except ValueError:
        return None


def gather(rows, x, figure):
    """The seeds' values of a figure at each x, in the order of the table."""
    points = {}
    for row in rows:
        value = number_or_none(row[figure])
        if value is not None:
            points.setdefault(row[x], []).append(value)
    return points


def draw_line(axes, points, places, label):
    x = [places[at] for at in points]
    low, middle, high = zip(*((min(v), statistics.median(v), max(v)) for v in points.values())) if points else ((),) * 3
    line, = axes.plot(x, middle, label=label, linewidth=1.6, marker="o" if len(x) <= 15 else None, markersize=3.5)
    axes.fill_between(x, low, high, color=line.get_color(), alpha=0.16, linewidth=0)


def draw_dots(axes, points, places, label, shift):
    x = [places[at] + shift for at in points]
    middle = [statistics.median(values) for values in points.values()]
    reach = [[m - min(v) for m, v in zip(middle, points.values())], [max(v) - m for m, v in zip(middle, points.values())]]
    axes.errorbar(x, middle, yerr=reach, fmt="o", markersize=6, elinewidth=4, label=label)


def draw_plot(plot, table, folder):
    x, lines = plot["x"], plot.get("lines")
    fixed = {name: str(value) for name, value in plot["where"].items()}
    rows = [row for row in table if all(row[name] == value for name, value in fixed.items())]
    ticks = list(dict.fromkeys(row[x] for row in rows if row[x]))
    is_scale = all(number_or_none(tick) is not None for tick in ticks)
    places = {tick: float(tick) if is_scale else i for i, tick in enumerate(ticks)}
    groups = list(dict.fromkeys(row[lines] for row in rows)) if lines else [None]

    count = len(plot["y"])
    figure, panels = plt.subplots(count, 1, sharex=True, squeeze=False, layout="constrained",
                                   figsize=(8 if lines else 6.6, 1.1 + 2.2 * count))
    for axes, name, label in zip(panels[:, 0], plot["y"], plot["y_label"]):
        for i, group in enumerate(groups):
            points = gather([row for row in rows if group in (None, row.get(lines))], x, name)
            if is_scale:
                draw_line(axes, points, places, group)
            else:
                draw_dots(axes, points, places, group, (i - (len(groups) - 1) / 2) * 0.15)
        axes.set_ylabel(label)
        axes.margins(x=0.03 if is_scale else 0.12)
        axes.yaxis.set_major_formatter(matplotlib.ticker.StrMethodFormatter("{x:,g}"))
    if not is_scale or len(ticks) <= 12:
        axes.set_xticks(list(places.values()), [textwrap.fill(tick, 14) for tick in ticks])
    axes.set_xlabel(plot["x_label"])
    panels[0, 0].set_title(plot["title"], pad=12)
    if lines:
        panels[0, 0].legend(title=plot.get("lines_label"), alignment="left", loc="upper left", bbox_to_anchor=(1, 1))
    for kind in ("svg", "png"):
        path = os.path.join(folder, f"{plot['name']}.{kind}")
        figure.savefig(path + ".part", format=kind, dpi=150, metadata={"Date": None} if kind == "svg" else None)
        os.replace(path + ".part", path)
        yield path
    plt.close(figure)


def draw(study, table_path, folder):
    """Yields the files as they are written."""
    with open(table_path, newline="") as file:
        table = list(csv.DictReader(file))
    with matplotlib.rc_context(STYLE):
        for plot in study.plots:
            yield from draw_plot(plot, table, folder)
