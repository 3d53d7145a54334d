"""Saving the page on show: a PDF by Ctrl+P, and the page with all that it shows by Ctrl+S."""
import plistlib
import subprocess

from harness.case import VelkinTestCase
from harness.waiting import settle, waitFor


class Export(VelkinTestCase):
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
        self.desktop.key(keys)
        waitFor("the save panel", self.dialogue, 20, describe=self.describeWindows)
        settle(0.5)
        self.desktop.key("ctrl+a")
        self.desktop.type(str(path))
        self.desktop.key("Return")
        waitFor("the panel to go", lambda: self.dialogue() is None, 10, describe=self.describeWindows)
        waitFor("the file", path.exists, 10)

    def testAPdfHoldsThePagesText(self):
        velkin = self.begin()
        path = self.documents / "page.pdf"
        self.saveAs("ctrl+p", path)
        text = subprocess.run(["pdftotext", str(path), "-"], capture_output=True, text=True, check=True).stdout
        self.assertIn("A page elsewhere", text)
        self.assertIsNotNone(self.popover(), "the popover stays")
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

    def testCancellingLeavesNoFile(self):
        self.begin()
        self.desktop.key("ctrl+p")
        waitFor("the save panel", self.dialogue, 20, describe=self.describeWindows)
        settle(0.5)
        self.desktop.key("Escape")
        waitFor("the panel to go", lambda: self.dialogue() is None, 10)
        self.assertEqual(list(self.documents.iterdir()), [])
        self.assertIsNotNone(self.popover())
