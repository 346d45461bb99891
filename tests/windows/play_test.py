"""The real program under Wine, in a real window and by mouse alone: from the launcher to a laid street and a saved
game, which Linux then loads; and its picture beside the one on Linux."""
import os
import shutil
import unittest

from windows_game import HERE, LINUX_BIN, PROGRAM, WindowsTest, driver, is_golden, linux, press, wait_for, wait_until
from hud_test import STREET
from mouse import CATEGORIES, LAUNCHER, MENU, PAUSE, TITLE, TOOLS, in_window

SCENE = dict(OV_DEMO="1", OV_STATE="speed=0,focus=48:48,dist=120,hour=12")


def streets(path):
    return len(driver.Save(path).cells_where(lambda zone, terrain, road, *_: road == 1))


class Play(WindowsTest):
    def pick(self, game, place):
        press(game, place)
        wait_for(game, place, is_golden)

    def test_from_the_launcher_to_a_street_and_a_saved_game(self):
        with driver.Game(self.screen, home=self.folder, settings=dict(driver.PLAIN, tutorialDone=1)) as game:
            press(game, LAUNCHER["open"])
            press(game, TITLE["new"], is_golden)
            wait_for(game, CATEGORIES["select"], is_golden)  # a city, whose land is level in the middle
            self.pick(game, CATEGORIES["roads"])
            self.pick(game, TOOLS[0])
            game.in_play = True  # F5 tells when the hand's move has had its effect
            size = game.geometry()
            game.drag(1, *(in_window(end, *size) for end in STREET))
            game.in_play = False
            os.remove(game.save_path)
            game.click(*in_window(MENU, *size))
            press(game, PAUSE["save"])
            wait_until(game.save_is_whole, "nothing was saved")
            laid = streets(game.save_path)
            press(game, PAUSE["quit"])
            press(game, TITLE["quit"])
            self.assertEqual(game.process.wait(60), 0)

        self.assertGreater(laid, 3)
        script = os.path.join(self.folder, "script")
        with open(script, "w") as file:
            file.write(f"load {game.save_path}\ntick 1\nstats\n")
        answers = linux("orlavane-sim", script).decode()
        self.assertIn("load true", answers)
        self.assertIn(f'"streetCells":{laid},', answers)

    def picture_of(self, program, city):
        """Of the window in which a saved city was loaded."""
        with driver.Game(self.screen, settings=dict(resolution=0), program=program, **SCENE) as game:
            game.sync()
            wait_until(lambda: self.load(game, city), "the city was not loaded")
            return game.settled_picture(0.5)

    def load(self, game, city):
        shutil.copyfile(city, game.save_path)
        game.press_load()
        return game.saved().buildings() == driver.Save(city).buildings()

    def test_the_picture_is_that_of_linux(self):
        script, city = os.path.join(self.folder, "script"), os.path.join(self.folder, "city.ovw")
        with open(os.path.join(HERE, "../../examples/demo.txt")) as town, open(script, "w") as file:
            file.write(town.read() + f"save {city}\n")
        linux("orlavane-sim", script)
        theirs = self.picture_of(PROGRAM, city)
        ours = self.picture_of(os.path.join(LINUX_BIN, "Orlavane"), city)
        self.assertEqual((theirs.width, theirs.height), (ours.width, ours.height))
        self.assertLess(theirs.difference(ours), 1.0)  # cars drive, and the water moves


if __name__ == "__main__":
    unittest.main()
