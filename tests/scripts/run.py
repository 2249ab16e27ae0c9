#!/usr/bin/env python3
"""Black-box tests of the command: one text file a case.

    run.py --vexel build/bin/vexel CASE.txt...            runs cases, shows differences
    run.py --vexel build/bin/vexel --update CASE.txt...   rewrites what they expect

A case is run in an empty directory of its own. Its file has sections, each
begun by a line `--- KIND [NAME]`; what stands above the first is a remark.

    movie NAME   a movie to write there, in the lines of class Movie below
    file NAME    a text file to write there
    bytes NAME   a file in hexadecimal
    repeat NAME N   a file of the section's one line, N times, without line ends
    input        standard input of the last command
    command      lines `vexel ...`, run in order; stops at the first that fails
    output       expected on standard output, of all commands
    messages     expected on standard error; left out if none
    status       expected of the last command run; 0 if left out
    result NAME  a file expected afterwards, in hexadecimal, 16 bytes a line
    absent NAME  a file that must not be there

No other file may be left behind. Bad input has names `bad-...`.
"""

import argparse
import difflib
import pathlib
import shlex
import subprocess
import sys
import tempfile

TIMEOUT_S = 60
EXPECTED = ("output", "messages", "status", "result")


def pack_bits(bits):
    """A text of 0 and 1, padded to whole bytes."""
    bits += "0" * (-len(bits) % 8)
    return bytes(int(bits[i:i + 8], 2) for i in range(0, len(bits), 8))


def parse_bytes(words):
    """Hexadecimal words; words of bits, padded to whole bytes, begin with %."""
    return b"".join(pack_bits(word[1:].replace("_", "")) if word.startswith("%")
                    else bytes.fromhex(word) for word in words)


class Movie:
    """The lines of a `movie` section; `;` begins a remark.

        version N, rate 12.5, frames N, size W H (pixels)   the header
        tag CODE BYTES      a tag, in the long form from 63 bytes on
        bytes BYTES         anything
        length N            declared instead of the real one
        cut N               the file ends after so many bytes
    """

    def __init__(self, lines):
        self.version, self.rate, self.frames = 4, 12.0, 1
        self.width, self.height = 100, 100
        self.length = self.cut = None
        self.body = b""
        for line in lines:
            words = line.split(";")[0].split()
            if words:
                getattr(self, "do_" + words[0])(words[1:])

    def do_version(self, words):
        self.version = int(words[0])

    def do_rate(self, words):
        self.rate = float(words[0])

    def do_frames(self, words):
        self.frames = int(words[0])

    def do_size(self, words):
        self.width, self.height = int(words[0]), int(words[1])

    def do_length(self, words):
        self.length = int(words[0])

    def do_cut(self, words):
        self.cut = int(words[0])

    def do_bytes(self, words):
        self.body += parse_bytes(words)

    def do_tag(self, words):
        code, body = int(words[0]), parse_bytes(words[1:])
        word = code << 6 | min(len(body), 63)
        self.body += word.to_bytes(2, "little")
        if len(body) >= 63:
            self.body += len(body).to_bytes(4, "little")
        self.body += body

    def data(self):
        sides = (0, self.width * 20, 0, self.height * 20)
        size = max(side.bit_length() for side in sides) + 1
        frame = pack_bits(format(size, "05b") +
                          "".join(format(s & (1 << size) - 1, f"0{size}b") for s in sides))
        rest = (frame + int(self.rate * 256).to_bytes(2, "little") +
                self.frames.to_bytes(2, "little") + self.body)
        length = 8 + len(rest) if self.length is None else self.length
        data = b"VXF" + bytes([self.version]) + length.to_bytes(4, "little") + rest
        return data[:self.cut]


def hex_lines(data):
    return [data[i:i + 16].hex(" ") for i in range(0, len(data), 16)]


