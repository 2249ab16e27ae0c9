"""Movies from the command line, from dialogs, menus and other programs, and out of
files that are none."""
import pathlib
import subprocess
import time

from display import wait_for
from drag import Drag
from movies import BOOK, BOOK_SIZE, TRAIN, VEXEL, streamed
from player import Player


def case_a_movie_named_on_the_command_line_is_shown_at_its_own_size(display):
    player = Player(display, VEXEL, BOOK)
    player.until("the movie's picture", streamed(BOOK))
    assert player.size() == BOOK_SIZE
    assert player.title().startswith("guestbook.vxf"), player.title()


def case_a_file_that_is_no_movie_is_told_in_the_window_and_another_opens(display):
    broken = display.folder / "broken.vxf"
    broken.write_bytes(b"This is a letter to my aunt.")
    player = Player(display, VEXEL, broken)
    wait_for("the message", player.message)
    assert player.site() is None and player.process.poll() is None
    player.open(BOOK)
    player.until("the next movie's picture", streamed(BOOK))
    assert not player.message()


def case_half_a_movie_plays_as_far_as_it_goes(display):
    half = display.folder / "half.vxf"
    whole = TRAIN.read_bytes()
    half.write_bytes(whole[:len(whole) * 2 // 3])
    player = Player(display, VEXEL, half)
    wait_for("the movie", player.site)
    wait_for("the message", player.message)


def case_without_a_display_there_is_a_message_and_status_1(display):
    for name, words in [(None, "there is no display"), (":9999", "cannot be opened")]:
        env = {key: value for key, value in display.env.items() if key != "DISPLAY"}
        done = subprocess.run([VEXEL, "play", BOOK], env=env | ({"DISPLAY": name} if name else {}),
                              capture_output=True, text=True)
        assert done.returncode == 1 and words in done.stderr, done.stderr


def drop(display, player, movie, x, y):
    """A movie, onto a place of the window given as shares of its size."""
    drag = Drag(display, movie)
    left, top, width, height = display.place(player.window)
    drag.to(left + int(x * width), top + int(y * height))
    drag.close()


def case_a_movie_dropped_onto_the_empty_window_opens(display):
    player = Player(display, VEXEL)
    drop(display, player, BOOK, 0.5, 0.5)
    player.until("the movie's picture", streamed(BOOK))
    assert player.title().startswith("guestbook.vxf"), player.title()


def case_a_movie_dropped_onto_another_one_takes_its_place(display):
    player = Player(display, VEXEL, TRAIN)
    wait_for("the first movie", player.site)
    drop(display, player, BOOK, 0.7, 0.6)
    wait_for("the next movie's name", lambda: player.title().startswith("guestbook.vxf"))
    display.tool("mousemove", display.SIZE[0] - 1, 0)
    player.until("the next movie's picture", streamed(BOOK))


def choose_recent(player, row):
    player.press_for_menu("alt+f")
    before = player.windows()
    player.key("r")
    wait_for("the list", lambda: player.windows() > before)
    player.key(*["Down"] * row, "Return")


def case_recent_movies_are_listed_after_a_restart_the_last_one_first(display):
    listed = display.folder / "data/recently-used.xbel"

    def close_later(player, movie):
        wait_for("the movie in the list",
                 lambda: listed.exists() and movie.name in listed.read_text())
        player.close()
        # The list's times are whole seconds.
        then = int(time.time())
        wait_for("the next second", lambda: int(time.time()) > then)

    for movie in (BOOK, TRAIN):
        close_later(Player(display, VEXEL, movie), movie)
    # One choice a player: the list is made anew at some time after each, and an
    # open menu loses its place by that.
    for row, movie in [(0, TRAIN), (1, BOOK)]:
        player = Player(display, VEXEL)
        choose_recent(player, row)
        wait_for("its name in the title",
                 lambda movie=movie, player=player: player.title().startswith(movie.name))
        wait_for("the movie", player.site)
        if row == 0:
            close_later(player, movie)
    player.until("the picture", streamed(BOOK))


def case_ten_movies_opened_one_after_another_leave_the_last_one(display):
    player = Player(display, VEXEL, TRAIN)
    wait_for("the movie", player.site)
    tasks = pathlib.Path(f"/proc/{player.process.pid}/fd")
    player.open(BOOK)
    player.until("the picture", streamed(BOOK))
    files = len(list(tasks.iterdir()))
    for movie in [TRAIN, BOOK] * 5:
        player.key("ctrl+l")
        player.fill_in("Open an address", movie)
    player.until("the last movie's picture", streamed(BOOK))
    assert not player.message()
    wait_for("the end of what the others had open",
             lambda: len(list(tasks.iterdir())) <= files + 2)
