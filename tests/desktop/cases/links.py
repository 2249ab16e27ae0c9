"""Pages that a movie asks for."""
from display import wait_for
from movies import VEXEL, make
from player import Player

LINK = """movie size 400, 200 rate 12 background white
shape plate { fill navy  rect 0, 0, 400, 200 }
button link { show plate in up over down hit  on release script { getURL("http://pages.example/one", "_blank") } }
place link
"""


def case_a_page_is_opened_after_one_question_for_its_site(display):
    # A browser that writes down what it is to open.
    opened = display.folder / "opened"
    browser = display.folder / "bin/xdg-open"
    browser.parent.mkdir()
    browser.write_text(f'#!/bin/sh\necho "$1" >> {opened}\n')
    browser.chmod(0o755)
    display.env["PATH"] = f"{browser.parent}:{display.env['PATH']}"

    def pages():
        return opened.read_text().split() if opened.exists() else []

    player = Player(display, VEXEL, make(display, "link", LINK))
    wait_for("the movie", player.site)
    player.click(200, 100, (400, 200))
    wait_for("the question", player.message)
    assert not pages()
    height = display.place(player.window)[3]
    assert height < 400, f"the question makes the window {height} tall"
    player.answer()
    wait_for("the page", lambda: len(pages()) == 1)
    wait_for("the question gone", lambda: not player.message())
    player.click(200, 100, (400, 200))
    wait_for("the page again", lambda: len(pages()) == 2)
    assert pages() == ["http://pages.example/one"] * 2
