"""The icons are what the program paints today, and the entries beside them lead to them."""
import configparser
import os
import struct
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree
import zlib

PACKAGING = os.environ["PACKAGING"]
MAKE_ICONS = os.environ["MAKE_ICONS"]
SIZES = [16, 32, 48, 64, 128, 256]
PICTURES = [f"orlavane-{size}.png" for size in SIZES]


def contents(*path):
    with open(os.path.join(*path), "rb") as file:
        return file.read()


def icon(name):
    return contents(PACKAGING, "icons", name)


def make_icons(*arguments):
    return subprocess.run([MAKE_ICONS, *arguments], capture_output=True, text=True, timeout=60)


def decode_png(data):
    """Size and rows of a picture of 8-bit red, green, blue and alpha without filters; checks every sum."""
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
    rows = zlib.decompress(chunks[1][1])
    stride = 1 + 4 * width
    assert len(rows) == stride * height and not any(rows[::stride])
    return (width, height), [rows[y * stride + 1:(y + 1) * stride] for y in range(height)]


class Icons(unittest.TestCase):
    def test_the_files_kept_are_what_the_tool_makes_now(self):
        with tempfile.TemporaryDirectory() as folder:
            self.assertEqual(make_icons(folder).returncode, 0)
            self.assertEqual(sorted(os.listdir(folder)), sorted(PICTURES + ["orlavane.ico"]))
            self.assertEqual(sorted(os.listdir(folder)), sorted(os.listdir(os.path.join(PACKAGING, "icons"))))
            for name in os.listdir(folder):
                self.assertEqual(contents(folder, name), icon(name), f"{name}: run make-icons packaging/icons")

    def test_each_picture_is_the_logo_at_its_size(self):
        for size, name in zip(SIZES, PICTURES):
            dimensions, rows = decode_png(icon(name))
            self.assertEqual(dimensions, (size, size))
            self.assertEqual(rows[0][:4], bytes(4), "the corner is clear")
        self.assertEqual(rows[128][512:516], bytes([255, 240, 189, 255]), "a dash of the road in the middle")
        self.assertEqual(rows[16][64:68], bytes([16, 20, 44, 255]), "the sky just inside the corner")

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
        parser = configparser.ConfigParser(interpolation=None)
        parser.optionxform = str
        parser.read(os.path.join(PACKAGING, "orlavane.desktop"))
        entry = parser["Desktop Entry"]
        self.assertEqual((entry["Type"], entry["Name"], entry["Exec"]), ("Application", "Orlavane", "Orlavane"))
        self.assertEqual(entry["Icon"] + "-16.png", PICTURES[0])
        self.assertEqual(entry["Categories"], "Game;Simulation;")

    def test_the_metainfo_names_the_desktop_entry(self):
        root = xml.etree.ElementTree.parse(os.path.join(PACKAGING, "orlavane.metainfo.xml")).getroot()
        self.assertEqual((root.tag, root.get("type")), ("component", "desktop-application"))
        self.assertTrue(os.path.exists(os.path.join(PACKAGING, root.findtext("launchable"))))
        self.assertEqual(root.findtext("provides/binary"), "Orlavane")


if __name__ == "__main__":
    unittest.main()
