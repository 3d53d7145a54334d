"""What must not get out: keys into a page that is hidden, and anything at all out of an answer."""
import ctypes
import fcntl
import os
import socket
import struct
import threading
import unittest

from harness.case import VelkinTestCase
from harness.completions import sharedCompletions, well
from harness.paths import ARTEFACTS
from harness.waiting import settle, waitFor

SEARCH_KEY = "ctrl+shift+r"


class Leaks(VelkinTestCase):
    def setUp(self):
        super().setUp()
        self.completions = sharedCompletions()
        self.completions.clear()

    def begin(self, **settings):
        self.home.settled(searchBarKey="sk-test", **settings)
        return self.start()

    def searchPanel(self):
        found = [w for w in self.desktop.windows() if w.title != "Velkin" and not w.overrideRedirect]
        return found[0] if found else None

    def openPanel(self):
        self.desktop.key(SEARCH_KEY)
        panel = waitFor("the panel", self.searchPanel, 10, describe=self.describeWindows)
        waitFor("the panel to have the keyboard", lambda: self.desktop.activeWindow() == panel.id, 10)
        return panel

    def showAnswer(self, markdown):
        """Asks, and returns the panel with the answer in it."""
        self.completions.willAnswer(well(markdown))
        self.openPanel()
        self.desktop.type("question")
        self.desktop.key("Return")
        self.completions.waitForRequest(0)

        def shown():
            panel = self.searchPanel()
            return panel if panel and panel.height > 400 and self.desktop.colourAt(
                panel.right - 22, panel.bottom - 16) == (0xF0, 0xF0, 0xF4) else None

        return waitFor("the answer", shown, 20, describe=self.describeWindows)


class Keys(Leaks):
    def pasteAfter(self, close):
        """Closes the popover in this way, and pastes a key into the panel."""
        velkin = self.startOnChat()
        window = self.openPopover(velkin)
        page = self.chat.page()
        self.clickInPage(page, window, "text")
        self.desktop.type("draft")
        waitFor("the draft", lambda: page.ask("document.getElementById('text').value") == "draft", 10)
        close(velkin)
        self.waitForClosed()
        holder = self.desktop.copy(b"sk-canary")
        self.addCleanup(holder.wait)
        self.addCleanup(holder.kill)
        self.openPanel()
        self.desktop.type("x")
        self.desktop.key("BackSpace", "ctrl+a", "ctrl+v", "Return")
        waitFor("the key to be stored", lambda: self.home.readSettings().get("searchBarKey") == "sk-canary", 10,
                describe=lambda: page.ask("document.getElementById('text').value"))
        self.assertEqual(page.ask("document.getElementById('text').value"), "draft")

    def testAKeyPastedAfterEscapeReachesThePanelAndNotTheHiddenPage(self):
        self.pasteAfter(lambda velkin: self.desktop.key("Escape"))

    def testAKeyPastedAfterAClickOnTheIconReachesThePanelAndNotTheHiddenPage(self):
        self.pasteAfter(lambda velkin: velkin.clickIcon(self.desktop))

    def testAQuickCopyAndPasteFromABusyPage(self):
        velkin = self.startOnChat()
        window = self.openPopover(velkin)
        page = self.chat.page()
        holder = self.desktop.copy(b"old")
        self.addCleanup(holder.wait)
        self.addCleanup(holder.kill)
        self.clickInPage(page, window, "text")
        page.ask("addEventListener('copy', () => { const end = Date.now() + 600; while (Date.now() < end); });"
                 "document.getElementById('text').value = 'needle'; document.getElementById('text').select(); 1")
        clipboard = lambda: self.session.output("timeout", "2", "xclip", "-selection", "clipboard", "-o", check=False)
        self.desktop.key("ctrl+c", "ctrl+f", "ctrl+v", "exclam", "ctrl+a", "ctrl+x")
        waitFor("what was copied and pasted", lambda: clipboard() == "needle!", 10, describe=clipboard)


class Answers(Leaks):
    def testNoKeyOpensABrowserByTheAnswersOwnScript(self):
        self.begin()
        panel = self.showAnswer(
            "text\n\n<a id=\"x\" href=\"https://example.org/?stolen\">l</a>\n"
            "<script>addEventListener('keydown', () => { for (let i = 0; i < 160; ++i) x.click(); });"
            "addEventListener('mousedown', () => x.click());</script>\n\nmore")
        self.desktop.click(panel.centre[0], panel.bottom - 40)
        self.desktop.key("Down", "Down", "Down")
        settle(2)
        self.assertEqual(self.home.openedInBrowser(), [])

    def testAClickOnPlainTextPutsNothingOnTheClipboard(self):
        self.begin()
        panel = self.showAnswer(
            "<style>.copy-button.x { position: fixed; inset: 0; opacity: 0; width: 100%; height: 100%; }</style>\n"
            "<div onmousedown=\"copyCode(this)\" ONMOUSEUP=\"copyCode(this)\" onkeydown=\"copyCode(this)\""
            " style=\"position:fixed;inset:0\">"
            "<code style=\"opacity:0\">rm -rf ~</code>"
            "<svg width=\"900\" height=\"900\" onclick=\"copyCode(this.parentNode)\"></svg></div>\n"
            "<pre><code style=\"opacity:0\">rm -rf ~</code>"
            "<button class=\"copy-button x\" onclick=\"copyCode(this)\">Copy</button></pre>\n\nPlain text.")
        holder = self.desktop.copy(b"mine")
        self.addCleanup(holder.wait)
        self.addCleanup(holder.kill)
        settle(0.3)
        for x, y in ((panel.centre[0], panel.bottom - 60), (panel.x + 60, panel.y + 200), panel.centre):
            self.desktop.click(x, y)
        self.desktop.key("Down")
        settle(1)
        self.assertEqual(self.session.output("timeout", "2", "xclip", "-selection", "clipboard", "-o", check=False),
                         "mine")

    def testALinkThatIsClickedOpensTheBrowserOnce(self):
        self.begin()
        panel = self.showAnswer("<a href=\"https://example.org/wanted\" style=\"position:fixed;inset:0\">l</a>")
        self.desktop.click(panel.centre[0], panel.bottom - 60)
        waitFor("the browser", lambda: self.home.openedInBrowser() == ["https://example.org/wanted"], 10,
                describe=self.home.openedInBrowser)


