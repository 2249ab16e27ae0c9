#!/usr/bin/env python3
"""Another program, in the screen's upper left corner, out of which files can be
dragged: drag_source.py URI... Tells on standard output how the drag goes."""
import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402


def tell(word):
    print(word, flush=True)


def begin(_, context):
    context.connect("action-changed",
                    lambda _, action: tell("wanted" if action else "unwanted"))
    tell("begun")


window = Gtk.Window(title="files", default_width=120, default_height=80)
window.move(0, 0)
window.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, [], Gdk.DragAction.COPY)
window.drag_source_add_uri_targets()
window.connect("drag-begin", begin)
window.connect("drag-data-get", lambda _, context, data, *__: data.set_uris(sys.argv[1:]))
window.connect("drag-failed", lambda *_: tell("failed"))
window.connect("drag-end", lambda *_: tell("ended"))
window.connect("map-event", lambda *_: tell("shown"))
window.show_all()
Gtk.main()
