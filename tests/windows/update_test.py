"""An update under Wine: a real server on the loopback interface, the button pressed by mouse, the hash proved, and the
fetched program started."""
import hashlib
import os
import subprocess
import sys
import unittest

from windows_game import BIN, HERE, WindowsTest, driver, is_golden, press, wait_until, windows_path
from mouse import LAUNCHER

SERVER = os.path.join(HERE, "../maintenance/odd_server.py")
PROGRAM = os.path.join(BIN, "orlavane-with-server.exe")


class Update(WindowsTest):
    def setUp(self):
        super().setUp()
        self.server = subprocess.Popen([sys.executable, "-B", SERVER, self.folder], stdin=subprocess.PIPE)
        self.addCleanup(self.stop_server)
        wait_until(lambda: os.path.exists(os.path.join(self.folder, "port")), "no server")
        self.fetched = os.path.join(self.use_odd_temp(), "Orlavane-setup-update.exe")

    def stop_server(self):
        self.server.stdin.close()
        self.server.wait(60)

    def read(self, name):
        with open(os.path.join(self.folder, name)) as file:
            return file.read()

    def publish(self, digest=None):
        with open(os.path.join(BIN, "tiny-setup.exe"), "rb") as file:
            setup = file.read()
        with open(os.path.join(self.folder, "www/setup.exe"), "wb") as file:
            file.write(setup)
        digest = digest or hashlib.sha256(setup).hexdigest().upper()
        with open(os.path.join(self.folder, "www/manifest.json"), "w") as file:
            file.write(f'{{"version": "0.3", "date": "2027-01-01", "sha256": "{digest}", "file": "setup.exe"}}')
        return setup

    def start(self):
        return driver.Game(self.screen, program=PROGRAM,
                           TEST_MANIFEST_URL=f"http://127.0.0.1:{self.read('port')}/manifest.json")

    def told_folder(self):
        """The folder that the setup program was told to update."""
        if not os.path.exists(self.fetched + ".started"):
            return None
        with open(self.fetched + ".started", encoding="utf-16-le") as file:
            return file.read()

    def test_a_newer_setup_program_is_fetched_proved_and_started(self):
        setup = self.publish()
        with self.start() as game:
            press(game, LAUNCHER["update"], is_golden)
            self.assertEqual(game.process.wait(120), 0)
        with open(self.fetched, "rb") as file:
            self.assertEqual(file.read(), setup)
        wait_until(lambda: self.told_folder() == windows_path(BIN) + "\\", "the setup program was not started")
        self.assertRegex(self.read("requests"), r"GET /setup.exe HTTP/1.1\n(.+\n)*User-Agent: Orlavane\n")

    def test_a_setup_program_of_another_hash_is_thrown_away(self):
        self.publish("0" * 64)
        with open(self.fetched, "w") as file:
            file.write("an update that is done")
        os.utime(self.fetched, (0, 0))
        with self.start() as game:
            wait_until(lambda: not os.path.exists(self.fetched), "the finished update stays")
            press(game, LAUNCHER["update"], is_golden)
            wait_until(lambda: "GET /setup.exe" in self.read("requests"), "nothing was fetched")
            press(game, LAUNCHER["update"])  # which is grey until the hash was seen to be another
            self.assertIsNone(game.process.poll())
            self.assertFalse(os.path.exists(self.fetched))
            self.assertFalse(os.path.exists(self.fetched + ".started"))


if __name__ == "__main__":
    unittest.main()
