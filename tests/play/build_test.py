"""A city is built with the real mouse and keyboard, seen in the picture and found in the saved file."""
import time
import unittest

from driver import Game, Save, Screen

# South of the demo city's streets the land is free and level, and the middle of the window shows its middle.
SCENE = dict(OV_DEMO="1", OV_STATE="focus=48:57,dist=100,speed=0,hour=12")
CENTRE = (640, 360)
AWAY = (290, 360)  # four cells west and three south, away from the streets
TERRAIN, WATER = 1, 3
MONEY, HOUR, DEMAND = 20, 16, 96  # offsets in the save

ROAD_OF = lambda zone, terrain, road, *_: road
ZONE_OF = lambda zone, *_: zone


class Building(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = Screen().__enter__()

    @classmethod
    def tearDownClass(cls):
        cls.screen.__exit__()

    def setUp(self):
        self.game = Game(self.screen, size=0, **SCENE)
        self.game.point(*CENTRE)

    def tearDown(self):
        self.game.__exit__()

    def centre_cell(self):
        """The cell under the middle of the window, found by zoning it."""
        before = self.game.saved()
        self.game.press("i")
        self.game.drag(1, CENTRE, CENTRE)
        after = self.game.saved()
        changed = [cell for cell in after.cells_where(ZONE_OF) if before.cell(*cell) != after.cell(*cell)]
        self.assertEqual(len(changed), 1)
        self.game.press("x")
        self.game.drag(1, CENTRE, CENTRE)
        return changed[0]

    def new_cells(self, before, test):
        return [cell for cell in self.game.saved().cells_where(test) if not test(*before.cell(*cell))]

    def test_a_street_is_laid_by_dragging(self):
        before, picture = self.game.saved(), self.game.picture()
        self.game.press("r")
        self.game.drag(1, CENTRE, AWAY)
        laid = self.new_cells(before, ROAD_OF)
        self.assertGreater(len(laid), 3)
        for (x0, y0), (x1, y1) in zip(sorted(laid), sorted(laid)[1:]):
            self.assertLessEqual(max(abs(x1 - x0), abs(y1 - y0)), len(laid))
        self.assertEqual(self.game.saved().number("d", MONEY), before.number("d", MONEY) - 80 * len(laid))
        self.game.press("v")
        self.game.point(10, 700)
        self.assertGreater(self.game.settled_picture(0.2).difference(picture), 0.3)

    def test_zones_are_drawn_by_dragging_and_cleared_by_the_bulldozer(self):
        before = self.game.saved()
        for key, zone in (("z", 1), ("c", 2), ("o", 3), ("i", 4)):
            self.game.press(key)
            self.game.drag(1, CENTRE, AWAY)
            zoned = self.new_cells(before, ZONE_OF)
            self.assertGreater(len(zoned), 3)
            self.assertEqual({self.game.saved().cell(*cell)[0] for cell in zoned}, {zone})
        self.game.press("x")
        self.game.drag(1, CENTRE, AWAY)
        self.assertEqual(self.new_cells(before, ZONE_OF), [])

    def test_nothing_is_built_on_water(self):
        x, y = self.centre_cell()
        save = self.game.saved()
        save.set_cell(x, y, TERRAIN, WATER)
        self.game.load(save)
        for key in "ryzp":
            self.game.press(key)
            self.game.drag(1, CENTRE, CENTRE)
        after = self.game.saved()
        self.assertEqual(after.cell(x, y)[:3], (0, WATER, 0))
        self.assertEqual(after.buildings(), save.buildings())
        self.assertEqual(after.number("d", MONEY), save.number("d", MONEY))

    def test_every_building_key_places_its_kind(self):
        x, y = self.centre_cell()
        save = self.game.saved()
        save.set_number("d", MONEY, 1e6)
        for kind, key in enumerate("lfhkpjgmnt", start=4):
            self.game.load(save)
            self.game.press(key)
            self.game.drag(1, CENTRE, CENTRE)
            self.assertEqual(set(self.game.saved().buildings()) - set(save.buildings()), {(kind, x, y)}, key)

    def test_avenue_bus_stop_and_bulldozer(self):
        x, y = self.centre_cell()
        self.game.press("y")
        self.game.drag(1, CENTRE, CENTRE)
        self.assertEqual(self.game.saved().cell(x, y)[2], 2)
        self.game.press("b")
        self.game.drag(1, CENTRE, CENTRE)
        self.assertEqual(self.game.saved().cell(x, y)[5], 1)
        self.game.press("x")
        self.game.drag(1, CENTRE, CENTRE)  # the stop goes first
        self.assertEqual(self.game.saved().cell(x, y)[2:6:3], (2, 0))
        self.game.drag(1, CENTRE, CENTRE)
        self.assertEqual(self.game.saved().cell(x, y)[2], 0)

    def test_select_changes_nothing(self):
        before = self.game.saved()
        self.game.press("r", "v")
        self.game.drag(1, CENTRE, AWAY)
        self.assertEqual(self.game.saved().data[Save.CELLS:], before.data[Save.CELLS:])

    def test_a_district_is_painted(self):
        self.game.__exit__()
        scene = dict(SCENE, OV_STATE=SCENE["OV_STATE"] + ",district=3")
        self.game = Game(self.screen, size=0, **scene)
        before = self.game.saved()
        self.game.press("u")
        self.game.drag(1, CENTRE, AWAY)
        painted = self.new_cells(before, lambda *cell: cell[3] == 3)
        self.assertGreater(len(painted), 3)

    def test_a_drag_that_leaves_the_window_goes_on_when_it_comes_back(self):
        before = self.game.saved()
        self.game.press("r")
        self.game.point(*CENTRE)
        self.game.xdotool("mousedown", "1")
        self.game.frames()
        self.game.point(1279, 0)
        self.game.point(*AWAY)
        self.game.xdotool("mouseup", "1")
        self.game.frames()
        self.assertGreater(len(self.new_cells(before, ROAD_OF)), 3)

    def test_zoned_land_by_a_street_grows(self):
        self.game.press("r")
        self.game.drag(1, CENTRE, AWAY)
        self.game.press("z")
        self.game.drag(1, CENTRE, AWAY)
        save = self.game.saved()
        save.set_number("f", DEMAND, 1.0, 1.0, 1.0, 1.0)
        self.game.load(save)
        picture = self.game.picture()
        self.game.point(10, 700)
        self.game.press("v", "3")
        deadline = time.monotonic() + 240
        while len(self.game.saved().buildings()) == len(save.buildings()):  # builders come on a day of their own
            self.assertLess(time.monotonic(), deadline, "nothing grew")
            time.sleep(1)
        self.assertGreater(self.game.picture().difference(picture), 0.3)


class TimeAndViews(unittest.TestCase):
    def setUp(self):
        self.screen = Screen().__enter__()
        self.game = Game(self.screen, size=0, **SCENE)
        self.game.point(*CENTRE)

    def tearDown(self):
        self.game.__exit__()
        self.screen.__exit__()

    def hours_in_a_second(self):
        first, start = self.game.saved(), time.monotonic()
        time.sleep(1.5)
        second, end = self.game.saved(), time.monotonic()
        return (second.number("f", HOUR) - first.number("f", HOUR)) / (end - start)

    def test_digits_and_space_set_the_speed(self):
        self.assertEqual(self.hours_in_a_second(), 0)
        self.game.press("1")
        slow = self.hours_in_a_second()
        self.assertGreater(slow, 0)
        self.game.press("3")
        self.assertGreater(self.hours_in_a_second(), 1.8 * slow)
        self.game.press("2")
        self.assertGreater(self.hours_in_a_second(), 0)
        self.game.press("space")
        self.assertEqual(self.hours_in_a_second(), 0)
        self.game.press("space")
        self.assertGreater(self.hours_in_a_second(), 0)

    def test_tab_shows_one_overlay_after_the_other(self):
        pictures = [self.game.picture()]
        for _ in range(6):
            self.game.press("Tab")
            pictures.append(self.game.settled_picture(0.2))
        for first, second in zip(pictures, pictures[1:]):
            self.assertGreater(first.difference(second), 1.0)
        self.assertLess(pictures[0].difference(pictures[6]), 1.0)

    def test_escape_pauses_and_f9_leaves_the_pause(self):
        before = self.game.saved()
        self.game.in_play = False
        self.game.press("Escape", "r")
        self.game.drag(1, CENTRE, AWAY)
        self.game.press("Escape")
        self.game.in_play = True
        self.assertEqual(self.game.saved().cells_where(ROAD_OF), before.cells_where(ROAD_OF))
        self.game.in_play = False
        self.game.press("Escape")
        self.game.in_play = True
        self.game.press_load()
        self.game.press("r")
        self.game.drag(1, CENTRE, AWAY)
        self.assertGreater(len(self.game.saved().cells_where(ROAD_OF)), len(before.cells_where(ROAD_OF)))

    def test_a_broken_save_leaves_the_city_as_it_is(self):
        before = self.game.saved()
        with open(self.game.save_path, "wb") as file:
            file.write(before.data[:100000])
        self.game.press_load()
        self.assertEqual(self.game.saved().data, before.data)

    def test_resized_and_covered_windows_are_survived(self):
        for width, height in ((1, 1), (200, 900), (1280, 100), (1280, 720)):
            self.game.xdotool("windowsize", self.game.window, str(width), str(height))
            self.game.frames()
        self.game.xdotool("windowunmap", self.game.window)
        time.sleep(0.5)
        self.game.xdotool("windowmap", "--sync", self.game.window)
        self.game.xdotool("windowfocus", "--sync", self.game.window)
        self.game.frames()
        self.assertIsNone(self.game.process.poll())
        self.assertEqual(len(self.game.saved().data[:4]), 4)


if __name__ == "__main__":
    unittest.main()
