"""Plays the real program as a player would: in a real window on a virtual screen, with key and mouse events.

    with Screen() as screen, Game(screen, window=(640, 360), OV_DEMO="1") as game:
        game.press("F5")
        picture = game.settled_picture(0.2)

A program for Windows is played under Wine, in the Windows that scripts/wine keeps.
"""
import contextlib
import getpass
import os
import signal
import struct
import subprocess
import tempfile
import time

PATIENCE = 120  # seconds until a slow machine has done what it was asked for
ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../..")
PROGRAM = os.environ.get("ORLAVANE") or os.path.join(ROOT, "build/release/bin/Orlavane")
WINE = os.path.join(ROOT, "scripts/wine")
WINE_PREFIX = os.environ.get("WINEPREFIX") or os.path.join(ROOT, "build/wine")
WINE_PROFILE = os.path.join(WINE_PREFIX, "drive_c/users", getpass.getuser())


class Picture:
    """Pixels as (red, green, blue), rows from the top."""

    def __init__(self, width, height, rows):
        self.width, self.height, self.rows = width, height, rows

    def pixel(self, x, y):
        blue, green, red = self.rows[y][4 * x:4 * x + 3]
        return red, green, blue

    def difference(self, other):
        """Mean difference of a channel, 0 to 255, over every eleventh pixel of every ninth row."""
        total = count = 0
        for y in range(0, self.height, 9):
            mine, others = self.rows[y], other.rows[y]
            for x in range(0, self.width, 11):
                for channel in range(3):
                    total += abs(mine[4 * x + channel] - others[4 * x + channel])
                    count += 1
        return total / count

    def mean(self):
        total = [0, 0, 0]
        count = 0
        for y in range(0, self.height, 9):
            for x in range(0, self.width, 11):
                for channel, value in enumerate(self.pixel(x, y)):
                    total[channel] += value
                count += 1
        return tuple(value / count for value in total)


def four_bytes_a_pixel(row):
    return b"".join(row[x:x + 3] + b"\0" for x in range(0, len(row), 3))


def read_bmp(path):
    with open(path, "rb") as file:
        data = file.read()
    assert data[:2] == b"BM"
    start, = struct.unpack_from("<I", data, 10)
    width, height, _, bits = struct.unpack_from("<iiHH", data, 18)
    assert bits == 24
    stride = (3 * width + 3) // 4 * 4
    rows = []
    for y in range(height - 1, -1, -1):
        rows.append(four_bytes_a_pixel(data[start + y * stride:start + y * stride + 3 * width]))
    return Picture(width, height, rows)


