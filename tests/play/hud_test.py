"""The game is played by mouse alone in the real window: seen in the picture, and found in the saved file. F5 and F9
are the test's own instruments; the player's hand does not touch the keys."""
import os
import unittest

from driver import Game, Save, Screen, wait_until
from mouse import (BROWN, BUDGET, CATEGORIES, CHART, CLOSE, DISTRICT_TAX, DISTRICTS, END, FINANCES, GOLD, GREY,
                   LAUNCHER, MENU, OPTIONS, PANEL_TITLE, PAUSE, RESIDENTIAL_TAX_UP, SMOKE_FREE, SPEEDS, TITLE, TOOLS,
                   TOUR_NEXT, Mouse, difference)

WINDOW = (960, 540)  # the smallest in which nothing is squeezed
# Places on the level land in the middle of every new map, in the first view of it.
STREET, HOMES, DISTRICT_LAND = ((0, 300), (-140, 300)), ((0, 360), (-90, 400)), ((0, 220), (90, 230))
BELOW_THE_PANEL = (-450, 557)  # the lower edge of the sixth service tool
PLANT, PUMP, NOWHERE = (140, 400), (170, 300), (0, 560)

HOUR, MONEY, TAX_RATE, DISTRICT_TAXES, DISTRICT_POLICIES = 16, 20, 112, 160, 196  # offsets in the save
MISSION, MISSIONS_DONE, BANKRUPT = 205, 209, 210
STREET_CELL, RESIDENTIAL, GAS_POWER_PLANT, WATER_PUMP = 1, 1, 10, 13
INCOME, EXPENSE = (102, 204, 115), (230, 102, 89)  # bars of the chart
WON, LOST = (242, 199, 92), (242, 115, 102)  # words
SAME_VIEW = 3.0  # mean difference of a colour channel, over some seconds of traffic
VERDICT = (-200, 192, 400, 36)  # and its size


