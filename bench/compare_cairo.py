#!/usr/bin/env python3
"""Times imported art beside cairo: the same paths and paints at 1280x720.

For each picture, `vexel import` makes the movie, `vexel bench --full --jitter` draws it,
and cairo_peer draws what the importer found. Both move the picture on by a quarter pixel
a frame and draw every edge and colour anew; the figure is the median time of a frame.
The two take turns, and the best round of each counts, which evens out a busy machine.

  bench/compare_cairo.py --vexel build/bin/vexel --peer build/bin/cairo_peer ART...
"""

import argparse
import math
import pathlib
import subprocess
import sys
import tempfile


def figure(command):
    done = subprocess.run(command, capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f"{command[0]} failed: {done.stderr.strip()}")
    values = dict(line.split(": ", 1) for line in done.stdout.splitlines() if ": " in line)
    return int(values["ns_per_frame"])


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--vexel", default="build/bin/vexel")
    parser.add_argument("--peer", default="build/bin/cairo_peer")
    parser.add_argument("--frames", type=int, default=60)
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("art", nargs="+", type=pathlib.Path)
    options = parser.parse_args()

    logs = []
    print(f"{'cairo ms':>10} {'vexel ms':>10} {'ratio':>7}  picture")
    with tempfile.TemporaryDirectory() as scratch:
        movie = str(pathlib.Path(scratch, "art.vxf"))
        for art in options.art:
            subprocess.run([options.vexel, "import", str(art), "-o", movie], check=True,
                           stderr=subprocess.DEVNULL)
            ours, theirs = [], []
            for _ in range(options.rounds):
                ours.append(figure([options.vexel, "bench", movie, "--size", "1280x720", "--full",
                                    "--jitter", "--frames", str(options.frames)]))
                theirs.append(figure([options.peer, str(art), str(options.frames)]))
            ratio = min(theirs) / min(ours)
            logs.append(math.log(ratio))
            print(f"{min(theirs) / 1e6:10.3f} {min(ours) / 1e6:10.3f} {ratio:7.2f}  {art.name}",
                  flush=True)
    print(f"geometric mean of cairo / vexel over {len(logs)} pictures: "
          f"{math.exp(sum(logs) / len(logs)):.2f}")


if __name__ == "__main__":
    main()
