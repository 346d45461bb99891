"""The set-up program's window, by mouse and keyboard, and the games that the tests pack into set-up programs."""
import collections
import os
import shutil
import subprocess
import time

from windows_game import BIN, HERE, WINE_PROFILE, driver, wait_until, windows_path
from driver import WINE, clean_environment, prepare, read_xwd

ROOT = os.path.join(HERE, "../..")
OWN_NAME = "Orlavane-setup.exe"
DESKTOP_LINK = os.path.join(WINE_PROFILE, "Desktop/Orlavane.lnk")
MENU_LINK = os.path.join(WINE_PROFILE, "AppData/Roaming/Microsoft/Windows/Start Menu/Programs/Orlavane.lnk")
MENU_LINK_ON_C = "C:" + MENU_LINK[len(os.path.dirname(os.path.dirname(WINE_PROFILE))):].replace("/", "\\")
USUAL_FOLDER = os.path.join(WINE_PROFILE, "AppData/Local/Programs/Orlavane")

# Exit codes.
DONE, GONE, DAMAGED, ANOTHER_RUNS, NO_SUCH_FOLDER, NO_ROOM, GAME_RUNS, NOT_WRITTEN = 0, 1, 2, 3, 4, 5, 6, 7

# In the window, with English words. Negative numbers are from its right or lower edge.
NEXT, CANCEL, BACK = (-158, -23), (-57, -23), (-244, -23)
TERMS = (32, 291)
FOLDER = (240, 103)
DESKTOP_BOX, MENU_BOX = (33, 206), (33, 232)
START_BOX = (216, 202)


def pack(program, version, setup):
    """A set-up program of a game that differs from the next one in its program alone."""
    package = setup + ".game"
    os.makedirs(os.path.join(package, "licences"))
    shutil.copy(os.path.join(BIN, program), os.path.join(package, "Orlavane.exe"))
    subprocess.run(["x86_64-w64-mingw32-strip", os.path.join(package, "Orlavane.exe")], check=True)
    for library in ("SDL2.dll", "SDL2_ttf.dll"):
        shutil.copy(os.path.join(BIN, library), package)
        with open(os.path.join(package, library), "ab") as file:
            file.write(version.encode())  # so that each file tells its version
    with open(os.path.join(package, "licences/licence.txt"), "w") as file:
        file.write("of " + version)
    subprocess.run([os.path.join(ROOT, "scripts/package-windows-setup"), package, version, setup], check=True,
                   stdout=subprocess.DEVNULL)
    return package


def files(folder):
    """Their paths in the folder, and what is in them."""
    found = {}
    for place, folders, names in os.walk(folder):
        for name in folders:
            found[os.path.relpath(os.path.join(place, name), folder)] = None
        for name in names:
            with open(os.path.join(place, name), "rb") as file:
                found[os.path.relpath(os.path.join(place, name), folder)] = file.read()
    return found


def forget():
    """No game is installed."""
    desktop = os.path.dirname(DESKTOP_LINK)
    if os.path.islink(desktop):  # to the folder of whoever runs the tests
        os.remove(desktop)
    os.makedirs(desktop, exist_ok=True)
    for link in (DESKTOP_LINK, MENU_LINK):
        if os.path.exists(link):
            os.remove(link)
    shutil.rmtree(USUAL_FOLDER, ignore_errors=True)


