"""Movies from web servers of all manners."""
from display import wait_for
from movies import BOOK, TRAIN, VEXEL, streamed
from player import Player, far
from slow_server import SlowServer


def case_a_movie_plays_while_the_rest_of_it_is_still_on_its_way(display):
    server = SlowServer(TRAIN.read_bytes())
    player = Player(display, VEXEL, server.url("half"))
    first = player.shot()
    wait_for("a movement", lambda: far(player.shot(), first) > 0.1)
    wait_for("a stand at what has come", player.stands)
    waiting = player.shot()
    server.go_on.set()
    wait_for("a movement again", lambda: far(player.shot(), waiting) > 0.1)
    server.close()


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
