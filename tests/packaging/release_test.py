"""scripts/release puts together what the package scripts make, and scripts/sign signs. The package scripts themselves
are stand-ins here, which make in a moment what takes minutes."""
import hashlib
import json
import os
import shutil
import struct
import subprocess
import tarfile
import tempfile
import unittest

SOURCE = os.environ["SOURCE"]
MAKE_MANIFEST = os.environ["MAKE_MANIFEST"]
ADDRESS = "https://games.example/orlavane"
COMMIT_TIME = 1775131200  # 2026-04-02, noon in UTC

PRESETS = {"version": 3, "configurePresets": [
    {"name": name, "generator": "Ninja", "binaryDir": "${sourceDir}/build/${presetName}"}
    for name in ["release", "windows"]]}
CMAKE_LISTS = """cmake_minimum_required(VERSION 3.22)
project(Orlavane VERSION 1.2 LANGUAGES NONE)
"""


def tiny_program():
    """The least that is a program for Windows: headers, and no section."""
    dos = b"MZ" + bytes(58) + struct.pack("<I", 64)
    coff = struct.pack("<HHIIIHH", 0x8664, 0, 0, 0, 0, 240, 0x22)
    optional = struct.pack("<H", 0x20B) + bytes(30) + struct.pack("<II", 512, 512) + bytes(16) \
        + struct.pack("<II", 512, 512) + bytes(44) + struct.pack("<I", 16) + bytes(128)
    return (dos + b"PE\0\0" + coff + optional).ljust(512, b"\0")


# What a stand-in makes tells what it was given.
SAYS = ('echo "says $(git rev-parse HEAD) $SOURCE_DATE_EPOCH $CXXFLAGS $(find . -name rubbish -printf %f)" '
        '$(grep -h "^ORLAVANE" build/{}/CMakeCache.txt) | sed "s|$PWD|HERE|g"')
STAND_INS = {
    "setup": "echo set-up $1",
    "build": 'mkdir -p build/release/bin; ln -sf "$MAKE_MANIFEST" build/release/bin/make-manifest',
    "package-windows": SAYS.format("windows") + " >build/Orlavane-1.2-windows.zip; sha256sum $PWD/build/*.zip",
    "package-windows-setup": 'cp "$TINY_PROGRAM" build/Orlavane-setup-1.2.exe; echo much; echo $PWD/build/*.exe',
    "package-linux-setup": SAYS.format("release") + " >build/Orlavane-setup-1.2.run; echo build/*.run",
    "package-deb": "echo deb >build/orlavane_1.2_amd64.deb; echo build/orlavane_1.2_amd64.deb",
    "check-deb": '[ "$(cat "$1")" = deb ]',
}
FILES = ["Orlavane-1.2-windows.zip", "Orlavane-setup-1.2.exe", "Orlavane-setup-1.2.run", "manifest-linux.json",
         "manifest-windows.json", "orlavane-1.2.tar.gz", "orlavane_1.2_amd64.deb"]


def write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w" if isinstance(text, str) else "wb") as file:
        file.write(text)


def read(*path):
    with open(os.path.join(*path), "rb") as file:
        return file.read()


