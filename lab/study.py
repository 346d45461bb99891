"""A study: a city script, the values that its {names} take, seeds, and what to keep of every city.

    script = "taxes.txt"               # beside the study
    seeds = { from = 1, to = 6 }       # or a list; the script says {seed}
    keep = ["lastIncome", "happiness"] # figures of `stats`, arrays as demand0, workingBuildings10
    days = "last"                      # of each city, or "all", or a number: every so many days

    [parameters]
    steps = { from = -8, to = 10, step = 2 }
    road = ["street", "avenue"]

    [parameters.park]                  # a name for each case, and what it says in the script
    "in the middle" = { x = 48, y = 47 }
    "at the edge" = { x = 60, y = 47 }

    [[plots]]                          # any number; see plots.py
    ...

Every combination of parameters and seeds is a city with a number, and no list of them is ever made: a study
of a million cities costs nothing until it runs.
"""
import decimal
import os
import re
import tomllib

KEYS = {"script", "seeds", "keep", "days", "parameters", "plots"}
PLOT_KEYS = {"name", "title", "x", "y", "lines", "where", "x_label", "y_label", "lines_label"}
PLOT_NEEDS = {"name", "title", "x", "y", "x_label", "y_label"}
NAME = re.compile(r"[A-Za-z_][A-Za-z0-9_]*")
FILE_COMMANDS = {"save", "load", "fields"}
SEED_LIMIT = 2**32


class StudyError(Exception):
    """What is wrong with a study, for the one who wrote it."""


class Values:
    """What a parameter may be: a list of texts. Each is written in the table and said in the script."""

    def __init__(self, name, texts):
        self.says = [name] # the {names} that it fills
        self.texts = texts
        self.count = len(texts)
        self.places = {text: i for i, text in enumerate(texts)}

    def label(self, place):
        return self.texts[place]

    def settings(self, place):
        return {self.says[0]: self.label(place)}

    def place(self, label):
        return self.places.get(label)


class Cases(Values):
    """Texts that stand in the table; in the script each says several things."""

    def __init__(self, cases):
        super().__init__(None, list(cases))
        self.cases = list(cases.values())
        self.says = list(self.cases[0])

    def settings(self, place):
        return self.cases[place]


class Range(Values):
    """The texts of a range of numbers, both ends included; no list of them is made."""

    def __init__(self, name, first, step, count):
        self.says = [name]
        self.first, self.step, self.count = first, step, count

    def label(self, place):
        return format(self.first + place * self.step, "f")

    def place(self, label):
        try:
            place = int((decimal.Decimal(label) - self.first) / self.step)
        except (ValueError, ArithmeticError):
            return None
        return place if 0 <= place < self.count and self.label(place) == label else None


def demand(truth, message):
    if not truth:
        raise StudyError(message)


def refuse_unknown(keys, known, where):
    for key in keys:
        demand(key in known, f"{where}: unknown key '{key}'; it may have {', '.join(sorted(known))}")


def is_number(value):
    is_plain = isinstance(value, (int, decimal.Decimal)) and not isinstance(value, bool)
    return is_plain and decimal.Decimal(value).is_finite()


def read_range(where, table):
    refuse_unknown(table, {"from", "to", "step"}, where)
    demand("from" in table and "to" in table, f"{where}: a range needs 'from' and 'to'")
    first, last, step = table["from"], table["to"], table.get("step", 1)
    demand(all(map(is_number, (first, last, step))), f"{where}: a range is made of numbers")
    demand(step > 0 and first <= last, f"{where}: a range goes upwards, in steps above 0")
    first, last, step = map(decimal.Decimal, (first, last, step))
    return Range(where, first, step, int((last - first) / step) + 1)


def read_text(where, item):
    demand(isinstance(item, str) or is_number(item), f"{where}: {item!r} is neither a text nor a number")
    text = item if isinstance(item, str) else format(item, "d" if isinstance(item, int) else "f")
    demand(not re.search(r"[#\x00-\x1f]", text), f"{where}: {text!r} holds a # or a control character")
    return text


