"""Files dragged from another program and dropped."""
import pathlib
import subprocess
import sys

from display import wait_for

SOURCE = pathlib.Path(__file__).parent / "drag_source.py"


class Drag:
    """A program with a file to give; `to` drags it."""

    def __init__(self, display, path):
        self.display = display
        self.told = display.folder / "drag"
        with open(self.told, "w") as told:
            self.process = subprocess.Popen([sys.executable, SOURCE, pathlib.Path(path).as_uri()],
                                            env=display.env, stdout=told)
        self._wait("shown")
        self.window = wait_for("the other program", self._find)

    def _find(self):
        return self.display.tool("search", "--onlyvisible", "--name", "^files$")

    def _wait(self, word):
        wait_for(f"the drag {word}", lambda: word in self.told.read_text().split())

    def to(self, x, y):
        """Drags the file to a place on the screen and lets go of it there."""
        tool = self.display.tool
        left, top, width, height = self.display.place(self.window)
        from_x, from_y = left + width // 2, top + height // 2
        tool("mousemove", from_x, from_y)
        tool("mousedown", 1)
        for step in range(1, 4):
            tool("mousemove", from_x + 10 * step, from_y)
        self._wait("begun")
        for step in range(1, 11):
            tool("mousemove", from_x + (x - from_x) * step // 10,
                 from_y + (y - from_y) * step // 10)
        # The other side answers to motion, and says so that it takes the file.
        self._wait("wanted")
        tool("mouseup", 1)
        self._wait("ended")
        assert "failed" not in self.told.read_text().split()

    def close(self):
        self.process.terminate()
        self.process.wait()
