"""Saving the page on show: a PDF by Ctrl+P, and the page with all that it shows by Ctrl+S."""
import plistlib
import re
import shutil
import subprocess

from harness.case import VelkinTestCase
from harness.services import PICTURE, bigPageBytes
from harness.waiting import settle, waitFor


class ExportTestCase(VelkinTestCase):
    def dialogue(self):
        """The save panel's window."""
        found = [w for w in self.desktop.windows() if w.title == "Choose Output Location"
                 or w.title.startswith("Choose a location")]
        return found[0] if found else None

    def begin(self):
        self.documents = self.home.folder / "Documents"
        self.documents.mkdir(exist_ok=True)
        velkin = self.startOnChat()
        self.openPopover(velkin)
        self.chat.page()
        return velkin

    def saveAs(self, keys, path):
        self.ask(keys)
        self.choose(path)
        waitFor("the file", path.exists, 10)

    def ask(self, keys, seconds=20):
        self.desktop.key(keys)
        waitFor("the save panel", self.dialogue, seconds, describe=self.describeWindows)
        settle(0.5)

    def choose(self, name):
        self.desktop.key("ctrl+a")
        self.desktop.type(str(name))
        self.desktop.key("Return")
        waitFor("the panel to go", lambda: self.dialogue() is None, 10, describe=self.describeWindows)

    def pdfText(self, path):
        return subprocess.run(["pdftotext", str(path), "-"], capture_output=True, text=True, check=True).stdout

    def picturePopover(self, path):
        window = self.popover()
        self.session.output("import", "-window", "root", "-crop",
                            f"{window.width}x{window.height}+{window.x}+{window.y}", "+repage", path)

    def smallDisk(self, folder):
        """A disk of 64 kB in the place of the folder, full but for a page of memory."""
        folder.mkdir()
        made = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "tmpfs", str(folder)], capture_output=True,
                              check=False)
        if made.returncode != 0:
            self.skipTest("this system lets nobody make a disk")
        self.addCleanup(subprocess.run, ["umount", "--lazy", str(folder)], check=False)
        (folder / "filler").write_bytes(b"x" * 60 * 1024)


