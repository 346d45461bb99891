"""Holds docs/save-format.md against a real save: save_format_test.py DOCUMENT ORLAVANE_SIM EXAMPLE"""
import json, re, struct, subprocess, sys, tempfile

document, program, example = sys.argv[1:]
text = open(document).read()
CODES = {"u8": "B", "i16": "h", "i32": "i", "u32": "I", "f32": "f", "f64": "d"}

# The columns of the three tables: lists of (offset, type, field), with the size where it is given.
rows = [[c.strip() for c in line.strip().strip("|").split("|")] for line in text.splitlines() if line[:2] == "| "]
head = [(int(r[0]), r[1], r[2], r[3]) for r in rows if r[0].isdigit() and len(r) == 5]
records = [(int(r[0]), r[1], r[2]) for r in rows if r[0].isdigit() and len(r) == 4]
second = [i for i, r in enumerate(records) if r[0] == 0][1]
tables = {"cell": (records[:second], 12), "building": (records[second:], 44)}


def size_of(kind):
    name, count = re.fullmatch(r"(\w+)(?:\[(\d+)\])?", kind).groups()
    return (tables[name][1] if name in tables else struct.calcsize(CODES[name])) * int(count or 1)


# Nothing lies between the fields.
end = 0
for offset, size, kind, field in head[:-1]:
    assert offset == end, f"{field} is at {end}, not {offset}"
    assert int(size) == size_of(kind), f"{field} has {size_of(kind)} bytes, not {size}"
    end += int(size)
assert head[-1][0] == end == 149431
for fields, size in tables.values():
    end = 0
    for offset, kind, field in fields:
        assert offset == end, f"{field or 'padding'} is at {end}, not {offset}"
        end += size_of(kind)
    assert end == size

with tempfile.TemporaryDirectory() as folder:
    path = folder + "/city.ovw"
    questions = f"tax 1 3\nbudget 2 -2\ndistricttax 3\npolicy 4 2\nsave {path}\nstats\n"
    script = open(example).read() + "\n" + questions
    run = subprocess.run([program], input=script, capture_output=True, text=True, check=True)
    *rates, saved, answer = run.stdout.splitlines()[-6:]
    stats = json.loads(answer.removeprefix("stats "))
    for field, line in zip(("taxRate", "serviceBudget", "districtTax", "districtPolicy"), rates, strict=True):
        stats[field] = [int(word) for word in line.split()[1:]]
    data = open(path, "rb").read()

    # The figures that the program prints stand where the table says.
    values = {}
    for offset, size, kind, field in head[:-1]:
        name, count = re.fullmatch(r"(\w+)(?:\[(\d+)\])?", kind).groups()
        if name in CODES:
            found = struct.unpack_from(f"<{count or 1}{CODES[name]}", data, offset)
            values[field] = list(found) if count else found[0]
    compared = [field for field in values if field in stats]
    for field in compared:
        found = values[field] if isinstance(values[field], list) else [values[field]]
        given = stats[field] if isinstance(stats[field], list) else [stats[field]]
        assert all(abs(a - b) <= 1e-6 * abs(b) for a, b in zip(found, given, strict=True)), field
    assert len(compared) == 27, compared
    assert values["buildingCount"] == stats["buildings"] == (len(data) - 149431) / 44

    # Cells and buildings point at each other as described.
    at = {name: {field: offset for offset, _, field in fields} for name, (fields, _) in tables.items()}
    for i in range(values["buildingCount"]):
        building = 149431 + 44 * i
        x, y = (struct.unpack_from("<h", data, building + at["building"][axis])[0] for axis in "xy")
        cell = 38835 + 12 * (y * 96 + x)
        assert struct.unpack_from("<i", data, cell + at["cell"]["buildingIndex"])[0] == i
    zoned = sum(data[38835 + 12 * i + at["cell"]["zone"]] != 0 for i in range(9216))
    assert zoned == stats["zonedCells"]

    # The example of the document runs, on both versions.
    code = re.search(r"```python\n(.*?)```", text, re.S).group(1)
    assert len(code.splitlines()) <= 15
    kinds = [data[149431 + 44 * i] for i in range(values["buildingCount"])]
    expected = (f"population {stats['population']}\nmoney {round(stats['money'], 2)}\n"
                f"homes {kinds.count(0)} of {len(kinds)} buildings\n")
    version2 = data[:4] + struct.pack("<I", 2) + data[8:223] + data[227:]
    for version in (data, version2):
        open(path, "wb").write(version)
        run = subprocess.run([sys.executable, "-c", code, path], capture_output=True, text=True, check=True)
        assert run.stdout == expected, run.stdout
    answer = subprocess.run([program], input=f"load {path}\n", capture_output=True, text=True).stdout
    assert answer == "load true\n", answer
