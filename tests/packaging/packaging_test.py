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
