"""The icon in a real tray, and its menu."""
import pathlib
import signal
import subprocess

from harness import VelkinTestCase, waitFor
from harness.paths import HARNESS
from harness.session import Session
from harness.waiting import settle

# The one that has the desktop's bindings.
PYTHON = "/usr/bin/python3"


class Tray(VelkinTestCase):
    def testIconAppears(self):
        velkin = self.startOnChat()
        self.assertEqual(len(velkin.icons()), 1)
        x, y = self.session.iconPosition()
        # The panel is of one colour there as long as no icon is drawn.
        colours = waitFor(
            "the panel to draw the icon",
            lambda: len({self.desktop.colourAt(x + dx, y + dy) for dx in (-7, -4, 0, 4, 7) for dy in (-6, 0, 6)}) > 1,
            10)
        self.assertTrue(colours)

    def testIconGoesWithTheProgram(self):
        velkin = self.startOnChat()
        velkin.end(signal.SIGKILL)
        waitFor("the tray to drop the icon", lambda: not self.session.trayItems(), 10, self.session.trayItems)

    def testPanelRestartBringsTheIconBack(self):
        velkin = self.startOnChat()
        self.session.killPanel()
        settle()
        self.assertTrue(velkin.running(), "the program ended with the panel")
        self.session.startPanel()
        velkin.waitForIcon()
        self.openPopover(velkin)
        self.chat.page()
        self.assertEqual(len(self.chat.loads()), 1)

    def testMenuStartsWithTheVersionAndEndsWithQuit(self):
        velkin = self.startOnChat()
        items = list(self.menuItems(velkin))
        self.assertEqual(items[0], "1.0.0 (23)")
        self.assertEqual(items[-1], "Quit")

    def testRightClickShowsTheMenuAndQuitQuits(self):
        velkin = self.startOnChat()
        before = self.desktop.windows("xfce4-panel|wrapper-2.0")
        velkin.clickIcon(self.desktop, button=3)
        menu = waitFor(
            "the tray to show the menu",
            lambda: [w for w in self.desktop.windows("xfce4-panel|wrapper-2.0")
                     if w.overrideRedirect and w not in before],
            10, describe=lambda: [str(w) for w in self.desktop.windows(".*")])[0]
        self.desktop.picture(self.artefact("menu.png"))
        self.assertGreater(menu.height, 30)
        # The last item is the first one upwards.
        settle(0.3)
        self.desktop.key("Up", "Return")
        self.assertEqual(velkin.waitForEnd(), 0)
        self.assertEqual(self.session.trayItems(), [])

    def testQuitFromTheMenuWhileThePopoverIsOpen(self):
        velkin = self.startOnChat()
        self.openPopover(velkin)
        self.clickMenuItem(velkin, "Quit")
        self.assertEqual(velkin.waitForEnd(), 0)

    def testTheDesktopEntrysActionsWork(self):
        velkin = self.startOnChat()
        for action, wanted in (("open", True), ("open", False), ("toggle-popover", True),
                               ("toggle-popover", False)):
            self.session.output("gapplication", "action", "com.tarnvale.Velkin", action)
            waitFor("the popover to follow", lambda: bool(self.popover()) is wanted, 10, self.describeWindows)
        self.session.output("gapplication", "action", "com.tarnvale.Velkin", "quit", check=False)
        self.assertEqual(velkin.waitForEnd(), 0)

    def testASecondStartBeforeAnyClickOpensAtThePanelsCorner(self):
        self.startOnChat()
        # As far from there as the screen goes.
        self.desktop.move(3, self.session.height - 3)
        self.assertEqual(self.start(wait=False).waitForEnd(), 0)
        window = self.waitForPopover()
        self.assertEqual((window.right, window.y), (self.session.width, self.desktop.workArea()[1]))

    def testWhereASingleClickIsTheMenusTheMenuOpensAndAsks(self):
        self.home.settled()
        velkin = self.start(environment={"XDG_CURRENT_DESKTOP": "ubuntu:GNOME"})
        self.assertEqual(list(self.menuItems(velkin))[:2], ["Open Velkin", "Ask…"])
        self.clickMenuItem(velkin, "Open Velkin")
        self.waitForPopover()
        self.chat.page()
        self.desktop.key("Escape")
        self.waitForClosed()
        self.clickMenuItem(velkin, "Ask…")
        waitFor("the search bar", self.desktop.windows, 15)
        self.assertIsNone(self.popover())

    def testElsewhereTheMenuBeginsWithTheVersion(self):
        self.home.settled()
        for desktop in ("KDE", "XFCE", "Budgie:GNOME", "X-Cinnamon"):
            velkin = self.start(environment={"XDG_CURRENT_DESKTOP": desktop})
            self.assertNotIn("Open Velkin", self.menuItems(velkin), desktop)
            velkin.end()
            waitFor("the icon to go", lambda: not self.session.trayItems(), 10)

    def testWhereThePanelDrawsItAsItComesTheIconHasTheColourForIt(self):
        self.home.settled()
        velkin = self.start(environment={"XDG_CURRENT_DESKTOP": "MATE"})

        def name():
            return self.iconProperty(velkin, "IconName")

        self.addCleanup(self.session.environment.pop, "GTK_THEME", None)
        for theme, wanted in (("Adwaita:dark", "on-dark"), ("Adwaita", "on-light"), ("Adwaita:dark", "on-dark")):
            self.session.killPanel()
            self.session.environment["GTK_THEME"] = theme
            self.session.startPanel()
            waitFor(f"the icon {wanted}", lambda: name() == f"(<'velkin-diamondgear-{wanted}'>,)", 20, name)
            waitFor("the panel to draw it", self.session.iconIsDrawn, 10)
        self.session.killPanel()
        self.session.environment.pop("GTK_THEME")
        self.session.startPanel()

    def testTheNameForCinnamonHasNoSymbolicTwin(self):
        """Its tray takes the twin instead, whose path its panel then doesn't take for one."""
        self.home.settled()
        velkin = self.start(environment={"XDG_CURRENT_DESKTOP": "X-Cinnamon"})
        # The panel here is a light one.
        waitFor("the icon for it", lambda: "on-light" in self.iconProperty(velkin, "IconName"), 20,
                lambda: self.iconProperty(velkin, "IconName"))
        folder = pathlib.Path(self.iconProperty(velkin, "IconThemePath").split("'")[1])
        for name in (self.iconProperty(velkin, "IconName").split("'")[1], "velkin-diamondgear-grey"):
            self.assertTrue((folder / f"{name}.svg").exists(), name)
            self.assertFalse((folder / f"{name}-symbolic.svg").exists(), name)

    def iconProperty(self, velkin, name):
        told = self.session.call(velkin.icons()[0].split("/")[0], "/StatusNotifierItem",
                                 "org.freedesktop.DBus.Properties.Get", "org.kde.StatusNotifierItem", name,
                                 check=False) if velkin.icons() else "no icon"
        return told.strip()

    def testRightClickHoldsTheOpenPopover(self):
        velkin = self.startOnChat()
        self.openPopover(velkin)
        velkin.clickIcon(self.desktop, button=3)
        settle(1)
        self.assertIsNotNone(self.popover(), "the popover closed under the menu")
        self.desktop.key("Escape")
        settle(1)
        self.assertIsNotNone(self.popover(), "the popover closed with the menu")

    def menuWindow(self):
        found = self.desktop.windows(title="Velkin - Menu")
        return found[0] if found else None

    def openMenuByKey(self):
        self.desktop.key("ctrl+comma")
        menu = waitFor("the menu", self.menuWindow, 10, describe=self.describeWindows)
        waitFor("the menu to have the keyboard", lambda: self.desktop.activeWindow() == menu.id, 10)
        return menu

    def testTheMenusKeyPutsItUpAndTakesItDown(self):
        velkin = self.startOnChat()
        popover = self.openPopover(velkin)
        self.chat.page()
        # The page's header is of one colour, and the menu covers its end.
        inHeader = popover.right - 60, popover.y + 60
        waitFor("the page's header", lambda: self.desktop.colourAt(*inHeader) != (255, 255, 255), 10)
        settle(0.5)
        header = self.desktop.colourAt(*inHeader)
        for key in ("ctrl+comma", "Escape"):
            menu = self.openMenuByKey()
            settle(0.5)
            self.desktop.picture(self.artefact("menu.png"))
            self.assertNotEqual(self.desktop.colourAt(*inHeader), header, "the popover stands before the menu")
            left, top, right, bottom = self.desktop.workArea()
            self.assertTrue(left <= menu.x and menu.right <= right and top <= menu.y and menu.bottom <= bottom,
                            str(menu))
            self.assertLess(abs(menu.centre[0] - self.session.iconPosition()[0]), menu.width, str(menu))
            self.desktop.key(key)
            waitFor("the menu to go", lambda: not self.menuWindow(), 10, describe=self.describeWindows)
            waitFor("the popover to have the keyboard", lambda: self.desktop.activeWindow() == popover.id, 10)

    def testAnItemOfTheMenuThatAKeyPutUp(self):
        velkin = self.startOnChat()
        popover = self.openPopover(velkin)
        page = self.chat.page()
        height = page.ask("innerHeight")
        self.openMenuByKey()
        # About, Shortcuts, Make Menu Sticky, Show Toolbar: the version can't be chosen.
        self.desktop.key("Down", "Down", "Down", "Return")
        waitFor("the toolbar to go", lambda: page.ask("innerHeight") > height, 10)
        self.assertIsNone(self.menuWindow())
        self.assertFalse(self.home.readSettings()["showToolBar"])
        waitFor("the popover to have the keyboard", lambda: self.desktop.activeWindow() == popover.id, 10)

    def testTheMenusKeyAfterThePanelsMenuWasPutAway(self):
        velkin = self.startOnChat()
        self.openPopover(velkin)
        self.chat.page()
        velkin.clickIcon(self.desktop, button=3)
        settle(1)
        self.desktop.key("Escape")
        settle(0.5)
        self.openMenuByKey()


