"""The scratchpad: writing Markdown in the popover and beside a page, its tool bars, its preview and its journal."""
import random
import signal
import struct
import time
import unittest

from harness import VelkinTestCase, waitFor
from harness.waiting import settle
from harness.wayland import WaylandTestCase

LIGHT_PAGE = (0xF0, 0xF0, 0xF4)
MAGIC = b"velkin-scratchpad 1\n"
# The tools of the bars by their distance from the window's left, where it is 600 points wide.
TOOLS = {"Bold": 262, "Italics": 300, "Strikethrough": 338, "Preview Bottom": 536, "Preview Right": 574}
FOOTER = {"Delete": 26, "Header": 148, "Table": 186, "Block Quote": 224, "Inline Code": 262, "Code Block": 300,
          "Divider": 338, "Link": 376, "Image": 414, "Copy": 536, "Earlier Texts": 574}
HEADER_BAR = 63
FOOTER_BAR = 21


def textOf(path):
    """The text that the changes in a file of the journal lead to."""
    data = path.read_bytes()
    assert data.startswith(MAGIC), data[:40]
    at, text = len(MAGIC), b""
    while at + 16 <= len(data):
        position, removed, length, _ = struct.unpack_from("<4I", data, at)
        if at + 16 + length > len(data):
            break
        text = text[:position] + data[at + 16:at + 16 + length] + text[position + removed:]
        at += 16 + length
    return text.decode()


class ScratchpadCase(VelkinTestCase):
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
        self.switchToScratchpad()
        return velkin

    def switchToScratchpad(self):
        self.desktop.key("ctrl+m")
        waitFor("the scratchpad", lambda: self.home.readSettings()["lastVisibleWebView"] == 6, 10)
        self.window = self.waitForPopover()
        self.waitForPreview()

    def waitForPreview(self):
        waitFor("the preview to be painted",
                lambda: self.desktop.colourAt(self.window.right - 4, self.window.bottom - 60) == LIGHT_PAGE, 40,
                describe=lambda: self.desktop.colourAt(self.window.right - 4, self.window.bottom - 60))

    def waitForText(self, text):
        waitFor(f"the text {text!r}", lambda: self.lastText() == text, 10, describe=self.lastText)

    def write(self, text):
        """In the place of all that is there."""
        self.desktop.key("ctrl+a")
        self.desktop.type(text)
        self.waitForText(text)

    def tool(self, name):
        if name in TOOLS:
            self.desktop.click(self.window.x + TOOLS[name], self.window.y + HEADER_BAR)
        else:
            self.desktop.click(self.window.x + FOOTER[name], self.window.bottom - FOOTER_BAR)

    def waitForOwner(self, kind):
        """Until the clipboard offers something of this kind."""
        waitFor(f"{kind} on the clipboard",
                lambda: kind in self.session.output("timeout", "2", "xclip", "-selection", "clipboard", "-o", "-t",
                                                    "TARGETS", check=False), 20)

    def clipboard(self):
        return self.session.output("timeout", "2", "xclip", "-selection", "clipboard", "-o", check=False)


