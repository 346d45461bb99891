"""The game looks after its own folder, in the real window and with the mouse alone."""
import os
import signal
import subprocess
import tempfile
import unittest

from driver import PROGRAM, Game, Screen, clean_environment, wait_until
from mouse import FILES, GOLD, LAUNCHER, QUESTION, Mouse

WINDOW = (480, 540)


class Upkeep(unittest.TestCase):
    def setUp(self):
        self.screen = Screen().__enter__()
        self.addCleanup(self.screen.__exit__)
        temporary = tempfile.TemporaryDirectory(dir=os.path.dirname(PROGRAM))  # where links to it can stand
        self.addCleanup(temporary.cleanup)
        self.home = temporary.name
        self.folder = os.path.join(self.home, "games", "Orlavane")
        os.makedirs(self.folder)

    def install(self, name="Orlavane"):
        program = os.path.join(self.folder, name)
        os.link(PROGRAM, program)
        return program

    def start(self, program, **variables):
        self.game = Game(self.screen, home=self.home, window=WINDOW, program=program, save=b"a city", LANG="C",
                         LANGUAGE="en", **variables)
        self.addCleanup(self.game.__exit__)
        self.mouse = Mouse(self.game)
        self.mouse.wait_for(LAUNCHER["open"], GOLD)

    # --- Files

    def row(self, i):
        """The letters of a listed file."""
        return sum(self.mouse.letters((-284, 164 + 26 * i, 200, 20)))

    def test_a_crowded_folder_is_listed(self):
        for i in range(10000):
            open(os.path.join(self.folder, f"file{i}"), "w").close()
        for name in (b"!\xff\xfe", b"!\xc3", b"!\xed\xa0\x80"):
            open(os.path.join(os.fsencode(self.folder), name), "w").close()
        for link, target in (("a", "b"), ("b", "a"), ("self", "self"), ("up", "..")):
            os.symlink(target, os.path.join(self.folder, link))
        self.start(self.install())
        self.mouse.click(LAUNCHER["files"])
        self.mouse.wait_for(FILES["folder"], GOLD)
        self.assertTrue(all(self.row(i) > 20 for i in range(12)))
        self.assertEqual(self.row(12), 0)
        self.mouse.click(FILES["back"])
        self.mouse.wait_for(LAUNCHER["open"], GOLD)

    # --- Removal

    def write(self, *names):
        paths = [os.path.join(self.home, *name.split("/")) for name in names]
        for path in paths:
            os.makedirs(os.path.dirname(path), exist_ok=True)
            open(path, "w").close()
        return paths

    def run_another(self, program):
        """A second game from the same folder. It need not draw."""
        environment = clean_environment(self.home, SDL_VIDEODRIVER="offscreen")
        process = subprocess.Popen([program], env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        process.send_signal(signal.SIGSTOP)
        return process

    def expect_refusal(self):
        self.mouse.click(QUESTION["yes"])
        self.mouse.wait_for_frames()
        self.mouse.wait_for(QUESTION["yes"], GOLD, 90)
        self.assertIsNone(self.game.process.poll())
        self.assertTrue(os.path.exists(os.path.join(self.folder, "music1.mp3")))

    def test_the_game_removes_itself_but_not_what_is_no_game(self):
        self.write("games/Orlavane/music1.mp3")
        kept = self.write("games/other", "Desktop/other.desktop")
        links = self.write("Desktop/orlavane.desktop", ".local/share/applications/orlavane.desktop")
        temporary = os.path.join(self.home, "tmp")
        self.start(self.install("other-name"), TMPDIR=temporary)
        self.mouse.click(LAUNCHER["uninstall"])
        self.mouse.wait_for(QUESTION["yes"], GOLD, 90)
        self.expect_refusal()  # there is no "Orlavane" in the folder

        program = self.install()
        self.expect_refusal()  # nowhere can a script be written

        os.mkdir(temporary)
        another = self.run_another(program)
        self.mouse.click(QUESTION["yes"])
        self.assertEqual(self.game.process.wait(60), 0)
        wait_until(lambda: not os.path.exists(self.folder), "the folder stays")
        wait_until(lambda: os.listdir(temporary) == [], "the script stays")
        self.assertIsNone(another.poll())
        self.assertEqual([path for path in links if os.path.exists(path)], [])
        self.assertEqual([path for path in [*kept, self.game.save_path] if not os.path.exists(path)], [])


if __name__ == "__main__":
    unittest.main()
