"""The words on the pages of the set-up program: in each language each of them has room in its place."""
import os
import re
import subprocess
import tempfile
import unittest

from windows_game import LINUX_BIN, WindowsTest, windows_path
import setup_window as w
from setup_window import Eyes, Setup, pack

NEXT, BACK, TERMS, FOLDER, LIST = 1, 3, 1034, 1201, 1016
# What comes into a place that shows other words: lines of the list that are gone in a moment, and failures.
LINES = ["CREATING_SHORTCUTS", "FINISHING", "DONE"]
FAILURES = ["DISK_FULL", "NOT_WRITTEN", "NO_FOLDER"]
# The set-up program for Linux has them.
ELSEWHERE = {"FILES_MISSING", "KEEP_TOGETHER", "NAME"}


def rows():
    """Of each language the texts by their names, with $WordArgument in the place of others."""
    lines = subprocess.run([os.path.join(LINUX_BIN, "make-setup-words"), "nsis"], stdout=subprocess.PIPE,
                           check=True).stdout.decode()
    languages = []
    for part in lines.split("!insertmacro SETUP_LANGUAGE")[1:]:
        found = re.findall(r'LangString (\w+) \S+ "(.*)"', part)
        languages.append({name: text.replace('$\\"', '"') for name, text in found})
    return languages


def fits(control):
    """A line of a list and a title are as high as they need to be."""
    return control.needed_width <= control.width and \
        (control.kind in ("Line", "Title") or control.needed_height <= control.height)


class SetupRows(WindowsTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.program = os.path.join(folder.name, "Orlavane-setup-0.2.exe")
        pack("hold-file.exe", "0.2", cls.program)
        w.forget()
        cls.addClassCleanup(w.forget)
        cls.eyes = cls.enterClassContext(Eyes(cls.screen))
        # A game that seems to run for ever.
        cls.held = os.path.join(folder.name, "Orlavane")
        os.mkdir(cls.held)
        program = os.path.join(cls.held, "Orlavane.exe")
        open(program, "w").close()
        cls.addClassCleanup(w.hold(program))

    def go_on(self, shown, button=NEXT):
        """To the next page that has words of its own: what stands there."""
        self.eyes.ask("press", button)
        return self.eyes.wait_for(lambda found: found and found[0].words != shown[0].words, "the page stays")

    def place_in(self, folder):
        self.eyes.ask("write", FOLDER, windows_path(folder))

    def walk(self, words):
        """All that is shown on the way through every page."""
        welcome = self.eyes.wait_for(bool, "no window")
        terms = self.go_on(welcome)
        self.eyes.ask("press", TERMS)
        location = self.go_on(terms)
        self.place_in(self.held)
        self.eyes.ask("press", NEXT)
        waiting = self.eyes.wait_for(
            lambda found: any(words["WAITING"] in line.words for line in found if line.kind == "Line"), "no waiting")
        bar, = (control for control in waiting if control.kind == "Bar")
        self.assertGreater(bar.needed_width, 0.9 * bar.width, "all files are unpacked")
        for name in LINES:
            waiting += self.eyes.ask("fit", LIST, words[name])
        failure = self.eyes.wait_for_words(words["CLOSE_GAME"])
        label, = (text.number for text in failure if text.words == words["CLOSE_GAME"])
        for name in FAILURES:
            failure += self.eyes.ask("fit", label, words[name].replace("$WordArgument", "Orlavane-setup.exe"))
        back = self.go_on(failure, BACK)
        self.place_in(self.folder)
        finish = self.go_on(self.go_on(back))
        return welcome + terms + location + waiting + failure + finish

    def test_every_word_has_room_in_every_language(self):
        for language, words in enumerate(rows()):
            home = os.path.join(self.folder, str(language))
            with self.subTest(language=language):
                with Setup(self.screen, self.program, "/PATIENCE=1", home=home, language=language):
                    shown = self.walk(words)
                self.assertEqual([control for control in shown if not fits(control)], [])
                texts = [control.words for control in shown]
                missing = [name for name, text in words.items() if name not in ELSEWHERE and
                           not any(all(part in shown for part in text.split("$WordArgument")) for shown in texts)]
                self.assertEqual(missing, [])


if __name__ == "__main__":
    unittest.main()
