"""Starting with the session: the check box in About, what it writes, and what a login then does."""
import configparser
import os
import shlex
import shutil
import signal
import subprocess

from harness import VelkinTestCase, waitFor
from harness.paths import PROGRAM
from harness.waiting import settle

LAUNCHER = PROGRAM.parent / "VelkinLauncher"


class Login(VelkinTestCase):
    def setUp(self):
        super().setUp()
        # As it is installed: both programs in one folder, under the names that a user has.
        self.programs = self.session.folder / f"installed {self._testMethodName}" / "bin"
        self.programs.mkdir(parents=True)
        link(PROGRAM, self.programs / "velkin")
        link(LAUNCHER, self.programs / "VelkinLauncher")
        (self.programs.parent / "share").symlink_to(PROGRAM.parent.parent / "share")
        self.environment = dict(self.session.environment, HOME=str(self.home.folder),
                                XDG_CONFIG_HOME=str(self.home.config), XDG_DATA_HOME=str(self.home.data),
                                XDG_CACHE_HOME=str(self.home.cache))
        self.entry = self.home.config / "autostart" / "com.tarnvale.VelkinLauncher.desktop"
        self.processes = []

    def _end(self):
        for process in self.processes:
            if process.poll() is None:
                process.terminate()
                process.wait(10)
        owner = self.ownerOf("com.tarnvale.Velkin")
        if owner:
            os.kill(owner, signal.SIGTERM)
        super()._end()

    def popen(self, *command):
        with open(self.errors, "ab") as errors:
            process = subprocess.Popen([str(part) for part in command], env=self.environment, cwd=self.home.folder,
                                       stdin=subprocess.DEVNULL, stdout=errors, stderr=errors)
        self.processes.append(process)
        return process

    def ownerOf(self, name):
        """The process that has this name on the session bus; 0 if there is none."""
        told = self.session.call("org.freedesktop.DBus", "/", "org.freedesktop.DBus.GetConnectionUnixProcessID", name,
                                 check=False)
        return int(told.split("uint32 ")[1].split(",")[0]) if "uint32 " in told else 0

    def waitForIcon(self):
        waitFor("the icon", self.session.trayItems, 30)
        waitFor("the panel to draw the icon", self.session.iconIsDrawn, 30)

    def openAbout(self):
        item = waitFor("the icon", self.session.trayItems, 30)[0]
        name = item.split("/")[0]
        items = {}
        told = self.session.call(name, "/MenuBar", "com.canonical.dbusmenu.GetLayout", "0", "-1", "[]")
        for part in told.split("<(")[1:]:
            if "'About Velkin'" in part:
                items["About Velkin"] = int(part.split(",")[0].replace("int32", "").strip())
        self.session.call(name, "/MenuBar", "com.canonical.dbusmenu.Event", items["About Velkin"], "clicked", "<0>",
                          "0", check=False)
        return waitFor("About", lambda: self.desktop.windows(title="Velkin - About"), 15)[0]

    def command(self):
        """What a desktop runs for the entry."""
        entry = configparser.ConfigParser(interpolation=None)
        entry.optionxform = str
        entry.read(self.entry)
        section = entry["Desktop Entry"]
        self.assertEqual(section["Type"], "Application")
        return [part.replace("%%", "%") for part in shlex.split(section["Exec"].replace("\\\\", "\\"))]

    def testTheBoxWritesTheEntryAndTheLoginShowsTheIconAlone(self):
        self.home.settled()
        first = self.popen(self.programs / "velkin")
        self.waitForIcon()
        self.openAbout()
        self.assertFalse(self.entry.exists())
        self.toggleBox()
        waitFor("the entry", self.entry.exists, 10)
        waitFor("the setting", lambda: self.home.readSettings().get("startAtLogin"), 10, self.home.readSettings)
        self.assertEqual(subprocess.run(["desktop-file-validate", self.entry], capture_output=True, text=True,
                                        check=False).stdout if shutil.which("desktop-file-validate") else "", "")
        self.assertEqual(self.command(), [str(self.programs / "VelkinLauncher")])
        first.terminate()
        first.wait(10)
        waitFor("the icon to go", lambda: not self.session.trayItems(), 10)

        # The next login.
        launcher = self.popen(*self.command())
        self.waitForIcon()
        waitFor("the launcher to end", lambda: launcher.poll() is not None, 10)
        self.assertEqual(launcher.returncode, 0)
        waitFor("its name to go", lambda: not self.ownerOf("com.tarnvale.VelkinLauncher"), 5)
        self.assertTrue(self.ownerOf("com.tarnvale.Velkin"))
        settle(1)
        self.assertEqual(self.desktop.windows(), [], "a login opens no window")

        # And the box takes it back.
        self.openAbout()
        self.toggleBox()
        waitFor("the entry to go", lambda: not self.entry.exists(), 10)
        self.assertIs(self.home.readSettings()["startAtLogin"], False)

    def toggleBox(self):
        """By keyboard: it stands behind the button that copies the versions, where the keyboard is at first."""
        settle(1)
        before = self.home.readSettings().get("startAtLogin", False)
        self.desktop.key("Tab", "space")
        waitFor("the box to turn", lambda: self.home.readSettings().get("startAtLogin", False) != before, 10,
                self.home.readSettings)

    def testALauncherEndsAtOnceWhereTheProgramRuns(self):
        self.home.settled()
        first = self.popen(self.programs / "velkin")
        self.waitForIcon()
        launcher = self.popen(self.programs / "VelkinLauncher")
        waitFor("the launcher to end", lambda: launcher.poll() is not None, 10)
        self.assertEqual(launcher.returncode, 0)
        settle(0.5)
        self.assertIsNone(first.poll())
        self.assertEqual(len(self.session.trayItems()), 1)
        self.assertEqual(self.desktop.windows(), [], "it isn't started a second time")

    def testALauncherWithNothingToStartSaysSo(self):
        (self.programs / "velkin").unlink()
        launcher = self.popen(self.programs / "VelkinLauncher")
        waitFor("the launcher to end", lambda: launcher.poll() is not None, 10)
        self.assertEqual(launcher.returncode, 1)
        self.assertIn("VelkinLauncher: ", self.errors.read_text())

    def testAProgramThatEndsAtOnceTakesTheLauncherWithIt(self):
        (self.programs / "velkin").unlink()
        (self.programs / "velkin").write_text("#!/bin/sh\nexit 3\n")
        (self.programs / "velkin").chmod(0o755)
        launcher = self.popen(self.programs / "VelkinLauncher")
        waitFor("the launcher to end", lambda: launcher.poll() is not None, 10)
        self.assertEqual(self.ownerOf("com.tarnvale.VelkinLauncher"), 0)

    def testTwoLaunchersStartOneProgram(self):
        self.home.settled()
        both = [self.popen(self.programs / "VelkinLauncher") for _ in range(2)]
        self.waitForIcon()
        waitFor("both to end", lambda: all(each.poll() is not None for each in both), 10)
        self.assertEqual([each.returncode for each in both], [0, 0])
        settle(1)
        self.assertEqual(len(self.session.trayItems()), 1)
        self.assertEqual(self.desktop.windows(), [])


def link(program, name):
    try:
        os.link(program, name)
    except OSError:
        shutil.copy2(program, name)
