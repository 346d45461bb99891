"""Tracks that lame encodes, played by the game's player and decoded by sox: the same sound at the same level."""
import os
import subprocess
import tempfile
import unittest
import wave

import numpy as np

PLAYER = [word for word in (os.environ["EMULATOR"], os.environ["PLAY_FOLDER"]) if word]
RATE = 44100
SECONDS = 3.0
FADE = 1.3  # and a little more


def write_music(path, rate, channels):
    """A melody over noise, each ear with its own."""
    time = np.arange(int(SECONDS * rate)) / rate
    noise = np.random.default_rng(5)
    ears = []
    for ear in range(channels):
        pitch = 220 * 2 ** (np.floor(time * 5 + ear) % 7 / 12)
        tune = np.sin(2 * np.pi * np.cumsum(pitch) / rate) + 0.4 * np.sin(2 * np.pi * 1500 * time * (1 + ear / 9))
        ears.append(0.3 * tune * (0.7 + 0.3 * np.sin(2 * np.pi * 2 * time)) + 0.01 * noise.standard_normal(len(time)))
    samples = (np.stack(ears, 1) * 32767).astype("<i2")
    with wave.open(path, "wb") as file:
        file.setnchannels(channels)
        file.setsampwidth(2)
        file.setframerate(rate)
        file.writeframes(samples.tobytes())


def sox_decoded(path, channels):
    """Stereo at the track's own rate."""
    raw = subprocess.run(["sox", path, "-t", "f32", "-"], check=True, stdout=subprocess.PIPE).stdout
    sound = np.frombuffer(raw, "<f4").astype(float).reshape(-1, channels)
    return sound if channels == 2 else np.repeat(sound, 2, 1)


def resampled(sound, step):
    """At the rate of the device, straight between the samples."""
    positions = np.arange(int((len(sound) - 1) / step)) * step
    return np.stack([np.interp(positions, np.arange(len(sound)), sound[:, ear]) for ear in range(2)], 1)


def delay_between(first, second):
    """How many frames later the second begins, by the strongest correlation of the left ears."""
    size = 1 << (len(first) + len(second)).bit_length()
    product = np.fft.irfft(np.fft.rfft(second[:, 0], size) * np.conj(np.fft.rfft(first[:, 0], size)), size)
    peak = int(np.argmax(product))
    return peak if peak < size // 2 else peak - size


class RealTracks(unittest.TestCase):
    def setUp(self):
        self.temporary = tempfile.TemporaryDirectory()
        self.folder = self.temporary.name + "/"

    def tearDown(self):
        self.temporary.cleanup()

    def encode(self, number, rate, channels, *options):
        write_music(self.folder + "in.wav", rate, channels)
        path = f"{self.folder}music{number}.mp3"
        subprocess.run(["lame", "--quiet", *options, self.folder + "in.wav", path], check=True)
        return path

    def played(self, seconds):
        raw = subprocess.run([*PLAYER, self.folder, str(seconds)], check=True, stdout=subprocess.PIPE).stdout
        return np.frombuffer(raw, "<f4").astype(float).reshape(-1, 2)

    def check(self, rate, channels, *options):
        path = self.encode(1, rate, channels, *options)
        expected = resampled(sox_decoded(path, channels), rate / RATE)
        sound = self.played(SECONDS)[int(FADE * RATE):-2000]
        delay = delay_between(sound, expected)
        self.assertLess(abs(delay - int(FADE * RATE)), 3000)  # decoders differ in how much of the start they drop
        expected = expected[delay:delay + len(sound)]
        self.assertEqual(expected.shape, sound.shape)
        for ear in range(2):
            self.assertGreater(np.corrcoef(sound[:, ear], expected[:, ear])[0, 1], 0.999)
            level = np.sqrt(np.mean(sound[:, ear] ** 2) / np.mean(expected[:, ear] ** 2))
            self.assertAlmostEqual(level, 1.0, delta=0.003)
        if channels == 1:
            self.assertTrue(np.array_equal(sound[:, 0], sound[:, 1]))

    def test_mono_at_22050_hz(self):
        self.check(22050, 1, "-b", "64", "-m", "m")

    def test_stereo_at_a_constant_rate(self):
        self.check(44100, 2, "-b", "128")
        self.check(44100, 2, "-b", "320", "-m", "s")

    def test_stereo_at_a_variable_rate(self):
        self.check(44100, 2, "-V", "2")

    def test_stereo_at_48000_hz(self):
        self.check(48000, 2, "-b", "192")
        self.check(48000, 2, "-V", "4")

    def test_low_rates(self):
        self.check(32000, 2, "-b", "96")
        self.check(16000, 1, "-b", "32", "-m", "m")
        self.check(11025, 1, "-b", "24", "-m", "m")

    def test_with_tags_and_without(self):
        tags = ["--tt", "Harbour", "--ta", "Nobody", "--tc", "x" * 30]
        self.check(44100, 2, "-b", "128", "--add-id3v2", "--pad-id3v2-size", "5000", *tags)
        self.check(44100, 2, "-b", "128", "--id3v1-only", *tags)
        self.check(44100, 2, "-b", "128", "-t")  # not even the encoder's own

    def test_layer_2(self):
        write_music(self.folder + "in.wav", 44100, 2)
        subprocess.run(["sox", self.folder + "in.wav", "-C", "192", self.folder + "in.mp2"], check=True)
        os.rename(self.folder + "in.mp2", self.folder + "music1.mp3")
        expected = sox_decoded(self.folder + "music1.mp3", 2)
        sound = self.played(SECONDS)[int(FADE * RATE):-2000]
        delay = delay_between(sound, expected)
        expected = expected[delay:delay + len(sound)]
        self.assertGreater(np.corrcoef(sound[:, 0], expected[:, 0])[0, 1], 0.9999)

    def test_one_track_follows_the_other_and_fades_in(self):
        self.encode(1, 44100, 2, "-b", "128")
        self.encode(2, 48000, 2, "-b", "128")
        sound = np.abs(self.played(2 * SECONDS))
        level = np.array([np.sqrt(np.mean(part ** 2)) for part in np.array_split(sound, 60)])  # a tenth of a second
        start = int(10 * SECONDS)
        first, second = level[start - 8:start - 1].mean(), level[start + 2:start + 5].mean()
        self.assertLess(second, 0.5 * first)  # well inside its fade
        self.assertGreater(level[start + 14:start + 25].mean(), 0.8 * first)


if __name__ == "__main__":
    unittest.main()
