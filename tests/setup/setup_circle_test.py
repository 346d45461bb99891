"""The whole life of the game on a player's computer: set up, started from the menu, updated by a click, and removed."""
import os
import subprocess
import sys
import tempfile
import unittest

from tiny_setups import BIN, HERE, contents, make_setup

sys.path.insert(0, os.path.join(HERE, "../play"))
from driver import PLAIN, Game, Screen, clean_environment, wait_until
from mouse import BROWN, GOLD, LAUNCHER, QUESTION, Mouse, like

SERVER = os.path.join(HERE, "../maintenance/odd_server.py")
STATUS, GOOD = (-280, 266, 560, 64), (115, 219, 133)  # words on the launcher, with their size; the latest version's


class StartedGame(Game):
    """A game that somebody else has started on the screen."""

    def __init__(self, screen, environment):
        self.screen, self.environment, self.process = screen, environment, self
        self.in_play, self.slowest_frame = False, 0.0
        self.window = self.wait_for_window()
        self.pid = int(self.xdotool("getwindowpid", self.window))
        self.focus(self.window)
        wait_until(self.draws, "nothing was drawn")
        self.resize(480, 540)

    def poll(self):
        """None while it runs, or is still to come."""
        return None if not hasattr(self, "pid") or os.path.exists(f"/proc/{self.pid}/exe") else "ended"

    def program(self):
        return os.readlink(f"/proc/{self.pid}/exe")


class Circle(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.home = os.path.join(temporary.name, "h\u00f6me of a player")
        self.temporary = os.path.join(temporary.name, "tmp")
        self.server_folder = os.path.join(temporary.name, "server")
        for folder in (self.home, self.temporary, self.server_folder):
            os.mkdir(folder)
        os.mkdir(os.path.join(self.home, "Desktop"))
        self.folder = os.path.join(self.home, "my g\u00e4mes/Orlavane")
        self.setups = temporary.name
        self.screen = Screen().__enter__()
        self.addCleanup(self.screen.__exit__)

    def start_server(self):
        server = subprocess.Popen([sys.executable, "-B", SERVER, self.server_folder], stdin=subprocess.PIPE)
        self.addCleanup(server.wait)
        self.addCleanup(server.stdin.close)
        port = os.path.join(self.server_folder, "port")
        wait_until(lambda: os.path.exists(port), "no server")
        with open(port) as file:
            return f"http://127.0.0.1:{file.read()}/manifest.json"

    def publish(self, program, version, date):
        """As docs/publishing.md tells."""
        www = os.path.join(self.server_folder, "www")
        setup = make_setup(program, version, date, os.path.join(www, f"Orlavane-setup-{version}.run"))
        subprocess.run([os.path.join(BIN, "make-manifest"), setup, os.path.join(www, "manifest.json"), version, date],
                       check=True, stdout=subprocess.DEVNULL)
        return setup

    def players_files(self):
        return {name: file for name, file in contents(self.home).items() if name.startswith(".local/share/Orlavane/")}

    def write(self, name, text):
        path = os.path.join(self.home, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w") as file:
            file.write(text)

    def find_game(self):
        """The one on the screen, and the mouse in it."""
        game = StartedGame(self.screen, self.environment)
        self.addCleanup(lambda: game.poll() or os.kill(game.pid, 9))
        self.assertEqual(game.program(), os.path.join(self.folder, "Orlavane"))
        return game, Mouse(game)

    def wait_for_end(self, game):
        wait_until(lambda: game.poll() is not None, "the game does not end")

    def test_set_up_menu_update_and_removal(self):
        first = make_setup("orlavane-with-server", "0.2", "2026-10-30",
                           os.path.join(self.setups, "Orlavane-setup-0.2.run"))
        self.environment = clean_environment(
            self.home, DISPLAY=self.screen.display, TMPDIR=self.temporary, TEST_MANIFEST_URL=self.start_server(),
            LANG="C", LANGUAGE="en", MESA_SHADER_CACHE_DISABLE="true", GIO_USE_VFS="local")
        second = self.publish("orlavane-next-version", "0.3", "2026-12-01")
        self.write(".local/share/Orlavane/Orlavane/savegame.ovw", "a city")
        self.write(".local/share/Orlavane/Orlavane/settings.ini", "".join(f"{k}={v}\n" for k, v in PLAIN.items()))
        players_files = self.players_files()

        subprocess.run([first, "--silent", "--folder=" + os.path.dirname(self.folder)], env=self.environment,
                       check=True, stdout=subprocess.DEVNULL)
        with open(first, "rb") as file:
            self.assertEqual(file.read(), self.installed_setup())
        self.write("my g\u00e4mes/Orlavane/music2.mp3", "a player's own")
        subprocess.run(["gio", "launch", os.path.join(self.home, ".local/share/applications/orlavane.desktop")],
                       env=self.environment, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        game, mouse = self.find_game()
        mouse.wait_for(LAUNCHER["update"], GOLD)  # there is a newer version

        mouse.click(LAUNCHER["update"])
        self.wait_for_end(game)
        game, mouse = self.find_game()
        wait_until(lambda: sum(like(pixel, GOOD, 30) for pixel in mouse.part(STATUS)) > 100, "not the latest version")
        mouse.wait_for(LAUNCHER["update"], BROWN)
        with open(second, "rb") as file:
            self.assertEqual(file.read(), self.installed_setup())
        self.assertEqual(self.players_files(), players_files)
        self.assertIn("music2.mp3", os.listdir(self.folder))
        self.assertEqual(contents(self.temporary), {})  # what was fetched is gone

        mouse.click(LAUNCHER["uninstall"])
        mouse.wait_for(QUESTION["yes"], GOLD, 90)
        mouse.click(QUESTION["yes"])
        self.wait_for_end(game)
        wait_until(lambda: not os.path.exists(self.folder), "the game stays")
        wait_until(lambda: os.listdir(self.temporary) == [], "the script of the removal stays")
        self.assertEqual(contents(self.home), players_files)

    def installed_setup(self):
        with open(os.path.join(self.folder, "Orlavane-setup.exe"), "rb") as file:
            return file.read()


if __name__ == "__main__":
    unittest.main()
