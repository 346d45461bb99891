"""Films of a few small frames, of a city of a few lines: what they show, and what becomes of those that fail."""
import glob
import hashlib
import os
import resource
import signal
import struct
import subprocess
import tempfile
import unittest
import zlib

FILM = os.environ["ORLAVANE_FILM"]

# Dry land, and a street on it and two days later one beside it.
LAND = "new 17\ntick 3\n"
TOWN = "new 17\nline 45 48 55 48 street\ntick 2\nline 45 50 55 50 street\ntick 2\n"
STILL = ["--state", "focus=50:49,dist=120,hour=9", "--linger", "0"]


def unfiltered(data, width, height, channels):
    """The rows of a PNG picture: each byte stands there as its difference from a guess."""
    stride = width * channels
    above = bytes(stride)
    rows = []
    for y in range(height):
        start = y * (stride + 1)
        kind, row = data[start], bytearray(data[start + 1:start + 1 + stride])
        for i in range(stride):
            left, corner = (row[i - channels], above[i - channels]) if i >= channels else (0, 0)
            nearest = min((left, above[i], corner), key=lambda guess: abs(left + above[i] - corner - guess))
            row[i] = (row[i] + (0, left, above[i], (left + above[i]) // 2, nearest)[kind]) % 256
        rows.append(bytes(row))
        above = row
    return rows


def decode_png(path):
    with open(path, "rb") as file:
        data = file.read()
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    width, height, depth, colour = struct.unpack_from(">IIBB", data, 16)
    assert (depth, colour) == (8, 2)
    length, = struct.unpack_from(">I", data, 33)
    return (width, height), unfiltered(zlib.decompress(data[41:41 + length]), width, height, 3)


def brightness(path):
    _, rows = decode_png(path)
    return [sum(sum(row[channel::3]) for row in rows) / (len(rows) * len(rows[0]) / 3) for channel in range(3)]


def contents(path):
    with open(path, "rb") as file:
        return file.read()


def digests(paths):
    """What tells frames apart, and is short where they differ."""
    return [hashlib.sha256(contents(path)).hexdigest()[:16] for path in paths]


def no_room():
    """From here on a file of more than a kilobyte meets a full disk."""
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (1024, 1024))


class FilmCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, text):
        with open(self.path(name), "w") as file:
            file.write(text)
        return self.path(name)

    def film(self, script, out, *options, size="96x64", **more):
        """Runs the tool on the text of a script."""
        return subprocess.run([FILM, "--size", size, *options, "-", self.path(out)], input=script,
                              capture_output=True, text=True, timeout=120, **more)

    def frames(self, script, *options, name="town", **more):
        """The paths of a film's frames."""
        run = self.film(script, name + ".png", *options, **more)
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        return sorted(glob.glob(self.path(name + "-*.png")))

    def assert_nothing_but(self, *names):
        self.assertEqual(sorted(os.listdir(self.folder)), sorted(names))


