#!/usr/bin/env python3
"""2,000 bad peers on the page server at once, and good ones among them that get
their pages. Prints the player's memory before, at its peak, and after.

    abuse.py build/bin/vexel [--sanitized]

With --sanitized memory has no limits, as the sanitizer takes some for itself.

The bad ones stay connected to the end: idle, sending a byte now and then, never
reading, half closed, broken off, or sending what is no request.
"""
import random
import resource
import socket
import struct
import sys
import time

import relay
from relay import check

TARGET = "http://127.0.0.1:9/take"
BAD_PEERS = 2000
WAVE = 40  # bad peers between two good ones
# The player has what a system gives by default; the test keeps all ends open.
PLAYER_FILES = 1024
OWN_FILES = BAD_PEERS + 200
LINGER_S = 20  # so long a reply is kept for a peer that does not read
# Requests that wait, of 64 peers at 64 KB, and what freed memory leaves in between.
PEAK_GROWTH_KB = 24 << 10
LEFT_GROWTH_KB = 16 << 10



class Bad:
    """One peer: what it does when it comes, and at each round that follows."""

    def __init__(self, player, random):
        self.random = random
        self.peer = relay.dial(player.port, receive_bytes=2048)
        self.peer.setblocking(False)
        self.come(player)

    def come(self, player):
        pass

    def go_on(self):
        pass

    def send(self, data):
        try:
            self.peer.send(data)
        except OSError:
            pass  # the player may have dropped it


class Idle(Bad):
    pass


class Slow(Bad):
    def come(self, player):
        self.rest = relay.get_request("redirect0.html")

    def go_on(self):
        self.send(self.rest[:1])
        self.rest = self.rest[1:]


class NeverReads(Bad):
    def come(self, player):
        self.send(relay.get_request("nothing.html"))


class NeverReadsMuch(Bad):
    def come(self, player):
        self.send(relay.get_request(player.post_much()))


class HalfClosed(Bad):
    def come(self, player):
        self.send(self.random.choice([b"", b"GET /", relay.get_request("nothing.html")]))
        self.peer.shutdown(socket.SHUT_WR)


class Broken(Bad):
    """Resets the connection, the socket stays."""

    def come(self, player):
        self.send(self.random.choice([b"", b"GET /redi", relay.get_request("nothing.html")]))
        self.peer.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        self.peer.close()


class Junk(Bad):
    def come(self, player):
        self.send(self.random.choice([
            self.random.randbytes(3000), bytes(3000), b"\xff" * 3000, b"\r\n" * 1000, b"GET " * 1000,
            relay.get_request("nothing.html") * 50]))


class LongHeader(Bad):
    """Ever more of a line that does not end."""

    def come(self, player):
        self.send(b"GET / HTTP/1.1\r\nX: ")

    def go_on(self):
        self.send(b"x" * 20000)


KINDS = [Idle, Slow, NeverReads, HalfClosed, Broken, Junk, LongHeader]


def good_ones(player):
    """A page, the same again, one that never was; how long the slowest took, in seconds."""
    name = player.post()[0]
    slowest = 0
    for asked, wanted in ((name, 200), (name, 404), ("nothing.html", 404)):
        begin = time.monotonic()
        reply = relay.get(player.port, asked)
        slowest = max(slowest, time.monotonic() - begin)
        check(relay.status(reply) == wanted, f"{asked}: {reply[:200]}, not {wanted}")
        if wanted == 200:
            check(relay.page_fields(reply) == (TARGET, relay.sent_fields()), f"the page holds {reply}")
    return slowest


def slow_good_ones(player):
    """Byte by byte and all at once, with nobody else coming: each gets its answer."""
    names = player.post(times=20)
    peers = [(relay.dial(player.port), relay.get_request(name)) for name in names]
    for at in range(max(len(request) for _, request in peers)):
        for peer, request in peers:
            peer.sendall(request[at:at + 1])
    for peer, _ in peers:
        check(relay.status(relay.read_all(peer)) == 200, "a page asked for byte by byte")
        peer.close()


def abuse(player, limits):
    rng = random.Random(7)
    player.fill()
    good_ones(player)
    before, _ = player.memory()
    open_before = len(player.descriptors())
    bad, most_open, slowest = [], 0, 0
    while len(bad) < BAD_PEERS:
        for _ in range(WAVE):
            # Fifty of them ask for a page of 64 KB each.
            kind = NeverReadsMuch if len(bad) % 40 == 0 else rng.choice(KINDS)
            bad.append(kind(player, rng))
        for one in bad[-200:]:
            one.go_on()
        slowest = max(slowest, good_ones(player))
        most_open = max(most_open, len(player.descriptors()))
    slow_good_ones(player)
    check(len(player.listening()) == 1, f"listens at {player.listening()}")
    for one in bad:
        one.peer.close()
    relay.wait_until(lambda: len(player.descriptors()) <= open_before, "the connections to go",
                     LINGER_S + 10)
    good_ones(player)
    after, peak = player.memory()
    print(f"{len(bad)} bad peers; at most {most_open} descriptors; the slowest good reply took "
          f"{slowest * 1000:.0f} ms")
    print(f"resident: {before} KB before, {peak} KB at the peak, {after} KB after")
    if limits:
        check(peak - before < PEAK_GROWTH_KB, "took too much memory")
        check(after - before < LEFT_GROWTH_KB, "kept too much memory")


def main(vexel, *options):
    _, most = resource.getrlimit(resource.RLIMIT_NOFILE)
    check(most == resource.RLIM_INFINITY or most >= OWN_FILES,
          f"this test needs {OWN_FILES} open files, the system gives {most}")
    resource.setrlimit(resource.RLIMIT_NOFILE, (OWN_FILES, most))
    with relay.Player(vexel, TARGET, files=PLAYER_FILES) as player:
        abuse(player, limits="--sanitized" not in options)


if __name__ == "__main__":
    sys.exit(relay.run(lambda: main(*sys.argv[1:])))