class Scratchpad(ScratchpadCase):
    def testWritingIsPaintedInThePreview(self):
        self.openScratchpad()
        self.desktop.picture(self.artefact("sample.png"))
        self.write("hello *world*")
        x, y = self.window.x + self.window.width // 2 + 40, self.window.y + 95

        def colours():
            cut = f"150x20+{x}+{y}"
            return int(self.session.output("import", "-window", "root", "-crop", cut, "-format", "%k", "info:"))

        waitFor("the text in the preview", lambda: colours() > 3, 10, describe=colours)
        self.desktop.key("ctrl+a", "BackSpace")
        waitFor("the empty page", lambda: colours() == 1, 10, describe=colours)

    def testEachToolPutsItsMarkdownWhereTheCursorIs(self):
        self.openScratchpad()
        rows = [("Bold", "**x**"), ("Italics", "*x*"), ("Strikethrough", "~~x~~"), ("Inline Code", "`x`"),
                ("Block Quote", "\n > x"), ("Code Block", "```\nx\n```"), ("Divider", "\n---\nx"),
                ("Link", "[x]()"), ("Image", "![x]()")]
        for name, text in rows:
            self.desktop.key("ctrl+a", "BackSpace")
            self.tool(name)
            # Right behind the click, without a look.
            self.desktop.type("x")
            self.waitForText(text)

    def testASelectionIsWrappedAndOneStepOfUndoAndRedo(self):
        self.openScratchpad()
        self.write("some words")
        self.desktop.key("ctrl+shift+Left")
        self.tool("Bold")
        self.waitForText("some **words**")
        self.assertEqual(self.clipboard(), "")
        self.desktop.key("ctrl+z")
        self.waitForText("some words")
        self.desktop.key("ctrl+shift+z")
        self.waitForText("some **words**")
        self.desktop.key("ctrl+Home", "shift+End")
        self.tool("Link")
        self.desktop.type("a")
        self.waitForText("[some **words**](a)")

    def testWhatAnotherProgramCopiedIsWrappedOnceAndKeysWaitForIt(self):
        self.openScratchpad()
        self.write("-")
        holder = self.desktop.copy("far ä".encode())
        self.addCleanup(holder.kill)
        self.waitForOwner("UTF8_STRING")
        self.tool("Bold")
        self.desktop.type("y")
        self.waitForText("-**far ä**y")
        self.assertEqual(self.clipboard(), "")
        self.tool("Bold")
        self.desktop.type("z")
        self.waitForText("-**far ä**y**z**")

    def testAHeaderAndATableFromTheirBubbles(self):
        self.openScratchpad()
        self.desktop.key("ctrl+a", "BackSpace")
        self.tool("Header")
        settle(0.5)
        self.desktop.picture(self.artefact("header.png"))
        self.desktop.key("Tab", "Return")
        waitFor("a header", lambda: (self.lastText() or "").startswith("#"), 10, describe=self.lastText)
        self.desktop.type("Title")
        waitFor("the title behind it", lambda: self.lastText().endswith("# Title"), 10, describe=self.lastText)
        self.desktop.key("ctrl+a", "BackSpace")
        self.tool("Table")
        settle(0.5)
        self.desktop.picture(self.artefact("table.png"))
        self.desktop.key("Escape")
        settle(0.5)

    def testCopyAndDelete(self):
        self.openScratchpad()
        self.write("all of it")
        self.tool("Copy")
        waitFor("the clipboard", lambda: self.clipboard() == "all of it", 10, describe=self.clipboard)
        self.tool("Delete")
        settle(0.3)
        self.desktop.key("ctrl+z", "End")
        self.desktop.type("!")
        self.waitForText("all of it!")

    def testThePreviewStandsOnTheRightOrBelowOrNowhere(self):
        self.openScratchpad()
        middle = (self.window.right - 60, self.window.y + 350)
        low = (self.window.x + 60, self.window.bottom - 60)
        places = {"right": (True, False), "below": (False, True), "nowhere": (False, False)}

        def place():
            return tuple(self.desktop.colourAt(*at) == LIGHT_PAGE for at in ((middle[0], self.window.y + 130), low))

        self.write("a")
        waitFor("the preview on the right", lambda: place() == places["right"], 10, describe=place)
        self.tool("Preview Bottom")
        waitFor("the preview below", lambda: place() == places["below"], 10, describe=place)
        self.desktop.picture(self.artefact("below.png"))
        self.tool("Preview Bottom")
        waitFor("no preview", lambda: place() == places["nowhere"], 10, describe=place)
        self.tool("Preview Right")
        waitFor("the preview on the right again", lambda: place() == places["right"], 10, describe=place)
        self.desktop.type("b")
        self.waitForText("ab")

    def testALinkOpensInTheBrowserAndThePageStays(self):
        self.openScratchpad()
        self.write("# [[[[here](https://example.org/a)")
        self.write("# [wwwwwwwwwwww](https://example.org/a)")
        settle(0.5)
        self.desktop.click(self.window.right - 200, self.window.y + 115)
        waitFor("the browser", lambda: self.home.openedInBrowser() == ["https://example.org/a"], 10,
                describe=self.home.openedInBrowser)

    def testThePageSurvivesItsProcess(self):
        velkin = self.openScratchpad()
        self.write("alive")
        velkin.killWebProcesses()
        self.desktop.type("!")
        self.waitForText("alive!")
        settle(1)
        self.waitForPreview()

    def testTheSampleShowsAgainAndOneClickBringsTheTextBack(self):
        self.openScratchpad()
        self.write("my own words")
        self.desktop.key("ctrl+m")
        waitFor("chat", lambda: self.home.readSettings()["lastVisibleWebView"] == 0, 10)
        settle(1)
        self.switchToScratchpad()
        settle(0.5)
        self.desktop.picture(self.artefact("offer.png"))
        self.desktop.click(self.window.x + 90, self.window.y + 99)
        settle(0.5)
        self.desktop.key("ctrl+End")
        self.desktop.type("!")
        self.waitForText("my own words!")

    def testBesideChatItTakesTheKeyboardAndStaysUsable(self):
        velkin = self.startOnChat(hemingwayEnabled=True, viewWidth=980.0)
        self.window = self.openPopover(velkin)
        self.desktop.key("ctrl+super+m")
        waitFor("the sidebar", lambda: self.chat.page().ask("innerWidth") < 900, 10)
        settle(1)
        self.desktop.picture(self.artefact("beside.png"))
        self.desktop.key("ctrl+a")
        self.desktop.type("beside chat")
        self.waitForText("beside chat")

    def testDarkness(self):
        self.home.settled(hemingwayEnabled=True)
        velkin = self.start(environment={"ADW_DEBUG_COLOR_SCHEME": "prefer-dark"})
        self.openPopover(velkin)
        self.desktop.key("ctrl+m")
        settle(3)
        self.desktop.picture(self.artefact("dark.png"))


