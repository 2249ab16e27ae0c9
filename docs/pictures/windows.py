#!/usr/bin/python3
"""Pictures of the player's window, for the documents: windows.py VEXEL MOVIES [NAME...]

Plays on a display of its own, as tests/desktop does and with its words, and writes
the PNGs beside this file. Look at them before they are kept. It needs what those
tests need, and the distribution's Python for its pictures' library.
"""
import pathlib
import re
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "tests/desktop"))

from PIL import Image
from display import Display, wait_for
from movies import BOOK, MOVIES, VEXEL, make
from player import Player

LINK = """movie size 640, 200 rate 12 background #204060
shape plate { fill gold  rect 0, 0, 200, 40 round 8 }
button link { show plate in up over down hit
  on release script { getURL("http://railway.example/timetable", "_blank") } }
place link at 220, 80
"""


def framed(display, window):
    """The place of a window with what the window manager puts around it."""
    left, top, width, height = display.place(window)
    said = display._run("xprop", "-id", window, "_NET_FRAME_EXTENTS")
    west, east, north, south = map(int, re.findall(r"\d+", said.partition("=")[2]) or [0] * 4)
    return left - west, top - north, left + width + east, top + height + south


def keep(display, name, window=None, scale=1):
    """A window's picture, or the whole screen's."""
    picture = display.picture()
    if window:
        picture = picture.crop(framed(display, window))
    if scale != 1:
        picture = picture.resize([round(side * scale) for side in picture.size], Image.LANCZOS)
    picture.save(HERE / f"{name}.png", optimize=True)


def show_bar(display, player):
    """A pointer that moves on the movie."""
    left, top, width, height = wait_for("the movie", player.site)
    for x in (0.3, 0.31, 0.32):
        display.tool("mousemove", round(left + x * width), top + height // 3)


def picture_window(display):
    player = Player(display, VEXEL, MOVIES / "railway.vxf")
    wait_for("the movie", lambda: player.size() != (0, 0))
    wait_for("frames", lambda: not player.stands(0.2))
    show_bar(display, player)
    player.stands(1)
    keep(display, "window", player.window)


def picture_full_screen(display):
    player = Player(display, VEXEL, MOVIES / "railway.vxf")
    player.key("F11")
    wait_for("the full screen", lambda: player.size()[0] == display.SIZE[0])
    show_bar(display, player)
    player.stands(1)
    keep(display, "full-screen", scale=0.5)


def picture_question(display):
    player = Player(display, VEXEL, make(display, "timetable", LINK))
    player.click(320, 100, (640, 200))
    wait_for("the question", player.message)
    player.stands(1)
    keep(display, "question", player.window)


def picture_broken(display):
    movie = display.folder / "railway.vxf"
    whole = (MOVIES / "railway.vxf").read_bytes()
    movie.write_bytes(whole[:len(whole) // 2])
    player = Player(display, VEXEL, movie)
    wait_for("the message", player.message)
    player.stands(1)
    keep(display, "broken", player.window)


def picture_preferences(display):
    player = Player(display, VEXEL, BOOK)
    player.key("ctrl+comma")
    keep(display, "preferences", player.dialog("Preferences"))


def picture_export(display):
    player = Player(display, VEXEL, MOVIES / "railway.vxf")
    player.key("ctrl+e")
    player.dialog("Export a film")
    player.key("alt+t", "ctrl+a")
    player.type("200")  # seconds: time enough to take the picture
    player.key("alt+n")
    player.fill_in("Export a film", display.folder / "railway.mp4")
    wait_for("a part of the film", lambda: list(display.folder.glob("*.part")))
    player.stands(4)
    keep(display, "export", player.window)


def main():
    wanted = sys.argv[3:]
    for name, take in list(globals().items()):
        if not name.startswith("picture_") or (wanted and name[8:] not in wanted):
            continue
        display = Display()
        try:
            take(display)
            print(name[8:])
        finally:
            display.close()


main()
