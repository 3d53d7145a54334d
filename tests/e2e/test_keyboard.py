"""The keyboard alone: where it is, how it gets elsewhere, and keys that every program of the desktop has."""
from harness import VelkinTestCase, waitFor
from harness.completions import sharedCompletions, well
from harness.paths import PROGRAM
from harness.waiting import settle


class Keyboard(VelkinTestCase):
    def open(self, **settings):
        self.velkin = self.startOnChat(hemingwayEnabled=True, **settings)
        self.window = self.openPopover(self.velkin)
        self.page = self.chat.page()
        self.waitForKeyboard(self.page)

    def waitForKeyboard(self, page):
        waitFor(f"{page} to have the keyboard", lambda: page.ask("document.hasFocus()"), 10,
                describe=lambda: [p.ask("document.activeElement.id") for p in (self.page, page)])

    def testASidebarThatAKeyOpensHasTheKeyboardAndTheMainPageGetsItBack(self):
        self.open(viewWidth=980.0)
        self.desktop.key("ctrl+super+j")
        jira = self.services.jira.page()
        self.waitForKeyboard(jira)
        self.assertFalse(self.page.ask("document.hasFocus()"))
        self.desktop.key("ctrl+super+j")
        self.waitForKeyboard(self.page)
        # What is typed arrives, and no button of the toolbar was pressed by it.
        self.page.ask("document.getElementById('text').focus()")
        self.desktop.type("a b")
        waitFor("the text", lambda: self.page.ask("document.getElementById('text').value") == "a b", 10)
        self.assertEqual(self.home.openedInBrowser(), [])

    def testF6GoesRoundThePanes(self):
        self.open(viewWidth=980.0, showToolBar=False)
        self.desktop.key("ctrl+super+j")
        jira = self.services.jira.page()
        self.waitForKeyboard(jira)
        self.desktop.key("F6")
        self.waitForKeyboard(self.page)
        self.desktop.key("F6")
        self.waitForKeyboard(jira)
        self.desktop.key("shift+F6")
        self.waitForKeyboard(self.page)

    def testAChangeOfTheSizeLeavesTheKeyboardWhereItIs(self):
        self.open(viewWidth=980.0)
        self.desktop.key("ctrl+super+j")
        jira = self.services.jira.page()
        self.waitForKeyboard(jira)
        width = jira.ask("innerWidth")
        self.desktop.key("ctrl+super+Left")
        waitFor("another width", lambda: self.popover().width != self.window.width, 10)
        waitFor("the sidebar to be drawn anew", lambda: jira.ask("innerWidth") != width, 10)
        self.waitForKeyboard(jira)

    def goToOther(self):
        self.clickInPage(self.page, self.window, "other")
        other = self.chat.page("/other")
        waitFor("the other page", lambda: other.ask("location.pathname") == "/other", 10)
        return other

    def waitForPage(self, page):
        """A page that was left is kept, asleep, and answers when it is on show again."""
        self.assertEqual(page.ask("document.visibilityState"), "visible")
        self.waitForKeyboard(page)

    def testAltWithTheArrowsGoesBackAndForwardButNotInAText(self):
        self.open()
        other = self.goToOther()
        self.desktop.key("alt+Left")
        self.waitForPage(self.page)
        self.page.ask("document.getElementById('text').focus()")
        settle(0.5)
        self.desktop.key("alt+Right")
        settle(1)
        self.waitForPage(self.page)
        self.page.ask("document.getElementById('text').blur()")
        settle(0.5)
        self.desktop.key("alt+Right")
        self.waitForPage(other)

    def testTheMousesOwnButtonsGoBackAndForward(self):
        self.open()
        other = self.goToOther()
        self.desktop.click(*self.window.centre, button=8)
        self.waitForPage(self.page)
        self.desktop.click(*self.window.centre, button=9)
        self.waitForPage(other)

    def testCtrlBackspaceAndCtrlDeleteTakeAWordInAPage(self):
        self.open()
        self.page.ask("document.getElementById('text').focus()")
        self.desktop.type("one two three")
        value = "document.getElementById('text').value"
        waitFor("the text", lambda: self.page.ask(value) == "one two three", 10)
        self.desktop.key("ctrl+BackSpace")
        waitFor("a word less", lambda: self.page.ask(value) == "one two ", 10, lambda: self.page.ask(value))
        self.desktop.key("Home", "ctrl+Delete")
        waitFor("another word less", lambda: self.page.ask(value) == " two ", 10, lambda: self.page.ask(value))

    def testKeysGoByTheirLetters(self):
        self.session.output("setxkbmap", "fr")
        self.addCleanup(self.session.output, "setxkbmap", "us")
        self.open()
        self.page.ask("document.getElementById('text').value = 'all of it'; document.getElementById('text').focus()")
        settle(0.5)
        # The key that has the A there stands where others have the Q.
        self.desktop.key("ctrl+a")
        waitFor("all to be selected", lambda: self.page.ask("document.getElementById('text').selectionEnd") == 9, 10)
        self.assertTrue(self.velkin.running())
        self.desktop.key("ctrl+minus")
        waitFor("the zoom", lambda: self.home.readSettings().get("zoomLevel") == 0.8, 10, self.home.readSettings)
        self.desktop.key("ctrl+q")
        self.assertEqual(self.velkin.waitForEnd(), 0)

    def testShiftTabAtThePagesFirstControlLeadsToTheToolbar(self):
        velkin = self.startOnChat()
        self.openPopover(velkin)
        page = self.chat.page()
        page.ask("document.getElementById('text').focus()")
        waitFor("the page to have the keyboard", lambda: page.ask("document.hasFocus()"), 10)
        self.desktop.key("shift+Tab")
        waitFor("the keyboard to leave the page", lambda: not page.ask("document.hasFocus()"), 10)
        settle(0.3)
        # From the toolbar's last button back to "Reload".
        for _ in range(3):
            self.desktop.key("shift+Tab")
            settle(0.2)
        self.desktop.key("space")
        waitFor("the page to load again", lambda: len(self.chat.loads()) == 2, 15, self.chat.seen)

    def testTabLeadsFromTheNotesToDoneAndDoneHasTheKeyboardAtFirst(self):
        self.home.writeSettings(onboardingCompleted=True, releaseNoteVersion=22)
        velkin = self.start()
        self.openPopover(velkin)
        settle(1)
        # Round once: through the page and back.
        for _ in range(12):
            self.desktop.key("Tab")
        for _ in range(12):
            self.desktop.key("shift+Tab")
        self.desktop.picture(self.artefact("ring.png"))
        # On a busy machine some of so many keys are on their way through the page still, and lead elsewhere.
        for _ in range(4):
            self.desktop.key("Return")
            settle(1)
            if self.chat.loads():
                break
            self.desktop.key("Tab")
            settle(1)
        self.chat.page()


