#!/usr/bin/env python3
"""films.py --vexel VEXEL --decode DECODE_FILM [NAME...]: makes films of small movies and
takes them apart again: frames, times, sizes and pixels, and what is left behind when a film
cannot be made. NAME picks tests whose names hold it."""

import argparse
import os
import pathlib
import pty
import resource
import signal
import struct
import subprocess
import sys
import tempfile
import time
from fractions import Fraction

TIMEOUT_S = 60
KINDS = ("gif", "apng", "webm", "mp4")
# Coders that lose something are held to this mean error of a part, of 255. Half the
# resolution of colours at the edges of small pictures costs most of it.
NEAR = 12

# An odd size; few colours; one square moves, one stands, both frames and time are told.
MOVIE = """movie size 21, 13 rate RATE background #204060
shape square { fill #ffc040  rect 0, 0, 6, 6 }
shape post { fill #c0ffe0  rect 0, 0, 4, 13 }
place post at 10, 0
frame
place square as s at 0, 2
frame
move s at 3, 2
frame
move s at 6, 3
frame
move s at 9, 4
frame
move s at 12, 5
frame
"""
WIDTH, HEIGHT, FRAMES = 21, 13, 6


def need(condition, *what):
    if not condition:
        raise AssertionError(" ".join(str(word) for word in what))


def equal(actual, expected, *what):
    need(actual == expected, *what, f"\n  is     {actual!r}\n  not    {expected!r}")


