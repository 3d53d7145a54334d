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
CONTROLS = {"push button", "button", "toggle button", "check box", "radio button", "text", "entry", "password text",
            "combo box", "menu item", "check menu item", "link", "spin button", "slider"}


def flat(nodes):
    for each in nodes:
        yield each
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

    def testAppearanceAndAbout(self):
        velkin = self.begin(hemingwayEnabled=True)
        self.clickMenuItem(velkin, "Appearance...")
        self.wait("Velkin - Appearance")
        self.assertAllNamed()
        self.clickMenuItem(velkin, "About Velkin")
        self.wait("Velkin - About")
        self.assertAllNamed()

    def testShortcutsAndTheirLegend(self):
        velkin = self.begin()
        self.clickMenuItem(velkin, "Shortcuts")
        self.wait("Velkin - Shortcuts")
        self.assertAllNamed()

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
