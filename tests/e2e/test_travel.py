"""Settings that travel: out of one home by "Export" and into another one by "Import", by the desktop's own dialogues."""
import json
import stat
import subprocess

from harness import VelkinTestCase, waitFor
from harness.velkin import BUILD_NUMBER, Home
from harness.waiting import settle

EXPORT = "The file holds your API key in clear."
IMPORT = "Import Settings"


class Travel(VelkinTestCase):
    def openAbout(self, velkin):
        self.clickMenuItem(velkin, "About Velkin")
        waitFor("About", self.about, 15, describe=self.describeWindows)
        settle(0.7)
        return self.about()

    def about(self):
        found = self.desktop.windows(title="Velkin - About")
        return found[0] if found else None

    def press(self, button):
        """A click on "Import" or "Export", which stand beside one another above the last rows of buttons."""
        about = self.about()
        # With the link below them they stand higher.
        link = 46 if self.home.readSettings().get("hemingwayEnabled") else 0
        self.desktop.click(about.x + about.width // 2 + {"Import": -38, "Export": 38}[button], about.bottom - 119 - link)

    def dialogue(self, title):
        found = [w for w in self.desktop.windows() if w.title == title]
        return found[0] if found else None

    def choose(self, title, path, replaces=False):
        waitFor(f"the dialogue “{title}”", lambda: self.dialogue(title), 15, describe=self.describeWindows)
        settle(0.7)
        if title == IMPORT:
            # A slash opens the line for a place.
            self.desktop.key("slash")
            settle(0.3)
        self.desktop.key("ctrl+a")
        self.desktop.type(str(path))
        settle(0.5)
        # What the line completed meanwhile by itself.
        self.desktop.key("shift+End", "Delete")
        settle(0.3)
        self.desktop.key("Return")
        if replaces:
            waitFor("the dialogue's question", lambda: [w for w in self.desktop.windows() if not w.title], 10,
                    describe=self.describeWindows)
            settle(0.5)
            self.desktop.picture(self.artefact("replace.png"))
            self.desktop.key("Return")
        waitFor("the dialogue to go", lambda: not self.dialogue(title), 10, describe=self.describeWindows)

    def exportTo(self, path):
        self.press("Export")
        self.choose(EXPORT, path, replaces=path.exists())

    def importFrom(self, path, confirm=True):
        before = {w.id for w in self.desktop.windows()}
        self.press("Import")
        self.choose(IMPORT, path)
        # The question is a window of its own.
        waitFor("the question", lambda: {w.id for w in self.desktop.windows()} - before, 10,
                describe=self.describeWindows)
        settle(0.5)
        self.desktop.picture(self.artefact("question.png"))
        self.desktop.key("Return" if confirm else "Escape")
        waitFor("the question to go", lambda: {w.id for w in self.desktop.windows()} <= before, 10,
                describe=self.describeWindows)

    def anotherHome(self):
        """The program's next start is on another machine."""
        self.home = Home(self.session.folder / f"home-{next(self._homes)}")

    def testEverythingIsAsItWasInAFreshHome(self):
        address = self.chat.urlOf("/other")
        mine = {
            "stickyMenu": True, "hemingwayEnabled": True, "showToolBar": False, "viewWidth": 980.0, "viewHeight": 600.0,
            "zoomLevel": 0.8, "chatUrl": address, "onboardingChatURL": address, "sideBarGroup1": "15-0",
            "searchBarKey": "sk-travels", "markDownString": "# Notes\nof two lines", "lastVisibleWebView": 0}
        self.home.settled(**mine)
        velkin = self.start()
        self.openAbout(velkin)
        document = self.home.folder / "settings.json"
        self.exportTo(document)
        waitFor("the file", document.exists, 10)
        self.assertEqual(stat.S_IMODE(document.stat().st_mode), 0o600)
        told = json.loads(document.read_text())
        self.assertEqual(told["searchKey"], "sk-travels")
        self.assertNotIn("sideBarGroup2", told)
        self.assertNotIn("sk-travels", velkin.errorText())
        velkin.end()

        self.anotherHome()
        velkin = self.start()
        self.assertNotIn("chatUrl", self.home.readSettings())
        self.openAbout(velkin)
        self.importFrom(document, confirm=False)
        settle()
        self.assertNotIn("chatUrl", self.home.readSettings())
        self.importFrom(document)
        waitFor("the key", lambda: self.home.readSettings().get("searchBarKey") == "sk-travels", 10,
                describe=self.home.readSettings)
        now = self.home.readSettings()
        for key, value in mine.items():
            if isinstance(value, float):
                # The document has the noise of single precision.
                self.assertAlmostEqual(now[key], value, 6, key)
            else:
                self.assertEqual(now[key], value, key)
        self.assertEqual(now["releaseNoteVersion"], BUILD_NUMBER)
        self.assertTrue(now["onboardingCompleted"])
        velkin.end()

        # And it works so: the page, the window's size, the zoom, the toolbar that is off, the group.
        before = len(self.chat.pagesOf("/other"))
        velkin = self.start()
        window = self.openPopover(velkin)
        self.assertEqual((window.width, window.height), (980, 600))
        page = self.chat.page("/other", number=before)
        waitFor("the page at its zoom", lambda: abs(page.ask("innerWidth") - 980 / 0.8) <= 1, 10,
                describe=lambda: page.ask("innerWidth"))
        self.assertNotIn("without a transient parent", self.errors.read_text())
        self.desktop.key("ctrl+1")
        self.services.bard.page()
        self.services.jira.page()

    def testALastViewThatDoesNotExistIsTheFirstOne(self):
        self.home.settled(hemingwayEnabled=True)
        document = self.home.folder / "settings.json"
        document.write_text('{"lastVisibleWebView": 99}')
        velkin = self.start()
        self.openPopover(velkin)
        self.chat.page()
        velkin.clickIcon(self.desktop)
        self.waitForClosed()
        self.openAbout(velkin)
        self.importFrom(document)
        waitFor("it to be stored", lambda: self.home.readSettings()["lastVisibleWebView"] == 99, 10)
        self.desktop.key("alt+F4")
        waitFor("About to close", lambda: not self.about(), 10)
        self.openPopover(velkin)
        self.desktop.key("ctrl+j")
        self.services.jira.page()
        velkin.end()
        settings = self.home.readSettings()
        settings["lastVisibleWebView"] = 99
        self.home.writeSettings(**settings)
        self.services.clear()
        velkin = self.start()
        self.openPopover(velkin)
        self.chat.page()
        self.assertTrue(velkin.running())

    def testAFileThatIsNoDocumentIsToldInPlaceAndChangesNothing(self):
        self.home.settled(chatUrl=self.chat.url)
        document = self.home.folder / "settings.json"
        document.write_text('{"chatUrl": 17, "searchKey": "sk-secret"}')
        velkin = self.start()
        before = self.openAbout(velkin)
        self.importFrom(document)
        # One more line makes the panel taller, or it stands in the room that is there.
        waitFor("the log", lambda: "Error decoding JSON data" in velkin.errorText(), 10)
        settle(0.5)
        self.desktop.picture(self.artefact("told.png"))
        self.assertGreaterEqual(self.about().height, before.height)
        self.assertEqual(self.home.readSettings()["chatUrl"], self.chat.url)
        self.assertNotIn("sk-secret", velkin.errorText())

    def testAFullDiskLeavesTheOldFileWhole(self):
        self.home.settled(markDownString="x" * 20_000)
        folder = self.home.folder / "disk"
        folder.mkdir()
        made = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "tmpfs", str(folder)], capture_output=True,
                              check=False)
        if made.returncode != 0:
            self.skipTest("this system lets nobody make a disk")
        self.addCleanup(subprocess.run, ["umount", "--lazy", str(folder)], check=False)
        (folder / "filler").write_bytes(b"x" * 48 * 1024)
        old = folder / "settings.json"
        old.write_text("what was there before")
        velkin = self.start()
        self.openAbout(velkin)
        self.exportTo(old)
        waitFor("the log", lambda: "No space left on device" in velkin.errorText(), 10, velkin.errorText)
        settle(0.3)
        self.desktop.picture(self.artefact("told.png"))
        self.assertEqual(old.read_text(), "what was there before")
        self.assertEqual(sorted(path.name for path in folder.iterdir()), ["filler", "settings.json"])
        self.assertTrue(velkin.running())
