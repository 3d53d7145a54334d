"""First start, later starts, and starts on a desktop that lacks something."""
import fcntl
import os
import signal

from harness import VelkinTestCase, waitFor
from harness.velkin import BUILD_NUMBER
from harness.waiting import settle


class FirstStart(VelkinTestCase):
    def testAFreshInstallShowsTheReleaseNotes(self):
        velkin = self.start()
        window = self.openPopover(velkin)
        self.assertEqual((window.width, window.height), (600, 600))
        settle(2)
        self.assertGreater(self.desktop.coloursIn(window), 10, "the popover is on show and empty")
        self.assertEqual(self.chat.loads(), [], "the chat page is not on show and was loaded")
        settings = self.home.readSettings()
        self.assertEqual(settings["releaseNoteVersion"], BUILD_NUMBER)
        self.assertEqual(settings["lastVisibleWebView"], 8)

    def testTheReleaseNotesAreLargeWhateverSizeIsSet(self):
        self.home.writeSettings(viewWidth=340.0, viewHeight=480.0)
        window = self.openPopover(self.start())
        self.assertEqual((window.width, window.height), (600, 600))

    def testAfterAnUpdateDoneLeadsToChatAtTheUsersSize(self):
        self.home.writeSettings(onboardingCompleted=True, releaseNoteVersion=BUILD_NUMBER - 1, viewWidth=340.0,
                                viewHeight=480.0)
        velkin = self.start()
        window = self.openPopover(velkin)
        self.assertEqual((window.width, window.height), (600, 600))
        # The Done button is the last thing on the page's lower edge.
        self.desktop.click(window.right - 45, window.bottom - 30)
        self.chat.page()
        settle()
        if self.popover():
            velkin.clickIcon(self.desktop)
            self.waitForClosed()
        window = self.openPopover(velkin)
        self.assertEqual((window.width, window.height), (340, 480))
        self.assertLessEqual(self.chat.page().ask("innerWidth"), 340)

    def testARelaunchShowsChat(self):
        velkin = self.start()
        self.openPopover(velkin)
        velkin.end()
        waitFor("the icon to go", lambda: not self.session.trayItems(), 10)
        again = self.start()
        self.openPopover(again)
        self.chat.page()
        self.assertEqual(self.home.readSettings()["lastVisibleWebView"], 0)

    def testTheSettingsFileIsTheUsersAlone(self):
        self.start()
        self.assertEqual(self.home.settingsFile.stat().st_mode & 0o777, 0o600)
        self.assertEqual(self.home.settingsFile.parent.stat().st_mode & 0o777, 0o700)


class LaterStart(VelkinTestCase):
    def testTheLoginCookieSurvivesARestart(self):
        velkin = self.startOnChat()
        self.openPopover(velkin)
        self.assertNotIn("login", self.chat.loads()[0].cookies)
        login = self.chat.page().ask("document.cookie")
        self.assertIn("login=", login)
        self.clickMenuItem(velkin, "Quit")
        self.assertEqual(velkin.waitForEnd(), 0)
        waitFor("the icon to go", lambda: not self.session.trayItems(), 10)

        self.services.clear()
        self.openPopover(self.start())
        self.chat.page()
        self.assertEqual("login=" + self.chat.loads()[0].cookies.get("login", ""), login)

    def testASecondStartMakesNoSecondProcess(self):
        first = self.startOnChat()
        second = self.start(wait=False)
        self.assertEqual(second.waitForEnd(), 0)
        settle(0.5)
        self.assertTrue(first.running())
        self.assertEqual(len(self.session.trayItems()), 1)

    def testTheProgramEndsOnTheUsualSignals(self):
        for number in (signal.SIGTERM, signal.SIGINT):
            with self.subTest(signal=number):
                velkin = self.startOnChat()
                velkin.process.send_signal(number)
                velkin.waitForEnd(10)
                waitFor("the icon to go", lambda: not self.session.trayItems(), 10)


