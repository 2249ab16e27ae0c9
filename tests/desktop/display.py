"""A display of its own for each case: an X server without a screen, with a
window manager and a home folder, all of which go with it."""
import os
import pathlib
import re
import subprocess
import tempfile
import time

from PIL import Image, ImageGrab

PATIENCE = 60  # seconds that anything may take on a busy machine
# What libraries keep to the program's end, where a sanitizer looks for leaks.
KEPT = pathlib.Path(__file__).parent / "lsan.txt"
TOOL_TIME = 60  # seconds for one of the display's own tools


def wait_for(what, is_so, seconds=PATIENCE):
    """The first true value of `is_so`, or a failure that says `what`."""
    end = time.time() + seconds
    while True:
        value = is_so()
        if value:
            return value
        assert time.time() < end, f"never came: {what}"
        time.sleep(0.05)


# A file dialog that begins with the recent files rebuilds itself at a path's first
# key: it loses the next ones, and complains of a widget that has gone.
SETTINGS = """[org/gtk/settings/file-chooser]
startup-mode='cwd'
"""


def on_server(**server):
    """Marks a case that wants another display than usual."""
    def mark(case):
        case.server = server
        return case
    return mark


class Display:
    SIZE = (1024, 800)

    def __init__(self, size=SIZE, depth=24, options=(), under=()):
        """`options` are the server's own; `under` is a command that runs it."""
        self.size, self.depth = size, depth
        self.home = tempfile.TemporaryDirectory(prefix="vexel-desktop-")
        self.folder = pathlib.Path(self.home.name)
        self.players = []  # that are to be alive at the end
        self.expected = None  # the picture that a failure leaves beside the screen's
        self.typed_again = 0
        read, write = os.pipe()
        # Without -noreset the server drops all who are just coming when the only
        # client leaves, and the tools below come and go.
        self.server = subprocess.Popen(
            [*under, "Xvfb", "-displayfd", str(write), "-screen", "0",
             f"{size[0]}x{size[1]}x{depth}", "-noreset", "-nolisten", "tcp", *options],
            pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as pipe:
            number = pipe.readline().strip()
        assert number, "Xvfb does not start"
        self.name = ":" + number

        settings = self.folder / "config/glib-2.0/settings/keyfile"
        settings.parent.mkdir(parents=True)
        settings.write_text(SETTINGS)
        # Nothing of the desktop that the tests may be run from: its settings, its
        # bus (a case that wants one starts it there), its helpers.
        self.env = dict(os.environ, DISPLAY=self.name, HOME=self.home.name,
                        XDG_CONFIG_HOME=self.home.name + "/config",
                        XDG_DATA_HOME=self.home.name + "/data",
                        XDG_RUNTIME_DIR=self.home.name,
                        DBUS_SESSION_BUS_ADDRESS=f"unix:path={self.home.name}/bus",
                        NO_AT_BRIDGE="1", GIO_USE_VFS="local", GIO_USE_VOLUME_MONITOR="unix",
                        GTK_THEME="Adwaita", GSETTINGS_BACKEND="keyfile", LC_ALL="C.UTF-8",
                        LSAN_OPTIONS=f"print_suppressions=0:suppressions={KEPT}")
        self.manager = subprocess.Popen(["openbox", "--sm-disable"], env=self.env,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_for("the window manager", lambda: "window id" in self._run(
            "xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))
        # Out of the way of everything that changes below a pointer.
        self.tool("mousemove", size[0] - 1, 0)

    def close(self):
        for player in self.players:
            player.process.kill()
            player.process.wait()
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()
        self.home.cleanup()

    def _run(self, *words):
        return subprocess.run([*map(str, words)], env=self.env, text=True, capture_output=True,
                              timeout=TOOL_TIME).stdout.strip()

    def tool(self, *words):
        """xdotool, and what it prints."""
        return self._run("xdotool", *words)

    def place(self, window):
        """Of a window on the screen: left, top, width, height; None if it is gone."""
        text = self._run("xwininfo", "-id", window)
        names = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
        found = [re.search(rf"{name}: +(-?\d+)", text) for name in names]
        return tuple(int(one[1]) for one in found) if all(found) else None

    def picture(self):
        """The whole screen, without the pointer."""
        if self.depth != 24:  # which is all that the library reads
            path = self.folder / "screen.png"
            self._run("import", "-window", "root", path)
            return Image.open(path).convert("RGB")
        return ImageGrab.grab(xdisplay=self.name).convert("RGB")
