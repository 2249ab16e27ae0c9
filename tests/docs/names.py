#!/usr/bin/env python3
"""Whatever the documents name is there: the targets of their links, headings
included, and the files and folders of this tree that their text speaks of."""
import os
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
DOCUMENTS = [*ROOT.glob("*.md"), *ROOT.glob("*/*.md")]
LINK = re.compile(r"\]\(([^)\s]+)\)")
FENCE = re.compile(r"^( *)```.*?^\1```$|(?:^    [^\n]*\n)+", re.S | re.M)
SPAN = re.compile(r"`([^`\n]+)`")
PATH = re.compile(r"(?<![\w./~$<-])[\w.*-]+(?:/[\w.*-]+)+/?")
SOURCE = re.compile(r"(?<![\w./*-])[\w-]+\.(?:h|cpp|cmake|py|sh)(?![\w.])")

# What looks like a path of this tree and is none: places below an installation's
# prefix, files that the reader writes.
ELSEWHERE = {"include/vexel/", "client.cpp", "fuzz/regress/movie/what-it-was.vxf"}

# Paths are told from the root, or from where the sources and headers are included.
BASES = [ROOT, ROOT / "src", ROOT / "include", ROOT / "examples"]
FIRST = {one.name for base in BASES for one in base.iterdir()
         if one.is_dir() and not one.name.startswith((".", "build"))}


def files():
    for folder, below, names in os.walk(ROOT):
        below[:] = [one for one in below if not one.startswith((".", "build"))]
        yield from names


def anchors(document):
    """Of a document's headings, as they are made where it is shown as a page."""
    text = FENCE.sub("", document.read_text())
    for heading in re.findall(r"^#+ (.*)$", text, re.M):
        yield re.sub(r"[^\w -]", "", heading.lower()).replace(" ", "-")


def broken_links(document, text):
    for link in LINK.findall(text):
        if "://" in link:
            continue
        name, _, anchor = link.partition("#")
        target = document.parent / name if name else document
        if not target.exists():
            yield f"the link {link} leads nowhere"
        elif anchor and anchor not in anchors(target):
            yield f"{link}: no such heading"


def missing_paths(document, text, names):
    # Outside code, a slash is a slash.
    code = [found[0] for found in FENCE.finditer(text)] + SPAN.findall(FENCE.sub("", text))
    for piece in code:
        for path in PATH.findall(piece):
            pattern = re.sub(r"\b[A-Z]{2,}\b", "*", path.rstrip("/"))  # tests/unit/FOLDER/
            if path.split("/")[0] not in FIRST or path in ELSEWHERE:
                continue
            if not any(any(base.glob(pattern)) for base in [document.parent, *BASES]):
                yield f"{path} does not exist"
        for name in SOURCE.findall(PATH.sub("", piece)):
            if name not in names and name not in ELSEWHERE:
                yield f"{name} is nowhere"


def main():
    names = set(files())
    faults = []
    for document in sorted(DOCUMENTS):
        text = document.read_text()
        for fault in [*broken_links(document, text), *missing_paths(document, text, names)]:
            faults.append(f"{document.relative_to(ROOT)}: {fault}")
    print("\n".join(faults) or f"{len(DOCUMENTS)} documents hold")
    sys.exit(1 if faults else 0)


main()
