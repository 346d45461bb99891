"""Cities, meshes, the logo and saved games are the same to the byte on both systems."""
import os
import tempfile
import unittest

from windows_game import BIN, HERE, linux, wine

EXAMPLES = os.path.join(HERE, "../../examples")


class SameBytes(unittest.TestCase):
    def test_cities_meshes_and_logo(self):
        scripts = [os.path.join(EXAMPLES, name) for name in ("demo.txt", "metropolis.txt")]
        ours = linux("fingerprints", *scripts).decode().splitlines()
        theirs = wine(os.path.join(BIN, "fingerprints.exe"), *scripts).decode().splitlines()
        self.assertGreater(len(ours), 30)
        self.assertFalse([line for line in ours if ": 0 bytes" in line])
        self.assertEqual(theirs, ours)

    def test_a_saved_game_goes_there_and_back(self):
        with open(os.path.join(EXAMPLES, "demo.txt")) as file:
            town = file.read()
        with tempfile.TemporaryDirectory() as folder:
            script = os.path.join(folder, "script.txt")

            def run(program, text):
                with open(script, "w") as file:
                    file.write(text)
                answers = program(script)
                self.assertNotIn(b"false", answers.splitlines()[-1])
                with open(os.path.join(folder, "city.ovw"), "rb") as file:
                    return file.read()

            def on_linux(script):
                return linux("orlavane-sim", script)

            def on_windows(script):
                return wine(os.path.join(BIN, "orlavane-sim.exe"), script)

            save = f"save {folder}/city.ovw\n"
            go_on = f"load {folder}/city.ovw\ntick 30\n" + save
            made = {system: run(system, town + save) for system in (on_linux, on_windows)}
            self.assertEqual(made[on_linux], made[on_windows])
            there = run(on_linux, go_on)  # of what Windows has saved
            run(on_linux, town + save)
            back = run(on_windows, go_on)  # of what Linux has saved
            self.assertEqual(there, back)
            self.assertNotEqual(there, made[on_linux])


if __name__ == "__main__":
    unittest.main()
