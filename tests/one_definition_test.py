"""Two types of one name in one program are undefined behaviour that no compiler tells of, even in different sources:
the linker keeps one of the two sets of functions that the library makes of them. The same goes for two inline
functions, templates or variables."""
import os
import re
import sys

TYPE = re.compile(r"^(?:struct|enum|union|class)\s+(?:class\s+)?(\w+)[^;{]*\{", re.MULTILINE)
FUNCTION = re.compile(r"^(template<[^>]*>\s+)?((?:[\w:]+(?:<[^>;{}]*>)?[\s*&]+)+)(operator\W+|\w+)"
                      r"\(([^()]*)\)[^;{}]*\{", re.MULTILINE)
VARIABLE = re.compile(r"^inline\s[^=;(){]*?(\w+)(?:\[[^\]]*\])?\s*[={;]", re.MULTILINE)
COMMENT = re.compile(r"//.*")
ARGUMENT_NAME = re.compile(r"(?<=[\s&*])\w+$")


def types_of(arguments):
    arguments = (argument.partition("=")[0].strip() for argument in arguments.split(","))
    return ", ".join(ARGUMENT_NAME.sub("", argument).strip() for argument in arguments)


def functions(text):
    """(signature, whether the linker takes two of it for one) of each that other files could see."""
    for template, words, name, arguments in FUNCTION.findall(text):
        if "static" not in words.split():
            merged = template or {"inline", "constexpr"} & set(words.split())
            yield f"{name}({types_of(arguments)})", bool(merged)


def main(root):
    places, merged = {}, set()
    for folder, _, names in os.walk(root):
        for name in sorted(names):
            if not name.endswith((".h", ".cpp")):
                continue
            path = os.path.join(folder, name)
            with open(path, encoding="utf-8") as file:
                text = COMMENT.sub("", file.read())
            found = {(type_name, True) for type_name in TYPE.findall(text) + VARIABLE.findall(text)}
            for defined, is_merged in found.union(functions(text)):
                places.setdefault(defined, []).append(os.path.relpath(path, root))
                if is_merged:
                    merged.add(defined)
    assert len([name for name in merged if "(" not in name]) > 50, f"no types under {root}"
    assert len([name for name in merged if "(" in name]) > 20, f"no inline functions under {root}"
    shared = {name for name in merged if len(places[name]) > 1}
    for name in sorted(shared):
        print(name, "is defined in", ", ".join(places[name]))
    return 1 if shared else 0


sys.exit(main(sys.argv[1]))