class SearchField(VelkinTestCase):
    def setUp(self):
        super().setUp()
        self.completions = sharedCompletions()
        self.completions.clear()

    def searchPanel(self):
        return next((w for w in self.desktop.windows() if w.title == "Velkin - Search Bar"), None)

    def open(self):
        self.home.settled(searchBarKey="sk-test")
        self.velkin = self.start()
        self.openPanel()

    def openPanel(self):
        self.desktop.key("ctrl+shift+r")
        panel = waitFor("the panel", self.searchPanel, 10, self.describeWindows)
        waitFor("the panel to have the keyboard", lambda: self.desktop.activeWindow() == panel.id, 10)
        return panel

    def ask(self, prompt, number=0):
        self.desktop.type(prompt)
        self.desktop.key("Return")
        asked = self.completions.waitForRequest(number)
        waitFor("the answer", lambda: self.searchPanel().height > 400, 20, self.describeWindows)
        settle(1)
        return asked

    def testAfterAnAnswerALetterBeginsTheNextPrompt(self):
        self.open()
        self.completions.willAnswer(well("first"), well("second"))
        self.ask("one")
        self.assertEqual(self.ask("two words", 1).prompt, "two words")

    def testAfterAnAnswerTabGivesTheFieldBack(self):
        self.open()
        self.completions.willAnswer(well("first"), well("second"))
        self.ask("one")
        self.desktop.key("Tab")
        settle(0.5)
        self.desktop.key("End")
        self.assertEqual(self.ask(" more", 1).prompt, "one more")

    def testReturnOnTheFieldThatIsOffGivesItBackAndSendsNothing(self):
        self.open()
        self.completions.willAnswer(well("first"), well("second"))
        self.ask("one")
        self.desktop.key("Return")
        settle(0.5)
        self.desktop.key("End")
        self.assertEqual(self.ask(" more", 1).prompt, "one more")
        self.assertEqual(len(self.completions.requests), 2)

    def testAClickOnTheAnswerTurnsTheFieldOff(self):
        self.open()
        self.completions.willAnswer(well("first"), well("second"))
        self.ask("one")
        self.desktop.key("Tab")
        settle(0.5)
        panel = self.searchPanel()
        self.desktop.click(panel.centre[0], panel.bottom - 60)
        settle(0.5)
        # Off again: Return gives it back and sends nothing.
        self.desktop.key("Return")
        settle(0.5)
        self.desktop.key("End")
        self.assertEqual(self.ask(" more", 1).prompt, "one more")

    def testCtrlBackspaceTakesAWord(self):
        self.open()
        self.completions.willAnswer(well("first"))
        self.desktop.type("one two three")
        self.desktop.key("ctrl+BackSpace", "ctrl+BackSpace")
        self.assertEqual(self.ask("2").prompt, "one 2")

    def testTheWindowManagersCloseIsTheControllers(self):
        self.open()
        self.desktop.key("alt+F4")
        waitFor("the panel to close", lambda: not self.searchPanel(), 10)
        self.openPanel()
        self.desktop.key("Escape")
        waitFor("the panel to close", lambda: not self.searchPanel(), 10)


