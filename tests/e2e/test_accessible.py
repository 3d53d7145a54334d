"""What a screen reader finds: names, roles and states of everything that can be reached."""
import json
import pathlib
import unittest

from harness import VelkinTestCase, waitFor
from harness.completions import Held, sharedCompletions, well
from harness.waiting import settle

TREE = pathlib.Path(__file__).parent / "harness" / "tree.py"
LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
PYTHON = "/usr/bin/python3"
#: What a user can act on, and so must have a name.
REACHED = {"push button", "toggle button", "check box", "radio button", "text", "entry", "password text",
           "combo box", "link"}
CONTROLS = {"push button", "toggle button", "check box", "radio button", "text", "entry", "password text",
            "combo box", "menu item", "check menu item", "link", "spin button", "slider"}


#: Newer toolkits have the pages in the tree. What stands in them is their makers' to name.
PAGE = "document web"


def flat(nodes):
    for each in nodes:
        yield each
        if each["role"] != PAGE:
            yield from flat(each["children"])


class Accessible(VelkinTestCase):
    @classmethod
    def setUpClass(cls):
        if not pathlib.Path(LAUNCHER).exists() or not pathlib.Path(PYTHON).exists():
            raise unittest.SkipTest("there is no accessibility bus here")
        super().setUpClass()
        cls.launcher = cls.session.popen(LAUNCHER, "--launch-immediately")
        cls.addClassCleanup(cls.launcher.wait)
        cls.addClassCleanup(cls.launcher.terminate)
        waitFor("the accessibility bus", lambda: "'" in cls.session.call(
            "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus.GetAddress", check=False), 10)

    def setUp(self):
        super().setUp()
        self.completions = sharedCompletions()
        self.completions.clear()

    def begin(self, **settings):
        self.home.settled(**settings)
        return self.start(environment={"GTK_A11Y": "atspi", "NO_AT_BRIDGE": "0"})

    def tree(self):
        told = self.session.output(PYTHON, TREE, check=False)
        return list(flat(json.loads(told or "[]")))

    def find(self, name, role=None):
        """The control of this name that is on show; None if there is none."""
        for each in self.tree():
            if each["name"] == name and (role is None or each["role"] == role):
                return each
        return None

    def wait(self, name, role=None):
        return waitFor(f"“{name}”", lambda: self.find(name, role), 15,
                       describe=lambda: sorted({(e["role"], e["name"]) for e in self.tree()}))

    def assertAllNamed(self, *required):
        """Everything that can be acted on has a name, and none is a row of glyphs."""
        for name in required:
            self.wait(name)
        nameless = [each for each in self.tree()
                    if each["role"] in CONTROLS and "showing" in each["states"] and not each["name"].strip()]
        self.assertEqual(nameless, [])
        glyphs = [each["name"] for each in self.tree() if each["role"] in CONTROLS and set("⌘⌥⌃⇧") & set(each["name"])]
        self.assertEqual(glyphs, [])

    def walk(self):
        """Where the keyboard is, and where Tab leads from there."""
        return json.loads(self.session.output(PYTHON, TREE, "walk", "60"))

    def assertReached(self, *, besides=()):
        """Tab comes to every control that is on show and can be used, and to nothing that is none. Of radio buttons it
        comes to the one that is chosen: the arrows lead to the others."""
        self.assertAllNamed()
        # Not what is within a page, nor in the windows behind.
        shown = [e for e in self.tree() if e["role"] in REACHED and {"showing", "sensitive"} <= set(e["states"])
                 and not (e["role"] == "radio button" and "checked" not in e["states"])]
        wanted = {(e["role"], e["name"]) for e in shown} - set(besides)
        stops = self.walk()
        reached = {(e["role"], e["name"]) for e in stops}
        self.assertEqual(wanted - reached, set(), f"Tab came to {reached}")
        strange = {e["role"] for e in stops} - REACHED - {"scroll pane", "document web", "filler", "panel"}
        self.assertEqual(strange, set())
        return stops

    def assertRole(self, role, *names):
        for name in names:
            found = {e["role"] for e in self.tree() if e["name"] == name and e["role"] != "label"}
            self.assertIn(role, found, name)

    def showView(self, view):
        self.session.output("gapplication", "action", "com.tarnvale.Velkin", "show-view", f"'{view}'")
        window = self.waitForPopover()
        settle(1)
        return window

    def testToolbarAndFindBar(self):
        velkin = self.begin(showToolBar=True)
        self.openPopover(velkin)
        self.chat.page()
        self.assertAllNamed("Open In Browser", "Return to Home", "Reload Page", "Appearance Setting", "Quit")
        self.desktop.key("ctrl+f")
        self.assertAllNamed("Find in page", "Previous match", "Next match", "Done")
        self.assertNotIn("sensitive", self.find("Next match")["states"])
        self.desktop.type("nowhere to be found")
        self.desktop.key("Return")
        self.wait("Not\nfound")

    def testSearchPanel(self):
        self.begin(searchBarKey="sk-test")
        held = Held(well("an answer"))
        self.completions.willAnswer(held)
        self.desktop.key("ctrl+shift+r")
        self.wait("Velkin - Search Bar")
        self.assertAllNamed("Type Your Prompt", "Recent Searches")
        self.assertNotIn("sensitive", self.find("Recent Searches")["states"], "there are none yet")
        self.assertReached()
        self.press("Type Your Prompt", key=None)
        self.desktop.type("one")
        self.desktop.key("Return")
        self.completions.waitForRequest()
        self.wait("Waiting for the answer")
        held.release()
        self.wait("The answer is there")
        self.assertAllNamed("Copy")

    def testMenu(self):
        velkin = self.begin(stickyMenu=True, showToolBar=False)
        self.openPopover(velkin)
        self.chat.page()
        self.desktop.key("ctrl+comma")
        sticky = self.wait("Make Menu Sticky")
        self.assertEqual(sticky["role"], "check menu item")
        self.assertIn("checked", sticky["states"])
        self.assertNotIn("checked", self.wait("Show Toolbar")["states"])
        self.assertAllNamed("About Velkin", "Quit")

    def openPanel(self, velkin, item, title):
        self.clickMenuItem(velkin, item)
        self.wait(title)
        settle(0.7)

    def testAbout(self):
        velkin = self.begin(hemingwayEnabled=True)
        self.openPanel(velkin, "About Velkin", "Velkin - About")
        self.assertRole("check box", "Start at Login")
        self.assertRole("push button", "Import", "Export", "Release Notes", "Onboarding")
        self.assertRole("link", "-- Edit URLs & API Key --")
        self.assertReached()

    def testAppearance(self):
        velkin = self.begin(hemingwayEnabled=True)
        self.openPanel(velkin, "Appearance...", "Velkin - Appearance")
        self.assertRole("check box", "Show Toolbar")
        self.assertRole("radio button", "Slim", "Wide", "Giant", "Larger", "Smaller")
        stops = self.assertReached()
        self.assertEqual([e["name"] for e in stops if e["role"] == "radio button"], ["Medium", "Medium", "Default"])

    def chosen(self):
        return [e["name"] for e in self.tree() if e["role"] == "radio button" and "checked" in e["states"]]

    def testTheRadioGroupsFollowTheArrowsAndWhatKeysChangeElsewhere(self):
        velkin = self.begin(stickyMenu=True)
        self.openPopover(velkin)
        self.chat.page()
        self.desktop.key("ctrl+shift+a")
        self.wait("Velkin - Appearance")
        settle(0.7)
        self.assertEqual(self.chosen(), ["Medium", "Medium", "Default"])
        self.desktop.key("Down", "space")
        waitFor("the wider one", lambda: self.chosen() == ["Wide", "Medium", "Default"], 10, self.chosen)
        self.desktop.key("ctrl+super+Left")
        waitFor("the next one", lambda: self.chosen() == ["Broad", "Medium", "Default"], 10, self.chosen)
        self.desktop.key("ctrl+super+Up")
        waitFor("the shorter one", lambda: self.chosen() == ["Broad", "Short", "Default"], 10, self.chosen)
        self.desktop.key("ctrl+equal")
        waitFor("the larger text", lambda: self.chosen() == ["Broad", "Short", " -- "], 10, self.chosen)

    def testShortcutsAndTheirLegend(self):
        velkin = self.begin()
        self.openPanel(velkin, "Shortcuts", "Velkin - Shortcuts")
        self.assertRole("push button", "PopUp: Ctrl+Shift+T, change", "Clear shortcut PopUp:")
        self.assertReached()

    def testAddressesAndTheirPages(self):
        self.begin(hemingwayEnabled=True)
        window = self.showView("editUrls")
        self.assertRole("text", "Jira URL", "Search Bar (ApiKey)")
        self.assertReached()
        self.desktop.click(window.right - 60, window.bottom - 28)
        self.wait("Done")
        self.assertReached()

    def testThePageSettingsOfTheToolbar(self):
        velkin = self.begin(showToolBar=True)
        self.openPopover(velkin)
        self.chat.page()
        self.desktop.key("F6")
        self.press("Page Settings")
        self.wait("URL Settings")
        self.assertRole("push button", "Update", "Reset")
        self.assertAllNamed()

    def testEveryPageOfTheOnboarding(self):
        self.begin(hemingwayEnabled=True, chatUrl=self.chat.url, onboardingChatURL=self.chat.url)
        window = self.showView("onboarding")
        for title in ("Select Font Size", "Select Window Size", "Quick Search Bar", "Keyboard Shortcuts",
                      "Right Click Menu", None):
            self.assertReached()
            self.assertEqual(self.find("Previous")["role"], "push button")
            if title:
                self.desktop.click(window.right - 60, window.bottom - 28)
                self.wait(title, "heading")

    def press(self, name, key="Return"):
        """As a screen reader's user does: goes to the control of this name by Tab, and presses it."""
        self.wait(name)
        for _ in range(12):
            if any("focused" in e["states"] for e in self.tree() if e["name"] == name):
                if key:
                    self.desktop.key(key)
                return
            self.desktop.key("Tab")
            settle(0.2)
        self.fail(f"Tab never came to “{name}”")

    def testTheOnboardingIsFinishedByNamesAlone(self):
        self.start(environment={"GTK_A11Y": "atspi", "NO_AT_BRIDGE": "0"})
        self.desktop.key("ctrl+shift+t")
        self.waitForPopover()
        self.press("Done")
        self.wait("Welcome to Velkin", "heading")
        self.waitForPopover()
        self.press("Click here to enter URL")
        self.wait("URL", "text")
        self.desktop.key("ctrl+a")
        self.desktop.type(self.chat.url)
        self.desktop.key("Return")
        self.wait("Edit URL " + self.chat.url)
        for title in ("Select Font Size", "Select Window Size", "Keyboard Shortcuts", "Right Click Menu"):
            self.press("Next")
            self.wait(title, "heading")
        self.press("Done")
        waitFor("the onboarding to be over", lambda: self.home.readSettings().get("onboardingCompleted"), 10)
        self.chat.page()

    def testScratchpad(self):
        velkin = self.begin(hemingwayEnabled=True)
        self.openPopover(velkin)
        self.chat.page()
        self.desktop.key("ctrl+m")
        settle(1)
        self.assertAllNamed()

    def testOnboarding(self):
        self.home.writeSettings(releaseNoteVersion=23)
        velkin = self.start(environment={"GTK_A11Y": "atspi", "NO_AT_BRIDGE": "0"})
        self.clickMenuItem(velkin, "About Velkin")
        self.wait("Velkin - About")
        self.session.output("gapplication", "action", "com.tarnvale.Velkin", "show-view", "'onboarding'")
        self.waitForPopover()
        settle(1)
        self.assertAllNamed()
