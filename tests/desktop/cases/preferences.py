"""What the window keeps for its user."""
from display import wait_for
from movies import COUNT_FRAMES, COUNT_SIZE, TRAIN, VEXEL, counting, number
from player import Player


def kept(display):
    path = display.folder / "config/vexel/preferences.ini"
    return path.read_text() if path.exists() else ""


def keep(display, *lines):
    path = display.folder / "config/vexel/preferences.ini"
    path.parent.mkdir(parents=True)
    path.write_text("\n".join(["[Preferences]", *lines, ""]))


def case_a_movie_that_is_not_to_begin_again_stands_at_its_end(display):
    keep(display, "Window.Loop=no")
    player = Player(display, VEXEL, counting(display))
    wait_for("the last frame", lambda: number(player.shot()) == COUNT_FRAMES - 1)
    wait_for("a stand", lambda: player.stands(2))  # with the bar over it
    assert number(player.shot()) == COUNT_FRAMES - 1


def case_the_window_keeps_its_size_for_the_next_time(display):
    keep(display, "Window.KeepSize=yes")
    player = Player(display, VEXEL, TRAIN)
    wait_for("the movie", player.site)
    display.tool("windowsize", player.window, 500, 333)
    wait_for("the size", lambda: display.place(player.window)[2:] == (500, 333))
    player.key("ctrl+q")
    player.wait_for_end()
    player = Player(display, VEXEL, counting(display))
    wait_for("the movie", player.site)
    assert display.place(player.window)[2:] == (500, 333)
    player.key("ctrl+1")
    wait_for("the movie's own size", lambda: player.size() == COUNT_SIZE)


def case_recent_movies_are_listed_cleared_and_not_listed(display):
    listed = display.folder / "data/recently-used.xbel"

    def lists(name):
        return listed.exists() and name in listed.read_text()

    player = Player(display, VEXEL, TRAIN)
    wait_for("the list", lambda: lists("railway.vxf"))
    player.key("alt+f", "c")
    wait_for("an empty list", lambda: not lists("railway.vxf"))
    player.key("ctrl+comma")
    player.dialog("Preferences")
    player.key("alt+r")
    wait_for("the file", lambda: "Window.Recent=no" in kept(display))
    player.key("Escape")
    player.wait_for_keyboard()
    # The system's dialog for files lists them by itself.
    player.key("ctrl+l")
    player.fill_in("Open an address", counting(display))
    wait_for("the movie", lambda: player.size() == COUNT_SIZE)
    wait_for("a movement", lambda: not player.stands())
    assert not lists("count.vxf")


def case_sites_are_forgotten_one_by_one_and_all(display):
    keep(display, *(f"Pages.{name}.example=open" for name in ("a", "b", "c")), "Quality=3")
    player = Player(display, VEXEL)
    player.key("ctrl+comma")
    player.dialog("Preferences")
    player.key("alt+g")
    wait_for("no sites", lambda: "Pages." not in kept(display))
    assert "Quality=3" in kept(display)
    player.key("Escape")
    player.wait_for_keyboard()
