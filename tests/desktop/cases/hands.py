"""Pointer and keys that are the movie's, and its own menu."""
from display import wait_for
from movies import BOOK, BOOK_SIZE, SAME, VEXEL, streamed
from player import Player, far


def case_a_button_of_the_movie_takes_a_click(display):
    player = Player(display, VEXEL, BOOK)
    player.until("the movie's picture", streamed(BOOK))
    player.click(300, 422, BOOK_SIZE)
    turned = streamed(BOOK, "move 300 422", "down 300 422", "up 300 422", "clock 1000")
    assert far(turned, streamed(BOOK)) > SAME
    player.until("the page turned", turned)


def case_letters_go_into_a_field_even_if_they_are_shortcuts_too(display):
    player = Player(display, VEXEL, BOOK)
    player.until("the movie's picture", streamed(BOOK))
    player.click(450, 115, BOOK_SIZE)
    player.type("Ada f, F.")
    typed = streamed(BOOK, "move 450 115", "down 450 115", "up 450 115", "type Ada f, F.",
                     "clock 1000")
    name = (374, 102, 642, 128)
    assert far(typed.crop(name), streamed(BOOK).crop(name)) > 2
    wait_for("the name in its field",
             lambda: far(player.shot().crop(name), typed.crop(name)) < 0.5)
    assert player.size() == BOOK_SIZE


def case_the_right_button_opens_the_movies_menu(display):
    player = Player(display, VEXEL, BOOK)
    plain = streamed(BOOK)
    player.until("the movie's picture", plain)
    player.click(200, 300, BOOK_SIZE, button=3)
    wait_for("the menu", lambda: far(player.shot(), plain) > 1)
    player.key("Escape")
    player.until("the menu gone", plain)


def choose(player, x, y, row):
    """From the movie's menu, by its row."""
    before = player.windows()
    player.click(x, y, BOOK_SIZE, button=3)
    wait_for("the menu", lambda: player.windows() > before)
    player.key(*["Down"] * (row + 1), "Return")
    wait_for("the menu gone", lambda: player.windows() == before)


def case_what_is_chosen_in_the_movies_menu_is_done(display):
    player = Player(display, VEXEL, BOOK)
    plain = streamed(BOOK)
    player.until("the movie's picture", plain)
    # The menu's rows, by their numbers for programs.
    zoom_in, show_all, quality = 20042, 20034, 20028
    hand = "move 200 300"

    large = streamed(BOOK, hand, f"menu {zoom_in}", "clock 1000")
    assert far(large, plain) > 1
    choose(player, 200, 300, 0)
    player.until("the movie enlarged", large)
    whole = streamed(BOOK, hand, f"menu {zoom_in}", f"menu {show_all}", "clock 1000")
    assert far(whole, large) > 1
    choose(player, 200, 300, 3)
    player.until("the movie as it was", whole)
    rough = streamed(BOOK, hand, f"menu {quality}", "clock 1000")
    assert far(rough, whole) > 0
    choose(player, 200, 300, 4)
    player.until("rough edges", rough)
