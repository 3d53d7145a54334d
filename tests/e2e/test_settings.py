"""A settings file that is not what it should be must not keep the program from starting."""
import plistlib

from harness import VelkinTestCase, waitFor
from harness.services import host
from harness.waiting import settle

FATAL = "Unexpectedly found nil while unwrapping an Optional value"


class BadSettings(VelkinTestCase):
    def usable(self):
        """Started, with an icon, and a click opens the popover. Returns the process."""
        velkin = self.start()
        self.openPopover(velkin)
        return velkin

    def writeRaw(self, content):
        self.home.settingsFile.parent.mkdir(mode=0o700)
        self.home.settingsFile.write_bytes(content)

    def backups(self):
        return [path for path in self.home.settingsFile.parent.iterdir() if ".corrupt-" in path.name]

    def testNoiseIsKeptBesideAndReported(self):
        noise = bytes(range(256)) * 20
        self.writeRaw(noise)
        velkin = self.usable()
        self.assertEqual([path.read_bytes() for path in self.backups()], [noise])
        self.assertIn("corrupt", velkin.errorText())
        plistlib.loads(self.home.settingsFile.read_bytes())

    def testATruncatedFileIsKeptBeside(self):
        whole = plistlib.dumps({"onboardingCompleted": True, "chatUrl": f"http://{host(2)}:8471/"})
        self.writeRaw(whole[:len(whole) // 2])
        self.usable()
        self.assertEqual(len(self.backups()), 1)

    def testAnEmptyFileIsNoReasonToFail(self):
        self.writeRaw(b"")
        self.usable()

    def testAFolderInThePlaceOfTheFile(self):
        self.home.settingsFile.mkdir(parents=True)
        self.usable()

    def testValuesOfWrongTypesReadAsAbsent(self):
        self.home.writeSettings(
            onboardingCompleted="perhaps", releaseNoteVersion=[1, 2], stickyMenu={"a": 1}, viewWidth="wide",
            viewHeight=b"tall", zoomLevel=[], lastVisibleWebView="chat", chatUrl=17, showToolBar=3.5)
        velkin = self.usable()
        window = self.popover()
        self.assertEqual((window.width, window.height), (600, 600))
        self.assertTrue(velkin.running())

    def testAnAddressThatIsNoneEndsTheProgramOnceOnly(self):
        self.home.settled(chatUrl="not a url")
        velkin = self.start(wait=False)
        self.assertNotEqual(velkin.waitForEnd(), 0)
        self.assertIn(FATAL, velkin.errorText())

        again = self.start()
        self.openPopover(again)
        self.chat.page()
        self.assertTrue(again.running())


class OddServers(VelkinTestCase):
    """The chat address leads to a server that fails: the program stays in the user's hands."""

    def onChatAt(self, path):
        self.home.settled(chatUrl=self.chat.urlOf(path))
        velkin = self.start()
        self.openPopover(velkin)
        return velkin

    def stillObeys(self, velkin):
        velkin.clickIcon(self.desktop)
        self.waitForClosed()
        self.openPopover(velkin)
        self.clickMenuItem(velkin, "Quit")
        self.assertEqual(velkin.waitForEnd(), 0)

    def testAServerThatFails(self):
        velkin = self.onChatAt("/error")
        waitFor("the request", lambda: self.chat.loads("/error"))
        settle(1)
        self.stillObeys(velkin)

    def testAServerThatNeverAnswers(self):
        velkin = self.onChatAt("/never")
        waitFor("the request", lambda: self.chat.loads("/never"))
        self.stillObeys(velkin)

    def testARedirectLoopEnds(self):
        velkin = self.onChatAt("/loop")
        waitFor("the request", lambda: self.chat.loads("/loop"))
        settle(3)
        requests = len(self.chat.loads("/loop"))
        self.assertLess(requests, 200)
        settle(1)
        self.assertEqual(len(self.chat.loads("/loop")), requests, "the loop goes on")
        self.stillObeys(velkin)

    def testAPageOfFiftyMegabytes(self):
        velkin = self.onChatAt("/big")
        waitFor("the request", lambda: self.chat.loads("/big"))
        settle(2)
        self.stillObeys(velkin)

    def testNobodyAtTheAddress(self):
        self.home.settled(chatUrl=f"http://{host(1)}:8472/")
        velkin = self.start()
        window = self.openPopover(velkin)
        settle(2)
        self.assertGreater(self.desktop.coloursIn(window), 1, "the engine's error page is not on show")
        self.stillObeys(velkin)
