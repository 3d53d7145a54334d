"""The log, which the desktop keeps: what may never stand in it, and that nobody has to read it."""
import fcntl
import os

from harness.case import VelkinTestCase
from harness.completions import sharedCompletions, status, well
from harness.services import host
from harness.waiting import settle, waitFor

SECRET = "canary"


class Log(VelkinTestCase):
    def setUp(self):
        super().setUp()
        self.completions = sharedCompletions()
        self.completions.clear()

    def log(self):
        return self.started[0].errorText()

    def searchPanel(self):
        return next((w for w in self.desktop.windows() if w.width == 720), None)

    def paste(self, text):
        holder = self.desktop.copy(text.encode())
        self.addCleanup(holder.wait)
        self.addCleanup(holder.kill)
        self.desktop.key("ctrl+v")

    def onThePage(self, velkin):
        """Typed, pasted, searched for, and said by the page itself."""
        window = self.openPopover(velkin)
        page = self.chat.page()
        self.clickInPage(page, window, "text")
        before = self.log()
        self.desktop.type(f"{SECRET} typed, 1234 [=-]")
        waitFor("the typed text", lambda: "[=-]" in page.ask("document.getElementById('text').value"), 10)
        self.paste(f"{SECRET} pasted")
        waitFor("the pasted text", lambda: "pasted" in page.ask("document.getElementById('text').value"), 10)
        self.desktop.key("ctrl+a", "BackSpace", "Left", "shift+Home")
        self.assertEqual(self.log(), before, "not even that a key was pressed is in the log")

        self.desktop.key("ctrl+f")
        settle(0.5)
        for text in (f"{SECRET}find", f"{SECRET}'find", f"');window.{SECRET}=1;('"):
            self.desktop.key("ctrl+a")
            self.desktop.type(text)
            self.desktop.key("Return")
        # Three texts, of which two would end the script's literal.
        waitFor("the searches", lambda: self.log().count("Error searching for a text of") == 2, 10, self.log)
        self.assertEqual(page.ask(f"typeof window.{SECRET}"), "undefined", "the text ran as a script")
        self.desktop.key("Escape")

        page.ask(f"console.log('{SECRET} console'); console.error('{SECRET}\\n{SECRET}')")
        page.ask(f"setTimeout(() => {{ throw new Error('{SECRET} thrown') }})")
        page.ask(f"outside = document.getElementById('outside'), outside.href += '?{SECRET}', 1")
        self.clickInPage(page, window, "outside")
        waitFor("the browser", self.home.openedInBrowser, 10)
        page.ask(f"file = document.getElementById('file'), file.href += '?{SECRET}', 1")
        self.clickInPage(page, window, "file")
        waitFor("the download", lambda: list(self.home.downloads.iterdir()), 15)
        # An address that nobody is at, and one of a kind that nobody knows.
        page.post(f"location = 'http://user:{SECRET}@{host(1)}:8472/{SECRET}?code={SECRET}'")
        waitFor("the failed load", lambda: "failed(_:_:)" in self.log(), 15, self.log)
        velkin.clickIcon(self.desktop)
        self.waitForClosed()

    def withAPageThatThrows(self, velkin):
        """A script of the program's own meets a page that throws what it likes."""
        window = self.openPopover(velkin)
        page = self.chat.page()
        page.ask(f"document.querySelectorAll = () => {{ throw new TypeError('{SECRET} '.repeat(1e6)) }}, 1")
        self.clickInPage(page, window, "text")
        self.desktop.key("Return")
        waitFor("the script's error", lambda: "JavaScript error: " in self.log(), 10, self.log)

    def inThePanel(self):
        """A key, prompts, an answer and an error."""
        self.completions.willAnswer(
            well(f"# {SECRET}\n\n<script>document.body.style = null; throw '{SECRET}'</script>"
                 f"<script>location = 'http://{host(1)}:8471/{SECRET}?' + '{SECRET}'.repeat(1e5)</script>"),
            status(401, f"{SECRET} denied".encode()))
        for number, prompt in enumerate((f"{SECRET} prompt", f"{SECRET} again")):
            self.desktop.key("ctrl+shift+r")
            window = waitFor("the panel", self.searchPanel, 10, describe=self.describeWindows)
            waitFor("the panel to have the keyboard", lambda: self.desktop.activeWindow() == window.id, 10)
            self.desktop.type(prompt)
            self.desktop.key("Return")
            self.completions.waitForRequest(number)
            settle(2)
            self.desktop.key("Escape")
            waitFor("the panel to close", lambda: not self.searchPanel(), 10)

    def testNothingThatIsTypedPastedStoredOrVisitedIsInIt(self):
        stored = {"searchBarKey": f"{SECRET}-key", "chatUrl": self.chat.urlOf(f"/chat?{SECRET}=1#{SECRET}")}
        velkin = self.startOnChat(**stored)
        self.onThePage(velkin)
        self.inThePanel()
        velkin.killWebProcesses()
        waitFor("a word of it", lambda: " died; " in self.log(), 10, self.log)
        self.session.output("gapplication", "action", "com.tarnvale.Velkin", "show-view", f"'no{SECRET[:3]}'")
        self.clickMenuItem(velkin, "Quit")
        self.assertEqual(velkin.waitForEnd(), 0)
        waitFor("the icon to go", lambda: not self.session.trayItems(), 10)
        self.services.clear()
        self.withAPageThatThrows(self.startOnChat(experimentalEnabled=True, **stored))
        log = self.log()
        for expected in ("Left click!", f"url=http://{host(1)}:8471", "handleSearchBarDelegate"):
            self.assertIn(expected, log, "this is not the log")
        lines = [line for line in log.splitlines() if SECRET in line.lower()]
        self.assertEqual(lines, [])
        self.assertLess(max(len(line) for line in log.splitlines()), 1000)
        self.assertNotIn("\x1b", log)

    def testAReaderThatSleepsStopsNothing(self):
        reader, writer = os.pipe()
        self.addCleanup(os.close, reader)
        os.set_blocking(writer, False)
        try:
            while True:
                os.write(writer, b"x" * 4096)
        except BlockingIOError:
            pass
        os.set_blocking(writer, True)
        fcntl.fcntl(reader, fcntl.F_SETFL, os.O_NONBLOCK)
        self.home.settled()
        with os.fdopen(writer, "wb") as log:
            velkin = self.start(log=log)
        window = self.openPopover(velkin)
        page = self.chat.page()
        self.clickInPage(page, window, "text")
        self.desktop.type("still here")
        waitFor("the text", lambda: page.ask("document.getElementById('text').value") == "still here", 10)
        velkin.clickIcon(self.desktop)
        self.waitForClosed()

        def read():
            told = b""
            try:
                while True:
                    told += os.read(reader, 65536)
            except BlockingIOError:
                return told

        read()
        velkin.clickIcon(self.desktop)
        told = b""

        def isCounted():
            nonlocal told
            told += read()
            return b"were dropped: " in told

        waitFor("the number of lines that were dropped", isCounted, 10, lambda: told)
        self.assertIn(b"Left click!", told)
