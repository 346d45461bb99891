"""The real program with an update server: a good one, and those that would make it wait."""
import hashlib
import json
import os
import subprocess
import sys
import tempfile
import time
import unittest

from driver import PROGRAM, Game, Screen, run_to_end, wait_until
from mouse import BROWN, GOLD, GREY, LAUNCHER, TITLE, Mouse, difference, like

SERVER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../maintenance/odd_server.py")
WINDOW = (480, 540)
STATUS, NEWS = (-280, 266, 560, 64), (-200, 342, 400, 26)  # words on the launcher and the title, with their sizes
PLAIN_WORDS, GOOD, GOLDEN, BAD = (245, 235, 209), (115, 219, 133), (242, 199, 92), (242, 115, 102)


class WithServer(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory(dir=os.path.dirname(PROGRAM))  # where links to it can stand
        self.addCleanup(temporary.cleanup)
        self.home = temporary.name
        self.server = subprocess.Popen([sys.executable, "-B", SERVER, self.home], stdin=subprocess.PIPE)
        self.addCleanup(self.server.wait)
        self.addCleanup(self.server.stdin.close)
        wait_until(lambda: os.path.exists(os.path.join(self.home, "port")), "no server")
        self.url = "http://127.0.0.1:" + self.read("port")

    def read(self, name):
        with open(os.path.join(self.home, name)) as file:
            return file.read()

    def write(self, name, content):
        with open(os.path.join(self.home, name), "wb") as file:
            file.write(content)

    def publish(self, setup, date, sha256=None):
        """A setup program, and the manifest that announces it."""
        self.write("www/held-setup", setup)
        self.write("www/held-manifest.json", json.dumps(
            dict(version="0.3", date=date, sha256=sha256 or hashlib.sha256(setup).hexdigest(),
                 file="held-setup")).encode())


class InTheWindow(WithServer):
    def start(self, **variables):
        screen = Screen().__enter__()
        self.addCleanup(screen.__exit__)
        os.makedirs(os.path.join(self.home, "game"))
        program = os.path.join(self.home, "game/Orlavane")
        os.link(PROGRAM, program)
        self.game = Game(screen, home=self.home, window=WINDOW, program=program, TMPDIR=self.home, LANG="C",
                         LANGUAGE="en", **variables)
        self.addCleanup(self.game.__exit__)
        self.mouse = Mouse(self.game)

    def hold(self):
        """The server keeps what it has from now on."""
        os.remove(os.path.join(self.home, "go"))

    def let_go(self):
        self.write("go", b"")

    def status(self, colour):
        return [like(pixel, colour, 30) for pixel in self.mouse.part(STATUS)]

    def expect(self, state, words, button):
        """Waits for the status line of a state; no two states share one."""
        self.mouse.wait_for(LAUNCHER["update"], button)
        wait_until(lambda: sum(self.status(words)) > 100, f"{state} is not seen")
        seen = self.status(words)
        for other, letters in self.seen.items():
            if other != state:
                self.assertGreater(difference(seen, letters), 0.005, f"{state} looks like {other}")
        self.seen[state] = seen

    def press_update(self):
        self.mouse.click(LAUNCHER["update"])

    def test_every_state_is_seen_and_the_picture_never_waits(self):
        self.seen = {}
        self.start(TEST_MANIFEST_URL=self.url + "/held-manifest.json")
        self.expect("checking", PLAIN_WORDS, GREY)
        self.mouse.wait_for_frames(5)  # though the server says nothing
        self.let_go()
        self.expect("offline", BAD, BROWN)  # there is no manifest yet

        self.publish(b"an older one", "2020-01-01")
        self.press_update()
        self.expect("different", PLAIN_WORDS, BROWN)

        self.write("game/Orlavane-setup.exe", b"ours")
        self.publish(b"ours", "2020-01-01")
        self.press_update()
        self.expect("current", GOOD, BROWN)

        self.publish(b"a newer one", "2027-01-01", sha256="0" * 64)
        self.press_update()
        self.expect("newer", GOLDEN, GOLD)
        self.hold()
        self.press_update()
        self.expect("downloading", PLAIN_WORDS, GREY)
        self.mouse.wait_for_frames(5)  # though the server says nothing
        self.let_go()
        self.expect("failed", BAD, BROWN)  # that is not what the manifest has announced
        self.assertFalse(os.path.exists(os.path.join(self.home, f"orlavane-{os.geteuid()}", "Orlavane-setup-update.exe")))

        self.publish(f"#!/bin/sh\ntouch '{self.home}/started'\n".encode(), "2027-01-01")
        self.press_update()
        self.expect("newer", GOLDEN, GOLD)
        self.press_update()
        self.assertEqual(self.game.process.wait(60), 0)
        wait_until(lambda: os.path.exists(os.path.join(self.home, "started")), "the setup program does not start")

    def test_a_build_without_a_server_says_so(self):
        self.seen = {}
        self.start()
        self.expect("unconfigured", PLAIN_WORDS, GREY)
        self.assertFalse(os.path.exists(os.path.join(self.home, "requests")))

    def test_the_title_tells_of_a_newer_build(self):
        self.seen = {}
        self.publish(b"a newer one", "2027-01-01")
        self.start(TEST_MANIFEST_URL=self.url + "/held-manifest.json")
        self.mouse.wait_for(LAUNCHER["open"], GOLD)
        self.mouse.open_title()
        self.assertEqual(self.mouse.count(NEWS, GOLDEN), 0)
        self.let_go()
        wait_until(lambda: self.mouse.count(NEWS, GOLDEN) > 15, "no news")


class Unseen(WithServer):
    """Programs that run by themselves to their last frame."""

    def run_frames(self, url, frames=3):
        """Seconds of a run of so many frames."""
        start = time.monotonic()
        code, errors = run_to_end(self.home, SDL_VIDEODRIVER="offscreen", OV_SHOT=os.path.join(self.home, "shot.bmp"),
                                  OV_FRAMES=str(frames), TEST_MANIFEST_URL=url)
        self.assertEqual(code, 0, errors)
        self.assertTrue(os.path.exists(os.path.join(self.home, "shot.bmp")))
        return time.monotonic() - start

    def test_the_start_asks_the_server_for_its_manifest(self):
        self.run_frames(self.url + "/manifest.json")
        self.assertIn("GET /manifest.json HTTP/1.1\n", self.read("requests"))
        self.assertIn("User-Agent: Orlavane\n", self.read("requests"))

    def test_nobody_waits_for_a_silent_server_not_even_the_end_of_the_program(self):
        alone = self.run_frames("")
        self.assertLess(self.run_frames(self.url + "/silence"), alone + 9.0)  # the worker waits ten seconds
        self.assertIn("GET /silence", self.read("requests"))

    def test_nobody_waits_for_one_who_sends_a_byte_a_second(self):
        alone = self.run_frames("")
        self.assertLess(self.run_frames(self.url + "/drip/60"), alone + 30.0)

    def test_nobody_waits_for_a_name_that_nobody_knows(self):
        alone = self.run_frames("")
        self.assertLess(self.run_frames("http://no-such-name.invalid/"), alone + 9.0)


if __name__ == "__main__":
    unittest.main()
