#!/usr/bin/env python3
"""Sends a form as a user does: the player asks for a page, Chromium opens it
and submits it, and a server of this test gets the fields.

    browser.py build/bin/vexel

Chromium runs without a window, with a folder of its own, and reaches nothing
but this machine.
"""
import http.server
import os
import pathlib
import queue
import shutil
import signal
import sys
import tempfile
import threading
import time
import urllib.parse

import relay
from relay import check

HERE = pathlib.Path(__file__).resolve().parent
# What no page has loaded by then is not coming; the start takes a second or two.
BROWSER_S = 60
PATH = "/take?a=1&b=%20&c=x+y"


class Target(http.server.ThreadingHTTPServer):
    """Where the form goes: keeps what is posted."""

    def __init__(self):
        super().__init__((relay.LOOPBACK, 0), Handler)
        self.posts = queue.Queue()

    def handle_error(self, request, address):
        pass  # a browser that goes in the middle is none of ours

    @property
    def url(self):
        return f"http://{relay.LOOPBACK}:{self.server_port}{PATH}"


class Handler(http.server.BaseHTTPRequestHandler):
    def do_POST(self):
        body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        self.server.posts.put((self.path, self.headers, body))
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        self.end_headers()
        self.wfile.write(b"<html><body>taken</body></html>")

    def log_message(self, *arguments):
        pass


class Browser:
    """The command that opens pages, and an end to all that it started."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.command = f"'{sys.executable}' '{HERE / 'open_page.py'}' '{folder}' %u"

    def started(self):
        """Processes that opened pages; each leads a group of its own."""
        return [int(file.stem) for file in self.folder.glob("*.pid")]

    def running(self):
        return [pid for pid in self.started() if self.alive(pid)]

    @staticmethod
    def alive(pid):
        """False for one that has ended, though nobody may have asked for its status."""
        try:
            stat = pathlib.Path(f"/proc/{pid}/stat").read_text()
        except FileNotFoundError:
            return False
        return stat.rpartition(")")[2].split()[0] not in "ZX"

    def log(self):
        text = "".join(file.read_text(errors="replace") for file in self.folder.glob("*.log"))
        return text[-3000:] or "nothing"

    def end(self):
        for wanted in (signal.SIGTERM, signal.SIGKILL):
            for pid in self.started():
                try:
                    os.killpg(pid, wanted)
                except ProcessLookupError:
                    continue
            end = time.monotonic() + 10
            while self.running() and time.monotonic() < end:
                time.sleep(0.05)
        for pid in self.started():
            (self.folder / f"{pid}.pid").unlink()


def wait_for_post(target, browser):
    """What the browser posted; a failure tells why it could not."""
    end = time.monotonic() + BROWSER_S
    while time.monotonic() < end:
        try:
            return target.posts.get(timeout=0.2)
        except queue.Empty:
            check(not browser.started() or browser.running(),
                  f"Chromium ended before it posted; it said: {browser.log()}")
    raise relay.Failure(f"Chromium posted nothing in {BROWSER_S} s; it said: {browser.log()}")


def check_post(post, fields):
    path, headers, body = post
    check(path == PATH, f"posted to {path}")
    kind = headers.get("Content-Type")
    check(kind == "application/x-www-form-urlencoded", f"posted as {kind}")
    pairs = urllib.parse.parse_qsl(body.decode("ascii"), keep_blank_values=True,
                                   strict_parsing=True)
    check(sorted(pairs) == sorted(fields.items()), f"posted fields: {pairs}")


def check_bytes(post):
    """Fields are encoded twice, by the movie and by the browser; below both are the movie's bytes."""
    pairs = urllib.parse.parse_qsl(post[2].decode("ascii"), keep_blank_values=True)
    found = {urllib.parse.unquote_to_bytes(name.replace("+", " ")):
             urllib.parse.unquote_to_bytes(value.replace("+", " ")) for name, value in pairs}
    check(found == relay.FIELDS, f"the fields say: {found}")


def post_forms(vexel, target, browser):
    with relay.Player(vexel, target.url, browser=browser.command) as player:
        player.fill()
        name = player.post()[0]
        post = wait_for_post(target, browser)
        check_post(post, relay.sent_fields())
        check_bytes(post)
        check(relay.status(relay.get(player.port, name)) == 404, "the page was left after it was fetched")
        # A page of many writes.
        browser.end()
        player.post_much()
        post = wait_for_post(target, browser)
        check_post(post, relay.sent_fields({b"much": relay.MUCH}))
        check(target.posts.empty(), "a form was posted twice")


def main(vexel):
    check(shutil.which("chromium"), "chromium is not installed: scripts/packages.txt names it")
    target = Target()
    threading.Thread(target=target.serve_forever, daemon=True).start()
    # Its folder is in use until its last process has ended.
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
        browser = Browser(folder)
        try:
            post_forms(vexel, target, browser)
        finally:
            browser.end()
            target.shutdown()


if __name__ == "__main__":
    sys.exit(relay.run(lambda: main(sys.argv[1])))
