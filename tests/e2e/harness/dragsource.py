"""A window of another program whose content is a file, to be dragged: dragsource.py FILE X Y. Runs by the system's Python,
which has the toolkit's bindings, within the session."""
import pathlib
import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402  pylint: disable=wrong-import-position

file, x, y = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
window = Gtk.Window(title="Drag Source", default_width=150, default_height=150)
box = Gtk.EventBox()
box.add(Gtk.Label(label="a file"))
box.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, [], Gdk.DragAction.COPY)
box.drag_source_add_uri_targets()
box.connect("drag-data-get", lambda _box, _context, data, _info, _time: data.set_uris([pathlib.Path(file).as_uri()]))
window.add(box)
window.connect("destroy", Gtk.main_quit)
window.show_all()
window.move(x, y)
Gtk.main()
