"""A set-up that is cut off at any of its steps, as when the power fails, or that is asked to end."""
import os
import shutil
import signal
import unittest

from tiny_setups import NO_ROOM, NOT_WRITTEN, SetupTest, contents

# All that it changes files with. Before each one the shell under test may be cut off.
TOOLS = ("mkdir", "tar", "cat", "chmod", "sync", "mv", "ln", "rm", "rmdir")
SHIM = """
read -r number <"$HOME/count"
number=$((number + 1))
echo "$number" >"$HOME/count"
read -r a b c d group rest <"/proc/$$/stat"
[ "$number" != "$CUT_AT" ] || {command}
exec /usr/bin/"${{0##*/}}" "$@"
"""
NO_SPACE = "echo 0\n"
ALL_AT_ONCE, ASKED_TO_END = 'kill -9 "-$group"', 'kill -15 "$group"'


class CutOff(SetupTest):
    def setUp(self):
        super().setUp()
        self.versions = {"0.2": self.version_of(self.old), "0.3": self.version_of(self.new)}

    def use(self, tools):
        """Those and no others before the system's."""
        shutil.rmtree(self.tools)
        os.mkdir(self.tools)
        for name, text in tools.items():
            self.tool(name, text)

    def cut_off(self, command, step, setup, **tools):
        """Runs the set-up, with the command before that step: its exit status, and whether there was such a step."""
        self.use({**{name: SHIM.format(command=command) for name in TOOLS}, **tools})
        self.write("count", "0\n")
        status = self.run_setup(setup, "--silent", CUT_AT=str(step))
        self.use({})
        return status, int(self.read("count")) >= step

    def heal_alone(self):
        """By a run that changes nothing else: it finds no room."""
        self.use({"df": NO_SPACE})
        self.assertEqual(self.run_setup(self.old, "--silent"), NO_ROOM, self.errors)
        self.use({})

    def whole_program(self):
        """The version whose program lies there with all its libraries; None without a program."""
        found = contents(self.folder)
        if "Orlavane" not in found:
            return None
        version, = [name for name, files in self.versions.items() if files["Orlavane"] == found["Orlavane"]]
        files = self.versions[version]
        libraries = {name: file for name, file in files.items() if name.startswith("orlavane-lib-")}
        self.assertGreater(len(libraries), 2)
        self.assertEqual({name: found.get(name) for name in libraries}, libraries)
        return version

    def steps(self):
        """One after the other, each from what there was before the first."""
        kept = [os.path.join(self.home, name) for name in (".local", "Desktop")]
        for path in kept:
            os.makedirs(path, exist_ok=True)
            if not os.path.exists(path + ".kept"):
                shutil.copytree(path, path + ".kept")
        for step in range(1, 100):
            for path in kept:
                shutil.rmtree(path)
                shutil.copytree(path + ".kept", path)
            yield step
        self.fail("it never comes to its end")

    def test_an_update_is_the_old_or_the_new_version_and_the_next_run_heals_it(self):
        seen = []
        self.install_quietly(self.old)
        self.write(".local/lib/Orlavane/music1.mp3", "music")
        for step in self.steps():
            status, reached = self.cut_off(ALL_AT_ONCE, step, self.new)
            self.assertEqual(status, -signal.SIGKILL if reached else 0, self.errors)
            seen.append(self.whole_program())
            self.heal_alone()
            files = contents(self.folder)
            self.assertIsNotNone(files.pop("music1.mp3", None))
            self.assertEqual(files, self.versions[seen[-1]], f"step {step}")
            if not reached:
                break
        self.assertEqual(seen, sorted(seen))
        self.assertEqual(set(seen), {"0.2", "0.3"})
        self.assertGreater(len(seen), 15)

    def test_the_healing_may_be_cut_off_too(self):
        """After an update that was cut off just before its moment, and just after it."""
        self.install_quietly(self.old)
        for moment in self.steps():
            self.cut_off(ALL_AT_ONCE, moment, self.new)
            if self.whole_program() == "0.3":
                break
        for unfinished in (moment - 1, moment):
            for step in self.steps():
                self.cut_off(ALL_AT_ONCE, unfinished, self.new)
                version = self.whole_program()
                reached = self.cut_off(ALL_AT_ONCE, step, self.old, df=NO_SPACE)[1]
                self.assertEqual(self.whole_program(), version)
                self.heal_alone()
                self.assertEqual(contents(self.folder), self.versions[version], f"step {step}")
                if not reached:
                    break

    def test_the_way_back_may_be_cut_off_too(self):
        """After the program has gone its way, the set-up meets a folder where no other file can follow."""
        self.install_quietly(self.old)
        os.remove(os.path.join(self.folder, "licences.txt"))
        self.write(".local/lib/Orlavane/licences.txt/mine", "mine")
        before = contents(self.folder)
        for step in self.steps():
            status, reached = self.cut_off(ALL_AT_ONCE, step, self.new)
            self.assertEqual(status, -signal.SIGKILL if reached else NOT_WRITTEN, self.errors)
            self.assertIsNotNone(self.whole_program(), f"step {step}")
            self.heal_alone()
            self.assertEqual(contents(self.folder), before, f"step {step}")
            if not reached:
                break

    def test_a_first_set_up_is_healed_by_the_next(self):
        seen = []
        for step in self.steps():
            status, reached = self.cut_off(ALL_AT_ONCE, step, self.new)
            self.assertEqual(status, -signal.SIGKILL if reached else 0, self.errors)
            seen.append(self.whole_program() is not None)
            if step % 3 == 0:  # most of what it leaves is the same
                self.install_quietly(self.new)
                self.assertEqual(contents(self.folder), self.versions["0.3"], f"step {step}")
                self.assertTrue(os.path.exists(self.menu_entry) and os.path.exists(self.desktop_entry))
            if not reached:
                break
        self.assertEqual(seen, sorted(seen))
        self.assertEqual(set(seen), {False, True})

    def test_an_update_that_is_asked_to_end_leaves_the_old_version_or_becomes_the_new_one(self):
        seen = []
        self.install_quietly(self.old)
        for step in self.steps():
            status, reached = self.cut_off(ASKED_TO_END, step, self.new)
            seen.append(status == 0)
            self.assertEqual(contents(self.folder), self.versions["0.3" if status == 0 else "0.2"], f"step {step}")
            if not reached:
                break
        self.assertEqual(seen, sorted(seen))
        self.assertEqual(set(seen), {False, True})

    def test_a_first_set_up_that_is_asked_to_end_leaves_nothing(self):
        for step in self.steps():
            status, reached = self.cut_off(ASKED_TO_END, step, self.new)
            for path in (self.folder, self.menu_entry, self.desktop_entry):
                self.assertEqual(os.path.exists(path), status == 0, f"step {step}: {path}")
            if not reached:
                break


if __name__ == "__main__":
    unittest.main()
