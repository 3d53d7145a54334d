"""What shows a desktop's notices, and its file manager, as far as they are asked: prints a line of JSON for each call on
standard output. A line "click ID" on standard input is a click on that notice. Runs by the system's Python, which has the
bindings, within the session."""
import json
import sys

from gi.repository import Gio, GLib

NOTICES = """<node><interface name="org.freedesktop.Notifications">
  <method name="Notify"><arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="as" direction="in"/>
    <arg type="a{sv}" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="out"/></method>
  <signal name="ActionInvoked"><arg type="u"/><arg type="s"/></signal>
</interface></node>"""
FILES = """<node><interface name="org.freedesktop.FileManager1">
  <method name="ShowItems"><arg type="as" direction="in"/><arg type="s" direction="in"/></method>
</interface></node>"""

bus = Gio.bus_get_sync(Gio.BusType.SESSION)
count = 0


def tell(**what):
    print(json.dumps(what), flush=True)


def notify(_bus, _sender, _path, _interface, _method, parameters, invocation):
    global count
    count += 1
    _, _, _, title, text, actions, _, _ = parameters.unpack()
    invocation.return_value(GLib.Variant("(u)", (count,)))
    tell(kind="notice", id=count, title=title, text=text, actions=actions)


def showItems(_bus, _sender, _path, _interface, _method, parameters, invocation):
    invocation.return_value(None)
    tell(kind="shown", files=parameters.unpack()[0])


def click(_source, _condition):
    line = sys.stdin.readline()
    if not line:
        loop.quit()
        return False
    signal = GLib.Variant("(us)", (int(line.split()[1]), "default"))
    bus.emit_signal(None, "/org/freedesktop/Notifications", "org.freedesktop.Notifications", "ActionInvoked", signal)
    return True


for xml, path, answer in ((NOTICES, "/org/freedesktop/Notifications", notify),
                          (FILES, "/org/freedesktop/FileManager1", showItems)):
    interface = Gio.DBusNodeInfo.new_for_xml(xml).interfaces[0]
    bus.register_object(path, interface, answer, None, None)
    reply = bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                          GLib.Variant("(su)", (interface.name, 4)), None, 0, -1, None)
    assert reply.unpack()[0] == 1, f"{interface.name} is taken"
GLib.io_add_watch(sys.stdin.fileno(), GLib.IO_IN | GLib.IO_HUP, click)
loop = GLib.MainLoop()
tell(kind="ready")
loop.run()
