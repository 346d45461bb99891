"""The game removes itself under Wine: the real script in the real interpreter, asked for by mouse."""
import os
import unittest

from windows_game import ODD_NAME, WINE_PROFILE, WindowsTest, driver, install, is_golden, press, wait_until
from mouse import LAUNCHER, QUESTION, TITLE

SHORTCUTS = [os.path.join(WINE_PROFILE, folder, "Orlavane.lnk")
             for folder in ("Desktop", "AppData/Roaming/Microsoft/Windows/Start Menu/Programs")]


class Uninstall(WindowsTest):
    def setUp(self):
        super().setUp()
        for shortcut in SHORTCUTS:
            os.makedirs(os.path.dirname(shortcut), exist_ok=True)
            open(shortcut, "w").close()
        self.temp = self.use_odd_temp()

    def uninstall(self, program):
        game = driver.Game(self.screen, program=program, save=b"a city")
        self.addCleanup(game.__exit__)
        press(game, LAUNCHER["uninstall"])
        press(game, QUESTION["yes"])
        return game

    def expect_removal(self, program):
        game = self.uninstall(program)
        self.assertEqual(game.process.wait(120), 0)
        wait_until(lambda: not os.path.exists(os.path.dirname(program)), "the folder stays")
        wait_until(lambda: not any(map(os.path.exists, SHORTCUTS)), "the shortcuts stay")
        with open(game.save_path, "rb") as file:
            self.assertEqual(file.read(), b"a city")

    def expect_nothing(self, program):
        game = self.uninstall(program)
        press(game, QUESTION["no"])  # the page is still there, and the click on "Yes" has had its effect
        press(game, LAUNCHER["open"])
        press(game, TITLE["new"], is_golden)
        self.assertIsNone(game.process.poll())
        self.assertEqual(os.listdir(self.temp), [])
        self.assertTrue(os.path.exists(program))
        self.assertTrue(all(map(os.path.exists, SHORTCUTS)))

    def test_the_folder_and_the_shortcuts_go_and_nothing_else(self):
        program = install(os.path.join(self.folder, "my g\u00e4mes 100%/Orlavane"))
        os.makedirs(os.path.join(os.path.dirname(program), "music/deeper"))
        open(os.path.join(os.path.dirname(program), "music/deeper/song.mp3"), "w").close()
        neighbour = os.path.join(self.folder, "my g\u00e4mes 100%/Orlavane2")
        os.makedirs(neighbour)
        self.expect_removal(program)
        self.assertTrue(os.path.exists(neighbour))

    def test_a_folder_of_another_name_stays(self):
        self.expect_nothing(install(os.path.join(self.folder, "Orlavane2")))

    def test_a_folder_without_orlavane_exe_stays(self):
        program = install(os.path.join(self.folder, "Orlavane"))
        other = os.path.join(os.path.dirname(program), "game.exe")
        os.rename(program, other)
        self.expect_nothing(other)

    def test_a_path_that_the_interpreter_cannot_read_stays(self):
        self.expect_nothing(install(os.path.join(self.folder, ODD_NAME, "Orlavane")))


if __name__ == "__main__":
    unittest.main()
