"""The set-up program under Wine: the whole circle from the first installation to the removal, with an update from a
real server between them; and each failure, after which the old game is whole, or the new one, and never a mix."""
import hashlib
import os
import resource
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

from windows_game import BIN, HERE, ODD_NAME, WindowsTest, driver, is_golden, press, wait_until, windows_path, wine
from driver import WINE, clean_environment, prepare
from mouse import LAUNCHER, QUESTION, Mouse
import setup_window as w
from setup_window import Eyes, Setup, files, pack

SERVER = os.path.join(HERE, "../maintenance/odd_server.py")
STATUS = (-280, 266, 560, 24)  # where the launcher tells of updates
NEW, OLD = "Orlavane-setup-new", "Orlavane-setup-old"
UPDATE_NAME = "Orlavane-setup-update.exe"
# As the set-up program moves them.
ENTRIES = ["Orlavane.exe", "SDL2.dll", "SDL2_ttf.dll", "licences", "Orlavane-setup.exe"]


class FoundGame(driver.Game):
    """A game that somebody else has started."""

    def __init__(self, screen, home):
        self.screen, self.home = screen, home
        self.environment = clean_environment(home, DISPLAY=screen.display)
        self.process = self
        self.in_play, self.slowest_frame = False, 0.0
        self.window = self.wait_for_window()
        self.focus(self.window)
        wait_until(self.draws, "nothing was drawn")

    def poll(self):
        return None

    def is_there(self):
        return bool(subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Orlavane$"], env=self.environment,
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout.split())

    def end(self):
        if self.is_there():
            subprocess.run([WINE, "taskkill", "/f", "/im", "Orlavane.exe"], env=self.environment, timeout=60,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_until(lambda: not self.is_there(), "the game stays")

    def says_that_it_is_current(self):
        """In green letters."""
        return sum(green > 150 and green > red + 40 for red, green, blue in Mouse(self).part(STATUS)) > 50


class SetupTest(WindowsTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        packed = tempfile.TemporaryDirectory()
        cls.addClassCleanup(packed.cleanup)
        cls.first = os.path.join(packed.name, "Orlavane-setup-0.2.exe")
        cls.next = os.path.join(packed.name, "Orlavane-setup-0.9.exe")
        cls.wanted = {setup: files(pack(program, version, setup)) for program, version, setup in (
            ("orlavane-with-server.exe", "0.2", cls.first), ("orlavane-next.exe", "0.9", cls.next))}
        for setup, wanted in cls.wanted.items():
            with open(setup, "rb") as file:
                wanted[w.OWN_NAME] = file.read()
        cls.full_disk, cls.roomy_disk = (os.path.join(packed.name, name) for name in ("full_disk.so", "roomy_disk.so"))
        for library, blocks in ((cls.full_disk, 0), (cls.roomy_disk, 500000)):
            subprocess.run(["gcc", "-shared", "-fPIC", f"-DFREE={blocks}", "-o", library,
                            os.path.join(HERE, "full_disk.c")], check=True)

    def setUp(self):
        super().setUp()
        w.forget()
        self.addCleanup(w.forget)
        self.home = os.path.join(self.folder, "home")
        prepare("Orlavane.exe", self.home)  # for games that others start
        self.place = os.path.join(self.folder, ODD_NAME, "Orlavane")
        self.option = "/FOLDER=" + windows_path(self.place)

    def expect(self, setup, place=None):
        """The game of that set-up program lies there, whole, and nothing else."""
        found = files(place or self.place)
        self.assertEqual(sorted(found), sorted(self.wanted[setup]))
        self.assertEqual([name for name in found if found[name] != self.wanted[setup][name]], [])

    def run_setup(self, setup, *options, **variables):
        return w.run_setup(self.screen, setup, *options, **variables)

    def install(self, setup=None, *options, code=w.DONE, **variables):
        self.assertEqual(self.run_setup(setup or self.first, self.option, *options, **variables), code)

    def links(self):
        return [link for link in (w.DESKTOP_LINK, w.MENU_LINK) if os.path.exists(link)]

    def small_disk(self, size):
        """A real one of that many kilobytes, as a folder."""
        disk = os.path.join(self.folder, "disk")
        os.mkdir(disk)
        as_root = [] if os.geteuid() == 0 else ["sudo"]
        subprocess.run([*as_root, "mount", "-t", "tmpfs", "-o", f"size={size}k,mode=777", "none", disk], check=True)
        self.addCleanup(subprocess.run, [*as_root, "umount", "--lazy", disk], check=True)
        return disk

    def found_game(self):
        game = FoundGame(self.screen, self.home)
        self.addCleanup(game.end)
        return game


class Circle(SetupTest):
    def setUp(self):
        super().setUp()
        self.server = subprocess.Popen([sys.executable, "-B", SERVER, self.folder], stdin=subprocess.PIPE)
        self.addCleanup(self.stop_server)
        port = os.path.join(self.folder, "port")
        wait_until(lambda: os.path.exists(port), "no server")
        with open(port) as file:
            self.address = f"http://127.0.0.1:{file.read()}/manifest.json"
        digest = hashlib.sha256(self.wanted[self.next][w.OWN_NAME]).hexdigest()
        shutil.copy(self.next, os.path.join(self.folder, "www/setup.exe"))
        with open(os.path.join(self.folder, "www/manifest.json"), "w") as file:
            file.write(f'{{"version": "0.9", "date": "2027-01-01", "sha256": "{digest}", "file": "setup.exe"}}')

    def stop_server(self):
        self.server.stdin.close()
        self.server.wait(60)

    def test_installed_by_mouse_played_updated_and_removed(self):
        start = time.monotonic()
        with Setup(self.screen, self.first, home=self.home) as setup:
            setup.to_location()
            setup.click(w.NEXT)
            setup.wait_for("Finish")
            setup.click(w.START_BOX)
            setup.click(w.NEXT)
            self.assertEqual(setup.process.wait(60), w.DONE)
        print(f"installed by mouse in {time.monotonic() - start:.1f} s", flush=True)
        self.expect(self.first, w.USUAL_FOLDER)
        self.assertEqual(self.links(), [w.DESKTOP_LINK, w.MENU_LINK])

        song = os.path.join(w.USUAL_FOLDER, "music1.mp3")
        open(song, "w").close()
        preferences = os.path.join(self.home, ".local/share/Orlavane/Orlavane")
        with open(os.path.join(preferences, "savegame.ovw"), "wb") as file:
            file.write(b"a city")
        kept = files(preferences)
        environment = clean_environment(self.home, DISPLAY=self.screen.display, TEST_MANIFEST_URL=self.address)
        entry = subprocess.Popen([WINE, "start", w.MENU_LINK_ON_C], env=environment, stdout=subprocess.DEVNULL,
                                 stderr=subprocess.DEVNULL)
        self.addCleanup(entry.wait, 60)
        old = self.found_game()
        press(old, LAUNCHER["update"], is_golden)
        start = time.monotonic()
        wait_until(lambda: not old.is_there(), "the old game stays")
        game = self.found_game()
        print(f"updated in {time.monotonic() - start:.1f} s", flush=True)
        wait_until(game.says_that_it_is_current, "it does not say that it is the latest")
        os.remove(song)
        self.expect(self.next, w.USUAL_FOLDER)
        self.assertEqual(files(preferences), kept)

        press(game, LAUNCHER["uninstall"])
        press(game, QUESTION["yes"])
        wait_until(lambda: not game.is_there(), "the game stays")
        wait_until(lambda: not os.path.exists(w.USUAL_FOLDER) and not self.links(), "something stays")
        self.assertEqual(files(preferences), kept)


class Modes(SetupTest):
    def setUp(self):
        super().setUp()
        self.temp = self.use_odd_temp()

    def test_silently_into_a_folder_of_any_name(self):
        start = time.monotonic()
        self.install()
        print(f"installed silently in {time.monotonic() - start:.1f} s", flush=True)
        self.expect(self.first)
        self.assertEqual(self.links(), [w.DESKTOP_LINK, w.MENU_LINK])

    def test_a_folder_of_another_name_gets_one_inside_and_the_exact_case(self):
        for typed, place in (("games", "games/Orlavane"), ("other/orlavane/", "other/Orlavane")):
            code = self.run_setup(self.first, "/FOLDER=" + windows_path(os.path.join(self.folder, typed)))
            self.assertEqual(code, w.DONE)
            self.expect(self.first, os.path.join(self.folder, place))

    def test_a_folder_with_other_things_in_it_is_refused(self):
        os.makedirs(self.place)
        note = os.path.join(self.place, "note.txt")
        open(note, "w").close()
        self.install(code=w.NO_SUCH_FOLDER)
        self.assertEqual(sorted(files(self.place)), ["note.txt"])
        self.assertEqual(self.links(), [])

    def test_a_path_that_is_none_is_refused(self):
        self.assertEqual(self.run_setup(self.first, "/FOLDER=games"), w.NO_SUCH_FOLDER)
        self.assertEqual(self.links(), [])

    def update(self, **variables):
        """As the game starts it, from the temporary folder and without arguments."""
        program = os.path.join(self.temp, UPDATE_NAME)
        shutil.copy(self.next, program)
        environment = clean_environment(self.home, DISPLAY=self.screen.display, **variables)
        return subprocess.run([WINE, program], env=environment, timeout=120, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL).returncode

    def test_an_update_finds_the_game_by_its_shortcuts(self):
        for kept in (w.MENU_LINK, w.DESKTOP_LINK):
            self.install()
            for link in self.links():
                if link != kept:
                    os.remove(link)
            os.makedirs(os.path.join(self.place, "music"))
            self.assertEqual(self.update(), w.DONE)
            os.rmdir(os.path.join(self.place, "music"))
            self.expect(self.next)
            self.assertEqual(self.links(), [kept])
            self.found_game().end()

    def test_the_game_that_asks_for_an_update_gets_it(self):
        self.install()
        usual = "/FOLDER=" + windows_path(os.path.dirname(w.USUAL_FOLDER))
        self.assertEqual(self.run_setup(self.first, usual), w.DONE)  # another one, to which the shortcuts lead
        self.assertEqual(self.update(ORLAVANE_FOLDER=windows_path(self.place) + "\\"), w.DONE)
        self.expect(self.next)
        self.expect(self.first, w.USUAL_FOLDER)
        self.found_game().end()

    def test_an_update_that_fails_brings_the_old_game_back(self):
        self.install()
        self.assertEqual(self.update(LD_PRELOAD=self.full_disk), w.NO_ROOM)
        self.expect(self.first)
        self.found_game().end()

    def test_started_from_the_game_s_folder_it_repairs(self):
        self.install()
        os.remove(os.path.join(self.place, "SDL2.dll"))
        self.assertEqual(self.run_setup(os.path.join(self.place, w.OWN_NAME), self.option), w.DONE)
        self.expect(self.first)


class Failures(SetupTest):
    def setUp(self):
        super().setUp()
        self.install()

    def test_a_full_disk(self):
        self.install(self.next, code=w.NO_ROOM, LD_PRELOAD=self.full_disk)
        self.expect(self.first)

    def test_a_disk_that_fills_up_meanwhile(self):
        before = resource.getrlimit(resource.RLIMIT_FSIZE)  # which the set-up program inherits
        resource.setrlimit(resource.RLIMIT_FSIZE, (1000000, before[1]))
        self.install(self.next, code=w.NO_ROOM)
        resource.setrlimit(resource.RLIMIT_FSIZE, before)
        self.expect(self.first)

    def test_a_folder_that_nobody_may_write_to(self):
        links = [os.path.getmtime(link) for link in self.links()]
        self.assertEqual(self.run_setup(self.next, r"/FOLDER=Z:\proc\1"), w.NOT_WRITTEN)
        with open(os.path.join(self.place, NEW), "w"):  # where it wants a folder
            self.install(self.next, code=w.NOT_WRITTEN)
        os.remove(os.path.join(self.place, NEW))
        self.expect(self.first)
        self.assertEqual([os.path.getmtime(link) for link in self.links()], links)

    def test_a_file_that_is_held_open(self):
        for name in ("SDL2.dll", "SDL2_ttf.dll"):
            let_go = w.hold(os.path.join(self.place, name))
            self.install(self.next, code=w.NOT_WRITTEN)
            let_go()
            self.expect(self.first)

    def test_a_file_that_is_held_for_a_moment(self):
        let_go = w.hold(os.path.join(self.place, "SDL2.dll"))
        setup = w.start_setup(self.screen, self.next, self.option)
        wait_until(lambda: os.path.exists(os.path.join(self.place, OLD, "Orlavane.exe")), "it does not begin")
        let_go()
        self.assertEqual(setup.wait(60), w.DONE)
        self.expect(self.next)

    def test_a_game_that_runs(self):
        with driver.Game(self.screen, program=os.path.join(self.place, "Orlavane.exe")):
            self.install(self.next, "/PATIENCE=1", code=w.GAME_RUNS)
            self.expect(self.first)
        self.install(self.next)
        self.expect(self.next)

    def start_once_more(self):
        """A run that ends as soon as it has looked after the game."""
        code = self.run_setup(self.next, "/FOLDER=nowhere", ORLAVANE_FOLDER=windows_path(self.place))
        self.assertEqual(code, w.NO_SUCH_FOLDER)

    def test_killed_in_the_middle(self):
        let_go = w.hold(os.path.join(self.place, "SDL2_ttf.dll"))
        setup = w.start_setup(self.screen, self.next, self.option)
        wait_until(lambda: os.path.exists(os.path.join(self.place, OLD, "SDL2.dll")), "it does not begin")
        setup.kill()
        setup.wait(60)
        let_go()
        self.assertFalse(os.path.exists(os.path.join(self.place, "Orlavane.exe")))
        self.start_once_more()
        self.expect(self.first)
        self.install(self.next)
        self.expect(self.next)

    def test_killed_at_any_step(self):
        """Each step renames one entry. The next run brings the old game back, or the new one after the last step."""
        whole = os.path.join(self.folder, "whole")
        shutil.move(self.place, whole)
        last_in = ENTRIES[1:] + ENTRIES[:1]
        package = self.next + ".game"
        steps = [(f"{entry}", f"{OLD}/{entry}") for entry in ENTRIES]
        steps += [(f"{NEW}/{entry}", entry) for entry in last_in]
        for done in range(len(steps) + 1):
            shutil.copytree(whole, self.place)
            shutil.copytree(package, os.path.join(self.place, NEW))
            shutil.copy(self.next, os.path.join(self.place, NEW, w.OWN_NAME))
            os.mkdir(os.path.join(self.place, OLD))
            for begin, end in steps[:done]:
                os.rename(os.path.join(self.place, begin), os.path.join(self.place, end))
            with self.subTest(done=done):
                self.start_once_more()
                self.expect(self.next if done == len(steps) else self.first)
            shutil.rmtree(self.place)

    def test_killed_while_it_unpacks(self):
        os.mkdir(os.path.join(self.place, NEW))
        open(os.path.join(self.place, NEW, "Orlavane.exe"), "w").close()
        self.start_once_more()
        self.expect(self.first)

    def test_two_at_once(self):
        with driver.Screen(window_manager=True) as screen, Setup(screen, self.next, home=self.home) as setup:
            setup.wait_for("Welcome")
            setup.xdotool("windowminimize", setup.window)
            wait_until(lambda: not setup.find(), "it stays on the screen")
            self.install(self.next, code=w.ANOTHER_RUNS)
            second = subprocess.run([WINE, self.next], env=setup.environment, timeout=60, stdout=subprocess.DEVNULL,
                                    stderr=subprocess.DEVNULL)
            self.assertEqual(second.returncode, w.ANOTHER_RUNS)
            wait_until(setup.find, "it is not shown again", 20)
            setup.click(w.CANCEL)
            self.assertEqual(setup.process.wait(60), w.GONE)
        self.expect(self.first)

    def test_a_damaged_one(self):
        damaged = os.path.join(self.folder, "damaged.exe")
        data = bytearray(self.wanted[self.next][w.OWN_NAME])
        data[len(data) // 2] ^= 1
        with open(damaged, "wb") as file:
            file.write(data)
        self.assertEqual(self.run_setup(damaged, self.option), w.DAMAGED)
        self.expect(self.first)

    def test_a_failure_is_told_and_back_leads_on(self):
        with Eyes(self.screen) as eyes, Setup(self.screen, self.next, home=self.home) as setup:
            setup.to_location()
            setup.click(w.FOLDER)
            setup.type(r"Z:\proc\1")
            setup.click(w.NEXT)
            eyes.wait_for_words(r"Could not create the folder:\nZ:\proc\1\Orlavane")
            setup.click(w.BACK)
            setup.wait_for("Location")
            setup.click(w.FOLDER)
            setup.type(windows_path(os.path.join(self.folder, "games")))
            setup.click(w.DESKTOP_BOX)
            for link in self.links():
                os.remove(link)
            setup.click(w.NEXT)
            setup.wait_for("Finish")
            setup.click(w.START_BOX)
            setup.click(w.NEXT)
            self.assertEqual(setup.process.wait(60), w.DONE)
        self.expect(self.next, os.path.join(self.folder, "games/Orlavane"))
        self.assertEqual(self.links(), [w.MENU_LINK])

    def test_a_disk_that_fills_up_is_told_and_back_leads_on(self):
        """The temporary folder's, too. It says that it has room, and what stands on it leaves none: first for the
        files, and then for the copy of the set-up program, which comes last."""
        whole = sum(len(data) + 4096 for data in self.wanted[self.next].values() if data) // 1024
        disk = self.small_disk(3 * whole)
        self.use_temp(os.path.join(disk, "temp"))
        ballast = os.path.join(disk, "ballast")
        with Eyes(self.screen) as eyes, \
                Setup(self.screen, self.next, home=self.home, LD_PRELOAD=self.roomy_disk) as setup:
            setup.to_location()
            setup.click(w.FOLDER)
            setup.type(windows_path(disk))
            for missing, name in ((whole // 2, "SDL2.dll"), (100, w.OWN_NAME)):
                filled = shutil.disk_usage(disk).free // 1024 - (whole - missing)
                subprocess.run(["fallocate", "-l", f"{filled}k", ballast], check=True)
                setup.click(w.NEXT)
                eyes.wait_for_words(f"The disk is full or not writable while copying {name}.")
                self.assertEqual(sorted(os.listdir(disk)), ["ballast", "temp"])
                os.remove(ballast)
                setup.click(w.BACK)
                setup.wait_for("Location")
            setup.click(w.NEXT)
            setup.wait_for("Finish")
            setup.click(w.START_BOX)
            setup.click(w.NEXT)
            self.assertEqual(setup.process.wait(60), w.DONE)
        self.expect(self.next, os.path.join(disk, "Orlavane"))


if __name__ == "__main__":
    unittest.main()
