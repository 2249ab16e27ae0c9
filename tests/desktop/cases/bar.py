"""The transport bar, and when it is there."""
from display import wait_for
from movies import BOOK, BOOK_SIZE, COUNT_SIZE, TRAIN, VEXEL, counting, make, number, streamed
from player import Player, far
from slow_server import SlowServer

LIGHT = 200  # the bar's ground, of 255; the movies' lower left corners are darker


def bar(display, player):
    """Whether the bar lies over the movie's lower edge, or below the movie."""
    left, top, width, height = display.place(player.window)
    return min(display.picture().getpixel((left + 2, top + height - 3))) > LIGHT


def case_the_bar_hides_itself_in_the_window_and_the_movie_keeps_its_size(display):
    player = Player(display, VEXEL, TRAIN)
    wait_for("the movie", lambda: player.size() == (640, 360))
    place = player.site()
    wait_for("the bar gone", lambda: not bar(display, player))
    display.tool("mousemove", *player.at(200, 100, (640, 360)))
    wait_for("the bar", lambda: bar(display, player))
    assert player.site() == place
    wait_for("the bar gone again", lambda: not bar(display, player))
    assert player.site() == place


def case_the_bar_stays_while_the_movie_stands(display):
    player = Player(display, VEXEL, TRAIN)
    wait_for("the movie", player.site)
    wait_for("the bar gone", lambda: not bar(display, player))
    player.key("space")
    wait_for("the bar", lambda: bar(display, player))
    wait_for("a long stand", lambda: player.stands(4))
    assert bar(display, player)
    player.key("space")
    wait_for("the bar gone again", lambda: not bar(display, player))


def case_a_press_on_the_movie_puts_the_bar_away_until_the_edge_is_touched(display):
    player = Player(display, VEXEL, TRAIN)
    wait_for("the movie", player.site)
    display.tool("mousemove", *player.at(200, 100, (640, 360)))
    wait_for("the bar", lambda: bar(display, player))
    display.tool("click", 1)
    wait_for("the bar gone at once", lambda: not bar(display, player), 2)
    display.tool("mousemove", *player.at(220, 120, (640, 360)))
    assert player.stands(0) or not bar(display, player)
    display.tool("mousemove", *player.at(220, 359, (640, 360)))
    wait_for("the bar again", lambda: bar(display, player))


def case_the_bar_is_not_in_the_way_of_a_movie_that_waits_for_its_user(display):
    player = Player(display, VEXEL, BOOK)
    player.until("the movie's picture", streamed(BOOK))
    display.tool("mousemove", *player.at(300, 300, BOOK_SIZE))
    display.tool("mousemove", *player.at(310, 310, BOOK_SIZE))
    moved = streamed(BOOK, "move 310 310", "clock 1000")
    player.until("the movie's picture without a bar", moved)
    display.tool("mousemove", *player.at(310, 459, BOOK_SIZE))
    wait_for("the bar", lambda: not player.shows(moved))


def case_the_bar_stays_while_a_stream_is_waited_for(display):
    server = SlowServer(TRAIN.read_bytes())
    player = Player(display, VEXEL, server.url("half"))
    wait_for("a stand at what has come", lambda: player.site() and player.stands())
    wait_for("the bar", lambda: bar(display, player))
    wait_for("a long stand", lambda: player.stands(4))
    assert bar(display, player)
    server.go_on.set()
    wait_for("the bar gone", lambda: not bar(display, player))
    server.close()


def case_a_bar_below_the_movie_takes_nothing_of_it(display):
    player = Player(display, VEXEL, counting(display))
    wait_for("the movie", lambda: player.size() == COUNT_SIZE)
    before = display.place(player.window)[3]
    player.key("ctrl+comma")
    player.dialog("Preferences")
    player.key("alt+t", "Down", "Down")
    kept = display.folder / "config/vexel/preferences.ini"
    wait_for("the file", lambda: kept.exists() and "Window.Bar=stays" in kept.read_text())
    player.key("Escape")
    player.wait_for_keyboard()
    wait_for("the taller window", lambda: display.place(player.window)[3] > before)
    assert player.size() == COUNT_SIZE
    player.close()
    player = Player(display, VEXEL, make(display, "black", "movie size 300, 200 rate 12\nframe\n"))
    wait_for("the movie", lambda: player.size() == (300, 200))
    left, top, width, height = player.site()
    assert display.place(player.window)[1] + display.place(player.window)[3] > top + height


def case_the_bar_is_used_by_the_keyboard_until_escape(display):
    player = Player(display, VEXEL, counting(display))
    wait_for("the tenth frame", lambda: (number(player.shot()) or 0) >= 10)
    player.key("space")
    wait_for("a stand", player.stands)
    at = number(player.shot())
    player.key("F6", "Tab", "Tab", "space")  # the third button: a frame on
    wait_for("the next frame", lambda: number(player.shot()) == at + 1)
    player.key("Tab", "Right", "Right")  # the place: seconds
    wait_for("two seconds on", lambda: number(player.shot()) in range(at + 19, at + 24))
    player.key("Escape", "space")
    wait_for("the movie going on, and the bar gone", lambda: not bar(display, player))


def case_in_a_narrow_window_the_bar_keeps_what_is_needed_most(display):
    tiny = "movie size 40, 30 rate 12 background #202020\nrepeat 50 as n { frame }\n"
    player = Player(display, VEXEL, make(display, "tiny", tiny))
    wait_for("the small window", lambda: player.site() and display.place(player.window)[2] < 300)
    wait_for("the bar gone", lambda: not bar(display, player))
    player.key("space")
    wait_for("the bar", lambda: bar(display, player))
    left, top, width, height = display.place(player.window)
    display.tool("mousemove", left + 20, top + height - 20)
    wait_for("a stand", player.stands)
    before = player.shot()
    display.tool("click", 1)
    wait_for("the press on the bar", lambda: far(player.shot(), before) > 0)
    wait_for("the bar gone while the movie goes on", lambda: display.tool(
        "mousemove", 1, 1) or not bar(display, player))
