"""In a Wayland session, without an X server and with one: the icon, the popover, its keys and the search bar."""
import os
import re
import signal
import socket
import unittest

from harness import waitFor
from harness.colours import contrast
from harness.paths import ARTEFACTS
from harness.velkin import Home, Velkin
from harness.waiting import settle
from harness.wayland import WaylandSession, WaylandTestCase

# What the toolkit says in the program's own process.
COMPLAINT = re.compile(r"\((?:velkin|com\.tarnvale\.Velkin)[^:]*:\d+\): \S+-(?:CRITICAL|WARNING|ERROR) .*")


class Common:
    """What holds whether Velkin is a program of the compositor's or of the X server in its session."""

    def tearDown(self):
        self.assertEqual(COMPLAINT.findall(self.errors.read_text(errors="replace")), [])

    def focusElsewhere(self):
        """Another program's window, with the keyboard; it takes the room that the panel leaves."""
        terminal = self.desktop.openTerminal()
        self.addCleanup(terminal.wait)
        self.addCleanup(terminal.kill)
        window = waitFor("the other window", lambda: self.desktop.windows(title="A terminal"), 10)[0]
        self.waitForKeyboard(window)
        return window

    def waitForKeyboard(self, window):
        waitFor(f"{window} to have the keyboard", lambda: self.desktop.activeWindow() == window.id, 10,
                lambda: self.desktop.activeWindow())

    def perform(self, action):
        """As a key that the desktop binds to the command."""
        self.session.output("gapplication", "action", "com.tarnvale.Velkin", action)

    def waitForSize(self, width, height):
        waitFor(f"the popover to be of {width}x{height}",
                lambda: self.popover() and (self.popover().width, self.popover().height) == (width, height), 10,
                self.describeWindows)
        return self.waitForPopover()

    def waitForPlace(self, x, y, width, height):
        def isThere():
            window = self.popover()
            return window and (window.x, window.y, window.width, window.height) == (x, y, width, height)

        waitFor(f"the popover to be of {width}x{height} at {x}, {y}", isThere, 10, self.describeWindows)
        return self.waitForPopover()

    def waitForPlaceAtTheIcon(self, width=600, height=600):
        """The icon is at the right end of the bar."""
        left, top, right, bottom = self.room()
        isBelow = self.session.iconPosition()[1] < top
        return self.waitForPlace(right - width, top if isBelow else bottom - height, width, height)

    def waitForMenuAtTheIcon(self):
        left, top, right, bottom = self.room()

        def isThere():
            menus = self.desktop.windows(title="Menu")
            return menus and menus[0].right == right and menus[0].y in (top, bottom - menus[0].height) and menus[0]

        return waitFor("the menu at the icon", isThere, 10, lambda: self.desktop.windows(title="Menu"))

    def writeInThePage(self, page, window, text, whole=None):
        if not page.ask("document.activeElement.id") == "text":
            self.clickInPage(page, window, "text")
        waitFor("the page to have the keyboard", lambda: page.ask("document.hasFocus()"), 10)
        self.desktop.type(text)
        waitFor("the text", lambda: page.ask("document.getElementById('text').value") == (whole or text), 10,
                lambda: page.ask("document.getElementById('text').value"))

    def testTheIconOpensThePopoverAndAClickElsewhereClosesIt(self):
        velkin = self.startOnChat()
        self.focusElsewhere()
        window = self.openPopover(velkin)
        self.assertEqual((window.width, window.height), (600, 600), "it was tiled")
        self.assertEqual(window.wmClass, self.wmClass, "no desktop knows whose window this is")
        self.waitForKeyboard(window)
        page = self.chat.page()
        self.writeInThePage(page, window, "Hello there 42")
        self.assertGreater(self.desktop.coloursIn(window), 10, "the popover is on show and empty")
        self.desktop.click(20, self.session.height // 2)
        self.waitForClosed()
        window = self.openPopover(velkin)
        self.assertEqual((window.width, window.height), (600, 600))
        velkin.clickIcon(self.desktop)
        self.waitForClosed()
        self.assertEqual(len(self.chat.loads()), 1)

    def testTheIconIsOneForBarsOfAnyColour(self):
        velkin = self.startOnChat()
        name = velkin.icons()[0].split("/")[0]
        told = self.session.call(name, "/StatusNotifierItem", "org.freedesktop.DBus.Properties.Get",
                                 "org.kde.StatusNotifierItem", "IconName")
        self.assertIn("'velkin-diamondgear-outlined'", told)
        x, y = self.session.iconPosition()
        colours = [self.desktop.colourAt(x + dx, y) for dx in range(-9, 9)]
        bar = self.desktop.colourAt(x - 200, y)
        self.assertGreater(max(contrast(colour, bar) for colour in colours), 3, (bar, colours))

    def testTheSearchBarOpensByItsCommandAndTakesTheKeyboard(self):
        self.startOnChat()
        terminal = self.focusElsewhere()
        self.perform("toggle-search")
        panel = waitFor("the panel", self.desktop.windows, 10)[0]
        self.assertEqual(panel.width, 720)
        self.waitForKeyboard(panel)
        self.desktop.key("Escape")
        waitFor("the panel to close", lambda: not self.desktop.windows(), 10, self.describeWindows)
        self.waitForKeyboard(terminal)


class Wayland(Common, WaylandTestCase):
    wmClass = "com.tarnvale.Velkin"

    def testKeysReachTheProgramBeforeThePage(self):
        velkin = self.startOnChat(hemingwayEnabled=True)
        window = self.openPopover(velkin)
        page = self.chat.page()
        self.writeInThePage(page, window, "one")
        self.desktop.key("ctrl+f")
        waitFor("the find bar", lambda: page.ask("innerHeight") < 558, 10)
        self.desktop.type("paragraph")
        self.desktop.key("Escape")
        waitFor("the find bar to go", lambda: page.ask("innerHeight") == 558, 10)
        self.assertEqual(page.ask("document.getElementById('text').value"), "one")
        self.assertEqual([key for key in page.all("key") if key["key"] == "f"], [])
        self.desktop.key("ctrl+j")
        waitFor("jira's page", lambda: self.services.jira.loads(), 20)
        self.desktop.key("Escape")
        self.waitForClosed()

    def testItStaysWithinTheScreenWhateverItsSize(self):
        velkin = self.startOnChat()
        window = self.openPopover(velkin)
        page = self.chat.page()
        self.writeInThePage(page, window, "a")
        # The Super key is held on, as by a person who looks for the right size.
        self.desktop.hold("ctrl", "super")
        self.desktop.key("Down", "Left")
        self.desktop.release("super", "ctrl")
        left, top, right, bottom = self.room()
        window = self.waitForPlace(right - 980, top, 980, bottom - top)
        self.writeInThePage(page, window, "b", "ab")

    def testFullSizeTakesTheRoomThatThePanelLeaves(self):
        velkin = self.startOnChat()
        self.openPopover(velkin)
        page = self.chat.page()
        bar = self.session.iconPosition()[1] * 2
        self.desktop.key("ctrl+super+f")
        waitFor("the full size", lambda: self.popover() and self.popover().width > 1200, 10, self.describeWindows)
        window = self.waitForPopover()
        self.assertGreaterEqual(window.y, bar)
        self.assertLessEqual(window.bottom, self.session.height)
        self.writeInThePage(page, window, "a")
        self.desktop.key("ctrl+super+f")
        window = self.waitForSize(600, 600)
        self.writeInThePage(page, window, "b", "ab")

    def testAPanelWithoutMenusOfItsOwnLetsTheProgramShowIts(self):
        velkin = self.startOnChat()
        for key, title in (("Escape", None), ("Return", "About")):
            velkin.clickIcon(self.desktop, 3)
            menu = self.waitForMenuAtTheIcon()
            self.waitForKeyboard(menu)
            # What sway tells of a window is ahead of what it paints.
            waitFor("the menu to be painted", lambda: self.desktop.coloursIn(menu) > 10, 10)
            self.desktop.picture(self.artefact("menu.png"))
            self.desktop.key(key)
            waitFor("the menu to go", lambda: not self.desktop.windows(title="Menu"), 10)
            if title:
                waitFor("the panel that was chosen", lambda: self.desktop.windows(title=title), 10)
        self.assertEqual(velkin.errorText().count("Right click!"), 2)

    def testTheCompositorsSocketMayBeAnywhere(self):
        self.home.settled()
        velkin = self.start(environment={"WAYLAND_DISPLAY": str(self.session.folder / "sway" / "wayland-1")})
        self.openPopover(velkin)
        self.chat.page()

    def testWhatTheDesktopDoesNotOfferIsTold(self):
        velkin = self.startOnChat()
        waitFor("the log to say so", lambda: "There are no global shortcuts" in velkin.errorText(), 10)
        self.perform("toggle-popover")
        self.waitForKeyboard(self.waitForPopover())
        self.perform("toggle-popover")
        self.waitForClosed()
        self.clickMenuItem(velkin, "Shortcuts")
        waitFor("the panel", lambda: self.desktop.windows(title="Shortcuts"), 10)


class XWithinWayland(Common, WaylandTestCase):
    """The X server knows of its own windows only, and not where the pointer is elsewhere."""

    hasX11 = True
    wmClass = "velkin"


class FollowingKeyboard(Common):
    """The keyboard is where the pointer is, as sway has it unless its settings say otherwise."""

    @classmethod
    def makeSession(cls):
        session = super().makeSession()
        session.output("swaymsg", "focus_follows_mouse", "yes")
        return session

    def openAtTheIcon(self, velkin, **size):
        self.openPopover(velkin)
        return self.waitForPlaceAtTheIcon(**size)

    def walkFromTheIcon(self, window):
        self.desktop.walk(self.session.iconPosition(), window.centre)
        settle()

    def testThePointerGetsFromTheIconToThePopover(self):
        velkin = self.startOnChat()
        terminal = self.focusElsewhere()
        for _ in range(2):
            window = self.openAtTheIcon(velkin)
            self.waitForKeyboard(window)
            self.walkFromTheIcon(window)
            self.waitForPlaceAtTheIcon()
            self.writeInThePage(self.chat.page(), window, "a", None)
            self.chat.page().ask("document.getElementById('text').value = ''")
            # Another window that gets the keyboard still closes it.
            self.desktop.walk(window.centre, (100, self.session.height // 2))
            self.waitForClosed()
            self.waitForKeyboard(terminal)

    def testItIsAtTheIconAgainAfterAChangeOfSize(self):
        velkin = self.startOnChat()
        self.focusElsewhere()
        window = self.openAtTheIcon(velkin)
        self.walkFromTheIcon(window)
        page = self.chat.page()
        self.writeInThePage(page, window, "a")
        left, top, right, bottom = self.room()
        self.desktop.key("ctrl+super+Left")
        window = self.waitForPlaceAtTheIcon(width=980)
        self.writeInThePage(page, window, "b", "ab")
        self.desktop.key("ctrl+super+f")
        window = self.waitForPlace(left, top, right - left, bottom - top)
        self.writeInThePage(page, window, "c", "abc")
        self.desktop.key("ctrl+super+f")
        self.waitForPlaceAtTheIcon(width=980)
        self.desktop.key("Escape")
        self.waitForClosed()
        self.openAtTheIcon(velkin, width=980)

    def testACommandOpensItAtTheIcon(self):
        self.startOnChat()
        self.focusElsewhere()
        self.desktop.move(200, self.session.height // 2)
        # Where the icon is, nobody has told yet.
        self.perform("toggle-popover")
        self.waitForKeyboard(self.waitForPlaceAtTheIcon())

    def testATrayThatCountsFromTheIconsCornerIsNotTakenAtItsWord(self):
        velkin = self.startOnChat()
        self.focusElsewhere()
        left, top, right, bottom = self.room()
        icon = (800, self.session.iconPosition()[1])
        place = (500, top if icon[1] < top else bottom - 600, 600, 600)
        self.desktop.move(*icon)
        # As Waybar does.
        velkin.activate(11, 15)
        window = self.waitForPlace(*place)
        self.desktop.walk(icon, window.centre)
        settle()
        self.waitForKeyboard(window)
        self.desktop.key("Escape")
        self.waitForClosed()
        # It is remembered, wherever the pointer is by now.
        self.desktop.move(100, self.session.height // 2)
        self.perform("toggle-popover")
        self.waitForPlace(*place)

    def testTheMenuIsAtTheIconAndThePointerGetsThere(self):
        velkin = self.startOnChat()
        self.focusElsewhere()
        velkin.clickIcon(self.desktop, 3)
        menu = self.waitForMenuAtTheIcon()
        self.desktop.walk(self.session.iconPosition(), menu.centre)
        settle()
        self.waitForKeyboard(menu)
        self.desktop.key("Escape")
        waitFor("the menu to go", lambda: not self.desktop.windows(title="Menu"), 10)

    def testASocketThatNobodyAnswersAtChangesNothing(self):
        path = self.session.folder / "hangs.sock"
        path.unlink(missing_ok=True)
        with socket.socket(socket.AF_UNIX) as hanging:
            hanging.bind(str(path))
            hanging.listen()
            self.home.settled()
            velkin = self.start(environment={"SWAYSOCK": str(path)})
            window = self.openPopover(velkin)
            self.assertEqual((window.width, window.height), (600, 600))
            self.waitForKeyboard(window)
            page = self.chat.page()
            # Where sway puts it, with the pointer over the bar.
            self.assertLess(window.right, self.session.width - 300)
            page.ask("document.getElementById('text').focus()")
            self.desktop.type("a")
            waitFor("the text", lambda: page.ask("document.getElementById('text').value") == "a", 10)


class WaylandFollowingKeyboard(FollowingKeyboard, WaylandTestCase):
    wmClass = "com.tarnvale.Velkin"


class XFollowingKeyboard(FollowingKeyboard, WaylandTestCase):
    hasX11 = True
    wmClass = "velkin"


class BarBelow(FollowingKeyboard, WaylandTestCase):
    panel = "bottom"
    wmClass = "com.tarnvale.Velkin"


class EndOfTheSession(unittest.TestCase):
    def testTheProgramEndsWithTheCompositor(self):
        log = ARTEFACTS / "EndOfTheSession.log"
        log.unlink(missing_ok=True)
        session = WaylandSession()
        self.addCleanup(session.stop)
        home = Home(session.folder / "home-1")
        home.settled()
        velkin = Velkin(session, home, log)
        self.addCleanup(velkin.end)
        velkin.waitForIcon()
        os.kill(int((session.folder / "sway.pid").read_text()), signal.SIGKILL)
        self.assertEqual(velkin.waitForEnd(), 1, velkin.errorText())
        self.assertTrue(home.readSettings()["onboardingCompleted"])
