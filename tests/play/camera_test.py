"""The camera answers the real keyboard and mouse, and the picture follows."""
import unittest

from driver import Game, Screen

# A still scene: the middle of the window shows land and never the sky.
CENTRE = (800, 450)
MOVED = 1.5   # mean difference of a colour channel that any movement of the view goes beyond
STILL = 1.0   # and that the water alone stays below


class CameraAnswers(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = Screen().__enter__()

    @classmethod
    def tearDownClass(cls):
        cls.screen.__exit__()

    def setUp(self):
        self.game = Game(self.screen, OV_DEMO="1", OV_STATE="hour=12,focus=60:40,dist=100")
        self.game.point(*CENTRE)
        self.before = self.game.picture()

    def tearDown(self):
        self.game.__exit__()

    def changed(self):
        return self.game.picture().difference(self.before)

    def test_without_input_the_view_stands_still(self):
        self.game.frames(4)
        self.assertLess(self.changed(), STILL)

    def test_each_pan_key_moves_the_view_and_its_opposite_moves_it_back(self):
        for there, back in (("w", "s"), ("d", "a"), ("Up", "Down"), ("Right", "Left")):
            self.before = self.game.picture()
            self.game.hold(there, 0.4)
            away = self.changed()
            self.assertGreater(away, MOVED, there)
            self.game.hold(back, 0.4)
            self.assertLess(self.changed(), away, back)

    def test_q_and_e_turn_the_view(self):
        for key in ("q", "e"):
            self.before = self.game.picture()
            self.game.hold(key, 0.3)
            self.assertGreater(self.changed(), MOVED, key)

    def test_the_wheel_comes_nearer_and_goes_back(self):
        self.game.wheel(4)
        near = self.changed()
        self.assertGreater(near, MOVED)
        self.game.wheel(-4)
        self.assertLess(self.changed(), near)

    def test_the_right_button_turns_and_tilts(self):
        self.game.drag(3, CENTRE, (900, 450))
        self.assertGreater(self.changed(), MOVED)
        self.game.point(*CENTRE)
        self.before = self.game.picture()
        self.game.drag(3, CENTRE, (800, 550))
        self.assertGreater(self.changed(), MOVED)

    def test_the_middle_button_pulls_the_land_along(self):
        self.game.drag(2, CENTRE, (700, 380))
        self.assertGreater(self.changed(), MOVED)

    def test_the_window_edge_pans(self):
        self.game.point(1598, 450)
        self.game.frames(6)
        self.assertGreater(self.changed(), MOVED)


class TitleViewTurns(unittest.TestCase):
    def test_the_land_turns_by_itself_and_keys_do_not_move_it(self):
        with Screen() as screen, Game(screen) as game:
            before = game.picture()
            game.frames(20)
            self.assertGreater(game.picture().difference(before), 0.5)


if __name__ == "__main__":
    unittest.main()