class NameServer:
    """Answers every question with "no such name", and remembers it."""

    def __init__(self):
        self.names = []
        self._socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self._socket.bind(("127.0.0.1", 53))
        threading.Thread(target=self._serve, daemon=True).start()

    def _serve(self):
        while True:
            try:
                question, sender = self._socket.recvfrom(1024)
            except OSError:
                return
            labels, at = [], 12
            while question[at]:
                labels.append(question[at + 1:at + 1 + question[at]].decode(errors="replace"))
                at += 1 + question[at]
            self.names.append(".".join(labels))
            reply = question[:2] + struct.pack(">HHHHH", 0x8183, 1, 0, 0, 0) + question[12:at + 5]
            self._socket.sendto(reply, sender)

    def stop(self):
        self._socket.close()


class Names(Leaks):
    """Only in a network and a view of the file system of its own: it takes the place of the system's name server."""

    @classmethod
    def setUpClass(cls):
        # The machine's own network would keep the address, and lose its way to all others that begin like it.
        if "VELKIN_OWN_NETWORK" not in os.environ:
            raise unittest.SkipTest("not in a network of its own: tests/session/own-network gives it one")
        # Whoever may have a network of its own for the tests may see other files in it, too.
        libc = ctypes.CDLL(None, use_errno=True)
        ARTEFACTS.mkdir(parents=True, exist_ok=True)
        told = ARTEFACTS / f"resolv.conf.{os.getpid()}"
        told.write_text("nameserver 127.0.0.1\noptions timeout:1 attempts:1\n")
        newMounts, bind, private, recursive = 0x00020000, 0x1000, 0x40000, 0x4000
        if (libc.unshare(newMounts) != 0 or libc.mount(None, b"/", None, private | recursive, None) != 0
                or libc.mount(os.fsencode(told), b"/etc/resolv.conf", None, bind, None) != 0):
            raise unittest.SkipTest("this system doesn't let us put a name server in the place of its own")
        try:
            cls.giveTheNetworkAnAddress()
            cls.names = NameServer()
        except OSError as error:
            raise unittest.SkipTest(f"no place for a name server: {error}")
        cls.addClassCleanup(cls.names.stop)
        super().setUpClass()

    @staticmethod
    def giveTheNetworkAnAddress():
        """Where there are none but loopback addresses, nothing is looked up at all."""
        setAddress = 0x8916
        address = struct.pack("HH4s8x", socket.AF_INET, 0, socket.inet_aton("10.83.0.1"))
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as any:
            fcntl.ioctl(any, setAddress, struct.pack("16s16s", b"lo:1", address))

    def testNothingInAnAnswerIsLookedUpOrConnectedTo(self):
        velkin = self.begin()
        self.openPopover(velkin)
        self.chat.page().ask(
            "for (const [r, h] of [['preconnect', 'page-connects'], ['dns-prefetch', 'page-looks-up']])"
            "{ const l = document.createElement('link'); l.rel = r; l.href = 'http://' + h + '.test'; "
            "document.head.append(l); } 1")
        waitFor("a page's own look-up, without which this proves nothing",
                lambda: "page-connects.test" in self.names.names, 15, describe=lambda: self.names.names)
        self.desktop.key("Escape")
        self.waitForClosed()

        listener = socket.socket()
        self.addCleanup(listener.close)
        listener.bind(("127.0.0.1", 0))
        listener.listen()
        listener.settimeout(0.1)
        port = listener.getsockname()[1]
        links = "".join(f'<link rel="{relation}" href="http://answer-{relation}.test/">'
                        f'<link rel="{relation}" href="http://127.0.0.1:{port}/">'
                        for relation in ("preconnect", "dns-prefetch", "prefetch", "preload", "stylesheet",
                                         "modulepreload", "icon", "manifest"))
        self.showAnswer(f'{links}<meta http-equiv="x-dns-prefetch-control" content="on">'
                        f'<base href="http://answer-base.test/"><img src="http://answer-img.test/x">'
                        f'<svg><image href="http://answer-svg.test/x"/></svg>'
                        f'<a href="http://answer-a.test/" ping="http://answer-ping.test/">l</a>'
                        f'<iframe src="http://answer-frame.test/"></iframe>\n\ntext')
        settle(3)
        self.assertEqual([name for name in self.names.names if name.startswith("answer")], [])
        with self.assertRaises(socket.timeout):
            listener.accept()
