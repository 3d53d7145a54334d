#!/usr/bin/env python3
"""test_desktop.py NAME TABLE [TEST...]: the installed program on a real desktop, with real pointer and keys. Each test is a
row of the table; what it found is written to TABLE, as JSON. Run by run-desktops, in a system that has the desktop."""
import json
import pathlib
import subprocess
import sys
import unittest

import numpy

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "e2e"))

from harness import VelkinTestCase, waitFor  # noqa: E402
from harness.waiting import settle  # noqa: E402
from harness.wayland import OnWayland  # noqa: E402
from realsession import NestedSession, RealSession, RealWaylandSession  # noqa: E402

POP_UP = "ctrl+shift+t"
SEARCH = "ctrl+shift+r"
# The desktops whose trays keep the single click for the menu.
DOUBLE_CLICK = {"gnome", "gnome-wayland"}
# The desktops whose panels give up a menu now and then that they have just opened: its window is never mapped, though all
# that they ask of the program is the same as ever.
FORGETFUL = {"cinnamon"}
# Of the page that the tests' server gives.
HEAD = (0x0f, 0x7b, 0x5f)
# How far from the menu's end the items are: "Quit" is the first upwards. GNOME's menus are entered from above.
UP_TO = {"Quit": 1, "Toggle Menu": 5, "Show Toolbar": 6, "Make Menu Sticky": 7}
DOWN_TO = {"Make Menu Sticky": 5, "Show Toolbar": 6, "Toggle Menu": 7, "Quit": 11}