class Export(ExportTestCase):
    def testAPdfHoldsThePagesText(self):
        velkin = self.begin()
        path = self.documents / "page.pdf"
        self.saveAs("ctrl+p", path)
        text = subprocess.run(["pdftotext", str(path), "-"], capture_output=True, text=True, check=True).stdout
        self.assertIn("A page elsewhere", text)
        waitFor("the popover to be there still", self.popover, 10)
        self.assertTrue(velkin.running())

    def testAWebArchiveHoldsThePage(self):
        self.begin()
        path = self.documents / "page.webarchive"
        self.saveAs("ctrl+s", path)
        archive = plistlib.loads(path.read_bytes())
        main = archive["WebMainResource"]
        self.assertEqual(main["WebResourceMIMEType"], "text/html")
        self.assertIn(b"<html", main["WebResourceData"].lower())
        self.assertTrue(main["WebResourceData"].lower().startswith(b"<!doctype html>"))

    def testAWebArchiveHoldsTheServersOwnBytes(self):
        self.begin()
        self.chat.page().ask("""new Promise((done, failed) => {
            const picture = new Image();
            picture.onload = done;
            picture.onerror = failed;
            picture.src = '/picture';
            document.body.append(picture);
        }).then(() => 1)""")
        path = self.documents / "page.webarchive"
        self.saveAs("ctrl+s", path)
        # Another reader of property lists than the one that wrote it.
        xml = self.documents / "page.xml"
        subprocess.run(["plistutil", "-i", str(path), "-f", "xml", "-o", str(xml)], check=True)
        archive = plistlib.loads(xml.read_bytes())
        parts = {part["WebResourceURL"]: part for part in archive["WebSubresources"]}
        picture = parts[self.chat.urlOf("/picture")]
        self.assertEqual(picture["WebResourceMIMEType"], "image/png")
        self.assertEqual(picture["WebResourceData"], PICTURE)
        self.assertIn(b"paragraph 59", archive["WebMainResource"]["WebResourceData"])

    def testOfWhatWeSaveTheRecentFilesHoldTheChosenOnesAlone(self):
        self.begin()
        pdf, archive = self.documents / "page.pdf", self.documents / "page.webarchive"
        self.saveAs("ctrl+p", pdf)
        waitFor("a whole file", lambda: b"%%EOF" in pdf.read_bytes()[-32:], 10)
        self.saveAs("ctrl+s", archive)
        # The toolkit writes its list a moment later, and whoever ends meanwhile has not written it.
        settle(3)
        kept = self.home.data / "recently-used.xbel"
        addresses = re.findall(r'href="([^"]*)"', kept.read_text()) if kept.exists() else []
        self.assertLessEqual(set(addresses), {path.as_uri() for path in (pdf, archive)})
        # The printing's own file is noted by the toolkit: without that, this test would show nothing.
        self.assertTrue(kept.exists(), "the toolkit keeps no such list here")

    def testCancellingLeavesNoFile(self):
        self.begin()
        self.desktop.key("ctrl+p")
        waitFor("the save panel", self.dialogue, 20, describe=self.describeWindows)
        settle(0.5)
        self.desktop.key("Escape")
        waitFor("the panel to go", lambda: self.dialogue() is None, 10)
        self.assertEqual(list(self.documents.iterdir()), [])
        self.assertIsNotNone(self.popover())

    def testTheKeyThatOpenedThePanelIsNotHeldForEver(self):
        self.begin()
        self.desktop.hold("ctrl", "s")
        try:
            waitFor("the save panel", self.dialogue, 20, describe=self.describeWindows)
            waitFor("the panel to have the keyboard", lambda: self.desktop.activeWindow() == self.dialogue().id, 10)
        finally:
            self.desktop.release("s", "ctrl")
        panel = self.dialogue()
        # "Cancel", by the mouse: no key goes up in the popover.
        self.desktop.click(panel.right - 132, panel.bottom - 33)
        waitFor("the panel to go", lambda: self.dialogue() is None, 10, describe=self.describeWindows)
        window = self.waitForPopover()
        self.desktop.click(window.centre[0], window.bottom - 60)
        self.desktop.key("ctrl+r")
        waitFor("the page to load again", lambda: len(self.chat.loads()) > 1, 15, self.chat.seen)
        self.assertIsNone(self.dialogue())

    def testTwiceQuicklyGivesOneDialogue(self):
        self.begin()
        self.desktop.key("ctrl+p", "ctrl+p")
        waitFor("the save panel", self.dialogue, 20, describe=self.describeWindows)
        # A second one would come within the two seconds that a page is given.
        settle(4)
        panels = [w for w in self.desktop.windows() if w.title.startswith("Choose ")]
        self.assertEqual(len(panels), 1, self.describeWindows())

    def testAPageThatGoesAwayMeanwhileIsSavedAsItWas(self):
        self.begin()
        page = self.chat.page()
        self.desktop.key("ctrl+p")
        page.post("location = '/other'")
        self.chat.page("/other")
        waitFor("the save panel", self.dialogue, 20, describe=self.describeWindows)
        settle(0.5)
        path = self.documents / "page.pdf"
        self.choose(path)
        waitFor("the file", path.exists, 10)
        text = self.pdfText(path)
        self.assertTrue(text.startswith("chatgpt\n") or "another page" in text, text[:200])
        self.assertIn("paragraph 59", text)

    def testAWebArchiveOfAPageThatGoesAwayIsWholeOrIsNotThere(self):
        velkin = self.begin()
        page = self.chat.page()
        self.desktop.key("ctrl+s")
        page.post("location = '/other'")
        self.chat.page("/other")
        waitFor("the save panel", self.dialogue, 20, describe=self.describeWindows)
        settle(0.5)
        path = self.documents / "page.webarchive"
        self.choose(path)
        waitFor("the file", path.exists, 10)
        html = plistlib.loads(path.read_bytes())["WebMainResource"]["WebResourceData"]
        self.assertIn(b"paragraph 59", html)
        self.assertTrue(velkin.running())

    def testAFullDiskLeavesNoHalfFile(self):
        velkin = self.begin()
        folder = self.documents / "full"
        self.smallDisk(folder)
        self.ask("ctrl+s")
        self.choose(folder / "page.webarchive")
        waitFor("a word about it", lambda: "Encountered error during webArchive: " in velkin.errorText(), 10,
                lambda: velkin.errorText()[-500:])
        self.assertEqual([file.name for file in folder.iterdir()], ["filler"])
        # What is told stands over the page for a while.
        self.waitForPopover()
        self.desktop.picture(self.artefact("notice.png"))
        self.saveAs("ctrl+s", self.documents / "elsewhere.webarchive")

    def testAFileThatIsThereSurvivesAFullDisk(self):
        velkin = self.begin()
        folder = self.documents / "full"
        self.smallDisk(folder)
        path = folder / "page.mhtml"
        path.write_text("mine")
        self.ask("ctrl+s")
        self.desktop.key("ctrl+a")
        self.desktop.type(str(path))
        self.desktop.key("Return")
        # The dialogue asks before it replaces a file.
        settle(1)
        self.desktop.key("Return")
        waitFor("a word about it", lambda: "Encountered error during webArchive: " in velkin.errorText(), 10,
                lambda: velkin.errorText()[-500:])
        self.assertEqual(path.read_text(), "mine")

    def testAFolderWithANewlineInItsName(self):
        folder = self.home.folder / "Documents" / "two\nlines"
        folder.mkdir(parents=True)
        remembered = self.home.folder / ".local" / "state" / "velkin" / "folders"
        remembered.parent.mkdir(parents=True)
        escaped = str(folder).replace("\n", "\\n")
        remembered.write_text(f"[Folders]\npage={escaped}\n")
        velkin = self.begin()
        self.ask("ctrl+p")
        self.choose("page.pdf")
        waitFor("the file", (folder / "page.pdf").exists, 10, lambda: list(folder.parent.rglob("*")))
        self.assertIn("paragraph 59", self.pdfText(folder / "page.pdf"))
        self.assertTrue(velkin.running())

    def testAFolderThatVanishesIsNoEnd(self):
        velkin = self.begin()
        folder = self.documents / "short-lived"
        folder.mkdir()
        self.ask("ctrl+p")
        self.desktop.key("ctrl+a")
        self.desktop.type(str(folder / "page.pdf"))
        settle(0.5)
        shutil.rmtree(folder)
        self.desktop.key("Return")
        settle(2)
        # The dialogue says so, or the program does.
        for _ in range(3):
            if self.dialogue() is None:
                break
            self.desktop.key("Escape")
            settle(1)
        waitFor("the panel to go", lambda: self.dialogue() is None, 10, describe=self.describeWindows)
        self.assertFalse(folder.exists())
        self.assertTrue(velkin.running())
        if not self.popover():
            self.openPopover(velkin)
        self.saveAs("ctrl+p", self.documents / "page.pdf")

    def testAPdfOfFiveScreensHasItsPicturesAndColours(self):
        self.begin()
        self.chat.page().ask("""document.body.innerHTML =
            ['#c02020', '#20a040', '#2040c0', '#c0a020', '#8020a0'].map((colour, number) =>
                `<div style="height: 100vh; background: ${colour}">screen ${number + 1}</div>`).join('')
            + '<img style="display: block" width="200" height="100" src="data:image/svg+xml,'
            + encodeURIComponent('<svg xmlns="http://www.w3.org/2000/svg"><rect width="200" height="100" fill="#00e0e0"/></svg>')
            + '">'""")
        path = self.documents / "page.pdf"
        self.saveAs("ctrl+p", path)
        text = self.pdfText(path)
        for number in range(1, 6):
            self.assertIn(f"screen {number}", text)
        subprocess.run(["pdftoppm", "-r", "40", "-png", str(path), str(self.documents / "sheet")], check=True)
        colours = ""
        for sheet in sorted(self.documents.glob("sheet*.png")):
            colours += subprocess.run(["convert", str(sheet), "-format", "%c", "histogram:info:-"],
                                      capture_output=True, text=True, check=True).stdout
        for colour in ("C02020", "20A040", "2040C0", "C0A020", "8020A0", "00E0E0"):
            self.assertIn(f"#{colour}", colours)

    def testMhtmlLoadedBackLooksTheSame(self):
        velkin = self.begin()
        settle(1)
        first = self.artefact("before.png")
        second = self.artefact("after.png")
        # The keyboard's focus is not part of the page.
        self.chat.page().ask("document.activeElement && document.activeElement.blur()")
        settle(0.5)
        self.picturePopover(first)
        path = self.documents / "page.mhtml"
        self.saveAs("ctrl+s", path)
        self.assertTrue(re.match(rb"(?s).{0,2000}multipart/related", path.read_bytes()))
        velkin.end()
        waitFor("the icon to go", lambda: not self.session.trayItems(), 10)
        self.services.clear()
        self.openPopover(self.startOnChat(chatUrl=path.as_uri()))

        def difference():
            self.picturePopover(second)
            told = subprocess.run(["compare", "-metric", "AE", "-fuzz", "12%", str(first), str(second), "null:"],
                                  capture_output=True, text=True, check=False).stderr
            return float(told.split()[0])

        waitFor("the same picture", lambda: difference() < 600 * 600 * 0.01, 20, difference)
        self.assertEqual(self.chat.loads(), [], "it comes from the file alone")

    def testAPageThatClosesItselfMeanwhileIsSavedOrIsNot(self):
        velkin = self.begin()
        for keys, name in (("ctrl+p", "page.pdf"), ("ctrl+s", "page.webarchive")):
            self.desktop.key(keys)
            self.chat.page().post("close()")
            ended = lambda: self.dialogue() or "The page could not be saved" in velkin.errorText()
            waitFor("the save panel, or a word", ended, 20, describe=self.describeWindows)
            if self.dialogue():
                settle(0.5)
                self.choose(self.documents / name)
                waitFor("the file", (self.documents / name).exists, 10)
                self.assertGreater((self.documents / name).stat().st_size, 1000)
        self.assertTrue(velkin.running())
        # What closed itself is no dead end.
        window = self.waitForPopover()
        self.desktop.click(window.centre[0], window.bottom - 60)
        self.desktop.key("ctrl+r")
        waitFor("the page to load again", lambda: len(self.chat.loads()) > 1, 15, self.chat.seen)

    def testAPageThatNeverStopsLoadingIsSavedAsItStands(self):
        self.documents = self.home.folder / "Documents"
        self.documents.mkdir()
        velkin = self.startOnChat(chatUrl=self.chat.urlOf("/endless"))
        self.openPopover(velkin)
        page = self.chat.page("/endless")
        self.assertEqual(page.ask("document.readyState"), "interactive")
        self.saveAs("ctrl+p", self.documents / "page.pdf")
        self.assertIn("paragraph 59", self.pdfText(self.documents / "page.pdf"))
        self.saveAs("ctrl+s", self.documents / "page.webarchive")
        html = plistlib.loads((self.documents / "page.webarchive").read_bytes())["WebMainResource"]["WebResourceData"]
        self.assertIn(b"paragraph 59", html)
        self.assertEqual(page.ask("document.readyState"), "interactive")

    def testResourcesThatAreGoneFromTheServerAreSavedAsTheyAreOnShow(self):
        self.begin()
        page = self.chat.page()
        page.ask("""new Promise((done, failed) => {
            const picture = new Image();
            picture.onload = done;
            picture.onerror = failed;
            picture.src = '/picture';
            document.body.prepend(picture);
        }).then(() => 1)""")
        self.chat.isPictureGone = True
        self.assertEqual(page.ask("fetch('/picture', {cache: 'no-store'}).then(answer => answer.status)"), 404)
        asked = len([r for r in self.chat.requests if r.path == "/picture"])
        path = self.documents / "page.webarchive"
        self.saveAs("ctrl+s", path)
        parts = {part["WebResourceURL"]: part for part in plistlib.loads(path.read_bytes())["WebSubresources"]}
        self.assertEqual(parts[self.chat.urlOf("/picture")]["WebResourceData"], PICTURE)
        self.assertEqual(len([r for r in self.chat.requests if r.path == "/picture"]), asked, "it was asked for again")
        self.saveAs("ctrl+p", self.documents / "page.pdf")
        self.assertIn("paragraph 59", self.pdfText(self.documents / "page.pdf"))


