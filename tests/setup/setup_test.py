"""The set-up program for Linux: what it puts where, and what it says when it cannot."""
import configparser
import os
import shutil
import subprocess
import unittest

import tiny_setups
from tiny_setups import (ANOTHER_RUNS, DAMAGED, DONE, GAME_RUNS, NO_FOLDER, NO_LIBRARY, NO_ROOM, NOT_WRITTEN,
                         PATIENCE, WRONG_USE, SetupTest, contents, make_setup, wait_until)

ODD_NAME = "my g\u00e4mes \u4e2d 'a' \"b\" $HOME `c` 100% \\n back\\slash; *"


def read_only(folder):
    """For a command that follows; not even root can write there."""
    script = 'mount --bind "$0" "$0" && mount -o remount,ro,bind "$0" && exec "$@"'
    return ["unshare", "-rm", "sh", "-c", script, folder]


def entry(path):
    parser = configparser.RawConfigParser()
    parser.optionxform = str
    parser.read(path)
    return dict(parser["Desktop Entry"])


class FirstSetup(SetupTest):
    def test_the_game_its_entries_and_the_set_up_itself_lie_where_the_game_looks_for_them(self):
        self.install(self.old)
        self.assertEqual(self.output, f"Orlavane is installed\nThe game files were copied to:\n{self.folder}\n")
        self.expect_start("1")
        files = contents(self.folder)
        libraries = {name.split("/")[0] for name in files if name.startswith("orlavane-lib-")}
        self.assertEqual(len(libraries), 1)
        self.assertEqual({name for name in files if "/" not in name},
                         {"Orlavane", "Orlavane-setup.exe", "licences.txt", "orlavane.png"})
        with open(self.old, "rb") as ours, open(os.path.join(self.folder, "Orlavane-setup.exe"), "rb") as copy:
            self.assertEqual(copy.read(), ours.read())
        for path in (self.menu_entry, self.desktop_entry):
            values = entry(path)
            self.assertEqual((values["Type"], values["Name"], values["Terminal"]), ("Application", "Orlavane", "false"))
            self.assertEqual((values["Exec"], values["TryExec"], values["Path"], values["Icon"]),
                             (f'"{self.folder}/Orlavane"', f"{self.folder}/Orlavane", self.folder,
                              f"{self.folder}/orlavane.png"))
            self.assertTrue(os.access(path, os.X_OK))
        self.assertEqual(sorted(os.listdir(self.home)), [".local", "Desktop", "tools"])
        self.assertEqual(sorted(os.listdir(os.path.join(self.home, ".local"))), ["lib", "share"])

    def test_the_program_takes_the_libraries_beside_it_and_their_terms_lie_there(self):
        self.install_quietly(self.new)
        found = subprocess.run(["ldd", os.path.join(self.folder, "Orlavane")], capture_output=True, text=True).stdout
        carried = [name for name in contents(self.folder) if name.startswith("orlavane-lib-")]
        self.assertEqual({os.path.basename(name) for name in carried},
                         {"libSDL2-2.0.so.0", "libSDL2_ttf-2.0.so.0", "libXss.so.1", "libdecor-0.so.0",
                          "libsamplerate.so.0"})
        terms = self.read(".local/lib/Orlavane/licences.txt")
        with open(os.path.join(tiny_setups.HERE, "../../LICENSE")) as file:
            self.assertTrue(terms.startswith(file.read() + "\n\nOrlavane stands on"))
        for name in carried:
            self.assertIn(f"=> {self.folder}/{name} (", found)
            self.assertIn(f"\n{os.path.basename(name)}\n===", terms)

    def test_a_desktop_that_is_not_there_is_not_made(self):
        os.rmdir(os.path.join(self.home, "Desktop"))
        self.install_quietly(self.old)
        self.assertFalse(os.path.exists(os.path.join(self.home, "Desktop")))
        self.assertTrue(os.path.exists(self.menu_entry))

    def test_the_menu_is_where_the_game_looks_for_it(self):
        elsewhere = os.path.join(self.home, "data")
        self.install_quietly(self.old, XDG_DATA_HOME=elsewhere)
        self.assertTrue(os.path.exists(os.path.join(elsewhere, "applications/orlavane.desktop")))
        self.install_quietly(self.old, f"--folder={self.home}/other", XDG_DATA_HOME="relative")  # nobody looks there
        self.assertFalse(os.path.exists(self.menu_entry))

    def test_a_folder_of_the_players_choice_gets_the_games_name_behind_it(self):
        games = os.path.join(self.home, ODD_NAME)
        os.mkdir(games)
        for given, folder in ((games, games + "/Orlavane"), (games + "/a/Orlavane//", games + "/a/Orlavane"),
                              ("b/c", games + "/b/c/Orlavane"), ("Orlavane", games + "/Orlavane")):
            self.install(self.old, "--folder=" + given, cwd=games)
            self.expect_start("1", folder)

    def test_the_menu_starts_the_game_whatever_its_folder_is_called(self):
        self.install_quietly(self.old, f"--folder={self.home}/{ODD_NAME}")
        subprocess.run(["gio", "launch", self.menu_entry], env=self.environment(), check=True)
        self.expect_start("1", f"{self.home}/{ODD_NAME}/Orlavane")

    def test_a_home_that_is_none_is_looked_up(self):
        self.tool("getent", "exit 2\n")
        self.assertEqual(self.run_setup(self.old, HOME=None), NO_FOLDER)
        self.tool("getent", f"echo \"player:x:1:1::{self.home}:/bin/sh\"\n")
        for odd in (None, "", "relative"):
            self.install_quietly(self.old, HOME=odd)
            self.assertIn("Orlavane", os.listdir(self.folder))
            shutil.rmtree(self.folder)

    def test_what_the_players_shell_has_set_changes_nothing(self):
        self.install_quietly(self.old)
        usual = contents(self.folder)
        shutil.rmtree(self.folder)
        self.install_quietly(self.old, command=["sh", "-c", 'umask 077; exec "$@"', "sh"],
                             TAR_OPTIONS="--verbose --exclude=*", GZIP="-l", CDPATH="/tmp", POSIXLY_CORRECT="1",
                             IFS="/o", LC_ALL="tr_TR.UTF-8", PATH=None)
        self.assertEqual(contents(self.folder), usual)

    def test_it_may_be_called_in_any_way(self):
        folder, name = os.path.split(self.old)
        for command, path in ((["sh"], name), (["sh"], "./" + name), ([], "./" + name)):
            self.install_quietly(path, command=command, cwd=folder)
        with open(self.old) as file:
            piped = subprocess.run(["sh"], stdin=file, env=self.environment(), capture_output=True)
        self.assertEqual(piped.returncode, DAMAGED)

    def test_the_same_files_give_the_same_bytes(self):
        elsewhere = {"TZ": "Asia/Tokyo", "LC_ALL": "C.UTF-8", "TAR_OPTIONS": "--verbose"}
        again = make_setup("tiny-game-1", "0.2", "2026-10-30", os.path.join(self.home, "again.run"), cwd="/",
                           umask=0o077, env={**os.environ, **elsewhere})
        with open(self.old, "rb") as first, open(again, "rb") as second:
            self.assertEqual(first.read(), second.read())


