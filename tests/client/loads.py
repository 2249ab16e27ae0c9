#!/usr/bin/env python3
"""What a streamed movie asks of its client: pages, files of this machine and of a
web server, and forms that are posted by way of a browser.

    loads.py --vexel build/bin/vexel
"""

import argparse
import http.server
import pathlib
import subprocess
import sys
import tempfile
import threading

FILES = {"/vars.txt": b"found=http%3A//web.example/", "/loaded.vxf": None}
failures = []


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        body = FILES.get(self.path.split("?", 1)[0])
        self.send_response(200 if body is not None else 404)
        self.send_header("Content-Length", str(len(body or b"")))
        self.end_headers()
        self.wfile.write(body or b"")

    def log_message(self, *_):
        pass


def expect(what, got, want):
    if got != want:
        failures.append(f"{what}:\n  got      {got!r}\n  expected {want!r}")


class Movies:
    def __init__(self, vexel, folder):
        self.vexel, self.folder = vexel, folder

    def make(self, name, text):
        path = self.folder / f"{name}.vxf"
        source = self.folder / f"{name}.vxt"
        source.write_text(text)
        subprocess.run([self.vexel, "make", source, "-o", path], check=True, timeout=60)
        return path

    def stream(self, movie, script, *options):
        done = subprocess.run([self.vexel, "stream", "--duration", "100000", *options, movie, "-"],
                              input=script, capture_output=True, text=True, timeout=120)
        expect(f"{movie.name}: messages", done.stderr, "")
        expect(f"{movie.name}: status", done.returncode, 0)
        return done.stdout


CLOCKS = "".join(f"clock {ms}\n" for ms in range(0, 800, 100))


def check_variables(movies, base, host):
    movie = movies.make("variables", f"""movie size 100, 80 rate 10
frame {{ script {{ getURL("{base}page.html", "side"); loadVariables("{base}vars.txt", "") }} }}
frame {{ }}
frame {{ script {{ getURL(found, "_self"); stop() }} }}
""")
    expect(f"pages and variables of '{base}'", movies.stream(movie, CLOCKS),
           f"GoToURL url={base}page.html target=side\nGoToURL url=http://{host}.example/ target=_self\n")


def check_movie(movies, base):
    FILES["/loaded.vxf"] = movies.make("loaded", """movie size 100, 80 rate 10
shape square { paint red #ff0000 fill red path "M10 10 L90 10 L90 70 L10 70 Z" }
frame { place square depth 1 }
""").read_bytes()
    movie = movies.make("loader", f"""movie size 100, 80 rate 10
background #ffffff
frame {{ script {{ loadMovie("{base}loaded.vxf", "_level1"); stop() }} }}
""")
    picture = movies.folder / "loaded.raw"
    movies.stream(movie, CLOCKS + f"shot {picture}\n")
    pixels = picture.read_bytes()
    middle = int.from_bytes(pixels[(40 * 100 + 50) * 4:][:4], "little")
    expect(f"the middle of the movie loaded from '{base}'", hex(middle), hex(0xFF0000))


def check_missing(movies):
    movie = movies.make("missing", """movie size 100, 80 rate 10
frame { script { loadVariables("nowhere.txt", ""); loadMovie("http://127.0.0.1:9/x.vxf", "_level1") } }
frame { script { getURL("http://still.example/", "_self"); stop() } }
""")
    expect("files that are not there", movies.stream(movie, CLOCKS),
           "GoToURL url=http://still.example/ target=_self\n")


# Stands for the browser: fetches the page that the plug-in lends it.
FETCH = """import sys, urllib.request
page = urllib.request.urlopen(sys.argv[1], timeout=20).read()
open(sys.argv[2], "wb").write(page)
"""


def check_post(movies):
    fetch = movies.folder / "fetch.py"
    fetch.write_text(FETCH)
    page = movies.folder / "page.html"
    movie = movies.make("post", """movie size 100, 80 rate 10
frame { script { name = "Ada"; town = "Brugge"; getURL("http://form.example/cgi", "answer", "post"); stop() } }
""")
    printed = movies.stream(movie, CLOCKS + "serve 4000\n", "--browser",
                            f"{sys.executable} '{fetch}' %u '{page}'")
    expect("the page for the browser is on this machine",
           printed.startswith("GoToURL url=http://127.0.0.1:"), True)
    text = page.read_text(errors="replace") if page.exists() else ""
    for part in ("http://form.example/cgi", "name", "Ada", "town", "Brugge"):
        expect(f"the page holds {part}", part in text, True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--vexel", required=True, type=lambda path: pathlib.Path(path).resolve())
    args = parser.parse_args()
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    web = f"http://127.0.0.1:{server.server_port}/"
    with tempfile.TemporaryDirectory() as temporary:
        movies = Movies(args.vexel, pathlib.Path(temporary))
        (movies.folder / "vars.txt").write_text("found=http%3A//file.example/")
        check_variables(movies, "", "file")
        check_variables(movies, web, "web")
        check_movie(movies, "")
        check_movie(movies, web)
        check_missing(movies)
        check_post(movies)
    for failure in failures:
        print(failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
