"""The Appearance panel: sizes, zoom, groups and the toolbar's check box, by mouse and by keyboard."""
from harness import VelkinTestCase, waitFor
from harness.waiting import settle

HEIGHTS = [480, 600, 980, 1240, 2160]
WIDTHS = [340, 600, 980, 1420, 3840]


class Appearance(VelkinTestCase):
    screen = "1600x1000"

    def openPanel(self, environment=None, **settings):
        """The program with its popover and the panel open; the panel has the keyboard."""
        self.home.settled(stickyMenu=True, **settings)
        self.velkin = self.start(environment=environment)
        self.openPopover(self.velkin)
        self.chat.page()
        self.desktop.key("ctrl+shift+a")
        return self.waitForPanel()


    def panelWindow(self):
        found = [w for w in self.desktop.windows() if w.title == "Velkin - Appearance"]
        return found[0] if found else None

    def waitForPanel(self):
        window = waitFor("the panel", self.panelWindow, 20, describe=self.describeWindows)
        previous = None
        while window != previous:
            settle(0.4)
            previous, window = window, self.panelWindow()
        return window

    def waitForSettings(self, **wanted):
        waitFor(f"the settings {wanted}",
                lambda: all(self.home.readSettings().get(key) == value for key, value in wanted.items()), 10,
                describe=self.home.readSettings)

    def waitForSize(self, width, height):
        left, top, right, bottom = self.desktop.workArea()
        wanted = (min(width, right - left), min(height, bottom - top))
        waitFor(f"the window to be {wanted}", lambda: self.popover()
                and (self.popover().width, self.popover().height) == wanted, 10, describe=self.describeWindows)

    def testLooksAsItShould(self):
        self.openPanel(sideBarGroup2="56-1", viewWidth=340.0)
        settle(4)
        self.desktop.picture(self.artefact("panel.png"))

    def testLooksAsItShouldInTheDark(self):
        self.openPanel(environment={"ADW_DEBUG_COLOR_SCHEME": "prefer-dark"}, viewWidth=340.0)
        settle(4)
        self.desktop.picture(self.artefact("panel.png"))

    def testEachSizeIsStoredAndTheOpenWindowTakesItAtOnce(self):
        # From the keyboard alone: it begins in the width's group, and the next stop is the height's.
        self.openPanel(viewWidth=340.0, viewHeight=480.0)
        for width in WIDTHS[1:]:
            self.desktop.key("Down", "space")
            self.waitForSettings(viewWidth=float(width))
            self.waitForSize(width, 480)
        self.desktop.key("Tab")
        for height in HEIGHTS[1:]:
            self.desktop.key("Down", "space")
            self.waitForSettings(viewHeight=float(height))
            self.waitForSize(3840, height)

    def testTheZoomIsStoredAndThePageFollowsAtOnce(self):
        self.openPanel(zoomLevel=1.2)
        chat = self.chat.page()
        waitFor("the page at its zoom", lambda: chat.ask("innerWidth") == round(600 / 1.2), 10,
                describe=lambda: chat.ask("innerWidth"))
        self.desktop.key("Tab", "Tab")
        for zoom in (1.0, 0.8, 0.55):
            self.desktop.key("Right", "space")
            self.waitForSettings(zoomLevel=zoom)
            waitFor(f"the page at {zoom}", lambda: abs(chat.ask("innerWidth") - 600 / zoom) <= 1, 10,
                    describe=lambda: chat.ask("innerWidth"))

    def openEditor(self, panel):
        """By a click on the first group's button, above the panel's foot."""
        self.desktop.click(panel.x + 100, panel.bottom - 135)
        return waitFor("the editor", lambda: [w for w in self.desktop.windows() if w.overrideRedirect], 10,
                       describe=self.describeWindows)[0]

    def testAGroupIsStoredByMouseAndRecalledByItsKey(self):
        panel = self.openPanel(hemingwayEnabled=True, viewWidth=340.0)
        # The first group's button: below the heading, at the left.
        self.desktop.picture(self.artefact("before.png"))
        self.openEditor(panel)
        settle(1)
        self.desktop.picture(self.artefact("editor.png"))
        self.desktop.key("Tab")
        settle(0.5)
        self.desktop.key("space")
        settle(1)
        self.desktop.picture(self.artefact("picker.png"))
