"""What the real program sounds: it plays into a file, and the file is held against the sound as it should be."""
import os
import subprocess
import tempfile
import time
import unittest
import wave

import numpy as np

from driver import PLAIN, PROGRAM, Game, Screen, clean_environment

RATE = 44100
SCENE = dict(OV_DEMO="1", OV_STATE="focus=48:57,dist=100,speed=0,hour=12")
CENTRE = (320, 180)
MISSION_INDEX = 205  # offset in the save
LEVEL = 0.475  # of the tones that serve as music: lame takes a twentieth off
NOTES = (293.66, 329.63, 349.23, 392.0, 440.0, 523.25)


class Chance:
    """The generator of the sounds."""

    def __init__(self, state=12345):
        self.state = state

    def step(self):
        self.state = (self.state * 1664525 + 1013904223) % 2**32
        return self.state

    def unit(self):
        return (self.step() >> 8) / 16777215


def noise(seed, count):
    samples = []
    chance = Chance(seed)
    for _ in range(count):
        samples.append((chance.step() >> 8) / 2**23 - 1)
    return np.array(samples)


def clocks(duration):
    seconds = np.arange(1, int(duration * RATE) + 1) / RATE
    return seconds, seconds / duration


def envelope(duration):
    seconds, part = clocks(duration)
    return np.minimum(1, seconds * 300) * np.exp((0.6 if duration > 0.5 else 1.5) * -6 * part)


def tone(start, end, duration, gain, square=False):
    part = clocks(duration)[1]
    swing = np.sin(2 * np.pi * np.cumsum(start + (end - start) * part) / RATE)
    return gain * envelope(duration) * (np.sign(swing) if square else swing)


def hiss(duration, gain, seed):
    shape = envelope(duration)
    return gain * shape * noise(seed, len(shape))


def together(*parts):
    """Each part is a sound, or a pair of the seconds that it waits and the sound."""
    parts = [part if isinstance(part, tuple) else (0, part) for part in parts]
    sound = np.zeros(max(int(delay * RATE) + len(part) for delay, part in parts) + 1)
    for delay, part in parts:
        start = int(np.ceil(delay * RATE))
        sound[start:start + len(part)] += part[:len(sound) - start]
    return sound


def strength(sound, frequency):
    """Amplitude of a sine of this frequency."""
    turn = np.exp(-2j * np.pi * frequency * np.arange(len(sound)) / RATE)
    return 2 * abs(np.dot(sound, turn)) / len(sound)


