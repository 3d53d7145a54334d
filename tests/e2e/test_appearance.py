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
        self.clickMenuItem(self.velkin, "Appearance...")
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

    def testLooksAsItShould(self):
        self.openPanel(sideBarGroup2="56-1")
        settle(4)
        self.desktop.picture(self.artefact("panel.png"))

    def testLooksAsItShouldInTheDark(self):
        self.openPanel(environment={"GTK_THEME": "Adwaita:dark"})
        settle(4)
        self.desktop.picture(self.artefact("panel.png"))
