#!/usr/bin/env python3
"""Uses an installation as people do.

    package.py PART --prefix FOLDER --vexel build/bin/vexel
               --hello build/bin/hello-client --plugin build/lib/vexel.so
               --python /usr/bin/python3

PART is movies, desktop, player, pages, completions or development. What is installed
must do what the build does, from any place, and desktops, readers of manuals
and shells must take what they are given.
"""

import argparse
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile


class Wrong(Exception):
    pass


def expect(holds, what):
    if not holds:
        raise Wrong(what)


def run(*command, **options):
    """Standard output of a command, which must succeed and say nothing on
    standard error."""
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True,
                          **options)
    expect(done.returncode == 0 and not done.stderr,
           f"{shlex.join(map(str, command))}: status {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def same(a, b):
    expect(a.read_bytes() == b.read_bytes(), f"{a} and {b} differ")


def environment(prefix):
    """No program of ours is found but the installed ones."""
    folders = f"{prefix}/bin:/usr/local/bin:/usr/bin:/bin"
    return dict(os.environ, PATH=folders, XDG_DATA_DIRS=f"{prefix}/share:/usr/share",
                XDG_DATA_HOME=f"{prefix}/none", LC_ALL="C.UTF-8")


def movies(words, scratch):
    """Every program is found, also after a move."""
    moved = scratch / "moved"
    shutil.copytree(words.prefix, moved)
    options = dict(env=environment(moved), cwd=scratch)
    movie = moved / "share/vexel/railway.vxf"
    run("vexel", "render", movie, "--frame", 20, "-o", "there.png", **options)
    run(words.vexel, "render", movie, "--frame", 20, "-o", "here.png", cwd=scratch)
    same(scratch / "there.png", scratch / "here.png")
    (scratch / "railway.vxt").write_text(run("vexel", "dump", movie, **options))
    run("vexel", "make", "railway.vxt", "-o", "railway.vxf", **options)
    same(scratch / "railway.vxf", movie)
    run("vexel", "render", movie, "--to", 200, "-o", "film.gif", **options)
    run("vexel", "import", "there.png", "-o", "picture.vxf", **options)
    run("vexel", "font", "--built-in", **options)
    run("vexel", "watch", "railway.vxt", "-o", "watched.png", "--once", **options)
    script = "clock 500\nshot %s.png\n"
    run("vexel", "stream", movie, "-", input=script % "streamed", **options)
    run(words.vexel, "stream", movie, "-", input=script % "here", cwd=scratch)
    same(scratch / "streamed.png", scratch / "here.png")


def desktop(words, scratch):
    """A file manager knows a movie, shows it small, and opens it."""
    share = words.prefix / "share"
    env = environment(words.prefix)
    run("xmllint", "--noout", share / "mime/packages/vexel.xml")
    run("update-mime-database", share / "mime", env=dict(env, PKGSYSTEM_ENABLE_FSYNC="0"))
    movie = scratch / "a file without an extension"
    shutil.copy(share / "vexel/logo.vxf", movie)
    kind = run("gio", "info", "-a", "standard::content-type", movie, env=env)
    expect("application/x-brightarc-vexel\n" in kind, kind)

    lines = (share / "thumbnailers/vexel.thumbnailer").read_text().split("\n")
    thumbnail = next(line for line in lines if line.startswith("Exec=")).removeprefix("Exec=")
    places = {"%i": str(movie), "%o": str(scratch / "small"), "%s": "96"}
    run(*[places.get(word, word) for word in thumbnail.split()], env=env)
    expect("96 x 64" in run("file", scratch / "small"), "the thumbnail has another form")
    for size in (16, 48, 256):
        icon = share / f"icons/hicolor/{size}x{size}/apps/vexel.png"
        expect(f"PNG image data, {size} x {size}" in run("file", icon), f"{icon} is no icon")

    sources = pathlib.Path(__file__).parent.parent.parent / "packaging"
    run("desktop-file-validate", sources / "org.vexel.Player.desktop")
    run("appstreamcli", "validate", "--no-net", "--pedantic",
        sources / "org.vexel.Player.metainfo.xml")
    version = re.search("^Version: (.*)$", (share / "pkgconfig/zem.pc").read_text(), re.M)[1]
    told = (sources / "org.vexel.Player.metainfo.xml").read_text()
    expect(f'<release version="{version}"' in told, f"nothing is told of {version}")
    expect((sources / "changelog").read_text().startswith(f"vexel ({version})"), "the changelog")
    # They come with the player.
    player = (words.prefix / "libexec/vexel/vexel-player").exists()
    for place in ("applications/org.vexel.Player.desktop",
                  "metainfo/org.vexel.Player.metainfo.xml"):
        expect((share / place).exists() == player, place)


def player(words, scratch):
    """The window shows what the client without one draws."""
    share = words.prefix / "share/vexel"
    env = environment(words.prefix)
    run("vexel", "stream", "--packet", 65535, share / "guestbook.vxf", "-", input="clock 0\nclock 500\nshot still.png\n",
        env=env, cwd=scratch)
    run(words.python, pathlib.Path(__file__).parent / "window.py", share / "guestbook.vxf",
        scratch / "still.png", share / "railway.vxf", "vexel", "play", env=env)


def verbs_of(words):
    text = run(words.vexel, "--help")
    listed = text.split("Subcommands:\n")[1].split("\n\n")[0]
    return [line.split()[0] for line in listed.split("\n")]


def pages(words, scratch):
    """Each verb has a manual page, which tells all its options."""
    folder = words.prefix / "share/man/man1"
    names = ["vexel"] + [f"vexel-{verb}" for verb in verbs_of(words)]
    expect(sorted(page.name for page in folder.iterdir()) ==
           sorted(name + ".1.gz" for name in names), "other pages than verbs")
    env = dict(environment(words.prefix), MANWIDTH="200", MANROFFSEQ="")
    for name in names:
        text = run("man", "--warnings", "-l", folder / (name + ".1.gz"), env=env)
        for section in ("NAME", "SYNOPSIS", "OPTIONS", "EXIT STATUS"):
            expect(section in text, f"{name} has no {section}")
        told = run(words.vexel, *name.split("-")[1:], "--help")
        for line in told.split("\n"):
            if line.startswith("  -"):
                option = line.split()[0].split(",")[-1]
                expect(option in text, f"{name} says nothing of {option}")


def completions(words, scratch):
    """The shells take them, and bash proposes what there is."""
    script = words.prefix / "share/bash-completion/completions/vexel"
    run("bash", "-n", script)
    functions = words.prefix / "share/zsh/vendor-completions"
    run("zsh", "-n", functions / "_vexel")
    found = run("zsh", "-fc", "fpath=($0 $fpath); autoload -U compinit; compinit -u -D; "
                "autoload +X _vexel; print $_comps[vexel]", functions)
    expect(found == "_vexel\n", f"zsh completes vexel by {found}")
    told = run("bash", "-c", f"source {shlex.quote(str(script))}; complete -p vexel")
    expect(told.endswith("-F _vexel vexel\n"), f"bash completes by {told}")
    for name in ("a movie.vxf", "b.txt", "c.vxt"):
        (scratch / name).touch()

    def proposals(*line):
        asked = f"COMP_WORDS=({shlex.join(line)}); COMP_CWORD={len(line) - 1}; _vexel"
        return run("bash", "-c", f"source {shlex.quote(str(script))}; {asked}; "
                   'for word in "${COMPREPLY[@]}"; do printf "%s\\n" "$word"; done',
                   cwd=scratch).split("\n")[:-1]

    for line, wanted in [
            (("vexel", "ren"), ["render"]),
            (("vexel", "render", "--q"), ["--quality"]),
            (("vexel", "render", "--quality", ""), ["low", "high"]),
            (("vexel", "stream", "--mode", "l"), ["linear"]),
            (("vexel", "render", "--size", ""), []),
            (("vexel", "info", ""), ["a movie.vxf"]),
            (("vexel", "make", ""), ["c.vxt"]),
            (("vexel", "render", "-o", "b"), ["b.txt"]),
            (("vexel", "nothing", ""), [])]:
        got = proposals(*line)
        expect(got == wanted, f"{line}: {got}, not {wanted}")


CORE = """
#include "player/splayer.h"
#include "player/text.h"

int main() {
  return vexel::ToInt("42") == 42 ? 0 : 1;
}
"""

PROJECT = """
cmake_minimum_required(VERSION 3.25)
project(client LANGUAGES CXX)
find_package(vexel 0.1 REQUIRED)
find_package(PNG REQUIRED)
add_executable(hello {example}/hello_client.cpp)
target_compile_features(hello PRIVATE cxx_std_20)
target_link_libraries(hello PRIVATE vexel::zem PNG::PNG ${{CMAKE_DL_LIBS}})
add_executable(core core.cpp)
target_link_libraries(core PRIVATE vexel::core)
file(WRITE ${{CMAKE_BINARY_DIR}}/plugin ${{vexel_PLUGIN}})
"""


def development(words, scratch):
    """A client is built on what is installed, by pkg-config and by CMake, and
    draws what the one of the build draws."""
    example = words.prefix / "share/doc/libvexel-dev/examples/hello-client"
    movie = words.prefix / "share/vexel/railway.vxf"
    run(words.hello, words.plugin, movie, scratch / "here.png", 1000)

    env = dict(os.environ, PKG_CONFIG_PATH=str(words.prefix / "share/pkgconfig"))

    def told(*question):
        return run("pkg-config", *question, env=env).split()

    (scratch / "core.cpp").write_text(CORE)
    run("g++", "-std=c++20", example / "hello_client.cpp", "-o", scratch / "hello",
        *told("--cflags", "--libs", "zem", "libpng"))
    run("g++", "-std=c++20", scratch / "core.cpp", "-o", scratch / "core",
        *told("--cflags", "--libs", "vexel"))
    run(scratch / "core")
    plugin = told("--variable=plugin", "zem")[0]
    run(scratch / "hello", plugin, movie, scratch / "by-pkg-config.png", 1000)
    same(scratch / "here.png", scratch / "by-pkg-config.png")

    (scratch / "CMakeLists.txt").write_text(PROJECT.format(example=example))
    build = scratch / "build"
    run("cmake", "-G", "Ninja", "-S", scratch, "-B", build, f"-DCMAKE_PREFIX_PATH={words.prefix}")
    run("cmake", "--build", build)
    run(build / "core")
    run(build / "hello", (build / "plugin").read_text(), movie, scratch / "by-cmake.png", 1000)
    same(scratch / "here.png", scratch / "by-cmake.png")


def main():
    parts = {part.__name__: part
             for part in (movies, desktop, player, pages, completions, development)}
    parser = argparse.ArgumentParser()
    parser.add_argument("part", choices=parts)
    for name in ("prefix", "vexel", "hello", "plugin", "python"):
        parser.add_argument(f"--{name}", required=True, type=pathlib.Path)
    words = parser.parse_args()
    with tempfile.TemporaryDirectory() as scratch:
        try:
            parts[words.part](words, pathlib.Path(scratch))
        except Wrong as wrong:
            sys.exit(f"{words.part}: {wrong}")


main()
