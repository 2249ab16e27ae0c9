"""What the tests of navigation by POST share: a movie with a form, played by
`vexel stream`, and plain ways to talk to the page server inside it.

A player's script is written line by line. Between the test's own commands a
thread has it serve sockets, so pages can be fetched at any time.
"""
import os
import pathlib
import queue
import re
import resource
import socket
import subprocess
import tempfile
import threading
import time

HERE = pathlib.Path(__file__).resolve().parent
LOOPBACK = "127.0.0.1"
SERVE_MS = 50  # a command of the test waits at most so long
TIMEOUT_S = 60

TYPED = 'Ann & "Bob" <x=1+2%>'
# What the form sends, as the movie knows it; field texts are single bytes.
FIELDS = {
    b"$version": b"UNIX 4,0,13,0",
    b"who": TYPED.encode(),
    b"nothing": b"",
    b"signs": b"a&b=c+d%e \"f\" 'g' <h> #;/?:@",
    b"bytes": bytes([233, 255, 128, 1, 10]),
    b"blanks": b"  two  ",
    b"much": b"",
    b'odd name&=+%"<': b"x",
}
MUCH = b"0123456789abcdef" * 4096  # what the second button adds as the field "much"


class Failure(Exception):
    pass


def check(good, message):
    if not good:
        raise Failure(message[:2000])


def encoded(text):
    """As a movie writes names and values: in the page they stay so."""
    plain = b"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
    parts = (chr(c) if c in plain else "+" if c == 32 else "%%%02X" % c for c in text)
    return "".join(parts)


def sent_fields(more=None):
    return {encoded(name): encoded(value) for name, value in {**FIELDS, **(more or {})}.items()}


class Player:
    """`vexel stream` with the form, on `target`; ends with the `with` block."""

    def __init__(self, vexel, target, browser=None, files=None):
        self.vexel = pathlib.Path(vexel).resolve()
        self.target = target
        self.browser = browser
        self.files = files  # limit of open files
        self.jobs = queue.Queue()
        self.pid = None

    def __enter__(self):
        with tempfile.TemporaryDirectory() as folder:
            text = pathlib.Path(folder, "form.vxt")
            text.write_text((HERE / "form.vxt").read_text().replace("TARGET", self.target))
            movie = text.with_suffix(".vxf")
            subprocess.run([self.vexel, "make", text, "-o", movie], check=True, timeout=TIMEOUT_S)
            command = [self.vexel, "stream", movie, "-"]
            if self.browser:
                command += ["--browser", self.browser]
            # Freed memory that a sanitizer keeps would hide what the player does.
            kept = os.environ.get("ASAN_OPTIONS", "")
            env = dict(os.environ, ASAN_OPTIONS=kept + ":quarantine_size_mb=4")
            self.process = subprocess.Popen(command, env=env, stdin=subprocess.PIPE,
                                            stdout=subprocess.PIPE, text=True, bufsize=1,
                                            preexec_fn=self._limit_files)
            self.pid = self.process.pid
            try:
                self._script("clock 100")  # the movie is read whole by then
            except BaseException:
                self.process.kill()
                raise
        self.thread = threading.Thread(target=self._serve)
        self.thread.start()
        return self

    def __exit__(self, kind, value, trace):
        self.jobs.put(None)
        self.thread.join()
        self.process.stdin.close()
        rest = self.process.stdout.read()
        try:
            status = self.process.wait(TIMEOUT_S)
        except subprocess.TimeoutExpired:
            self.process.kill()
            raise
        if kind is None:
            check(status == 0, f"the player ended with status {status}: {rest}")

    def _limit_files(self):
        if self.files:
            resource.setrlimit(resource.RLIMIT_NOFILE, (self.files, self.files))

    def _script(self, lines):
        """Runs script lines; what they print. `stats` tells that they are done."""
        self.process.stdin.write(lines + "\nstats\n")
        self.process.stdin.flush()
        printed = []
        while True:
            line = self.process.stdout.readline()
            check(line, f"the player ended at: {lines}")
            if line.startswith("stats "):
                return printed
            printed.append(line.rstrip("\n"))

    def _serve(self):
        while True:
            try:
                job = self.jobs.get_nowait()
            except queue.Empty:
                job = (f"serve {SERVE_MS}", None)
            if job is None:
                return
            lines, done = job
            try:
                result = self._script(lines)
            except (Failure, OSError) as error:
                result = error
            if done:
                done.put(result)
            if isinstance(result, Exception):
                # Nothing more will come: those who wait are told at once.
                while (job := self.jobs.get()) is not None:
                    job[1].put(result)
                return

    def script(self, lines):
        done = queue.Queue()
        self.jobs.put((lines, done))
        result = done.get(timeout=TIMEOUT_S)
        if isinstance(result, Exception):
            raise result
        return result

    def fill(self):
        """Writes into the field as a user does."""
        self.script("move 60 20\ndown 60 20\nup 60 20\ntype " + TYPED)

    def post(self, x=30, times=1):
        """Presses the button at `x`; the addresses of the pages, and the target window."""
        press = f"move {x} 90\ndown {x} 90\nup {x} 90"
        found = []
        for line in self.script("\n".join([press] * times)):
            match = re.fullmatch(r"GoToURL url=(http://127\.0\.0\.1:(\d+)/(redirect\d+\.html)) "
                                 r"target=(\w+)", line)
            if match:
                found.append(match)
        check(len(found) == times, f"{len(found)} of {times} pages were opened")
        self.port = int(found[0][2])
        self.window = found[0][4]
        return [match[3] for match in found]

    def post_much(self):
        return self.post(x=120)[0]

    def memory(self):
        """Kilobytes: resident now, and at the most so far."""
        text = pathlib.Path(f"/proc/{self.pid}/status").read_text()
        return tuple(int(re.search(key + r":\s+(\d+)", text)[1]) for key in ("VmRSS", "VmHWM"))

    def descriptors(self):
        links = []
        for entry in os.listdir(f"/proc/{self.pid}/fd"):
            try:
                links.append(os.readlink(f"/proc/{self.pid}/fd/{entry}"))
            except FileNotFoundError:
                pass  # closed in between
        return links

    def listening(self):
        """Where the player listens, as the system has it: pairs of hexadecimal address and port."""
        own = {link[8:-1] for link in self.descriptors() if link.startswith("socket:[")}
        found = []
        for table in ("tcp", "tcp6"):
            for line in pathlib.Path("/proc/net", table).read_text().splitlines()[1:]:
                words = line.split()
                if words[3] == "0A" and words[9] in own:
                    address, port = words[1].split(":")
                    found.append((address, int(port, 16)))
        return found