def read_sound(path):
    with open(path, "rb") as file:
        data = file.read()
    return np.frombuffer(data[:len(data) // 8 * 8], "<f4").astype(float).reshape(-1, 2)


def write_track(path, seconds, frequency):
    samples = LEVEL / 0.95 * np.sin(2 * np.pi * frequency * np.arange(int(seconds * RATE)) / RATE)
    with tempfile.NamedTemporaryFile(suffix=".wav") as file:
        with wave.open(file, "wb") as out:
            out.setnchannels(1)
            out.setsampwidth(2)
            out.setframerate(RATE)
            out.writeframes((samples * 32767).astype("<i2").tobytes())
        file.flush()
        subprocess.run(["lame", "--quiet", "-b", "128", file.name, path], check=True)


class Sound(unittest.TestCase):
    def setUp(self):
        self.temporary = tempfile.TemporaryDirectory(dir=os.path.dirname(PROGRAM))  # where links to it can stand
        self.folder = self.temporary.name
        self.program = os.path.join(self.folder, "Orlavane")
        os.link(PROGRAM, self.program)  # the music stands beside the program
        self.recording = os.path.join(self.folder, "sound.raw")

    def tearDown(self):
        self.temporary.cleanup()

    def settings(self, **volumes):
        values = {**PLAIN, **volumes}
        preferences = os.path.join(self.folder, ".local/share/Orlavane/Orlavane")
        os.makedirs(preferences)
        with open(os.path.join(preferences, "settings.ini"), "w") as file:
            file.writelines(f"{key}={value}\n" for key, value in values.items())

    def record(self, seconds, **variables):
        """At least so many seconds of sound, written faster than they would play, and the lines of the error stream.
        The driver may write some silent buffers before the program has started its device."""
        environment = clean_environment(self.folder, SDL_VIDEODRIVER="offscreen", SDL_AUDIODRIVER="disk",
                                        SDL_DISKAUDIOFILE=self.recording, SDL_DISKAUDIODELAY="1", **variables)
        process = subprocess.Popen([self.program], env=environment, stderr=subprocess.PIPE)
        deadline = time.monotonic() + 60
        while not os.path.exists(self.recording) or os.path.getsize(self.recording) < 8 * RATE * (seconds + 0.5):
            self.assertLess(time.monotonic(), deadline, "too little sound")
            time.sleep(0.02)
        process.terminate()
        errors = process.communicate(timeout=30)[1].decode().splitlines()
        self.assertEqual(process.returncode, 0)
        return read_sound(self.recording), [line for line in errors if "CRITICAL" not in line]  # the driver's own

    # --- The bed

    def drone(self, seconds):
        time_of = np.arange(1, int(seconds * RATE) + 1) / RATE
        return 0.8 * 0.035 * np.sin(2 * np.pi * 73.5 * time_of) + 0.022 * np.sin(2 * np.pi * 110.25 * time_of)

    def note_starts(self, seconds):
        """(frame, frequency) of each note. The clock between them counts single-precision steps."""
        starts, frame, pause, chance = [], -1, 1.0, Chance()
        while frame < seconds * RATE:
            steps = np.full(4 * RATE, 2.2675737e-05, np.float32)
            steps[0] = pause
            frame += int(np.argmax(np.subtract.accumulate(steps) <= 0))
            pause = 1.2 + 1.6 * chance.unit()
            starts.append((frame, NOTES[int(chance.unit() * 6) % 6]))
        return starts

    def note(self, frequency):
        seconds = clocks(2.2)[0]
        turn = 2 * np.pi * frequency * seconds
        return 0.1 * np.minimum(1, 40 * seconds) * np.exp(-2.2 * seconds) * (np.sin(turn) + 0.3 * np.sin(2 * turn))

    def test_the_bed_is_two_tones_and_notes_by_chance(self):
        self.settings(musicVolume=100, sfxVolume=0)
        sound, errors = self.record(8)
        self.assertEqual(errors, ["No music files found; playing without music"])
        self.assertTrue(np.array_equal(sound[:, 0], sound[:, 1]))
        begin = np.flatnonzero(sound[:, 0])[0]
        left = sound[begin:begin + 8 * RATE, 0]
        self.assertAlmostEqual(strength(left, 73.5), 0.028, delta=5e-4)
        self.assertAlmostEqual(strength(left, 110.25), 0.022, delta=5e-4)
        self.assertGreater(np.corrcoef(left, self.drone(8))[0, 1], 0.999)

    def test_the_notes_of_the_bed_follow_the_effects_volume(self):
        self.settings(musicVolume=0, sfxVolume=100)
        sound, _ = self.record(12)
        starts = self.note_starts(12)
        begin = np.flatnonzero(sound[:, 0])[0] - starts[0][0]
        self.assertGreaterEqual(begin, 0)
        self.assertEqual(begin % 1024, 0)  # nothing but silent buffers before
        left = sound[begin:begin + 12 * RATE, 0]
        expected = np.zeros(len(left))
        for frame, frequency in starts:
            note = self.note(frequency)
            expected[frame:frame + len(note)] += note[:max(len(expected) - frame, 0)]
        self.assertGreater(np.corrcoef(left, expected)[0, 1], 0.99)

    # --- Music

    def amplitude(self, sound, frequency, width=882):
        """Of a tone, every fiftieth of a second."""
        return np.array([strength(sound[i:i + width], frequency) for i in range(0, len(sound) - width, width)])

    def test_tracks_fade_in_and_follow_each_other_without_a_gap(self):
        write_track(os.path.join(self.folder, "music1.mp3"), 3.0, 1000)
        write_track(os.path.join(self.folder, "music2.mp3"), 3.0, 1500)
        self.settings(musicVolume=100, sfxVolume=0)
        sound, errors = self.record(18, **SCENE)
        self.assertEqual(errors, ["Music: 2 track(s)"])
        left = sound[:, 0]
        first, second = self.amplitude(left, 1000), self.amplitude(left, 1500)
        begin = int(np.argmax(first > 0.05)) - 6  # in fiftieths of a second
        seam = begin + int(np.argmax(second[begin:] > 0.01))
        self.assertAlmostEqual((seam - begin) / 50, 3.0, delta=0.2)
        for track, start in ((first, begin), (second, seam), (first, 2 * seam - begin)):
            rise = track[start + 3:start + 60]  # a straight line to full level in 1.2 seconds
            slope = np.polyfit(np.arange(50) / 50, rise[:50], 1)[0]
            self.assertAlmostEqual(slope, LEVEL / 1.2, delta=0.01)
        self.assertAlmostEqual(first[seam - 5], LEVEL, delta=0.01)
        self.assertAlmostEqual(first[seam - 80], LEVEL, delta=0.01)
        self.assertLess(first[seam + 2], 0.02)
        self.assertLess(strength(left[(seam - 40) * 882:(seam - 5) * 882], 73.5), 0.028 * 0.2)  # the bed has made way

    def test_the_menu_plays_its_first_track_again_and_again(self):
        write_track(os.path.join(self.folder, "music1.mp3"), 2.0, 1000)
        write_track(os.path.join(self.folder, "music2.mp3"), 2.0, 1500)
        self.settings(musicVolume=100, sfxVolume=0)
        sound, _ = self.record(9)
        self.assertLess(self.amplitude(sound[:, 0], 1500).max(), 0.02)
        self.assertGreater(np.count_nonzero(np.diff(self.amplitude(sound[:, 0], 1000)) < -0.3), 1)

    # --- Effects

    def events(self):
        """Where sound begins and ends between silences."""
        left = read_sound(self.recording)[:, 0]
        heard = np.flatnonzero(left)
        if len(heard) == 0:
            return left, []
        gaps = np.flatnonzero(np.diff(heard) > RATE // 20)
        starts = heard[np.concatenate(([0], gaps + 1))]
        ends = heard[np.concatenate((gaps, [len(heard) - 1]))]
        return left, list(zip(starts, ends))

    def assert_sounds(self, heard, expected):
        """Level and course of the expected sound: pitch sweep, envelope and waits all at once."""
        heard = np.concatenate((heard, np.zeros(len(expected))))[:len(expected)]
        self.assertAlmostEqual(np.dot(heard, expected) / np.dot(expected, expected), 1.0, delta=0.02)
        self.assertLess(np.sum((heard - expected)**2) / np.sum(expected**2), 0.01)

    def assert_sounds_with_some_seed(self, heard, sound_of):
        """The seed of the noise is that of any of the first steps of the generator."""
        chance = Chance()
        seeds = [int(chance.unit() * 100000) + 7 for _ in range(100)]
        likeness = [np.dot(heard[:2000], sound_of(seed)[:2000]) for seed in seeds]
        self.assert_sounds(heard, sound_of(seeds[int(np.argmax(likeness))]))

    def wait_for_events(self, count, seconds, length=0.0):
        deadline = time.monotonic() + seconds
        while True:
            left, events = self.events()
            whole = events and events[-1][1] < len(left) - RATE // 10
            if len(events) >= count and whole and events[-1][1] - events[-1][0] > length * RATE:
                return left, events
            self.assertLess(time.monotonic(), deadline, f"{len(events)} sounds, not {count}")
            time.sleep(0.5)

    def test_every_action_has_its_sound(self):
        # Music that is not heard keeps the notes of the bed away, and nothing but the effects is left.
        write_track(os.path.join(self.folder, "music1.mp3"), 5.0, 1000)
        self.settings(musicVolume=0, sfxVolume=100)
        with Screen() as screen, Game(screen, home=self.folder, settings=None, window=(640, 360), program=self.program,
                                      SDL_AUDIODRIVER="disk", SDL_DISKAUDIOFILE=self.recording, **SCENE) as game:
            game.point(*CENTRE)
            while len(read_sound(self.recording)) < 4 * RATE:  # a note of the first second has ended
                time.sleep(0.1)
            before = len(self.events()[1])
            actions = [("v", 1), ("r", 1), ("r", 1), ("b", 1), ("x", 1), ("x", 1), ("x", 0)]
            count = before
            for key, sounds in actions:
                game.press(key)
                game.drag(1, CENTRE, CENTRE)
                count += sounds
                self.wait_for_events(count, 10)
                time.sleep(0.3)
            save = game.saved()
            save.set_number("i", MISSION_INDEX, 0)
            game.load(save)
            game.press("3")
            left, events = self.wait_for_events(count + 1, 150, length=1.5)

        sounds = [left[start:end + 1] for start, end in events[before:]]
        self.assertEqual(len(sounds), 7)
        click = tone(1400, 1100, 0.05, 0.3)
        self.assert_sounds(sounds[0], click)
        self.assert_sounds(sounds[1], click)
        self.assert_sounds(sounds[2], tone(180, 150, 0.16, 0.22, square=True))
        self.assert_sounds_with_some_seed(
            sounds[3], lambda seed: together(tone(160, 70, 0.18, 0.55), hiss(0.08, 0.2, seed)))
        for demolished in sounds[4:6]:
            self.assert_sounds_with_some_seed(
                demolished, lambda seed: together(hiss(0.3, 0.45, seed), tone(120, 60, 0.25, 0.25)))
        bell = (tone(880, 880, 1.6, 0.2), tone(1320, 1320, 1.2, 0.08))
        mission = (tone(523, 523, 0.14, 0.28), (0.14, tone(659, 659, 0.14, 0.28)), (0.28, tone(784, 784, 0.3, 0.28)))
        self.assert_sounds(sounds[6], together(*bell, *mission))


if __name__ == "__main__":
    unittest.main()
