"""A message bus of a display's own, and the player on it as remote controls see it."""
import subprocess

from gi.repository import Gio, GLib

from display import PATIENCE, wait_for

NAME = "org.mpris.MediaPlayer2.vexel"
ROOT = "org.mpris.MediaPlayer2"
PLAYER = "org.mpris.MediaPlayer2.Player"
PROPERTIES = "org.freedesktop.DBus.Properties"


class SessionBus:
    """Made before the players that are to be on it."""

    def __init__(self, display):
        # Signals come to whoever asks for them in this thread.
        self.context = GLib.MainContext.new()
        self.context.push_thread_default()
        address = display.env["DBUS_SESSION_BUS_ADDRESS"]
        self.daemon = subprocess.Popen(
            ["dbus-daemon", "--session", "--nofork", "--print-address", f"--address={address}"],
            env=display.env, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        assert self.daemon.stdout.readline(), "the bus does not start"
        self.connection = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
            Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.end()
        self.context.pop_thread_default()

    def end(self):
        """Takes the bus from all who are on it."""
        self.daemon.kill()
        self.daemon.wait()
        self.daemon.stdout.close()

    def names(self):
        """Those of players, the first one first."""
        reply = self.connection.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "ListNames",
            None, None, Gio.DBusCallFlags.NONE, PATIENCE * 1000, None)
        return sorted(name for name in reply.unpack()[0] if name.startswith(NAME))


class Remote:
    """One player, by its name on the bus, once it is there."""

    def __init__(self, bus, name=NAME):
        self.bus, self.name = bus, name
        wait_for(name, lambda: name in bus.names())
        self.changes, self.places = [], []  # as they are told
        for interface, told in ((PROPERTIES, self._changed), (PLAYER, self._seeked)):
            bus.connection.signal_subscribe(name, interface, None, "/org/mpris/MediaPlayer2", None,
                                            Gio.DBusSignalFlags.NONE, told)

    def _changed(self, _bus, _sender, _path, _interface, _signal, words):
        interface, values, _ = words.unpack()
        self.changes += [(interface, *value) for value in values.items()]

    def _seeked(self, _bus, _sender, _path, _interface, signal, words):
        assert signal == "Seeked"
        self.places.append(words.unpack()[0] // 1000)

    def _hear(self):
        while self.bus.context.iteration(False):
            pass

    def told(self, interface, name, value):
        """Waits for the change of a property."""
        def is_told():
            self._hear()
            return (interface, name, value) in self.changes
        wait_for(f"{name} told as {value}", is_told)
        self.changes.clear()

    def told_place(self):
        """Waits for a jump; the last place, milliseconds."""
        def is_told():
            self._hear()
            return self.places
        wait_for("a jump told", is_told)
        place = self.places[-1]
        self.places.clear()
        return place

    def call(self, interface, method, signature="()", *values):
        """What it answers; GLib.Error if it refuses."""
        reply = self.bus.connection.call_sync(
            self.name, "/org/mpris/MediaPlayer2", interface, method,
            GLib.Variant(signature, values), None, Gio.DBusCallFlags.NO_AUTO_START,
            PATIENCE * 1000, None)
        return reply.unpack()

    def do(self, method, signature="()", *values):
        """A method of the player's."""
        assert self.call(PLAYER, method, signature, *values) == ()

    def all(self, interface):
        return self.call(PROPERTIES, "GetAll", "(s)", interface)[0]

    def get(self, name, interface=PLAYER):
        return self.call(PROPERTIES, "Get", "(ss)", interface, name)[0]

    def set(self, name, signature, value, interface=PLAYER):
        self.call(PROPERTIES, "Set", "(ssv)", interface, name, GLib.Variant(signature, value))

    def refusal(self, *words):
        """The error's name that a call is answered with, without its family."""
        try:
            answer = self.call(*words)
        except GLib.Error as error:
            return Gio.DBusError.get_remote_error(error).split(".")[-1]
        raise AssertionError(f"{words} is answered with {answer}")