class Update(SetupTest):
    def setUp(self):
        super().setUp()
        self.install_quietly(self.old)

    def test_the_new_version_takes_the_place_of_the_old_one_and_what_is_the_players_stays(self):
        kept = ("music1.mp3", "maps/a")
        for name in kept:
            self.write(".local/lib/Orlavane/" + name, name)
        self.install(self.new, ORLAVANE_FOLDER=self.folder + "/")  # as the game says it
        self.expect_start("2")
        files = contents(self.folder)
        for name in kept:
            files.pop(name)
        self.assertEqual(files, self.version_of(self.new))

    def test_the_folder_that_the_game_names_is_updated_wherever_it_lies(self):
        elsewhere = os.path.join(self.home, ODD_NAME)
        self.install_quietly(self.old, "--folder=" + elsewhere)
        before = contents(self.folder)
        self.install(self.new, ORLAVANE_FOLDER=elsewhere + "/Orlavane/")
        self.expect_start("2", elsewhere + "/Orlavane")
        self.assertEqual(contents(elsewhere + "/Orlavane"), self.version_of(self.new))
        self.assertEqual(contents(self.folder), before)

    def test_entries_that_the_player_has_removed_stay_away_and_the_others_are_kept_up(self):
        os.remove(self.desktop_entry)
        with open(self.menu_entry, "a") as file:
            file.write("Comment=of an older version\n")
        self.install_quietly(self.new)
        self.assertFalse(os.path.exists(self.desktop_entry))
        self.assertNotIn("of an older version", self.read(self.menu_entry))

    def test_files_that_somebody_holds_open_are_no_obstacle(self):
        held = [open(os.path.join(self.folder, name), "rb") for name in contents(self.folder)]
        before = [os.path.getsize(file.name) for file in held]
        self.install_quietly(self.new)
        self.assertEqual([len(file.read()) for file in held], before)
        for file in held:
            file.close()
        self.assertEqual(contents(self.folder), self.version_of(self.new))

    def test_a_broken_library_is_mended(self):
        files = contents(self.folder)
        for name in files:
            if name.startswith("orlavane-lib-"):
                self.write(".local/lib/Orlavane/" + name, "broken")
        self.install_quietly(self.old)
        self.assertEqual(contents(self.folder), files)

    def test_a_game_without_its_program_is_mended(self):
        files = contents(self.folder)
        self.write(".local/lib/Orlavane/music1.mp3")
        os.remove(os.path.join(self.folder, "Orlavane"))
        self.install_quietly(self.old)
        os.remove(os.path.join(self.folder, "music1.mp3"))
        self.assertEqual(contents(self.folder), files)

    def test_the_fetched_set_up_may_be_deleted_while_it_works(self):
        fetched = shutil.copy(self.new, self.home)
        self.tool("df", f'rm -f "{fetched}"\nexec /usr/bin/df "$@"\n')
        self.install_quietly(fetched)
        self.assertFalse(os.path.exists(fetched))
        self.assertEqual(contents(self.folder), self.version_of(self.new))

    # --- The game or another set-up is in the way

    def run_game(self):
        game = subprocess.Popen([os.path.join(self.folder, "Orlavane"), "stay"], env=self.environment())
        self.addCleanup(game.wait)
        self.addCleanup(game.kill)
        wait_until(lambda: os.path.exists(os.path.join(self.home, "started")), "the game does not start")
        os.remove(os.path.join(self.home, "started"))
        return game

    def waiting_setup(self):
        """One that waits for the game to end."""
        self.tool("sleep", 'touch "$HOME/waits"\nexec /usr/bin/sleep "$@"\n')
        setup = self.start(self.new, ORLAVANE_FOLDER=self.folder)
        wait_until(lambda: os.path.exists(os.path.join(self.home, "waits")), "it does not wait")
        return setup

    def test_it_waits_for_the_game_to_end(self):
        game = self.run_game()
        setup = self.waiting_setup()
        game.terminate()
        self.assertEqual(setup.communicate(timeout=PATIENCE)[1], "")
        self.assertEqual(setup.returncode, DONE)
        self.expect_start("2")

    def test_it_does_not_wait_for_ever(self):
        before = contents(self.folder)
        self.tool("sleep", 'echo "$1" >>"$HOME/slept"\n')
        game = self.run_game()
        self.assertEqual(self.run_setup(self.new, ORLAVANE_FOLDER=self.folder), GAME_RUNS)
        self.assertEqual(round(sum(map(float, self.read("slept").split()))), 60)
        self.assertIn("If the game is running, close it", self.errors)
        self.assertIsNone(game.poll())
        self.assertFalse(os.path.exists(os.path.join(self.home, "started")))  # it need not be started again
        self.assertEqual(contents(self.folder), before)

    def test_two_at_once_do_not_disturb_each_other(self):
        game = self.run_game()
        first = self.waiting_setup()
        self.assertEqual(self.run_setup(self.new, ORLAVANE_FOLDER=self.folder), ANOTHER_RUNS)
        self.assertIn("Setup could not finish\n", self.errors)
        game.terminate()
        first.communicate(timeout=PATIENCE)
        self.assertEqual(first.returncode, DONE)
        self.expect_start("2")
        self.assertEqual(contents(self.folder), self.version_of(self.new))

    # --- It cannot be done

    def expect_refusal(self, setup, code, *words, **options):
        """Nothing has changed, and the old version is there again."""
        before, entries = contents(self.folder), contents(os.path.dirname(self.menu_entry))
        self.assertEqual(self.run_setup(setup, ORLAVANE_FOLDER=self.folder, **options), code, self.errors)
        self.assertEqual(self.errors.splitlines(), ["Setup could not finish", *words])
        self.assertEqual(self.output, "")
        self.assertEqual((contents(self.folder), contents(os.path.dirname(self.menu_entry))), (before, entries))
        self.expect_start("1")

    def test_a_disk_without_room(self):
        """A real one of nine megabytes, where the old version lies and the new one has no place beside it."""
        script = """mount -t tmpfs -o size=9m none "$HOME/disk" && "$OLD" --silent --folder="$HOME/disk" >"$HOME/log" &&
            cd "$HOME/disk/Orlavane" && ls -AR >"$HOME/before" && "$NEW" >>"$HOME/log"
            echo $?; ls -AR | cmp - "$HOME/before" && cmp Orlavane-setup.exe "$OLD"; exit $?"""
        os.mkdir(os.path.join(self.home, "disk"))
        on_disk = os.path.join(self.home, "disk/Orlavane")
        result = subprocess.run(["unshare", "-rm", "sh", "-c", script], capture_output=True, text=True,
                                env=self.environment(OLD=self.old, NEW=self.new, ORLAVANE_FOLDER=on_disk))
        self.assertEqual((result.returncode, result.stdout), (0, f"{NO_ROOM}\n"), result.stderr)
        words, size, folder = result.stderr.splitlines()[1:]
        self.assertEqual((words, folder), ("The disk is full or not writable while copying Orlavane.", on_disk))
        self.assertRegex(size, r"^Space needed: about \d\.\d MB$")
        self.expect_start("1", on_disk)

    def test_a_disk_that_fills_up_meanwhile(self):
        self.expect_refusal(self.new, NOT_WRITTEN, "Could not write Orlavane to:", self.folder,
                            command=["sh", "-c", 'ulimit -f 1500; trap "" XFSZ; exec "$@"', "sh"])

    def test_a_folder_that_cannot_be_written(self):
        self.expect_refusal(self.new, NOT_WRITTEN, "Could not write Orlavane to:", self.folder,
                            command=read_only(self.folder))

    def test_a_place_where_no_folder_can_be_made(self):
        self.write("file")
        self.assertEqual(self.run_setup(self.new, f"--folder={self.home}/file/games"), NOT_WRITTEN)
        self.assertIn(f"Could not create the folder:\n{self.home}/file/games/Orlavane\n", self.errors)

    def test_something_in_the_place_of_a_file(self):
        """That it meets when the program has gone its way already."""
        os.remove(os.path.join(self.folder, "licences.txt"))
        self.write(".local/lib/Orlavane/licences.txt/mine", "mine")
        self.expect_refusal(self.new, NOT_WRITTEN, "Could not write Orlavane to:", self.folder)

    def test_a_menu_that_cannot_be_written(self):
        menu = os.path.dirname(self.menu_entry)
        self.expect_refusal(self.new, NOT_WRITTEN, "Could not write orlavane.desktop to:", menu,
                            command=read_only(menu))

    def test_a_system_without_a_library(self):
        program = os.path.join(self.home, "tiny-game")
        shutil.copy(os.path.join(tiny_setups.BIN, "tiny-game-2"), program)
        subprocess.run(["patchelf", "--add-needed", "libnowhere.so.1", program], check=True)
        setup = make_setup(program, "0.3", "2026-12-01", os.path.join(self.home, "a.run"))
        self.expect_refusal(setup, NO_LIBRARY, "The game files are missing: libnowhere.so.1")

    def test_a_set_up_that_is_not_whole(self):
        with open(self.new, "rb") as file:
            data = file.read()
        broken = os.path.join(self.home, "broken.run")
        words = f"The game files are missing: {broken}"
        word = data.index(b"Orlavane is installed")
        for damaged in (data[:-1], data + b"\0", data[:-9] + b"\0" + data[-8:], data[:word] + b"0" + data[word + 1:]):
            with open(broken, "wb") as file:
                file.write(damaged)
            os.chmod(broken, 0o755)
            self.expect_refusal(broken, DAMAGED, words)

    def test_a_set_up_that_was_cut_short(self):
        with open(self.new, "rb") as file:
            lines = file.read(200000).split(b"\nmain ")[0].split(b"\n")
        before = contents(self.folder)
        broken = os.path.join(self.home, "broken.run")
        for count in range(40, len(lines), 20):
            with open(broken, "wb") as file:
                file.write(b"\n".join(lines[:count]) + b"\n")
            self.assertEqual(self.run_setup(broken, command=["sh"]), DAMAGED, count)
        self.assertEqual(contents(self.folder), before)

    # --- Folders that are not the game's

    def test_a_folder_with_other_things_is_refused(self):
        precious = self.write("mine/Orlavane/precious")
        self.assertEqual(self.run_setup(self.new, f"--folder={self.home}/mine"), NO_FOLDER)
        self.assertIn(f"Could not create the folder:\n{self.home}/mine/Orlavane\n", self.errors)
        self.assertEqual(contents(os.path.join(self.home, "mine")).keys(), {"Orlavane/precious"})
        self.assertTrue(os.path.exists(precious))

    def test_a_folder_without_a_game_is_not_updated(self):
        gone = os.path.join(self.home, "gone/Orlavane")
        self.assertEqual(self.run_setup(self.new, ORLAVANE_FOLDER=gone), NO_FOLDER)
        self.assertIn(f"The game files are missing: {gone}/Orlavane\n", self.errors)
        self.assertFalse(os.path.exists(os.path.dirname(gone)))

    def test_a_link_to_a_folder_of_another_name_is_refused(self):
        os.makedirs(os.path.join(self.home, "games/other"))
        os.symlink("other", os.path.join(self.home, "games/Orlavane"))
        self.assertEqual(self.run_setup(self.new, f"--folder={self.home}/games"), NO_FOLDER)
        self.assertEqual(os.listdir(os.path.join(self.home, "games/other")), [])

    def test_a_name_that_no_entry_can_hold_is_refused(self):
        self.assertEqual(self.run_setup(self.new, f"--folder={self.home}/a\nb"), NO_FOLDER)
        self.assertEqual(sorted(os.listdir(self.home)), [".local", "Desktop", "tools"])

    def test_words_that_it_does_not_know_are_refused(self):
        before = contents(self.folder)
        for word in ("--folder", "--folder=", "--quiet", "folder", ""):
            self.assertEqual(self.run_setup(self.new, word), WRONG_USE)
            self.assertIn("usage: Orlavane-setup-0.3.run [--silent] [--folder=PATH]", self.errors)
        self.assertEqual(contents(self.folder), before)

    # --- Words

    def refuse(self, **variables):
        self.write("mine/Orlavane/precious")
        self.assertEqual(self.run_setup(self.new, f"--folder={self.home}/mine", **variables), NO_FOLDER)
        return self.errors.splitlines()[0]

    def test_it_speaks_the_players_language(self):
        german, english = "Das Setup konnte nicht abgeschlossen werden", "Setup could not finish"
        french = "L\u2019installation n\u2019a pas pu aboutir"
        self.assertEqual(self.refuse(), english)
        self.assertEqual(self.refuse(LANG="de_DE.UTF-8"), german)
        self.assertEqual(self.refuse(LANG="de_DE.UTF-8", LC_MESSAGES="fr_FR"), french)
        self.assertEqual(self.refuse(LANG="de_DE.UTF-8", LC_ALL="C"), english)
        self.write(".local/share/Orlavane/Orlavane/settings.ini", "quality=2\nlanguage=5\nvsync=1\n")
        self.assertEqual(self.refuse(LANG="de_DE.UTF-8"), french)
        self.write(".local/share/Orlavane/Orlavane/settings.ini", "language=-1\n")
        self.assertEqual(self.refuse(LANG="de_DE.UTF-8"), german)
        self.assertEqual(self.refuse(LANG="xx"), english)

    def hide(self, names):
        """The folder of tools gets all that this machine has but those."""
        for tool in set(os.listdir("/usr/bin")) - set(names):
            os.symlink("/usr/bin/" + tool, os.path.join(self.tools, tool))

    def test_what_went_wrong_stands_in_a_window(self):
        names = ("zenity", "kdialog", "notify-send", "xmessage")
        self.hide(names)
        for name in names:
            self.tool(name, 'printf "%s\\n" "${0##*/}" "$@" >"$HOME/shown"\n')
        for name in names:
            for display in ("DISPLAY", "WAYLAND_DISPLAY"):
                self.refuse(LANG="de", PATH=self.tools, **{display: ":7"})
                shown = self.read("shown")
                self.assertEqual(shown.splitlines()[0], name)
                self.assertIn("Orlavane-Setup", shown)
                self.assertTrue(shown.strip().endswith(self.errors.strip()), shown)
                os.remove(os.path.join(self.home, "shown"))
            os.remove(os.path.join(self.tools, name))

    def test_a_notification_that_nobody_takes_becomes_a_window(self):
        self.hide(("zenity", "kdialog", "notify-send", "xmessage"))
        self.tool("notify-send", "exit 1\n")
        self.tool("xmessage", 'touch "$HOME/shown"\n')
        self.refuse(DISPLAY=":7", PATH=self.tools)
        self.assertTrue(os.path.exists(os.path.join(self.home, "shown")))

    def test_there_is_no_window_without_a_screen_or_when_silent(self):
        self.tool("zenity", 'touch "$HOME/shown"\n')
        self.refuse()
        self.write("mine/Orlavane/precious")
        self.run_setup(self.new, "--silent", f"--folder={self.home}/mine", DISPLAY=":7")
        self.assertFalse(os.path.exists(os.path.join(self.home, "shown")))

    def test_nothing_is_locked_while_the_window_is_read(self):
        game = self.run_game()
        self.tool("sleep", "")
        self.tool("zenity", f'"{self.new}" --silent 2>"$HOME/inner"; echo $? >"$HOME/status"\n')
        self.assertEqual(self.run_setup(self.new, DISPLAY=":7"), GAME_RUNS)
        self.assertEqual(self.read("status"), f"{GAME_RUNS}\n")  # and not that another one runs
        game.kill()


if __name__ == "__main__":
    unittest.main()
