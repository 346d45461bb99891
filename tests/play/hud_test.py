"""The game is played by mouse alone in the real window: seen in the picture, and found in the saved file. F5 and F9
are the test's own instruments; the player's hand does not touch the keys."""
import os
import tempfile
import time
import unittest

from driver import Game, Screen

# The demo city on a day that stands still; south of its streets the land is free and level.
SCENE = dict(OV_DEMO="1", OV_STATE="focus=48:57,dist=100,speed=0,hour=12")
FREE, WEST, SOUTH = (640, 360), (440, 360), (640, 480)

MONEY, TAX_RATE, DISTRICT_TAX, DISTRICT_POLICY = 20, 112, 160, 196  # offsets in the save
MISSION, MISSIONS_DONE, BANKRUPT = 205, 209, 210
GAS_POWER_PLANT, WATER_PUMP = 10, 13

# What stands where in a window of 1280 by 720.
SELECT, ROADS, ZONES, _, UTILITIES, DISTRICTS, BULLDOZE = [(126, 79 + 38 * i) for i in range(7)]
TOOLS = [(126, 353 + 38 * i) for i in range(6)]
DISTRICT_5 = (43, 461)
MENU, FASTEST = (52, 22), (1252, 22)
BUDGET, FINANCES = (757, 22), (850, 22)
RESIDENTIAL_TAX_UP = (1241, 125)
CLOSE = (1244, 78)
DISTRICT_TAX_BUTTON, SMOKE_FREE = (1181, 198), (1181, 248)
SAVE_GAME, QUIT_TO_TITLE = (640, 340), (640, 502)
KEEP_BUILDING, NEW_CITY = (640, 445), (640, 503)
RIGHT_PANEL, CHART = (974, 54, 296, 572), (988, 214, 268, 200)
GOLD, GOLD_UNDER_THE_POINTER = (204, 148, 51), (211, 163, 80)
GREEN, RED = (102, 204, 115), (230, 102, 89)


def count(picture, rect, colour):
    """Pixels of a colour in every second row of a rectangle."""
    left, top, width, height = rect
    return sum(max(abs(a - b) for a, b in zip(picture.pixel(x, y), colour)) < 8
               for y in range(top, top + height, 2) for x in range(left, left + width))


def difference(first, second, rect):
    """Share of the pixels in every fourth row of a rectangle that are not the same."""
    left, top, width, height = rect
    points = [(x, y) for y in range(top, top + height, 4) for x in range(left, left + width, 3)]
    return sum(first.pixel(*point) != second.pixel(*point) for point in points) / len(points)