class Release(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.temporary.cleanup)
        cls.folder = cls.temporary.name
        cls.program = os.path.join(cls.folder, "tiny.exe")
        write(cls.program, tiny_program())
        cls.key, cls.certificate = os.path.join(cls.folder, "key.pem"), os.path.join(cls.folder, "certificate.pem")
        subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", "/CN=a test",
                        "-addext", "extendedKeyUsage=codeSigning", "-keyout", cls.key, "-out", cls.certificate],
                       check=True, capture_output=True)
        cls.signing = {"ORLAVANE_SIGN_KEY": cls.key, "ORLAVANE_SIGN_CERT": cls.certificate}
        cls.repository = os.path.join(cls.folder, "here")
        write(os.path.join(cls.repository, "CMakeLists.txt"), CMAKE_LISTS)
        write(os.path.join(cls.repository, "CMakePresets.json"), json.dumps(PRESETS))
        write(os.path.join(cls.repository, ".gitignore"), "/build/\n")
        for name, text in STAND_INS.items():
            cls.script(name, "#!/usr/bin/env bash\nset -eu\nmkdir -p build\n" + text + "\n")
        for name in ["release", "sign"]:
            cls.script(name, read(SOURCE, "scripts", name))
        cls.git("init", "-q")
        cls.git("add", "-A")
        cls.commit()
        write(os.path.join(cls.repository, "build", "rubbish"), "not tracked")
        cls.plain = cls.release("plain")
        cls.signed = cls.release("signed", **cls.signing)

    @classmethod
    def script(cls, name, text):
        path = os.path.join(cls.repository, "scripts", name)
        write(path, text)
        os.chmod(path, 0o755)

    @classmethod
    def git(cls, *arguments):
        who = {"GIT_AUTHOR_DATE": f"{COMMIT_TIME} +0000", "GIT_COMMITTER_DATE": f"{COMMIT_TIME} +0000"}
        return subprocess.run(["git", "-C", cls.repository, "-c", "user.name=a", "-c", "user.email=a@b", *arguments],
                              check=True, capture_output=True, text=True, env={**os.environ, **who}).stdout.strip()

    @classmethod
    def commit(cls):
        cls.git("commit", "-q", "-m", "all")

    @classmethod
    def run_script(cls, name, *arguments, repository=None, output=None, **environment):
        clean = {key: value for key, value in os.environ.items() if not key.startswith("ORLAVANE_SIGN")}
        return subprocess.run([os.path.join(repository or cls.repository, "scripts", name), *arguments],
                              stdout=output or subprocess.PIPE, stderr=output or subprocess.PIPE, text=True, timeout=100,
                              env={**clean, "MAKE_MANIFEST": MAKE_MANIFEST, "TINY_PROGRAM": cls.program, **environment})

    @classmethod
    def release(cls, name, **more):
        folder = os.path.join(cls.folder, name)
        result = cls.run_script("release", ADDRESS, folder, **more)
        assert result.returncode == 0, (result.stdout, result.stderr)
        return folder

    def test_a_release_is_all_its_files_and_their_sums(self):
        folder = self.plain
        self.assertEqual(sorted(os.listdir(folder)), sorted([*FILES, "SHA256SUMS"]))
        sums = {name: hashlib.sha256(read(folder, name)).hexdigest() for name in FILES}
        listed = read(folder, "SHA256SUMS").decode().splitlines()
        self.assertEqual(listed, [f"{sums[name]}  {name}" for name in FILES])
        self.assertEqual(read(folder, "Orlavane-setup-1.2.exe"), tiny_program())  # there was no key
        for system, setup in [("windows", "Orlavane-setup-1.2.exe"), ("linux", "Orlavane-setup-1.2.run")]:
            self.assertEqual(json.loads(read(folder, f"manifest-{system}.json")),
                             {"version": "1.2", "date": "2026-04-02", "sha256": sums[setup], "file": setup})

    def test_each_build_is_of_the_commit_and_knows_its_own_manifest(self):
        for system, name in [("windows", "Orlavane-1.2-windows.zip"), ("linux", "Orlavane-setup-1.2.run")]:
            said = read(self.plain, name).decode().split()
            commit = self.git("rev-parse", "HEAD")
            self.assertEqual(said[:4], ["says", commit, str(COMMIT_TIME), "-ffile-prefix-map=HERE=."])
            self.assertNotIn("rubbish", said)
            self.assertIn(f"ORLAVANE_UPDATE_MANIFEST_URL:UNINITIALIZED={ADDRESS}/manifest-{system}.json", said)
            self.assertIn("ORLAVANE_BUILD_DATE:UNINITIALIZED=2026-04-02", said)

    def test_the_source_is_what_is_committed(self):
        with tarfile.open(os.path.join(self.plain, "orlavane-1.2.tar.gz")) as archive:
            names = [member.name for member in archive if member.isfile()]
        self.assertEqual(sorted(names), sorted("orlavane-1.2/" + name for name in self.git("ls-files").splitlines()))

    def test_what_it_says_is_kept_in_a_file_too(self):
        path = os.path.join(self.folder, "log")
        with open(path, "w") as log:
            self.release("logged", output=log)
        said = read(path).decode().splitlines()
        steps = ["set-up release", "== source", "== scripts/package-windows-setup", "much", "== signature and manifests"]
        self.assertEqual([line for line in said if line in steps], steps)

    def test_another_place_gives_the_same_bytes_signed_too(self):
        elsewhere = os.path.join(self.folder, "elsewhere", "a longer name")
        subprocess.run(["git", "clone", "-q", self.repository, elsewhere], check=True)
        again = self.release("again", repository=elsewhere, **self.signing)
        for name in [*FILES, "SHA256SUMS"]:
            self.assertEqual(read(again, name), read(self.signed, name), name)

    def test_a_manifest_has_the_hash_of_the_signed_program(self):
        setup = shutil.copy(os.path.join(self.signed, "Orlavane-setup-1.2.exe"), os.path.join(self.folder, "copy.exe"))
        manifest = json.loads(read(self.signed, "manifest-windows.json"))
        self.assertEqual(manifest["sha256"], hashlib.sha256(read(setup)).hexdigest())
        self.assertIn("Signature verification: ok", self.verify(setup))
        self.assertIn("Apr  2 12:00:00 2026 GMT", self.verify(setup))
        changed = bytearray(read(setup))
        changed[300] ^= 1
        write(setup, bytes(changed))
        self.assertNotIn("Signature verification: ok", self.verify(setup))

    def verify(self, program):
        return subprocess.run(["osslsigncode", "verify", "-CAfile", self.certificate, "-in", program],
                              capture_output=True, text=True).stdout

    def test_nothing_is_signed_by_halves(self):
        for variable in self.signing:
            program = shutil.copy(self.program, os.path.join(self.folder, "half.exe"))
            self.assertNotEqual(self.run_script("sign", program, **{variable: self.signing[variable]}).returncode, 0)
            self.assertEqual(read(program), tiny_program())
        text = os.path.join(self.folder, "text.exe")
        write(text, "no program")
        self.assertNotEqual(self.run_script("sign", text, **self.signing).returncode, 0)
        self.assertEqual(read(text), b"no program")

    def refused(self, reason, *arguments, code=1):
        folder = os.path.join(self.folder, "refused")
        result = self.run_script("release", *(arguments or [ADDRESS, folder]))
        self.assertEqual(result.returncode, code, result.stdout)
        self.assertIn(reason, result.stderr)
        self.assertFalse(os.path.exists(folder))

    def test_what_cannot_be_a_release_is_refused(self):
        self.refused("usage: scripts/release ADDRESS FOLDER", ADDRESS, code=2)
        self.refused("is no address", "games.example/orlavane", os.path.join(self.folder, "refused"))
        self.refused("is there already", ADDRESS, self.folder)
        new = os.path.join(self.repository, "new.txt")
        write(new, "new")
        self.addCleanup(os.remove, new)
        self.refused("not committed")

    def broken(self, name, change):
        before = read(self.repository, "scripts", name)
        change(os.path.join(self.repository, "scripts", name))
        self.git("add", "-A")
        self.commit()
        self.addCleanup(self.git, "reset", "-q", "--hard", "HEAD^")
        self.assertNotEqual(before, b"")

    def test_a_package_that_is_not_made_ends_the_release(self):
        self.broken("package-linux-setup", os.remove)
        self.refused("there is no scripts/package-linux-setup")

    def test_a_package_that_fails_ends_the_release(self):
        self.broken("package-windows-setup", lambda path: write(path, "#!/bin/sh\necho /nothing\n"))
        self.refused("scripts/package-windows-setup made nothing")

    def test_a_package_against_debians_rules_ends_the_release(self):
        self.broken("check-deb", lambda path: write(path, "#!/bin/sh\necho wrong >&2\nexit 1\n"))
        self.refused("wrong")


if __name__ == "__main__":
    unittest.main()
