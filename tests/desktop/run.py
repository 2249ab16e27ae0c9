#!/usr/bin/env python3
"""The player's window under a virtual display: run.py VEXEL MOVIES [CASE...]

Pictures are held against those that the client without a window makes of the
same movie under the same hands. A failure leaves the screen beside the test.
"""
import pathlib
import subprocess
import sys
import tempfile
import time
import traceback

from PIL import Image

from player import Display, Player, far, wait_for
from slow_server import SlowServer

VEXEL = sys.argv[1]
MOVIES = pathlib.Path(sys.argv[2])
BOOK, BOOK_SIZE = MOVIES / "guestbook.vxf", (700, 460)
TRAIN = MOVIES / "railway.vxf"
SAME = 0.6  # a caret may blink


def streamed(movie, *lines):
    """The picture of the client without a window after a script's lines."""
    with tempfile.TemporaryDirectory() as folder:
        out = f"{folder}/out.png"
        script = "\n".join(["clock 0", "clock 500", *lines, f"shot {out}", ""])
        subprocess.run([VEXEL, "stream", "--packet", "65535", movie, "-"], input=script, text=True,
                       check=True, capture_output=True)
        return Image.open(out).convert("RGB")


def until_same(player, expected, what):
    wait_for(what, lambda: player.site() and far(player.shot(), expected) < SAME)


def case_a_movie_named_on_the_command_line_is_shown_at_its_own_size(display):
    player = Player(display, VEXEL, BOOK)
    until_same(player, streamed(BOOK), "the movie's picture")
    assert player.site()[2:] == BOOK_SIZE
    assert player.title().startswith("guestbook.vxf"), player.title()
    return player


def case_a_button_of_the_movie_takes_a_click(display):
    player = Player(display, VEXEL, BOOK)
    until_same(player, streamed(BOOK), "the movie's picture")
    player.click(300, 422, BOOK_SIZE)
    turned = streamed(BOOK, "move 300 422", "down 300 422", "up 300 422", "clock 1000")
    assert far(turned, streamed(BOOK)) > SAME
    until_same(player, turned, "the page turned")
    return player


def case_letters_go_into_a_field_even_if_they_are_shortcuts_too(display):
    player = Player(display, VEXEL, BOOK)
    until_same(player, streamed(BOOK), "the movie's picture")
    player.click(450, 115, BOOK_SIZE)
    player.type("Ada f, F.")
    typed = streamed(BOOK, "move 450 115", "down 450 115", "up 450 115", "type Ada f, F.",
                     "clock 1000")
    name = (374, 102, 642, 128)
    assert far(typed.crop(name), streamed(BOOK).crop(name)) > 2
    wait_for("the name in its field",
             lambda: far(player.shot().crop(name), typed.crop(name)) < 0.5)
    assert player.site()[2:] == BOOK_SIZE
    return player


