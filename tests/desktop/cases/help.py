"""What the Help menu shows."""
from display import wait_for
from movies import VEXEL
from player import Player


def case_the_help_menu_shows_the_keys_and_the_program(display):
    player = Player(display, VEXEL)
    for keys, name in ((("F1",), "Keyboard shortcuts"), (("alt+h", "a"), "About Vexel")):
        player.key(*keys)
        player.dialog(name)
        player.key("Escape")
        player.wait_for_keyboard()
