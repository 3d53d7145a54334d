"""A Wayland session, and its pointer, keyboard, windows and pictures: what session.Session and desktop.Desktop are for
X11, by sway's own interface."""
import json
import time

from .case import VelkinTestCase
from .desktop import Desktop, Window
from .paths import SESSION
from .session import Session
from .virtualinput import VirtualInput

# Between two events of a hand.
STEP = 0.03


class WaylandPictures:
    """What a session of Wayland adds to session.Session for the eyes of its WaylandDesktop."""

    def cut(self, x, y, width, height, *told):
        """What is told of a part of the screen, in the words of ImageMagick."""
        file = self.folder / "cut.png"
        self.output("grim", "-g", f"{x},{y} {width}x{height}", file)
        return self.output("convert", file, *told, "info:")


class WaylandSession(WaylandPictures, Session):
    """With an X server in it, or without."""

    def __init__(self, panel="top", screen="1280x900", hasX11=False):
        super().__init__(panel, screen, "xwayland" if hasX11 else "wayland")

    def iconPosition(self, number=0):
        assert number == 0, "only the first icon's place is known"
        x, y = self.output(SESSION / "sway-desktop", "icon").split()
        return int(x), int(y)

    def iconIsDrawn(self, number=0):
        x, y = self.iconPosition(number)
        return int(self.cut(x - 7, y - 6, 14, 13, "-format", "%k")) > 1


class WaylandDesktop(Desktop):
    def __init__(self, session):
        super().__init__(session)
        self.input = VirtualInput(session.folder / "run" / session.environment["WAYLAND_DISPLAY"], session.width,
                                  session.height)

    def close(self):
        self.input.close()

    def tree(self):
        return json.loads(self.session.output("swaymsg", "-t", "get_tree"))

    def move(self, x, y):
        self.input.move(x, y)

    def click(self, x, y, button=1):
        self.input.move(x, y)
        time.sleep(STEP)
        self.input.button(button, True)
        time.sleep(STEP)
        self.input.button(button, False)

    def walk(self, start, end):
        """With the pointer, in steps as by a hand."""
        steps = 20
        for step in range(steps + 1):
            self.move(*(round(a + (b - a) * step / steps) for a, b in zip(start, end)))
            time.sleep(STEP)

    def hold(self, *keys):
        for key in keys:
            self.input.key(key, True)
            time.sleep(STEP)

    def release(self, *keys):
        for key in keys:
            self.input.key(key, False)
            time.sleep(STEP)

    def key(self, *keys, clear=True):
        """Keys with modifiers, as in "ctrl+shift+t"."""
        for combination in keys:
            parts = combination.split("+")
            self.hold(*parts)
            self.release(*reversed(parts))

    def type(self, text):
        for character in text:
            keys = ["shift", character.lower()] if character.isupper() else [character]
            self.hold(*keys)
            self.release(*reversed(keys))

    def _nodes(self, node=None):
        node = node or self.tree()
        yield node
        for child in node["nodes"] + node["floating_nodes"]:
            yield from self._nodes(child)

    def windows(self, wmClass="velkin", title=None):
        found = []
        for node in self._nodes():
            kind = node.get("app_id") or (node.get("window_properties") or {}).get("class")
            if kind is None or not node["visible"]:
                continue
            # The window stands in the container below the container's own title bar.
            frame, inner = node["rect"], node["window_rect"]
            window = Window(node["id"], frame["x"] + inner["x"], frame["y"] + inner["y"], inner["width"],
                            inner["height"], node["name"] or "", kind, False)
            wanted = title in window.title if title else wmClass in kind.lower()
            if wanted:
                found.append(window)
        return found

    def activeWindow(self):
        return next((node["id"] for node in self._nodes() if node["focused"] and node.get("pid")), None)

    def picture(self, path):
        path.parent.mkdir(parents=True, exist_ok=True)
        self.session.output("grim", path)

    def coloursIn(self, window):
        return int(self.session.cut(window.x, window.y, window.width, window.height, "-format", "%k"))

    def colourAt(self, x, y):
        told = self.session.cut(x, y, 1, 1, "-depth", "8", "-format",
                                "%[fx:round(255*u.r)] %[fx:round(255*u.g)] %[fx:round(255*u.b)]")
        return tuple(int(part) for part in told.split())

    def openTerminal(self):
        """A window of another program, which takes all the room that there is; returns its process."""
        return self.session.popen("foot", "--config=/dev/null", "--title=A terminal", "sleep", "infinity")


class OnWayland:
    """What a test case of a Wayland session has, whatever the session is."""

    @classmethod
    def makeDesktop(cls):
        desktop = WaylandDesktop(cls.session)
        cls.addClassCleanup(desktop.close)
        return desktop

    def room(self):
        """(left, top, right, bottom) of what the bar leaves."""
        workspaces = json.loads(self.session.output("swaymsg", "-t", "get_workspaces"))
        room = next(workspace["rect"] for workspace in workspaces if workspace["visible"])
        return room["x"], room["y"], room["x"] + room["width"], room["y"] + room["height"]


class WaylandTestCase(OnWayland, VelkinTestCase):
    """In a Wayland session, where the compositor places the windows."""

    hasX11 = False

    @classmethod
    def makeSession(cls):
        return WaylandSession(cls.panel, cls.screen, cls.hasX11)

    def _end(self):
        # A picture of this session holds the pointer, which isn't to be taken for an icon.
        self.desktop.move(20, self.session.height // 2)
        super()._end()
