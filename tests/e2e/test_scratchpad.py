"""The scratchpad: writing Markdown in the popover and beside a page, its tool bars, its preview and its journal."""
import struct

from harness import VelkinTestCase, waitFor
from harness.waiting import settle

LIGHT_PAGE = (0xF0, 0xF0, 0xF4)
DARK_PAGE = (0x16, 0x1B, 0x22)


def textOf(path):
    """The text that the changes in a file of the journal lead to."""
    data = path.read_bytes()
    magic = b"velkin-scratchpad 1\n"
    assert data.startswith(magic), data[:40]
    at, text = len(magic), b""
    while at + 16 <= len(data):
        position, removed, length, _ = struct.unpack_from("<4I", data, at)
        text = text[:position] + data[at + 16:at + 16 + length] + text[position + removed:]
        at += 16 + length
    assert at == len(data), "a part of a change is left"
    return text.decode()


class ScratchpadCase(VelkinTestCase):
    screen = "1280x900"

    @property
    def journal(self):
        return self.home.data / "velkin" / "scratchpad"

    def texts(self):
        """What the journal holds, the newest first."""
        return [textOf(path) for path in sorted(self.journal.glob("*.text"), reverse=True)]

    def lastText(self):
        texts = self.texts() if self.journal.exists() else []
        return texts[0] if texts else None

    def openScratchpad(self, **settings):
        """The popover with the scratchpad in the main place, which has the keyboard."""
        velkin = self.startOnChat(hemingwayEnabled=True, **settings)
        self.openPopover(velkin)
        self.desktop.key("ctrl+m")
        waitFor("the scratchpad", lambda: self.home.readSettings()["lastVisibleWebView"] == 6, 10)
        self.window = self.waitForPopover()
        return velkin

    def waitForText(self, text):
        waitFor(f"the text {text!r}", lambda: self.lastText() == text, 10, describe=self.lastText)

    def write(self, text):
        """In the place of all that is there."""
        self.desktop.key("ctrl+a")
        self.desktop.type(text)
        self.waitForText(text)


class Scratchpad(ScratchpadCase):
    def testLook(self):
        self.openScratchpad()
        settle(2)
        self.desktop.picture(self.artefact("sample.png"))
        self.write("hello world")
        settle(1)
        self.desktop.picture(self.artefact("hello.png"))
        self.desktop.key("ctrl+super+g")
        settle(2)
        self.desktop.picture(self.artefact("sidebar.png"))
