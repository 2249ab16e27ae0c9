#!/usr/bin/env python3
"""watch.py VEXEL: changes the sources of a watched movie, as editors do, and
waits for the picture each time. Ends with 0 if all came."""

import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import threading

WAIT_S = 60

MOVIE = 'movie size 10, 10 rate 12 background #ff0000\ninclude "part.vxt"\nplace square at 0, 0\nframe\n'
PART = "shape square { fill COLOR  rect 0, 0, 5, 5 }\n"


class Lines:
    """The lines of a stream, each waited for with a limit."""

    def __init__(self, stream):
        self.lines = []
        self.more = threading.Condition()
        threading.Thread(target=self.read, args=(stream,), daemon=True).start()

    def read(self, stream):
        for line in stream:
            with self.more:
                self.lines.append(line.rstrip("\n"))
                self.more.notify()

    def next(self, part):
        """Waits for a line that holds a text; lines before it are passed."""
        with self.more:
            while True:
                while self.lines:
                    line = self.lines.pop(0)
                    if part in line:
                        return line
                if not self.more.wait(WAIT_S):
                    raise AssertionError(f"no line with {part!r} came")


def replace(path, text):
    """As most editors save: a new file in the place of the old one."""
    new = path.with_suffix(".new")
    new.write_text(text)
    os.replace(new, path)


def pixel(path):
    return path.read_bytes()[:3][::-1].hex()


def run(vexel):
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        scratch = folder / "scratch"
        scratch.mkdir()
        movie, part, out = folder / "movie.vxt", folder / "part.vxt", folder / "out.raw"
        movie.write_text(MOVIE)
        part.write_text(PART.replace("COLOR", "#0000ff"))
        process = subprocess.Popen(
            [vexel, "watch", str(movie), "-o", str(out)], text=True, stdout=subprocess.PIPE,
            stderr=subprocess.PIPE, env={**os.environ, "TMPDIR": str(scratch)})
        output, messages = Lines(process.stdout), Lines(process.stderr)
        try:
            output.next("out.raw")
            assert pixel(out) == "0000ff", pixel(out)

            # A file that the text takes in, written in place.
            part.write_text(PART.replace("COLOR", "#00ff00"))
            output.next("out.raw")
            assert pixel(out) == "00ff00", pixel(out)

            # The text itself, replaced by a rename.
            replace(movie, MOVIE.replace("0, 0\nframe", "9, 9\nframe"))
            output.next("out.raw")
            assert pixel(out) == "ff0000", pixel(out)

            # A mistake is told with its place, the picture stays.
            replace(movie, MOVIE.replace("place", "plaice"))
            messages.next("movie.vxt:3:1:")
            assert pixel(out) == "ff0000", pixel(out)

            # A file that is missing is noticed when it comes.
            part.unlink()
            replace(movie, MOVIE)
            messages.next("part.vxt")
            part.write_text(PART.replace("COLOR", "#102030"))
            output.next("out.raw")
            assert pixel(out) == "102030", pixel(out)

            process.send_signal(signal.SIGINT)
            assert process.wait(WAIT_S) == 0, process.returncode
            assert not list(scratch.iterdir()), "files are left behind"
        finally:
            process.kill()
            process.wait()


if __name__ == "__main__":
    if len(sys.argv) != 2:
        print(__doc__, file=sys.stderr)
        sys.exit(2)
    run(sys.argv[1])
