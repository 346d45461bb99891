"""What the tests of the Windows program share: a screen, an installed game in a folder of their choice, and buttons
that are pressed once they are there."""
import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "../play"))
import driver  # the players' way to the program
from driver import PATIENCE, PROGRAM, WINE, WINE_PROFILE
from menu_test import LAUNCHER, QUESTION, TITLE, in_window  # noqa: used by the tests

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


def wait_until(condition, what):
    deadline = time.monotonic() + PATIENCE
    while not condition():
        assert time.monotonic() < deadline, what
        time.sleep(0.05)


def is_golden(colour):
    """Under the pointer or not."""
    return colour[0] - colour[2] > 100


def is_button(colour):
    """Lighter than the panels around."""
    return colour[0] > 60


def wait_for(game, x, y, look=is_button):
    """Until what lies there, left of the label, looks so."""
    wait_until(lambda: look(game.picture().pixel(x - 80, y)), f"{look.__name__}: not at {x}, {y}")


def press(game, place, look=is_button):
    """A button of the menus, once it looks so."""
    x, y = in_window(place, *game.geometry())
    wait_for(game, x, y, look)
    game.click(x, y)


def set_variable(key, name, value):
    """As the registry has it, for all programs that are started from now on."""
    wine("reg", "add", "HKCU\\" + key, "/v", name, "/t", "REG_EXPAND_SZ", "/d", value, "/f")


class WindowsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = driver.Screen().__enter__()
        cls.addClassCleanup(cls.screen.__exit__)

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def write_settings(self, **values):
        preferences = os.path.join(self.folder, ".local/share/Orlavane/Orlavane")
        os.makedirs(preferences)
        with open(os.path.join(preferences, "settings.ini"), "w") as file:
            file.writelines(f"{key}={value}\n" for key, value in dict(resolution=0, quality=0, **values).items())

    def use_odd_temp(self):
        """The temporary folder of a player with an odd name."""
        temp = os.path.join(self.folder, "temp of " + ODD_NAME)
        os.mkdir(temp)
        set_variable("Environment", "TEMP", windows_path(temp))
        self.addCleanup(set_variable, "Environment", "TEMP", r"%USERPROFILE%\Temp")
        return temp
