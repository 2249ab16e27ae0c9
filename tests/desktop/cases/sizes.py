"""The window's size and the full screen."""
from display import wait_for
from movies import BOOK, BOOK_SIZE, TRAIN, VEXEL, streamed
from player import Player


def case_f_fills_the_screen_with_the_aspect_kept_and_escape_leaves_it(display):
    player = Player(display, VEXEL, BOOK)
    player.until("the movie's picture", streamed(BOOK))
    player.key("f")
    height = 460 * 1024 // 700
    wait_for("the full screen", lambda: player.size() == (1024, height))
    left, top = player.site()[:2]
    assert left == 0 and top > 20
    wait_for("the bars beside the movie",
             lambda: display.picture().getpixel((512, 10)) == (0, 0, 0))
    player.until("the large picture", streamed(BOOK, f"resize 1024x{height}"))
    player.key("Escape")
    wait_for("the window again", lambda: player.size() == BOOK_SIZE)
    player.key("F11")
    wait_for("the full screen again", lambda: player.size()[0] == 1024)


def case_the_movie_follows_the_windows_size(display):
    player = Player(display, VEXEL, BOOK)
    player.until("the movie's picture", streamed(BOOK))
    display.tool("windowsize", player.window, 400, 500)
    wait_for("the small size", lambda: player.size() == (400, 460 * 400 // 700))
    player.until("the small picture", streamed(BOOK, "resize 400x262"))


def case_the_bar_hides_itself_in_full_screen(display):
    player = Player(display, VEXEL, TRAIN)
    wait_for("the movie", player.site)
    display.tool("mousemove", 500, 300)
    player.key("f")
    wait_for("the full screen", lambda: player.size()[0] == 1024)

    def bar():
        return display.picture().getpixel((1020, 796)) != (0, 0, 0)

    wait_for("the bar gone", lambda: not bar())
    display.tool("mousemove", 510, 310)
    wait_for("the bar again", bar)
    wait_for("the bar gone again", lambda: not bar())
