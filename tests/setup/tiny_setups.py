"""The set-up programs of two versions of a tiny game, and what the tests of them share."""
import hashlib
import os
import shutil
import subprocess
import tempfile
import time
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
BIN = os.environ.get("BIN") or os.path.join(HERE, "../../build/release/bin")
MAKE_SETUP = os.path.join(HERE, "../../packaging/linux/make-setup")
PATIENCE = 120  # seconds until a slow machine has done what it was asked for
DONE, WRONG_USE, DAMAGED, ANOTHER_RUNS, NO_FOLDER, NO_ROOM, GAME_RUNS, NOT_WRITTEN, NO_LIBRARY = range(9)


def make_setup(program, version, date, path, **options):
    """The set-up program of the game's executable, which lies beside the tools."""
    words = path + ".words"
    with open(words, "w") as file:
        subprocess.run([os.path.join(BIN, "make-setup-words"), "sh"], stdout=file, check=True)
    subprocess.run([MAKE_SETUP, os.path.join(BIN, program), version, date, words, path], check=True, **options)
    os.remove(words)
    return path


def wait_until(condition, what):
    deadline = time.monotonic() + PATIENCE
    while not condition():
        assert time.monotonic() < deadline, what
        time.sleep(0.01)


def contents(folder):
    """Of each file in it the mode and the content, by the path."""
    found = {}
    for place, _, names in os.walk(folder):
        for name in names:
            path = os.path.join(place, name)
            with open(path, "rb") as file:
                found[os.path.relpath(path, folder)] = (os.stat(path).st_mode, hashlib.sha256(file.read()).hexdigest())
    return found


class SetupTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.setups = tempfile.mkdtemp()
        cls.addClassCleanup(shutil.rmtree, cls.setups)
        cls.old = make_setup("tiny-game-1", "0.2", "2026-10-30", os.path.join(cls.setups, "Orlavane-setup-0.2.run"))
        cls.new = make_setup("tiny-game-2", "0.3", "2026-12-01", os.path.join(cls.setups, "Orlavane-setup-0.3.run"))

    def setUp(self):
        self.home = os.path.join(tempfile.mkdtemp(), "h\u00f6me of a player")
        self.addCleanup(shutil.rmtree, os.path.dirname(self.home))
        os.makedirs(os.path.join(self.home, "Desktop"))
        self.folder = os.path.join(self.home, ".local/lib/Orlavane")
        self.menu_entry = os.path.join(self.home, ".local/share/applications/orlavane.desktop")
        self.desktop_entry = os.path.join(self.home, "Desktop/orlavane.desktop")
        self.tools = os.path.join(self.home, "tools")  # which come before the system's
        os.mkdir(self.tools)

    def environment(self, **variables):
        values = {"HOME": self.home, "PATH": self.tools + ":/usr/bin:/bin", **variables}
        return {name: value for name, value in values.items() if value is not None}

    def start(self, setup, *arguments, command=(), cwd="/", **variables):
        return subprocess.Popen([*command, setup, *arguments], env=self.environment(**variables), cwd=cwd,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                start_new_session=True)

    def run_setup(self, setup, *arguments, **options):
        """Its exit status; what it wrote is kept."""
        with self.start(setup, *arguments, **options) as process:
            self.output, self.errors = process.communicate(timeout=PATIENCE)
        return process.returncode

    def install(self, setup, *arguments, **options):
        self.assertEqual(self.run_setup(setup, *arguments, **options), DONE, self.errors)

    def install_quietly(self, setup, *arguments, **options):
        self.install(setup, "--silent", *arguments, **options)

    def version_of(self, setup):
        """What its version consists of."""
        home = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, home)
        self.install_quietly(setup, HOME=home)
        return contents(os.path.join(home, ".local/lib/Orlavane"))

    def tool(self, name, text):
        """In place of the system's."""
        path = os.path.join(self.tools, name)
        with open(path, "w") as file:
            file.write("#!/bin/sh\n" + text)
        os.chmod(path, 0o755)

    def write(self, name, text=""):
        path = os.path.join(self.home, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w") as file:
            file.write(text)
        return path

    def read(self, name):
        with open(os.path.join(self.home, name)) as file:
            return file.read()

    def expect_start(self, version, folder=None):
        """By the set-up, in the game's folder."""
        started = os.path.join(self.home, "started")
        wait_until(lambda: os.path.exists(started), "the game was not started")
        self.assertEqual(self.read("started"), f"{version}\n{folder or self.folder}\n")
        os.remove(started)
