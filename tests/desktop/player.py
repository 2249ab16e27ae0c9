"""A player's window, used as a person would use it: pointer and keys through the
X server, and pictures of what it shows."""
import pathlib
import subprocess
import time

from PIL import ImageChops, ImageStat

from display import PATIENCE, wait_for

RETURN_TIME = 1  # seconds until a dialog is told again to take what it has

BAR_MIDDLE = 21  # pixels from the window's lower edge
# Places on the bar.
PLAY, LOOP, SPEED, FULL = 62, -62, -117, -22


class Player:
    """`vexel play`, with words of its command line."""

    def __init__(self, display, vexel, *words):
        self.display = display
        self.said_in = display.folder / f"said-{len(display.players)}-{time.monotonic_ns()}"
        with open(self.said_in, "wb") as said:
            self.process = subprocess.Popen([vexel, "play", *map(str, words)], env=display.env,
                                            stdout=said, stderr=said)
        display.players.append(self)
        self.window = wait_for("the window", self._find)
        # A key that comes before the window manager has given it the keyboard is lost.
        self.wait_for_keyboard()

    def _find(self):
        assert self.process.poll() is None, "the player has ended"
        found = self.display.tool("search", "--all", "--onlyvisible", "--pid", self.process.pid,
                                  "--name", "Vexel$").split()
        return found[0] if found else None

    def said(self):
        """On standard output and standard error, so far."""
        return self.said_in.read_text(errors="replace")

    def has_keyboard(self):
        return self.display.tool("getactivewindow") == self.window

    def wait_for_keyboard(self):
        """No dialog is open."""
        wait_for("the keyboard in the player's window", self.has_keyboard)

    def title(self):
        return self.display.tool("getwindowname", self.window)

    def site(self):
        """The movie's place on the screen: left, top, width, height; None while
        there is no movie."""
        found = self.display.tool("search", "--onlyvisible", "--name", "^movie$").split()
        if not found:
            return None
        return self.display.place(found[0])

    def size(self):
        """The movie's, on the screen; (0, 0) while there is no movie."""
        place = self.site()
        return place[2:] if place else (0, 0)

    def shot(self):
        """The movie's picture as it stands on the screen, or the next one's if it goes."""
        left, top, width, height = wait_for("the movie", self.site)
        return self.display.picture().crop((left, top, left + width, top + height))

    def shows(self, expected, most=0):
        """Whether the movie's picture is this one, or not farther from it than `most`."""
        self.display.expected = expected
        same = self.site() is not None and far(self.shot(), expected) <= most
        if same:
            self.display.expected = None
        return same

    def until(self, what, expected, most=0):
        wait_for(what, lambda: self.shows(expected, most))

    def stands(self, seconds=1):
        """Whether the movie's picture stays as it is for so long."""
        before = self.shot()
        time.sleep(seconds)
        return far(self.shot(), before) == 0

    def at(self, x, y, movie):
        """A place of the movie, whose size is `movie`, on the screen."""
        left, top, width, height = wait_for("the movie", self.site)
        return left + round(x * width / movie[0]), top + round(y * height / movie[1])

    def click(self, x, y, movie, button=1):
        self.display.tool("mousemove", *self.at(x, y, movie))
        self.display.tool("click", button)

    def click_bar(self, x):
        """A place of the transport bar, in pixels from the left or, below 0, from the
        right; the bar comes where the pointer moves."""
        left, top, width, height = self.display.place(self.window)
        x, y = left + (x if x >= 0 else width + x), top + height - BAR_MIDDLE
        self.display.tool("mousemove", x, y - 2 * BAR_MIDDLE)
        wait_for("the bar", lambda: self._has_bar(left + 2, top + height - 2))
        self.display.tool("mousemove", x, y)
        time.sleep(0.3)  # the bar is seen before it takes a press
        self.display.tool("click", 1)

    def _has_bar(self, x, y):
        """In the theme's grey, which is lighter than most and is not white."""
        return 230 < min(self.display.picture().getpixel((x, y))) < 250

    def key(self, *keys):
        self.display.tool("key", *keys)

    def type(self, text):
        self.display.tool("type", "--delay", "12", text)

    def message(self):
        """Whether there is a message or a question: a bar in the theme's colour for
        those, below the menus."""
        place = self.display.place(self.window)
        if not place:
            return False
        red, _, blue = self.display.picture().getpixel((place[0] + 6, place[1] + 40))
        return red > blue + 8

    def answer(self):
        """Says yes to the question; the movie gives the keyboard back before."""
        self.key("Escape", "alt+o")

    def windows(self):
        """How many windows of the program there are on the screen: its own one,
        dialogs, menus, the movie's."""
        return len(self.display.tool("search", "--onlyvisible", "--class", "vexel-player").split())

    def press_for_menu(self, *keys):
        """Keys that open a menu; it is there and takes keys."""
        self.wait_for_keyboard()
        before = self.windows()
        self.key(*keys)
        wait_for("the menu", lambda: self.windows() > before)

    def active_name(self):
        return self.display.tool("getactivewindow", "getwindowname")

    def dialog(self, name):
        """Waits until a dialog is there and takes the keys; its window."""
        wait_for(f"the dialog {name}", lambda: self.active_name() == name)
        return self.display.tool("getactivewindow")

    def fill_in(self, name, text):
        """Puts a text into the only field of a dialog and accepts it. The system's file
        dialogs lose keys while they settle, and their completions take the first
        Return; they are not what is tested, so it is pressed again, and in the end
        the text is typed again, until the dialog has gone."""
        dialog = self.dialog(name)
        end = time.time() + PATIENCE
        while time.time() < end:
            self.key("ctrl+a")
            self.type(str(text))
            for _ in range(5):
                self.key("Return")
                try:
                    return wait_for("the dialog's end", self.has_keyboard, RETURN_TIME)
                except AssertionError:
                    active = self.display.tool("getactivewindow")
                    if active and active not in (dialog, self.window):
                        self.key("Escape")  # it complains of what it was given
                        break
            self.display.typed_again += 1
        raise AssertionError(f"the dialog {name} does not take {text}")

    def open(self, path):
        """By the dialog."""
        self.key("ctrl+o")
        self.fill_in("Open a movie", path)
        start = pathlib.Path(path).name
        wait_for("the movie's name in the title", lambda: self.title().startswith(start))

    def close(self):
        """Ends it; the case goes on without it."""
        self.process.terminate()
        self.wait_for_end()

    def wait_for_end(self):
        """Until it has ended by itself; its status."""
        status = self.process.wait(PATIENCE)
        self.display.players.remove(self)
        return status


def far(picture, other):
    """How far two pictures are apart: the mean of a channel, of 255. Pictures of
    different sizes have nothing in common."""
    if picture.size != other.size:
        return 255
    return sum(ImageStat.Stat(ImageChops.difference(picture, other)).mean) / 3
