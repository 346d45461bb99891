"""Studies in a folder of their own, and lab/sweep as a player would start it."""
import fcntl
import os
import pty
import select
import shutil
import signal
import subprocess
import tempfile
import termios
import textwrap
import time
import unittest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../..")
SWEEP = os.path.join(ROOT, "lab/sweep")
SIMULATOR = os.environ["ORLAVANE_SIM"]
PATIENCE = 60 # seconds until a slow machine has done what it was asked for

SCRIPT = """\
new {seed}
line 44 48 52 48 street
zonerect 44 47 52 47 residential
tax 0 {steps}
tick {days}
"""
STUDY = """\
script = "town.txt"
seeds = [1, 2, 3]
keep = ["money", "demand0"]
[parameters]
steps = [-2, 0]
days = { from = 5, to = 15, step = 5 }
"""


def until(truth):
    """Waits for what must come to pass."""
    end = time.monotonic() + PATIENCE
    while not truth():
        assert time.monotonic() < end, "it never came to pass"
        time.sleep(0.02)


class LabTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="orlavane-lab-")
        self.addCleanup(shutil.rmtree, self.folder)
        self.study(STUDY, SCRIPT)

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def write(self, name, text):
        with open(self.path(name), "w") as file:
            file.write(textwrap.dedent(text))

    def read(self, *names):
        with open(self.path(*names)) as file:
            return file.read()

    def study(self, study, script=None):
        self.write("town.toml", study)
        if script:
            self.write("town.txt", script)

    def command(self, *options, program=SIMULATOR, out="out"):
        return [SWEEP, self.path("town.toml"), "--out", self.path(out), "--program", program, *options]

    def sweep(self, *options, **places):
        return subprocess.run(self.command(*options, **places), stdin=subprocess.DEVNULL, capture_output=True,
                              text=True, timeout=PATIENCE)

    def swept(self, *options, **places):
        """A sweep that must succeed; its table."""
        run = self.sweep(*options, **places)
        self.assertEqual(run.returncode, 0, run.stderr)
        return self.read(places.get("out", "out"), "town.csv")

    def start(self, *options, **places):
        sweep = subprocess.Popen(self.command(*options, **places), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                 stderr=subprocess.PIPE, text=True)
        self.addCleanup(sweep.communicate)
        self.addCleanup(sweep.kill)
        return sweep

    def counting_program(self, before=""):
        """An orlavane-sim that notes each city that it runs, in the file 'runs'."""
        self.write("counting-sim", f"""\
            #!/bin/bash
            [[ "$*" == *--set* ]] && echo "$*" >> {self.path("runs")}
            {before}
            exec {SIMULATOR} "$@"
            """)
        os.chmod(self.path("counting-sim"), 0o755)
        return self.path("counting-sim")

    def runs(self):
        """The settings of the cities that ran, without what differs from run to run."""
        if not os.path.exists(self.path("runs")):
            return []
        return [line.split(" ", 2)[2] for line in self.read("runs").splitlines()]

    def kept(self):
        """Cities in the journal."""
        return self.read("out", "journal").count("\n") - 1 if os.path.exists(self.path("out", "journal")) else 0


class Terminal:
    """A program on a terminal of its own."""

    def __init__(self, command):
        self.end, inner = pty.openpty()
        self.process = subprocess.Popen(command, stdin=inner, stdout=inner, stderr=inner, start_new_session=True,
                                        preexec_fn=lambda: fcntl.ioctl(0, termios.TIOCSCTTY, 0))
        os.close(inner)
        self.text = ""

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            os.killpg(self.process.pid, signal.SIGKILL)
        self.process.wait()
        os.close(self.end)

    def read(self):
        while select.select([self.end], [], [], 0)[0]:
            try:
                self.text += os.read(self.end, 65536).decode()
            except OSError: # the program is gone
                return

    def shows(self, text):
        self.read()
        return text in self.text

    def type(self, text):
        os.write(self.end, text.encode())

    def status(self):
        until(lambda: self.read() or self.process.poll() is not None)
        self.read()
        return self.process.returncode