class ByMouse(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = Screen().__enter__()

    @classmethod
    def tearDownClass(cls):
        cls.screen.__exit__()

    def start(self, **scene):
        home = tempfile.TemporaryDirectory()
        self.addCleanup(home.cleanup)
        preferences = os.path.join(home.name, ".local/share/Orlavane/Orlavane")
        os.makedirs(preferences)
        with open(os.path.join(preferences, "settings.ini"), "w") as file:
            file.write("resolution=0\nquality=0\n")
        game = Game(self.screen, home=home.name, **{**SCENE, **scene})
        self.addCleanup(game.__exit__)
        game.point(*FREE)
        return game

    def start_rich(self):
        game = self.start()
        save = game.saved()
        save.set_number("d", MONEY, 1e6)
        game.load(save)
        return game

    def lit(self, game, place, half_width=108):
        """Whether the button there is a golden one."""
        x, y = place
        picture = game.picture()
        body = (x - half_width + 8, y - 12, 30, 24)
        return max(count(picture, body, gold) for gold in (GOLD, GOLD_UNDER_THE_POINTER)) > 100

    def test_a_town_is_built(self):
        game = self.start_rich()
        before = game.saved()
        game.click(*ROADS)
        game.click(*TOOLS[0])
        game.drag(1, FREE, WEST)
        streets = game.saved().cells_where(lambda zone, terrain, road, *_: road == 1)
        self.assertGreater(len(streets), len(before.cells_where(lambda zone, terrain, road, *_: road == 1)) + 2)

        game.click(*ZONES)
        game.click(*TOOLS[3])
        self.wait_until(lambda: self.lit(game, ZONES) and self.lit(game, TOOLS[3]))
        game.drag(1, (560, 400), (560, 430))
        industry = lambda zone, *_: zone == 4
        self.assertGreater(len(game.saved().cells_where(industry)), len(before.cells_where(industry)))

        game.click(*UTILITIES)
        game.click(*TOOLS[0])
        game.click(*SOUTH)
        game.click(*TOOLS[3])
        game.click(SOUTH[0] + 150, SOUTH[1])
        new = {kind for kind, _, _ in set(game.saved().buildings()) - set(before.buildings())}
        self.assertEqual(new, {GAS_POWER_PLANT, WATER_PUMP})

        game.click(*SELECT)
        overview = game.settled_picture(0.2)
        game.click(*SOUTH)  # the power plant is inspected
        self.wait_until(lambda: difference(game.picture(), overview, RIGHT_PANEL) > 0.05)
        game.click(*CLOSE)
        self.wait_until(lambda: difference(game.picture(), overview, RIGHT_PANEL) < 0.02)

    def test_the_city_is_governed(self):
        game = self.start()
        game.click(*FINANCES)
        chart = game.settled_picture(0.2)
        self.assertGreater(count(chart, CHART, GREEN), 100)
        self.assertGreater(count(chart, CHART, RED), 100)
        game.click(*FASTEST)

        game.click(*BUDGET)
        game.click(*RESIDENTIAL_TAX_UP)
        game.click(*RESIDENTIAL_TAX_UP)
        self.assertEqual(game.saved().number("i", TAX_RATE), 120)
        game.click(*BUDGET)

        game.click(*DISTRICTS)
        game.click(*DISTRICT_5)
        game.drag(1, FREE, (600, 400))
        game.click(*DISTRICT_TAX_BUTTON)
        game.click(*SMOKE_FREE)
        after = game.saved()
        self.assertGreater(len(after.cells_where(lambda zone, terrain, road, district, *_: district == 5)), 1)
        self.assertEqual(after.number("i", DISTRICT_TAX + 4 * 5), 2)
        self.assertEqual(after.number("B", DISTRICT_POLICY + 5), 1)

        game.click(*FINANCES)
        deadline = time.monotonic() + 60
        while difference(game.picture(), chart, CHART) < 0.02:  # a day passes, and the chart moves by a column
            self.assertLess(time.monotonic(), deadline, "the chart does not move")
            time.sleep(0.5)

    def test_the_game_is_paused_saved_and_left(self):
        game = self.start()
        playing = game.picture()
        os.remove(game.save_path)
        game.in_play = False
        game.click(*MENU)
        self.wait_until(lambda: sum(game.picture().mean()) < 0.8 * sum(playing.mean()))
        game.click(*SAVE_GAME)
        self.wait_until(game.save_is_whole)
        game.click(*QUIT_TO_TITLE)
        self.wait_until(lambda: count(game.picture(), (0, 2, 1280, 8), (19, 18, 17)) == 0)  # the bar is gone
        self.assertIsNone(game.process.poll())

    def test_the_tour_to_its_end(self):
        game = self.start(OV_STATE=SCENE["OV_STATE"] + ",tutorial=0")
        cards = [(400, 255), (304, 70), (304, 70), (304, 126), (400, 114), (32, 364), (400, 255)]
        for step, (x, y) in enumerate(cards):
            if step == 1:
                game.click(*ROADS)  # what the card advises
                self.wait_until(lambda: self.lit(game, ROADS))
            button = (x + 390, y + 177)
            self.wait_until(lambda: self.lit(game, button, half_width=70))
            game.click(*button)
        self.wait_until(lambda: not self.lit(game, button, half_width=70))
        with open(os.path.join(game.preferences, "settings.ini")) as file:
            self.assertIn("tutorialDone=1\n", file.read())

    def test_both_ends(self):
        game = self.start()
        city = game.saved()
        city.set_number("i", MISSION, 6)
        city.set_number("B", MISSIONS_DONE, 1)
        city.write()
        game.in_play = False
        game.press_load()
        game.click(*KEEP_BUILDING)
        game.in_play = True
        self.assertEqual(game.saved().number("B", MISSIONS_DONE), 1)

        city.set_number("i", MISSION, 0)
        city.set_number("B", MISSIONS_DONE, 0)
        city.set_number("B", BANKRUPT, 1)
        city.write()
        game.in_play = False
        game.press_load()
        game.click(*NEW_CITY)
        game.in_play = True
        self.assertEqual(game.saved().number("B", BANKRUPT), 0)
        self.assertEqual(game.saved().buildings(), [])

    def wait_until(self, condition):
        deadline = time.monotonic() + 20
        while not condition():
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.1)


if __name__ == "__main__":
    unittest.main()
