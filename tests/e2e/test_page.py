"""What a user expects of a web page in the popover: links, sign-in windows, dialogs, downloads, and a page whose
process dies."""
import subprocess
import time

from harness import VelkinTestCase, waitFor
from harness.notified import Notices
from harness.paths import HARNESS
from harness.services import host
from harness.velkin import Home
from harness.waiting import settle

# The one that has the desktop's bindings.
PYTHON = "/usr/bin/python3"


class Page(VelkinTestCase):
    def open(self, **settings):
        """The program with its popover open on the chat page: sets velkin, window and page."""
        self.velkin = self.startOnChat(**settings)
        self.window = self.openPopover(self.velkin)
        self.page = self.chat.page()

    def click(self, id):
        self.clickInPage(self.page, self.window, id)

    def testALinkToANewWindowGoesToTheBrowser(self):
        self.open()
        windows = len(self.desktop.windows())
        self.click("outside")
        opened = waitFor("the default browser to be called", self.home.openedInBrowser, 10,
                         lambda: self.page.last("click"))
        self.assertEqual(opened, [f"http://{host(9)}:8471/outside"])
        settle()
        self.assertEqual(self.page.ask("location.pathname"), "/chat")
        self.assertLessEqual(len(self.desktop.windows()), windows)

    def testAnOrdinaryLinkStaysInThePopover(self):
        self.open()
        self.click("other")
        self.assertEqual(self.chat.page("/other").ask("document.title"), "chatgpt: another page")
        self.assertEqual(self.home.openedInBrowser(), [])

    def testASignInWindowOpensAndCloses(self):
        self.open()
        before = {window.id for window in self.desktop.windows()}
        self.click("signIn")
        form = self.chat.page("/sign-in")
        window = waitFor("the sign-in window",
                         lambda: [w for w in self.desktop.windows() if w.id not in before and not w.overrideRedirect],
                         10, self.describeWindows)[0]
        settle()
        self.desktop.picture(self.artefact("open.png"))
        self.assertLess(window.width, 600)
        # The same session: it sends the login that the page got.
        self.assertIn("login", self.chat.loads("/sign-in")[0].cookies)
        self.assertIsNotNone(self.popover(), "the popover closed under its own sign-in window")
        form.post("done()")
        waitFor("the sign-in window to close",
                lambda: window.id not in {w.id for w in self.desktop.windows()}, 10, self.describeWindows)
        waitFor("the page to hear of it",
                lambda: any(m["data"] == "signed in" for m in self.page.all("message")), 10)
        self.assertIn("signedIn=yes", self.page.ask("document.cookie"))
        self.assertEqual(len(self.chat.loads()), 1)

    def pasteFrom(self, holder, id):
        self.addCleanup(holder.wait)
        self.addCleanup(holder.kill)
        self.click(id)
        waitFor("the field to have the focus", lambda: self.page.ask("document.activeElement.id") == id, 10)
        self.desktop.key("ctrl+v")
        return waitFor("the page to get the paste", lambda: self.page.last("paste"), 10)

    def testTextCopiedElsewhereIsPasted(self):
        self.open()
        told = self.pasteFrom(self.desktop.copy("Grüße aus dem Nachbarfenster".encode()), "text")
        self.assertEqual(told["text"], "Grüße aus dem Nachbarfenster")
        waitFor("the text", lambda: self.page.ask("document.getElementById('text').value") == told["text"], 10)

    def testAPictureCopiedElsewhereIsPasted(self):
        self.open()
        picture = subprocess.run(["convert", "-size", "20x20", "xc:red", "png:-"], check=True, capture_output=True)
        told = self.pasteFrom(self.desktop.copy(picture.stdout, "image/png"), "rich")
        waitFor("the picture in the field",
                lambda: self.page.ask("document.querySelector('#rich img') && 1"), 10, lambda: told)

    def testLinksWithCtrlOrTheMiddleButtonGoToTheBrowser(self):
        self.open()
        self.desktop.hold("ctrl")
        try:
            self.click("other")
        finally:
            self.desktop.release("ctrl")
        other = self.chat.urlOf("/other")
        waitFor("the browser", lambda: self.home.openedInBrowser() == [other], 10, self.home.openedInBrowser)
        settle(0.5)
        x, y, zoom = self.pageOrigin(self.page, self.window)
        box = self.page.ask("(r => [r.x + r.width / 2, r.y + r.height / 2])"
                            "(document.getElementById('other').getBoundingClientRect())")
        self.desktop.click(round(x + box[0] * zoom), round(y + box[1] * zoom), button=2)
        waitFor("the browser", lambda: self.home.openedInBrowser() == [other, other], 10, self.home.openedInBrowser)
        settle(0.5)
        self.assertEqual(self.page.ask("location.pathname"), "/chat")
        self.assertEqual(self.chat.loads("/other"), [])
        self.assertIsNotNone(self.popover(), "the popover closed over a link")

    def dropOn(self, id, file, *kind):
        """A file dragged by hand from another program's window to the element of the page."""
        source = self.session.popen(PYTHON, HARNESS / "dragsource.py", file, 100, 300, *kind)
        self.addCleanup(source.wait)
        self.addCleanup(source.kill)
        window = waitFor("the other program", lambda: self.desktop.windows(title="Drag Source"), 20)[0]
        settle(0.5)
        x, y, zoom = self.pageOrigin(self.page, self.window)
        box = self.page.ask(f"(r => [r.x + 20, r.y + r.height / 2])"
                            f"(document.getElementById('{id}').getBoundingClientRect())")
        self.desktop.drag(window.centre, (round(x + box[0] * zoom), round(y + box[1] * zoom)))
        return source

    def aFile(self):
        file = self.home.folder / "a file.txt"
        file.write_text("dropped here")
        return file

    def testAFileThatIsDroppedReachesThePage(self):
        # A press elsewhere would close it.
        self.open(stickyMenu=True, zoomLevel=1.2)
        self.dropOn("rich", self.aFile())
        told = waitFor("the page to get the file", lambda: self.page.last("drop"), 15, self.describeWindows)
        self.assertEqual((told["names"], told["texts"]), (["a file.txt"], ["dropped here"]))
        self.assertEqual(told["target"], "rich")
        self.assertEqual(self.page.ask("location.pathname"), "/chat")
        self.assertIsNotNone(self.popover())

    def testAFileThatIsDroppedOnAFieldForFilesIsChosen(self):
        self.open(stickyMenu=True)
        self.page.ask("changed = 0, document.getElementById('upload').addEventListener('change', () => ++changed), 1")
        self.dropOn("upload", self.aFile())
        waitFor("the field to have the file", lambda: self.page.ask("changed"), 15, self.describeWindows)
        self.assertEqual(self.page.ask("document.getElementById('upload').files[0].text()"), "dropped here")

    def testWhatAnotherPageMayHaveMadeIsNoFile(self):
        self.open(stickyMenu=True)
        self.dropOn("rich", self.aFile(), "text/html")
        told = waitFor("the drop", lambda: self.page.last("drop"), 15, self.describeWindows)
        self.assertEqual(told["names"], [])

    def testAFolderThatIsDroppedIsRefusedAndToldOf(self):
        self.open(stickyMenu=True)
        self.dropOn("rich", self.home.downloads)
        waitFor("a word about it", lambda: self.hasToast(self.window), 10)
        self.assertIsNone(self.page.last("drop"))

    def testADownloadThatEndsWhileThePopoverIsClosedIsToldByTheDesktop(self):
        notices = Notices(self.session)
        self.addCleanup(notices.end)
        self.open()
        self.page.post("location = '/slow-file'")
        waitFor("the download to begin", lambda: self.chat.loads("/slow-file"), 15)
        waitFor("a word about its beginning", lambda: self.hasToast(self.window), 10)
        self.desktop.picture(self.artefact("downloading.png"))
        self.velkin.clickIcon(self.desktop)
        self.waitForClosed()
        self.assertEqual(notices.told("notice"), [])
        self.chat.mayEnd.set()
        notice = waitFor("the desktop's notice", lambda: notices.told("notice"), 15, self.velkin.errorText)[0]
        self.assertEqual(notice["title"], "Downloaded “slow.bin”")
        self.assertIn("Show", notice["actions"])
        file = self.home.downloads / "slow.bin"
        self.assertEqual(file.stat().st_size, 40000)
        notices.click(notice["id"])
        shown = waitFor("the file manager", lambda: notices.told("shown"), 15, self.velkin.errorText)[0]
        self.assertEqual(shown["files"], [file.as_uri()])

        # Nothing speaks of the download any more: the page is all that there is.
        self.openPopover(self.velkin)
        settle(1)
        window = self.popover()
        self.desktop.picture(self.artefact("reopened.png"))
        self.assertFalse(self.hasToast(window))

    def testWhereAClickOnANoticeHasAButtonTheNoticeHasNoSecondOne(self):
        notices = Notices(self.session)
        self.addCleanup(notices.end)
        for desktop, wanted in (("LXQt", ["default", "Open"]), ("XFCE", ["default", "Open", "open", "Open"])):
            self.home = Home(self.session.folder / f"home-on-{desktop}")
            count = len(notices.told("notice"))
            velkin = self.start(environment={"XDG_CURRENT_DESKTOP": desktop})
            notice = waitFor("the notice to a new user", lambda: notices.told("notice")[count:], 20, velkin.errorText)[0]
            self.assertEqual(notice["actions"], wanted)
            velkin.end()
            waitFor("the icon to go", lambda: not self.session.trayItems(), 10)

    def hasToast(self, window):
        """A notice is dark and stands over the page's lower end; the page is white there, with text."""
        cut = f"160x50+{window.centre[0] - 80}+{window.bottom - 70}"
        mean = self.session.output("import", "-window", "root", "-crop", cut, "-colorspace", "gray", "-format",
                                   "%[fx:mean]", "info:")
        return float(mean) < 0.6

    def testThePagesContextMenuOpensAndHoldsThePopover(self):
        self.open()
        x, y, zoom = self.pageOrigin(self.page, self.window)
        self.desktop.click(round(x + 300 * zoom), round(y + 400 * zoom), button=3)
        menu = waitFor("the context menu", lambda: [w for w in self.desktop.windows() if w.overrideRedirect], 10,
                       self.describeWindows)[0]
        self.desktop.picture(self.artefact("menu.png"))
        self.assertGreater(menu.height, 40)
        settle(0.5)
        self.assertIsNotNone(self.popover(), "the popover closed under the page's menu")
        self.desktop.key("Escape")
        waitFor("the context menu to close",
                lambda: not [w for w in self.desktop.windows() if w.overrideRedirect], 10, self.describeWindows)
        settle(0.5)
        self.assertIsNotNone(self.popover(), "the popover closed with the page's menu")

    def dialog(self, name, *keys):
        """Clicks the button of a dialog, answers it with the keys, and returns what the page got."""
        self.click(name)
        waitFor("the page to ask", lambda: [a for a in self.page.all("asked") if a["dialog"] == name], 10)
        settle(1)
        self.desktop.picture(self.artefact(f"{name}.png"))
        self.assertFalse([d for d in self.page.all("dialog") if d["dialog"] == name], "the page was not made to wait")
        self.assertIsNotNone(self.popover(), "the popover closed under the dialog")
        for key in keys:
            if len(key) > 1 and key[0] == "=":
                self.desktop.type(key[1:])
            else:
                self.desktop.key(key)
        told = waitFor("the dialog's answer",
                       lambda: [d for d in self.page.all("dialog") if d["dialog"] == name], 10, self.describeWindows)
        return told[-1]["value"]

    def testAlert(self):
        self.open()
        self.assertIsNone(self.dialog("alert", "Return"))
        self.assertIsNotNone(self.popover())

    def testConfirm(self):
        self.open()
        self.assertIs(self.dialog("confirm", "Return"), True)

    def testPrompt(self):
        self.open()
        self.assertEqual(self.dialog("prompt", "ctrl+a", "=Ada", "Return"), "Ada")

    def testAPermissionIsAskedForAndTheAnswerIsRemembered(self):
        self.open()
        # The safe answer is the one that a mere Return gives.
        self.assertEqual(self.dialog("notify", "Return"), "denied")
        self.click("notify")
        waitFor("the second answer", lambda: len([d for d in self.page.all("dialog") if d["dialog"] == "notify"]) == 2,
                10, self.describeWindows)
        self.assertEqual(self.page.last("dialog")["value"], "denied")

        self.velkin.end()
        waitFor("the icon to go", lambda: not self.session.trayItems(), 10)
        self.services.clear()
        self.open()
        self.click("notify")
        told = waitFor("the answer after a restart", lambda: self.page.last("dialog"), 10, self.describeWindows)
        self.assertEqual(told["value"], "denied")

    def testAPermissionThatIsGranted(self):
        self.open()
        self.assertEqual(self.dialog("notify", "Tab", "Return"), "granted")

    def testDownloadsGetUnusedNames(self):
        self.open()
        taken = self.home.downloads / "report.txt"
        taken.write_text("mine")
        for count in (2, 3):
            self.page.ask("document.getElementById('file').blur()")
            self.click("file")
            waitFor(f"{count} files in the download folder", lambda: len(self.files()) == count, 15, self.files)
        self.assertEqual(taken.read_text(), "mine", "a download wrote over a file")
        for path in self.files():
            if path != taken:
                self.assertEqual(path.suffix, ".txt")
                waitFor("the whole content", lambda: path.read_text() == "a file of chatgpt\n", 10)
        self.assertEqual(self.page.ask("location.pathname"), "/chat")
        self.desktop.picture(self.artefact("notice.png"))

    def files(self):
        """The finished files of the download folder."""
        return sorted(path for path in self.home.downloads.iterdir()
                      if not path.name.startswith(".") and path.suffix not in (".part", ".wkdownload"))

    def testAnUploadShowsAFileChooser(self):
        self.open()
        before = {window.id for window in self.desktop.windows()}
        self.click("upload")
        chooser = waitFor("the file chooser", lambda: [w for w in self.desktop.windows() if w.id not in before], 15,
                          self.describeWindows)[0]
        settle()
        self.assertTrue([w for w in self.desktop.windows() if w.id == self.window.id],
                        "the popover closed under its own file chooser")
        self.desktop.key("Escape")
        waitFor("the file chooser to close", lambda: chooser.id not in {w.id for w in self.desktop.windows()}, 10)
        self.assertEqual(self.page.ask("document.getElementById('upload').files.length"), 0)

    def testAWebProcessThatDiesComesBack(self):
        self.open()
        self.assertTrue(self.velkin.killWebProcesses(), "there is no web process to kill")
        waitFor("the page to load again", lambda: len(self.chat.loads()) == 2, 20, self.chat.seen)
        again = self.chat.page(number=1)
        self.assertEqual(again.ask("document.title"), "chatgpt")
        self.assertTrue(self.velkin.running())
        self.assertIsNotNone(self.popover())

    def testAWebProcessThatDiesAgainAndAgainIsLeftAlone(self):
        self.open()
        started = time.monotonic()
        for count in (2, 3, 4):
            self.velkin.killWebProcesses()
            self.chat.page(number=count - 1)
            self.assertEqual(len(self.chat.loads()), count)
        self.velkin.killWebProcesses()
        settle(4)
        if time.monotonic() - started > 55:
            self.skipTest("this machine is too slow to kill four times within a minute")
        self.assertEqual(len(self.chat.loads()), 4, "a fourth reload within a minute")
        window = self.popover()
        self.assertIsNotNone(window)
        self.assertGreater(self.desktop.coloursIn(window), 4, "nothing tells the user what happened")
        self.desktop.picture(self.artefact("page.png"))
        # The page that says so has one control: its Reload button.
        self.desktop.click(window.centre[0], window.y + 10)
        self.desktop.key("Tab", "Return")
        waitFor("the user's own reload", lambda: len(self.chat.loads()) == 5, 10, self.chat.seen)
        self.assertEqual(self.chat.page(number=4).ask("document.title"), "chatgpt")
