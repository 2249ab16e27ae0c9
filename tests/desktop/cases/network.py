"""Movies from web servers of all manners."""
import contextlib
import os
import pathlib
import time

from display import wait_for
from movies import BOOK, COUNT_FRAMES, TRAIN, VEXEL, counting, number, streamed
from player import Player, far
from slow_server import DeafServer, SlowServer

LITTLE = 0.25  # of a processor, for a player that waits
AT_ONCE = 5  # seconds that a window's end may take on a busy machine
MEMORY = 1 << 30  # bytes, for a player that was promised far more


def load(player, seconds=3):
    """The share of a processor that it takes."""
    def used():
        words = pathlib.Path(f"/proc/{player.process.pid}/stat").read_text().rpartition(")")[2]
        return sum(map(int, words.split()[11:13])) / os.sysconf("SC_CLK_TCK")

    before = used()
    time.sleep(seconds)
    return (used() - before) / seconds


def assert_usable(player):
    """Whatever it waits for: it waits quietly, menus open, another movie plays, and
    the window closes at once."""
    assert load(player) < LITTLE
    before = player.windows()
    player.press_for_menu("alt+f")
    player.key("Escape")
    wait_for("the menu gone", lambda: player.windows() <= before)
    player.open(BOOK)
    player.until("the next movie's picture", streamed(BOOK))
    assert_closes(player)


def assert_closes(player):
    player.wait_for_keyboard()
    before = time.monotonic()
    player.key("alt+F4")
    assert player.wait_for_end() == 0, player.said()
    assert time.monotonic() - before < AT_ONCE
    assert not player.said(), player.said()


@contextlib.contextmanager
def served(path):
    server = SlowServer(path.read_bytes())
    try:
        yield server
    finally:
        server.close()


def case_a_movie_plays_while_the_rest_of_it_is_still_on_its_way(display):
    with served(counting(display)) as server:
        player = Player(display, VEXEL, server.url("half"))

        def frame():
            return number(player.shot()) or 0

        wait_for("frames", lambda: frame() > 5)
        # The last one that came, and it stays, with the bar above it.
        wait_for("a stand at what has come",
                 lambda: frame() > COUNT_FRAMES // 3 and player.stands(2))
        assert frame() < COUNT_FRAMES * 2 // 3
        server.go_on.set()
        wait_for("the other frames", lambda: frame() > COUNT_FRAMES * 2 // 3)
        assert not player.message()


def case_a_server_that_stalls_leaves_the_player_usable(display):
    with served(TRAIN) as server:
        player = Player(display, VEXEL, server.url("half"))
        wait_for("a stand at what has come", player.stands)
        assert_usable(player)


def case_a_server_that_never_answers_leaves_the_player_usable(display):
    server = DeafServer()
    player = Player(display, VEXEL, server.url)
    server.is_asked()
    assert player.site() is None
    assert_usable(player)
    server.close()


def case_a_window_closes_while_its_movie_loads(display):
    with served(TRAIN) as server:
        player = Player(display, VEXEL, server.url("half"))
        wait_for("the movie", player.site)
        assert_closes(player)
    deaf = DeafServer()
    player = Player(display, VEXEL, deaf.url)
    deaf.is_asked()
    assert_closes(player)
    deaf.close()


def case_garbage_from_a_server_is_told(display):
    with served(TRAIN) as server:
        player = Player(display, VEXEL, server.url("garbage"))
        wait_for("the message", player.message)
        assert player.site() is None
        assert_usable(player)


def memory(player):
    """Bytes that it holds."""
    pages = pathlib.Path(f"/proc/{player.process.pid}/statm").read_text().split()[1]
    return int(pages) * os.sysconf("SC_PAGE_SIZE")


def case_a_huge_movie_that_a_server_promises_gets_no_memory_before_it_comes(display):
    with served(TRAIN) as server:
        player = Player(display, VEXEL, server.url("huge"))
        first = player.shot()
        wait_for("a movement", lambda: far(player.shot(), first) > 0.1)
        assert memory(player) < MEMORY
        assert_usable(player)


def case_a_server_that_breaks_off_leaves_the_player_usable(display):
    server = SlowServer(TRAIN.read_bytes())
    player = Player(display, VEXEL, server.url("cut"))
    wait_for("the movie", player.site)
    wait_for("the message", player.message)
    first = player.shot()
    wait_for("a movement", lambda: far(player.shot(), first) > 0.1)
    player.open(BOOK)
    player.until("the next movie's picture", streamed(BOOK))
    server.close()


def case_a_movie_that_the_server_does_not_have_is_told(display):
    server = SlowServer(b"")
    player = Player(display, VEXEL, server.url("missing"))
    wait_for("the message", player.message)
    assert player.site() is None
    player.key("ctrl+l")
    player.fill_in("Open an address", BOOK)
    player.until("the next movie's picture", streamed(BOOK))
    server.close()
