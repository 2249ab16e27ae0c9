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
