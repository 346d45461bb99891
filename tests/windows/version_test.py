"""What Windows shows of the program's version is the version of the project."""
import os
import struct
import unittest


class Version(unittest.TestCase):
    def setUp(self):
        self.version = os.environ["VERSION"]
        with open(os.environ["ORLAVANE"], "rb") as file:
            self.program = file.read()

    def test_as_text(self):
        for name in ["FileVersion", "ProductVersion"]:  # the text stands behind its name and the zeros between them
            start = self.program.index(f"{name}\0".encode("utf-16-le")) + 2 * len(name)
            shown = self.program[start:start + 40].decode("utf-16-le").lstrip("\0").split("\0")[0]
            self.assertEqual(shown, self.version, name)

    def test_as_numbers(self):
        major, minor, patch, build = ([int(number) for number in self.version.split(".")] + [0, 0, 0])[:4]
        record = self.program.index(struct.pack("<II", 0xFEEF04BD, 0x10000))
        for offset in [8, 16]:  # of the file and of the product
            self.assertEqual(struct.unpack_from("<HHHH", self.program, record + offset), (minor, major, build, patch))


if __name__ == "__main__":
    unittest.main()
