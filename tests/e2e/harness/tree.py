"""What a screen reader finds: the tree of the program's controls, by AT-SPI. Runs by the system's Python, which has the
bindings, within the session: prints JSON."""
import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402  pylint: disable=wrong-import-position


def node(accessible, depth=0):
    states = accessible.get_state_set()
    names = ("CHECKED", "CHECKABLE", "ENABLED", "SENSITIVE", "FOCUSED", "SHOWING", "EXPANDED", "EDITABLE", "PRESSED")
    told = {"role": accessible.get_role_name(), "name": accessible.get_name() or "",
            "states": [name.lower() for name in names if states.contains(getattr(Atspi.StateType, name))],
            "children": []}
    if depth < 40:
        for index in range(min(accessible.get_child_count(), 400)):
            child = accessible.get_child_at_index(index)
            if child is not None:
                told["children"].append(node(child, depth + 1))
    return told


Atspi.init()
desktop = Atspi.get_desktop(0)
found = []
for number in range(desktop.get_child_count()):
    application = desktop.get_child_at_index(number)
    if application is not None and "velkin" in (application.get_name() or "").lower():
        found.append(node(application))
json.dump(found, sys.stdout)
