"""The player on the session's bus: media keys, panels and remote controls."""
import configparser
import pathlib
import random

from gi.repository import GLib

from display import wait_for
from movies import BOOK, COUNT_FRAMES, COUNT_RATE, COUNT_SIZE, TRAIN, VEXEL, counting, number, streamed
from player import Player
from session_bus import NAME, PLAYER, PROPERTIES, ROOT, Remote, SessionBus

LENGTH = COUNT_FRAMES * 1000 // COUNT_RATE  # of the counting movie, milliseconds
DESKTOP_FILE = pathlib.Path(__file__).parents[3] / "packaging/org.vexel.Player.desktop"


def frame(player):
    return number(player.shot())


def due(ms):
    """The frame that stands at a time: the clock's start makes the first step."""
    return min(ms * COUNT_RATE // 1000 + 1, COUNT_FRAMES - 1)


def stopped(display, bus):
    """A player of the counting movie that the bus has stopped in its midst."""
    player = Player(display, VEXEL, counting(display))
    remote = Remote(bus)
    wait_for("the fifth frame", lambda: (frame(player) or 0) >= 5)
    remote.do("Pause")
    assert remote.get("PlaybackStatus") == "Paused"
    wait_for("a stand", player.stands)
    return player, remote


def case_the_bus_plays_and_pauses(display):
    with SessionBus(display) as bus:
        player, remote = stopped(display, bus)
        stood = frame(player)
        assert due(remote.get("Position") // 1000) == stood
        remote.do("Pause")
        assert remote.get("PlaybackStatus") == "Paused"
        remote.do("Play")
        assert remote.get("PlaybackStatus") == "Playing"
        wait_for("a movement", lambda: frame(player) > stood + 3)
        remote.do("Play")
        remote.do("PlayPause")
        wait_for("a stand again", player.stands)
        remote.do("Stop")
        assert (remote.get("PlaybackStatus"), remote.get("Position")) == ("Stopped", 0)
        wait_for("the beginning", lambda: frame(player) == due(0))
        remote.do("PlayPause")
        wait_for("a movement from there", lambda: 2 < frame(player) < stood + 20)


def case_the_bus_seeks(display):
    with SessionBus(display) as bus:
        player, remote = stopped(display, bus)
        track = remote.get("Metadata")["mpris:trackid"]
        remote.do("SetPosition", "(ox)", track, 5_000_000)
        wait_for("the middle", lambda: frame(player) == due(5000))
        assert remote.told_place() == 5000
        remote.do("Seek", "(x)", -2_000_000)
        wait_for("two seconds before", lambda: frame(player) == due(3000))
        assert remote.told_place() == 3000
        remote.do("Seek", "(x)", -(2**63))
        wait_for("the beginning", lambda: frame(player) == due(0))
        assert remote.told_place() == 0
        remote.do("Seek", "(x)", 4_000_000)
        wait_for("four seconds on", lambda: frame(player) == due(4000))
        # There is nothing behind the end, and another movie's places are not ours.
        remote.do("Seek", "(x)", LENGTH * 1000)
        remote.do("Seek", "(x)", 2**63 - 1)
        remote.do("SetPosition", "(ox)", "/org/vexel/Player/movie/77", 1_000_000)
        for place in (-1, LENGTH * 1000 + 1, 2**63 - 1, -(2**63)):
            assert remote.refusal(PLAYER, "SetPosition", "(ox)", track, place) == "InvalidArgs"
        remote.do("Next")
        remote.do("Previous")
        assert remote.get("Position") == 4_000_000 and frame(player) == due(4000)


def case_the_bus_learns_what_plays(display):
    with SessionBus(display) as bus:
        player = Player(display, VEXEL)
        remote = Remote(bus)
        idle = remote.all(PLAYER)
        assert idle["Metadata"] == {} and idle["PlaybackStatus"] == "Stopped", idle
        assert not (idle["CanPlay"] or idle["CanPause"] or idle["CanSeek"]), idle

        movie = counting(display)
        remote.do("OpenUri", "(s)", movie.as_uri())
        remote.told(PLAYER, "CanSeek", True)
        remote.set("Rate", "d", 0.25)
        known = remote.all(PLAYER)
        assert 0 <= known.pop("Position") <= LENGTH * 1000
        about = known.pop("Metadata")
        track = about.pop("mpris:trackid")
        assert track.startswith("/org/vexel/Player/movie/"), track
        assert about == {"xesam:title": "count.vxf", "xesam:url": movie.as_uri(),
                         "mpris:length": LENGTH * 1000}, about
        assert known == {"PlaybackStatus": "Playing", "LoopStatus": "Track", "Rate": 0.25,
                         "MinimumRate": 0.25, "MaximumRate": 4, "CanGoNext": False,
                         "CanGoPrevious": False, "CanPlay": True, "CanPause": True,
                         "CanSeek": True, "CanControl": True}, known

        entry = configparser.ConfigParser(interpolation=None)
        entry.read(DESKTOP_FILE)
        assert remote.all(ROOT) == {
            "CanRaise": True, "CanQuit": True, "CanSetFullscreen": True, "Fullscreen": False,
            "HasTrackList": False, "Identity": entry["Desktop Entry"]["Name"],
            "DesktopEntry": DESKTOP_FILE.stem, "SupportedUriSchemes": ["file", "http", "https"],
            "SupportedMimeTypes": entry["Desktop Entry"]["MimeType"].strip(";").split(";")}

        # A movie that waits for its user has no places.
        remote.do("OpenUri", "(s)", BOOK.absolute().as_uri())
        remote.told(PLAYER, "CanSeek", False)
        remote.do("Seek", "(x)", 1_000_000)
        player.until("the movie's picture", streamed(BOOK))


def case_the_bus_is_told_what_the_window_does(display):
    with SessionBus(display) as bus:
        player, remote = stopped(display, bus)
        remote.told(PLAYER, "PlaybackStatus", "Paused")
        player.key("space")
        remote.told(PLAYER, "PlaybackStatus", "Playing")
        player.key("period")
        remote.told(PLAYER, "PlaybackStatus", "Paused")
        before = remote.get("Position") // 1000
        player.key("period")
        assert remote.told_place() == (before * COUNT_RATE // 1000 + 1) * 1000 // COUNT_RATE
        player.key("f")
        remote.told(ROOT, "Fullscreen", True)
        player.key("Escape")
        remote.told(ROOT, "Fullscreen", False)
        # When the movie begins again it has jumped.
        remote.set("Rate", "d", 4)
        player.key("space")
        remote.places.clear()
        assert remote.told_place() < LENGTH // 2


def case_the_bus_sets_speed_loop_and_full_screen(display):
    with SessionBus(display) as bus:
        player, remote = stopped(display, bus)
        remote.set("Fullscreen", "b", True, ROOT)
        remote.told(ROOT, "Fullscreen", True)
        wait_for("the full screen", lambda: player.size()[0] == display.SIZE[0])
        remote.set("Fullscreen", "b", False, ROOT)
        wait_for("the window again", lambda: player.size() == COUNT_SIZE)

        remote.set("Rate", "d", 4)
        remote.told(PLAYER, "Rate", 4)
        remote.set("LoopStatus", "s", "None")
        remote.told(PLAYER, "LoopStatus", "None")
        remote.do("Play")
        remote.told(PLAYER, "PlaybackStatus", "Paused")
        assert remote.get("Position") == LENGTH * 1000
        remote.do("Play")
        remote.set("Rate", "d", 0)  # which is to pause
        assert remote.get("PlaybackStatus") != "Playing" and remote.get("Rate") == 4
        remote.set("Rate", "d", 1.5)
        assert remote.get("Rate") == 1.5
        for rate in (0.1, 4.1, -1, float("nan"), float("inf")):
            value = GLib.Variant("d", rate)
            assert remote.refusal(PROPERTIES, "Set", "(ssv)", PLAYER, "Rate", value) == "InvalidArgs"
        for status in ("Playlist", "", "track"):
            value = GLib.Variant("s", status)
            assert remote.refusal(PROPERTIES, "Set", "(ssv)", PLAYER, "LoopStatus",
                                  value) == "InvalidArgs"


def case_the_bus_opens_movies(display):
    with SessionBus(display) as bus:
        player, remote = stopped(display, bus)
        first = remote.get("Metadata")["mpris:trackid"]
        for uri in ("", "/etc/passwd", "ftp://example.org/a.vxf", "javascript:1", "%"):
            assert remote.refusal(PLAYER, "OpenUri", "(s)", uri) == "InvalidArgs"
        assert remote.get("Metadata")["mpris:trackid"] == first
        remote.do("OpenUri", "(s)", BOOK.absolute().as_uri())
        player.until("the next movie's picture", streamed(BOOK))
        about = remote.get("Metadata")
        assert about["xesam:title"] == BOOK.name and about["mpris:trackid"] != first, about
        remote.do("OpenUri", "(s)", (display.folder / "not there.vxf").as_uri())
        wait_for("the message", player.message)
        assert remote.get("PlaybackStatus") == "Stopped"
        assert remote.get("Metadata")["xesam:title"] == "not there.vxf"
        remote.do("OpenUri", "(s)", TRAIN.absolute().as_uri())
        remote.told(PLAYER, "PlaybackStatus", "Playing")


def case_two_players_are_on_the_bus_and_each_is_directed_alone(display):
    with SessionBus(display) as bus:
        players = [Player(display, VEXEL, TRAIN)]
        first = Remote(bus)
        players.append(Player(display, VEXEL, TRAIN))
        other = Remote(bus, f"{NAME}.instance{players[1].process.pid}")
        assert bus.names() == [first.name, other.name]
        for remote in (first, other):
            wait_for("the movie", lambda: remote.get("PlaybackStatus") == "Playing")
        other.do("Pause")
        assert other.get("PlaybackStatus") == "Paused"
        assert first.get("PlaybackStatus") == "Playing"
        other.call(ROOT, "Raise")
        wait_for("the other window on top", players[1].has_keyboard)
        first.call(ROOT, "Raise")
        wait_for("the first window on top", players[0].has_keyboard)
        first.call(ROOT, "Quit")
        assert players[0].wait_for_end() == 0
        assert bus.names() == [other.name]
        other.call(ROOT, "Quit")
        assert players[1].wait_for_end() == 0


def case_a_bus_that_goes_away_leaves_the_movie(display):
    with SessionBus(display) as bus:
        player, remote = stopped(display, bus)
        stood = frame(player)
        bus.end()
        player.key("space")
        wait_for("a movement", lambda: frame(player) > stood + 5)


def case_calls_that_make_no_sense_are_refused(display):
    with SessionBus(display) as bus:
        player, remote = stopped(display, bus)
        variant = GLib.Variant
        for words, error in [
                ((PLAYER, "Dance"), "UnknownMethod"),
                ((ROOT, "Play"), "UnknownMethod"),
                (("org.mpris.MediaPlayer2.TrackList", "GoTo", "(o)", "/"), "UnknownMethod"),
                ((PLAYER, "Play", "(s)", "now"), "InvalidArgs"),
                ((PLAYER, "Seek"), "InvalidArgs"),
                ((PLAYER, "Seek", "(s)", "far"), "InvalidArgs"),
                ((PLAYER, "Seek", "(d)", 1.5), "InvalidArgs"),
                ((PLAYER, "SetPosition", "(sx)", "/", 1), "InvalidArgs"),
                ((PLAYER, "OpenUri", "(as)", ["a"]), "InvalidArgs"),
                ((PROPERTIES, "Get", "(ss)", PLAYER, "Volume"), "InvalidArgs"),
                ((PROPERTIES, "Get", "(ss)", PLAYER, "Identity"), "InvalidArgs"),
                ((PROPERTIES, "Get", "(ss)", "org.example", "Rate"), "InvalidArgs"),
                ((PROPERTIES, "Set", "(ssv)", PLAYER, "Volume", variant("d", 1)), "InvalidArgs"),
                ((PROPERTIES, "Set", "(ssv)", PLAYER, "Position", variant("x", 1)), "InvalidArgs"),
                ((PROPERTIES, "Set", "(ssv)", PLAYER, "Metadata", variant("a{sv}", {})),
                 "InvalidArgs"),
                ((PROPERTIES, "Set", "(ssv)", PLAYER, "Rate", variant("s", "fast")), "InvalidArgs"),
                ((PROPERTIES, "Set", "(ssv)", PLAYER, "Rate", variant("v", variant("d", 1))),
                 "InvalidArgs"),
                ((PROPERTIES, "Set", "(ssv)", ROOT, "Fullscreen", variant("i", 1)), "InvalidArgs")]:
            got = remote.refusal(*words)
            assert got == error, f"{words}: {got}"

        # Anything at all, thrown at everything but what would end it.
        dice = random.Random(8)
        values = [("s", ""), ("s", "\N{SNOWMAN}" * 3000), ("x", 2**63 - 1), ("x", -(2**63)),
                  ("d", float("nan")), ("d", 1e300), ("b", True), ("o", "/"), ("i", -1),
                  ("as", ["None"] * 50), ("v", variant("v", variant("x", 0))), ("a{sv}", {})]
        for _ in range(400):
            chosen = dice.choices(values, k=dice.randrange(3))
            signature = "(" + "".join(kind for kind, _ in chosen) + ")"
            method = dice.choice(["Seek", "SetPosition", "OpenUri", "Stop", "Play", "PlayPause"])
            words = (PLAYER, method, signature, *(value for _, value in chosen))
            if dice.random() < 0.5:
                name = dice.choice(["Rate", "LoopStatus", "Position", "Identity", ""])
                words = (PROPERTIES, "Set", "(ssv)", dice.choice([PLAYER, ROOT]), name,
                         variant(*dice.choice(values)))
            try:
                remote.call(*words)
            except GLib.Error:
                pass
        remote.do("OpenUri", "(s)", BOOK.absolute().as_uri())
        player.until("the next movie's picture", streamed(BOOK))
