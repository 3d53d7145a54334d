"""The pages that lead in and around, as a person meets them: by mouse, and by keyboard alone."""
import unittest
import json
import pathlib
import resource
import subprocess

from harness import VelkinTestCase, waitFor
from harness.notified import Notices
from harness.waiting import settle

# Another program that holds Ctrl+Alt+K.
HOLD_CTRL_ALT_K = """
import ctypes, signal
x11 = ctypes.CDLL("libX11.so.6")
x11.XOpenDisplay.restype = ctypes.c_void_p
display = ctypes.c_void_p(x11.XOpenDisplay(None))
x11.XDefaultRootWindow.restype = ctypes.c_ulong
root = ctypes.c_ulong(x11.XDefaultRootWindow(display))
x11.XGrabKey(display, 45, 12, root, 1, 1, 1)
x11.XSync(display, 0)
print("held", flush=True)
signal.pause()
"""


def memoryOf(process):
    """The bytes that a process has in memory."""
    return int(pathlib.Path(f"/proc/{process}/statm").read_text().split()[1]) * resource.getpagesize()


class Pages(VelkinTestCase):
    def settings(self, key):
        return self.home.readSettings().get(key)

    def waitForSetting(self, key, value):
        waitFor(f"{key} to be {value!r}", lambda: self.settings(key) == value, 10, lambda: self.settings(key))

    def heads(self, service):
        return [r for r in service.requests if r.method == "HEAD"]

    def openOnboarding(self):
        """Over the release notes of a fresh home; returns the popover's window."""
        velkin = self.start()
        window = self.openPopover(velkin)
        settle(0.5)
        self.desktop.click(window.right - 45, window.bottom - 30)
        self.waitForSetting("lastVisibleWebView", 7)
        settle(0.5)
        return self.waitForPopover()

    def editAddress(self, window, text=None):
        """A click into the first page's row, the text, and Return."""
        self.desktop.click(window.x + 300, window.y + 284)
        settle(0.5)
        if text is not None:
            self.desktop.key("ctrl+a")
            self.desktop.type(text)
        self.desktop.key("Return")

    def next(self, window):
        self.desktop.click(window.right - 60, window.bottom - 28)
        settle(0.5)


class FirstMinute(Pages):
    def testFromTheFirstClickToChatByMouse(self):
        window = self.openOnboarding()
        self.assertNotIn("onboardingCompleted", self.home.readSettings())
        # There is no way on without an address.
        self.next(window)
        self.assertEqual(self.chat.loads(), [])
        self.editAddress(window)
        waitFor("the address to be asked", lambda: self.heads(self.chat), 10)
        self.assertIn("Safari/605.1.15", self.heads(self.chat)[0].headers["User-Agent"])
        self.waitForSetting("onboardingChatURL", self.chat.url)
        self.waitForSetting("chatUrl", self.chat.url)
        for _ in range(4):
            self.next(window)
        self.assertNotIn("onboardingCompleted", self.home.readSettings())
        self.next(window)
        self.waitForSetting("onboardingCompleted", True)
        self.chat.page()
        self.waitForPopover()
        self.assertEqual(self.settings("lastVisibleWebView"), 0)

    def testFromTheFirstKeyToChatByKeyboard(self):
        self.start()
        settle(1)
        self.desktop.key("ctrl+shift+t")
        self.waitForPopover()
        settle(1)
        self.desktop.key("Return")
        self.waitForSetting("lastVisibleWebView", 7)
        self.waitForPopover()
        settle(0.5)
        # The row has the keyboard at first: Return edits, Return checks.
        self.desktop.key("Return")
        settle(1)
        self.desktop.key("Return")
        self.waitForSetting("chatUrl", self.chat.url)
        settle(1)
        self.desktop.key("Tab")
        settle(0.5)
        for _ in range(12):
            if self.settings("onboardingCompleted"):
                break
            self.desktop.key("Return")
            settle(0.8)
            if not self.popover():
                break
        self.waitForSetting("onboardingCompleted", True)
        self.chat.page()


    def testTheFirstNoticeNamesTheKeysAndOpensThePopover(self):
        notices = Notices(self.session)
        self.addCleanup(notices.end)
        velkin = self.start()
        notice = waitFor("the notice", lambda: notices.told("notice"), 20, velkin.errorText)[0]
        self.assertEqual(notice["title"], "Velkin is in the tray.")
        self.assertEqual(notice["text"], "Ctrl+Shift+T opens it, Ctrl+Shift+R asks a question.")
        self.assertIsNone(self.popover())
        notices.click(notice["id"])
        self.waitForPopover()


