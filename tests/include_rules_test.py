"""Who may include whom, read off the sources: a folder that reaches upward does not land."""
import os
import re
import sys

MAY_INCLUDE = {
    "sim": {"sim"},
    "view": {"sim", "view"},
    "audio": {"sim", "audio"},
    "maintenance": {"maintenance"},
    "ui": {"sim", "view", "audio", "maintenance", "ui"},
    "app": {"sim", "view", "audio", "maintenance", "ui", "app"},
}
PLAIN_RECORDS = {"app/input.h", "app/settings.h"}  # anyone may read them, and they include nothing of ours
# Each sees the whole App and draws itself in it; nothing includes a screen but the frame that shows it.
SCREENS = {"ui/end_screen", "ui/game_screen", "ui/launcher", "ui/settings_screen", "ui/title_screen"}
PARTS_OF_SCREENS = {"ui/" + name for name in (
    "bottom_bar", "budget_panel", "city_overview", "district_panel", "finance_panel", "hud_layout", "inspectors",
    "pause_menu", "right_panel", "statistics_panel", "tool_panel", "top_bar", "tutorial")}
MAY_SEE_THE_APP = {"view/picking.h", "view/picking.cpp"} | {
    part + ".cpp" for part in SCREENS | PARTS_OF_SCREENS}


def includes_of(path):
    with open(path, encoding="utf-8") as file:
        return re.findall(r'^#include "([^"]+)"', file.read(), re.MULTILINE)


def main(root):
    sources = sorted(os.path.relpath(os.path.join(folder, name), root)
                     for folder, _, names in os.walk(root) for name in names if name.endswith((".h", ".cpp")))
    assert len(sources) > 20, f"no sources under {root}"
    included = {source: includes_of(os.path.join(root, source)) for source in sources}
    wrong = []
    for source, targets in included.items():
        folder = source.split("/")[0]
        for target in targets:
            if target not in included:
                wrong.append(f"{source} includes {target}, which does not exist")
            elif source in PLAIN_RECORDS:
                wrong.append(f"{source} is a plain record and includes {target}")
            elif target.split("/")[0] not in MAY_INCLUDE[folder] and target not in PLAIN_RECORDS \
                    and source not in MAY_SEE_THE_APP:
                wrong.append(f"{source} includes {target}")
            elif target.removesuffix(".h") in SCREENS \
                    and source not in ("app/frame.cpp", target.removesuffix(".h") + ".cpp"):
                wrong.append(f"{source} includes the screen {target}")
            elif source in included.get(target, []):
                wrong.append(f"{source} and {target} include each other")
    print("\n".join(wrong) or f"{len(sources)} sources keep the rule")
    return 1 if wrong else 0


sys.exit(main(sys.argv[1]))
