"""From the launcher through title and options into a city, in the real window and with the mouse alone."""
import os
import time
import unittest

from driver import Game, Screen

PATIENCE = 30.0  # seconds until a slow machine has shown what it was asked for

# Places in a window 720 high, from the middle of its top edge: (x, y) of buttons by screen.
LAUNCHER = {"update": (0, 372), "open": (0, 425), "files": (0, 478), "delete": (0, 531), "uninstall": (0, 584)}
FILES = {"folder": (-145, 628), "back": (145, 628)}
QUESTION = {"yes": (-114, 452), "no": (114, 452)}
TITLE = {"new": (0, 398), "continue": (0, 458), "tutorial": (0, 518), "settings": (0, 578), "quit": (0, 638)}
OPTIONS = {name: (149, 160 + 50 * row) for row, name in enumerate(
    ("resolution", "display", "graphics", "vsync", "fps", "music", "effects", "language"))}
OPTIONS["back"] = (0, 626)

BRIGHT = bytes(level > 150 for level in range(256))  # for bytes.translate
GOLD, BROWN, GREY = (204, 148, 51), (77, 66, 56), (71, 71, 74)  # buttons: primary, normal, disabled


def in_window(place, width, height):
    scale = height / 720
    return round(width / 2 + place[0] * scale), round(place[1] * scale)


