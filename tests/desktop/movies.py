"""What the cases play, and the pictures that are right for it."""
import pathlib
import subprocess
import sys
import tempfile

from PIL import Image

VEXEL = sys.argv[1]
MOVIES = pathlib.Path(sys.argv[2]).resolve()  # a dialog takes no other
BOOK, BOOK_SIZE = MOVIES / "guestbook.vxf", (700, 460)  # stands still until it is used
TRAIN = MOVIES / "railway.vxf"  # never stands still
SAME = 0.6  # a mean difference of a channel, of 255: scaling, or a caret that blinks


def streamed(movie, *lines):
    """The picture of the client without a window after a script's lines."""
    with tempfile.TemporaryDirectory() as folder:
        out = f"{folder}/out.png"
        script = "\n".join(["clock 0", "clock 500", *lines, f"shot {out}", ""])
        subprocess.run([VEXEL, "stream", "--packet", "65535", movie, "-"], input=script, text=True,
                       check=True, capture_output=True)
        return Image.open(out).convert("RGB")


def make(display, name, text):
    """A movie of a text, in the display's own folder."""
    source, movie = display.folder / f"{name}.vxt", display.folder / f"{name}.vxf"
    source.write_text(text)
    subprocess.run([VEXEL, "make", source, "-o", movie], check=True)
    return movie


COUNT_SIZE = (640, 160)
COUNT_RATE = 10  # frames a second
COUNT_FRAMES = 100
COUNT = f"""movie size 640, 160 rate {COUNT_RATE} background white
repeat frames as n {{
  frame {{
    shape = n + 1 {{
      fill black rect 0, 0, 640, 20
      repeat 8 as b {{ if mod(floor(n / power(2, b)), 2) == 1 {{ fill black rect 80*b, 40, 80, 120 }} }}
    }}
    if n > 0 {{ remove 1 }}
    place n + 1 depth 1
  }}
}}
"""


def counting(display, frames=COUNT_FRAMES):
    """A movie whose picture tells the number of its frame, from 0: eight bars, the
    lowest bit on the left."""
    return make(display, "count", f"let frames = {frames}\n" + COUNT)


def number(picture):
    """Of a frame of the counting movie, at any size; None for another picture."""
    width, height = picture.size

    def dark(x, y):
        return max(picture.getpixel((round(x * width), round(y * height)))) < 64

    if not dark(0.5, 0.05) or dark(0.5, 0.18):
        return None
    return sum(dark((b + 0.5) / 8, 0.5) << b for b in range(8))
