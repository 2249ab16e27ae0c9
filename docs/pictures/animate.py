#!/usr/bin/env python3
"""An animated picture of a movie, for the page of the demos: animate.py VEXEL MOVIE OUT.gif
Takes every third frame at two thirds of the size."""
import glob
import subprocess
import sys
import tempfile

from PIL import Image

STEP = 3
COLORS = 128


def main():
    vexel, movie, out = sys.argv[1:]
    info = dict(line.split(": ", 1) for line in
                subprocess.run([vexel, "info", movie], check=True, text=True,
                               stdout=subprocess.PIPE).stdout.splitlines() if ": " in line)
    size = (int(info["width"]) * 2 // 3, int(info["height"]) * 2 // 3)
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([vexel, "render", movie, "--all", "-o", f"{folder}/%05d.png"], check=True)
        frames = [Image.open(name).convert("RGB").resize(size, Image.LANCZOS)
                  for name in sorted(glob.glob(f"{folder}/*.png"))[::STEP]]
    table = frames[0].quantize(COLORS, method=Image.MEDIANCUT)
    frames = [frame.quantize(palette=table, dither=Image.NONE) for frame in frames]
    frames[0].save(out, save_all=True, append_images=frames[1:], loop=0, optimize=True,
                   duration=round(1000 * STEP / float(info["rate"])))


main()
