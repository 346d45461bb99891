"""The launcher's pages and the options, in the real window and with the mouse alone."""
import os
import unittest

from driver import PLAIN, Game, Screen, wait_until
from mouse import BROWN, FILES, GOLD, GREY, LAUNCHER, OPTIONS, QUESTION, Mouse

WINDOW = (480, 540)  # the smallest that the panels fit into
BRIGHT = bytes(level > 150 for level in range(256))  # for bytes.translate


class Menus(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = Screen().__enter__()
        cls.addClassCleanup(cls.screen.__exit__)

    def start(self, language="en", **parts):
        self.game = Game(self.screen, window=WINDOW, LANG="C", LANGUAGE=language, **parts)
        self.addCleanup(self.game.__exit__)
        self.mouse = Mouse(self.game)
        self.mouse.wait_for(OPTIONS["back"] if "OV_SETTINGS" in parts else LAUNCHER["open"], GOLD)

    def setting(self, key):
        with open(self.game.settings_path) as file:
            return dict(line.strip().split("=") for line in file).get(key)

    def choose(self, row, key, value):
        """Clicks on an option and waits for it in the file."""
        self.mouse.click(OPTIONS[row])
        wait_until(lambda: self.setting(key) == value, lambda: f"{key} is {self.setting(key)} and not {value}")

    def test_the_launchers_pages_open_and_close(self):
        self.start()
        mouse = self.mouse
        mouse.click(LAUNCHER["files"])
        mouse.wait_for(FILES["folder"], GOLD)
        mouse.click(FILES["back"])
        mouse.wait_for(LAUNCHER["open"], GOLD)
        mouse.click(LAUNCHER["uninstall"])
        mouse.wait_for(QUESTION["yes"], GOLD)
        mouse.click(QUESTION["no"])
        mouse.wait_for(LAUNCHER["open"], GOLD)
        mouse.click(LAUNCHER["uninstall"])
        mouse.wait_for(QUESTION["yes"], GOLD)
        mouse.click(QUESTION["yes"])  # a game in a folder of another name than its own does not remove itself
        mouse.wait_for_frames()
        self.assertIsNone(self.game.process.poll())
        mouse.wait_for(QUESTION["yes"], GOLD)
        self.game.xdotool("key", "Escape")
        mouse.wait_for(LAUNCHER["open"], GOLD)

    def test_the_save_is_deleted_after_a_question(self):
        self.start(save=b"a city")
        self.mouse.wait_for(LAUNCHER["delete"], BROWN)
        for answer in ("no", "yes"):
            self.assertTrue(os.path.exists(self.game.save_path))
            self.mouse.click(LAUNCHER["delete"])
            self.mouse.wait_for(QUESTION["yes"], BROWN)
            self.mouse.click(QUESTION[answer])
            self.mouse.wait_for(LAUNCHER["open"], GOLD)
        self.mouse.wait_for(LAUNCHER["delete"], GREY)
        self.assertFalse(os.path.exists(self.game.save_path))

    def test_options_are_saved_at_once(self):
        self.start(OV_SETTINGS="1")
        for row, key, value in (("fps", "showFps", "1"), ("graphics", "quality", "1"), ("music", "musicVolume", "75"),
                                ("effects", "sfxVolume", "95"), ("effects", "sfxVolume", "120"),
                                ("effects", "sfxVolume", "0"), ("vsync", "vsync", "0")):
            self.choose(row, key, value)

    def test_the_window_follows_the_resolution(self):
        self.start(OV_SETTINGS="1")
        for value, size in (("1", (1600, 900)), ("2", (1920, 1080)), ("0", (1280, 720))):
            self.choose("resolution", "resolution", value)
            wait_until(lambda: self.game.geometry() == size, f"the window is not {size}")
            self.mouse.wait_for(OPTIONS["back"], GOLD)

    # --- Languages

    def words(self, top, bottom):
        """The letters on the options panel between two heights, left of its buttons: a one for each bright pixel."""
        picture = self.game.picture()
        left, y0 = self.mouse.pixel((-280, top))
        right, y1 = self.mouse.pixel((0, bottom))
        rows = (picture.rows[y][4 * left:4 * right:4].translate(BRIGHT) for y in range(y0, y1))
        return int.from_bytes(b"".join(rows), "big")

    def test_another_language_changes_every_word(self):
        self.start(OV_SETTINGS="1")
        captions = [(rows, rows + 46) for rows in range(139, 139 + 8 * 50, 50)]
        english = [self.words(*caption) for caption in captions]
        self.assertTrue(all(english))
        self.choose("language", "language", "1")
        for caption, before in zip(captions, english):
            wait_until(lambda: (self.words(*caption) ^ before).bit_count() > 20, f"English stays at {caption}")
        for language in range(2, 15):
            self.choose("language", "language", str(language % 14))
        for caption, before in zip(captions, english):
            wait_until(lambda: (self.words(*caption) ^ before).bit_count() < 20, f"no English at {caption}")

    def test_the_first_language_is_the_systems_and_one_click_stores_the_next(self):
        self.start(OV_SETTINGS="1", language="fr", settings={**PLAIN, "language": -1})
        self.choose("fps", "showFps", "1")
        self.assertEqual(self.setting("language"), "-1")
        self.choose("language", "language", "6")  # Italian comes after French


if __name__ == "__main__":
    unittest.main()