def hold(path):
    """Nobody else may have the file until the returned function is called."""
    holder = subprocess.Popen([WINE, os.path.join(BIN, "hold-file.exe"), windows_path(path)],
                              stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    assert holder.stdout.readline().strip() == b"held"

    def let_go():
        holder.stdin.close()
        holder.wait(60)
        holder.stdout.close()
    return let_go


def start_setup(screen, program, *options, **variables):
    """Silently."""
    environment = clean_environment(os.path.dirname(program), DISPLAY=screen.display, **variables)
    return subprocess.Popen([WINE, program, "/S", *options], env=environment, stdout=subprocess.DEVNULL,
                            stderr=subprocess.DEVNULL, restore_signals=False)


def run_setup(*words, **variables):
    """Its exit code."""
    return start_setup(*words, **variables).wait(300)


Control = collections.namedtuple("Control", "number pressable width height needed_width needed_height kind words")


class Eyes:
    """What stands in the set-up program's window, by each control's own word."""

    def __init__(self, screen):
        environment = clean_environment(os.path.dirname(BIN), DISPLAY=screen.display)
        self.process = subprocess.Popen([WINE, os.path.join(BIN, "look-at-setup.exe")], env=environment,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.wait(60)
        self.process.stdout.close()

    def ask(self, *words):
        self.process.stdin.write(" ".join(map(str, words)).encode() + b"\n")
        self.process.stdin.flush()
        found = []
        while line := self.process.stdout.readline().decode().rstrip("\r\n"):
            *numbers, kind, text = line.split("\t")
            found.append(Control(*map(int, numbers), kind, text))
        return found

    def look(self):
        return self.ask("look")

    def wait_for(self, condition, what):
        """The controls once the condition holds for them."""
        found = []

        def holds():
            found[:] = self.look()
            return condition(found)
        wait_until(holds, lambda: f"{what}: {found}")
        return found

    def wait_for_words(self, words):
        return self.wait_for(lambda found: any(control.words == words for control in found), words)


class Setup:
    """The set-up program in its window."""

    def __init__(self, screen, program, *options, home, language=0, **variables):
        prepare("Orlavane.exe", home)  # the preference folder
        settings = os.path.join(home, ".local/share/Orlavane/Orlavane/settings.ini")
        os.makedirs(os.path.dirname(settings), exist_ok=True)
        if not os.path.exists(settings):
            with open(settings, "w") as file:
                file.write(f"resolution=0\nquality=0\nlanguage={language}\n")
        self.environment = clean_environment(home, DISPLAY=screen.display, **variables)
        self.process = subprocess.Popen([WINE, program, *options], env=self.environment,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.window = None
        wait_until(self.find, "no window of the set-up program")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()

    def xdotool(self, *words):
        return subprocess.run(["xdotool", *words], env=self.environment, timeout=30, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL).stdout.decode().strip()

    def find(self):
        assert self.process.poll() is None, f"it has ended with {self.process.returncode}"
        found = self.xdotool("search", "--onlyvisible", "--name", " - ").split()
        self.window = found[0] if found else None
        return found

    def title(self):
        return self.xdotool("getwindowname", self.window)

    def size(self):
        words = dict(line.split("=") for line in
                     self.xdotool("getwindowgeometry", "--shell", self.window).splitlines())
        return int(words["WIDTH"]), int(words["HEIGHT"])

    def picture(self):
        return read_xwd(subprocess.run(["xwd", "-silent", "-id", self.window], env=self.environment, check=True,
                                       stdout=subprocess.PIPE).stdout)

    def wait_for(self, step):
        wait_until(lambda: self.title().endswith(" - " + step), lambda: f"{self.title()} and not {step}")
        self.settle()

    def settle(self):
        """Until two pictures of the window are the same."""
        before = None
        while True:
            now = self.picture().rows
            if now == before:
                return
            before = now
            time.sleep(0.1)

    def click(self, place):
        width, height = self.size()
        x, y = place[0] % width, place[1] % height
        self.xdotool("windowfocus", self.window)
        self.xdotool("mousemove", "--window", self.window, str(x), str(y), "click", "1")
        time.sleep(0.1)

    def type(self, text):
        self.xdotool("key", "ctrl+a")
        self.xdotool("type", "--delay", "20", text)
        self.settle()

    def to_location(self):
        self.wait_for("Welcome")
        self.click(NEXT)
        self.wait_for("License")
        self.click(NEXT)  # grey
        self.settle()
        assert self.title().endswith("License")
        self.click(TERMS)
        self.settle()
        self.click(NEXT)
        self.wait_for("Location")
