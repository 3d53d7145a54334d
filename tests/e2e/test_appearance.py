"""The Appearance panel: sizes, zoom, groups and the toolbar's check box, by mouse and by keyboard."""
import unittest
import pathlib
import re

from harness import VelkinTestCase, waitFor
from harness.waiting import settle

HEIGHTS = [480, 600, 980, 1240, 2160]
WIDTHS = [340, 600, 980, 1420, 3840]


class PanelTestCase(VelkinTestCase):
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


class Appearance(PanelTestCase):
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
        waitFor("the page at its zoom", lambda: abs(chat.ask("innerWidth") - 600 / 1.2) <= 1, 10,
                describe=lambda: chat.ask("innerWidth"))
        self.desktop.key("Tab", "Tab")
        for zoom in (1.0, 0.8, 0.55):
            self.desktop.key("Right", "space")
            self.waitForSettings(zoomLevel=zoom)
            waitFor(f"the page at {zoom}", lambda: abs(chat.ask("innerWidth") - 600 / zoom) <= 1, 10,
                    describe=lambda: chat.ask("innerWidth"))

    def unmanaged(self):
        """Bubbles and lists; the tooltip that the pointer may have brought up is small."""
        return [w for w in self.desktop.windows() if w.overrideRedirect and w.height > 80]

    def toolbarMark(self):
        """Whether the menu has a check mark at "Show Toolbar"."""
        name = self.velkin.icons()[0].split("/")[0]
        told = self.session.call(name, "/MenuBar", "com.canonical.dbusmenu.GetLayout", "0", "-1", "[]")
        item = re.search(r"\{([^{}]*'label': <'Show Toolbar'>[^{}]*)\}", told).group(1)
        return int(re.search(r"'toggle-state': <(\d)>", item).group(1))

    def webProcesses(self):
        """The process numbers of the program's pages."""
        parents, names = {}, {}
        for stat in pathlib.Path("/proc").glob("[0-9]*/stat"):
            try:
                number, rest = stat.read_text().split(" (", 1)
            except OSError:
                continue  # It has ended meanwhile.
            name, fields = rest.rsplit(") ", 1)
            parents[int(number)], names[int(number)] = int(fields.split()[1]), name

        def isOurs(process):
            while process in parents and process != self.velkin.process.pid:
                process = parents[process]
            return process == self.velkin.process.pid

        return sorted(number for number, name in names.items() if name.startswith("WebKitWebProc") and isOurs(number))

    def openEditor(self, panel):
        """By a click on the first group's button, above the panel's foot."""
        self.desktop.click(panel.x + 110, panel.bottom - 153)
        waitFor("the editor", self.unmanaged, 10, describe=self.describeWindows)
        settle()

    def testAGroupIsStoredAndRecalledByItsKey(self):
        panel = self.openPanel(hemingwayEnabled=True, viewWidth=980.0)
        self.openEditor(panel)
        self.desktop.picture(self.artefact("editor.png"))
        # From the box for full screen to the main view's picker, in which the first entry is nothing.
        self.desktop.key("Tab", "space")
        waitFor("the picker's list", lambda: len(self.unmanaged()) == 2, 10, describe=self.describeWindows)
        settle()
        # Where the list's cursor is at first depends on the toolkit's version.
        self.desktop.key("Home", "Down", "Down", "Return")
        waitFor("the picker's list to close", lambda: len(self.unmanaged()) == 1, 10, describe=self.describeWindows)
        # Past the sidebars' pickers, of which the first one has Jira, to "Done".
        self.desktop.key("Tab", "Tab", "Tab", "space")
        self.waitForSettings(sideBarGroup1="15-0")
        waitFor("the editor to close", lambda: not self.unmanaged(), 10, describe=self.describeWindows)
        self.desktop.picture(self.artefact("stored.png"))
        self.desktop.key("ctrl+1")
        self.waitForSettings(lastVisibleWebView=1)
        jira = self.services.jira.page()
        waitFor("Jira beside Bard", lambda: jira.ask("innerWidth") == 147, 10, describe=lambda: jira.ask("innerWidth"))
        self.services.bard.page()

    def testAGroupIsStoredByMouse(self):
        panel = self.openPanel(hemingwayEnabled=True, viewWidth=980.0)
        self.openEditor(panel)
        editor = self.unmanaged()[0]
        self.desktop.click(editor.x + round(editor.width * 0.61), editor.y + round(editor.height * 0.363))
        waitFor("the picker's list", lambda: len(self.unmanaged()) == 2, 10, describe=self.describeWindows)
        settle()
        rows = next(w for w in self.unmanaged() if w.id != editor.id)
        # Of eight rows the fifth: behind nothing, ChatGPT, Bard and BitBucket.
        self.desktop.click(rows.centre[0], rows.y + round(rows.height * 4.5 / 8))
        waitFor("the picker's list to close", lambda: len(self.unmanaged()) == 1, 10, describe=self.describeWindows)
        settle()
        self.desktop.picture(self.artefact("chosen.png"))
        # A hand doesn't come in one leap, and the toolkit looks anew what is below the pointer at its second step.
        self.desktop.move(editor.centre[0], editor.y + round(editor.height * 0.6))
        settle()
        self.desktop.click(editor.centre[0], editor.y + round(editor.height * 0.755))
        self.waitForSettings(sideBarGroup1="35-0")
        waitFor("the editor to close", lambda: not self.unmanaged(), 10, describe=self.describeWindows)
        self.desktop.key("ctrl+1")
        self.waitForSettings(lastVisibleWebView=3)
        self.services.gitlab.page()
        self.services.jira.page()

    def testTheEditorGivesTheKeyboardBackToItsButton(self):
        panel = self.openPanel(viewWidth=340.0)
        self.openEditor(panel)
        self.desktop.key("Escape")
        waitFor("the editor to close", lambda: not self.unmanaged(), 10, describe=self.describeWindows)
        self.assertIsNotNone(self.panelWindow())
        self.desktop.key("space")
        waitFor("the editor again", self.unmanaged, 10, describe=self.describeWindows)

    def testTheToolbarsBoxAndTheMenusMarkAreOne(self):
        panel = self.openPanel(viewWidth=340.0)
        self.assertEqual(self.toolbarMark(), 1)
        self.desktop.click(panel.right - 159, panel.bottom - 153)
        self.waitForSettings(showToolBar=False)
        waitFor("the menu's mark", lambda: self.toolbarMark() == 0, 10, describe=self.toolbarMark)
        self.clickMenuItem(self.velkin, "Show Toolbar")
        self.waitForSettings(showToolBar=True)
        waitFor("the menu's mark", lambda: self.toolbarMark() == 1, 10, describe=self.toolbarMark)

    def testTheSamplesHaveOneProcessWhichEndsWithThePanel(self):
        self.home.settled(stickyMenu=True)
        self.velkin = self.start()
        self.openPopover(self.velkin)
        self.chat.page()
        before = self.webProcesses()
        self.desktop.key("ctrl+shift+a")
        self.waitForPanel()
        waitFor("one process more", lambda: len(self.webProcesses()) == len(before) + 1, 10,
                describe=self.webProcesses)
        settle(1)
        self.assertEqual(len(self.webProcesses()), len(before) + 1)
        self.desktop.key("alt+F4")
        waitFor("the panel to close", lambda: not self.panelWindow(), 10, describe=self.describeWindows)
        waitFor("its process to end", lambda: self.webProcesses() == before, 20, describe=self.webProcesses)

    def testTheUsersOwnPictureIsBehindTheMiniature(self):
        picture = self.home.folder / "wallpaper.png"
        self.home.folder.mkdir(parents=True, exist_ok=True)
        self.session.output("convert", "-size", "1200x900", "xc:#c83c14", str(picture))
        channel = self.home.config / "xfce4" / "xfconf" / "xfce-perchannel-xml"
        channel.mkdir(parents=True)
        (channel / "xfce4-desktop.xml").write_text(
            '<channel name="xfce4-desktop" version="1.0"><property name="backdrop"><property name="screen0">'
            '<property name="monitor0"><property name="workspace0">'
            f'<property name="last-image" type="string" value="{picture}"/>'
            '</property></property></property></property></channel>')
        panel = self.openPanel(environment={"XDG_CURRENT_DESKTOP": "XFCE"}, viewWidth=340.0)
        waitFor("the picture", lambda: self.desktop.colourAt(panel.x + 80, panel.y + 250) == (200, 60, 20), 10,
                describe=lambda: self.desktop.colourAt(panel.x + 80, panel.y + 250))


    def testThePictureOfEachDesktopIsFound(self):
        folder = self.home.folder
        (folder / "schemas").mkdir(parents=True)

        def picture(name, colour):
            path = folder / name
            self.session.output("convert", "-size", "1200x900", f"xc:rgb{colour}", str(path))
            return path

        desktops = {}
        for desktop, schema, key, colour, prefix in (
                ("GNOME", "org.gnome.desktop.background", "picture-uri", (200, 60, 20), "file://"),
                ("X-Cinnamon", "org.cinnamon.desktop.background", "picture-uri", (20, 160, 60), "file://"),
                ("MATE", "org.mate.background", "picture-filename", (60, 20, 200), "")):
            value = prefix + str(picture(f"{desktop} picture.png", colour)).replace(" ", "%20" if prefix else " ")
            # The user's choice stands in the place of the scheme's own value.
            (folder / "schemas" / f"{schema}.gschema.xml").write_text(
                f'<schemalist><schema id="{schema}" path="/{schema.replace(".", "/")}/">'
                f'<key name="{key}" type="s"><default>"{value}"</default></key>'
                '<key name="picture-options" type="s"><default>"zoom"</default></key></schema></schemalist>')
            desktops[desktop] = colour
        self.session.output("glib-compile-schemas", str(folder / "schemas"))
        self.home.config.mkdir(parents=True, exist_ok=True)
        (self.home.config / "plasma-org.kde.plasma.desktop-appletsrc").write_text(
            "[Containments][1]\nlastScreen=0\nwallpaperplugin=org.kde.image\n\n"
            "[Containments][1][Wallpaper][org.kde.image][General]\n"
            f"Image=file://{picture('plasma.png', (200, 160, 20))}\n")
        desktops["KDE"] = (200, 160, 20)
        for desktop, colour in desktops.items():
            with self.subTest(desktop=desktop):
                panel = self.openPanel({"XDG_CURRENT_DESKTOP": desktop,
                                        "GSETTINGS_SCHEMA_DIR": str(folder / "schemas")}, viewWidth=340.0)
                waitFor("the picture", lambda: self.desktop.colourAt(panel.x + 80, panel.y + 250) == colour, 10,
                        describe=lambda: self.desktop.colourAt(panel.x + 80, panel.y + 250))
                self.velkin.end()
                waitFor("the tray to drop the icon", lambda: not self.session.iconIsDrawn(), 10)


