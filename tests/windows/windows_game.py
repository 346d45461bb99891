"""What the tests of the Windows program share: a screen, an installed game in a folder of their choice, and buttons
that are pressed once they are there."""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "../play"))
import driver  # the players' way to the program
from driver import PROGRAM, WINE, WINE_PROFILE, wait_until  # noqa: used by the tests
from mouse import in_window

BIN = os.path.dirname(PROGRAM)
LINUX_BIN = os.environ["LINUX_BIN"]
ODD_NAME = "my g\u00e4mes \u4e2d \U0001f3d9"  # a blank, an umlaut, a Chinese letter, one beyond 16 bits


def install(folder):
    """The game as a player has it: Orlavane.exe and its libraries in a folder."""
    os.makedirs(folder)
    for name in ("Orlavane.exe", "SDL2.dll", "SDL2_ttf.dll"):
        shutil.copy(os.path.join(BIN, name), folder)
    return os.path.join(folder, "Orlavane.exe")


def wine(*words, **options):
    """Runs a Windows program to its end: what it wrote."""
    result = subprocess.run([WINE, *words], stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=300, **options)
    assert result.returncode == 0, (words, result.returncode, result.stderr.decode(errors="replace"))
    return result.stdout


def linux(program, *words):
    return subprocess.run([os.path.join(LINUX_BIN, program), *words], stdout=subprocess.PIPE, timeout=300,
                          check=True).stdout


def windows_path(path):
    """Of a file of the system around Wine."""
    return "Z:" + path.replace("/", "\\")


def is_golden(colour):
    """Under the pointer or not."""
    return colour[0] - colour[2] > 100


def is_button(colour):
    """Lighter than the panels around."""
    return colour[0] > 60


def wait_for(game, place, look=is_button):
    """Until what lies there, left of the label, looks so."""
    x, y = in_window(place, *game.geometry())
    wait_until(lambda: look(game.picture().pixel(x - 80, y)), f"{look.__name__}: not at {place}")


def press(game, place, look=is_button):
    """A button, once it looks so."""
    wait_for(game, place, look)
    game.click(*in_window(place, *game.geometry()))


def set_variable(key, name, value):
    """As the registry has it, for all programs that are started from now on. Wine's reg refuses now and then, without
    a word, right after other programs have ended."""
    add = ["reg", "add", "HKCU\\" + key, "/v", name, "/t", "REG_EXPAND_SZ", "/d", value, "/f"]
    wait_until(lambda: subprocess.run([WINE, *add], stdout=subprocess.DEVNULL, timeout=60).returncode == 0,
               f"reg does not set {name}")


class WindowsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = driver.Screen().__enter__()
        cls.addClassCleanup(cls.screen.__exit__)

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def use_temp(self, temp):
        os.mkdir(temp)
        set_variable("Environment", "TEMP", windows_path(temp))
        self.addCleanup(set_variable, "Environment", "TEMP", r"%USERPROFILE%\Temp")
        return temp

    def use_odd_temp(self):
        """The temporary folder of a player with an odd name."""
        return self.use_temp(os.path.join(self.folder, "temp of " + ODD_NAME))
