"""The clock and who moves it: keys and the bar below the movie."""
import time

from display import wait_for
from movies import COUNT_FRAMES, COUNT_RATE, VEXEL, counting, number
from player import BAR_MIDDLE, LOOP, PLAY, SPEED, Player


def frame(player):
    """The number of the frame on the screen, once there is one."""
    shown = []

    def look():
        shown[:] = [number(player.shot())]
        return shown[0] is not None

    wait_for("a frame of the movie", look)
    return shown[0]


def playing(display, frames=COUNT_FRAMES):
    """A player of the counting movie, in a window of its size."""
    player = Player(display, VEXEL, counting(display, frames))

    def fits():
        site, window = player.site(), display.place(player.window)
        return site and window and site[1] + site[3] == window[1] + window[3]

    wait_for("the movie in a window of its size", fits)
    return player


def paused(display):
    """A player of the counting movie that has been stopped, and the frame that it
    shows."""
    player = playing(display)
    wait_for("the fifth frame", lambda: frame(player) >= 5)
    player.key("space")
    wait_for("a stand", player.stands)
    return player, frame(player)


def case_space_stops_the_movie_and_full_stop_and_comma_step_it(display):
    player, stood = paused(display)
    player.key("period")
    wait_for("the next frame", lambda: frame(player) == stood + 1)
    player.key("comma")
    wait_for("the frame before", lambda: frame(player) == stood)
    wait_for("a stand, with the bar's time", player.stands)
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
    player.click_bar(display.place(player.window)[2] // 2)
    wait_for("another place",
             lambda: COUNT_FRAMES // 4 < frame(player) < COUNT_FRAMES * 3 // 4)
    wait_for("a stand", player.stands)


def case_the_bars_button_stops_the_movie_and_lets_it_go_on(display):
    player, at = paused(display)
    player.click_bar(PLAY)
    wait_for("a movement", lambda: frame(player) > at + 2)
    player.click_bar(PLAY)
    wait_for("a stand", player.stands)


def rate(player, seconds):
    """Frames a second, as the screen shows them."""
    first, begin = frame(player), time.monotonic()
    time.sleep(seconds)
    last, end = frame(player), time.monotonic()
    return (last - first) % COUNT_FRAMES / (end - begin)


def case_half_speed_takes_twice_as_long(display):
    player = playing(display)
    assert 0.75 * COUNT_RATE < rate(player, 3) < 1.25 * COUNT_RATE
    before = player.windows()
    player.click_bar(SPEED)
    wait_for("the list of speeds", lambda: player.windows() > before)
    player.key("Up", "Return")
    wait_for("the list's end", lambda: player.windows() == before)
    assert 0.35 * COUNT_RATE < rate(player, 4) < 0.65 * COUNT_RATE


SHORT = 30  # frames


def stop_looping(player):
    """By the bar's button, which is dark while it is in. The bar may be seen before
    it takes a press, so the button is looked at."""
    def is_in():
        left, top, width, height = player.display.place(player.window)
        place = left + width + LOOP - 14, top + height - BAR_MIDDLE
        return min(player.display.picture().getpixel(place)) < 225

    def is_out():
        player.click_bar(LOOP)
        time.sleep(0.5)  # until the button shows it
        return not is_in()

    wait_for("the button out", is_out)


def case_a_movie_that_is_not_to_loop_stops_at_its_end_and_begins_again_on_demand(display):
    player = playing(display, SHORT)
    stop_looping(player)
    wait_for("the last frame", lambda: frame(player) == SHORT - 1)
    # The bar comes, and nothing else moves.
    wait_for("a stand at the end", lambda: player.stands(2))
    assert frame(player) == SHORT - 1
    player.key("space")
    wait_for("the first frames", lambda: frame(player) < SHORT // 2)
    wait_for("the last frame again", lambda: frame(player) == SHORT - 1)


def case_a_movie_begins_again_at_its_end(display):
    player = playing(display, SHORT)
    for _ in range(2):
        wait_for("the last frames", lambda: frame(player) > SHORT * 8 // 10)
        wait_for("the first ones", lambda: frame(player) < SHORT // 2)
