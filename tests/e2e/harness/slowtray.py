"""A tray that takes its time: knows icons, and answers no question before it is told to. "yes" or "no" on standard input
says whether it shows icons, and has it answer from then on. Runs by the system's Python, which has the bindings, within the
session."""
import sys

from gi.repository import Gio, GLib

NAME = "org.kde.StatusNotifierWatcher"
INTERFACE = f"""<node><interface name="{NAME}">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
</interface></node>"""

bus = Gio.bus_get_sync(Gio.BusType.SESSION)
waiting = []
answer = None


def called(_bus, _sender, _path, _interface, _method, _parameters, invocation):
    print("asked", flush=True)
    if answer is None:
        waiting.append(invocation)
    else:
        invocation.return_value(None)


def read(_bus, _sender, _path, _interface, name):
    values = {"IsStatusNotifierHostRegistered": GLib.Variant("b", answer == "yes"),
              "RegisteredStatusNotifierItems": GLib.Variant("as", []), "ProtocolVersion": GLib.Variant("i", 0)}
    return values[name]


def told(_source, _condition):
    global answer
    line = sys.stdin.readline()
    if not line:
        loop.quit()
        return False
    answer = line.strip()
    while waiting:
        waiting.pop().return_value(None)
    return True


bus.register_object("/StatusNotifierWatcher", Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0], called, read, None)
bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
              GLib.Variant("(su)", (NAME, 4)), None, 0, -1, None)
GLib.io_add_watch(sys.stdin.fileno(), GLib.IO_IN | GLib.IO_HUP, told)
print("ready", flush=True)
loop = GLib.MainLoop()
loop.run()