class PoorDesktop(VelkinTestCase):
    def testNoDisplayIsSaidAndEndsWithOne(self):
        velkin = self.start(wait=False, without=("DISPLAY", "WAYLAND_DISPLAY"))
        self.assertEqual(velkin.waitForEnd(), 1)
        self.assertIn("display", velkin.errorText().lower())

    def testADisplayThatDoesNotAnswerIsSaidAndEndsWithOne(self):
        velkin = self.start(wait=False, environment={"DISPLAY": ":9999"})
        self.assertEqual(velkin.waitForEnd(), 1)
        self.assertIn("display", velkin.errorText().lower())

    def testWithoutADBusSessionASecondStartStillOpensThePopover(self):
        self.home.settled()
        runtime = self.home.folder / "run"
        runtime.mkdir(mode=0o700)
        noBus = {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent/bus", "XDG_RUNTIME_DIR": str(runtime)}
        velkin = self.start(wait=False, environment=noBus)
        waitFor("a word about D-Bus on standard error", lambda: "D-Bus" in velkin.errorText(), 15,
                lambda: velkin.errorText()[-1000:] or "nothing")
        waitFor("a notice on the screen", self.desktop.windows, 15)
        self.desktop.picture(self.artefact("notice.png"))
        self.assertEqual(self.start(wait=False, environment=noBus).waitForEnd(), 0)
        waitFor("the popover", lambda: any(w.width >= 600 and w.height >= 600 for w in self.desktop.windows()), 20,
                self.describeWindows)
        self.chat.page()
        self.assertTrue(velkin.running())

    def testASandboxThatCannotStartIsSaidAndEndsWithOne(self):
        programs = self.home.folder / "bin"
        programs.mkdir()
        bwrap = programs / "bwrap"
        bwrap.write_text("#!/bin/sh\necho 'bwrap: No permissions to create a new namespace' >&2\nexit 1\n")
        bwrap.chmod(0o755)
        self.home.settled()
        velkin = self.start(wait=False, without=("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS",),
                            environment={"PATH": f"{programs}:{self.session.environment['PATH']}"})
        self.assertEqual(velkin.waitForEnd(), 1)
        self.assertIn("sandbox", velkin.errorText())

    def testAHomeThatTakesNoFilesStillGivesAPopover(self):
        nowhere = "/proc/velkin"
        velkin = self.start(environment={"HOME": nowhere, "XDG_CONFIG_HOME": nowhere + "/config",
                                         "XDG_DATA_HOME": nowhere + "/data", "XDG_CACHE_HOME": nowhere + "/cache"})
        self.openPopover(velkin)

    def testAFileInThePlaceOfAFolderIsSaidAndEndsWithOne(self):
        for parent in (self.home.data, self.home.cache):
            with self.subTest(folder=parent.name):
                (parent / "velkin").write_text("mine")
                velkin = self.start(wait=False)
                self.assertEqual(velkin.waitForEnd(), 1)
                self.assertIn(f"velkin: The folder {parent / 'velkin'} can't be used", velkin.errorText())
                self.assertEqual((parent / "velkin").read_text(), "mine")
                (parent / "velkin").unlink()

    def testTheFoldersAreTheUsersAlone(self):
        # As an earlier version left it.
        (self.home.cache / "velkin").mkdir(mode=0o755)
        self.openPopover(self.startOnChat())
        self.chat.page()
        for parent in (self.home.data, self.home.cache, self.home.config):
            self.assertEqual((parent / "velkin").stat().st_mode & 0o777, 0o700, parent)

    def testPipesInThePlaceOfFilesAreNotWaitedFor(self):
        state = self.home.folder / ".local" / "state" / "velkin"
        for path in (self.home.data / "velkin" / "site-permissions.json", state / "fatal-error"):
            path.parent.mkdir(mode=0o700, parents=True)
            os.mkfifo(path)
        velkin = self.startOnChat()
        self.openPopover(velkin)
        self.chat.page()
        self.assertTrue(velkin.running())


class LockedSettings(VelkinTestCase):
    """Another process has the lock of the settings, and doesn't let go."""

    def setUp(self):
        super().setUp()
        self.home.settled()
        path = self.home.settingsFile
        self.lock = open(path.parent / f".{path.name}.lock", "wb")  # pylint: disable=consider-using-with
        self.addCleanup(self.lock.close)
        fcntl.flock(self.lock, fcntl.LOCK_EX)

    def testTheProgramStartsWorksAndStoresWhenTheLockIsFree(self):
        velkin = self.start()
        before = self.home.settingsFile.read_bytes()
        self.openPopover(velkin)
        page = self.chat.page()
        self.clickMenuItem(velkin, "Make Menu Sticky")
        self.desktop.key("ctrl+equal")
        waitFor("the page to be larger", lambda: page.ask("innerWidth") < 550, 10)
        self.assertEqual(self.home.settingsFile.read_bytes(), before)
        self.assertIn("kept in memory only", velkin.errorText())
        fcntl.flock(self.lock, fcntl.LOCK_UN)
        waitFor("the settings", lambda: self.home.readSettings().get("stickyMenu"), 10, self.home.readSettings)
        self.assertEqual(self.home.readSettings()["zoomLevel"], 1.2)