class Frames(FilmCase):
    def test_the_same_script_gives_the_same_frames(self):
        shore = ("new 115\nline 36 34 56 34 street\ntick 3\nzonerect 36 36 48 35 residential\n"
                 "line 49 36 49 26 street\ntick 6\n")
        first, second = (digests(self.frames(shore, "--linger", "0.4", name=name)) for name in "ab")
        self.assertEqual(len(first), 20)
        self.assertEqual(first, second)
        self.assertEqual(len(set(first)), 20, "light, camera, cars and water move")

    def test_the_number_of_frames_is_told_before_the_first_is_drawn(self):
        run = self.film(TOWN, "town.png", "--every", "2", "--fps", "4", "--linger", "0.5", size="40x30")
        out = self.path("town.png")
        self.assertTrue(run.stdout.startswith(f"{out}: 5 frames of 40x30, 1.2 seconds\n"), run.stdout)
        self.assertIn(f"{out}: 5 frames in ", run.stdout.splitlines()[-1])
        self.assert_nothing_but(*(f"town-0000{number}.png" for number in range(1, 6)))
        self.assertEqual(decode_png(self.path("town-00001.png"))[0], (40, 30))

    def test_a_frame_shows_what_is_built_before_the_next_day_begins(self):
        pictures = digests(self.frames(TOWN, *STILL))
        self.assertEqual(len(pictures), 5)
        bare, = digests(self.frames("new 17\n", *STILL, name="bare"))
        first, = digests(self.frames(TOWN[:TOWN.index("tick")], *STILL, name="first"))
        second, = digests(self.frames(TOWN.replace("tick", "tick 0 #"), *STILL, name="second"))
        self.assertNotEqual(first, bare)
        self.assertEqual(pictures[:3], [first, first, second], "without traffic in so short a time")

    def test_what_is_far_away_stands_at_the_top(self):
        _, bare = decode_png(self.frames("new 17\n", *STILL, name="bare")[0])
        _, town = decode_png(self.frames("new 17\nline 46 42 54 42 street\n", *STILL)[0])
        changed = [y for y, (a, b) in enumerate(zip(bare, town)) if a != b]
        self.assertGreater(len(changed), 3)
        self.assertLess(max(changed), 32)

    def test_a_film_lingers_on_the_last_day(self):
        script = "new 17\ntick 3\nline 45 48 55 48 street\n"
        pictures = digests(self.frames(script, *STILL, "--linger", "1", "--fps", "2", "--every", "2"))
        self.assertEqual(len(pictures), 4)
        self.assertEqual(pictures[0], pictures[1])
        self.assertNotEqual(pictures[1], pictures[2], "day 3 is no frame's, but the end is")

    def test_hours_are_held_or_run(self):
        held = [brightness(path) for path in self.frames(LAND, *STILL, "--hour", "12", name="held")]
        run = [brightness(path) for path in self.frames(LAND, *STILL, "--hour", "12:24", name="run")]
        self.assertEqual(held[0], run[0])
        self.assertEqual(held[0], held[2])
        self.assertGreater(sum(run[0]), sum(run[1]))
        self.assertGreater(sum(run[1]), 1.2 * sum(run[2]))

    def test_seasons_are_held_or_run(self):
        spring, summer, autumn, winter = [
            brightness(path) for path in self.frames(LAND, *STILL, "--calday", "10:290")]
        self.assertEqual(len({tuple(season) for season in (spring, summer, autumn, winter)}), 4)
        self.assertGreater(winter[2], spring[2] + 20, "snow is blue and red as well")
        held = brightness(self.frames(LAND, *STILL, "--calday", "290", name="held")[0])
        self.assertEqual(held, winter)

    def test_the_camera_stands_under_a_state_and_goes_round_without(self):
        here = ["--state", "focus=50:49,dist=120"]
        for options, moves in ((here, False), ([*here, "--orbit", "90"], True), ([], True), (["--orbit", "0"], False)):
            a, b = digests(self.frames("new 17\nline 45 48 55 48 street\ntick 1\n", "--hour", "9", "--linger", "0",
                                       *options))
            self.assertEqual(a != b, moves, options)

    def test_the_camera_looks_at_the_city_from_the_first_frame_on(self):
        town = "new 17\ntick 1\nzonerect 50 40 70 59 residential\nline 49 39 71 39 street\n"
        far = self.frames(town, "--orbit", "0", "--linger", "0", "--hour", "9", name="far")
        there = self.frames(town, "--state", "focus=60:49,hour=9", "--linger", "0", name="there")
        elsewhere = self.frames(town, "--state", "focus=40:49,hour=9", "--linger", "0", name="elsewhere")
        self.assertEqual(digests(far[:1]), digests(there[:1]))
        self.assertNotEqual(digests(far[:1]), digests(elsewhere[:1]))

    def test_what_a_script_saves_does_not_depend_on_the_film(self):
        saves = []
        for hour in ("1", "13"):
            self.frames(f"{TOWN}save {self.path('city')}\n", "--hour", hour, "--calday", hour, "--linger", "0")
            saves += digests([self.path("city")])
        self.assertEqual(saves[0], saves[1])

    def test_a_film_of_a_save_that_the_script_makes_itself_is_the_same_the_second_time(self):
        script = f"new 17\nline 20 20 30 20 street\nsave {self.path('city')}\nnew 5\ntick 1\nload {self.path('city')}\n"
        first, second = (digests(self.frames(script, "--linger", "0", name=name)) for name in "ab")
        self.assertEqual(first, second)