class Place:
    """A folder, and the programs."""

    def __init__(self, vexel, decode, folder):
        self.vexel, self.decode_film, self.folder = vexel, decode, folder

    def run(self, *words, status=0, **more):
        done = subprocess.run([self.vexel, *words], cwd=self.folder, capture_output=True, text=True,
                              timeout=TIMEOUT_S, **more)
        equal(done.returncode, status, words, done.stderr)
        if status == 0:
            equal(done.stderr, "", words)
        return done.stderr

    def movie(self, rate="12", text=MOVIE):
        (self.folder / "movie.vxt").write_text(text.replace("RATE", rate))
        self.run("make", "movie.vxt", "-o", "movie.vxf")
        (self.folder / "movie.vxt").unlink()

    def film(self, kind, *options, **more):
        return self.run("render", "movie.vxf", *options, "-o", f"film.{kind}", **more)

    def decode(self, kind):
        """Width, height, starts in seconds, frames of RGB."""
        raw = self.folder / "film.rgb"
        done = subprocess.run([self.decode_film, f"film.{kind}", raw.name], cwd=self.folder,
                              capture_output=True, text=True, timeout=TIMEOUT_S)
        equal(done.returncode, 0, kind, done.stderr)
        lines = [line.split() for line in done.stdout.splitlines()]
        width, height = int(lines[0][1]), int(lines[0][2])
        starts = [Fraction(line[1]) for line in lines[1:]]
        data, size = raw.read_bytes(), 3 * width * height
        raw.unlink()
        return width, height, starts, [data[i:i + size] for i in range(0, len(data), size)]

    def pictures(self, *options):
        """The frames of --all, as RGB."""
        self.run("render", "movie.vxf", "--all", *options, "-o", "%d.raw")
        frames = []
        while (path := self.folder / f"{len(frames)}.raw").exists():
            data = path.read_bytes()
            path.unlink()
            rgb = bytearray(len(data) // 4 * 3)
            for part in range(3):
                rgb[part::3] = data[2 - part::4]
            frames.append(bytes(rgb))
        return frames

    def left(self):
        """What stands in the folder but the movie."""
        return sorted(path.name for path in self.folder.iterdir() if path.name != "movie.vxf")


def cut(frame, width, inner_width, inner_height):
    """The upper left part of a frame."""
    return b"".join(frame[3 * width * y:3 * (width * y + inner_width)] for y in range(inner_height))


def mean_error(a, b):
    equal(len(a), len(b), "bytes of a frame")
    return sum(abs(x - y) for x, y in zip(a, b)) / len(a)


def rounded(value, unit):
    """To whole units, halves up."""
    return (value / unit + Fraction(1, 2)).__floor__() * unit


def unit_of(kind):
    return {"gif": Fraction(1, 100), "webm": Fraction(1, 1000)}.get(kind)


def starts_of(kind, rate, count):
    exact = [i / Fraction(rate) for i in range(count)]
    unit = unit_of(kind)
    return [rounded(start, unit) for start in exact] if unit else exact


def apng_delays(data):
    """The delays of a moving PNG as they stand in the file, and how often it plays."""
    delays, plays, at = [], None, 8
    while at < len(data):
        length, name = struct.unpack(">I4s", data[at:at + 8])
        body = data[at + 8:at + 8 + length]
        if name == b"fcTL":
            num, den = struct.unpack(">HH", body[20:24])
            delays.append(Fraction(num, den or 100))
        elif name == b"acTL":
            plays = struct.unpack(">I", body[4:])[0]
        at += length + 12
    return delays, plays


def gif_delays(data):
    """The delays of a GIF in hundredths."""
    delays, at = [], 13 + (3 << (data[10] & 7) + 1 if data[10] & 0x80 else 0)
    while data[at] != 0x3B:
        if data[at] == 0x21:
            if data[at + 1] == 0xF9:
                delays.append(struct.unpack("<H", data[at + 4:at + 6])[0])
            at += 2
        else:
            at += 10 + (3 << (data[at + 9] & 7) + 1 if data[at + 9] & 0x80 else 0) + 1
        while data[at]:
            at += data[at] + 1
        at += 1
    return delays


def check_film(place, kind, rate, wanted):
    """A film is decoded again: times, size, pixels."""
    width, height, starts, frames = place.decode(kind)
    size = (WIDTH + WIDTH % 2, HEIGHT + HEIGHT % 2) if kind == "mp4" else (WIDTH, HEIGHT)
    equal((width, height), size, kind, "size")
    if kind == "apng":
        # Its decoder rounds what the file tells exactly.
        delays, plays = apng_delays((place.folder / "film.apng").read_bytes())
        if len(wanted) > 1:  # one frame is a still picture
            equal(delays, [1 / Fraction(rate)] * len(wanted), "delays")
            equal(plays, 0, "plays")
        equal(len(starts), len(wanted), kind, "frames")
    else:
        equal(starts, starts_of(kind, rate, len(wanted)), kind, "starts at rate", rate)
    equal(len(frames), len(wanted), kind, "frames")
    for i, (frame, picture) in enumerate(zip(frames, wanted)):
        if kind in ("gif", "apng"):
            need(frame == picture, kind, "frame", i, "differs")
        else:
            error = mean_error(cut(frame, width, WIDTH, HEIGHT), picture)
            need(error < NEAR, kind, "frame", i, "is off by", error)


def test_each_kind_shows_each_frame_at_its_time(place):
    for rate in ("12", "12.5", "24"):
        place.movie(rate)
        wanted = place.pictures()
        equal(len(wanted), FRAMES, "pictures")
        for kind in KINDS:
            place.film(kind)
            check_film(place, kind, rate, wanted)


def test_the_last_frame_lasts_as_long_as_others(place):
    place.movie("12")
    place.film("gif")
    equal(gif_delays((place.folder / "film.gif").read_bytes()), [8, 9, 8, 8, 9, 8], "delays")


def test_a_gif_has_no_frame_that_players_would_slow_down(place):
    place.movie("100")
    place.film("gif")
    equal(place.decode("gif")[2], [Fraction(i, 50) for i in range(3)], "starts")


def test_another_rate_shows_what_the_clock_shows(place):
    place.movie("12")
    pictures = place.pictures()
    for kind in KINDS:
        place.film(kind, "--fps", "24")
        check_film(place, kind, "24", [pictures[i // 2] for i in range(2 * FRAMES)])
        place.film(kind, "--fps", "6")
        check_film(place, kind, "6", pictures[::2])
        place.film(kind, "--fps", "30000/1001")
        rate = Fraction(30000, 1001)
        count = -((-rate * FRAMES / 12).__floor__())
        check_film(place, kind, rate, [pictures[(12 * i / rate).__floor__()] for i in range(count)])


def test_the_movies_own_rate_asked_for_is_no_other(place):
    place.movie("12.5")
    place.film("apng", "--fps", "25/2")
    check_film(place, "apng", "12.5", place.pictures())


def test_from_and_to_cut_a_piece_out(place):
    place.movie("12")
    pictures = place.pictures()
    for options, piece in ((("--from", "250"), pictures[3:]), (("--from", "251"), pictures[4:]),
                           (("--to", "250"), pictures[:3]), (("--to", "251"), pictures[:4]),
                           (("--from", "84", "--to", "400"), pictures[2:5])):
        for kind in KINDS:
            place.film(kind, *options)
            check_film(place, kind, "12", piece)
    place.film("apng", "--fps", "24", "--from", "250", "--to", "375")
    check_film(place, "apng", "24", [pictures[3], pictures[3], pictures[4]])


def test_behind_the_last_frame_the_movie_plays_on(place):
    place.movie("12")
    pictures = place.pictures()
    place.film("apng", "--to", "750")
    frames = place.decode("apng")[3]
    equal(len(frames), 9, "frames")
    need(frames[:FRAMES] == pictures and frames[FRAMES] == pictures[0], "does not begin again")


def test_one_frame_is_a_film(place):
    place.movie("12")
    for kind in KINDS:
        place.film(kind, "--to", "1")
        check_film(place, kind, "12", place.pictures()[:1])


def test_the_smallest_sizes_are_films(place):
    place.movie("12")
    for size in ("1x1", "2x1", "1x3"):
        for kind in KINDS:
            place.film(kind, "--size", size)
            width, height = place.decode(kind)[:2]
            wide, high = map(int, size.split("x"))
            equal((width, height), (wide + wide % 2, high + high % 2) if kind == "mp4" else (wide, high))


def test_many_colors_become_near_ones(place):
    place.movie(text="movie size 64, 32 rate 12 background #000000\n"
                     "paint sky linear along 0, 0, 64, 32 stops #ff2010, #10ff40, #1020ff\n"
                     "shape sheet { fill sky  rect 0, 0, 64, 32 }\n"
                     "place sheet at 0, 0\nframe\n")
    place.film("gif")
    error = mean_error(place.decode("gif")[3][0], place.pictures()[0])
    need(error < 3, "off by", error)


def test_a_missing_encoder_is_named_with_its_package(place):
    place.movie()
    for kind, encoder in (("mp4", "libx264"), ("webm", "libvpx-vp9"), ("gif", "gif"), ("apng", "apng")):
        message = place.film(kind, status=1, env={**os.environ, "VEXEL_EXPORT_WITHOUT": encoder})
        need(f"vexel: film.{kind}: FFmpeg here lacks the encoder {encoder} (" in message, message)
        need("in the package libavcodec" in message and message.count("\n") == 1, message)
        equal(place.left(), [], kind)


def test_where_nothing_can_be_written_nothing_is_left(place):
    place.movie()
    for kind in KINDS:
        message = place.run("render", "movie.vxf", "-o", f"none/film.{kind}", status=1)
        equal(message, f"vexel: none/film.{kind}: cannot be written: No such file or directory\n")
    equal(place.left(), [])


def limit_files():
    resource.setrlimit(resource.RLIMIT_FSIZE, (300, 300))


def test_a_full_disk_leaves_nothing(place):
    place.movie()
    for kind in KINDS:
        message = place.film(kind, "--to", "3000", "--size", "160x120", status=1, preexec_fn=limit_files)
        equal(message, f"vexel: film.{kind}: cannot be written: File too large\n")
        equal(place.left(), [], kind)


def test_a_full_device_is_told(place):
    place.movie()
    full = place.folder / "film.gif"
    full.symlink_to("/dev/full")
    equal(place.film("gif", status=1), "vexel: film.gif: cannot be written: No space left on device\n")


def test_what_was_there_stays_if_the_film_fails(place):
    place.movie()
    (place.folder / "film.mp4").write_text("before")
    place.film("mp4", "--size", "160x120", status=1, preexec_fn=limit_files)
    equal((place.folder / "film.mp4").read_text(), "before")
    equal(place.left(), ["film.mp4"])


def test_a_pipe_takes_all_kinds_but_mp4(place):
    place.movie()
    for kind in ("gif", "apng", "webm", "mp4"):
        link = place.folder / f"film.{kind}"
        link.symlink_to("/dev/stdout")
        done = subprocess.run([place.vexel, "render", "movie.vxf", "-o", link.name], cwd=place.folder,
                              capture_output=True, timeout=TIMEOUT_S)
        if kind == "mp4":
            equal(done.returncode, 1)
            equal(done.stderr, b"vexel: film.mp4: is no regular file, which .mp4 needs\n")
        else:
            equal((done.returncode, done.stderr), (0, b""), kind)
            link.unlink()
            (place.folder / f"film.{kind}").write_bytes(done.stdout)
            check_film(place, kind, "12", place.pictures())


def test_an_ended_run_leaves_nothing(place):
    place.movie()
    for kind in KINDS:
        for end in (signal.SIGTERM, signal.SIGINT):
            child = subprocess.Popen([place.vexel, "render", "movie.vxf", "--to", "4000000000", "-o",
                                      f"film.{kind}"], cwd=place.folder)
            limit = time.monotonic() + TIMEOUT_S
            while not place.left() and time.monotonic() < limit:
                time.sleep(0.01)
            need(place.left(), "nothing was begun")
            time.sleep(0.05)
            child.send_signal(end)
            equal(child.wait(TIMEOUT_S), -end)
            equal(place.left(), [], kind)


def test_a_packer_that_is_killed_is_told(place):
    place.movie()
    child = subprocess.Popen([place.vexel, "render", "movie.vxf", "--to", "4000000000", "-o",
                              "film.webm"], cwd=place.folder, stderr=subprocess.PIPE, text=True)
    packer = ""
    limit = time.monotonic() + TIMEOUT_S
    while not packer and time.monotonic() < limit:
        packer = pathlib.Path(f"/proc/{child.pid}/task/{child.pid}/children").read_text().strip()
        time.sleep(0.01)
    os.kill(int(packer), signal.SIGKILL)
    equal(child.communicate(timeout=TIMEOUT_S)[1], "vexel: vexel-export: ended by signal 9\n")
    equal(child.returncode, 1)
    equal(place.left(), [])


def test_a_terminal_sees_how_far_it_is(place):
    place.movie()
    ours, theirs = pty.openpty()
    child = subprocess.run([place.vexel, "render", "movie.vxf", "-o", "film.gif"], cwd=place.folder,
                           stderr=theirs, timeout=TIMEOUT_S)
    equal(child.returncode, 0)
    os.close(theirs)
    text = os.read(ours, 65536).decode()
    os.close(ours)
    need("\rcolours of frame 1 of 6" in text and "\rframe 6 of 6" in text, repr(text))
    need(text.endswith("\r\x1b[K"), repr(text))


def test_another_program_is_told_how_far_it_is_if_it_asks(place):
    place.movie()
    for kind, total in (("gif", 12), ("mp4", 6)):
        child = subprocess.run([place.vexel, "render", "movie.vxf", "--progress", "-o", f"film.{kind}"],
                               cwd=place.folder, capture_output=True, text=True, timeout=TIMEOUT_S)
        equal(child.returncode, 0)
        lines = child.stderr.splitlines()
        equal(len(lines), total, kind)
        equal(lines[-6:], [f"frame {i} of 6" for i in range(1, 7)], kind)
        equal(lines[:-6], [f"colours of frame {i} of 6" for i in range(1, total - 5)], kind)


def test_options_that_do_not_fit_are_refused(place):
    place.movie()
    for out, option, what in (("film.gif", "--frame", "pictures"), ("film.mp4", "--at", "pictures"),
                              ("a.png", "--fps", "films"), ("a.raw", "--from", "films"),
                              ("a.png", "--to", "films")):
        message = place.run("render", "movie.vxf", option, "1", "-o", out, status=2)
        need(f"{option} is for {what}" in message, message)
    place.run("render", "movie.vxf", "--all", "-o", "film.gif", status=2)
    for rate in ("0", "-1", "1001", "x", "1/0", "1.2345"):
        place.run("render", "movie.vxf", f"--fps={rate}", "-o", "film.gif", status=2)
    for options in (("--from", "500"), ("--from", "100", "--to", "100"), ("--to", "0"),
                    ("--from", "90", "--to", "80", "--fps", "24")):
        message = place.film("gif", *options, status=2)
        equal(message, "vexel: render: no frame begins between --from and --to\n")
    equal(place.left(), [])


def test_a_movie_without_time_is_no_film(place):
    place.movie("0")
    equal(place.film("gif", status=1), "vexel: movie.vxf: its rate is 0, so it has no time\n")
    place.movie("0.5")
    need("below 1" in place.film("gif", "--fps", "5", status=1))
    place.film("mp4")
    check_film(place, "mp4", "0.5", place.pictures())


def main():
    parser = argparse.ArgumentParser(description="Films, made and taken apart.")
    parser.add_argument("--vexel", required=True)
    parser.add_argument("--decode", required=True)
    parser.add_argument("names", nargs="*")
    args = parser.parse_args()
    failed = 0
    for name, test in list(globals().items()):
        if not name.startswith("test_") or args.names and not any(part in name for part in args.names):
            continue
        with tempfile.TemporaryDirectory() as folder:
            try:
                test(Place(os.path.abspath(args.vexel), os.path.abspath(args.decode),
                           pathlib.Path(folder)))
            except (AssertionError, OSError, subprocess.SubprocessError) as error:
                failed += 1
                print(f"FAILED {name[5:].replace('_', ' ')}: {error}")
    return failed != 0


if __name__ == "__main__":
    sys.exit(main())
