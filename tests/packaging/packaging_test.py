"""The icons are what the program paints today, and the entries beside them lead to them; both are installed."""
import configparser
import glob
import json
import os
import re
import struct
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree
import zlib

SOURCE = os.environ["SOURCE"]
PACKAGING = os.path.join(SOURCE, "packaging")
DESKTOP = os.path.join(PACKAGING, "orlavane.desktop")
METAINFO, = glob.glob(os.path.join(PACKAGING, "*.metainfo.xml"))
MAKE_ICONS = os.environ["MAKE_ICONS"]
SIZES = [16, 32, 48, 64, 128, 256]
PICTURES = [f"orlavane-{size}.png" for size in SIZES]


def contents(*path):
    with open(os.path.join(*path), "rb") as file:
        return file.read()


def icon(name):
    return contents(PACKAGING, "icons", name)


def desktop_entry():
    parser = configparser.ConfigParser(interpolation=None)
    parser.optionxform = str
    parser.read(DESKTOP, encoding="utf-8")
    return parser["Desktop Entry"]


def metainfo():
    return xml.etree.ElementTree.parse(METAINFO).getroot()


def table_rows(*rows):
    """The codes of the languages in the order of the string table, and then its rows."""
    table = contents(SOURCE, "src", "ui", "words", "string_table.cpp").decode()
    texts = re.findall(r'/\* (\w\w) \*/ ("(?:[^"\\]|\\.)*"),', table)
    languages = [code for code, _ in texts[:14]]
    return [languages] + [[json.loads(text) for _, text in texts[14 * row:14 * row + 14]] for row in rows]


def make_icons(*arguments):
    return subprocess.run([MAKE_ICONS, *arguments], capture_output=True, text=True, timeout=60)