class Refusals(FilmCase):
    def refused(self, run, words, status=2):
        self.assertEqual(run.returncode, status)
        self.assertIn(words, run.stderr)
        self.assert_nothing_but()

    def test_a_script_that_fails_makes_no_frame(self):
        for line, words in (("fly", "unknown command 'fly'"), ("tick -1", "'-1' cannot be DAYS"),
                            ("tick 99999999999", "'99999999999' cannot be DAYS"),
                            ("road 1", "wrong number of words"), ("x" * 70000, "the line is too long")):
            self.refused(self.film(TOWN + line + "\ntick 1\n", "town.png"), "stdin:6: " + words)

    def test_a_script_that_cannot_be_read_is_named(self):
        for script, words in (("missing.txt", "missing.txt: cannot be opened"), ("", ": cannot be ")):
            run = subprocess.run([FILM, self.path(script), self.path("town.png")], capture_output=True, text=True)
            self.refused(run, words)

    def test_a_film_of_too_many_frames_is_not_begun(self):
        self.refused(self.film("tick 2147483647\n", "town.png"), "more than 99999 frames; --every makes them fewer")

    def test_an_option_that_cannot_be_is_named(self):
        cannot_be = {"--size": ("0x5", "96", "9000x90", "x"), "--every": ("0", "1.5"), "--fps": ("x", "0", "1000"),
                     "--linger": ("-1", "nan"), "--hour": ("9:8", ":", "9:"), "--calday": ("-3", ""), "--orbit": ("inf",),
                     "--state": ("", "lang=de", "dist=120,,hour=9", "hour=nan", "hour=9,", "focus=4", "focus=4:5.5",
                                 "calday=1e3", "overlay=none", "dist", "=4")}
        for option, values in cannot_be.items():
            for value in values:
                self.refused(self.film("tick 1\n", "town.png", option, value), f"{option} cannot be {value}\n")
        self.refused(subprocess.run([FILM, "a.txt", "--size"], capture_output=True, text=True), "--size needs a value")
        self.refused(self.film("tick 1\n", "town.png", "--colour", "red"), "unknown option --colour")
        for arguments in ([], ["a.txt"], ["a.txt", "b.png", "c.png"]):
            self.refused(subprocess.run([FILM, *arguments], capture_output=True, text=True), "usage: orlavane-film")

    def test_help_names_every_option(self):
        run = subprocess.run([FILM, "--help"], capture_output=True, text=True)
        self.assertEqual(run.returncode, 0)
        for option in ("--size", "--every", "--fps", "--linger", "--state", "--orbit", "--hour", "--calday"):
            self.assertIn("\n  " + option + " ", run.stdout)

    def test_without_opengl_nothing_is_begun(self):
        run = self.film("tick 1\n", "town.png", env=dict(os.environ, SDL_VIDEODRIVER="dummy"))
        self.refused(run, "pictures of this size cannot be drawn here: OpenGL", status=1)

    def test_a_name_that_is_no_films_is_refused(self):
        self.refused(self.film(TOWN, "town.avi"), "a film's name ends with .png, .mp4, .webp or .gif")
        self.refused(self.film(TOWN, "nowhere/town.png"), "nowhere/town.png: cannot be written")
        self.refused(self.film(TOWN, "town.mp4", size="97x64"), "the height of an MP4 film are even")

    def test_without_ffmpeg_its_films_are_refused(self):
        self.refused(self.film(TOWN, "town.mp4", env=dict(os.environ, PATH="/nowhere")), "town.mp4: needs ffmpeg")

    def test_the_frames_of_a_longer_film_are_in_the_way(self):
        self.write("town-00004.png", "of another film")
        run = self.film("tick 2\n", "town.png", "--linger", "0")
        self.assertEqual(run.returncode, 2)
        self.assertIn("town-00004.png is a frame of a longer film", run.stderr)
        self.assert_nothing_but("town-00004.png")

    def test_a_full_disk_leaves_whole_frames_alone(self):
        self.write("town-00001.png", "of a film before")
        run = self.film("tick 2\n", "town.png", "--linger", "0", preexec_fn=no_room)
        self.assertEqual(run.returncode, 1)
        self.assertIn("town-00001.png: cannot be written; frames that stand: 0\n", run.stderr)
        self.assert_nothing_but("town-00001.png")
        self.assertEqual(contents(self.path("town-00001.png")), b"of a film before")

    def test_a_failure_in_the_middle_tells_how_many_frames_stand(self):
        os.mkdir(self.path("town-00003.png"))
        run = self.film("tick 5\n", "town.png", "--linger", "0")
        self.assertEqual(run.returncode, 1)
        self.assertIn("town-00003.png: cannot be written; frames that stand: 2\n", run.stderr)
        self.assert_nothing_but("town-00001.png", "town-00002.png", "town-00003.png")


