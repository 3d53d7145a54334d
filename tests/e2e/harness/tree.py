"""What a screen reader finds: the tree of the program's controls, by AT-SPI. Runs by the system's Python, which has the
bindings, within the session, and prints JSON.

tree.py               the whole tree
tree.py walk COUNT    presses Tab that many times, or until the keyboard is where it began, and tells where it was each
                      time
"""
import json
import subprocess
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402  pylint: disable=wrong-import-position

NAMES = ("CHECKED", "CHECKABLE", "ENABLED", "SENSITIVE", "FOCUSED", "FOCUSABLE", "SHOWING", "EXPANDED", "EDITABLE",
         "PRESSED")


#: Later libraries call some roles otherwise.
ROLES = {"button": "push button"}


def own(accessible):
    state = accessible.get_state_set()
    role = accessible.get_role_name()
    return {"role": ROLES.get(role, role), "name": accessible.get_name() or "",
            "states": [name.lower() for name in NAMES if state.contains(getattr(Atspi.StateType, name))]}


def node(accessible, depth=0):
    told = dict(own(accessible), children=[])
    if depth < 40:
        for index in range(min(accessible.get_child_count(), 400)):
            child = accessible.get_child_at_index(index)
            if child is not None:
                told["children"].append(node(child, depth + 1))
    return told


def applications():
    desktop = Atspi.get_desktop(0)
    for number in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(number)
        if application is not None and "velkin" in (application.get_name() or "").lower():
            yield application


def focused(accessible, depth=0):
    """The control that has the keyboard; None if there is none."""
    if accessible.get_state_set().contains(Atspi.StateType.FOCUSED):
        # Of a field, the part within has it too.
        return accessible
    if depth < 40:
        for index in range(min(accessible.get_child_count(), 400)):
            child = accessible.get_child_at_index(index)
            found = focused(child, depth + 1) if child is not None else None
            if found is not None:
                return found
    return None


class Walk:
    """Hears of the keyboard's moves rather than looking for it in the whole tree each time."""

    def __init__(self):
        self.at = None
        self.listener = Atspi.EventListener.new(self._told)
        self.listener.register("object:state-changed:focused")

    def _told(self, event, *_):
        if event.detail1:
            self.at = event.source

    def settle(self, seconds):
        loop = GLib.MainLoop()
        GLib.timeout_add(int(seconds * 1000), loop.quit)
        loop.run()

    def run(self, count):
        start = None
        for application in applications():
            start = start or focused(application)
        places = [start] if start is not None else []
        for _ in range(count):
            self.at = None
            subprocess.run(["xdotool", "key", "Tab"], check=True)
            for _ in range(10):
                self.settle(0.05)
                if self.at is not None:
                    break
            if self.at is None:
                continue
            if places and self.at == places[0]:
                break
            places.append(self.at)
        return [own(place) for place in places]


Atspi.init()
if sys.argv[1:2] == ["walk"]:
    json.dump(Walk().run(int(sys.argv[2])), sys.stdout)
else:
    json.dump([node(application) for application in applications()], sys.stdout)