class NoTray(VelkinTestCase):
    panel = "none"

    def testATrayThatComesLaterGetsTheIcon(self):
        self.home.settled()
        velkin = self.start(wait=False)
        waitFor("a notice that there is no tray", self.desktop.windows, 20)
        self.assertTrue(velkin.running(), velkin.errorText())
        self.session.startPanel("top")
        self.addCleanup(self.session.killPanel)
        velkin.waitForIcon()
        waitFor("the notice to go", lambda: not self.desktop.windows(), 10, self.describeWindows)
        self.openPopover(velkin)

    def testASecondStartOpensAndClosesThePopoverInTheMiddle(self):
        self.home.settled()
        first = self.start(wait=False)
        waitFor("the program to take its name", self.nameIsTaken, 20, first.errorText)
        waitFor("a notice that there is no tray", self.desktop.windows, 20)
        self.desktop.picture(self.artefact("notice.png"))

        self.assertEqual(self.start(wait=False).waitForEnd(), 0)
        window = waitFor("the popover", self.wide, 20, self.describeWindows)
        settle()
        window = self.wide()
        self.chat.page()
        self.assertAlmostEqual(window.centre[0], self.session.width // 2, delta=3)
        self.assertAlmostEqual(window.centre[1], self.session.height // 2, delta=20)
        self.assertEqual((window.width, window.height), (600, 600))
        self.desktop.picture(self.artefact("open.png"))

        self.assertEqual(self.start(wait=False).waitForEnd(), 0)
        waitFor("the popover to close", lambda: not self.wide(), 10, self.describeWindows)
        self.assertTrue(first.running())

    def testActivationOverTheBusOpensAndClosesThePopover(self):
        self.home.settled()
        velkin = self.start(wait=False)
        waitFor("the program to take its name", self.nameIsTaken, 20, velkin.errorText)
        waitFor("a notice that there is no tray", self.desktop.windows, 20)
        self.activateOverTheBus()
        waitFor("the popover", self.wide, 20, self.describeWindows)
        self.activateOverTheBus()
        waitFor("the popover to close", lambda: not self.wide(), 10, self.describeWindows)

    def activateOverTheBus(self):
        self.session.call("com.tarnvale.Velkin", "/com/tarnvale/Velkin", "org.freedesktop.Application.Activate", "{}")

    def wide(self):
        """The popover, which is told from the notice by its size."""
        found = [w for w in self.desktop.windows() if w.width >= 600 and w.height >= 600 and not w.overrideRedirect]
        return found[0] if found else None

    def nameIsTaken(self):
        return "true" in self.session.call(
            "org.freedesktop.DBus", "/", "org.freedesktop.DBus.NameHasOwner", "com.tarnvale.Velkin", check=False)


class SlowTray(VelkinTestCase):
    """A busy desktop: the tray is there, and hasn't come to answering."""

    panel = "none"

    def setUp(self):
        super().setUp()
        self.tray = subprocess.Popen([PYTHON, HARNESS / "slowtray.py"], env=self.session.environment,
                                     stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.endTray)
        self.assertEqual(self.tray.stdout.readline(), "ready\n")

    def endTray(self):
        self.tray.stdin.close()
        self.tray.wait(10)
        self.tray.stdout.close()

    def answer(self, whether):
        self.tray.stdin.write(f"{whether}\n")
        self.tray.stdin.flush()

    def begin(self):
        self.home.settled()
        velkin = self.start(wait=False)
        self.assertEqual(self.tray.stdout.readline(), "asked\n")
        # Longer than the program waits for a tray that has answered.
        settle(7)
        self.assertEqual(self.desktop.windows(), [], "it is told before it is known")
        return velkin

    def testThatThereIsNoTrayIsNotToldBeforeItsAnswer(self):
        velkin = self.begin()
        self.answer("yes")
        waitFor("the program to hear of it", lambda: "The tray shows the icon" in velkin.errorText(), 15,
                velkin.errorText)
        settle(6)
        self.assertEqual(self.desktop.windows(), [])

    def testItIsToldBehindTheAnswer(self):
        self.begin()
        self.answer("no")
        waitFor("a notice that there is no tray", self.desktop.windows, 20)


class TwoMonitors(VelkinTestCase):
    @classmethod
    def makeSession(cls):
        return Session(cls.panel, cls.screen, monitors=2)

    def searchBar(self):
        found = [w for w in self.desktop.windows() if w.title != "Velkin" and not w.overrideRedirect]
        return found[0] if found else None

    def monitorOfSearchBar(self):
        self.desktop.key("ctrl+shift+r")
        window = waitFor("the search bar", self.searchBar, 15, self.describeWindows)
        self.desktop.key("Escape")
        waitFor("the search bar to go", lambda: not self.searchBar(), 10, self.describeWindows)
        return "left" if window.centre[0] < 1280 else "right"

    def testTheSearchBarComesWhereTheKeyboardIsFailingThatWhereThePointerIs(self):
        self.startOnChat()
        for x, monitor, pointer in ((200, "left", 2000), (1500, "right", 400)):
            other = self.desktop.openOtherWindow(x, 400)
            window = waitFor("another program", lambda: self.desktop.windows(title="Event Tester"), 10)[0]
            self.desktop.click(*window.centre)
            waitFor("it to have the keyboard", lambda: self.desktop.activeWindow() == window.id, 10)
            self.desktop.move(pointer, 700)
            self.assertEqual(self.monitorOfSearchBar(), monitor)
            other.kill()
            other.wait()
            waitFor("it to go", lambda: not self.desktop.windows(title="Event Tester"), 10)
        # The window manager may go on naming the window that is gone.
        for x, monitor in ((400, "left"), (2000, "right")):
            self.desktop.click(x, 700)
            self.assertEqual(self.monitorOfSearchBar(), monitor)
