"""How the program starts, and how it says that it cannot."""
import os
import resource
import subprocess
import tempfile
import time
import unittest

from driver import PATIENCE, PLAIN, PROGRAM, Game, Screen, clean_environment, read_bmp, run_to_end, wait_until
from mouse import GOLD, OPTIONS, Mouse

NO_MUSIC = "No music files found; playing without music\n"  # all that a healthy start has to say


class Start(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.home = self.folder.name
        self.shot = os.path.join(self.home, "shot.bmp")

    def tearDown(self):
        self.folder.cleanup()

    def be_plain(self):
        """Where the picture is of no account."""
        preferences = os.path.join(self.home, ".local/share/Orlavane/Orlavane")
        os.makedirs(preferences)
        with open(os.path.join(preferences, "settings.ini"), "w") as file:
            file.writelines(f"{key}={value}\n" for key, value in PLAIN.items())

    def test_music_that_does_not_fit_into_memory_is_no_music(self):
        room = 2100000000  # bytes, for all that the program has in memory
        with tempfile.TemporaryDirectory(dir=os.path.dirname(PROGRAM)) as folder:  # where a link to it can stand
            program = os.path.join(folder, "Orlavane")
            os.link(PROGRAM, program)
            with open(os.path.join(folder, "music1.mp3"), "wb") as track:
                track.truncate(room)  # takes no room on the disk
            result = subprocess.run(
                [program], env=clean_environment(self.home, SDL_VIDEODRIVER="offscreen", OV_SHOT=self.shot, OV_FRAMES="1"),
                preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (room, room)), stderr=subprocess.PIPE,
                timeout=PATIENCE)
        self.assertEqual((result.returncode, result.stderr.decode()), (0, NO_MUSIC))

    def test_without_a_video_driver_sdl_cannot_start(self):
        code, errors = run_to_end(self.home, SDL_VIDEODRIVER="nonsense")
        self.assertEqual(code, 1)
        self.assertRegex(errors, r"^SDL could not start: .+\n$")

    def test_without_a_display_the_game_says_so(self):
        for unset in ({}, {"SDL_VIDEODRIVER": ""}):
            code, errors = run_to_end(self.home, **unset)
            self.assertEqual(code, 1)
            self.assertRegex(errors, r"(?m)^SDL could not start: .+$")  # other lines are the video drivers' own

    def test_a_driver_without_opengl_gives_no_window(self):
        code, errors = run_to_end(self.home, SDL_VIDEODRIVER="dummy")
        self.assertEqual(code, 1)
        self.assertRegex(errors, r"^Could not create a window: .+\n$")

    def test_an_old_driver_gives_no_context(self):
        code, errors = run_to_end(self.home, SDL_VIDEODRIVER="offscreen", MESA_GL_VERSION_OVERRIDE="2.1")
        self.assertEqual(code, 1)
        self.assertRegex(errors, r"^OpenGL 3\.3 is not available on this computer\.\n\n.+\n$")

    def test_a_driver_without_multisampling_still_starts_the_game(self):
        self.be_plain()
        code, errors = run_to_end(self.home, SDL_VIDEODRIVER="offscreen", GALLIUM_DRIVER="softpipe",
                                  OV_SHOT=self.shot, OV_FRAMES="1")
        self.assertEqual((code, errors), (0, NO_MUSIC))
        self.assertEqual(read_bmp(self.shot).width, 1280)

    def test_a_run_writes_its_picture_and_ends_with_zero(self):
        code, errors = run_to_end(self.home, SDL_VIDEODRIVER="offscreen", OV_SHOT=self.shot, OV_FRAMES="2")
        self.assertEqual((code, errors), (0, NO_MUSIC))
        picture = read_bmp(self.shot)
        self.assertEqual((picture.width, picture.height), (1600, 900))
        red, green, blue = picture.pixel(200, 450)  # land under the title's evening sun, beside the launcher
        self.assertGreater(green, blue)
        self.assertEqual(picture.pixel(600, 531), (204, 148, 51))  # the launcher's button that opens the game

    def test_until_the_mouse_moves_the_view_stays_on_the_city(self):
        """On its crossing: the land around it is as green as it is different in every run."""
        self.be_plain()
        for frames in ("2", "60"):
            code, errors = run_to_end(self.home, timeout=PATIENCE, SDL_VIDEODRIVER="offscreen", OV_DEMO="1",
                                      OV_STATE="focus=48:48,hour=12,dist=60", OV_SHOT=self.shot, OV_FRAMES=frames)
            self.assertEqual((code, errors), (0, NO_MUSIC))
            picture = read_bmp(self.shot)
            middle = [picture.pixel(x, y) for y in range(320, 400, 4) for x in range(600, 680, 4)]
            grass = sum(green > max(red, blue) + 20 for red, green, blue in middle)
            self.assertLess(grass, 0.3 * len(middle), frames)

    def test_a_picture_that_cannot_be_written_is_silent(self):
        code, errors = run_to_end(self.home, SDL_VIDEODRIVER="offscreen", OV_SHOT="/nonexistent/x.bmp", OV_FRAMES="1")
        self.assertEqual((code, errors), (0, NO_MUSIC))

    def test_without_a_path_the_run_ends_without_a_picture(self):
        self.be_plain()
        code, errors = run_to_end(self.home, SDL_VIDEODRIVER="offscreen", OV_SHOT="", OV_FRAMES="2")
        self.assertEqual((code, errors), (0, NO_MUSIC))

    def test_a_view_is_held_to_the_map_on_a_screen_that_moves_no_camera(self):
        self.be_plain()

        def seen(focus):
            run_to_end(self.home, SDL_VIDEODRIVER="offscreen", OV_SHOT=self.shot, OV_FRAMES="1",
                       OV_STATE=f"screen=end,dist=100,focus={focus}")
            return read_bmp(self.shot)

        edge = seen("0:48")
        self.assertLess(edge.difference(seen("30:48")), 0.1)  # still beyond what a window of 16 to 9 may look at
        self.assertGreater(edge.difference(seen("36:48")), 1.0)

    def test_odd_variables_do_no_harm(self):
        self.be_plain()
        code, errors = run_to_end(self.home, SDL_VIDEODRIVER="offscreen", OV_SHOT=self.shot, OV_FRAMES="1",
                                  OV_DEMO="\x01\xff", OV_SETTINGS="?",
                                  OV_STATE="focus=-99999:99999,hour=-3e38,dist=1e38,overlay=,calday=2147483647," + "x" * 100000)
        self.assertEqual((code, errors), (0, NO_MUSIC))
        self.assertTrue(os.path.exists(self.shot))

    def test_wild_scenes_are_drawn(self):
        self.be_plain()
        for state in ("focus=-2147483648:2147483647", "hour=1e30", "dist=-5", "calday=2147483647", "dist=0"):
            code, errors = run_to_end(self.home, SDL_VIDEODRIVER="offscreen", OV_DEMO="1", OV_SHOT=self.shot,
                                      OV_FRAMES="2", OV_STATE=state)
            self.assertEqual((code, errors), (0, NO_MUSIC), state)

    def test_an_unwritable_preference_folder_falls_back_to_the_working_folder(self):
        blocked = os.path.join(self.home, "file")
        open(blocked, "w").close()  # a file where a folder should be
        settings = os.path.join(self.home, "settings.ini")
        with open(settings, "w") as file:
            file.write("resolution=0\nquality=0\n")
        code, errors = run_to_end(self.home, SDL_VIDEODRIVER="offscreen", XDG_DATA_HOME=blocked, folder=self.home,
                                  OV_SHOT=self.shot, OV_FRAMES="1", OV_DEMO="1", OV_STATE="tutorial=7")  # ends the tour
        self.assertEqual((code, errors), (0, NO_MUSIC))
        self.assertEqual(read_bmp(self.shot).width, 1280)
        with open(settings) as file:
            self.assertIn("tutorialDone=1\n", file)

    def test_a_failed_start_shows_a_message_box_and_ends_with_one(self):
        with Screen() as screen:
            environment = clean_environment(self.home, DISPLAY=screen.display, MESA_GL_VERSION_OVERRIDE="2.1")
            process = subprocess.Popen([PROGRAM], env=environment, stderr=subprocess.PIPE)
            box = self.wait_for_box(environment)
            deadline = time.monotonic() + PATIENCE
            while process.poll() is None:
                self.assertLess(time.monotonic(), deadline)
                subprocess.run(["xdotool", "windowfocus", box, "key", "Return"], env=environment,
                               stderr=subprocess.DEVNULL)
                time.sleep(0.2)
            self.assertEqual(process.wait(), 1)
            self.assertIn(b"OpenGL 3.3 is not available", process.stderr.read())
            process.stderr.close()

    def wait_for_box(self, environment):
        """The window of the program that is not as wide as its own."""
        deadline = time.monotonic() + PATIENCE
        while time.monotonic() < deadline:
            tree = subprocess.run(["xwininfo", "-root", "-tree", "-int"], env=environment, stdout=subprocess.PIPE)
            for line in tree.stdout.decode().splitlines():
                if '"Orlavane"' in line and " 1600x900+" not in line:
                    return line.split()[0]
            time.sleep(0.1)
        self.fail("no message box came up")

    def test_the_window_has_the_size_of_the_settings(self):
        with Screen() as screen, Game(screen, home=self.home, settings=dict(resolution=2)) as game:
            self.assertEqual(game.geometry(), (1920, 1080))

    def test_f11_fills_the_screen_and_is_saved_at_once(self):
        with Screen(window_manager=True) as screen, Game(screen, settings=PLAIN, OV_SETTINGS="1") as game:
            def written(line):
                with open(game.settings_path) as file:
                    return line + "\n" in file

            game.press("F11")
            wait_until(lambda: game.geometry() == (1920, 1080), "the screen is not filled")
            self.assertTrue(written("fullscreen=1"))
            mouse = Mouse(game)
            mouse.wait_for(OPTIONS["back"], GOLD)
            mouse.click(OPTIONS["resolution"])  # of the window that comes back
            wait_until(lambda: written("resolution=1"), "the click is not heard")
            game.frames(3)
            self.assertEqual(game.geometry(), (1920, 1080))
            game.press("F11")
            wait_until(lambda: game.geometry() == (1600, 900), "the window does not come back")
            self.assertTrue(written("fullscreen=0"))


if __name__ == "__main__":
    unittest.main()
