"""The camera answers the real keyboard and mouse, and the picture follows."""
import time
import unittest

from driver import Game, Screen

# Land in the low light of the afternoon, so that every hill and tree throws a shadow.
SCENE = dict(OV_DEMO="1", OV_STATE="hour=16.5,focus=60:40,dist=100")
CENTRE = (640, 360)
MOVED = 0.5   # mean difference of a colour channel that any movement of the view goes beyond
STILL = 0.25  # and that a view at rest stays below
PATIENCE = 10.0  # seconds until a slow machine has shown what it was asked for


class CameraAnswers(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = Screen().__enter__()

    @classmethod
    def tearDownClass(cls):
        cls.screen.__exit__()

    def setUp(self):
        self.game = Game(self.screen, size=0, **SCENE)
        self.game.point(*CENTRE)
        self.look()

    def tearDown(self):
        self.game.__exit__()

    def look(self):
        """Remembers the view once it has come to rest."""
        self.before = self.game.settled_picture(STILL)

    def assert_moved(self, what=""):
        deadline = time.monotonic() + PATIENCE
        while self.game.picture().difference(self.before) <= MOVED:
            self.assertLess(time.monotonic(), deadline, f"the view did not move: {what}")

    def distance(self):
        return self.game.settled_picture(STILL).difference(self.before)

    def test_without_input_the_view_stands_still(self):
        self.game.frames(4)
        self.assertLess(self.game.picture().difference(self.before), STILL)

    def test_each_pan_key_moves_the_view_and_its_opposite_moves_it_back(self):
        for there, back in (("w", "s"), ("d", "a"), ("Up", "Down"), ("Right", "Left")):
            self.look()
            self.game.hold(there, 0.6)
            self.assert_moved(there)
            away = self.distance()
            self.game.hold(back, 0.6)
            self.assertLess(self.distance(), away, back)

    def test_q_and_e_turn_the_view(self):
        for key in ("q", "e"):
            self.look()
            self.game.hold(key, 0.3)
            self.assert_moved(key)

    def test_the_wheel_comes_nearer_and_goes_back(self):
        self.game.wheel(4)
        self.assert_moved("nearer")
        near = self.distance()
        self.game.wheel(-4)
        self.assertLess(self.distance(), near)

    def test_the_right_button_turns_and_tilts(self):
        self.game.drag(3, CENTRE, (740, 360))
        self.assert_moved("turn")
        self.game.point(*CENTRE)
        self.look()
        self.game.drag(3, CENTRE, (640, 460))
        self.assert_moved("tilt")

    def test_the_middle_button_pulls_the_land_along(self):
        self.game.drag(2, CENTRE, (540, 300))
        self.assert_moved("pull")

    def test_the_window_edge_pans(self):
        self.game.point(1278, 360)
        self.assert_moved("edge")


class TitleViewTurns(unittest.TestCase):
    def test_the_land_turns_by_itself(self):
        with Screen() as screen, Game(screen, size=0) as game:
            before = game.picture()
            deadline = time.monotonic() + 20
            while game.picture().difference(before) < 2 * MOVED:
                self.assertLess(time.monotonic(), deadline)


if __name__ == "__main__":
    unittest.main()
