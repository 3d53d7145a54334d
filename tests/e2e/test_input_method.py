"""Writing with an input method that composes, as half of the world does."""
import queue
import subprocess
import threading

from harness.case import VelkinTestCase
from harness.completions import sharedCompletions, well
from harness.paths import HARNESS
from harness.waiting import settle, waitFor

# The one that has the desktop's bindings.
PYTHON = "/usr/bin/python3"
HOTKEY = "ctrl+shift+r"


class InputMethod(VelkinTestCase):
    def setUp(self):
        super().setUp()
        self.completions = sharedCompletions()
        self.completions.clear()
        socket = self.session.folder / f"ibus-{self.id()}"
        self.environment = dict(self.session.environment, IBUS_ADDRESS=f"unix:path={socket}", GTK_IM_MODULE="ibus")
        self.begin("ibus-daemon", "--panel", "disable", "--config", "disable", "--cache", "none", "--address",
                   self.environment["IBUS_ADDRESS"])
        waitFor("the input method's daemon", socket.exists, 10)
        self.words = queue.Queue()
        method = self.begin(PYTHON, HARNESS / "inputmethod.py")
        reader = threading.Thread(target=self.read, args=(method.stdout,))
        reader.start()
        self.addCleanup(reader.join)
        self.addCleanup(method.kill)
        self.awaitWord("ready")

    def read(self, output):
        for line in output:
            self.words.put(line.rstrip("\n"))

    def begin(self, *command):
        process = subprocess.Popen(command, env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.DEVNULL, text=True)

        def end():
            process.kill()
            process.wait(10)
            process.stdout.close()

        self.addCleanup(end)
        return process

    def awaitWord(self, word):
        """What the input method tells next."""
        self.assertEqual(self.words.get(timeout=20), word)

    def press(self, key, word):
        self.desktop.key(key)
        self.awaitWord(word)

    def openPanel(self):
        self.home.settled(searchBarKey="sk-test")
        self.start(environment=self.environment)
        self.desktop.key(HOTKEY)
        panel = waitFor("the search bar", self.desktop.windows, 15)[0]
        waitFor("it to have the keyboard", lambda: self.desktop.activeWindow() == panel.id, 15)

    def testWhatIsComposedGetsTheEditingKeysFirst(self):
        self.completions.willAnswer(well("fine"))
        self.openPanel()
        self.press("x", "composing x")
        self.press("space", "committed")
        self.press("a", "composing a")
        self.press("b", "composing ab")
        self.press("BackSpace", "composing a")
        self.press("BackSpace", "composing ")
        self.press("c", "composing c")
        self.press("Escape", "composing ")
        settle(0.3)
        self.assertEqual(len(self.desktop.windows()), 1, "Escape ends the composition, and not the search bar")
        self.press("d", "composing d")
        self.press("Return", "committed")
        settle(0.3)
        self.assertEqual(self.completions.requests, [], "Return ends the composition, and sends nothing")
        self.desktop.key("Return")
        self.assertEqual(self.completions.waitForRequest().prompt, "[x][d]")