def read_list(where, items):
    demand(items, f"{where}: the list is empty")
    texts = [read_text(where, item) for item in items]
    demand(len(set(texts)) == len(texts), f"{where}: a value stands twice in the list")
    return Values(where, texts)


def read_cases(where, table):
    cases = {}
    for label, says in table.items():
        demand(says and set(says) == set(next(iter(table.values()))), f"{where}: each case must say the same names")
        demand(all(map(NAME.fullmatch, says)), f"{where}: a name is made of letters, digits and _")
        cases[read_text(where, label)] = {name: read_text(f"{where}: {label}", item) for name, item in says.items()}
    return Cases(cases)


def read_values(where, item):
    demand(isinstance(item, (list, dict)), f"{where}: this is no list, no range and no table of cases")
    if isinstance(item, list):
        return read_list(where, item)
    return read_cases(where, item) if item and all(isinstance(v, dict) for v in item.values()) else read_range(where, item)


def read_seeds(item):
    seeds = read_values("seed", item)
    demand(not isinstance(seeds, Cases), "seeds: seeds are a list or a range")
    step = seeds.step if isinstance(seeds, Range) else 1
    labels = [seeds.label(0), seeds.label(seeds.count - 1)] if isinstance(seeds, Range) else seeds.texts
    fits = all(re.fullmatch(r"\d{1,10}", label) and int(label) < SEED_LIMIT for label in labels)
    demand(fits and step == int(step), "seeds: a seed is a whole number from 0 to 4294967295")
    return seeds


def names_in_script(path, script):
    """The {names} of a script; a study has no place for commands that read or write files."""
    names = set()
    for number, line in enumerate(script.split("\n"), 1):
        line = line.split("#")[0]
        word = line.split()[:1]
        demand(not FILE_COMMANDS.intersection(word), f"{path}:{number}: the cities of a study run side by side, "
               "on any machine, and can share no file")
        names.update(name for name in re.findall(r"\{([^{}]*)\}", line) if NAME.fullmatch(name))
    return names


