"""The icon in a real tray, and its menu."""
import signal

from harness import VelkinTestCase, waitFor
from harness.waiting import settle


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
