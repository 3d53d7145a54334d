"""Pointer, keyboard, windows and pictures, by xdotool and the X programs: what a person does and sees."""
import re
import subprocess
from dataclasses import dataclass


@dataclass(frozen=True)
class Window:
    """A visible window; geometry in pixels, of the window itself without a frame."""
    id: int
    x: int
    y: int
    width: int
    height: int
    title: str
    wmClass: str
    overrideRedirect: bool

    @property
    def right(self):
        return self.x + self.width

    @property
    def bottom(self):
        return self.y + self.height

    @property
    def centre(self):
        return self.x + self.width // 2, self.y + self.height // 2

    def __str__(self):
        kind = " (unmanaged)" if self.overrideRedirect else ""
        return f'"{self.title}" [{self.wmClass}] {self.width}x{self.height}+{self.x}+{self.y}{kind}'


class Desktop:
    def __init__(self, session):
        self.session = session

    def _xdotool(self, *arguments, check=True):
        return self.session.output("xdotool", *arguments, check=check)

    def move(self, x, y):
        self._xdotool("mousemove", x, y)

    def click(self, x, y, button=1):
        # Two steps, as by a hand: some programs want to see the pointer arrive before a button goes down.
        self._xdotool("mousemove", x, y, "sleep", "0.05", "click", button)

    def drag(self, start, end):
        """From one point to another with the first button held, in steps as by a hand."""
        steps = 20
        self._xdotool("mousemove", *start, "sleep", "0.1", "mousedown", 1)
        for step in range(1, steps + 1):
            x, y = (round(a + (b - a) * step / steps) for a, b in zip(start, end))
            self._xdotool("mousemove", x, y, "sleep", "0.03")
        self._xdotool("sleep", "0.5", "mousemove", end[0] + 2, end[1] + 2, "sleep", "0.3", "mouseup", 1)

    def scroll(self, steps):
        """Turns the wheel under the pointer: down, or up for a negative number."""
        self._xdotool("click", "--repeat", abs(steps), "--delay", 15, 5 if steps > 0 else 4)

    def key(self, *keys, clear=True):
        """Keys by their X names, with modifiers as in "ctrl+r"; to whatever has the focus. With clear=False the keys
        that are held count as held."""
        self._xdotool("key", *(["--clearmodifiers"] if clear else []), "--delay", "30", *keys)

    def hold(self, *keys):
        for key in keys:
            self._xdotool("keydown", key)

    def release(self, *keys):
        for key in keys:
            self._xdotool("keyup", key)

    def type(self, text):
        self._xdotool("type", "--delay", "30", text)

    def windows(self, wmClass="velkin", title=None):
        """The visible windows whose class contains wmClass, or, when given, whose title contains that instead.
        Leftovers of a few pixels are passed over."""
        what = ("--name", title) if title else ("--class", wmClass)
        # A window that goes while they are searched breaks the search off, as though there were none.
        ids = next(filter(None, (self._xdotool("search", "--onlyvisible", *what, check=False).split()
                                 for _ in range(2))), [])
        found = [self._window(int(id)) for id in ids]
        return [window for window in found if window and min(window.width, window.height) > 20]

    def _window(self, id):
        info = self.session.output("xwininfo", "-id", id, check=False)
        properties = self.session.output("xprop", "-id", id, "-notype", "WM_CLASS", "_NET_WM_NAME", check=False)

        def number(label):
            found = re.search(re.escape(label) + r":\s*(-?\d+)", info)
            return int(found.group(1)) if found else None

        if "Map State: IsViewable" not in info:
            return None  # gone meanwhile
        title = re.search(r'_NET_WM_NAME = "(.*)"', properties)
        wmClass = re.search(r"WM_CLASS = (.*)", properties)
        return Window(id, number("Absolute upper-left X"), number("Absolute upper-left Y"), number("Width"),
                      number("Height"), title.group(1) if title else "", wmClass.group(1) if wmClass else "",
                      "Override Redirect State: yes" in info)

    def workArea(self):
        """(left, top, right, bottom) of the screen without the panel's strut; pixels."""
        area = [0, 0, self.session.width, self.session.height]
        for id in self._xdotool("search", "--onlyvisible", "--class", "xfce4-panel", check=False).split():
            told = self.session.output("xprop", "-id", id, "-notype", "_NET_WM_STRUT_PARTIAL", check=False)
            if "=" in told:
                left, right, top, bottom = (int(n) for n in told.split("=")[1].split(",")[:4])
                area = [max(area[0], left), max(area[1], top), min(area[2], self.session.width - right),
                        min(area[3], self.session.height - bottom)]
        return tuple(area)

    def activeWindow(self):
        told = self._xdotool("getactivewindow", check=False).strip()
        return int(told) if told else None

    def picture(self, path):
        """A picture of the whole screen."""
        path.parent.mkdir(parents=True, exist_ok=True)
        self.session.output("import", "-window", "root", path)

    def coloursIn(self, window):
        """How many colours the picture of a window holds: an empty one has few."""
        cut = f"{window.width}x{window.height}+{window.x}+{window.y}"
        return int(self.session.output("import", "-window", "root", "-crop", cut, "-format", "%k", "info:"))

    def colourAt(self, x, y):
        """The colour of one pixel of the screen as (red, green, blue), 0 to 255."""
        told = self.session.output("import", "-window", "root", "-crop", f"1x1+{x}+{y}", "-depth", "8", "-format",
                                   "%[fx:round(255*u.r)] %[fx:round(255*u.g)] %[fx:round(255*u.b)]", "info:")
        return tuple(int(part) for part in told.split())

    def copy(self, content, kind="UTF8_STRING"):
        """Puts bytes on the clipboard, as another program does; returns the process that holds them."""
        process = subprocess.Popen(["xclip", "-quiet", "-selection", "clipboard", "-t", kind, "-i"],
                                   env=self.session.environment, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        process.stdin.write(content)
        process.stdin.close()
        return process

    def openOtherWindow(self, x, y):
        """A window of another program, to click on; returns its process."""
        return subprocess.Popen(["xev", "-geometry", f"150x150+{x}+{y}"], env=self.session.environment,
                                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
