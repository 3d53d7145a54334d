"""Global shortcuts: real keys while another program has the focus, and what a user can do without them."""
import json
import signal
import subprocess

from harness import VelkinTestCase, waitFor
from harness.waiting import settle

POP_UP = "ctrl+shift+t"
SEARCH = "ctrl+shift+r"
COMMAND = 0x100
SHIFT = 0x200


# Another program with the same idea.
HOLD_CTRL_SHIFT_T = """
import ctypes, signal
x11 = ctypes.CDLL("libX11.so.6")
x11.XOpenDisplay.restype = ctypes.c_void_p
display = ctypes.c_void_p(x11.XOpenDisplay(None))
x11.XDefaultRootWindow.restype = ctypes.c_ulong
root = ctypes.c_ulong(x11.XDefaultRootWindow(display))
x11.XGrabKey(display, 28, 5, root, 1, 1, 1)
x11.XSync(display, 0)
print("held", flush=True)
signal.pause()
"""


def stored(keyCode, modifiers):
    return json.dumps({"carbonKeyCode": keyCode, "carbonModifiers": modifiers}, separators=(",", ":"))


class HotKeys(VelkinTestCase):
    def setUp(self):
        super().setUp()
        self.locks = []
        self.others = []
        self.addCleanup(self._putBack)

    def _putBack(self):
        for lock in reversed(self.locks):
            self.desktop.key(lock)
        for other in self.others:
            other.terminate()
            other.wait(10)

    def lock(self, key):
        self.desktop.key(key)
        self.locks.append(key)

    def focusElsewhere(self):
        """Another program gets the keyboard by a click into its window; returns that window."""
        self.others.append(self.desktop.openOtherWindow(150, 600))
        other = waitFor("the other window", lambda: self.desktop.windows(title="Event Tester"), 10)[0]
        self.desktop.click(*other.centre)
        waitFor("the other window to have the focus", lambda: self.desktop.activeWindow() == other.id, 10,
                lambda: self.desktop.activeWindow())
        return other

    def toggles(self, keys):
        """The keys open the popover, which gets the keyboard, and close it again."""
        self.desktop.key(*keys.split())
        window = self.waitForPopover()
        waitFor("the popover to have the focus", lambda: self.desktop.activeWindow() == window.id, 10,
                lambda: self.desktop.activeWindow())
        self.desktop.key(*keys.split())
        self.waitForClosed()
        return window

    def testTheShortcutTogglesFromAnotherProgram(self):
        velkin = self.startOnChat()
        other = self.focusElsewhere()
        window = self.toggles(POP_UP)
        _, top, right, _ = self.desktop.workArea()
        self.assertEqual((window.right, window.y), (right, top), "it does not stand at the panel")
        waitFor("the focus to go back", lambda: self.desktop.activeWindow() == other.id, 10,
                lambda: self.desktop.activeWindow())
        self.toggles(POP_UP)
        self.assertIn("Q$: didUseGlobalHotKeys\n", velkin.errorText())

    def testWhatIsTypedGoesToThePageThatTheShortcutOpened(self):
        self.startOnChat()
        self.focusElsewhere()
        self.desktop.key(POP_UP)
        self.waitForPopover()
        page = self.chat.page()
        page.ask("document.getElementById('text').focus()")
        waitFor("the text area", lambda: page.ask("document.activeElement.id") == "text", 10)
        waitFor("the page to have the focus", lambda: page.ask("document.hasFocus()"), 10)
        self.desktop.type("typed")
        waitFor("the text", lambda: page.ask("document.getElementById('text').value") == "typed", 10,
                lambda: page.ask("document.getElementById('text').value"))

    def testThePageDoesNotSeeTheShortcut(self):
        self.startOnChat()
        self.focusElsewhere()
        self.desktop.key(POP_UP)
        self.waitForPopover()
        page = self.chat.page()
        self.desktop.key(POP_UP)
        self.waitForClosed()
        self.assertEqual([key for key in page.all("key") if key["key"].lower() == "t"], [])

    def testLocksMakeNoDifference(self):
        self.startOnChat()
        self.focusElsewhere()
        self.lock("Num_Lock")
        self.toggles(POP_UP)
        self.lock("Caps_Lock")
        # xdotool takes Shift for undone by Caps Lock; a person's hands press the keys all the same.
        self.toggles("ctrl+shift+28")
        self.desktop.key(self.locks.pop(0))
        self.toggles("ctrl+shift+28")

    def testAKeyThatIsHeldDownActsOnce(self):
        self.startOnChat()
        self.focusElsewhere()
        self.session.output("xdotool", "keydown", "ctrl", "keydown", "shift", "keydown", "t", "sleep", "1.5",
                            "keyup", "t", "keyup", "shift", "keyup", "ctrl")
        window = self.waitForPopover()
        waitFor("the popover to have the focus", lambda: self.desktop.activeWindow() == window.id, 10)
        settle(1)
        self.assertIsNotNone(self.popover(), "the end of the key's grab closed it")
        self.session.output("xdotool", "keydown", "ctrl", "keydown", "shift", "keydown", "t", "sleep", "1.5",
                            "keyup", "t", "keyup", "shift", "keyup", "ctrl")
        self.waitForClosed()
        settle(1)
        self.assertIsNone(self.popover(), "it came back")

    def testAClickElsewhereStillClosesIt(self):
        self.startOnChat()
        other = self.focusElsewhere()
        self.desktop.key(POP_UP)
        self.waitForPopover()
        settle()
        self.desktop.click(*other.centre)
        self.waitForClosed()
        self.toggles(POP_UP)

    def testTheIconClosesWhatTheShortcutOpened(self):
        velkin = self.startOnChat()
        self.focusElsewhere()
        self.desktop.key(POP_UP)
        self.waitForPopover()
        velkin.clickIcon(self.desktop)
        self.waitForClosed()
        self.openPopover(velkin)
        self.desktop.key(POP_UP)
        self.waitForClosed()

    def testTheSearchShortcutOpensAndClosesItsPanel(self):
        self.startOnChat()
        other = self.focusElsewhere()
        for _ in range(2):
            self.desktop.key(SEARCH)
            panel = waitFor("the panel", lambda: self.desktop.windows(), 10)[0]
            waitFor("the panel to have the focus", lambda: self.desktop.activeWindow() == panel.id, 10,
                    lambda: self.desktop.activeWindow())
            self.assertEqual(panel.width, 720)
            self.desktop.key(SEARCH)
            waitFor("the panel to close", lambda: not self.desktop.windows(), 10, self.describeWindows)
            waitFor("the focus to go back", lambda: self.desktop.activeWindow() == other.id, 10)

    def testTheDefaultsAreWrittenAtTheFirstStart(self):
        self.startOnChat()
        settings = self.home.readSettings()
        self.assertEqual(settings["KeyboardShortcuts_popUpShortcut"], stored(17, COMMAND | SHIFT))
        self.assertEqual(settings["KeyboardShortcuts_searchBarShortcut"], stored(15, COMMAND | SHIFT))

    def testAStoredShortcutWorksAfterEveryStart(self):
        self.home.settled(KeyboardShortcuts_popUpShortcut=stored(5, COMMAND | 0x800))
        for _ in range(2):
            velkin = self.start()
            self.focusElsewhere()
            self.toggles("ctrl+alt+g")
            self.desktop.key(POP_UP)
            settle()
            self.assertIsNone(self.popover(), "the default works beside what is stored")
            velkin.end(signal.SIGKILL)
            self._putBack()
            self.others.clear()
            waitFor("the windows to go", lambda: not self.desktop.windows(), 10)
        self.assertEqual(self.home.readSettings()["KeyboardShortcuts_popUpShortcut"], stored(5, COMMAND | 0x800))

    def testADisabledShortcutStaysDisabled(self):
        self.home.settled(KeyboardShortcuts_popUpShortcut=False)
        self.start()
        self.focusElsewhere()
        self.desktop.key(POP_UP)
        settle()
        self.assertIsNone(self.popover())
        self.assertIs(self.home.readSettings()["KeyboardShortcuts_popUpShortcut"], False)

    def testACorruptEntryDoesNoHarm(self):
        for entry in ("{]", 17, b"\x00", stored("t", 1)):
            self.home.settled(KeyboardShortcuts_popUpShortcut=entry)
            velkin = self.start()
            self.openPopover(velkin)
            velkin.clickIcon(self.desktop)
            self.waitForClosed()
            self.desktop.key(POP_UP)
            settle()
            self.assertIsNone(self.popover())
            self.assertEqual(self.home.readSettings()["KeyboardShortcuts_popUpShortcut"], entry)
            velkin.end()

    def testWhatAnotherProgramHoldsIsToldAndTheProgramLivesOn(self):
        holder = self.session.popen("python3", "-c", HOLD_CTRL_SHIFT_T, stdout=subprocess.PIPE)
        self.addCleanup(holder.stdout.close)
        self.others.append(holder)
        self.assertEqual(holder.stdout.readline(), b"held\n")
        velkin = self.startOnChat()
        self.assertIn("Ctrl+Shift+T is taken by another program", velkin.errorText())
        self.focusElsewhere()
        self.desktop.key(POP_UP)
        settle()
        self.assertIsNone(self.popover())
        self.openPopover(velkin)
        velkin.clickIcon(self.desktop)
        self.waitForClosed()
        self.desktop.key(SEARCH)
        waitFor("the other shortcut's panel", lambda: self.desktop.windows(), 10)
        velkin.end()

        holder.terminate()
        holder.wait(10)
        self.start()
        self.toggles(POP_UP)


