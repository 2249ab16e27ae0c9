#!/usr/bin/env python3
"""The player's window under a virtual display: run.py VEXEL MOVIES [CASE...]

How a case is added: a function `case_...(display)` in a file of cases/, whose name
is a statement of what the program does. It gets a display of its own, makes a
`Player` on it and fails by an exception (`assert`, `wait_for`). A player that it
leaves alive is ended, after a look whether it is alive indeed and has no complaint
of the libraries' on its standard error. Rules that keep the cases reliable:

* wait for a state that can be seen, never for a time to pass;
* a display of another kind is asked for with `on_server`;
* look at what a click did before the pointer moves on: the window manager sees a
  press first, and hands it to whatever is below the pointer by then;
* press keys only when the window has the keyboard (`wait_for_keyboard`);
* hold pictures against `movies.streamed`, byte for byte where nothing is scaled;
  what moves is best seen with `movies.counting`, whose frames tell their numbers.

A failed case leaves the screen and the picture that it waited for in the current
folder, and is run again, since X servers and window managers fail too: both
outcomes are printed, and two failures fail the test.
"""
import argparse
import concurrent.futures
import importlib
import pathlib
import re
import sys
import time
import traceback

from display import Display

COMPLAINT = re.compile(r"CRITICAL|WARNING|runtime error|Sanitizer")


def run_case(name, run):
    """What went wrong, as a text; None if nothing did. And the keys that had to be
    typed again."""
    display = None
    try:
        display = Display(**getattr(run, "server", {}))
        run(display)
        for player in display.players:
            assert player.process.poll() is None, "the player has ended"
            said = player.said()
            assert not COMPLAINT.search(said), "the player complains"
        return None, display.typed_again
    except Exception:  # whatever it is, the next case runs
        text = traceback.format_exc()
        if not display:
            return text, 0
        try:
            display.picture().save(f"failed-{name}.png")
            if display.expected:
                display.expected.save(f"failed-{name}-expected.png")
        except OSError as error:
            text += f"no picture: {error}\n"
        for player in display.players:
            text += f"player, status {player.process.poll()}: {player.said()}\n"
        return text, display.typed_again
    finally:
        if display:
            display.close()


def try_case(case):
    """The lines to print, and whether the case failed for good."""
    name, run = case
    lines, failures, typed_again = [], 0, 0
    for attempt in ("", "again: "):
        start = time.time()
        problem, typed = run_case(name, run)
        typed_again += typed
        seconds = f"{time.time() - start:5.1f} s"
        lines.append(f"{attempt}{'FAILED' if problem else 'ok    '} {seconds}  {name}")
        if not problem:
            break
        failures += 1
        lines.append(problem)
    return lines, failures, typed_again


def gather():
    folder = pathlib.Path(__file__).parent / "cases"
    for path in sorted(folder.glob("*.py")):
        module = importlib.import_module("cases." + path.stem)
        for name, run in vars(module).items():
            if name.startswith("case_"):
                yield name[5:], run


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("vexel")
    parser.add_argument("movies")
    parser.add_argument("cases", nargs="*")
    parser.add_argument("--jobs", type=int, default=4)
    options = parser.parse_args()
    cases = [case for case in gather() if not options.cases or case[0] in options.cases]
    assert cases, "there are no such cases"
    lost = again = typed_again = 0
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        for lines, failures, typed in pool.map(try_case, cases):
            print("\n".join(lines), flush=True)
            lost += failures == 2
            again += failures > 0
            typed_again += typed
    print(f"{len(cases)} cases, {lost} failed, {again} tried again, "
          f"{typed_again} dialogs filled in again")
    sys.exit(1 if lost else 0)


main()
