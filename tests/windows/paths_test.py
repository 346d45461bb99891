"""Folders with blanks, umlauts and letters beyond 16 bits, variables that are not set, and folders that are not to be
written."""
import os
import unittest

from windows_game import ODD_NAME, WindowsTest, driver, install, set_variable, wine, windows_path

SHELL_FOLDERS = r"Software\Microsoft\Windows\CurrentVersion\Explorer\User Shell Folders"


class Paths(WindowsTest):
    def setUp(self):
        super().setUp()
        self.shot = os.path.join(self.folder, ODD_NAME, "shot.bmp")
        self.program = install(os.path.join(self.folder, ODD_NAME, "Orlavane"))

    def run_to_end(self, **variables):
        return driver.run_to_end(self.folder, timeout=300, program=self.program, DISPLAY=self.screen.display,
                                 OV_SHOT=self.shot, OV_FRAMES="2", **variables)

    def test_a_game_folder_with_music_is_read_under_any_name(self):
        open(os.path.join(os.path.dirname(self.program), "music1.mp3"), "w").close()
        code, errors = self.run_to_end()
        self.assertEqual((code, errors), (0, "Music: 1 track(s)\r\n"))
        self.assertEqual(driver.read_bmp(self.shot).width, 1600)

    def test_a_profile_of_any_name_holds_settings_and_saves(self):
        profile = os.path.join(self.folder, "profile of " + ODD_NAME)
        set_variable(SHELL_FOLDERS, "AppData", windows_path(profile))
        self.addCleanup(set_variable, SHELL_FOLDERS, "AppData", r"%USERPROFILE%\AppData\Roaming")

        class OddGame(driver.Game):
            preferences = os.path.join(profile, "Orlavane/Orlavane")

        with OddGame(self.screen, program=self.program, OV_DEMO="1") as game:
            self.assertEqual(game.geometry(), (1280, 720))
            game.saved()
            game.press("F11")
            with open(game.settings_path) as file:
                self.assertIn("fullscreen=1\n", file.read())

    def test_without_variables_the_game_starts(self):
        start = os.path.join(self.folder, "start.cmd")
        with open(start, "w") as file:
            for name in ("TEMP", "TMP", "USERPROFILE", "APPDATA", "LOCALAPPDATA", "HOMEPATH"):
                file.write(f"@set {name}=\r\n")
            file.write("@start /wait Orlavane.exe\r\n@exit %errorlevel%\r\n")
        variables = driver.clean_environment(self.folder, DISPLAY=self.screen.display, OV_SHOT=self.shot, OV_FRAMES="2")
        wine("cmd", "/c", windows_path(start), env=variables, cwd=os.path.dirname(self.program))
        self.assertEqual(driver.read_bmp(self.shot).width, 1600)

    def test_nothing_is_written_into_the_folder_of_the_game(self):
        home = os.path.dirname(self.program)
        before = sorted(os.listdir(home))
        for name in before:
            os.chmod(os.path.join(home, name), 0o444 if name.endswith(".dll") else 0o555)
        os.chmod(home, 0o555)
        code, _ = self.run_to_end(OV_DEMO="1", OV_STATE="launcher=files")
        os.chmod(home, 0o755)
        self.assertEqual(code, 0)
        self.assertTrue(os.path.exists(self.shot))
        self.assertEqual(sorted(os.listdir(home)), before)


if __name__ == "__main__":
    unittest.main()
