"""A city is built with the real mouse and keyboard, seen in the picture and found in the saved file."""
import time
import unittest

from driver import Game, Save, Screen, wait_until

# South of the demo city's streets the land is free and level, and the middle of the window shows its middle.
SCENE = dict(OV_DEMO="1", OV_STATE="focus=48:57,dist=140,speed=0,hour=12,district=3")
WINDOW = (640, 360)
CENTRE = (320, 180)
AWAY = (200, 180)  # some cells west and south, away from the streets
SPEEDS = [(521 + 30 * speed, 16) for speed in range(4)]  # near the left edges of the buttons
RESUME, RESUME_EDGE = (320, 124), (230, 124)
GOLD, GOLD_UNDER_THE_POINTER = (204, 148, 51), (211, 163, 80)
GRASS, WATER = 0, 3
ZONE_FIELD, TERRAIN_FIELD, ROAD_FIELD, TREES_FIELD = 0, 1, 2, 4
HOUR, MONEY, DEMAND = 16, 20, 96  # offsets in the save

ROAD_OF = lambda zone, terrain, road, *_: road
ZONE_OF = lambda zone, *_: zone


class InTheDemoCity(unittest.TestCase):
    """One game for all tests of a class: each begins with the same city."""

    @classmethod
    def setUpClass(cls):
        cls.screen = Screen().__enter__()
        cls.addClassCleanup(cls.screen.__exit__)
        cls.game = Game(cls.screen, window=WINDOW, **SCENE)
        cls.addClassCleanup(cls.game.__exit__)
        cls.city = cls.game.saved()

    def setUp(self):
        self.game.in_play = True
        self.game.load(self.city)
        self.game.press("v")
        self.game.point(*CENTRE)

    def centre_cell(self):
        """The cell under the middle of the window, found by zoning it."""
        self.click_with("i")
        after = self.game.saved()
        changed = [cell for cell in after.cells_where(ZONE_OF) if self.city.cell(*cell) != after.cell(*cell)]
        self.assertEqual(len(changed), 1)
        self.click_with("x")
        return changed[0]

    def click_with(self, key):
        """A tool and a click in the middle; a frame reads the keys first."""
        self.game.xdotool("key", key)
        self.game.click(*CENTRE)

    def new_cells(self, test):
        return [cell for cell in self.game.saved().cells_where(test) if not test(*self.city.cell(*cell))]


