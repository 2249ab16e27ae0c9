#!/usr/bin/env python3
"""Pages of posted forms a second, fetched from the player over the loopback.

    fetch_pages.py build/bin/vexel

One connection a page, as browsers do it, one after the other. Pages are posted
128 at a time beforehand. Names that no page has are asked for likewise. The
client is this script, so Python's own share is in the figures, of the median
round of nine.
"""
import pathlib
import statistics
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests" / "post"))
import relay  # noqa: E402

ROUNDS = 9
PAGES = 128


def per_second(player, names, wanted):
    begin = time.perf_counter()
    for name in names:
        reply = relay.get(player.port, name)
        relay.check(relay.status(reply) == wanted, f"{name}: {reply[:100]}")
    return len(names) / (time.perf_counter() - begin)


def main(vexel):
    figures = {"pages of 1 KB": [], "pages of 66 KB": [], "unknown pages": []}
    with relay.Player(vexel, "http://127.0.0.1:9/take") as player:
        player.fill()
        for _ in range(ROUNDS):
            figures["pages of 1 KB"].append(per_second(player, player.post(times=PAGES), 200))
            much = [player.post_much() for _ in range(PAGES // 8)]
            figures["pages of 66 KB"].append(per_second(player, much, 200))
            unknown = ["nothing.html"] * PAGES
            figures["unknown pages"].append(per_second(player, unknown, 404))
    for name, values in figures.items():
        print(f"{name}: {statistics.median(values):.0f} a second")


if __name__ == "__main__":
    sys.exit(relay.run(lambda: main(sys.argv[1])))
