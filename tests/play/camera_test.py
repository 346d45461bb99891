"""The camera answers the real keyboard and mouse, and the picture follows."""
import unittest

from driver import Game, Screen, wait_until

# Land in the low light of the afternoon, on a day that stands still.
SCENE = dict(OV_DEMO="1", OV_STATE="hour=16.5,focus=60:40,dist=100,speed=0")
WINDOW = (640, 360)
CENTRE = (300, 180)
MOVED = 0.5   # mean difference of a colour channel that any movement of the view goes beyond
STILL = 0.25  # and that a view at rest stays below


class CameraAnswers(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = Screen().__enter__()
        cls.addClassCleanup(cls.screen.__exit__)
        cls.game = Game(cls.screen, window=WINDOW, **SCENE)
        cls.addClassCleanup(cls.game.__exit__)

    def setUp(self):
        self.game.point(*CENTRE)
        self.look()

    def look(self):
        """Remembers the view once it has come to rest."""
        self.before = self.game.settled_picture(STILL)

    def away(self):
        return self.game.picture().difference(self.before)

    def wait_for_movement(self, what):
        wait_until(lambda: self.away() > MOVED, f"the view did not move: {what}")

    def distance(self):
        return self.game.settled_picture(STILL).difference(self.before)

    def test_without_input_the_view_stands_still(self):
        self.game.frames(4)
        self.assertLess(self.away(), STILL)

    def test_each_pan_key_moves_the_view_and_its_opposite_moves_it_back(self):
        for there, back in (("w", "s"), ("d", "a"), ("Up", "Down"), ("Right", "Left")):
            self.look()
            with self.game.held(there):
                self.wait_for_movement(there)
            far = self.distance()
            wait_until(lambda: self.is_nearer_after_a_step(back, far), f"the view does not come back: {back}")

    def is_nearer_after_a_step(self, key, far):
        """In steps, since a held key might pass the old place between two looks."""
        self.game.hold(key, frames=1)
        return self.away() < 0.9 * far

    def test_q_and_e_turn_the_view(self):
        for key in ("q", "e"):
            self.look()
            with self.game.held(key):
                self.wait_for_movement(key)

    def test_the_wheel_comes_nearer_and_goes_back(self):
        self.game.wheel(4)
        self.wait_for_movement("nearer")
        near = self.distance()
        self.game.wheel(-4)
        self.assertLess(self.distance(), near)

    def test_the_right_button_turns_and_tilts(self):
        self.game.drag(3, CENTRE, (350, 180))
        self.wait_for_movement("turn")
        self.game.point(*CENTRE)
        self.look()
        self.game.drag(3, CENTRE, (300, 230))
        self.wait_for_movement("tilt")

    def test_the_middle_button_pulls_the_land_along(self):
        self.game.drag(2, CENTRE, (250, 150))
        self.wait_for_movement("pull")

    def test_the_window_edge_pans(self):
        self.game.point(WINDOW[0] - 2, 180)
        self.wait_for_movement("edge")


class TitleViewTurns(unittest.TestCase):
    def test_the_land_turns_by_itself(self):
        with Screen() as screen, Game(screen, window=WINDOW) as game:
            before = game.picture()
            wait_until(lambda: game.picture().difference(before) > 2 * MOVED, "the land stands still")


if __name__ == "__main__":
    unittest.main()
