"""The base of the end-to-end tests."""
import atexit
import itertools
import re
import unittest

from .desktop import Desktop
from .paths import ARTEFACTS
from .services import Services
from .session import Session
from .velkin import Home, Velkin
from .waiting import settle, waitFor

_services = None


def sharedServices():
    """One set for the whole run: their addresses are fixed."""
    global _services
    if _services is None:
        _services = Services().start()
        atexit.register(_services.stop)
    return _services


class VelkinTestCase(unittest.TestCase):
    """Each class has a desktop of its own, each test a home of its own and servers that remember nothing. Each test
    leaves a picture of the screen at its end and what the program wrote to standard error."""

    panel = "top"
    screen = "1280x900"

    @classmethod
    def setUpClass(cls):
        cls.services = sharedServices()
        cls.session = cls.makeSession()
        cls.addClassCleanup(cls.session.stop)
        cls.desktop = cls.makeDesktop()
        cls._homes = itertools.count(1)

    @classmethod
    def makeSession(cls):
        return Session(cls.panel, cls.screen)

    @classmethod
    def makeDesktop(cls):
        return Desktop(cls.session)

    def setUp(self):
        self.services.clear()
        self.chat = self.services.chatgpt
        self.home = Home(self.session.folder / f"home-{next(self._homes)}")
        self.started = []
        self.errors = self.artefact("log")
        self.errors.unlink(missing_ok=True)
        self.addCleanup(self._end)
        # Away from the icon and from where a popover opens.
        self.desktop.move(20, self.session.height // 2)

    def _end(self):
        self.desktop.picture(self.artefact("png"))
        for velkin in self.started:
            velkin.end()
        waitFor("the windows of the program to go", lambda: not self.desktop.windows(), 10,
                describe=lambda: [str(w) for w in self.desktop.windows()])
        if self.session.panelPosition != "none":
            # The next test must not take this one's icon for its own.
            waitFor("the tray to drop the icon", lambda: not self.session.iconIsDrawn(), 10)

    def artefact(self, ending):
        return ARTEFACTS / f"{type(self).__name__}.{self._testMethodName}.{ending}"

    def start(self, wait=True, **options):
        """Starts the program on self.home and, unless told otherwise, waits for its icon."""
        velkin = Velkin(self.session, self.home, self.errors, **options)
        self.started.append(velkin)
        if wait:
            velkin.waitForIcon()
        return velkin

    def startOnChat(self, **settings):
        self.home.settled(**settings)
        return self.start()

    def popover(self):
        """The popover's window, or None when it is closed. Menus and notices of the program are not it."""
        found = [w for w in self.desktop.windows() if w.title == "Velkin" and not w.overrideRedirect]
        return max(found, key=lambda w: w.width * w.height) if found else None

    def describeWindows(self):
        return [str(window) for window in self.desktop.windows()] or "no window of the program"

    def waitForPopover(self):
        window = waitFor("the popover", self.popover, 20, describe=self.describeWindows)
        # The window's size and place are set in several steps around its mapping.
        previous = None
        while window and window != previous:
            settle(0.3)
            previous, window = window, self.popover()
            if window is None:
                # The window manager takes a window off the screen for a moment when it puts its frame around it.
                settle(0.3)
                window = self.popover()
        self.assertIsNotNone(window, "the popover went away by itself")
        return window

    def waitForClosed(self):
        waitFor("the popover to close", lambda: not self.popover(), 10, describe=self.describeWindows)
        # A click on the icon right after a click outside is one gesture: it means "close". A person is slower.
        settle(0.4)

    def openPopover(self, velkin):
        """By a left click on the icon."""
        self.assertIsNone(self.popover(), "the popover is open already")
        velkin.clickIcon(self.desktop)
        return self.waitForPopover()

    def clickInPage(self, page, window, id):
        """A real click on the element of the page that is on show in the window."""
        page.ask(f"document.getElementById('{id}').scrollIntoView({{block: 'nearest'}})")
        originX, originY, zoom = self.pageOrigin(page, window)
        box = page.ask(f"(r => [r.x + r.width / 2, r.y + r.height / 2])"
                       f"(document.getElementById('{id}').getBoundingClientRect())")
        self.desktop.click(round(originX + box[0] * zoom), round(originY + box[1] * zoom))

    def pageOrigin(self, page, window):
        """(x, y, zoom): where the page's own origin is on the screen. The page tells where it sees the pointer."""
        places = []
        # From elsewhere, so that the first one is a move too.
        self.desktop.move(window.centre[0] + 30, window.centre[1] + 30)
        settle(0.2)
        told = page.ask("pointer = null")
        for x, y in (window.centre, (window.centre[0] - 40, window.centre[1] - 60)):
            before = told
            self.desktop.move(x, y)

            def seen():
                now = page.ask("pointer")
                if not now or now == before:
                    return None
                # The engine may tell of one move in several steps.
                settle(0.2)
                return now if now == page.ask("pointer") else None

            told = waitFor(f"{page} to see the pointer", seen, 10, describe=lambda: f"the window is {window}")
            places.append((x, y, told["x"], told["y"]))
        (x1, y1, px1, py1), (x2, _, px2, _) = places
        zoom = (x1 - x2) / (px1 - px2)
        return x1 - px1 * zoom, y1 - py1 * zoom, zoom

    def menuItems(self, velkin):
        """{label: id} of the icon's menu, as the tray reads it."""
        name = velkin.icons()[0].split("/")[0]
        told = self.session.call(name, "/MenuBar", "com.canonical.dbusmenu.GetLayout", "0", "-1", "[]")
        # Each item is (id, {properties}, [children]).
        items = {}
        for match in re.finditer(r"\((?:int32 )?(\d+), (?:@a\{sv\} )?\{([^{}]*)\}", told):
            label = re.search(r"'label': <'([^']*)'>", match.group(2))
            if label:
                items[label.group(1)] = int(match.group(1))
        return items

    def clickMenuItem(self, velkin, label):
        """As the tray tells of a click on an item of the menu, without a pointer."""
        items = self.menuItems(velkin)
        self.assertIn(label, items)
        name = velkin.icons()[0].split("/")[0]
        # check=False: Quit may end the program before it answers.
        self.session.call(name, "/MenuBar", "com.canonical.dbusmenu.Event", items[label], "clicked", "<0>", "0",
                          check=False)

    def describe(self):
        """What a failed test has to tell beside its message."""
        lines = [f"picture of the screen: {self.artefact('png')}"]
        try:
            lines.append(f"windows: {self.describeWindows()}")
            lines.append(f"tray: {self.session.trayItems()}")
            for service in self.services.all:
                if service.requests:
                    lines.append(f"{service.name} saw: {service.seen()}")
            for velkin in self.started:
                state = "runs" if velkin.running() else f"ended with {velkin.process.returncode}"
                lines.append(f"process {velkin.process.pid} {state}")
            if self.errors.exists():
                lines.append(f"end of {self.errors}:\n" + self.errors.read_text(errors="replace")[-1500:])
        except Exception as error:  # pylint: disable=broad-except
            lines.append(f"(and no more could be told: {error})")
        return "\n".join(lines)