class DesktopActions(VelkinTestCase):
    def perform(self, action, *parameters):
        self.session.output("gapplication", "action", "com.tarnvale.Velkin", action, *parameters)

    def testTogglingThePopover(self):
        self.startOnChat()
        self.perform("toggle-popover")
        window = self.waitForPopover()
        waitFor("the popover to have the focus", lambda: self.desktop.activeWindow() == window.id, 10)
        self.perform("toggle-popover")
        self.waitForClosed()

    def testTogglingTheSearchBar(self):
        self.startOnChat()
        self.perform("toggle-search")
        waitFor("the panel", lambda: self.desktop.windows(), 10)
        self.perform("toggle-search")
        waitFor("the panel to close", lambda: not self.desktop.windows(), 10)

    def testShowingAView(self):
        velkin = self.startOnChat(hemingwayEnabled=True)
        self.perform("show-view", "'jira'")
        self.waitForPopover()
        waitFor("jira's page", lambda: self.services.jira.loads(), 20)
        self.perform("show-view", "'nonsense'")
        waitFor("the log", lambda: "There is nothing like this: show-view nonsense" in velkin.errorText(), 10)
        self.assertIsNotNone(self.popover())

    def testTheSameByTheOtherInterfaceAndWithAWrongParameter(self):
        velkin = self.startOnChat()
        path = "/com/tarnvale/Velkin"
        self.session.call("com.tarnvale.Velkin", path, "org.gtk.Actions.Activate", "toggle-popover", "[]", "{}")
        self.waitForPopover()
        for action, parameters in (("show-view", "[<5>]"), ("show-view", "[]"), ("toggle-popover", "[<'x'>]")):
            self.session.call("com.tarnvale.Velkin", path, "org.freedesktop.Application.ActivateAction", action,
                              parameters, "{}", check=False)
        settle()
        self.assertTrue(velkin.running())
        self.assertIsNotNone(self.popover())


class WithoutShortcuts(VelkinTestCase):
    """As in a session whose programs can't take keys, on a desktop without the portal for it."""

    def testTheLogAndThePanelNameTheCommands(self):
        self.home.settled()
        velkin = self.start(environment={"XDG_SESSION_TYPE": "wayland"})
        waitFor("the log to say so", lambda: "There are no global shortcuts" in velkin.errorText(), 10,
                velkin.errorText)
        self.assertIn("gapplication action com.tarnvale.Velkin toggle-popover", velkin.errorText())
        self.clickMenuItem(velkin, "Shortcuts")
        waitFor("the panel", lambda: self.desktop.windows(title="Shortcuts"), 10)
        settle()
        self.desktop.key(POP_UP)
        settle()
        self.assertIsNone(self.popover(), "the keys were taken all the same")