class Desktop(VelkinTestCase):
    name = "lxqt"
    results = {}

    @classmethod
    def makeSession(cls):
        return RealSession(cls.name)

    def setUp(self):
        super().setUp()
        self.told = []
        self.results[self.row()] = {"state": "failed", "told": self.told}

    def _end(self):
        self.desktop.picture(self.artefact("png"))
        for velkin in self.started:
            velkin.end()
        for process in self.owners():
            subprocess.run(["kill", str(process)], check=False)
        waitFor("the icon to go", lambda: not self.session.trayItems(), 20, self.session.trayItems)
        waitFor("the windows of the program to go", lambda: not self.desktop.windows(), 10, self.describeWindows)

    def owners(self):
        told = self.session.call("org.freedesktop.DBus", "/", "org.freedesktop.DBus.GetConnectionUnixProcessID",
                                 "com.tarnvale.Velkin", check=False)
        return [int(told.split("uint32 ")[1].split(",")[0])] if "uint32 " in told else []

    def artefact(self, ending):
        path = super().artefact(ending)
        return path.with_name(f"{self.name}.{self._testMethodName}.{ending}")

    def row(self):
        return self._testMethodName

    def tell(self, text):
        self.told.append(text)

    def keep(self, name, window=None):
        """A picture that goes into the documentation; a compositor may paint a window later than it is there."""
        if window:
            head = window.x + window.width // 2, window.y + 60
            waitFor("the page to be painted", lambda: self.desktop.colourAt(*head) == HEAD, 20,
                    lambda: self.desktop.colourAt(*head))
        self.desktop.picture(self.artefact("png").with_name(f"{self.name}-{name}.png"))

    def workArea(self):
        """(left, top, right, bottom) of what the panels leave."""
        told = self.session.output("xprop", "-root", "-notype", "_NET_WORKAREA")
        x, y, width, height = (int(n) for n in told.split("=")[1].split(",")[:4])
        return x, y, x + width, y + height

    def atTheIcon(self, window, icon):
        """The popover hangs at the panel's edge, with the icon above or below it."""
        left, top, right, bottom = self.workArea()
        self.assertTrue(window.x <= icon.x and icon.x + icon.size <= window.right,
                        f"{window} is not at the icon, {icon.x} to {icon.x + icon.size}")
        gap = window.y - top if icon.y < self.session.height // 2 else bottom - window.bottom
        self.assertLessEqual(abs(gap), 12, f"{window} in {self.workArea()}")

    def atAPanel(self, window):
        _, top, _, bottom = self.workArea()
        self.assertTrue(abs(window.y - top) <= 12 or abs(bottom - window.bottom) <= 12, f"{window} is not at a panel")

    def openWindow(self):
        other = self.desktop.openOtherWindow(200, 300)
        self.addCleanup(other.wait)
        self.addCleanup(other.kill)
        window = waitFor("another program", lambda: self.desktop.windows(title="Event Tester"), 20)[0]
        self.desktop.click(*window.centre)
        waitFor("it to have the keyboard", lambda: self.desktop.activeWindow() == window.id, 10)
        return window

    def clickIcon(self, velkin):
        """Once, or as often as this desktop's tray wants it."""
        if self.name not in DOUBLE_CLICK:
            velkin.clickIcon(self.desktop)
            return
        self.desktop.move(*self.session.iconPosition())
        settle(0.1)
        self.session.output("xdotool", "click", "--repeat", 2, "--delay", 100, 1)

    def openPopover(self, velkin):
        self.assertIsNone(self.popover(), "the popover is open already")
        self.clickIcon(velkin)
        return self.waitForPopover()

    def startOnChat(self, **settings):
        # The installed program's own address isn't ours.
        return super().startOnChat(chatUrl=self.chat.url, **settings)

    # The rows, in the table's order.

    def testIconIsDrawn(self):
        self.startOnChat()
        last = []

        def standsOut():
            # The colour for a panel is chosen when the panel has been painted.
            icon = self.session.findIcon()
            last[:] = [icon, icon.contrast()] if icon else []
            return last and last[1] >= 3

        try:
            waitFor("the icon to stand out", standsOut, 15, lambda: last)
        finally:
            if last:
                self.tell(f"{last[0].size} px, contrast {last[1]:.1f} to 1")

    def testClickOpensAtTheIcon(self):
        velkin = self.startOnChat()
        icon = self.session.findIcon()
        window = self.openPopover(velkin)
        self.chat.page()
        settle(1)
        self.keep("popover", window)
        if self.name in DOUBLE_CLICK:
            self.tell("a double click")
        self.tell(f"{window.width} x {window.height} at {window.x}, {window.y}")
        self.atTheIcon(window, icon)

    def testKeyboardGoesToThePage(self):
        velkin = self.startOnChat()
        self.openPopover(velkin)
        page = self.chat.page()
        page.ask("document.getElementById('text').focus()")
        waitFor("the page to have the keyboard", lambda: page.ask("document.hasFocus()"), 10)
        self.desktop.type("typed")
        waitFor("the text", lambda: page.ask("document.getElementById('text').value") == "typed", 10,
                lambda: page.ask("document.getElementById('text').value"))

    def testClickOutsideCloses(self):
        velkin = self.startOnChat()
        other = self.openWindow()
        for what, place in self.placesOutside(other):
            window = self.openPopover(velkin)
            waitFor("the popover to have the keyboard", lambda: self.desktop.activeWindow() == window.id, 10,
                    lambda: f"{self.desktop.activeWindow()} has it, {self.describeWindows()}")
            self.desktop.click(*place)
            waitFor(f"a click on {what} to close the popover", lambda: not self.popover(), 10, self.describeWindows)
            settle(0.5)

    def placesOutside(self, other):
        yield "another window", other.centre
        yield "the desktop", (300, self.session.height // 2 + 150)

    def testClickOnTheIconToggles(self):
        velkin = self.startOnChat()
        for _ in range(3):
            self.openPopover(velkin)
            self.chat.page()
            self.clickIcon(velkin)
            self.waitForClosed()
            settle(0.5)

    def testRightClickShowsTheMenu(self):
        velkin = self.startOnChat()
        self.openMenu(velkin)
        self.keep("menu")
        self.closeMenu()
        self.assertIsNone(self.popover())
        self.assertTrue(velkin.running())

    def testCheckMarksGoOnAndOff(self):
        velkin = self.startOnChat()
        # On MATE the first menu differs from those that follow in more than the marks.
        self.openMenu(velkin)
        self.closeMenu()
        for title, default in (("Make Menu Sticky", False), ("Show Toolbar", True)):
            pictures = []
            for wanted in (not default, default, not default):
                pictures.append(self.openMenu(velkin))
                self.choose(title)
                waitFor(f"{title} to be {wanted}", lambda: self.checked(velkin, title) is wanted, 10,
                        lambda: self.checked(velkin, title))
            marks = [int((abs(pictures[0] - other).max(axis=2) > 40).sum()) for other in pictures[1:]]
            self.tell(f"{title}: {marks[0]} pixels")
            self.assertGreater(marks[0], 8, f"{title} looks the same on and off")
            self.assertLess(marks[1], marks[0] / 2, f"{title} doesn't come back to what it was")

    def checked(self, velkin, title):
        name = velkin.icons()[0].split("/")[0]
        told = self.session.call(name, "/MenuBar", "com.canonical.dbusmenu.GetProperty", self.menuItems(velkin)[title],
                                 "toggle-state", check=False)
        return "1" in told

    def testToggleMenuClosesTheMenu(self):
        velkin = self.startOnChat()
        self.openMenu(velkin)
        self.choose("Toggle Menu")
        settle(1.5)
        self.assertEqual(self.desktop.windows(), [], "it opened a second one")
        self.openPopover(velkin)
        self.chat.page()

    def testGlobalShortcuts(self):
        self.startOnChat()
        self.openWindow()
        self.desktop.key(POP_UP)
        self.waitForPopover()
        self.desktop.key(POP_UP)
        self.waitForClosed()
        self.desktop.key(SEARCH)
        bar = waitFor("the search bar", self.desktop.windows, 15)[0]
        self.assertNotEqual(bar.title, "Velkin")
        settle(0.5)
        self.desktop.key(SEARCH)
        waitFor("the search bar to go", lambda: not self.desktop.windows(), 15, self.describeWindows)

    def testSecondStart(self):
        self.startOnChat()
        self.desktop.move(5, self.session.height // 2)
        self.assertEqual(self.start(wait=False).waitForEnd(), 0)
        window = self.waitForPopover()
        self.tell(f"at {window.x}, {window.y}")
        self.atAPanel(window)
        self.assertEqual(self.start(wait=False).waitForEnd(), 0)
        self.waitForClosed()

    def testPanelRestart(self):
        velkin = self.startOnChat()

        def panelIsGone():
            settle(0.5)
            self.assertTrue(velkin.running(), "the program ended with the panel")

        self.session.restartPanel(panelIsGone)
        velkin.waitForIcon(60)
        self.openPopover(velkin)
        self.chat.page()

    def testStartByTheBus(self):
        self.home.settled(chatUrl=self.chat.url)
        self.useHomeForTheBus()
        self.session.output("gapplication", "launch", "com.tarnvale.Velkin")
        waitFor("the icon", self.session.trayItems, 30)
        waitFor("the panel to draw the icon", self.session.iconIsDrawn, 30)
        settle(1)
        self.assertEqual(self.desktop.windows(), [], "a start opens no window")
        icon = self.session.findIcon()
        self.session.output("gapplication", "action", "com.tarnvale.Velkin", "toggle-popover")
        self.waitForPopover()
        self.session.output("gapplication", "action", "com.tarnvale.Velkin", "quit", check=False)
        waitFor("the icon to go", lambda: not self.session.trayItems(), 15)
        # The action starts the program that doesn't run, and then does its one thing, at the icon.
        self.session.output("gapplication", "action", "com.tarnvale.Velkin", "toggle-popover")
        window = self.waitForPopover()
        self.tell(f"at {window.x}, {window.y}")
        self.atTheIcon(window, icon)

    def useHomeForTheBus(self):
        names = {"HOME": self.home.folder, "XDG_CONFIG_HOME": self.home.config, "XDG_DATA_HOME": self.home.data,
                 "XDG_CACHE_HOME": self.home.cache, "VELKIN_SESSION": self.session.folder}
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY", "WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS"):
            if name in self.session.environment:
                names[name] = self.session.environment[name]
        told = ", ".join(f"'{name}': '{value}'" for name, value in names.items())
        self.session.call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                          "org.freedesktop.DBus.UpdateActivationEnvironment", "{" + told + "}")

    def testQuit(self):
        velkin = self.startOnChat()
        self.openMenu(velkin)
        self.choose("Quit")
        self.assertEqual(velkin.waitForEnd(), 0)
        waitFor("the icon to go", lambda: not self.session.trayItems(), 10)

    def openMenu(self, velkin):
        """By a right click; what has changed on the screen is the menu. Returns the picture of it."""
        self.desktop.move(*self.session.iconPosition())
        # What the panel shows under the pointer, a tooltip above all.
        settle(2)
        self.before = self.session.pixels().astype(int)
        place = self.session.iconPosition()
        self.desktop.click(*place, 3)
        try:
            waitFor("the menu", lambda: self.changed() > 15000, 15, self.changed)
        except AssertionError:
            if self.name not in FORGETFUL:
                raise
            # It holds the menu for open, so the next click closes it.
            self.tell("the panel gave up its menu at the first right click")
            self.desktop.click(*place, 3)
            settle(1)
            self.desktop.click(*place, 3)
            waitFor("the menu", lambda: self.changed() > 15000, 15, self.changed)
        left, top, right, bottom = self.workArea()
        pictures = [None, None]

        def isStill():
            settle(0.5)
            # Without the panels, whose clocks go on.
            pictures[:] = pictures[1], self.session.pixels().astype(int)[top:bottom, left:right]
            return pictures[0] is not None and (pictures[0] == pictures[1]).all()

        waitFor("the menu to be painted", isStill, 15)
        return pictures[1]

    def changed(self):
        return int((abs(self.session.pixels().astype(int) - self.before).max(axis=2) > 12).sum())

    def waitForNoMenu(self):
        waitFor("the menu to go", lambda: self.changed() < 8000, 10, self.changed)

    def closeMenu(self):
        self.desktop.key("Escape")
        self.waitForNoMenu()

    def choose(self, title):
        key, steps = ("Down", DOWN_TO[title]) if self.name.startswith("gnome") else ("Up", UP_TO[title])
        for _ in range(steps):
            self.desktop.key(key)
            settle(0.1)
        self.desktop.key("Return")
        self.waitForNoMenu()


class Nested(Desktop):
    """A session of Wayland with an X server in it, which the program uses."""

    @classmethod
    def makeSession(cls):
        # The size that Plasma's compositor gives its window.
        return NestedSession(cls.name, "1024x768")


class NestedGnome(Nested):
    """Its panel and its compositor are one process."""

    def placesOutside(self, other):
        yield "another window", other.centre
        self.tell("not on the bare desktop, of which no program hears there")

    def testGlobalShortcuts(self):
        self.skipTest("this GNOME has none for programs; commands can be bound, as the README says")

    def testPanelRestart(self):
        self.skipTest("the session ends with its panel")


class Sway(OnWayland, Desktop):
    """A compositor that tiles its windows, with Waybar."""

    @classmethod
    def makeSession(cls):
        return RealWaylandSession(cls.name)

    def workArea(self):
        return self.room()

    def openWindow(self):
        """It takes all the room that the bar leaves."""
        self.terminal = self.desktop.openTerminal()
        self.addCleanup(self.terminal.wait)
        self.addCleanup(self.terminal.kill)
        window = waitFor("another program", lambda: self.desktop.windows(title="A terminal"), 20)[0]
        self.desktop.click(*window.centre)
        waitFor("it to have the keyboard", lambda: self.desktop.activeWindow() == window.id, 10)
        return window

    def testClickOpensAtTheIcon(self):
        super().testClickOpensAtTheIcon()
        # Another program's window is all around, and the keyboard follows the pointer.
        self.desktop.key("Escape")
        self.waitForClosed()
        self.openWindow()
        window = self.openPopover(self.started[0])
        self.desktop.walk(self.session.iconPosition(), window.centre)
        settle()
        self.assertIsNotNone(self.popover(), "the pointer's way to the popover closes it")

    def placesOutside(self, other):
        place = other.x + 100, other.bottom - 100
        yield "another window", place
        self.terminal.kill()
        waitFor("the other window to go", lambda: not self.desktop.windows(title="A terminal"), 10)
        yield "the desktop", place

    def testGlobalShortcuts(self):
        self.tell("bound in sway's settings, as the README says")
        super().testGlobalShortcuts()

    # Waybar's menus hear no keys.

    def openMenu(self, velkin):
        self.menu = super().openMenu(velkin)
        return self.menu

    def closeMenu(self):
        self.desktop.click(20, self.session.height // 2)
        self.waitForNoMenu()

    def choose(self, title):
        left, top, right, bottom = self.workArea()
        isNew = abs(self.menu - self.before[top:bottom, left:right]).max(axis=2) > 12
        columns, rows = numpy.flatnonzero(isNew.sum(axis=0) > 50), numpy.flatnonzero(isNew.sum(axis=1) > 50)
        # Without the menu's border.
        inner = self.menu[:rows[-1] - 3, columns[0] + 4:columns[-1] - 3]
        hasText = (abs(inner - numpy.median(inner, axis=(0, 1))).max(axis=2) > 60).any(axis=1)
        edges = numpy.flatnonzero(numpy.diff(numpy.concatenate([[False], hasText, [False]]).astype(int)))
        items = [(start + end) // 2 for start, end in edges.reshape(-1, 2) if end - start > 4]
        self.desktop.click(left + (columns[0] + columns[-1]) // 2, top + items[-UP_TO[title]])
        self.waitForNoMenu()


class Result(unittest.TextTestResult):
    def addSuccess(self, test):
        super().addSuccess(test)
        test.results[test.row()]["state"] = "passed"

    def addSkip(self, test, reason):
        super().addSkip(test, reason)
        test.results[test.row()] = {"state": "skipped", "told": [reason]}


def main(name, table, *only):
    Desktop.name = name
    kind = {"gnome-wayland": NestedGnome, "plasma-wayland": Nested, "sway": Sway}.get(name, Desktop)
    table = pathlib.Path(table)
    if only and table.exists():
        Desktop.results.update(json.loads(table.read_text()))
    loader = unittest.TestLoader()
    order = list(vars(Desktop))
    loader.sortTestMethodsUsing = lambda a, b: order.index(a) - order.index(b)
    suite = unittest.TestSuite(map(kind, only)) if only else loader.loadTestsFromTestCase(kind)
    done = unittest.TextTestRunner(verbosity=2, resultclass=Result).run(suite)
    if done.testsRun:
        table.write_text(json.dumps(Desktop.results, indent=1) + "\n")
    return 0 if done.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
