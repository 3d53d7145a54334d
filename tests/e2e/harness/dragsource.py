"""A window of another program whose content is a file, to be dragged: dragsource.py FILE X Y [KIND]. With a KIND (text/html) it
is offered beside, as web pages do. Runs by the system's Python,
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
if len(sys.argv) > 4:
    targets = box.drag_source_get_target_list()
    targets.add(Gdk.Atom.intern(sys.argv[4], False), 0, 1)
    box.drag_source_set_target_list(targets)


def give(_box, _context, data, info, _time):
    if info == 1:
        data.set(data.get_target(), 8, b"<p>text</p>")
    else:
        data.set_uris([pathlib.Path(file).as_uri()])


box.connect("drag-data-get", give)
window.add(box)
window.connect("destroy", Gtk.main_quit)
window.show_all()
window.move(x, y)
Gtk.main()