def foretold(kind, left, above, corner):
    if kind == 4:
        return min((left, above, corner), key=lambda value: abs(left + above - corner - value))
    return [0, left, above, (left + above) // 2][kind]


def decode_png(data):
    """Size and rows of a picture of 8-bit red, green, blue and alpha; checks every sum."""
    assert data[:8] == b"\x89PNG\r\n\x1a\n"
    chunks = []
    position = 8
    while position < len(data):
        length, = struct.unpack_from(">I", data, position)
        body = data[position + 4:position + 8 + length]
        assert struct.unpack_from(">I", data, position + 8 + length)[0] == zlib.crc32(body)
        chunks.append((body[:4], body[4:]))
        position += 12 + length
    assert [name for name, _ in chunks] == [b"IHDR", b"IDAT", b"IEND"]
    width, height, *format = struct.unpack(">IIBBBBB", chunks[0][1])
    assert format == [8, 6, 0, 0, 0]
    filtered = zlib.decompress(chunks[1][1])
    stride = 4 * width
    assert len(filtered) == (1 + stride) * height
    rows = [bytes(4 + stride)]  # each with a pixel of nothing to its left, and one row of nothing above
    for start in range(0, len(filtered), 1 + stride):
        row = bytearray(4)
        for i in range(stride):
            guess = foretold(filtered[start], row[i], rows[-1][4 + i], rows[-1][i])
            row.append((filtered[start + 1 + i] + guess) % 256)
        rows.append(bytes(row))
    return (width, height), [row[4:] for row in rows[1:]]


class Icons(unittest.TestCase):
    def test_the_files_kept_are_what_the_tool_makes_now(self):
        with tempfile.TemporaryDirectory() as folder:
            self.assertEqual(make_icons(folder).returncode, 0)
            self.assertEqual(sorted(os.listdir(folder)), sorted(PICTURES + ["orlavane.ico"]))
            self.assertEqual(sorted(os.listdir(folder)), sorted(os.listdir(os.path.join(PACKAGING, "icons"))))
            for name in PICTURES:  # pixel by pixel: another zlib may make other bytes of them
                self.assertEqual(decode_png(contents(folder, name)), decode_png(icon(name)),
                                 f"{name}: run make-icons packaging/icons")

    def test_each_picture_is_the_logo_at_its_size(self):
        for size, name in zip(SIZES, PICTURES):
            dimensions, rows = decode_png(icon(name))
            self.assertEqual(dimensions, (size, size))
            self.assertEqual(rows[0][:4], bytes(4), "the corner is clear")
        self.assertEqual(rows[128][512:516], bytes([255, 240, 189, 255]), "a dash of the road in the middle")
        self.assertEqual(rows[16][64:68], bytes([16, 20, 44, 255]), "the sky just inside the corner")

    def test_no_picture_takes_more_room_than_it_must(self):
        self.assertLess(len(icon("orlavane-256.png")), 256 * 256 * 4 / 6)
        self.assertLess(len(icon("orlavane.ico")), 64 * 1024)

    def test_the_windows_icon_holds_every_picture(self):
        data = icon("orlavane.ico")
        self.assertEqual(struct.unpack_from("<HHH", data), (0, 1, len(SIZES)))
        end = 6 + 16 * len(SIZES)
        for i, size in enumerate(SIZES):
            *head, length, offset = struct.unpack_from("<BBBBHHII", data, 6 + 16 * i)
            self.assertEqual(head, [size % 256, size % 256, 0, 0, 1, 32])
            self.assertEqual(offset, end)
            self.assertEqual(data[offset:offset + length], icon(PICTURES[i]))
            end += length
        self.assertEqual(len(data), end)

    def test_the_tool_says_what_it_wants_and_what_it_cannot_write(self):
        self.assertEqual(make_icons().returncode, 2)
        self.assertIn("usage: make-icons FOLDER", make_icons("a", "b").stderr)
        refused = make_icons("/nowhere")
        self.assertEqual(refused.returncode, 1)
        self.assertIn("cannot write /nowhere/orlavane-16.png", refused.stderr)
        with tempfile.TemporaryDirectory() as folder:
            os.symlink("/dev/full", os.path.join(folder, "orlavane-16.png"))
            full = make_icons(folder)
            self.assertEqual(full.returncode, 1)
            self.assertIn("orlavane-16.png", full.stderr)


class Entries(unittest.TestCase):
    def test_the_desktop_entry_starts_the_game_under_its_icon(self):
        entry = desktop_entry()
        self.assertEqual((entry["Type"], entry["Name"], entry["Exec"]), ("Application", "Orlavane", "orlavane"))
        self.assertEqual(entry["Icon"] + "-16.png", PICTURES[0])
        self.assertEqual(entry["Categories"], "Game;Simulation;")
        checked = subprocess.run(["desktop-file-validate", DESKTOP], capture_output=True, text=True)
        self.assertEqual((checked.returncode, checked.stdout + checked.stderr), (0, ""))

    def test_the_metainfo_is_of_the_desktop_entry(self):
        root = metainfo()
        self.assertEqual((root.tag, root.get("type")), ("component", "desktop-application"))
        self.assertEqual(root.findtext("id") + ".metainfo.xml", os.path.basename(METAINFO))
        self.assertEqual(root.findtext("launchable"), os.path.basename(DESKTOP))
        self.assertEqual(root.findtext("provides/binary"), desktop_entry()["Exec"])
        self.assertEqual(root.findtext("project_license"), contents(SOURCE, "LICENSE").decode().split()[0])
        for shot in root.findall("screenshots/screenshot"):
            self.assertTrue(shot.findtext("caption"))
            image = shot.find("image")
            picture = contents(SOURCE, "docs", "pictures", os.path.basename(image.text))
            self.assertEqual(struct.unpack_from(">II", picture, 16), (int(image.get("width")), int(image.get("height"))))
        for needed in ["url", "content_rating", "screenshots/screenshot/image"]:
            self.assertIsNotNone(root.find(needed), needed)
        checked = subprocess.run(["appstreamcli", "validate", "--strict", "--no-net", METAINFO],
                                 capture_output=True, text=True)
        self.assertEqual(checked.returncode, 0, checked.stdout + checked.stderr)

    def test_both_are_in_the_words_of_the_game(self):
        languages, names, summaries = table_rows(0, 1)
        self.assertEqual(len(languages), 14)
        self.assertEqual(names, ["Orlavane"] * 14)  # one for all, so that neither file repeats it
        entry, root = desktop_entry(), metainfo()
        self.assertEqual((entry["Name"], root.findtext("name")), ("Orlavane", "Orlavane"))
        comments = {"en" if key == "Comment" else key[8:-1]: text
                    for key, text in entry.items() if key.startswith("Comment")}
        self.assertEqual(comments, dict(zip(languages, summaries)))
        language = "{http://www.w3.org/XML/1998/namespace}lang"
        self.assertEqual([(summary.get(language, "en"), summary.text) for summary in root.findall("summary")],
                         list(zip(languages, summaries)))

    def test_the_newest_release_is_the_version_of_the_project(self):
        version = os.environ["VERSION"]
        newest = metainfo().find("releases/release")
        self.assertEqual(newest.get("version"), version)
        headings = re.findall(r"(?m)^## (\S+) \((\S+)\)$", contents(SOURCE, "CHANGELOG.md").decode())
        self.assertEqual(headings[0], (version, newest.get("date")))
        self.assertEqual(json.loads(contents(SOURCE, "vcpkg.json"))["version-string"], version)

    def test_every_option_of_the_build_is_told(self):
        files = ["CMakeLists.txt", *(f"cmake/{name}" for name in os.listdir(os.path.join(SOURCE, "cmake")))]
        options = {option for name in files for option in re.findall(
            r"(?m)^ *(?:option\(|set\()(ORLAVANE_\w+)(?: .*CACHE (?:STRING|PATH)| \")", contents(SOURCE, name).decode())}
        self.assertIn("ORLAVANE_SANITIZE", options)
        told = re.findall(r"(?m)^\| `(ORLAVANE_\w+)`", contents(SOURCE, "docs", "building.md").decode())
        self.assertEqual(sorted(told), sorted(options))

    def test_the_man_pages_know_every_command_and_every_key(self):
        sim = subprocess.run([os.environ["ORLAVANE_SIM"], "--help"], capture_output=True, text=True, check=True)
        page = contents(PACKAGING, "orlavane-sim.6").decode()
        described = re.findall(r"(?m)^\.T[PQ]\n\.BI? (.+)$", page)
        told = [re.split("  +", line)[0] for line in re.findall(r"(?m)^  (\S.*)$", sim.stdout)]
        self.assertEqual([line.replace('"', "").replace("  ", " ").replace("\\-", "-") for line in described], told)
        readme = contents(SOURCE, "README.md").decode().partition("## Keys and mouse")[2]
        keys = re.findall(r"(?m)^\| ([^|]+) \| [^|]+ \|$", readme)
        self.assertGreater(len(keys), 15)
        game = contents(PACKAGING, "orlavane.6").decode()
        for line in keys[1:]:
            for key in re.findall(r"\b([A-Z]|F\d+|Esc|Tab|Space)\b", line):
                self.assertRegex(game, rf"(?m)^\.B .*\b{key}\b", line)


class Installed(unittest.TestCase):
    """What cmake --install makes of a build."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = os.path.join(folder.name, "usr")
        subprocess.run(["cmake", "--install", os.environ["BUILD"], "--prefix", self.root], check=True,
                       stdout=subprocess.DEVNULL, timeout=60)

    def find(self, pattern):
        found = glob.glob(os.path.join(self.root, pattern), recursive=True)
        self.assertEqual(len(found), 1, pattern)
        return found[0]

    def test_every_file_has_its_place(self):
        icons = [f"share/icons/hicolor/{size}x{size}/apps/orlavane.png" for size in SIZES]
        places = ["bin/orlavane", "bin/orlavane-sim", "lib/**/games/orlavane/Orlavane", *icons,
                  f"share/applications/{os.path.basename(DESKTOP)}", f"share/metainfo/{os.path.basename(METAINFO)}",
                  "share/man/man6/orlavane.6", "share/man/man6/orlavane-sim.6",
                  "share/doc/**/LICENSE", "share/doc/**/LICENSE.minimp3", "share/doc/**/CHANGELOG.md"]
        expected = {self.find(place) for place in places}
        there = {os.path.join(folder, name) for folder, _, names in os.walk(self.root) for name in names}
        self.assertEqual(there, expected)
        for size, place in zip(SIZES, icons):
            self.assertEqual(contents(self.find(place)), icon(f"orlavane-{size}.png"))

    def test_the_command_leads_to_a_program_that_does_not_remove_itself(self):
        command = self.find("bin/orlavane")
        self.assertFalse(os.path.isabs(os.readlink(command)))
        program = os.path.realpath(command)
        self.assertEqual(program, os.path.realpath(self.find("lib/**/Orlavane")))
        self.assertTrue(os.access(program, os.X_OK))
        self.assertNotEqual(os.path.basename(os.path.dirname(program)), "Orlavane")  # the one that it would remove
        picture = os.path.join(self.root, "picture.bmp")
        unattended = dict(os.environ, HOME=self.root, SDL_VIDEODRIVER="offscreen", SDL_AUDIODRIVER="dummy",
                          OV_SHOT=picture, OV_FRAMES="1", ASAN_OPTIONS="detect_leaks=0")  # drivers leak
        subprocess.run([command], check=True, timeout=200, capture_output=True, env=unattended)
        self.assertTrue(os.path.exists(picture))


if __name__ == "__main__":
    unittest.main()