class PageSettings(Pages):
    def testAnAddressThatIsChangedInTheToolbarIsLoadedFromItsOrigin(self):
        velkin = self.startOnChat(showToolBar=True)
        window = self.openPopover(velkin)
        self.chat.page()
        def bubbles():
            return [w for w in self.desktop.windows() if w.overrideRedirect and w.height > 80]

        self.desktop.click(window.x + 212, window.y + 20)
        waitFor("the page's settings", bubbles, 10, self.describeWindows)
        settle(0.5)
        # The row has the keyboard: Return edits it.
        self.desktop.key("Return")
        settle(0.5)
        self.desktop.key("ctrl+a")
        self.desktop.type(self.chat.urlOf("/other"))
        self.desktop.key("Return")
        self.waitForSetting("chatUrl", self.chat.urlOf("/other"))
        self.assertEqual(self.chat.loads("/other"), [])
        self.desktop.key("Escape")
        waitFor("the bubble to close", lambda: not bubbles(), 10, self.describeWindows)
        self.desktop.key("ctrl+alt+r")
        self.chat.page("/other")


class Addresses(Pages):
    def testAServiceThatRefusesTheQuestionCanBeUsedAnyway(self):
        window = self.openOnboarding()
        for status in (403, 405, 404):
            with self.subTest(status=status):
                address = self.chat.urlOf(f"/status/{status}")
                self.services.clear()
                self.editAddress(window, address)
                waitFor("the address to be asked", lambda: self.heads(self.chat), 10)
                settle(0.5)
                self.assertIsNone(self.settings("chatUrl"))
                # The row is in editing now; the next one starts from there.
                self.desktop.key("Tab", "Tab", "Tab")
        self.desktop.key("Return")
        self.waitForSetting("chatUrl", self.chat.urlOf("/status/404"))

    def testARedirectIsFollowed(self):
        window = self.openOnboarding()
        address = self.chat.urlOf("/moved")
        self.editAddress(window, address)
        self.waitForSetting("chatUrl", address)
        self.assertEqual([r.path for r in self.heads(self.chat)], ["/moved", self.chat.home])

    def testACheckThatIsNeverAnsweredEndsWithTheNextKey(self):
        window = self.openOnboarding()
        self.editAddress(window, self.chat.urlOf("/never"))
        waitFor("the address to be asked", lambda: self.heads(self.chat), 10)
        self.desktop.key("ctrl+a")
        self.desktop.type(self.chat.url)
        self.desktop.key("Return")
        self.waitForSetting("chatUrl", self.chat.url)


    def testAServerThatAnswersWithAGigabyteIsNotListenedTo(self):
        window = self.openOnboarding()
        velkin = self.started[-1]
        before = memoryOf(velkin.process.pid)
        address = self.chat.urlOf("/gigabyte")
        self.editAddress(window, address)
        self.waitForSetting("chatUrl", address)
        settle(1)
        self.assertLess(self.chat.sent, 100 << 20)
        self.assertLess(memoryOf(velkin.process.pid) - before, 60 << 20)

    def testANameThatDoesNotResolveIsInvalidAndCanBeUsedAnyway(self):
        window = self.openOnboarding()
        self.editAddress(window, "http://nowhere.invalid/")
        settle(2)
        self.assertIsNone(self.settings("chatUrl"))
        self.desktop.key("Tab", "Tab", "Tab", "Return")
        self.waitForSetting("chatUrl", "http://nowhere.invalid/")

    def testWhatIsNoWebAddressIsNeverStored(self):
        window = self.openOnboarding()
        self.editAddress(window, "x")
        for text in ("javascript:alert(1)", "file:///etc/passwd", "chat.example.org", "https://münchen.de/",
                     "https://two words/"):
            with self.subTest(text=text):
                self.desktop.key("ctrl+a")
                self.desktop.type(text)
                self.desktop.key("Return")
                settle(1)
                self.assertIsNone(self.settings("chatUrl"))
        self.assertEqual([r for service in self.services.all for r in service.requests], [])
        self.desktop.key("ctrl+a")
        self.desktop.type(self.chat.url)
        self.desktop.key("Return")
        self.waitForSetting("chatUrl", self.chat.url)


