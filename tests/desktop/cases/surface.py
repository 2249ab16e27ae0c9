"""The way of the picture to the screen: servers of other kinds, windows larger
than the plug-in draws, and windows that are covered, moved and resized."""
import pathlib
import random
import subprocess

from PIL import Image

from display import on_server, wait_for
from movies import BOOK, BOOK_SIZE, SAME, TRAIN, VEXEL, streamed
from player import Player, far

BUTTON = (300, 422)  # of the book: turns the page
ON_BUTTON = [f"{what} {BUTTON[0]} {BUTTON[1]}" for what in ("move", "down", "up")]
LARGE = (2600, 1700)
REFUSE_MEMORY = pathlib.Path(VEXEL).resolve().parent.parent / "lib/refuse_memory.so"


def shared_bytes(player):
    """Memory that the player shares with the server."""
    size = 0
    for line in pathlib.Path(f"/proc/{player.process.pid}/maps").read_text().splitlines():
        if "SYSV" in line:
            first, end = line.split()[0].split("-")
            size += int(end, 16) - int(first, 16)
    return size


def plays_by(display, shared, most=0):
    """A movie's pictures are right from start to click, through shared memory or not."""
    player = Player(display, VEXEL, BOOK)
    player.until("the movie's picture", streamed(BOOK), most)
    pixel = 4 if display.depth >= 24 else display.depth // 8
    picture_bytes = BOOK_SIZE[0] * BOOK_SIZE[1] * pixel
    assert (shared_bytes(player) >= picture_bytes) == shared, shared_bytes(player)
    player.click(*BUTTON, BOOK_SIZE)
    player.until("the page turned below the pointer", streamed(BOOK, *ON_BUTTON, "clock 1000"), most)
    display.tool("mousemove", display.size[0] - 1, 0)
    turned = streamed(BOOK, *ON_BUTTON, "move 699 0", "clock 1000")
    assert far(turned, streamed(BOOK)) > most + SAME
    player.until("the page turned", turned, most)


def case_the_picture_goes_through_memory_that_the_server_shares(display):
    plays_by(display, shared=True)


@on_server(options=("-extension", "MIT-SHM"))
def case_a_server_that_shares_no_memory_shows_the_same(display):
    plays_by(display, shared=False)


# As one on another machine does: it offers to share memory, and then cannot.
@on_server(under=("env", f"LD_PRELOAD={REFUSE_MEMORY}"))
def case_a_server_that_refuses_the_memory_shows_the_same(display):
    plays_by(display, shared=False)


@on_server(depth=16)
def case_sixteen_bits_a_pixel_are_enough(display):
    plays_by(display, shared=True, most=3)


@on_server(depth=15)
def case_fifteen_bits_a_pixel_are_enough(display):
    plays_by(display, shared=True, most=3)


@on_server(depth=30)
def case_ten_bits_a_colour_are_used(display):
    plays_by(display, shared=True, most=1)


@on_server(depth=8, options=("-cc", "4"))
def case_eight_bits_of_true_colour_show_a_movie(display):
    player = Player(display, VEXEL, BOOK)
    player.until("the movie's picture", streamed(BOOK), 40)


@on_server(depth=8)
def case_a_display_with_a_palette_is_told_and_the_status_is_1(display):
    done = subprocess.run([VEXEL, "play", BOOK], env=display.env, capture_output=True, text=True)
    assert done.returncode == 1, done.returncode
    assert "colours" in done.stderr and len(done.stderr.splitlines()) == 1, done.stderr


@on_server(size=LARGE)
def case_a_window_larger_than_the_plug_in_draws_is_filled_and_clicks_land(display):
    player = Player(display, VEXEL, BOOK)
    player.until("the movie's picture", streamed(BOOK))
    player.key("f")
    size = (1700 * 700 // 460, 1700)
    wait_for("the full screen", lambda: player.size() == size)
    # The plug-in's picture is as wide as it can be.
    drawn = (2000, 2000 * size[1] // size[0])

    def enlarged(*lines):
        picture = streamed(BOOK, f"resize {drawn[0]}x{drawn[1]}", *lines)
        return picture.resize(size, Image.BILINEAR)

    player.until("the large picture", enlarged(), 0.1)
    player.click(*BUTTON, BOOK_SIZE)
    display.tool("mousemove", 0, 0)
    x, y = (place * part // whole for place, part, whole in zip(BUTTON, drawn, BOOK_SIZE))
    turned = enlarged(f"move {x} {y}", f"down {x} {y}", f"up {x} {y}", "move 1999 0", "clock 1000")
    assert far(turned, enlarged()) > 1
    player.until("the page turned", turned, 0.1)


@on_server(size=(1600, 1200))
def case_a_screen_of_double_density_shows_each_pixel_of_the_movie(display):
    display.env["GDK_SCALE"] = "2"
    player = Player(display, VEXEL, BOOK)
    player.until("the movie's picture", streamed(BOOK))
    assert player.size() == BOOK_SIZE
    player.click(*BUTTON, BOOK_SIZE)
    display.tool("mousemove", 1599, 0)
    player.until("the page turned", streamed(BOOK, *ON_BUTTON, "move 699 0", "clock 1000"))


def case_what_was_covered_is_whole_again(display):
    player = Player(display, VEXEL, BOOK)
    whole = streamed(BOOK)
    player.until("the movie's picture", whole)
    other = Player(display, VEXEL)
    for left, top in [(100, 100), (300, 150), (0, 0), (500, 400)]:
        display.tool("windowmove", "--sync", other.window, left, top)
        wait_for("the movie covered", lambda: far(player.shot(), whole) > 1)
    other.close()
    player.until("the whole picture", whole)


def case_a_window_moved_off_the_screen_and_back_is_whole(display):
    player = Player(display, VEXEL, BOOK)
    whole = streamed(BOOK)
    player.until("the movie's picture", whole)
    for left, top in [(-300, -200), (900, 700), (-600, 500), (100, 100)]:
        display.tool("windowmove", player.window, left, top)
        wait_for("the window there", lambda: abs(player.site()[0] - left) < 60)
    player.until("the whole picture", whole)


def case_a_storm_of_sizes_ends_in_the_right_picture(display):
    player = Player(display, VEXEL, TRAIN)
    wait_for("the movie", player.site)
    some = random.Random(50)
    words = []
    for _ in range(50):
        words += ["windowsize", player.window, some.randrange(150, 1000), some.randrange(200, 780)]
    display.tool(*words, "windowsize", player.window, 500, 700)
    wait_for("the last size", lambda: player.size()[0] == 500)
    player.open(BOOK)
    player.until("the book at its own size", streamed(BOOK))
    display.tool(*words, "windowsize", player.window, 400, 500)
    wait_for("the last size", lambda: player.size() == (400, 460 * 400 // 700))
    player.until("the small picture", streamed(BOOK, "resize 400x262"))


def case_a_server_that_dies_ends_the_player_with_a_message(display):
    player = Player(display, VEXEL, TRAIN)
    wait_for("the movie", player.site)
    display.server.kill()
    assert player.wait_for_end() == 1
    assert player.said().endswith("vexel: play: the display has gone\n"), player.said()