def read_xwd(data):
    header = struct.unpack_from(">25I", data)
    width, height, bits, stride, colours = header[4], header[5], header[11], header[12], header[19]
    assert bits in (24, 32) and header[7] == 0, "the virtual screen has blue first"
    start = header[0] + 12 * colours
    rows = [data[start + y * stride:start + y * stride + bits // 8 * width] for y in range(height)]
    if bits == 24:  # xwd puts pictures together that another window is part of, as while windows move
        rows = list(map(four_bytes_a_pixel, rows))
    return Picture(width, height, rows)


class Screen:
    """A virtual screen of its own, with a window manager where one is asked for: True, or what is to stand in its
    configuration."""

    def __init__(self, size="1920x1080", window_manager=False):
        read_end, write_end = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", size + "x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[write_end], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            self.display = ":" + pipe.readline().strip()
        self.processes = [server]
        if window_manager:  # full screen is its business
            environment = {**os.environ, "DISPLAY": self.display}
            command = ["openbox"]
            if window_manager is not True:
                self.configuration = tempfile.NamedTemporaryFile("w", suffix=".xml")
                print(f'<openbox_config xmlns="http://openbox.org/3.4/rc">{window_manager}</openbox_config>',
                      file=self.configuration, flush=True)
                command += ["--config-file", self.configuration.name]
            self.processes.append(subprocess.Popen(command, env=environment,
                                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
            # A window that is opened while it takes over the screen may never be shown.
            wait_until(lambda: b"window id" in subprocess.run(
                ["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], env=environment, stdout=subprocess.PIPE,
                stderr=subprocess.DEVNULL).stdout, "no window manager")

    def open_window(self):
        """Another program's, in the lower right corner."""
        environment = {**os.environ, "DISPLAY": self.display}
        self.processes.append(subprocess.Popen(["xev", "-geometry", "80x60+1800+980"], env=environment,
                                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        search = ["xdotool", "search", "--onlyvisible", "--name", "^Event Tester$"]
        found = lambda: subprocess.run(search, env=environment, stdout=subprocess.PIPE,
                                       stderr=subprocess.DEVNULL).stdout.split()
        wait_until(found, "no other window")
        return found()[0].decode()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for process in reversed(self.processes):
            process.terminate()
            process.wait()


def wait_until(condition, what="it does not happen", patience=PATIENCE):
    deadline = time.monotonic() + patience
    while not condition():
        assert time.monotonic() < deadline, what() if callable(what) else what
        time.sleep(0.02)


PLAIN = dict(resolution=0, quality=0)  # the settings that are drawn the fastest


class Game:
    """The program in a window of the screen, with an empty preference folder unless `home` names one, `settings` are
    written there, or `save` holds the saved game that it finds there. The software rasteriser pays for each pixel:
    `window` is the size that a test can do with."""

    def __init__(self, screen, home=None, settings=PLAIN, window=None, save=None, program=PROGRAM, **variables):
        self.temporary = tempfile.TemporaryDirectory()
        self.home = home or self.temporary.name
        self.screen = screen
        os.makedirs(self.preferences, exist_ok=True)
        if settings is not None:
            with open(self.settings_path, "w") as file:
                file.writelines(f"{key}={value}\n" for key, value in settings.items())
        if save is not None:
            with open(self.save_path, "wb") as file:
                file.write(save)
        self.environment = clean_environment(self.home, DISPLAY=screen.display, **variables)
        self.process = subprocess.Popen(prepare(program, self.home), env=self.environment,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        self.in_play = variables.get("OV_DEMO") == "1"  # and not paused
        self.slowest_frame = 0.0  # seconds, of those that a save has measured
        try:
            self.window = self.wait_for_window()
            self.focus(self.window)
            wait_until(self.draws, "nothing was drawn")
            if window:
                self.resize(*window)
        except BaseException:
            self.__exit__()
            raise

    def draws(self):
        return max(self.picture().mean()) >= 1.0  # an undrawn window is black

    def focus(self, window):
        self.xdotool("windowfocus", "--sync", window)

    def resize(self, width, height):
        """With the pointer in the new middle: at an edge it would move the view."""
        self.xdotool("mousemove", "--window", self.window, str(width // 2), str(height // 2))
        self.xdotool("windowsize", self.window, str(width), str(height))
        wait_until(lambda: self.geometry() == (width, height), "the window keeps its size")
        wait_until(self.draws, "nothing was drawn")
        self.frames(3)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
            try:
                self.process.wait(10)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        self.process.stderr.close()
        self.temporary.cleanup()

    @property
    def save_path(self):
        return os.path.join(self.preferences, "savegame.ovw")

    @property
    def settings_path(self):
        return os.path.join(self.preferences, "settings.ini")

    @property
    def preferences(self):
        return os.path.join(self.home, ".local/share/Orlavane/Orlavane")

    def xdotool(self, *words):
        return subprocess.run(["xdotool", *words], env=self.environment, check=True, timeout=30,
                              stdout=subprocess.PIPE).stdout.decode().strip()

    def wait_for_window(self):
        deadline = time.monotonic() + PATIENCE
        while time.monotonic() < deadline:
            assert self.process.poll() is None, self.process.stderr.read().decode()
            found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Orlavane$"],
                                   env=self.environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
            if found.stdout.split():
                return found.stdout.split()[0].decode()
            time.sleep(0.05)
        raise AssertionError("no window came up")

    def frames(self, count=1):
        """Waits until the program has begun that many frames and more. A running game proves it by a save: the frame
        that F5 is read in has every event before it as well. It ends with the tools and the picture, so that these
        are certain one frame later."""
        for _ in range(count):
            if self.in_play:
                self.sync()
            else:
                time.sleep(max(0.1, self.slowest_frame))

    def sync(self):
        if os.path.exists(self.save_path):
            os.remove(self.save_path)
        start = time.monotonic()
        # Up again at once: a key that is down while the focus comes does not count as pressed.
        self.xdotool("key", "--delay", "0", "F5")
        while not self.save_is_whole():
            assert self.process.poll() is None, "the program ended"
            assert time.monotonic() < start + PATIENCE, "nothing was saved"
            time.sleep(0.005)
        self.slowest_frame = max(self.slowest_frame, time.monotonic() - start)

    def save_is_whole(self):
        try:
            with open(self.save_path, "rb") as file:
                data = file.read()
        except FileNotFoundError:
            return False
        if len(data) < Save.BUILDINGS + 4:
            return False
        return len(data) == Save.BUILDINGS + 4 + 44 * struct.unpack_from("<I", data, Save.BUILDINGS)[0]

    def point(self, x, y):
        self.xdotool("mousemove", "--window", self.window, str(x), str(y))
        self.frames()

    def press(self, *keys):
        for key in keys:
            self.xdotool("key", "--delay", "0", key)
        self.frames()

    @contextlib.contextmanager
    def held(self, key):
        self.xdotool("keydown", key)
        try:
            yield
        finally:
            self.xdotool("keyup", key)
        self.frames()

    def drag(self, button, start, end):
        self.xdotool("mousemove", "--window", self.window, str(start[0]), str(start[1]), "mousedown", str(button))
        self.frames()
        if end != start:
            self.point(*end)
        self.xdotool("mouseup", str(button))
        self.frames()

    def click(self, x, y):
        self.xdotool("mousemove", "--window", self.window, str(x), str(y), "click", "1")
        self.frames()

    def wheel(self, steps):
        """Positive away from the player."""
        for _ in range(abs(steps)):
            self.xdotool("click", "4" if steps > 0 else "5")
        self.frames()

    def picture(self):
        """As soon as the window stands still on the screen."""
        deadline = time.monotonic() + PATIENCE
        while True:
            dump = subprocess.run(["xwd", "-silent", "-id", self.window], env=self.environment,
                                  stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
            if dump.returncode == 0:
                return read_xwd(dump.stdout)
            assert self.process.poll() is None, "the program ended"
            assert time.monotonic() < deadline, "the window is not seen"

    def settled_picture(self, still):
        """The picture once it stays within `still` of itself for a few frames."""
        deadline = time.monotonic() + PATIENCE
        self.frames(2)
        before = self.picture()
        while True:
            self.frames(2)
            now = self.picture()
            if now.difference(before) <= still:
                return now
            assert time.monotonic() < deadline, "the view does not come to rest"
            before = now

    def geometry(self):
        """Width and height of the window."""
        words = dict(line.split("=") for line in
                     self.xdotool("getwindowgeometry", "--shell", self.window).splitlines())
        return int(words["WIDTH"]), int(words["HEIGHT"])

    def saved(self):
        """What F5 writes now."""
        self.sync()
        return Save(self.save_path)

    def load(self, save):
        save.write()
        self.press_load()

    def press_load(self):
        """A frame reads F5 before F9: no save may follow until the file has been read."""
        before = self.bytes_read()
        self.xdotool("key", "F9")
        wait_until(lambda: self.bytes_read() >= before + os.path.getsize(self.save_path), "nothing was loaded")
        self.frames()

    def bytes_read(self):
        with open(f"/proc/{self.process.pid}/io") as file:
            return int(file.readline().split()[1])


class Save:
    """A saved game as bytes, to look into and to prepare scenes with."""

    CELLS, CELL_SIZE, BUILDINGS = 38835, 12, 149427

    def __init__(self, path):
        self.path = path
        with open(path, "rb") as file:
            self.data = bytearray(file.read())

    def write(self):
        with open(self.path, "wb") as file:
            file.write(self.data)

    def cell(self, x, y):
        """zone, terrain, road, district, hasTrees, busStop"""
        return tuple(self.data[self.CELLS + self.CELL_SIZE * (96 * y + x):][:6])

    def set_cell(self, x, y, field, value):
        self.data[self.CELLS + self.CELL_SIZE * (96 * y + x) + field] = value

    def cells_where(self, test):
        return [(x, y) for y in range(96) for x in range(96) if test(*self.cell(x, y))]

    def number(self, kind, offset):
        return struct.unpack_from("<" + kind, self.data, offset)[0]

    def set_number(self, kind, offset, *values):
        struct.pack_into(f"<{len(values)}{kind}", self.data, offset, *values)

    def buildings(self):
        """(kind, x, y) of each."""
        count = self.number("I", self.BUILDINGS)
        return [struct.unpack_from("<BxhH", self.data, self.BUILDINGS + 4 + 44 * i) for i in range(count)]


def clean_environment(home, **variables):
    """What the program sees: a home folder of its own and none of the caller's variables that steer it."""
    kept = {name: value for name, value in os.environ.items()
            if not name.startswith(("OV_", "SDL_", "XDG_", "WAYLAND_")) and name != "DISPLAY"}
    return {**kept, "HOME": home, "LIBGL_ALWAYS_SOFTWARE": "1", "SDL_AUDIODRIVER": "dummy", **variables}


def prepare(program, home):
    """The command that starts it. Wine has one player, whose preference folder becomes that of the home."""
    if not program.endswith(".exe"):
        return [program]
    preferences = os.path.join(home, ".local/share/Orlavane")
    os.makedirs(preferences, exist_ok=True)
    link = os.path.join(WINE_PROFILE, "AppData/Roaming/Orlavane")
    if os.path.lexists(link):
        os.remove(link)
    os.symlink(preferences, link)
    return [WINE, program]


def run_to_end(home, timeout=60, program=PROGRAM, folder=None, **variables):
    """Starts the program without a screen of ours, in `folder` or here, and waits for its end: (exit code, errors)."""
    result = subprocess.run(prepare(program, home), cwd=folder, env=clean_environment(home, **variables),
                            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, timeout=timeout)
    return result.returncode, result.stderr.decode()
