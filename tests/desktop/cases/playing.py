"""The clock and who moves it: keys and the bar below the movie."""
from display import wait_for
from movies import COUNT_FRAMES, VEXEL, counting, number
from player import Player


def frame(player):
    return number(player.shot())


def paused(display):
    """A player of the counting movie that has been stopped, and the frame that it
    shows."""
    player = Player(display, VEXEL, counting(display))
    wait_for("the fifth frame", lambda: (frame(player) or 0) >= 5)
    player.key("space")
    wait_for("a stand", player.stands)
    return player, frame(player)


def case_space_stops_the_movie_and_full_stop_and_comma_step_it(display):
    player, stood = paused(display)
    player.key("period")
    wait_for("the next frame", lambda: frame(player) == stood + 1)
    player.key("comma")
    wait_for("the frame before", lambda: frame(player) == stood)
    assert player.stands()
    player.key("space")
    wait_for("a movement again", lambda: frame(player) > stood + 2)


def case_steps_that_follow_each_other_at_once_are_all_shown(display):
    player, at = paused(display)
    for _ in range(15):
        player.key("period", "period")
        at += 2
        wait_for(f"frame {at}", lambda at=at: frame(player) == at, 10)


def case_a_press_on_the_seek_bar_goes_there(display):
    player, _ = paused(display)
    left, top, width, height = display.place(player.window)
    display.tool("mousemove", left + width // 2, top + height - 21)
    display.tool("click", 1)
    wait_for("another place",
             lambda: COUNT_FRAMES // 4 < frame(player) < COUNT_FRAMES * 3 // 4)
