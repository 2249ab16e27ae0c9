#!/usr/bin/env python3
"""Plays movies in the window, on a display of its own:

    window.py STILL PICTURE MOVING COMMAND...

COMMAND and a movie's name open the player, wherever it is installed. STILL is a
movie that waits for its user, and must be shown as it is in PICTURE, pixel for
pixel; MOVING must move. A failure leaves the screen in the current folder.
"""
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "desktop"))
from PIL import Image

from display import Display, wait_for
from player import far


def shot(display):
    """The movie's picture, when there is one."""
    def place():
        found = display.tool("search", "--onlyvisible", "--name", "^movie$").split()
        return found and display.place(found[0])
    left, top, width, height = wait_for("the movie", place)
    return display.picture().crop((left, top, left + width, top + height))


def is_shown(display, picture):
    return far(shot(display), picture) == 0


def moves(display):
    before = shot(display)
    wait_for("a movement", lambda: far(shot(display), before) > 0)


def main():
    still, picture, moving, *command = sys.argv[1:]
    expected = Image.open(picture).convert("RGB")
    for movie, look in [
            (still, lambda: wait_for("the picture", lambda: is_shown(display, expected))),
            (moving, lambda: moves(display))]:
        display = Display()
        player = subprocess.Popen([*command, movie], env=display.env)
        try:
            look()
            assert player.poll() is None, "the player has ended"
        except AssertionError as error:
            display.picture().save("failed-window.png")
            sys.exit(f"{movie}: {error}")
        finally:
            player.kill()
            player.wait()
            display.close()


main()