class BadInput(ScratchpadCase):
    """What no person writes."""

    def paste(self, content, kind="UTF8_STRING"):
        holder = self.desktop.copy(content, kind)
        self.addCleanup(holder.kill)
        self.waitForOwner(kind)
        self.desktop.key("ctrl+v")

    def testWhatIsTooLongOrNoTextIsRefusedWithANotice(self):
        self.openScratchpad()
        self.write("mine")
        bar = (self.window.x + 200, self.window.y + 88)
        quiet = self.desktop.colourAt(*bar)
        self.paste(b"x" * (50 << 20))
        waitFor("the notice", lambda: self.desktop.colourAt(*bar) != quiet, 20)
        settle(2)
        self.desktop.picture(self.artefact("toolong.png"))
        self.desktop.key("End")
        self.desktop.type("!")
        self.waitForText("mine!")
        self.paste(b"\x89PNG\r\n", "image/png")
        settle(0.5)
        self.desktop.type("!")
        self.waitForText("mine!!")

    def testBrokenTextIsMended(self):
        self.openScratchpad()
        self.desktop.key("ctrl+a")
        self.paste(b"a\x00b\xff\xc3c")
        self.waitForText("a\ufffdb\ufffd\ufffdc")

    def testAClipboardThatNeverAnswersHoldsKeysUpForAMoment(self):
        self.openScratchpad()
        self.write("-")
        holder = self.desktop.copy(b"never")
        self.waitForOwner("UTF8_STRING")
        holder.send_signal(signal.SIGSTOP)
        self.addCleanup(holder.kill)
        self.addCleanup(holder.send_signal, signal.SIGCONT)
        self.tool("Bold")
        self.desktop.type("x")
        self.waitForText("-**x**")

    def testMonstrousMarkdownLeavesTheEditorAlive(self):
        self.openScratchpad()
        for text in ("<p" * 100000, "> " * 10000 + "x"):
            self.desktop.key("ctrl+a")
            self.paste(text.encode())
            waitFor("the text", lambda: self.lastText() == text, 20)
            self.desktop.key("ctrl+End")
            self.desktop.type("y")
            waitFor("a key behind it", lambda: self.lastText() == text + "y", 20)

    def testAJournalOfNoiseIsNoHindrance(self):
        self.journal.mkdir(parents=True)
        noise = random.Random(3)
        for name in ("9999999999999999-00.text", "9999999999999998-00.text"):
            (self.journal / name).write_bytes(noise.randbytes(100000))
        self.openScratchpad()
        self.desktop.key("ctrl+a")
        self.desktop.type("mine")

        def mine():
            good = [path for path in self.journal.glob("*.text") if path.read_bytes().startswith(MAGIC)]
            return [textOf(path) for path in good] == ["mine"]

        waitFor("the text among the noise", mine, 10)

    def testAFullDiskIsToldOfOnceAndWritingGoesOn(self):
        self.journal.parent.mkdir(parents=True)
        self.journal.write_text("a file in its place")
        velkin = self.openScratchpad()
        self.desktop.key("ctrl+a")
        self.desktop.type("mine")
        waitFor("the line in the log", lambda: "can't be kept" in velkin.errorText(), 10)
        self.desktop.picture(self.artefact("full.png"))
        self.tool("Copy")
        waitFor("the clipboard", lambda: self.clipboard() == "mine", 10, describe=self.clipboard)
        self.assertEqual(velkin.errorText().count("can't be kept"), 1)