class LargeScreen(PanelTestCase):
    screen = "4000x2300"

    def testTheWindowHasExactlyTheSizeOfEachChoice(self):
        # No choice is cut by the screen.
        left, top, right, bottom = self.desktop.workArea()
        self.assertTrue(right - left >= WIDTHS[-1] and bottom - top >= HEIGHTS[-1])
        self.openPanel(viewWidth=340.0, viewHeight=480.0)
        self.waitForSize(340, 480)
        for width in WIDTHS[1:] + WIDTHS[-2::-1]:
            self.desktop.key("Down" if width > self.popover().width else "Up", "space")
            self.waitForSettings(viewWidth=float(width))
            self.waitForSize(width, 480)
        self.desktop.key("Tab")
        for height in HEIGHTS[1:] + HEIGHTS[-2::-1]:
            self.desktop.key("Down" if height > self.popover().height else "Up", "space")
            self.waitForSettings(viewHeight=float(height))
            self.waitForSize(340, height)


class SmallScreen(PanelTestCase):
    screen = "1024x768"

    def testThePanelIsOnTheScreenAsAWhole(self):
        panel = self.openPanel(viewWidth=340.0)
        left, top, right, bottom = self.desktop.workArea()
        self.desktop.picture(self.artefact("panel.png"))
        self.assertGreaterEqual(panel.x, left)
        self.assertGreaterEqual(panel.y, top)
        self.assertLessEqual(panel.right, right)
        self.assertLessEqual(panel.bottom, bottom)
