"""Movies from the command line, from dialogs and out of files that are none."""
import subprocess

from display import wait_for
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
