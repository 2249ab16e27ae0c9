#!/usr/bin/env python3
"""What playing costs: play_demos.py BUILD [--seconds N] [--paused] [MOVIE...]

Each movie (all of BUILD/share/vexel unless some are named) plays in a window whose
place for it is 1280 x 720 pixels, on an X server without a screen. A row says: the
movie's rate; frames that were due by the clock, shown, and pictures that went to
the screen, from the player's own log; processor time of the player and of the X
server, in percent of one core, and how often a second the player woke up, while
nothing else happened. To be run on a machine with nothing else to do, by the
system's own python3 (it needs Pillow).
"""
import argparse
import pathlib
import re
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "tests/desktop"))

from display import Display, wait_for  # noqa: E402
from player import Player  # noqa: E402

SCREEN = (1400, 1000)
PLACE = (1280, 720)
SETTLE = 3  # seconds, for caches, fonts and bars
PER_SECOND = 100  # of the kernel's processor times


def used(process):
    """Processor seconds of all its threads so far, and how often they woke up."""
    stat = pathlib.Path(f"/proc/{process}/stat").read_text().rsplit(")", 1)[1].split()
    woken = 0
    for thread in pathlib.Path(f"/proc/{process}/task").iterdir():
        status = (thread / "status").read_text()
        woken += int(re.search(r"^voluntary_ctxt_switches:\s+(\d+)", status, re.M)[1])
    return (int(stat[11]) + int(stat[12])) / PER_SECOND, woken


def rate_of(vexel, movie, display):
    return re.search(r"^rate: (\S+)", display._run(vexel, "info", movie), re.M)[1]


def measure(vexel, movie, seconds, paused):
    display = Display(size=SCREEN)
    try:
        player = Player(display, vexel, "--log", movie)
        wait_for("the movie", player.site)
        # The window is as much larger than the movie's place in any size.
        height = display.place(player.window)[3] - player.size()[1]
        display.tool("windowsize", "--sync", player.window, PLACE[0], PLACE[1] + height)
        wait_for("the size", lambda: player.size()[0] == PLACE[0] or player.size()[1] == PLACE[1])
        if paused:
            player.key("space")
        time.sleep(SETTLE)
        before, server_before, start = used(player.process.pid), used(display.server.pid), time.time()
        time.sleep(seconds)
        after, server_after, end = used(player.process.pid), used(display.server.pid), time.time()
        rate = rate_of(vexel, movie, display)
        player.key("ctrl+q")
        player.wait_for_end()
        told = re.search(r"(\d+) frames due, (\d+) shown, (\d+) pictures", player.said())
        passed = end - start
        return (rate, *told.groups(), (after[0] - before[0]) / passed * 100,
                (server_after[0] - server_before[0]) / passed * 100,
                (after[1] - before[1]) / passed)
    finally:
        display.close()


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("movies", nargs="*", type=pathlib.Path)
    parser.add_argument("--seconds", type=float, default=10)
    parser.add_argument("--paused", action="store_true", help="the movies stand")
    arguments = parser.parse_args()
    movies = arguments.movies or sorted((arguments.build / "share/vexel").glob("*.vxf"))
    print(f"{'movie':16}{'rate':>6}{'due':>7}{'shown':>7}{'pictures':>10}{'player %':>10}"
          f"{'server %':>10}{'wakeups/s':>11}")
    for movie in movies:
        rate, due, shown, pictures, player, server, woken = measure(
            arguments.build / "bin/vexel", movie, arguments.seconds, arguments.paused)
        print(f"{movie.stem:16}{rate:>6}{due:>7}{shown:>7}{pictures:>10}{player:10.1f}"
              f"{server:10.1f}{woken:11.1f}", flush=True)


main()
