#!/usr/bin/env python3
"""Golden pictures: movies rendered by the command, compared pixel by pixel.

    run.py --vexel build/bin/vexel --movies FOLDER --out FOLDER [NAME...]
    run.py ... --update [NAME...]     writes new goldens; look at them before you commit

Cases stand in cases.txt, their pictures in pictures/NAME.png. A case that fails
leaves in the out folder NAME.png, as drawn, and NAME-difference.png, in which
equal pixels are pale and different ones red, the darker the further off; the
first wrong pixel is named.
"""

import argparse
import pathlib
import shlex
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "support"))

from pictures import compare, read_png, write_png  # noqa: E402

TIMEOUT_S = 60


def read_cases():
    """Name to movie and options."""
    cases = {}
    for line in (HERE / "cases.txt").read_text().splitlines():
        words = shlex.split(line, comments=True)
        if words:
            cases[words[0]] = (words[1], words[2:])
    return cases


def main():
    parser = argparse.ArgumentParser(description="Golden pictures.")
    parser.add_argument("--vexel", required=True, help="the command to test")
    parser.add_argument("--movies", required=True, type=pathlib.Path, help="folder of the movies")
    parser.add_argument("--out", required=True, type=pathlib.Path,
                        help="folder for pictures of cases that fail")
    parser.add_argument("--update", action="store_true", help="write new goldens")
    parser.add_argument("names", nargs="*", help="cases; all if none is named")
    args = parser.parse_args()
    cases = read_cases()
    unknown = [name for name in args.names if name not in cases]
    if unknown:
        parser.error("no such case: " + " ".join(unknown))
    args.out.mkdir(parents=True, exist_ok=True)
    failed = 0
    for name in args.names or cases:
        movie, options = cases[name]
        golden = HERE / "pictures" / f"{name}.png"
        actual = args.out / f"{name}.png"
        difference = args.out / f"{name}-difference.png"
        difference.unlink(missing_ok=True)
        done = subprocess.run([args.vexel, "render", str(args.movies / f"{movie}.vxf"), *options,
                               "-o", str(actual)], timeout=TIMEOUT_S, capture_output=True, text=True)
        if done.returncode != 0 or done.stderr:
            wrong = f"status {done.returncode}, {done.stderr.strip() or 'no message'}"
        elif args.update:
            golden.parent.mkdir(exist_ok=True)
            write_png(golden, *read_png(actual))
            wrong = None
        elif not golden.exists():
            wrong = "there is no golden picture; --update writes one"
        else:
            wrong = compare(actual, golden, difference)
        if wrong:
            failed += 1
            print(f"FAILED {name}: {wrong}; see {actual}")
        else:
            actual.unlink()
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
