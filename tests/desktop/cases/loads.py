"""Movies that load movies and variables, from beside them and from web servers."""
import functools
import http.server
import threading

from display import wait_for
from movies import VEXEL, make, streamed
from player import Player

SIZE = (300, 120)
LOADED = """movie size 300, 120 rate 10
shape square { fill red rect 150, 10, 280, 110 }
place square depth 1
"""
LOADER = """movie size 300, 120 rate 10 background white
shape bar { fill navy rect 0, 0, 300, 8 }
place bar depth 1
font plain = 20 name "_sans"
edit word bounds 0, 0, 120, 30 font plain height 20 color black readonly noselect variable "word" text "?"
place word depth 2 at 10, 30
frame { script { loadVariables("BASEwords.txt", "") } }
repeat 5 { frame { } }
frame { script { loadMovie("BASEloaded.vxf", "_level1"); stop() } }
"""


class Quiet(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *words):
        pass


def serve(folder):
    server = http.server.ThreadingHTTPServer(
        ("127.0.0.1", 0), functools.partial(Quiet, directory=folder))
    server.daemon_threads = True
    threading.Thread(target=server.serve_forever, daemon=True).start()
    return server, f"http://127.0.0.1:{server.server_port}/"


def make_all(display, base):
    make(display, "loaded", LOADED)
    (display.folder / "words.txt").write_text("word=Good+day")
    return make(display, "loader", LOADER.replace("BASE", base))


def words_in(picture):
    """Whether more than one character stands in the field."""
    dark = [x for x in range(10, 130)
            if any(picture.getpixel((x, y)) == (0, 0, 0) for y in range(30, 60))]
    return len(dark) > 30


def expected(movie):
    """And that it is what it should be."""
    picture = streamed(movie, *(f"clock {ms}" for ms in range(600, 2000, 100)))
    assert picture.getpixel((200, 60)) == (255, 0, 0)
    assert words_in(picture)
    return picture


def case_movies_and_variables_are_loaded_from_beside_the_movie(display):
    movie = make_all(display, "")
    Player(display, VEXEL, movie).until("all that was loaded", expected(movie))


def case_movies_and_variables_are_loaded_from_beside_a_movie_of_a_server(display):
    movie = make_all(display, "")
    server, base = serve(display.home.name)
    Player(display, VEXEL, base + movie.name).until("all that was loaded", expected(movie))
    server.shutdown()


def case_a_movie_of_a_file_loads_from_a_server(display):
    server, base = serve(display.home.name)
    movie = make_all(display, base)
    Player(display, VEXEL, movie).until("all that was loaded", expected(movie))
    server.shutdown()


def case_loading_works_over_a_network_that_is_made_up(display):
    movie = make_all(display, "")
    Player(display, VEXEL, "--delay", "50", movie).until("all that was loaded", expected(movie))


def case_a_linear_movie_loads_variables(display):
    player = Player(display, VEXEL, "--mode", "linear", make_all(display, ""))
    wait_for("the variables", lambda: words_in(player.shot()))


def case_what_is_not_there_is_not_loaded_and_the_movie_goes_on(display):
    movie = make_all(display, "")
    (display.folder / "loaded.vxf").unlink()
    player = Player(display, VEXEL, movie)
    wait_for("the variables", lambda: player.size() == SIZE and words_in(player.shot()))
    assert player.stands() and player.shot().getpixel((200, 60)) == (255, 255, 255)