def case_f_fills_the_screen_with_the_aspect_kept_and_escape_leaves_it(display):
    player = Player(display, VEXEL, BOOK)
    until_same(player, streamed(BOOK), "the movie's picture")
    player.key("f")
    wait_for("the full screen", lambda: player.site()[2] == 1024)
    left, top, width, height = player.site()
    assert (left, height) == (0, 460 * 1024 // 700), player.site()
    screen = display.picture()
    assert screen.getpixel((512, 10)) == (0, 0, 0) and top > 20
    until_same(player, streamed(BOOK, f"resize {width}x{height}"), "the large picture")
    player.key("Escape")
    wait_for("the window again", lambda: player.site()[2:] == BOOK_SIZE)
    player.key("F11")
    wait_for("the full screen again", lambda: player.site()[2] == 1024)
    return player


def case_the_movie_follows_the_windows_size(display):
    player = Player(display, VEXEL, BOOK)
    until_same(player, streamed(BOOK), "the movie's picture")
    display.tool("windowsize", player.window, 400, 500)
    wait_for("the small size", lambda: player.site()[2] == 400)
    assert player.site()[3] == 460 * 400 // 700, player.site()
    until_same(player, streamed(BOOK, "resize 400x262"), "the small picture")
    return player


def case_space_stops_the_movie_and_full_stop_and_comma_step_it(display):
    player = Player(display, VEXEL, TRAIN)
    wait_for("the movie", player.site)
    first = player.shot()
    wait_for("a movement", lambda: far(player.shot(), first) > 0.1)
    player.key("space")
    wait_for("a stand", lambda: far(player.shot(), player.shot()) == 0)
    stood = player.shot()
    player.key("period")
    wait_for("the next frame", lambda: far(player.shot(), stood) > 0)
    ahead = player.shot()
    player.key("comma")
    wait_for("the frame before", lambda: far(player.shot(), ahead) > 0)
    player.key("space")
    wait_for("a movement again", lambda: far(player.shot(), ahead) > 0.1)
    return player


def case_a_file_that_is_no_movie_is_told_in_the_window_and_another_opens(display):
    broken = pathlib.Path(display.home.name) / "broken.vxf"
    broken.write_bytes(b"This is a letter to my aunt.")
    player = Player(display, VEXEL, broken)
    wait_for("the message", player.message)
    assert player.site() is None and player.process.poll() is None
    player.open(BOOK)
    until_same(player, streamed(BOOK), "the next movie's picture")
    return player


def case_half_a_movie_plays_as_far_as_it_goes(display):
    half = pathlib.Path(display.home.name) / "half.vxf"
    whole = TRAIN.read_bytes()
    half.write_bytes(whole[:len(whole) * 2 // 3])
    player = Player(display, VEXEL, half)
    wait_for("the movie", player.site)
    wait_for("the message", player.message)
    return player


def stands(player):
    """Whether the movie's picture stays as it is for a second."""
    before = player.shot()
    time.sleep(1)
    return far(player.shot(), before) == 0


def case_a_movie_plays_while_the_rest_of_it_is_still_on_its_way(display):
    server = SlowServer(TRAIN.read_bytes())
    player = Player(display, VEXEL, server.url("half"))
    wait_for("the movie", player.site)
    first = player.shot()
    wait_for("a movement", lambda: far(player.shot(), first) > 0.1)
    wait_for("a stand at what has come", lambda: stands(player), 40)
    waiting = player.shot()
    server.go_on.set()
    wait_for("a movement again", lambda: far(player.shot(), waiting) > 0.1)
    server.close()
    return player


def case_a_server_that_breaks_off_leaves_the_player_usable(display):
    server = SlowServer(TRAIN.read_bytes())
    player = Player(display, VEXEL, server.url("cut"))
    wait_for("the movie", player.site)
    wait_for("the message", player.message)
    first = player.shot()
    wait_for("a movement", lambda: far(player.shot(), first) > 0.1)
    player.open(BOOK)
    until_same(player, streamed(BOOK), "the next movie's picture")
    server.close()
    return player


def case_a_movie_that_the_server_does_not_have_is_told(display):
    server = SlowServer(b"")
    player = Player(display, VEXEL, server.url("missing"))
    wait_for("the message", player.message)
    assert player.site() is None
    player.key("ctrl+l")
    player.dialog("Open an address")
    player.type(str(BOOK))
    player.key("Return")
    until_same(player, streamed(BOOK), "the next movie's picture")
    server.close()
    return player


def case_a_press_on_the_seek_bar_goes_there(display):
    player = Player(display, VEXEL, TRAIN)
    wait_for("the movie", player.site)
    player.key("space")
    wait_for("a stand", lambda: stands(player))
    stood = player.shot()
    left, top, width, height = display.place(player.window)
    display.tool("mousemove", left + width // 2, top + height - 21)
    display.tool("click", 1)
    wait_for("another place", lambda: far(player.shot(), stood) > 1)
    return player


def case_the_right_button_opens_the_movies_menu(display):
    player = Player(display, VEXEL, BOOK)
    until_same(player, streamed(BOOK), "the movie's picture")
    player.click(200, 300, BOOK_SIZE, button=3)
    plain = streamed(BOOK)
    wait_for("the menu", lambda: far(player.shot(), plain) > 1)
    player.key("Escape")
    until_same(player, plain, "the menu gone")
    return player


def case_a_picture_is_saved(display):
    player = Player(display, VEXEL, BOOK)
    until_same(player, streamed(BOOK), "the movie's picture")
    path = pathlib.Path(display.home.name) / "page.png"
    player.key("ctrl+s")
    player.dialog("Save the picture")
    player.key("ctrl+a")
    player.type(str(path))
    player.key("Return")
    wait_for("the file", lambda: path.exists() and path.stat().st_size > 0)
    time.sleep(0.5)
    assert far(Image.open(path).convert("RGB"), streamed(BOOK)) < SAME
    return player


def case_preferences_are_kept_in_the_users_folder(display):
    player = Player(display, VEXEL)
    player.key("ctrl+comma")
    player.dialog("Preferences")
    player.key("alt+q", "Down", "Down")
    path = pathlib.Path(display.home.name) / "config/vexel/preferences.ini"
    wait_for("the file", lambda: path.exists() and "Quality=2" in path.read_text())
    player.key("Escape")
    return player


LINK = """movie size 400, 200 rate 12 background white
shape plate { fill navy  rect 0, 0, 400, 200 }
button link { show plate in up over down hit  on release script { getURL("http://pages.example/one", "_blank") } }
place link
"""


def case_a_page_is_opened_after_one_question_for_its_site(display):
    home = pathlib.Path(display.home.name)
    (home / "link.vxt").write_text(LINK)
    subprocess.run([VEXEL, "make", home / "link.vxt", "-o", home / "link.vxf"], check=True)
    # A browser that writes down what it is to open.
    (home / "bin").mkdir()
    browser = home / "bin" / "xdg-open"
    browser.write_text(f'#!/bin/sh\necho "$1" >> {home}/opened\n')
    browser.chmod(0o755)
    display.env["PATH"] = f"{home}/bin:{display.env['PATH']}"

    player = Player(display, VEXEL, home / "link.vxf")
    wait_for("the movie", player.site)
    opened = home / "opened"
    player.click(200, 100, (400, 200))
    wait_for("the question", player.message)
    assert not opened.exists()
    height = display.place(player.window)[3]
    assert height < 400, f"the question makes the window {height} tall"
    player.answer()
    wait_for("the page", opened.exists)
    wait_for("the question gone", lambda: not player.message())
    player.click(200, 100, (400, 200))
    wait_for("the page again", lambda: len(opened.read_text().split()) == 2)
    assert opened.read_text().split() == ["http://pages.example/one"] * 2
    return player


def case_the_bar_hides_itself_in_full_screen(display):
    player = Player(display, VEXEL, TRAIN)
    wait_for("the movie", player.site)
    display.tool("mousemove", 500, 300)
    player.key("f")
    wait_for("the full screen", lambda: player.site()[2] == 1024)

    def bar():
        return display.picture().getpixel((1020, 796)) != (0, 0, 0)

    wait_for("the bar", bar)
    wait_for("the bar gone", lambda: not bar())
    display.tool("mousemove", 510, 310)
    wait_for("the bar again", bar)
    return player


def case_without_a_display_there_is_a_message_and_status_1(display):
    for name, words in [(None, "there is no display"), (":9999", "cannot be opened")]:
        env = {key: value for key, value in display.env.items() if key != "DISPLAY"}
        done = subprocess.run([VEXEL, "play", BOOK], env=env | ({"DISPLAY": name} if name else {}),
                              capture_output=True, text=True)
        assert done.returncode == 1 and words in done.stderr, done.stderr


def main():
    cases = [(name[5:], run) for name, run in globals().items() if name.startswith("case_")]
    failed = []
    for name, run in cases:
        if sys.argv[3:] and name not in sys.argv[3:]:
            continue
        display = Display()
        player = None
        try:
            player = run(display)
            assert not player or player.process.poll() is None, "the player has ended"
            print("ok     ", name, flush=True)
        except Exception:  # whatever it is, the next case runs
            failed.append(name)
            print("FAILED ", name, flush=True)
            traceback.print_exc()
            display.picture().save(f"failed-{name}.png")
        finally:
            display.close()
            if player:
                print(player.close(), end="")
    sys.exit(1 if failed else 0)


main()