class Study:
    def __init__(self, path):
        self.path = path
        self.name = os.path.splitext(os.path.basename(path))[0]
        try:
            with open(path, "rb") as file:
                table = tomllib.load(file, parse_float=decimal.Decimal)
        except (tomllib.TOMLDecodeError, UnicodeDecodeError) as error:
            raise StudyError(f"{path}: {error}") from None
        try:
            self.read(table)
        except StudyError as error:
            raise StudyError(f"{path}: {error}") from None

    def read(self, table):
        refuse_unknown(table, KEYS, "the study")
        for key in ("script", "seeds", "keep"):
            demand(key in table, f"'{key}' is missing")
        self.read_parameters(table)
        self.read_keep(table)
        self.read_script(table["script"])
        self.plots = table.get("plots", [])
        demand(isinstance(self.plots, list), "plots: each begins with [[plots]]")
        for plot in self.plots:
            self.check_plot(plot)
        demand(len({plot["name"] for plot in self.plots}) == len(self.plots), "plots: two have the same name")

    def read_parameters(self, table):
        parameters = table.get("parameters", {})
        demand(isinstance(parameters, dict), "parameters: this is no table")
        self.axes = []
        for name, item in parameters.items():
            demand(NAME.fullmatch(name), f"parameters: '{name}' is no name of letters, digits and _")
            demand(name not in {"seed", "city", "day", "error"}, f"parameters: '{name}' is a column of its own")
            self.axes.append((name, read_values(name, item)))
        self.axes.append(("seed", read_seeds(table["seeds"])))
        self.names = [name for name, _ in self.axes]
        self.count = 1
        for _, values in self.axes:
            self.count *= values.count
        self.says = [name for _, values in self.axes for name in values.says]
        for name in self.says:
            demand(self.says.count(name) == 1, f"parameters: {{{name}}} is said twice")

    def read_keep(self, table):
        self.keep = table["keep"]
        demand(isinstance(self.keep, list) and self.keep, "keep: name the figures to keep in a list")
        demand(all(isinstance(figure, str) for figure in self.keep), "keep: a figure is named by a text")
        for figure in self.keep:
            demand(figure not in {"day", "city"}, f"keep: '{figure}' is always kept")
            demand(figure not in self.names, f"keep: '{figure}' is a parameter too")
        demand(len(set(self.keep)) == len(self.keep), "keep: a figure stands twice in the list")
        self.days = table.get("days", "last")
        is_pace = isinstance(self.days, int) and not isinstance(self.days, bool) and self.days > 0
        demand(self.days in ("last", "all") or is_pace, 'days: this is "last", "all", or a number above 0')

    def read_script(self, name):
        demand(isinstance(name, str), "script: this is no file name")
        self.script_path = os.path.join(os.path.dirname(self.path), name)
        try:
            with open(self.script_path, "rb") as file:
                self.script = file.read()
        except OSError as error:
            raise StudyError(f"script: {self.script_path}: {error.strerror}") from None
        used = names_in_script(self.script_path, self.script.decode(errors="replace"))
        for name in sorted(used - set(self.says)):
            raise StudyError(f"the script asks for {{{name}}}, which is no parameter")
        for name in self.says:
            demand(name in used, f"the script never says {{{name}}}")

    def check_plot(self, plot):
        demand(isinstance(plot, dict), "plots: each begins with [[plots]]")
        where = f"plot '{plot.get('name', '?')}'"
        refuse_unknown(plot, PLOT_KEYS, where)
        for key in sorted(PLOT_NEEDS):
            demand(key in plot, f"{where}: '{key}' is missing")
        demand(re.fullmatch(r"[\w-]+", str(plot["name"])), f"{where}: a name is made of letters, digits, _ and -")
        for key in ("y", "y_label"):
            if isinstance(plot[key], str):
                plot[key] = [plot[key]]
        demand(len(plot["y"]) == len(plot["y_label"]) > 0, f"{where}: each 'y' needs its 'y_label'")
        for figure in plot["y"]:
            demand(figure in self.keep + ["day"], f"{where}: '{figure}' is not kept")
        parameters = self.names[:-1]
        demand(plot["x"] in parameters + ["day"], f"{where}: 'x' is a parameter or day")
        demand(plot["x"] != "day" or self.days != "last", f"{where}: only the last day of each city is kept")
        demand(plot["x"] == "day" or self.days == "last", f"{where}: many days are kept, so that 'x' must be day")
        demand(plot.get("lines", parameters and parameters[0]) in parameters or "lines" not in plot,
               f"{where}: 'lines' is a parameter")
        fixed = plot.setdefault("where", {})
        demand(isinstance(fixed, dict), f"{where}: 'where' is a table of parameters")
        for name, value in fixed.items():
            demand(name in parameters, f"{where}: '{name}' is no parameter")
            demand(dict(self.axes)[name].place(str(value)) is not None, f"{where}: {name} is never {value}")
        for name in parameters:
            demand(name in {plot["x"], plot.get("lines"), *fixed}, f"{where}: which {name}? Say so in 'where'")

    def places(self, number):
        """The place of each of a city's values; that of the seed changes fastest."""
        places = []
        for _, values in reversed(self.axes):
            number, place = divmod(number, values.count)
            places.append(place)
        return places[::-1]

    def labels(self, number):
        return [values.label(place) for (_, values), place in zip(self.axes, self.places(number))]

    def settings(self, number):
        """What the script's {names} say in this city."""
        settings = {}
        for (_, values), place in zip(self.axes, self.places(number)):
            settings.update(values.settings(place))
        return settings

    def find(self, labels, settings):
        """The number of the city with these labels and settings; None when there is none."""
        number = 0
        for (_, values), label in zip(self.axes, labels):
            place = values.place(label)
            if place is None:
                return None
            number = number * values.count + place
        return number if self.settings(number) == settings else None
