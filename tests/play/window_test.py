"""The window on a desktop whose manager has its own mind about sizes."""
import os
import re
import subprocess
import tempfile
import time
import unittest

from driver import PATIENCE, Game, Screen, read_bmp, wait_until
from mouse import GOLD, OPTIONS, Mouse

MAXIMISE_KEY = '<keyboard><keybind key="F8"><action name="Maximize"/></keybind></keyboard>'
REFUSE_SIZES = '<applications><application class="*"><fullscreen>yes</fullscreen></application></applications>'
PANEL_BELOW = "<margins><bottom>40</bottom></margins>"


class Window(unittest.TestCase):
    def start(self, size, rules, **parts):
        screen = Screen(size, window_manager=rules).__enter__()
        self.addCleanup(screen.__exit__)
        self.game = Game(screen, **parts)
        self.addCleanup(self.game.__exit__)
        self.mouse = Mouse(self.game)

    def written(self, key, value):
        with open(self.game.settings_path) as file:
            return f"{key}={value}\n" in file

    def choose(self, row, key, value):
        """Clicks on an option where it is seen, and waits for it in the file."""
        self.mouse.wait_for(OPTIONS["back"], GOLD)
        self.mouse.click(OPTIONS[row])
        wait_until(lambda: self.written(key, value), f"{key} is not {value}")

    def test_a_maximised_window_is_restored_before_it_is_sized(self):
        self.start("1400x800", MAXIMISE_KEY, OV_SETTINGS="1")
        for vsync, fps in (("0", "1"), ("1", "0")):
            self.game.xdotool("key", "F8")
            wait_until(lambda: self.game.geometry()[0] == 1400, "the window is not maximised")
            self.choose("vsync", "vsync", vsync)
            wait_until(lambda: self.game.geometry() == (1280, 720), lambda: f"the window is {self.game.geometry()}")
            self.choose("fps", "showFps", fps)

    def test_a_size_that_is_refused_leaves_picture_and_mouse_together(self):
        self.start("1400x800", REFUSE_SIZES, OV_SETTINGS="1")
        for row, value, fps in (("vsync", "0", "1"), ("resolution", "1", "0")):
            self.choose(row, row, value)
            self.choose("fps", "showFps", fps)
            self.assertEqual(self.game.geometry(), (1400, 800))

    def test_full_screen_that_is_refused_leaves_picture_and_mouse_together(self):
        self.start("1400x800", False, OV_SETTINGS="1")  # without a manager nobody grants it
        self.game.xdotool("key", "F11")
        wait_until(lambda: self.written("fullscreen", "1"), "the key is not heard")
        self.mouse.wait_for_frames()  # SDL puts the pointer back to where it was
        self.choose("fps", "showFps", "1")
        self.assertEqual(self.game.geometry(), (1280, 720))

    def test_a_window_stands_on_the_screen_with_its_frame(self):
        self.start("1366x768", PANEL_BELOW, settings=dict(resolution=1, quality=0))
        self.assert_on_screen()
        self.mouse.open_title()
        size = self.game.geometry()
        for wanted in ((1366, 768), size):  # and again when it comes back from the full screen
            self.game.xdotool("key", "F11")
            wait_until(lambda: self.game.geometry() == wanted, lambda: f"the window is {self.game.geometry()}")
        self.mouse.wait_for_frames()
        self.assert_on_screen()

    def assert_on_screen(self):
        tree = self.ask("xwininfo", "-id", self.game.window)
        left, top, width, height = (int(re.search(name + r":\s+(-?\d+)", tree)[1]) for name in (
            "Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        frame = re.search("= (.*)", self.ask("xprop", "-id", self.game.window, "_NET_FRAME_EXTENTS"))[1]
        before, after, above, below = map(int, frame.split(", "))
        self.assertGreater(above, 0)
        self.assertGreaterEqual(left - before, 0)
        self.assertGreaterEqual(top - above, 0)
        self.assertLessEqual(left + width + after, 1366)
        self.assertLessEqual(top + height + below, 768 - 40)
        self.assertGreater(width, 1300)
        self.assertGreater(height, 650)

    def ask(self, *words):
        return subprocess.run(words, env=self.game.environment, check=True, stdout=subprocess.PIPE).stdout.decode()

    def processor_time(self):
        """Of all threads of the game, in seconds."""
        with open(f"/proc/{self.game.process.pid}/stat") as file:
            fields = file.read().rpartition(")")[2].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def spent(self, seconds):
        before = self.processor_time()
        time.sleep(seconds)
        return self.processor_time() - before

    def rests(self, shown):
        """Whether the game takes next to nothing of the processor time that it took in as long while it was shown."""
        return self.spent(2) < shown / 5

    def test_a_minimised_game_rests_and_comes_back(self):
        self.start("1400x800", True, OV_DEMO="1", OV_STATE="speed=1")
        shown = self.spent(2)
        self.game.xdotool("windowminimize", self.game.window)
        wait_until(lambda: self.rests(shown), "it does not rest")
        self.game.xdotool("windowactivate", self.game.window)
        wait_until(self.game.draws, "nothing was drawn")
        self.game.sync()

        self.game.xdotool("windowminimize", self.game.window)
        wait_until(lambda: self.rests(shown), "it does not rest")
        self.game.process.terminate()
        self.assertEqual(self.game.process.wait(PATIENCE), 0)

    def test_a_minimised_run_takes_its_picture(self):
        with tempfile.TemporaryDirectory() as folder:
            shot = os.path.join(folder, "shot.bmp")
            self.start("1400x800", True, OV_SHOT=shot, OV_FRAMES="150")
            self.game.xdotool("windowminimize", self.game.window)
            self.assertEqual(self.game.process.wait(PATIENCE), 0)
            self.assertEqual(read_bmp(shot).width, 1280)


if __name__ == "__main__":
    unittest.main()