class Kills(ScratchpadCase):
    """What was painted is on disk."""

    takesMinutes = True
    kills = 50

    def ink(self, picture):
        """How far the one line of the text reaches on a picture, in pixels from the line's start."""
        width = self.window.width // 2 - 40
        told = self.session.output("convert", picture, "-crop", f"{width}x18+{self.window.x + 13}+{self.window.y + 96}",
                                   "+repage", "-colorspace", "gray", "-threshold", "88%", "-trim", "-format",
                                   "%[fx:page.x+w]", "info:", check=False)
        return int(float(told or 0))

    def paintedLetters(self, width):
        self.desktop.picture(self.artefact("killed.png"))
        return self.ink(self.artefact("killed.png")) / width

    def testNothingThatWasPaintedIsLostToAKill(self):
        chance = random.Random(7)
        velkin = self.openScratchpad()
        # How wide a letter is, and the cursor behind it.
        self.write("m" * 20)
        self.desktop.picture(self.artefact("measure.png"))
        letter = self.ink(self.artefact("measure.png")) / 20
        self.assertGreater(letter, 5)
        for number in range(self.kills):
            if number:
                velkin = self.start()
                self.openPopover(velkin)
                self.switchToScratchpad()
            # The sample's first line must not be taken for what is typed.
            self.desktop.key("ctrl+a")
            self.desktop.key("m")
            waitFor("the first letter", lambda: 0.5 < self.paintedLetters(letter) < 1.5, 15)
            typing = self.session.popen("xdotool", "type", "--delay", "8", "m" * 22)
            time.sleep(chance.uniform(0.05, 0.3))
            painted = self.paintedLetters(letter)
            velkin.end(signal.SIGKILL)
            typing.wait()
            self.waitForClosed()
            text = textOf(max(self.journal.glob("*.text")))
            self.assertEqual(text, "m" * len(text))
            self.assertGreaterEqual(len(text) + 0.5, min(painted, 23.4), (number, text))
            # A text to be brought back would be offered above the editor, and move its first line.
            for file in self.journal.glob("*.text"):
                file.unlink()


class OnWayland(WaylandTestCase, ScratchpadCase):
    """The same in a session of sway."""

    def testWritingToolsAndUndo(self):
        self.openScratchpad()
        self.write("some words")
        self.desktop.key("ctrl+shift+Left")
        self.tool("Bold")
        self.waitForText("some **words**")
        self.desktop.key("ctrl+z")
        self.waitForText("some words")
        self.desktop.key("ctrl+a", "BackSpace")
        self.tool("Link")
        self.desktop.type("x")
        self.waitForText("[x]()")
        self.desktop.picture(self.artefact("wayland.png"))
