#!/usr/bin/python3
"""Holds imported art against another renderer's picture of the same file.

Every picture of a set is imported, rendered at 256x256 by the command, and compared
with what rsvg-convert makes of the SVG file itself, on white. The measure of a file
is the mean absolute difference of its channels, 0 to 255. The sets:

  tango     the scalable icons of Debian's package tango-icon-theme
  openmoji  the colour pictures of the npm package openmoji, fetched once

Passes (status 0) if over all files the median is at most 1.0 and 98 in 100 files
are at most 3.0.

  tests/art/compare.py --vexel build/bin/vexel              all of tango, all of openmoji
  tests/art/compare.py --vexel build/bin/vexel --sample 75  that many of each set

Needs python3-pil, librsvg2-bin, tango-icon-theme and, once, the npm registry.
"""

import argparse
import concurrent.futures
import os
import pathlib
import subprocess
import sys
import tarfile
import tempfile
import urllib.request

from PIL import Image, ImageChops, ImageStat

SIZE = 256
MEDIAN_LIMIT = 1.0
FILE_LIMIT = 3.0
SHARE_LIMIT = 0.98

TANGO = pathlib.Path("/usr/share/icons/Tango/scalable")
OPENMOJI = "https://registry.npmjs.org/openmoji/-/openmoji-17.0.0.tgz"
OPENMOJI_FOLDER = "package/color/svg/"

# No picture may take the command longer, in seconds.
PATIENCE = 30


def tango_files():
    # Many names are links to one picture.
    return sorted(p for p in TANGO.rglob("*.svg") if not p.is_symlink())


def openmoji_files(cache):
    folder = cache / "openmoji"
    if not folder.is_dir():
        with tempfile.TemporaryDirectory(dir=cache) as scratch:
            packed = pathlib.Path(scratch, "openmoji.tgz")
            with urllib.request.urlopen(OPENMOJI, timeout=120) as answer:
                packed.write_bytes(answer.read())
            unpacked = pathlib.Path(scratch, "svg")
            unpacked.mkdir()
            with tarfile.open(packed) as archive:
                for member in archive:
                    name = member.name
                    if member.isfile() and name.startswith(OPENMOJI_FOLDER):
                        target = unpacked / name[len(OPENMOJI_FOLDER):]
                        target.write_bytes(archive.extractfile(member).read())
            unpacked.rename(folder)
    return sorted(folder.glob("*.svg"))


def spread(files, count):
    """`count` files, evenly spaced over the sorted list: the same ones every time."""
    if count is None or count >= len(files):
        return files
    return [files[i * len(files) // count] for i in range(count)]


def flat(path):
    picture = Image.open(path).convert("RGBA")
    white = Image.new("RGBA", picture.size, "white")
    return Image.alpha_composite(white, picture).convert("RGB")


def run(command):
    return subprocess.run(command, capture_output=True, text=True, timeout=PATIENCE)


def measure(vexel, art, name, scratch, keep):
    """(difference, name, messages of the import)"""
    base = scratch / name.replace("/", "_")
    movie, ours, theirs = (base.with_suffix(s) for s in (".vxf", ".png", ".ref.png"))
    try:
        imported = run([vexel, "import", str(art), "-o", str(movie)])
        messages = [line.split(": ", 2)[-1] for line in imported.stderr.splitlines()]
        if imported.returncode != 0:
            return 255.0, name, messages + [f"import ended with status {imported.returncode}"]
        rendered = run([vexel, "render", str(movie), "--size", f"{SIZE}x{SIZE}", "-o", str(ours)])
        if rendered.returncode != 0:
            return 255.0, name, messages + [f"render ended with status {rendered.returncode}"]
    except subprocess.TimeoutExpired:
        return 255.0, name, [f"took longer than {PATIENCE} s"]
    subprocess.run(["rsvg-convert", "-w", str(SIZE), "-h", str(SIZE), "-b", "white", "-o",
                    str(theirs), str(art)], check=True)
    a, b = flat(ours), flat(theirs)
    if a.size != b.size:
        return 255.0, name, messages + [f"{a.size} instead of {b.size}"]
    difference = ImageChops.difference(a, b)
    result = sum(ImageStat.Stat(difference).mean) / 3
    if keep:
        side = Image.new("RGB", (3 * SIZE, SIZE))
        for i, picture in enumerate((a, b, ImageChops.invert(difference))):
            side.paste(picture, (i * SIZE, 0))
        side.save(keep / f"{result:07.3f}-{base.name}.png")
    movie.unlink()
    ours.unlink()
    theirs.unlink()
    return result, name, messages


def report(title, results):
    values = sorted(r[0] for r in results)
    at = lambda share: values[min(len(values) - 1, int(share * len(values)))]
    within = sum(v <= FILE_LIMIT for v in values) / len(values)
    print(f"{title}: {len(values)} files, median {at(0.5):.3f}, 90% {at(0.9):.3f}, "
          f"98% {at(0.98):.3f}, worst {values[-1]:.3f}, {100 * within:.2f}% at most {FILE_LIMIT}")
    return at(0.5), within


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--vexel", default="build/bin/vexel", help="the command")
    parser.add_argument("--set", choices=["tango", "openmoji", "both"], default="both")
    parser.add_argument("--sample", type=int, metavar="N", help="only N files of each set")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--worst", type=int, default=10, help="how many of the worst to list")
    parser.add_argument("--keep", type=pathlib.Path, metavar="DIR",
                        help="keep pictures there: ours, theirs, difference")
    parser.add_argument("--cache", type=pathlib.Path, metavar="DIR",
                        default=pathlib.Path.home() / ".cache" / "vexel-art",
                        help="where fetched art is kept")
    options = parser.parse_args()
    options.cache.mkdir(parents=True, exist_ok=True)
    if options.keep:
        options.keep.mkdir(parents=True, exist_ok=True)

    art = []
    if options.set in ("tango", "both"):
        files = spread(tango_files(), options.sample)
        art += [(p, "tango/" + str(p.relative_to(TANGO))) for p in files]
    if options.set in ("openmoji", "both"):
        files = spread(openmoji_files(options.cache), options.sample)
        art += [(p, "openmoji/" + p.name) for p in files]

    with tempfile.TemporaryDirectory() as scratch, \
            concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        jobs = [pool.submit(measure, options.vexel, path, name, pathlib.Path(scratch),
                            options.keep) for path, name in art]
        results = [job.result() for job in jobs]

    for title in ("tango", "openmoji"):
        part = [r for r in results if r[1].startswith(title)]
        if part:
            report(title, part)
    median, within = report("all", results)

    counts = {}
    for _, _, messages in results:
        for message in messages:
            kind = message.split(" (")[0]
            counts[kind] = counts.get(kind, 0) + 1
    if counts:
        print("not expressed as such, in how many files:")
        for kind, count in sorted(counts.items(), key=lambda item: -item[1]):
            print(f"  {count:5} {kind}")
    print("worst:")
    for value, name, messages in sorted(results, reverse=True)[:options.worst]:
        print(f"  {value:7.3f} {name} {'; '.join(messages)}")
    passed = median <= MEDIAN_LIMIT and within >= SHARE_LIMIT
    print("passed" if passed else "FAILED")
    return 0 if passed else 1


if __name__ == "__main__":
    sys.exit(main())