class AdditionalViews(Pages):
    def testSevenTapsAndTheSecondServiceByItsKey(self):
        velkin = self.startOnChat()
        self.openPopover(velkin)
        self.chat.page()
        self.desktop.key("ctrl+d")
        settle(1)
        self.assertEqual(self.services.bard.loads(), [])
        self.clickMenuItem(velkin, "About Velkin")
        about = waitFor("About", lambda: self.desktop.windows(title="Velkin - About"), 10)[0]
        velkin.clickIcon(self.desktop)
        self.waitForClosed()
        for _ in range(7):
            self.desktop.click(about.x + about.width // 2, about.y + 90)
        self.waitForSetting("hemingwayEnabled", True)
        self.openPopover(velkin)
        self.desktop.key("ctrl+d")
        self.services.bard.page()


class Recording(Pages):
    def setUp(self):
        super().setUp()
        self.others = []
        self.addCleanup(self._endOthers)

    def _endOthers(self):
        for other in self.others:
            other.terminate()
            other.wait(10)

    def openShortcuts(self, velkin):
        self.clickMenuItem(velkin, "Shortcuts")
        panel = waitFor("the panel", lambda: self.desktop.windows(title="Velkin - Shortcuts"), 10)[0]
        settle(1)
        return self.desktop.windows(title="Velkin - Shortcuts")[0] or panel

    def shortcut(self, name):
        stored = self.settings("KeyboardShortcuts_" + name)
        return json.loads(stored) if isinstance(stored, str) else stored

    def record(self, panel, row, keys):
        """Clicks on the recorder, 0 or 1, and presses the keys."""
        self.desktop.click(panel.x + 173, panel.bottom - (118, 76)[row])
        settle(0.5)
        self.desktop.key(keys)
        settle(0.5)

    def testOpeningThePanelRecordsNothingByItself(self):
        velkin = self.startOnChat()
        self.openShortcuts(velkin)
        self.desktop.key("ctrl+alt+g")
        settle(0.5)
        self.assertEqual(self.shortcut("popUpShortcut"), {"carbonKeyCode": 17, "carbonModifiers": 768})

    def testBothAreRecordedAnewAndTheOldOnesAreFree(self):
        velkin = self.startOnChat()
        panel = self.openShortcuts(velkin)
        self.record(panel, 0, "ctrl+alt+g")
        waitFor("the new shortcut", lambda: self.shortcut("popUpShortcut")["carbonKeyCode"] == 5, 10,
                lambda: self.shortcut("popUpShortcut"))
        # The one that the other had until now is recorded too, though the program itself holds it.
        self.record(panel, 1, "ctrl+shift+t")
        waitFor("the other one", lambda: self.shortcut("searchBarShortcut")["carbonKeyCode"] == 17, 10,
                lambda: self.shortcut("searchBarShortcut"))
        self.desktop.key("alt+F4")
        waitFor("the panel to close", lambda: not self.desktop.windows(title="Velkin - Shortcuts"), 10)
        self.others.append(self.desktop.openOtherWindow(150, 600))
        other = waitFor("the other window", lambda: self.desktop.windows(title="Event Tester"), 10)[0]
        self.desktop.click(*other.centre)
        settle(0.5)
        self.desktop.key("ctrl+shift+r")
        settle(1)
        self.assertEqual(self.desktop.windows(), [], "the old shortcut still works")
        self.desktop.key("ctrl+alt+g")
        self.waitForPopover()
        self.desktop.key("ctrl+alt+g")
        self.waitForClosed()
        self.desktop.key("ctrl+shift+t")
        waitFor("the search bar", self.desktop.windows, 10)

    def testWhatAnotherProgramHoldsIsRefused(self):
        holder = self.session.popen("python3", "-c", HOLD_CTRL_ALT_K, stdout=subprocess.PIPE)
        self.others.append(holder)
        self.assertEqual(holder.stdout.readline().strip() in (b"held", "held"), True)
        velkin = self.startOnChat()
        panel = self.openShortcuts(velkin)
        self.record(panel, 0, "ctrl+alt+k")
        # The alert has the keyboard: Return closes it, and recording goes on.
        waitFor("the alert", lambda: self.desktop.activeWindow() != panel.id, 10)
        self.assertEqual(self.shortcut("popUpShortcut"), {"carbonKeyCode": 17, "carbonModifiers": 768})
        self.desktop.key("Return")
        settle(1)
        self.desktop.key("ctrl+alt+g")
        waitFor("the next shortcut", lambda: self.shortcut("popUpShortcut")["carbonKeyCode"] == 5, 10,
                lambda: self.shortcut("popUpShortcut"))

    def testAPanelThatIsClosedWhileItRecordsLeavesTheShortcutsAtWork(self):
        velkin = self.startOnChat()
        panel = self.openShortcuts(velkin)
        self.desktop.click(panel.x + 173, panel.bottom - 118)
        settle(0.5)
        # The window manager's button: no key would come past the recorder.
        self.desktop.click(panel.right - 10, panel.y - 10)
        waitFor("the panel to close", lambda: not self.desktop.windows(title="Velkin - Shortcuts"), 10)
        self.desktop.key("ctrl+shift+t")
        self.waitForPopover()