class ManyFrames(ExportTestCase):
    """On its own: it takes its time."""

    def testAPageOfTwoThousandFramesIsSavedWithAllThatItShows(self):
        self.documents = self.home.folder / "Documents"
        self.documents.mkdir()
        velkin = self.startOnChat(chatUrl=self.chat.urlOf("/frames"))
        self.openPopover(velkin)
        page = self.chat.page("/frames", seconds=120)
        # The engine itself fills no more than so many.
        shown = page.ask("[...document.querySelectorAll('iframe')]"
                         ".filter(f => f.contentDocument && /frame/.test(f.contentDocument.body.textContent)).length", 60)
        self.assertGreater(shown, 500)
        path = self.documents / "frames.webarchive"
        self.ask("ctrl+s", 90)
        self.choose(path)
        waitFor("the file", path.exists, 60)
        frames = plistlib.loads(path.read_bytes())["WebSubframeArchives"]
        texts = {re.search(rb"frame (\d+)", each["WebMainResource"]["WebResourceData"]).group(1) for each in frames}
        self.assertEqual(len(texts), shown)
        self.assertTrue(velkin.running())
        self.ask("ctrl+p", 90)
        self.choose(self.documents / "frames.pdf")
        waitFor("the file", (self.documents / "frames.pdf").exists, 10)
        self.assertIn("paragraph 59", self.pdfText(self.documents / "frames.pdf"))


class BigPage(ExportTestCase):
    """On its own: it takes its time."""

    def testAPageOfManyMegabytesIsSavedWhole(self):
        self.documents = self.home.folder / "Documents"
        self.documents.mkdir()
        velkin = self.startOnChat(chatUrl=self.chat.urlOf("/big"))
        self.openPopover(velkin)
        self.chat.page("/big", seconds=120)
        settle(1)
        path = self.documents / "big.webarchive"
        self.ask("ctrl+s", 90)
        self.choose(path)
        waitFor("the file", path.exists, 60)
        self.assertGreater(path.stat().st_size, bigPageBytes() // 1008 * 1008)
        html = plistlib.loads(path.read_bytes())["WebMainResource"]["WebResourceData"]
        self.assertEqual(html.count(b"<p>0123456789"), bigPageBytes() // 1008)
        self.assertTrue(velkin.running())
