#!/usr/bin/env python3
"""Fetches the pages of a posted form with curl and by hand, and looks at where
the player listens.

    fetch.py build/bin/vexel
"""
import shutil
import subprocess
import sys
import time

import relay
from relay import check

TARGET = "http://127.0.0.1:9/take?a=1&b=%20"


def curl(port, name, *options):
    """The reply with its head, and the status as curl understood it."""
    command = ["curl", "--silent", "--include", "--noproxy", "*", "--max-time", "30", *options,
               "--write-out", "%{stderr}%{http_code}", f"http://127.0.0.1:{port}/{name}"]
    done = subprocess.run(command, capture_output=True, timeout=relay.TIMEOUT_S)
    return done.stdout, int(done.stderr or 0)


def with_curl(player):
    name = player.post()[0]
    check(player.window == "_blank", f"opened in {player.window}")
    page, code = curl(player.port, name)
    check(code == 200, f"the page: {code}")
    check(relay.page_fields(page) == (TARGET, relay.sent_fields()), f"the page holds {page}")
    again, code = curl(player.port, name)
    check(code == 404, f"the page a second time: {code}")
    check(b"<H2>404 Not Found</H2>" in again, f"the second time: {again}")
    check(curl(player.port, "nothing.html")[1] == 404, "a page that never was")
    name = player.post()[0]
    check(curl(player.port, name, "--head")[1] == 501, "HEAD")
    check(curl(player.port, name, "--data", "a=b")[1] == 501, "POST")
    check(curl(player.port, name)[1] == 200, "a page that only HEAD and POST asked for")


def by_hand(player):
    port = player.port
    name = player.post()[0]
    page = relay.ask(port, f"GET {name} HTTP/1.0\r\n\r\n".encode())
    check(relay.status(page) == 200, "a name without a slash before it")
    name = player.post()[0]
    with relay.dial(port) as peer:
        request = relay.get_request(name)
        for piece in (request[:9], request[9:-2], request[-2:]):
            peer.sendall(piece)
            time.sleep(0.1)
        check(relay.status(relay.read_all(peer)) == 200, "a request in three pieces")
    name = player.post()[0]
    other = f"GET /{name} HTTP/1.1\r\nHost: example.org\r\n\r\n".encode()
    check(relay.status(relay.ask(port, other)) == 404, "the page by another host's name")
    check(relay.status(relay.get(port, name)) == 200, "the page by this host's name")


def much(player):
    name = player.post_much()
    check(player.window == "_self", f"opened in {player.window}")
    page = relay.get(player.port, name)
    _, fields = relay.page_fields(page)
    check(fields == relay.sent_fields({b"much": relay.MUCH}), f"the page holds {fields}")


def main(vexel):
    check(shutil.which("curl"), "curl is not installed")
    with relay.Player(vexel, TARGET) as player:
        check(not player.listening(), "listens before anything was posted")
        player.fill()
        player.post()
        check(player.listening() == [("0100007F", player.port)],
              f"listens at {player.listening()}, pages are at port {player.port}")
        with_curl(player)
        by_hand(player)
        much(player)
        check(len(player.listening()) == 1, f"listens at {player.listening()}")


if __name__ == "__main__":
    sys.exit(relay.run(lambda: main(sys.argv[1])))
