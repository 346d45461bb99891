"""A player who has nothing but a mouse and two eyes: what stands where on the screens, and how it is pressed and
seen. Places are from the middle of the window's top edge, in a window 720 high; the layout grows with the height."""
from driver import wait_until

LAUNCHER = {"update": (0, 372), "open": (0, 425), "files": (0, 478), "delete": (0, 531), "uninstall": (0, 584)}
FILES = {"folder": (-145, 628), "back": (145, 628)}
QUESTION = {"yes": (-114, 452), "no": (114, 452)}
TITLE = {"new": (0, 398), "continue": (0, 458), "tutorial": (0, 518), "settings": (0, 578), "quit": (0, 638)}
OPTIONS = {name: (149, 160 + 50 * row) for row, name in enumerate(
    ("resolution", "display", "graphics", "vsync", "fps", "music", "effects", "language"))}
OPTIONS["back"] = (0, 626)
PAUSE = {name: (0, 286 + 54 * row) for row, name in enumerate(("resume", "save", "load", "settings", "quit"))}
END = {"keep": (0, 445), "new": (0, 503), "menu": (0, 561)}

# The interface of the game, in a window of 16 to 9.
MENU, SPEEDS = (-588, 22), [(492 + 40 * speed, 22) for speed in range(4)]
BUDGET, FINANCES = (107, 22), (204, 22)
CATEGORIES = {name: (-514, 79 + 38 * row) for row, name in enumerate(
    ("select", "roads", "zones", "services", "utilities", "districts", "bulldoze"))}
TOOLS = [(-514, 353 + 38 * row) for row in range(6)]
DISTRICTS = [None] + [(-597 + 55 * (i % 4), 427 + 34 * (i // 4)) for i in range(8)]
CLOSE = (604, 78)
RESIDENTIAL_TAX_UP = (601, 125)
DISTRICT_TAX, SMOKE_FREE = (541, 198), (541, 248)
LAND = (-310, 20, 40, 680)  # where it shows around and through the launcher's panel, with its size
TOUR_NEXT = [(150, 432), (54, 247), (54, 247), (54, 303), (150, 291), (-218, 541), (150, 432)]
PANEL_TITLE, CHART = (348, 64, 220, 30), (348, 214, 268, 200)  # and their sizes

GOLD, BROWN, GREY = (204, 148, 51), (77, 66, 56), (71, 71, 74)  # buttons: primary, normal, disabled


def in_window(place, width, height):
    return round(width / 2 + place[0] * height / 720), round(place[1] * height / 720)


class Mouse:
    def __init__(self, game):
        self.game = game

    def pixel(self, place):
        return in_window(place, *self.game.geometry())

    def click(self, place):
        self.game.xdotool("mousemove", "--window", self.game.window, *map(str, self.pixel(place)), "click", "1")

    def drag(self, start, end):
        self.game.drag(1, self.pixel(start), self.pixel(end))

    def shows(self, place, colour, half_width=108):
        """Whether a button of that colour stands there, the pointer on it or not."""
        picture = self.game.picture()
        left_of_label = in_window((place[0] - 0.85 * half_width, place[1]), picture.width, picture.height)
        seen = picture.pixel(*left_of_label)
        return like(seen, colour) or like(seen, [channel + 0.14 * (255 - channel) for channel in colour])

    def wait_for_frames(self, count=3):
        """Until the land behind the launcher has turned so often, and all that came before has been read for
        certain."""
        for _ in range(count):
            before = self.part(LAND)
            wait_until(lambda: self.part(LAND) != before, "the picture stands")

    def wait_for(self, place, colour, half_width=108):
        wait_until(lambda: self.shows(place, colour, half_width), f"no button of {colour} at {place}")

    def wait_for_end_of(self, place, colour, half_width=108):
        wait_until(lambda: not self.shows(place, colour, half_width), f"the button at {place} stays")

    def part(self, rect):
        """The pixels of a place on the screen, row by row."""
        picture = self.game.picture()
        left, top = in_window(rect[:2], picture.width, picture.height)
        right, bottom = in_window((rect[0] + rect[2], rect[1] + rect[3]), picture.width, picture.height)
        return [picture.pixel(x, y) for y in range(top, bottom) for x in range(left, right)]

    def count(self, rect, colour):
        return sum(like(pixel, colour, 7) for pixel in self.part(rect))

    def letters(self, rect):
        """A one for each bright pixel of a dark place."""
        return [max(pixel) > 150 for pixel in self.part(rect)]

    def open_title(self):
        self.click(LAUNCHER["open"])
        self.wait_for(TITLE["new"], GOLD)


def like(first, second, tolerance=3):
    return max(abs(a - b) for a, b in zip(first, second)) <= tolerance


def difference(first, second):
    """Share of the pixels of two parts that are not the same."""
    return sum(a != b for a, b in zip(first, second)) / len(first)