class Building(InTheDemoCity):
    def test_a_street_is_laid_by_dragging(self):
        picture = self.game.settled_picture(0.2)
        self.game.press("r")
        self.game.drag(1, CENTRE, AWAY)
        laid = self.new_cells(ROAD_OF)
        self.assertGreater(len(laid), 3)
        xs, ys = {x for x, _ in laid}, {y for _, y in laid}
        self.assertEqual((len(xs), len(ys)), (max(xs) - min(xs) + 1, max(ys) - min(ys) + 1))  # without a gap
        self.assertEqual(self.game.saved().number("d", MONEY), self.city.number("d", MONEY) - 80 * len(laid))
        self.game.press("v")
        wait_until(lambda: self.game.picture().difference(picture) > 0.3, "the street is not seen")

    def test_zones_are_drawn_by_dragging_and_cleared_by_the_bulldozer(self):
        for key, zone in (("z", 1), ("c", 2), ("o", 3), ("i", 4)):
            self.game.press(key)
            self.game.drag(1, CENTRE, AWAY)
            zoned = self.new_cells(ZONE_OF)
            self.assertGreater(len(zoned), 3)
            self.assertEqual({self.game.saved().cell(*cell)[0] for cell in zoned}, {zone})
        self.game.press("x")
        self.game.drag(1, CENTRE, AWAY)
        self.assertEqual(self.new_cells(ZONE_OF), [])

    def test_nothing_is_built_on_water(self):
        x, y = self.centre_cell()
        save = self.game.saved()
        save.set_cell(x, y, TERRAIN_FIELD, WATER)
        self.game.load(save)
        for key in "ryzp":
            self.click_with(key)
        after = self.game.saved()
        self.assertEqual(after.cell(x, y)[:3], (0, WATER, 0))
        self.assertEqual(after.buildings(), save.buildings())
        self.assertEqual(after.number("d", MONEY), save.number("d", MONEY))

    def test_every_building_key_places_its_kind(self):
        x, y = self.centre_cell()
        save = self.game.saved()
        save.set_number("d", MONEY, 1e6)
        self.game.load(save)
        for kind, key in enumerate("lfhkpjgmnt", start=4):
            self.click_with(key)
            self.assertEqual(set(self.game.saved().buildings()) - set(save.buildings()), {(kind, x, y)}, key)
            self.click_with("x")

    def test_avenue_bus_stop_and_bulldozer(self):
        x, y = self.centre_cell()
        for key, (road, stop) in (("y", (2, 0)), ("b", (2, 1)), ("x", (2, 0)), ("x", (0, 0))):  # the stop goes first
            self.click_with(key)
            self.assertEqual(self.game.saved().cell(x, y)[2:6:3], (road, stop))

    def test_select_changes_nothing(self):
        before = self.game.saved()
        self.game.press("r", "v")
        self.game.drag(1, CENTRE, AWAY)
        self.assertEqual(self.game.saved().data, before.data)

    def test_a_district_is_painted(self):
        self.game.press("u")
        self.game.drag(1, CENTRE, AWAY)
        self.assertGreater(len(self.new_cells(lambda *cell: cell[3] == 3)), 3)

    def test_zoned_land_by_a_street_grows(self):
        """So much of it that a day without a single builder is out of the question."""
        self.game.press("r")
        self.game.drag(1, CENTRE, AWAY)
        self.game.press("z")
        self.game.drag(1, CENTRE, AWAY)
        save = self.game.saved()
        built = {(x, y) for _, x, y in save.buildings()}
        for x, y in save.cells_where(lambda zone, terrain, road, district, trees, stop: terrain == GRASS):
            if y > 56 and not (x, y) in built and not save.cell(x, y)[2]:
                save.set_cell(x, y, ROAD_FIELD if x % 3 == 0 else ZONE_FIELD, 1)
                save.set_cell(x, y, TREES_FIELD, 0)
        save.set_number("f", DEMAND, 1.0, 1.0, 1.0, 1.0)
        self.game.load(save)
        self.game.press("3")
        wait_until(lambda: len(self.game.saved().buildings()) > len(built), "nothing grows", patience=300)
        self.game.press("space")

    # --- Time and views

    def shows_speed(self, speed):
        picture = self.game.picture()
        return [golden(picture, button) for button in SPEEDS] == [other == speed for other in range(4)]

    def hour(self):
        return self.game.saved().number("f", HOUR)

    def test_digits_and_space_set_the_speed(self):
        for key, speed in (("1", 1), ("3", 3), ("2", 2), ("space", 0), ("space", 1), ("space", 0)):
            self.game.press(key)
            wait_until(lambda: self.shows_speed(speed), f"{key} is not seen to set speed {speed}")
            before = self.hour()
            self.game.frames(2)
            self.assertEqual(self.hour() > before, speed > 0, key)

    def test_tab_shows_one_overlay_after_the_other(self):
        pictures = [self.game.settled_picture(0.2)]
        for _ in range(6):
            self.game.press("Tab")
            pictures.append(self.game.settled_picture(0.2))
        for first, second in zip(pictures, pictures[1:]):
            self.assertGreater(first.difference(second), 1.0)
        self.assertLess(pictures[0].difference(pictures[6]), 1.0)

    def test_escape_pauses_and_f9_leaves_the_pause(self):
        self.pause()
        self.game.press("r")
        self.game.drag(1, CENTRE, AWAY)
        wait_until(lambda: golden(self.game.picture(), RESUME_EDGE), "the pointer does not leave the menu")
        self.game.point(*RESUME)
        self.wait_for_the_menus_answer()
        self.game.press("Escape")
        self.game.in_play = True
        self.assertEqual(self.game.saved().cells_where(ROAD_OF), self.city.cells_where(ROAD_OF))
        self.pause()
        self.game.in_play = True
        self.game.press_load()
        self.game.press("r")
        self.game.drag(1, CENTRE, AWAY)
        self.assertGreater(len(self.new_cells(ROAD_OF)), 3)

    def pause(self):
        self.game.in_play = False
        self.game.press("Escape")
        self.game.point(*RESUME)
        self.wait_for_the_menus_answer()

    def wait_for_the_menus_answer(self):
        """And with it for the end of all that came before."""
        wait_until(lambda: golden(self.game.picture(), RESUME_EDGE, GOLD_UNDER_THE_POINTER), "no answer")

    def test_a_broken_save_leaves_the_city_as_it_is(self):
        before = self.game.saved()
        with open(self.game.save_path, "wb") as file:
            file.write(before.data[:100000])
        self.game.press_load()
        self.assertEqual(self.game.saved().data, before.data)


class WhatMovesTheView(InTheDemoCity):
    def test_of_two_drags_in_one_breath_neither_is_lost(self):
        first, second = (CENTRE, AWAY), ((320, 230), (230, 240))
        self.game.press("z")
        self.game.drag(1, *first)
        self.game.drag(1, *second)
        expected = self.new_cells(ZONE_OF)
        self.assertGreater(len(expected), 6)
        self.game.load(self.city)
        self.game.point(*first[0])
        self.game.xdotool("mousedown", "1")
        self.game.point(*first[1])
        self.game.xdotool("mouseup", "1", "mousemove", "--window", self.game.window, *map(str, second[0]),
                          "mousedown", "1", "mousemove", "--window", self.game.window, *map(str, second[1]),
                          "mouseup", "1", "mousemove", "--window", self.game.window, *map(str, CENTRE))
        self.game.frames(4)
        self.assertEqual(self.new_cells(ZONE_OF), expected)

    def test_a_drag_that_leaves_the_window_goes_on_when_it_comes_back(self):
        self.game.press("r")
        self.game.xdotool("mousedown", "1")
        self.game.frames()
        self.game.point(WINDOW[0] - 1, 0)
        self.game.point(*AWAY)
        self.game.xdotool("mouseup", "1")
        self.game.frames()
        self.assertGreater(len(self.new_cells(ROAD_OF)), 3)

    def test_windows_of_any_size_and_covered_ones_are_survived(self):
        wild = self.game.saved()
        wild.set_number("d", MONEY, float("nan"), 1e300, float("-inf"))
        self.game.load(wild)
        self.game.press("Tab")
        for width, height in ((1, 1), (200, 900), (8000, 300), WINDOW):
            self.game.resize(width, height)
        self.game.press(*["Tab"] * 5)
        self.game.xdotool("windowunmap", self.game.window)
        time.sleep(0.5)
        self.game.xdotool("windowmap", "--sync", self.game.window)
        self.game.focus(self.game.window)
        self.game.frames()


def golden(picture, place, gold=GOLD):
    return max(abs(a - b) for a, b in zip(picture.pixel(*place), gold)) < 4


if __name__ == "__main__":
    unittest.main()
