"""Movies sent over a network that is made up: the clock waits for the buffer, and
what arrives is what the client without a window shows."""
import subprocess
import tempfile
import time

from PIL import Image

from display import wait_for
from movies import BOOK, COUNT, COUNT_FRAMES, COUNT_RATE, TRAIN, VEXEL, counting, make, number
from player import Player, far
from slow_server import SlowServer

SHORT_FRAMES = 25
MS = 1000 // COUNT_RATE  # of a frame


def short(display):
    return counting(display, SHORT_FRAMES)


def once(display):
    """Movies do not begin again at their end, and the bar leaves their picture alone."""
    path = display.folder / "config/vexel/preferences.ini"
    path.parent.mkdir(parents=True)
    path.write_text("[Preferences]\nWindow.Loop=no\nWindow.Bar=stays\n")


def headless(movie, *options):
    """The last picture of a movie that is streamed with the same options, frame by
    frame to its end."""
    with tempfile.TemporaryDirectory() as folder:
        script = "".join(f"clock {n * MS}\n" for n in range(SHORT_FRAMES + 1))
        subprocess.run([VEXEL, "stream", *options, movie, "-"], text=True, check=True,
                       input=script + f"shot {folder}/out.png\n", capture_output=True)
        return Image.open(f"{folder}/out.png").convert("RGB")


def frame(player):
    return number(player.shot()) if player.site() else None


def ends_as_headless(display, *options):
    once(display)
    movie = short(display)
    expected = headless(movie, *options)
    assert number(expected) == SHORT_FRAMES - 1
    player = Player(display, VEXEL, *options, movie)
    wait_for("a frame on the way", lambda: 3 < (frame(player) or 0) < SHORT_FRAMES - 3)
    player.until("the last picture", expected)
    assert player.stands(0.5) and player.shows(expected)


def case_a_linear_movie_ends_in_the_picture_of_the_client_without_a_window(display):
    ends_as_headless(display, "--mode", "linear")


def case_a_linear_movie_with_losses_ends_in_a_whole_picture(display):
    ends_as_headless(display, "--mode", "linear", "--drop", "5,9-11", "--key", "500", "--delay", "40",
                     "--packet", "300")


def case_a_non_linear_movie_in_packets_ends_in_the_picture_of_the_client_without_a_window(display):
    ends_as_headless(display, "--mode", "nonlinear", "--packet", "200", "--reorder", "30")


def case_what_a_non_linear_movie_has_lost_is_there_in_its_second_round(display):
    movie = short(display)
    player = Player(display, VEXEL, "--loss", "30", "--packet", "150", "--delay", "50", movie)
    whole = set()

    def all_seen():
        whole.add(frame(player))
        return whole >= set(range(5, SHORT_FRAMES - 1, 3))
    wait_for("all of the frames", all_seen)


def case_the_clock_stands_while_the_buffer_fills(display):
    player = Player(display, VEXEL, "--delay", "2500", counting(display))
    seen = wait_for("a frame", lambda: (frame(player) or 0))
    assert seen < 15, f"frame {seen} is the first"
    wait_for("a movement", lambda: frame(player) > seen)


def case_a_press_on_the_seek_bar_takes_a_linear_movie_there(display):
    player = Player(display, VEXEL, "--mode", "linear", "--delay", "200", counting(display))
    wait_for("the movie", lambda: (frame(player) or 0) > 1)
    player.key("space")
    wait_for("a stand", player.stands)
    player.click_bar(display.place(player.window)[2] // 2)
    wait_for("another place", lambda: COUNT_FRAMES // 4 < frame(player) < COUNT_FRAMES * 3 // 4)
    at = frame(player)
    player.key("comma")
    wait_for("the frame before", lambda: frame(player) == at - 1)
    player.key("space")
    wait_for("a movement", lambda: frame(player) > at)


def case_linear_movies_begin_again_at_their_end(display):
    player = Player(display, VEXEL, "--mode", "linear", short(display))
    for _ in range(3):
        wait_for("the movie's end", lambda: (frame(player) or 0) > SHORT_FRAMES - 8)
        wait_for("its beginning", lambda: 0 < (frame(player) or 0) < 8)


def case_a_movie_that_has_stopped_itself_is_left_where_it_stands(display):
    place = "place n + 1 depth 1"
    stops = COUNT.replace(place, f"{place} if n == 7 {{ script {{ stop() }} }}")
    text = f"let frames = {SHORT_FRAMES}\n{stops}"
    player = Player(display, VEXEL, make(display, "stops", text))
    wait_for("the frame", lambda: frame(player) == 7)
    end = time.time() + SHORT_FRAMES / COUNT_RATE + 1
    while time.time() < end:
        assert frame(player) == 7


def case_a_movie_of_a_server_is_streamed_once_it_is_whole(display):
    server = SlowServer(short(display).read_bytes())
    player = Player(display, VEXEL, "--mode", "linear", server.url("half"))
    time.sleep(1)
    assert player.site() is None
    server.go_on.set()
    wait_for("the movie", lambda: (frame(player) or 0) > 2)
    server.close()


def case_damaged_movies_are_told_in_these_modes_too(display):
    whole = TRAIN.read_bytes()
    for mode in ("linear", "nonlinear"):
        broken = display.folder / "broken.vxf"
        broken.write_bytes(whole[:10])
        half = display.folder / "half.vxf"
        half.write_bytes(whole[:len(whole) * 2 // 3])
        player = Player(display, VEXEL, "--mode", mode, broken)
        wait_for("the message", player.message)
        assert player.site() is None
        player.open(half)
        first = player.shot()
        wait_for("the message", player.message)
        wait_for("a movement", lambda: far(player.shot(), first) > 0.1)
        player.open(short(display))
        wait_for("the next movie", lambda: (frame(player) or 0) > 2)
        assert not player.message()
        player.close()


def case_wrong_values_of_the_options_are_a_message_and_status_2(display):
    for words, told in [(("--mode", "round"), "--mode"), (("--loss", "101"), "--loss: '101' is not"),
                        (("--drop", "3-1"), "--drop"), (("--packet", "10"), "--packet")]:
        done = subprocess.run([VEXEL, "play", *words, BOOK], env=display.env, capture_output=True,
                              text=True)
        assert done.returncode == 2 and told in done.stderr, done.stderr


def case_the_log_tells_what_the_plug_in_reports(display):
    player = Player(display, VEXEL, "--log", "--mode", "nonlinear", "--drop", "1", "--packet", "300",
                    short(display))
    for words in ("OnHeader()", "Header Info:", "OnPacket(", "OnTimeSync(", "OnEndofPackets()"):
        wait_for(words, lambda words=words: words in player.said())
    assert all(line.startswith("vexel: plug-in: severity") for line in player.said().splitlines())