def dial(port, receive_bytes=None, timeout=TIMEOUT_S):
    peer = socket.socket()
    if receive_bytes:
        peer.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, receive_bytes)
    peer.settimeout(timeout)
    peer.connect((LOOPBACK, port))
    return peer


def read_all(peer):
    parts = []
    while part := peer.recv(1 << 16):
        parts.append(part)
    return b"".join(parts)


def ask(port, request):
    """Sends bytes; the whole answer."""
    with dial(port) as peer:
        peer.sendall(request)
        return read_all(peer)


def get_request(name):
    return f"GET /{name} HTTP/1.1\r\nHost: {LOOPBACK}\r\n\r\n".encode()


def get(port, name):
    return ask(port, get_request(name))


def status(reply):
    match = re.match(rb"HTTP/1\.0 (\d+) ", reply)
    return int(match[1]) if match else 0


def page_fields(page):
    """Names and values of a page, which must be laid out exactly as pages are."""
    text = page.decode("ascii")
    match = re.fullmatch(
        r"HTTP/1\.0 200 OK\r\nContent-type: text/html\r\n\r\n"
        r"<html>\n    <head>\n    </head>\n    <body onload=\"document\.theform\.submit\(\)\">\n"
        r"        <form name=\"theform\" method=\"post\" action=\"([^\"]*)\">\n"
        r"((?:            <input [^\n]*>\n)*)        </form>\n    </body>\n</html>\n", text)
    check(match, f"not a page: {text[:400]}")
    pairs = re.findall(r"<input type=\"hidden\" name=\"([^\"]*)\" value=\"([^\"]*)\">\n", match[2])
    check(len(pairs) == match[2].count("<input"), f"not fields: {match[2][:400]}")
    check(len(dict(pairs)) == len(pairs), f"a field twice: {pairs}")
    return match[1], dict(pairs)


def wait_until(good, what, seconds=TIMEOUT_S):
    end = time.monotonic() + seconds
    while not good():
        check(time.monotonic() < end, f"waited {seconds} s for {what}")
        time.sleep(0.02)


def run(test):
    """The end of each script: the status, with a message that says what is wrong."""
    try:
        test()
    except Failure as failure:
        print(f"FAILED: {failure}")
        return 1
    print("passed")
    return 0