class Menus(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = Screen().__enter__()

    @classmethod
    def tearDownClass(cls):
        cls.screen.__exit__()

    def setUp(self):
        self.game = Game(self.screen, size=0, LANG="C", LANGUAGE="en")

    def tearDown(self):
        self.game.__exit__()

    def beside_label(self, place):
        """Colour of a button's body, left of its label."""
        picture = self.game.picture()
        return picture.pixel(*in_window((place[0] - 90, place[1]), picture.width, picture.height))

    def wait_until(self, condition, what):
        deadline = time.monotonic() + PATIENCE
        while not condition():
            self.assertLess(time.monotonic(), deadline, what)
            time.sleep(0.02)

    def shows(self, place, color):
        """Whether a button of that colour stands there, the pointer on it or not."""
        seen = self.beside_label(place)
        bright = tuple(channel + 0.14 * (255 - channel) for channel in color)
        return any(max(abs(a - b) for a, b in zip(seen, state)) <= 3 for state in (color, bright))

    def wait_for(self, place, color):
        self.wait_until(lambda: self.shows(place, color), f"no button of {color} at {place}")

    def click(self, place):
        x, y = in_window(place, *self.game.geometry())
        self.game.xdotool("mousemove", "--window", self.game.window, str(x), str(y), "click", "1")

    def setting(self, key):
        with open(os.path.join(self.game.preferences, "settings.ini")) as file:
            return dict(line.strip().split("=") for line in file).get(key)

    def choose(self, row, key, value):
        """Clicks on an option and waits for it in the file."""
        self.click(OPTIONS[row])
        self.wait_until(lambda: self.setting(key) == value, f"{key} does not become {value}")

    def words(self, top, bottom):
        """The letters on the options panel between two heights, left of its buttons: a one for each bright pixel."""
        picture = self.game.picture()
        left, y0 = in_window((-280, top), picture.width, picture.height)
        right, y1 = in_window((0, bottom), picture.width, picture.height)
        rows = (picture.rows[y][4 * left:4 * right:4].translate(BRIGHT) for y in range(y0, y1))
        return int.from_bytes(b"".join(rows), "big")

    def open_title(self):
        self.click(LAUNCHER["open"])
        self.wait_for(TITLE["new"], GOLD)

    def open_options(self):
        self.open_title()
        self.click(TITLE["settings"])
        self.wait_for(OPTIONS["back"], GOLD)

    def wait_for_the_city(self):
        """Nothing is saved on any other screen."""
        self.wait_until(self.saves, "no city came up")

    def saves(self):
        self.game.xdotool("key", "F5")
        time.sleep(0.1)
        return self.game.save_is_whole()

    def test_the_launchers_pages_open_and_close(self):
        self.wait_for(LAUNCHER["open"], GOLD)
        self.click(LAUNCHER["files"])
        self.wait_for(FILES["folder"], GOLD)
        self.click(FILES["back"])
        self.wait_for(LAUNCHER["open"], GOLD)
        self.click(LAUNCHER["uninstall"])
        self.wait_for(QUESTION["yes"], GOLD)
        self.click(QUESTION["no"])
        self.wait_for(LAUNCHER["open"], GOLD)
        self.click(LAUNCHER["uninstall"])
        self.wait_for(QUESTION["yes"], GOLD)
        self.click(QUESTION["yes"])  # a game in a folder of another name than its own does not remove itself
        self.game.frames(5)
        self.assertIsNone(self.game.process.poll())
        self.wait_for(QUESTION["yes"], GOLD)
        self.game.xdotool("key", "Escape")
        self.wait_for(LAUNCHER["open"], GOLD)

    def test_the_save_is_deleted_after_a_question(self):
        self.wait_for(LAUNCHER["delete"], GREY)
        self.game.__exit__()
        self.game = Game(self.screen, size=0, LANGUAGE="en", save=b"a city")
        self.wait_for(LAUNCHER["delete"], BROWN)
        for answer in ("no", "yes"):
            self.assertTrue(os.path.exists(self.game.save_path))
            self.click(LAUNCHER["delete"])
            self.wait_for(QUESTION["yes"], BROWN)
            self.click(QUESTION[answer])
            self.wait_for(LAUNCHER["open"], GOLD)
        self.assertFalse(os.path.exists(self.game.save_path))
        self.wait_for(LAUNCHER["delete"], GREY)

    def test_options_are_saved_at_once(self):
        self.open_options()
        for row, key, value in (("fps", "showFps", "1"), ("graphics", "quality", "2"), ("music", "musicVolume", "75"),
                                ("effects", "sfxVolume", "95"), ("vsync", "vsync", "0")):
            self.choose(row, key, value)
        self.click(OPTIONS["back"])
        self.wait_for(TITLE["new"], GOLD)

    def test_the_window_follows_the_resolution(self):
        self.open_options()
        for value, size in (("1", (1600, 900)), ("2", (1920, 1080)), ("0", (1280, 720))):
            self.choose("resolution", "resolution", value)
            self.wait_until(lambda: self.game.geometry() == size, f"the window is not {size}")
            self.wait_for(OPTIONS["back"], GOLD)

    def test_another_language_changes_every_word(self):
        self.open_options()
        captions = [(rows, rows + 46) for rows in range(139, 139 + 8 * 50, 50)]
        english = [self.words(*caption) for caption in captions]
        self.assertTrue(all(english))
        self.choose("language", "language", "1")
        for caption, before in zip(captions, english):
            self.wait_until(lambda: (self.words(*caption) ^ before).bit_count() > 20, f"English stays at {caption}")
        for language in range(2, 15):
            self.choose("language", "language", str(language % 14))
        for caption, before in zip(captions, english):
            self.wait_until(lambda: (self.words(*caption) ^ before).bit_count() < 20, f"no English at {caption}")

    def test_a_new_city_is_saved_and_continued(self):
        self.open_title()
        self.wait_for(TITLE["continue"], GREY)
        self.click(TITLE["new"])
        self.wait_for_the_city()
        city = self.game.save_path
        with open(city, "rb") as file:
            saved = file.read()
        self.game.__exit__()

        self.game = Game(self.screen, size=0, LANGUAGE="en", save=saved)
        self.open_title()
        self.wait_for(TITLE["continue"], BROWN)
        self.click(TITLE["continue"])
        self.wait_until(lambda: not self.shows(TITLE["new"], GOLD), "the title stays")
        os.remove(self.game.save_path)
        self.wait_for_the_city()

    def test_quit_ends_the_program(self):
        self.open_title()
        self.click(TITLE["quit"])
        self.assertEqual(self.game.process.wait(PATIENCE), 0)


if __name__ == "__main__":
    unittest.main()