class ByMouse(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.screen = Screen().__enter__()
        cls.addClassCleanup(cls.screen.__exit__)

    def start(self, **scene):
        self.game = Game(self.screen, window=WINDOW, LANG="C", LANGUAGE="en", **scene)
        self.addCleanup(self.game.__exit__)
        self.mouse = Mouse(self.game)

    def click(self, *places):
        for place in places:
            self.mouse.click(place)
            self.game.frames()

    def cells(self, test):
        return self.game.saved().cells_where(test)

    # --- A whole game

    def test_a_whole_game_from_the_launcher_and_back(self):
        self.start()
        self.through_launcher_title_and_options()
        self.mouse.click(TITLE["new"])
        self.take_the_tour()
        self.game.in_play = True
        self.click(FINANCES, SPEEDS[3])
        wait_until(lambda: self.mouse.shows(FINANCES, GOLD, 50) and self.mouse.shows(SPEEDS[3], GOLD, 10), "no chart")
        empty_chart = self.mouse.part(CHART)
        self.click(FINANCES)

        self.build_streets_and_zones()
        self.build_power_and_water()
        self.inspect_the_power_plant()
        self.raise_a_tax()
        self.rule_a_district()
        self.see_the_chart_move(empty_chart)
        save = self.save_leave_and_come_back()
        self.take_the_city_up_in_another_run(save)

    def through_launcher_title_and_options(self):
        self.mouse.wait_for(LAUNCHER["open"], GOLD)
        self.mouse.open_title()
        self.mouse.wait_for(TITLE["continue"], GREY)
        self.mouse.click(TITLE["settings"])
        self.mouse.wait_for(OPTIONS["back"], GOLD)
        self.mouse.click(OPTIONS["music"])
        wait_until(lambda: self.written("musicVolume=75"), "the option is not saved")
        self.mouse.click(OPTIONS["back"])
        self.mouse.wait_for(TITLE["new"], GOLD)

    def take_the_tour(self):
        """Every first city begins with it."""
        for step, place in enumerate(TOUR_NEXT):
            self.mouse.wait_for(place, GOLD, 70)
            text = (place[0] - 370, place[1] - 133, 440, 90)
            before = self.mouse.letters(text)
            self.assertGreater(sum(before), 100)
            if step == 1:
                self.mouse.click(CATEGORIES["roads"])  # what the card advises
                self.mouse.wait_for(CATEGORIES["roads"], GOLD)
            self.assertFalse(self.written("tutorialDone=1"))
            self.mouse.click(place)
            wait_until(lambda: difference(self.mouse.letters(text), before) > 0.01, f"card {step} stays")
        wait_until(lambda: self.written("tutorialDone=1"), "the tour does not end")
        self.mouse.wait_for_end_of(TOUR_NEXT[-1], GOLD, 70)

    def build_streets_and_zones(self):
        self.click(CATEGORIES["roads"], TOOLS[0])
        self.mouse.drag(*STREET)
        self.assertGreater(len(self.cells(lambda zone, terrain, road, *_: road == STREET_CELL)), 3)
        self.click(CATEGORIES["zones"], TOOLS[2], TOOLS[0])
        wait_until(lambda: self.mouse.shows(CATEGORIES["zones"], GOLD) and self.mouse.shows(TOOLS[0], GOLD), "no tool")
        self.mouse.drag(*HOMES)
        self.assertGreater(len(self.cells(lambda zone, *_: zone == RESIDENTIAL)), 1)

    def build_power_and_water(self):
        self.click(CATEGORIES["utilities"], TOOLS[0], PLANT)
        self.click(TOOLS[3], PUMP)
        kinds = {kind for kind, _, _ in self.game.saved().buildings()}
        self.assertLessEqual({GAS_POWER_PLANT, WATER_PUMP}, kinds)

    def inspect_the_power_plant(self):
        self.click(CATEGORIES["select"], NOWHERE, CLOSE)
        self.game.frames()
        overview = self.mouse.letters(PANEL_TITLE)
        self.assertGreater(sum(overview), 20)
        self.click(PLANT)
        wait_until(lambda: difference(self.mouse.letters(PANEL_TITLE), overview) > 0.02, "no inspector")
        self.click(CLOSE)
        wait_until(lambda: self.mouse.letters(PANEL_TITLE) == overview, "the inspector stays")

    def raise_a_tax(self):
        self.click(BUDGET, RESIDENTIAL_TAX_UP, RESIDENTIAL_TAX_UP)
        self.assertEqual(self.game.saved().number("i", TAX_RATE), 120)
        self.click(BUDGET)

    def rule_a_district(self):
        self.click(CATEGORIES["districts"], DISTRICTS[5])
        self.mouse.drag(*DISTRICT_LAND)
        self.click(DISTRICT_TAX, SMOKE_FREE)
        save = self.game.saved()
        self.assertGreater(len(save.cells_where(lambda zone, terrain, road, district, *_: district == 5)), 1)
        self.assertEqual(save.number("i", DISTRICT_TAXES + 4 * 5), 2)
        self.assertEqual(save.number("B", DISTRICT_POLICIES + 5), 1)

    def see_the_chart_move(self, empty):
        self.assertEqual(self.bars(empty), 0)
        self.click(FINANCES)
        wait_until(lambda: self.bars(self.mouse.part(CHART)) > 100, "no day is drawn into the chart", patience=300)

    def bars(self, chart):
        return sum(pixel in (INCOME, EXPENSE) for pixel in chart)

    def save_leave_and_come_back(self):
        self.click(SPEEDS[0])
        before = self.game.saved()
        os.remove(self.game.save_path)
        self.game.in_play = False
        self.mouse.click(MENU)
        self.mouse.wait_for(PAUSE["load"], BROWN, 140)
        self.mouse.click(PAUSE["save"])
        wait_until(self.game.save_is_whole, "nothing is saved")
        self.assertEqual(Save(self.game.save_path).data, before.data)
        self.mouse.click(PAUSE["quit"])
        self.mouse.wait_for(TITLE["new"], GOLD)
        self.mouse.wait_for(TITLE["continue"], BROWN)
        self.mouse.click(TITLE["continue"])
        self.mouse.wait_for_end_of(TITLE["new"], GOLD)
        self.game.in_play = True
        again = self.game.saved()
        self.assertEqual(again.buildings(), before.buildings())
        self.assertEqual(again.data[MONEY:Save.CELLS], before.data[MONEY:Save.CELLS])

        self.game.in_play = False
        self.mouse.click(MENU)
        self.mouse.wait_for(PAUSE["resume"], GOLD, 140)
        self.mouse.click(PAUSE["quit"])
        self.mouse.wait_for(TITLE["new"], GOLD)
        self.mouse.click(TITLE["quit"])
        self.assertEqual(self.game.process.wait(60), 0)
        return again

    def take_the_city_up_in_another_run(self, save):
        """On a computer whose player has not taken the tour."""
        self.start(save=save.data)
        save.path = self.game.save_path
        self.mouse.wait_for(LAUNCHER["open"], GOLD)
        self.mouse.open_title()
        self.mouse.click(TITLE["continue"])
        self.mouse.wait_for(SPEEDS[1], GOLD, 10)
        wait_until(lambda: self.game.saved().number("f", HOUR) > save.number("f", HOUR), "time stands still")
        continued = self.game.picture()

        self.mouse.click(MENU)
        self.mouse.wait_for(PAUSE["quit"], BROWN, 140)
        self.mouse.click(PAUSE["quit"])
        self.mouse.wait_for(TITLE["new"], GOLD)
        self.mouse.click(TITLE["new"])
        self.mouse.wait_for(TOUR_NEXT[0], GOLD, 70)
        save.write()
        self.game.press_load()
        self.mouse.wait_for_end_of(TOUR_NEXT[0], GOLD, 70)
        wait_until(lambda: self.game.picture().difference(continued) < SAME_VIEW, "it was seen from elsewhere")

    def written(self, line):
        with open(self.game.settings_path) as file:
            return line + "\n" in file

    # --- What lies under a panel or a button

    def test_the_menu_under_the_options_is_dead(self):
        self.start(OV_DEMO="1")
        self.game.in_play = False
        self.mouse.click(MENU)
        self.mouse.wait_for(PAUSE["settings"], BROWN, 140)
        os.remove(self.game.save_path)
        self.mouse.click(PAUSE["settings"])
        self.mouse.wait_for(OPTIONS["back"], GOLD, 100)
        for row in ("save", "quit"):
            self.mouse.click((-60, PAUSE[row][1]))  # on the options' own empty space
        self.mouse.click(OPTIONS["back"])
        self.mouse.wait_for(PAUSE["resume"], GOLD, 140)
        self.assertFalse(os.path.exists(self.game.save_path))

    def test_what_hangs_over_the_tool_panel_is_a_button_and_no_land(self):
        self.start(OV_DEMO="1", OV_STATE="focus=48:57,dist=140,speed=0,hour=12")
        self.click(CATEGORIES["services"])
        before = self.game.saved()
        self.click(BELOW_THE_PANEL)
        self.mouse.wait_for(TOOLS[5], GOLD)
        after = self.game.saved()
        self.assertEqual(after.buildings(), before.buildings())
        self.assertEqual(after.number("d", MONEY), before.number("d", MONEY))

    # --- Its ends

    def test_both_ends(self):
        self.start(OV_DEMO="1", OV_STATE="speed=0")
        city = self.game.saved()
        self.load(city, mission=6, done=1, bankrupt=0)
        self.mouse.wait_for(END["keep"], GOLD, 140)
        self.mouse.wait_for(END["new"], BROWN, 140)
        self.assertGreater(self.mouse.count(VERDICT, WON), 50)
        self.mouse.click(END["keep"])
        self.mouse.wait_for_end_of(END["new"], BROWN, 140)
        self.game.in_play = True
        self.assertEqual(self.game.saved().number("B", MISSIONS_DONE), 1)

        for way_out, done in (("menu", 0), ("new", 1)):  # in debt it is no metropolis any more
            self.load(city, mission=6 * done, done=done, bankrupt=1)
            self.mouse.wait_for(END["new"], GOLD, 140)
            self.assertFalse(self.mouse.shows(END["keep"], GOLD, 140))
            self.assertGreater(self.mouse.count(VERDICT, LOST), 50)
            self.mouse.click(END[way_out])
            if way_out == "menu":
                self.mouse.wait_for(TITLE["new"], GOLD)
                self.mouse.click(TITLE["new"])
            self.mouse.wait_for_end_of(TITLE["new"] if way_out == "menu" else END["new"], GOLD, 140)
            self.game.in_play = True
            self.assertEqual(self.game.saved().number("B", BANKRUPT), 0)
            self.assertEqual(self.game.saved().buildings(), [])

    def load(self, city, mission, done, bankrupt):
        city.set_number("i", MISSION, mission)
        city.set_number("B", MISSIONS_DONE, done)
        city.set_number("B", BANKRUPT, bankrupt)
        city.write()
        self.game.in_play = False
        self.game.press_load()


if __name__ == "__main__":
    unittest.main()
