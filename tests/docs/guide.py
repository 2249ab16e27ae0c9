#!/usr/bin/env python3
"""Follows the guides in docs/ word by word: writes their texts, runs their
commands, and holds pictures and messages to those they show.

    guide.py --vexel build/bin/vexel [--update]
"""
import argparse
import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
GUIDES = ["making-movies.md", "scripting.md"]
FENCE = re.compile(r"```(\w+) ?([\w.-]*)\n(.*?)```", re.S)


def follow(guide, vexel, update):
    text = (ROOT / "docs" / guide).read_text()
    faults = []
    shown = set(re.findall(r"\(pictures/([\w.-]+)\)", text))
    printed = ""
    env = dict(os.environ, PATH=f"{vexel.parent}:{os.environ['PATH']}")
    with tempfile.TemporaryDirectory() as folder:
        for kind, name, body in FENCE.findall(text):
            if kind in ("movie", "run"):
                (pathlib.Path(folder) / name).write_text(body)
            elif kind == "piece":
                # Each piece stands in the whole text at the end, so what a
                # reader puts together is what is shown there.
                whole = " ".join(FENCE.findall(text)[last_movie(text)][2].split())
                for part in re.split(r"\n\n+", body.strip()):
                    if " ".join(part.split()) not in whole:
                        faults.append(f"not in the whole text:\n{part}")
            elif kind in ("sh", "fails"):
                for line in body.splitlines():
                    run = subprocess.run(line, shell=True, cwd=folder, env=env, text=True,
                                         stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
                    printed = run.stdout
                    if (run.returncode == 0) != (kind == "sh"):
                        faults.append(f"{line}: status {run.returncode}\n{printed}")
            elif kind == "output" and body != printed:
                faults.append(f"prints:\n{printed}but the guide shows:\n{body}")
        for name in sorted(shown):
            made = pathlib.Path(folder) / name
            kept = ROOT / "docs" / "pictures" / name
            if not made.exists():
                faults.append(f"{name} is shown but never made")
            elif update:
                kept.write_bytes(made.read_bytes())
            elif not kept.exists() or kept.read_bytes() != made.read_bytes():
                faults.append(f"{name} is not what the guide shows")
    return faults


def last_movie(text):
    """The index of the last text of the scene."""
    fences = FENCE.findall(text)
    return max(i for i, fence in enumerate(fences) if fence[:2] == ("movie", "night.vxt"))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--vexel", type=pathlib.Path, required=True)
    parser.add_argument("--update", action="store_true", help="keep the pictures as they are now")
    args = parser.parse_args()
    faults = []
    for guide in GUIDES:
        faults += [f"{guide}: {fault}" for fault in follow(guide, args.vexel.resolve(), args.update)]
    print("\n".join(faults) or "the guides hold")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
