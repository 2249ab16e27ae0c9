"""A player's window on a display of its own, used as a person would use it:
pointer and keys through the X server, and pictures of what it shows."""
import os
import pathlib
import re
import subprocess
import tempfile
import time

from PIL import Image, ImageChops, ImageStat

PATIENCE = 20  # seconds that anything may take on a busy machine


class Display:
    """An X server without a screen, with a window manager."""

    def __init__(self, size=(1024, 800)):
        read, write = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{size[0]}x{size[1]}x24",
             "-nolisten", "tcp"],
            pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as pipe:
            number = pipe.readline().strip()
        assert number, "Xvfb does not start"
        self.home = tempfile.TemporaryDirectory(prefix="vexel-desktop-")
        self.env = dict(os.environ, DISPLAY=":" + number, HOME=self.home.name,
                        XDG_CONFIG_HOME=self.home.name + "/config",
                        XDG_DATA_HOME=self.home.name + "/data",
                        XDG_RUNTIME_DIR=self.home.name, NO_AT_BRIDGE="1", GTK_THEME="Adwaita",
                        GSETTINGS_BACKEND="memory", LC_ALL="C.UTF-8")
        self.manager = subprocess.Popen(["openbox", "--sm-disable"], env=self.env,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def close(self):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()
        self.home.cleanup()

    def tool(self, *words):
        return subprocess.run(["xdotool", *map(str, words)], env=self.env, text=True,
                              capture_output=True).stdout.strip()

    def place(self, window):
        """Of a window on the screen: left, top, width, height; None if it is gone."""
        text = subprocess.run(["xwininfo", "-id", window], env=self.env, text=True,
                              capture_output=True).stdout
        names = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
        found = [re.search(rf"{name}: +(-?\d+)", text) for name in names]
        return tuple(int(one[1]) for one in found) if all(found) else None

    def picture(self):
        """The whole screen."""
        path = pathlib.Path(self.home.name) / "screen.png"
        subprocess.run(["import", "-window", "root", str(path)], env=self.env, check=True)
        return Image.open(path).convert("RGB")


def wait_for(what, is_so, seconds=PATIENCE):
    """The first true value of `is_so`, or a failure that says `what`."""
    end = time.time() + seconds
    while True:
        value = is_so()
        if value:
            return value
        assert time.time() < end, f"never came: {what}"
        time.sleep(0.1)


class Player:
    """`vexel play`, with words of its command line."""

    def __init__(self, display, vexel, *words):
        self.display = display
        self.process = subprocess.Popen([vexel, "play", *map(str, words)], env=display.env,
                                        stderr=subprocess.PIPE, text=True)
        self.window = wait_for("the window", self._find)
        # A key that comes before the window manager has given it the keyboard is lost.
        wait_for("the keyboard", lambda: display.tool("getactivewindow") == self.window)

    def _find(self):
        found = self.display.tool("search", "--onlyvisible", "--pid", self.process.pid,
                                  "--name", "Vexel$").split()
        return found[0] if found else None

    def title(self):
        return self.display.tool("getwindowname", self.window)

    def site(self):
        """The movie's place on the screen: left, top, width, height; None while
        there is no movie."""
        found = self.display.tool("search", "--onlyvisible", "--name", "^movie$").split()
        if not found:
            return None
        return self.display.place(found[0])

    def shot(self):
        """The movie's picture as it stands on the screen, or the next one's if it goes."""
        left, top, width, height = wait_for("the movie", self.site)
        return self.display.picture().crop((left, top, left + width, top + height))

    def at(self, x, y, movie):
        """A place of the movie, whose size is `movie`, on the screen."""
        left, top, width, height = self.site()
        return left + round(x * width / movie[0]), top + round(y * height / movie[1])

    def click(self, x, y, movie, button=1):
        self.display.tool("mousemove", *self.at(x, y, movie))
        self.display.tool("click", button)

    def key(self, *keys):
        self.display.tool("key", *keys)

    def type(self, text):
        self.display.tool("type", "--delay", "30", text)

    def message(self):
        """Whether there is a message or a question: a bar in the theme's colour for
        those, below the menus."""
        left, top = self.display.place(self.window)[:2]
        screen = self.display.picture()
        red, _, blue = screen.getpixel((left + 6, top + 40))
        return red > blue + 8

    def answer(self):
        """Says yes to the question; the movie gives the keyboard back before."""
        self.key("Escape", "alt+o")

    def dialog(self, name):
        """Waits until a dialog is there and takes the keys."""
        wait_for(f"the dialog {name}", lambda: self.display.tool(
            "getactivewindow", "getwindowname") == name)
        time.sleep(0.3)  # the dialog's own fields follow its window

    def open(self, path):
        """By the dialog, in which a slash begins a path."""
        self.key("ctrl+o")
        self.dialog("Open a movie")
        self.type(str(path))
        self.key("Return")

    def close(self):
        """Ends it; what it said on standard error."""
        self.process.terminate()
        return self.process.communicate()[1]


def far(picture, other):
    """How far two pictures are apart: the mean of a channel, of 255. Pictures of
    different sizes have nothing in common."""
    if picture.size != other.size:
        return 255
    return sum(ImageStat.Stat(ImageChops.difference(picture, other)).mean) / 3
