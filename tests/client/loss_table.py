#!/usr/bin/env python3
"""What loss does to streamed movies: a table, and what must hold of it.

    loss_table.py --vexel build/bin/vexel --movies FOLDER [NAME...]

Each movie (see make_stream_movies.cpp) is streamed through networks with faults,
and its picture compared with that of the same session without faults:

    buffered   packets travel ahead of their time, so answers come in time
    live       packets arrive when they are due, so gaps are seen
    again      live, and then a jump back once the answers are there

For non-linear streams the jump must show what the file holds, whatever was lost
on the way: all bytes have been written by then. Of linear streams the table tells
how many pictures are whole at the end.
"""

import argparse
import pathlib
import re
import subprocess
import sys
import tempfile

NETWORKS = {
    "clean": "",
    "loss 1 %": "--loss 1",
    "loss 5 %": "--loss 5",
    "loss 20 %": "--loss 20",
    "loss 50 %": "--loss 50",
    "reorder 20 %": "--reorder 20",
    "duplicate 20 %": "--duplicate 20",
    "all three, 20 %": "--loss 20 --reorder 20 --duplicate 20",
}
PACKET = 700
DELAY_MS = 40
LENGTH_MS = 2000


def stream(args, movie, mode, options, script):
    """The pictures that the script shoots, and the statistics at its end."""
    with tempfile.TemporaryDirectory() as folder:
        command = [args.vexel, "stream", str(movie), "--mode", mode, "--packet", str(PACKET),
                   "--delay", str(DELAY_MS), "--duration", "1000000", *options.split(), "-"]
        done = subprocess.run(command, input=script + "stats\n", cwd=folder, capture_output=True,
                              text=True, timeout=120)
        if done.returncode != 0 or done.stderr:
            raise RuntimeError(f"{' '.join(command)}: status {done.returncode}, {done.stderr}")
        pictures = [path.read_bytes() for path in sorted(pathlib.Path(folder).iterdir())]
        stats = dict(re.findall(r"([\w-]+)=(\d+)", done.stdout))
        return pictures, {key: int(value) for key, value in stats.items()}


def clock_to(end):
    return "".join(f"clock {ms}\n" for ms in range(0, end + 1, 100))


# Shot a in the course of the movie, shot b after the jump back: by then all
# answers are there. Another size has everything drawn anew: the edges of what is
# drawn piece by piece depend on the pieces.
SCRIPT = (clock_to(LENGTH_MS) + "resize 160x120\nshot a.png\nwait 20000\nclock 22000\n"
          "clock 22100\nseek 1000\nclock 1100\nresize 180x140\nshot b.png\n")


def clean_runs(args, movies, mode):
    """By movie, the pictures without faults: live, and ahead of time."""
    return {movie: (stream(args, movie, mode, "--lead 0", SCRIPT)[0],
                    stream(args, movie, mode, "", SCRIPT)[0]) for movie in movies}


def row(args, clean, mode, options):
    counts = {"buffered": 0, "live": 0, "again": 0}
    sums = {"sent": 0, "lost": 0, "late": 0, "requests": 0, "resent": 0, "dummy-bytes": 0}
    runs, wrong = 0, []
    for movie, (clean_live, clean_ahead) in clean.items():
        for seed in range(1, args.seeds + 1):
            runs += 1
            ahead, _ = stream(args, movie, mode, f"{options} --seed {seed}", SCRIPT)
            live, stats = stream(args, movie, mode, f"{options} --seed {seed} --lead 0", SCRIPT)
            counts["buffered"] += ahead[0] == clean_ahead[0]
            counts["live"] += live[0] == clean_live[0]
            again = live[1] == clean_live[1]
            counts["again"] += again
            if mode == "nonlinear" and not again:
                wrong.append(f"{movie.stem} with {options} --seed {seed}: "
                             "the picture after the jump differs")
            for key in sums:
                sums[key] += stats[key]
    return runs, counts, sums, wrong


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("--vexel", required=True, type=lambda path: str(pathlib.Path(path).resolve()))
    parser.add_argument("--movies", required=True, type=lambda path: pathlib.Path(path).resolve())
    parser.add_argument("--seeds", type=int, default=3, help="runs of each movie and network")
    parser.add_argument("names", nargs="*")
    args = parser.parse_args()
    movies = [path for path in sorted(args.movies.glob("*.vxf"))
              if not args.names or path.stem in args.names]
    wrong = []
    for mode in ("nonlinear", "linear"):
        print(f"\n{mode}: runs whose picture is that of the clean run; sums over live runs\n")
        print("| network | runs | buffered | live | again | sent | lost | late | requests | resent "
              "| dummy bytes |")
        print("| --- " * 11 + "|")
        clean = clean_runs(args, movies, mode)
        for name, options in NETWORKS.items():
            runs, counts, sums, faults = row(args, clean, mode, options)
            cells = [name, runs, *counts.values(), *sums.values()]
            print("| " + " | ".join(map(str, cells)) + " |", flush=True)
            wrong += faults
    for fault in wrong:
        print(fault, file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
