#!/usr/bin/env python3
"""Demo movies, played by scripts of `vexel run`.

    run.py --vexel build/bin/vexel --movies build/share/vexel --out FOLDER [NAME...]
    run.py ... --update [NAME...]     writes what is expected anew; look at it before you commit

NAME.run is the script; its first line may be `# vexel run` with options. What it
prints is held to NAME.expected, and each picture that it shoots to the one of that
name in pictures/. Pictures of a play that fails stay in the out folder, together
with FILE-difference.png as in the golden pictures.
"""

import argparse
import difflib
import pathlib
import re
import shlex
import shutil
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "support"))

from pictures import compare  # noqa: E402

TIMEOUT_S = 120
OPTIONS = "# vexel run "


def play(vexel, movie, script, folder):
    first = script.read_text().split("\n", 1)[0]
    options = shlex.split(first[len(OPTIONS):]) if first.startswith(OPTIONS) else []
    return subprocess.run([vexel, "run", str(movie), *options, str(script)], cwd=folder,
                          timeout=TIMEOUT_S, capture_output=True, text=True)


def check_picture(actual, golden):
    """What is wrong with a picture, or None."""
    if not actual.exists():
        return "was not written"
    if not golden.exists():
        return "has no golden picture; --update writes one"
    return compare(actual, golden, actual.with_name(actual.stem + "-difference.png"))


def check(name, done, pictures, folder):
    """Everything that is not as expected, a text each."""
    wrong = []
    if done.returncode != 0 or done.stderr:
        wrong.append(f"status {done.returncode}, {done.stderr.strip() or 'no message'}")
    expected = HERE / f"{name}.expected"
    want = expected.read_text() if expected.exists() else ""
    if done.stdout != want:
        wrong.append("prints\n" + "\n".join(difflib.unified_diff(
            want.splitlines(), done.stdout.splitlines(), "expected", "actual", lineterm="")))
    for picture in pictures:
        what = check_picture(folder / picture, HERE / "pictures" / picture)
        if what:
            wrong.append(f"{folder / picture} {what}")
    return wrong


def update(name, done, pictures, folder):
    (HERE / "pictures").mkdir(exist_ok=True)
    for picture in pictures:
        shutil.copyfile(folder / picture, HERE / "pictures" / picture)
    expected = HERE / f"{name}.expected"
    if done.stdout:
        expected.write_text(done.stdout)
    else:
        expected.unlink(missing_ok=True)


def main():
    parser = argparse.ArgumentParser(description="Demo movies, played by scripts.")
    parser.add_argument("--vexel", required=True, type=pathlib.Path, help="the command to test")
    parser.add_argument("--movies", required=True, type=pathlib.Path, help="folder of the movies")
    parser.add_argument("--out", required=True, type=pathlib.Path,
                        help="folder for pictures of plays that fail")
    parser.add_argument("--update", action="store_true", help="write anew what is expected")
    parser.add_argument("names", nargs="*", help="demos; all if none is named")
    args = parser.parse_args()
    names = args.names or sorted(path.stem for path in HERE.glob("*.run"))
    unknown = [name for name in names if not (HERE / f"{name}.run").exists()]
    if unknown:
        parser.error("no such play: " + " ".join(unknown))
    failed = False
    for name in names:
        script = HERE / f"{name}.run"
        folder = (args.out / name).resolve()
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir(parents=True)
        done = play(args.vexel.resolve(), (args.movies / f"{name}.vxf").resolve(), script, folder)
        pictures = re.findall(r"^shot (\S+)$", script.read_text(), re.MULTILINE)
        if args.update and done.returncode == 0:
            update(name, done, pictures, folder)
        wrong = check(name, done, pictures, folder)
        for what in wrong:
            failed = True
            print(f"FAILED {name}: {what}")
        if not wrong:
            shutil.rmtree(folder)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
