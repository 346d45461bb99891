"""Who may include whom, read off the sources: a file includes its own folder and those above it in this list."""
import os
import re
import sys

FOLDERS = [
    "sim",
    "audio",
    "maintenance",
    "input",
    "view/gl",
    "view/models",
    "view/world",
    "view/street",
    "view/picture",
    "ui/words",
    "ui/text",
    "ui/layer",
    "ui/logo",
    "app",
    "screens/menus",
    "screens/panels",
    "screens/game",
    "program",
]


def includes_of(path):
    with open(path, encoding="utf-8") as file:
        return re.findall(r'^#include "([^"]+)"', file.read(), re.MULTILINE)


def main(root):
    sources = sorted(os.path.relpath(os.path.join(folder, name), root)
                     for folder, _, names in os.walk(root) for name in names if name.endswith((".h", ".cpp")))
    included = {source: includes_of(os.path.join(root, source)) for source in sources}
    floor = {source: FOLDERS.index(os.path.dirname(source)) for source in sources
             if os.path.dirname(source) in FOLDERS}
    wrong = [f"{source} lies in a folder that is not in the list" for source in sources if source not in floor]
    wrong += [f"{folder} holds no source" for i, folder in enumerate(FOLDERS) if i not in floor.values()]
    for source, targets in included.items():
        for target in targets:
            if target not in floor:
                wrong.append(f"{source} includes {target}, which does not exist")
            elif source in floor and floor[target] > floor[source]:
                wrong.append(f"{source} includes {target}")
            elif source in included[target]:
                wrong.append(f"{source} and {target} include each other")
    print("\n".join(wrong) or f"{len(sources)} sources keep the rule")
    return 1 if wrong else 0


sys.exit(main(sys.argv[1]))
