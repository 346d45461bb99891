"""The real program with an update server: a good one, and those that would make it wait."""
import os
import subprocess
import sys
import tempfile
import time
import unittest

from driver import run_to_end

SERVER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../maintenance/odd_server.py")


class Update(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.home = self.folder.name
        self.server = subprocess.Popen([sys.executable, "-B", SERVER, self.home], stdin=subprocess.PIPE)
        deadline = time.monotonic() + 30
        while not os.path.exists(os.path.join(self.home, "port")):
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.02)
        self.url = "http://127.0.0.1:" + self.read("port")

    def tearDown(self):
        self.server.stdin.close()
        self.server.wait(10)
        self.folder.cleanup()

    def read(self, name):
        with open(os.path.join(self.home, name)) as file:
            return file.read()

    def run_frames(self, url, frames):
        """Seconds of a run of so many frames."""
        start = time.monotonic()
        code, errors = run_to_end(self.home, SDL_VIDEODRIVER="offscreen", OV_SHOT=os.path.join(self.home, "shot.bmp"),
                                  OV_FRAMES=str(frames), TEST_MANIFEST_URL=url)
        self.assertEqual((code, errors), (0, "No music files found; playing without music\n"))
        self.assertTrue(os.path.exists(os.path.join(self.home, "shot.bmp")))
        return time.monotonic() - start

    def test_the_start_asks_the_server_for_its_manifest(self):
        self.run_frames(self.url + "/manifest.json", 3)
        self.assertIn("GET /manifest.json HTTP/1.1\n", self.read("requests"))
        self.assertIn("User-Agent: Orlavane\n", self.read("requests"))

    def test_nobody_waits_for_a_silent_server_not_even_the_end_of_the_program(self):
        self.assertLess(self.run_frames(self.url + "/silence", 3), 9.0)  # the worker waits ten seconds
        self.assertIn("GET /silence", self.read("requests"))

    def test_nobody_waits_for_one_who_sends_a_byte_a_second(self):
        self.assertLess(self.run_frames(self.url + "/drip/60", 3), 20.0)

    def test_nobody_waits_for_a_name_that_nobody_knows(self):
        self.assertLess(self.run_frames("http://no-such-name.invalid/", 3), 9.0)


if __name__ == "__main__":
    unittest.main()
