"""Films that the window makes."""
import subprocess

from display import wait_for
from movies import COUNT_SIZE, TRAIN, VEXEL, counting
from player import Player
from slow_server import SlowServer

TITLE = "Export a film"


def rendering(player):
    """The process that works for the player, if any."""
    return subprocess.run(["pgrep", "-P", str(player.process.pid)], capture_output=True,
                          text=True).stdout.split()


def parts(display):
    """Files that are not finished."""
    return [path.name for path in display.folder.iterdir() if path.name.endswith(".part")]


def begin(display, name, seconds=None):
    """A player that exports a movie of a hundred frames, or so many seconds of it."""
    player = Player(display, VEXEL, counting(display))
    wait_for("the movie", lambda: player.size() == COUNT_SIZE)
    player.key("ctrl+e")
    player.dialog(TITLE)
    if seconds:
        player.key("alt+t", "ctrl+a")
        player.type(str(seconds))
        player.key("alt+n")
    player.fill_in(TITLE, display.folder / name)
    return player


def case_a_film_is_saved_and_shown_in_its_folder(display):
    opened = display.folder / "opened"
    browser = display.folder / "bin/xdg-open"
    browser.parent.mkdir()
    browser.write_text(f'#!/bin/sh\necho "$1" >> {opened}\n')
    browser.chmod(0o755)
    display.env["PATH"] = f"{browser.parent}:{display.env['PATH']}"

    player = begin(display, "film")
    film = display.folder / "film.gif"
    wait_for("the film, with the ending that was left out", film.exists)
    assert film.read_bytes()[:6] == b"GIF89a"
    wait_for("the message", player.message)
    assert player.size() == COUNT_SIZE
    player.key("alt+s")
    wait_for("the folder", opened.exists)
    assert opened.read_text().strip() == str(display.folder)


def case_a_film_that_is_cancelled_leaves_nothing(display):
    player = begin(display, "long.gif", 5000)
    wait_for("the work", lambda: parts(display))
    first = player.shot()
    wait_for("the movie still going", lambda: player.shot() != first)
    player.key("alt+c")
    wait_for("the end of the work", lambda: not rendering(player))
    assert not parts(display) and not (display.folder / "long.gif").exists()


def case_a_window_that_closes_takes_its_work_with_it(display):
    for end in ("ctrl+q", None):
        player = begin(display, "long.gif", 5000)
        wait_for("the work", lambda: parts(display))
        worker = rendering(player)
        if end:
            player.key(end)
            player.wait_for_end()
        else:
            player.process.kill()
            player.wait_for_end()
        wait_for("the end of the work",
                 lambda: subprocess.run(["ps", "-p", *worker], capture_output=True).returncode)
        assert not parts(display) and not (display.folder / "long.gif").exists()


def case_a_film_that_cannot_be_made_is_told(display):
    # As if the codec were not there.
    display.env["VEXEL_EXPORT_WITHOUT"] = "gif"
    player = begin(display, "film.gif")
    wait_for("the message", player.message)
    assert not rendering(player) and not (display.folder / "film.gif").exists()
    assert not parts(display)


def case_a_movie_of_a_server_is_exported_when_it_is_here_as_a_whole(display):
    server = SlowServer(TRAIN.read_bytes())
    player = Player(display, VEXEL, server.url("half"))
    wait_for("a stand at what has come", lambda: player.site() and player.stands())
    player.key("ctrl+e")
    wait_for("the message", player.message)
    assert player.has_keyboard()
    server.go_on.set()
    wait_for("a movement again", lambda: not player.stands())
    wait_for("the rest", lambda: player.key("ctrl+e") or player.active_name() == TITLE)
    player.fill_in(TITLE, display.folder / "film.mp4")
    wait_for("the film", lambda: (display.folder / "film.mp4").exists())
    server.close()
