"""What the real program sounds under Wine, as SDL's disk driver writes it down."""
import os
import unittest

from windows_game import ODD_NAME, WindowsTest, driver, install, wait_until
from sound_test import LEVEL, RATE, read_sound, strength, write_track

SECONDS = 5


class Hear(WindowsTest):
    def setUp(self):
        super().setUp()
        self.program = install(os.path.join(self.folder, ODD_NAME, "Orlavane"))

    def heard(self):
        """So many seconds from the first sound on, of the left ear."""
        recording = os.path.join(self.folder, "sound.raw")
        open(recording, "w").close()
        # At the pace of time: there SDL takes the value of a variable for the pace for the name of the file.
        volumes = dict(driver.PLAIN, musicVolume=100, sfxVolume=0)
        with driver.Game(self.screen, settings=volumes, program=self.program, SDL_AUDIODRIVER="disk",
                         SDL_DISKAUDIOFILE=recording):
            wait_until(lambda: read_sound(recording)[:-SECONDS * RATE].any(), "too little sound")
        left = read_sound(recording)[:, 0]
        begin = left.nonzero()[0][0]
        return left[begin:begin + SECONDS * RATE]

    def test_the_bed_has_its_two_tones(self):
        sound = self.heard()
        self.assertAlmostEqual(strength(sound, 73.5), 0.028, delta=5e-4)
        self.assertAlmostEqual(strength(sound, 110.25), 0.022, delta=5e-4)

    def test_music_in_a_game_folder_of_any_name_is_heard(self):
        write_track(os.path.join(os.path.dirname(self.program), "music1.mp3"), 2 * SECONDS, 1000)
        self.assertAlmostEqual(strength(self.heard()[-RATE:], 1000), LEVEL, delta=0.01)


if __name__ == "__main__":
    unittest.main()