class Case:
    def __init__(self, path):
        self.path = path
        self.sections = []  # [kind, name, lines]
        self.head = []
        for line in path.read_text().splitlines():
            if line.startswith("--- "):
                words = line.split(maxsplit=2)
                self.sections.append([words[1], words[2] if len(words) > 2 else "", []])
            elif self.sections:
                self.sections[-1][2].append(line)
            else:
                self.head.append(line)

    def lines(self, kind):
        return next((s[2] for s in self.sections if s[0] == kind), [])

    def text(self, kind):
        return "".join(line + "\n" for line in self.lines(kind))

    def write_inputs(self, folder):
        for kind, name, lines in self.sections:
            if kind == "movie":
                (folder / name).write_bytes(Movie(lines).data())
            elif kind == "file":
                (folder / name).write_text("".join(line + "\n" for line in lines))
            elif kind == "bytes":
                (folder / name).write_bytes(parse_bytes(" ".join(lines).split()))
            elif kind == "repeat":
                file, count = name.split()
                (folder / file).write_text(lines[0] * int(count))

    def run(self, vexel):
        """What happened: the sections that are expected, and files left behind."""
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            self.write_inputs(folder)
            given = {path.name for path in folder.iterdir()}
            output, messages, status = "", "", 0
            commands = [line for line in self.lines("command") if line.strip()]
            for command in commands:
                words = shlex.split(command)
                assert words[0] == "vexel", command
                last = command is commands[-1]
                done = subprocess.run([vexel] + words[1:], cwd=folder, text=True,
                                      errors="replace", timeout=TIMEOUT_S, capture_output=True,
                                      input=self.text("input") if last else "")
                output += done.stdout
                messages += done.stderr
                status = done.returncode
                if status != 0:
                    break
            left = {path.name: path.read_bytes() for path in folder.iterdir()
                    if path.name not in given}
        happened = {("output", ""): output.splitlines(), ("messages", ""): messages.splitlines(),
                    ("status", ""): [str(status)]}
        for file, data in left.items():
            happened["result", file] = hex_lines(data)
        return happened

    def expected(self):
        want = {("output", ""): [], ("messages", ""): [], ("status", ""): ["0"]}
        for kind, name, lines in self.sections:
            if kind in EXPECTED:
                want[kind, name] = [line for line in lines if line] if kind == "result" else lines
        return want

    def check(self, vexel):
        """The differences, as lines; none if the case passes."""
        happened, want = self.run(vexel), self.expected()
        checked = {("result", n) for k, n, _ in self.sections if k == "result"}
        out = []
        for key in sorted(set(happened) | set(want)):
            if key[0] == "result" and key not in checked:
                out.append(f"left behind: {key[1]}")
            elif happened.get(key, ["(no such file)"]) != want.get(key, []):
                out += difflib.unified_diff(want.get(key, []), happened.get(key, ["(no such file)"]),
                                            "expected " + " ".join(key), "happened", lineterm="")
        return out

    def update(self, vexel):
        happened = self.run(vexel)
        kept = [s for s in self.sections if s[0] not in EXPECTED]
        for key in [("output", ""), ("messages", ""), ("status", "")]:
            if happened[key] and happened[key] != (["0"] if key[0] == "status" else []):
                kept.append([*key, happened[key]])
        # Results stay a choice of the case's author: those named are rewritten.
        for kind, name, _ in self.sections:
            if kind == "result":
                kept.append([kind, name, happened.get((kind, name), [])])
        lines = list(self.head)
        for kind, name, body in kept:
            lines.append(f"--- {kind} {name}".rstrip())
            lines += body
        self.path.write_text("\n".join(lines) + "\n")


def main():
    parser = argparse.ArgumentParser(description="Black-box tests of the command.")
    parser.add_argument("--vexel", required=True, help="the command to test")
    parser.add_argument("--update", action="store_true", help="rewrite what the cases expect")
    parser.add_argument("cases", nargs="+", type=pathlib.Path)
    args = parser.parse_args()
    vexel = str(pathlib.Path(args.vexel).resolve())
    failed = 0
    for path in args.cases:
        case = Case(path)
        if args.update:
            case.update(vexel)
            continue
        differences = case.check(vexel)
        if differences:
            failed += 1
            print(f"FAILED {path}", *differences, sep="\n")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
