"""Windows that the menus open, and what they are kept for."""
from PIL import Image

from display import wait_for
from movies import BOOK, VEXEL, streamed
from player import Player, far


def case_a_picture_is_saved(display):
    player = Player(display, VEXEL, BOOK)
    player.until("the movie's picture", streamed(BOOK))
    path = display.folder / "page.png"
    player.key("ctrl+s")
    player.fill_in("Save the picture", path)
    wait_for("the file", lambda: path.exists() and path.stat().st_size > 0)
    assert far(Image.open(path).convert("RGB"), streamed(BOOK)) == 0


def case_preferences_are_kept_in_the_users_folder(display):
    player = Player(display, VEXEL)
    player.key("ctrl+comma")
    player.dialog("Preferences")
    path = display.folder / "config/vexel/preferences.ini"
    player.key("alt+q", "Down", "Down")
    wait_for("the file", lambda: path.exists() and "Quality=2" in path.read_text())
    player.key("Escape")
    player.wait_for_keyboard()
