"""The camera answers the real keyboard and mouse, and the picture follows."""
import unittest

from driver import Game, Screen, wait_until

# Land in the low light of the afternoon, on a day that stands still.
SCENE = dict(OV_DEMO="1", OV_STATE="hour=16.5,focus=60:40,dist=100,speed=0")
WINDOW = (640, 360)
CENTRE = (300, 180)
TOOL_PANEL, TOP_BAR = (60, 270), (300, 25)  # places without a button
MOVED = 0.5   # mean difference of a colour channel that any movement of the view goes beyond
STILL = 0.25  # and that a view at rest stays below


class CameraAnswers(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = Screen().__enter__()
        cls.addClassCleanup(cls.screen.__exit__)
        cls.game = Game(cls.screen, window=WINDOW, **SCENE)
        cls.addClassCleanup(cls.game.__exit__)
        cls.other = cls.screen.open_window()

    def setUp(self):
        self.game.point(*CENTRE)
        self.look()

    def look(self):
        """Remembers the view once it has come to rest."""
        self.before = self.game.settled_picture(STILL)

    def look_without_a_highlight(self):
        """That of the cell under the pointer."""
        self.game.point(*TOP_BAR)
        self.look()

    def away(self):
        return self.game.picture().difference(self.before)

    def wait_for_movement(self, what):
        wait_until(lambda: self.away() > MOVED, f"the view did not move: {what}")

    def distance(self):
        return self.game.settled_picture(STILL).difference(self.before)

    def test_without_input_the_view_stands_still(self):
        self.game.frames(4)
        self.assertLess(self.away(), STILL)

    def test_each_pan_key_moves_the_view_and_its_opposite_holds_it(self):
        """How far a key leads depends on the frames of its time. That two are opposite is told by both at once."""
        for one, other in (("w", "s"), ("d", "a"), ("Up", "Down"), ("Right", "Left")):
            with self.game.held(one):
                with self.game.held(other):
                    self.look()
                    self.game.frames(4)
                    self.assertLess(self.away(), STILL, f"{one} with {other}")
                self.wait_for_movement(one)
            self.look()
            with self.game.held(other):
                self.wait_for_movement(other)

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

    def test_a_pointer_beside_the_window_moves_nothing(self):
        self.look_without_a_highlight()
        for x, y in ((WINDOW[0] + 30, 180), (300, WINDOW[1] + 30)):
            self.game.point(x, y)
            self.game.frames(6)
            self.assertLess(self.away(), STILL)

    def test_while_another_window_has_the_focus_the_pointer_moves_nothing(self):
        self.look_without_a_highlight()
        self.focus_another_window()
        self.game.point(WINDOW[0] - 2, 180)  # the edge that would pan
        self.game.wheel(3)
        self.game.frames(8)
        self.assertLess(self.away(), STILL)
        self.game.point(WINDOW[0] + 30, 180)
        self.game.frames(8)
        self.assertLess(self.away(), STILL)
        self.game.point(WINDOW[0] - 2, 180)
        self.come_back()
        self.wait_for_movement("edge")

    def test_a_key_that_is_down_when_the_focus_comes_back_is_not_pressed(self):
        self.focus_another_window()
        with self.game.held("Tab"):
            self.come_back()
            self.game.frames(3)
            self.assertLess(self.away(), MOVED)
        self.game.press("Tab")
        wait_until(lambda: self.away() > MOVED, "no overlay")
        for _ in range(5):
            self.game.press("Tab")

    def focus_another_window(self):
        self.game.focus(self.other)
        self.game.in_play = False  # it would not hear F5

    def come_back(self):
        self.game.focus(self.game.window)
        self.game.in_play = True

    def test_over_the_interface_wheel_and_drags_are_not_the_cameras(self):
        self.look_without_a_highlight()
        for place in (TOOL_PANEL, TOP_BAR):
            self.game.point(*place)
            self.game.wheel(4)
            for button in (2, 3):
                self.game.drag(button, place, CENTRE)
            self.game.point(*TOP_BAR)
            self.game.frames(2)
            self.assertLess(self.away(), STILL)


class TitleViewTurns(unittest.TestCase):
    def test_the_land_turns_by_itself(self):
        with Screen() as screen, Game(screen, window=WINDOW) as game:
            before = game.picture()
            wait_until(lambda: game.picture().difference(before) > 2 * MOVED, "the land stands still")


if __name__ == "__main__":
    unittest.main()
