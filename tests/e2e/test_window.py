"""The window as a place to work in: switching, sidebars, sizes, zoom, finding, the keyboard and the menu."""
from harness import VelkinTestCase, waitFor
from harness.waiting import settle

HEIGHTS = [480, 600, 980, 1240, 2160]
WIDTHS = [340, 600, 980, 1420, 3840]
# The page that ends never: the web engine's process hangs, the program must not.
HANG = "setTimeout(() => { for (;;); }, 50)"


class Window(VelkinTestCase):
    screen = "1600x1000"

    def openOnChat(self, **settings):
        velkin = self.startOnChat(hemingwayEnabled=True, **settings)
        window = self.openPopover(velkin)
        self.velkin = velkin
        return window

    def innerWidth(self, page):
        return page.ask("innerWidth")

    def waitForSize(self, width, height):
        left, top, right, bottom = self.desktop.workArea()
        wanted = (min(width, right - left), min(height, bottom - top))

        def hasSize():
            # Looked up once: a change of size may take it off the screen for a moment.
            popover = self.popover()
            return popover is not None and (popover.width, popover.height) == wanted

        waitFor(f"the window to be {wanted}", hasSize, 10, describe=self.describeWindows)

    def testASidebarOpensBesideChatAndBecomesMain(self):
        window = self.openOnChat(viewWidth=980.0)
        chat = self.chat.page()
        self.desktop.key("ctrl+super+j")
        jira = self.services.jira.page()
        waitFor("the sidebar's width", lambda: self.innerWidth(jira) == round(980 * 0.15), 10,
                describe=lambda: self.innerWidth(jira))
        self.assertLess(self.innerWidth(chat), 980 - 147 + 1)
        self.assertGreater(self.desktop.coloursIn(window), 10)
        self.desktop.picture(self.artefact("sidebar.png"))
        self.desktop.key("ctrl+j")
        waitFor("Jira to take the main place", lambda: self.innerWidth(jira) > 900, 10,
                describe=lambda: self.innerWidth(jira))
        self.assertEqual(self.home.readSettings()["lastVisibleWebView"], 5)
        self.desktop.key("ctrl+j")
        waitFor("chat to come back", lambda: self.home.readSettings()["lastVisibleWebView"] == 0, 10)
        self.assertEqual(len(self.services.jira.loads()), 1)
        self.assertEqual(len(self.chat.loads()), 1)

    def testAChordIsUnderstoodWhileThePageIsBusyWithItsKeys(self):
        self.openOnChat(viewWidth=980.0)
        chat = self.chat.page()
        # The engine gives a key back that the page had no use for, here when the next one is down already.
        chat.ask("addEventListener('keydown', () => { const end = Date.now() + 500; while (Date.now() < end); })")
        self.desktop.hold("ctrl", "super")
        settle()
        self.desktop.key("j", clear=False)
        self.desktop.release("ctrl", "super")
        jira = self.services.jira.page()
        waitFor("the sidebar's width", lambda: self.innerWidth(jira) == round(980 * 0.15), 10,
                describe=lambda: self.innerWidth(jira))

    def testManySwitchesKeepThePageTheTypedTextAndTheScrollPosition(self):
        self.openOnChat()
        chat = self.chat.page()
        chat.ask("document.getElementById('text').value = 'typed'; scrollTo(0, 321); 1")
        for _ in range(100):
            self.desktop.key("ctrl+j")
            waitFor("Jira", lambda: self.home.readSettings()["lastVisibleWebView"] == 5, 10)
            self.desktop.key("ctrl+t")
            waitFor("chat", lambda: self.home.readSettings()["lastVisibleWebView"] == 0, 10)
        self.assertIsNotNone(self.popover())
        self.assertEqual(chat.ask("document.getElementById('text').value + scrollY"), "typed321")
        self.assertEqual(len(self.chat.loads()), 1)
        self.assertEqual(len(self.services.jira.loads()), 1)

    def testAGroupIsRecalledByOneKey(self):
        self.openOnChat(viewWidth=980.0, sideBarGroup1="15-0")
        self.desktop.key("ctrl+1")
        bard = self.services.bard.page()
        jira = self.services.jira.page()
        waitFor("Jira beside Bard", lambda: self.innerWidth(jira) == 147, 10, describe=lambda: self.innerWidth(jira))
        self.assertEqual(self.innerWidth(bard), 980 - 147 - 1)
        self.assertEqual(self.home.readSettings()["lastVisibleWebView"], 1)

    def testAGroupThatNamesItsMainViewTwiceShowsItOnce(self):
        self.openOnChat(viewHeight=980.0, sideBarGroup1="5--0")
        self.desktop.key("ctrl+1")
        jira = self.services.jira.page()
        size = lambda: jira.ask("innerWidth + ' ' + (innerHeight > 700)")
        waitFor("Jira in the whole window", lambda: size() == "600 true", 10, describe=size)

    def testTheSizesStepThroughBothScales(self):
        self.openOnChat(viewWidth=340.0, viewHeight=480.0)
        self.waitForSize(340, 480)
        for height in HEIGHTS[1:]:
            self.desktop.key("ctrl+super+Down")
            self.waitForSize(340, height)
        for width in WIDTHS[1:]:
            self.desktop.key("ctrl+super+Left")
            self.waitForSize(width, 2160)
        self.desktop.key("ctrl+super+Up", "ctrl+super+Right")
        self.waitForSize(1420, 1240)
        settings = self.home.readSettings()
        self.assertEqual((settings["viewWidth"], settings["viewHeight"]), (1420, 1240))

    def testFullSizeAndBack(self):
        self.openOnChat(viewWidth=340.0, viewHeight=480.0)
        self.desktop.key("ctrl+super+f")
        self.waitForSize(3840, 2160)
        self.desktop.key("ctrl+super+f")
        self.waitForSize(340, 480)

    def testZoomReadsBackFromThePage(self):
        self.openOnChat()
        page = self.chat.page()
        width = self.innerWidth(page)
        for key, zoom in (("ctrl+equal", 1.2), ("ctrl+minus", 1.0), ("ctrl+minus", 0.8), ("ctrl+0", 1.0)):
            self.desktop.key(key)
            waitFor(f"a zoom of {zoom}", lambda: abs(self.innerWidth(page) - width / zoom) < 2, 10,
                    describe=lambda: self.innerWidth(page))

    def testFindFindsAndEscapeCloses(self):
        self.openOnChat()
        page = self.chat.page()
        page.ask("document.body.insertAdjacentHTML('afterbegin', '<p>needle</p>'); 1")
        height = page.ask("innerHeight")
        self.desktop.key("ctrl+f")
        waitFor("the find bar", lambda: page.ask("innerHeight") < height, 10)
        self.desktop.type("needle")
        self.desktop.key("Return")
        waitFor("the hit", lambda: page.ask("String(getSelection())") == "needle", 10)
        self.desktop.picture(self.artefact("found.png"))
        self.desktop.key("Escape")
        waitFor("the find bar to go", lambda: page.ask("innerHeight") == height, 10)
        self.assertIsNotNone(self.popover())
        self.desktop.key("Escape")
        self.waitForClosed()

    def testInTheScratchpadThereIsNoFindBarAndEscapeCloses(self):
        self.openOnChat()
        self.desktop.key("ctrl+m")
        waitFor("the scratchpad", lambda: self.home.readSettings()["lastVisibleWebView"] == 6, 10)
        self.ctrlFDoesNothingAndEscapeCloses()

    def testInTheReleaseNotesThereIsNoFindBarAndEscapeCloses(self):
        self.home.writeSettings()
        self.openPopover(self.start())
        self.ctrlFDoesNothingAndEscapeCloses()

    def ctrlFDoesNothingAndEscapeCloses(self):
        window = self.waitForPopover()
        self.desktop.move(20, self.session.height // 2)
        # Above the texts, in which a cursor blinks.
        head = f"{window.width}x44+{window.x}+{window.y}"
        pictures = [None, None]

        def picture():
            return self.session.output("import", "-window", "root", "-crop", head, "-format", "%#", "info:")

        def isStill():
            settle(1)
            pictures[:] = pictures[1], picture()
            return self.desktop.coloursIn(window) > 50 and pictures[0] == pictures[1]

        waitFor("the page to be painted", isStill, 20)
        self.desktop.key("ctrl+f")
        settle(1)
        self.desktop.picture(self.artefact("ctrl-f.png"))
        self.assertEqual(picture(), pictures[1], "a bar, where none is")
        self.desktop.key("Escape")
        self.waitForClosed()

    def testCopyAndPasteBetweenThePageAndTheFindField(self):
        window = self.openOnChat()
        page = self.chat.page()
        self.clickInPage(page, window, "text")
        self.desktop.type("needle")
        self.desktop.key("ctrl+a", "ctrl+c")
        settle(0.3)
        self.desktop.key("ctrl+f")
        settle(0.5)
        self.desktop.key("ctrl+v", "Return")
        settle(0.5)
        self.desktop.key("ctrl+a", "ctrl+x", "Escape")
        settle(0.3)
        page.ask("document.getElementById('text').focus(); document.getElementById('text').value = ''; 1")
        self.desktop.key("ctrl+v")
        waitFor("the text back in the page", lambda: page.ask("document.getElementById('text').value") == "needle", 10,
                describe=lambda: page.ask("document.getElementById('text').value"))

    def testUndoRedoAndDeleteInAPagesTextField(self):
        window = self.openOnChat()
        page = self.chat.page()

        def value():
            return page.ask("document.getElementById('text').value")

        self.clickInPage(page, window, "text")
        self.desktop.type("abc")
        self.desktop.key("BackSpace")
        waitFor("the deletion", lambda: value() == "ab", 10, describe=value)
        self.desktop.key("ctrl+z")
        waitFor("the undo", lambda: value() != "ab", 10, describe=value)
        self.desktop.key("ctrl+shift+z")
        waitFor("the redo", lambda: value() == "ab", 10, describe=value)

    def testThePageSeesKeysGoDownAndNeverUp(self):
        window = self.openOnChat()
        page = self.chat.page()
        self.clickInPage(page, window, "text")
        self.desktop.type("aB1")
        self.desktop.key("ctrl+super+j", "Prior", "Escape")
        keys = page.all("key")
        self.assertIn("a", [key["key"] for key in keys])
        self.assertEqual([key for key in keys if key["type"] == "keyup"], [])
        self.assertEqual([key["key"] for key in keys if key["key"] in ("Escape", "PageUp", "j")], [])

    def testTheMenuTogglesTheToolbar(self):
        self.openOnChat()
        page = self.chat.page()
        height = page.ask("innerHeight")
        self.clickMenuItem(self.velkin, "Show Toolbar")
        waitFor("the toolbar to go", lambda: page.ask("innerHeight") > height, 10)
        self.assertFalse(self.home.readSettings()["showToolBar"])
        self.clickMenuItem(self.velkin, "Show Toolbar")
        waitFor("the toolbar to come back", lambda: page.ask("innerHeight") == height, 10)

    def testReloadAndReloadFromOrigin(self):
        window = self.openOnChat()
        page = self.chat.page()
        self.clickInPage(page, window, "other")
        other = self.chat.page("/other")
        self.desktop.key("ctrl+r")
        waitFor("the reload", lambda: len(self.chat.loads("/other")) == 2, 10)
        self.assertIsNotNone(other)
        self.desktop.key("ctrl+alt+r")
        waitFor("the configured address", lambda: len(self.chat.loads("/chat")) == 2, 10)

    def testBackAndForward(self):
        window = self.openOnChat()
        page = self.chat.page()
        self.clickInPage(page, window, "other")
        self.chat.page("/other")
        self.desktop.key("ctrl+bracketleft")
        waitFor("the page before", lambda: self.chat.page().ask("location.pathname") == "/chat", 10)

    def testTheAuxiliaryPanelsOpenCloseAndOpenAfresh(self):
        self.openOnChat()
        for item, title in (("About Velkin", "Velkin - About"), ("Shortcuts", "Velkin - Shortcuts"),
                            ("Appearance...", "Velkin - Appearance")):
            for _ in range(2):
                self.clickMenuItem(self.velkin, item)
                panel = waitFor(title, lambda: self.desktop.windows(title=title), 10)
                self.assertEqual(len(panel), 1)
                settle(0.3)
                self.desktop.key("alt+F4")
                waitFor(f"{title} to close", lambda: not self.desktop.windows(title=title), 10)

    def testWithoutAdditionalViewsTheirKeysDoNothing(self):
        velkin = self.startOnChat(viewWidth=980.0)
        self.openPopover(velkin)
        self.chat.page()
        self.desktop.key("ctrl+super+j", "ctrl+j", "ctrl+d")
        settle(1)
        for other in self.services.all[1:]:
            self.assertEqual(other.loads(), [])
        self.assertEqual(self.home.readSettings()["lastVisibleWebView"], 0)

    def testAPageThatHangsHoldsNothingUp(self):
        self.openOnChat()
        self.chat.page().ask(HANG)
        settle(0.5)
        self.desktop.key("ctrl+j")
        jira = self.services.jira.page()
        self.assertEqual(jira.ask("1 + 1"), 2)
        self.desktop.key("ctrl+super+Down")
        self.waitForSize(600, 980)

    def testAPageThatOpensDialogsInALoopCanBeLeft(self):
        self.openOnChat()
        self.chat.page().ask("setTimeout(() => { for (;;) alert('again'); }, 50); 1")
        settle(1)
        self.velkin.clickIcon(self.desktop)
        self.waitForClosed()
        self.openPopover(self.velkin)
        self.desktop.key("ctrl+j")
        self.services.jira.page()

    def testStoredNonsenseIsSurvived(self):
        self.openOnChat(viewWidth=-3.0, viewHeight=1e12, zoomLevel=77.0, lastVisibleWebView=4711,
                        sideBarGroup1="nonsense", sideBarGroup2="9999")
        self.waitForSize(600, 600)
        self.desktop.key("ctrl+1", "ctrl+2", "ctrl+4")
        settle(1)
        self.assertTrue(self.velkin.running())
