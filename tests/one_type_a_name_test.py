"""Two types of one name in one program are undefined behaviour that no compiler tells of, even in different sources:
the linker keeps one of the two sets of functions that the library makes of them."""
import os
import re
import sys

TYPE = re.compile(r"^(?:struct|enum|union|class)\s+(?:class\s+)?(\w+)[^;{]*\{", re.MULTILINE)


def main(root):
    places = {}
    for folder, _, names in os.walk(root):
        for name in sorted(names):
            if not name.endswith((".h", ".cpp")):
                continue
            path = os.path.join(folder, name)
            with open(path, encoding="utf-8") as file:
                for type_name in TYPE.findall(file.read()):
                    places.setdefault(type_name, []).append(os.path.relpath(path, root))
    assert len(places) > 50, f"no types under {root}"
    shared = {name: paths for name, paths in places.items() if len(paths) > 1}
    for name, paths in shared.items():
        print(name, "is defined in", ", ".join(paths))
    return 1 if shared else 0


sys.exit(main(sys.argv[1]))