class Encoder(FilmCase):
    """What stands in for ffmpeg here says what the tool does with one that fails."""

    def film_by(self, encoder, out="town.mp4"):
        with tempfile.TemporaryDirectory() as tools:
            path = os.path.join(tools, "ffmpeg")
            with open(path, "w") as file:
                file.write('#!/bin/sh\n[ "$1" = -version ] && exit 0\nfor last; do :; done\nout=${last#file:}\n' + encoder)
            os.chmod(path, 0o755)
            environment = dict(os.environ, PATH=tools + ":" + os.environ["PATH"])
            return self.film("tick 2\n", out, "--linger", "0", env=environment)

    def test_frames_come_as_raw_pixels_in_order(self):
        self.assertEqual(self.film_by('cat > "$out"').returncode, 0)
        raw = contents(self.path("town.mp4"))
        self.assert_nothing_but("town.mp4")
        for i, path in enumerate(self.frames("tick 2\n", "--linger", "0")):
            _, rows = decode_png(path)
            self.assertTrue(raw[i * 96 * 64 * 3:(i + 1) * 96 * 64 * 3] == b"".join(rows), path)
        self.assertEqual(len(raw), 3 * 96 * 64 * 3)

    def test_an_encoder_that_fails_leaves_the_film_before_it(self):
        for encoder in ("exit 3", 'echo part > "$out"; exit 3', 'cat > "$out"; exit 3', 'cat > "$out"; kill -9 $$',
                        "head -c 20000 > /dev/null; exit 0"):
            self.write("town.mp4", "the film before")
            run = self.film_by("echo no room >&2; " + encoder)
            self.assertEqual(run.returncode, 1, encoder)
            self.assertTrue(run.stderr.startswith("no room\n"), run.stderr)
            self.assertIn("town.mp4: ffmpeg could not make it and says why above; no film is written", run.stderr)
            self.assert_nothing_but("town.mp4")
            self.assertEqual(contents(self.path("town.mp4")), b"the film before")

    def test_odd_names_reach_the_encoder_as_they_are(self):
        for name in ("it's a $(town).mp4", '-y "town";.mp4', "a:b.gif"):
            self.assertEqual(self.film_by('cat > "$out"', name).returncode, 0)
            self.assert_nothing_but(name)
            os.remove(self.path(name))


class Encoded(FilmCase):
    """Films of the real ffmpeg."""

    def made(self, name):
        run = self.film(TOWN, name, "--linger", "0")
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        return contents(self.path(name))

    def probed(self, name, *entries):
        run = subprocess.run(["ffprobe", "-v", "error", "-count_frames", "-of", "csv=p=0", "-show_entries",
                              "stream=" + ",".join(entries), self.path(name)], capture_output=True, text=True, check=True)
        return run.stdout.strip().split(",")

    def test_the_same_script_gives_the_same_film(self):
        for end in ("mp4", "webp", "gif"):
            for name in "ab":
                self.made(f"{name}.{end}")
            first, second = digests([self.path("a." + end), self.path("b." + end)])
            self.assertEqual(first, second, end)

    def test_an_mp4_plays_where_players_expect_it(self):
        data = self.made("town.mp4")
        self.assertLess(data.index(b"moov"), data.index(b"mdat"), "it plays while it comes")
        self.assertEqual(self.probed("town.mp4", "codec_name", "width", "height", "pix_fmt", "color_space",
                                     "r_frame_rate", "nb_read_frames"),
                         ["h264", "96", "64", "yuv420p", "bt709", "25/1", "5"])

    def test_a_gif_has_every_frame_and_goes_round(self):
        data = self.made("town.gif")
        self.assertIn(b"NETSCAPE2.0\x03\x01\x00\x00", data)
        self.assertEqual(self.probed("town.gif", "width", "height", "nb_read_frames"), ["96", "64", "5"])

    def test_a_webp_has_every_frame_and_goes_round(self):
        data = self.made("town.webp")
        self.assertEqual((data[:4], data[8:16]), (b"RIFF", b"WEBPVP8X"))
        self.assertEqual(data.count(b"ANMF"), 5)
        loops, = struct.unpack_from("<H", data, data.index(b"ANIM") + 12)
        self.assertEqual(loops, 0)

    def test_the_colours_are_those_of_the_pictures(self):
        self.made("town.mp4")
        self.frames(TOWN, "--linger", "0")
        raw = subprocess.run(["ffmpeg", "-v", "error", "-i", self.path("town.mp4"), "-f", "rawvideo", "-pix_fmt", "rgb24", "-"],
                             capture_output=True, check=True).stdout
        last = raw[-96 * 64 * 3:]
        for channel, mean in enumerate(brightness(self.path("town-00005.png"))):
            self.assertAlmostEqual(sum(last[channel::3]) / (96 * 64), mean, delta=4, msg=f"channel {channel}")

    def test_a_full_disk_leaves_the_film_before_it(self):
        for name in ("town.mp4", "town.webp", "town.gif"):
            self.write(name, "the film before")
            run = self.film(TOWN, name, "--linger", "0", preexec_fn=no_room)
            self.assertEqual(run.returncode, 1, name)
            self.assertIn(name + ": ffmpeg could not make it and says why above", run.stderr)
            self.assertEqual(contents(self.path(name)), b"the film before")
        self.assert_nothing_but("town.gif", "town.mp4", "town.webp")


if __name__ == "__main__":
    unittest.main()
