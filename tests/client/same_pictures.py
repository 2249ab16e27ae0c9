#!/usr/bin/env python3
"""Streams show what files show: pictures through the plug-in against the command's.

    same_pictures.py --vexel build/bin/vexel --hello build/bin/hello-client
                     --plugin build/lib/vexel.so --movies FOLDER --still FOLDER

Non-linear, a time sync plays as one step of the player does: a stream whose first
clock is MS shows what `vexel render --at MS` shows, up to the movie's end, where a
stream stands and a file goes round. A whole script of clock, pointer and keys shows
what `vexel run` shows. Linear, frame k shows what `render --frame k` shows, in movies
in which nothing runs by itself; with key frames, too, if nothing is transparent.
"""

import argparse
import math
import pathlib
import subprocess
import sys
import tempfile

# They begin before they are whole, and then call frames that have not come.
WHOLE_ONLY = {"calculator", "guestbook", "tutor"}
# It waits for frames, which in a stream takes it one step more: by then it stands.
FROM_MS = {"slides": 1500}
TIMES_MS = (0, 250, 700, 1500, 3000)

failures = []


def command(*words, text=None):
    done = subprocess.run([str(word) for word in words], input=text, capture_output=True,
                          text=True, timeout=120)
    if done.returncode != 0 or done.stderr:
        failures.append(f"{' '.join(map(str, words))}: status {done.returncode}, {done.stderr.strip()}")
    return done.stdout


def info(args, movie):
    lines = command(args.vexel, "info", movie).splitlines()
    values = dict(line.split(": ", 1) for line in lines if ": " in line)
    return int(values["frames"]), float(values["rate"])


def expect_same(folder, what):
    pictures = [path.read_bytes() for path in sorted(folder.glob("*.png"))]
    if len(pictures) != 2:
        failures.append(f"{what}: no picture")
    elif pictures[0] != pictures[1]:
        failures.append(f"{what}: the pictures differ")
    for path in folder.glob("*.png"):
        path.unlink()


def stream(args, movie, script, *options):
    return command(args.vexel, "stream", "--duration", "1000000", *options, movie, "-", text=script)


def check_times(args, movie, folder):
    frames, rate = info(args, movie)
    for ms in TIMES_MS:
        if ms >= (frames - 1) * 1000 / rate > 0 or ms < FROM_MS.get(movie.stem, 0):
            continue
        packets = (65535,) if movie.stem in WHOLE_ONLY else (1400, 65535)
        for packet in packets:
            command(args.vexel, "render", movie, "--at", ms, "-o", folder / "file.png")
            stream(args, movie, f"clock {ms}\nshot {folder}/stream.png\n", "--packet", packet)
            expect_same(folder, f"{movie.stem} at {ms} ms, packets of {packet}")
        if movie.stem != "slides":
            command(args.vexel, "render", movie, "--at", ms, "-o", folder / "file.png")
            command(args.hello, args.plugin, movie, folder / "hello.png", ms)
            expect_same(folder, f"{movie.stem} at {ms} ms in the smallest client")


# Scripts that both verbs understand; the first redraw of `run` is before any clock.
SCRIPTS = {
    "menu": "clock 0\nmove 60 60\nclock 300\ndown 60 60\nclock 400\nup 60 60\nclock 1000\n",
    "snake": "clock 0\ntype x\nclock 500\nkey right\nclock 900\nkey down\nclock 1500\n",
    "gallery": "clock 0\nmove 100 100\ndown 100 100\nup 100 100\nclock 800\n",
    "jigsaw": "clock 0\ndown 150 100\nmove 200 180\nclock 200\nup 200 180\nclock 600\n",
}


def check_scripts(args, folder):
    for name, script in SCRIPTS.items():
        movie = args.movies / f"{name}.vxf"
        file_lines = command(args.vexel, "run", movie, "-", text=script + f"shot {folder}/file.png\n")
        stream_lines = stream(args, movie, script + f"shot {folder}/stream.png\n")
        expect_same(folder, f"{name} by a script")
        if file_lines != stream_lines:
            failures.append(f"{name} by a script: the file prints\n{file_lines}the stream\n{stream_lines}")


def check_frames(args, movie, folder):
    frames, rate = info(args, movie)
    for frame in range(0, frames, 7):
        for key in (0, 500):
            command(args.vexel, "render", movie, "--frame", frame, "-o", folder / "file.png")
            stream(args, movie, f"clock {math.ceil(frame * 1000 / rate)}\nshot {folder}/stream.png\n",
                   "--mode", "linear", "--key", key)
            expect_same(folder, f"{movie.stem}, frame {frame}, linear, key frames each {key} ms")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    for name in ("vexel", "hello", "plugin", "movies", "still"):
        parser.add_argument(f"--{name}", required=True, type=lambda path: pathlib.Path(path).resolve())
    args = parser.parse_args()
    with tempfile.TemporaryDirectory() as temporary:
        folder = pathlib.Path(temporary)
        for movie in sorted(args.movies.glob("*.vxf")):
            check_times(args, movie, folder)
        for movie in sorted(args.still.glob("*.vxf")):
            check_times(args, movie, folder)
            check_frames(args, movie, folder)
        check_scripts(args, folder)
    for failure in failures:
        print(failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
