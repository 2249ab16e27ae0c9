#!/usr/bin/env python3
"""Checks who includes whom.

    check_layers.py ROOT          the tree at ROOT; prints each wrong include
    check_layers.py --self-test   this script on trees that it makes up

The core is geometry, raster, and the ring of movie, stage, text and player, in
this order. A header includes its own folder and lower ones; sources of the ring
include any header of the ring. The core never includes the plug-in's folders.
The host's interfaces, included as "zem/...", know nothing of ours.
"""
import pathlib
import re
import sys
import tempfile

CORE = ["geometry", "raster", "movie", "stage", "text", "player"]
RING = ["movie", "stage", "text", "player"]

# What the plug-in's folders may include, headers and sources alike; "zem" is
# the folder include/.
OUTSIDE = {
    "zem": ["zem"],
    "base": ["zem", "base"],
    "http": ["zem", "base", "http"],
    "host": CORE + ["zem", "base", "http", "host"],
}

# Texts and the clock: includes nothing of ours, so the whole ring may use it.
HELPERS = "player/text.h"

# The movie writer knows the format's lists and the formats of pixels.
AUTHOR_MAY = {"movie/tags.h", "movie/actions.h", "raster/pixel_format.h"}

INCLUDE = re.compile(r'^\s*#\s*include\s*["<]([\w./-]+/[\w.-]+)[">]', re.M)


def allowed(folder, is_header, included):
    """Whether a file of `folder` may include `included`, a path below src/."""
    target = included.split("/")[0]
    if target not in CORE and target not in OUTSIDE:
        return True  # third-party, or the writer's own
    if folder == "author":
        return included in AUTHOR_MAY
    if folder == "client":
        # Who cuts a movie into a stream reads its tags.
        return target in ("zem", "base") or included == "movie/tags.h"
    if folder in OUTSIDE:
        return target in OUTSIDE[folder]
    if folder not in CORE:
        return True  # tools, tests and benches see what they like
    if target in OUTSIDE:
        return False
    if folder in RING and (included == HELPERS or not is_header and target in RING):
        return True
    return CORE.index(target) <= CORE.index(folder)


def wrong_includes(root):
    """Lines "file: includes what", for each include that goes the wrong way."""
    root = pathlib.Path(root)
    found = []
    for folder in [root / "src" / name for name in CORE + list(OUTSIDE)] + [
        root / "include" / "zem",
        root / "author",
        root / "client",
    ]:
        for path in sorted(folder.rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            for included in INCLUDE.findall(path.read_text(encoding="utf-8")):
                if not allowed(folder.name, path.suffix == ".h", included):
                    found.append(f"{path.relative_to(root)}: includes {included}")
    return found


def self_test():
    cases = [
        ("src/raster/a.h", '#include "geometry/rect.h"', True),
        ("src/geometry/a.cpp", '#include "raster/raster.h"', False),
        ("src/raster/a.cpp", '#include "movie/tags.h"', False),
        ("src/movie/a.h", '#include "stage/object.h"', False),
        ("src/movie/a.cpp", '#include "stage/object.h"', True),
        ("src/movie/a.cpp", '#include "player/splayer.h"', True),
        ("src/stage/a.h", '#include "movie/fwd.h"', True),
        ("src/stage/a.h", '#include "player/text.h"', True),
        ("src/raster/a.cpp", '#include "player/text.h"', False),
        ("src/player/a.cpp", '  #  include "host/engine.h"', False),
        ("src/stage/a.cpp", "#include <base/list.h>", False),
        ("src/http/a.cpp", '#include "host/engine.h"', False),
        ("src/host/a.cpp", '#include "player/splayer.h"', True),
        ("src/base/a.cpp", '#include "geometry/rect.h"', False),
        ("author/a.cpp", '#include "movie/tags.h"', True),
        ("author/a.cpp", '#include "player/splayer.h"', False),
        ("src/base/a.h", '#include "zem/zem.h"', True),
        ("src/raster/a.h", '#include "zem/zem.h"', False),
        ("include/zem/a.h", '#include "base/list.h"', False),
        ("client/a.cpp", '#include "zem/zem.h"', True),
        ("client/core/a.cpp", '#include "base/list.h"', True),
        ("client/a.cpp", '#include "http/server.h"', False),
        ("src/stage/a.cpp", "#include <sys/types.h>", True),
    ]
    failed = 0
    for name, line, right in cases:
        with tempfile.TemporaryDirectory() as root:
            path = pathlib.Path(root) / name
            path.parent.mkdir(parents=True)
            path.write_text(line + "\n", encoding="utf-8")
            if (not wrong_includes(root)) != right:
                print(f"{name}: {line}: should be {'right' if right else 'wrong'}")
                failed += 1
    return failed


def main():
    if len(sys.argv) != 2:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    if sys.argv[1] == "--self-test":
        return 1 if self_test() else 0
    found = wrong_includes(sys.argv[1])
    print("\n".join(found), end="\n" if found else "")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