class Started(VelkinTestCase):
    """By the desktop's bus, as from the entry in the menu."""

    def setUp(self):
        super().setUp()
        self.home.settled()
        service = self.session.folder / "services" / "com.tarnvale.Velkin.service"
        variables = {"HOME": self.home.folder, "XDG_CONFIG_HOME": self.home.config, "XDG_DATA_HOME": self.home.data,
                     "XDG_CACHE_HOME": self.home.cache}
        told = " ".join(f"{name}={value}" for name, value in {**self.session.environment, **variables}.items()
                        if " " not in str(value) and name.isidentifier() and not name.startswith("BASH"))
        service.write_text(f"[D-BUS Service]\nName=com.tarnvale.Velkin\nExec=/usr/bin/env {told} {PROGRAM}\n")
        self.session.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus.ReloadConfig")
        self.addCleanup(self.session.call, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                        "org.freedesktop.DBus.ReloadConfig")
        self.addCleanup(service.unlink)

    def quit(self):
        self.session.output("gapplication", "action", "com.tarnvale.Velkin", "quit", check=False)
        waitFor("the icon to go", lambda: not self.session.trayItems(), 10)

    def waitForIcon(self):
        waitFor("the icon in the tray", self.session.trayItems, 30)
        waitFor("the panel to draw it", self.session.iconIsDrawn, 30)
        settle(2)

    def testTheFirstActivationIsTheStartAndOpensNothing(self):
        self.session.output("gapplication", "launch", "com.tarnvale.Velkin")
        self.addCleanup(self.quit)
        self.waitForIcon()
        self.assertIsNone(self.popover())
        self.session.output("gapplication", "launch", "com.tarnvale.Velkin")
        self.waitForPopover()

    def testAnActionOnAStoppedProgramDoesThatOneThingAtTheIcon(self):
        self.session.output("gapplication", "action", "com.tarnvale.Velkin", "toggle-popover")
        self.addCleanup(self.quit)
        self.waitForIcon()
        window = self.waitForPopover()
        left, top, right, _ = self.desktop.workArea()
        self.assertEqual((window.y, window.right), (top, right), "at the panel's end, where the icons are")
