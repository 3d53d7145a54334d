#!/usr/bin/env python3
"""The installed program, as a fresh user meets it: the first start, a page, and the next login."""
import configparser
import pathlib
import shlex
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "e2e"))

from harness import VelkinTestCase, waitFor  # noqa: E402
from harness.waiting import settle  # noqa: E402


class Installed(VelkinTestCase):
    def testAFreshUserSeesTheIconAndTheReleaseNotes(self):
        window = self.openPopover(self.start())
        self.assertEqual((window.width, window.height), (600, 600))
        settle(2)
        self.assertGreater(self.desktop.coloursIn(window), 10, "the popover is empty")

    def testThePopoverShowsAPage(self):
        velkin = self.startOnChat(chatUrl=self.chat.url)
        self.openPopover(velkin)
        self.assertGreater(self.chat.page().ask("innerWidth"), 300)
        self.assertEqual(self.chat.page().ask("document.visibilityState"), "visible")

    def testTheNextLoginShowsTheIconWithoutAWindow(self):
        velkin = self.startOnChat(chatUrl=self.chat.url)
        self.clickMenuItem(velkin, "About Velkin")
        waitFor("About", lambda: self.desktop.windows(title="Velkin - About"), 15)
        settle(1)
        about = self.desktop.windows(title="Velkin - About")[0]
        # The box's title is the fifth row from below.
        self.desktop.click(about.x + about.width // 2 + 20, about.bottom - 195)
        entry = self.home.config / "autostart" / "com.tarnvale.VelkinLauncher.desktop"
        waitFor("the autostart entry", entry.exists, 10)
        self.assertIn("Exec=/usr/bin/VelkinLauncher\n", entry.read_text())
        self.clickMenuItem(velkin, "Quit")
        velkin.waitForEnd()
        waitFor("the icon to go", lambda: not self.session.trayItems(), 10)

        environment = dict(self.session.environment, HOME=str(self.home.folder),
                           XDG_CONFIG_HOME=str(self.home.config), XDG_DATA_HOME=str(self.home.data),
                           XDG_CACHE_HOME=str(self.home.cache))
        subprocess.run(["dex", "--autostart", "--search-paths", str(entry.parent)], env=environment, check=True,
                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=60)
        waitFor("the icon", self.session.trayItems, 30)
        waitFor("the launcher to be gone", lambda: not pids("VelkinLauncher"), 10)
        settle(1)
        self.assertEqual(self.desktop.windows(), [])
        for pid in pids("velkin"):
            subprocess.run(["kill", pid], check=True)
        waitFor("the icon to go", lambda: not self.session.trayItems(), 10)

    def testTheBusStartsItAndTheDesktopEntrysActionsWork(self):
        self.home.settled(chatUrl=self.chat.url)
        self.letTheBusStartIt()
        self.addCleanup(self.endAll)
        self.session.output("gapplication", "launch", "com.tarnvale.Velkin")
        waitFor("the icon", self.session.trayItems, 30)
        settle(1)
        self.assertEqual(self.desktop.windows(), [], "a start opens no window")
        self.assertEqual(len(pids("velkin")), 1)
        actions = self.actionsOfTheEntry()
        self.assertEqual(sorted(actions), ["quit", "toggle-popover", "toggle-search"])
        # The program is gone before it could answer.
        self.session.output(*actions["quit"], check=False)
        waitFor("the program to end", lambda: not pids("velkin"), 15)
        waitFor("the icon to go", lambda: not self.session.trayItems(), 10)

        # An action starts the program that doesn't run, and then does its one thing.
        self.session.output(*actions["toggle-popover"])
        self.waitForPopover()
        self.assertGreater(self.chat.page().ask("innerWidth"), 300)
        self.session.output(*actions["toggle-popover"])
        self.waitForClosed()
        self.session.output(*actions["toggle-search"])
        waitFor("the search bar", self.desktop.windows, 15)
        self.assertIsNone(self.popover())
        self.session.output(*actions["toggle-search"])
        waitFor("the search bar to go", lambda: not self.desktop.windows(), 15, self.describeWindows)

        # As a desktop does it that starts programs by the bus: no program of its own runs.
        self.session.call("com.tarnvale.Velkin", "/com/tarnvale/Velkin", "org.freedesktop.Application.ActivateAction",
                          "toggle-popover", "[]", "{}")
        self.waitForPopover()
        # The program is gone before it could answer.
        self.session.output(*actions["quit"], check=False)
        waitFor("the program to end", lambda: not pids("velkin"), 15)

    def letTheBusStartIt(self):
        """The session's bus learns the installed service, and what a program needs that it starts."""
        service = pathlib.Path("/usr/share/dbus-1/services/com.tarnvale.Velkin.service")
        (self.session.folder / "services" / service.name).write_bytes(service.read_bytes())
        bus = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus.")
        self.session.call(*bus[:2], bus[2] + "ReloadConfig")
        wanted = {name: value for name, value in self.session.environment.items()
                  if "'" not in value and "\\" not in value and "\n" not in value}
        wanted.update(HOME=str(self.home.folder), XDG_CONFIG_HOME=str(self.home.config),
                      XDG_DATA_HOME=str(self.home.data), XDG_CACHE_HOME=str(self.home.cache))
        told = ", ".join(f"'{name}': '{value}'" for name, value in wanted.items())
        self.session.call(*bus[:2], bus[2] + "UpdateActivationEnvironment", "{" + told + "}")

    def actionsOfTheEntry(self):
        """{name: command} of the installed desktop entry."""
        entry = configparser.ConfigParser(interpolation=None)
        entry.optionxform = str
        entry.read("/usr/share/applications/com.tarnvale.Velkin.desktop")
        names = [name for name in entry["Desktop Entry"]["Actions"].split(";") if name]
        return {name: shlex.split(entry[f"Desktop Action {name}"]["Exec"]) for name in names}

    def endAll(self):
        for pid in pids("velkin"):
            subprocess.run(["kill", pid], check=False)
        waitFor("the program to end", lambda: not pids("velkin"), 15)


def pids(name):
    return subprocess.run(["pidof", "-x", name], capture_output=True, text=True, check=False).stdout.split()


if __name__ == "__main__":
    unittest.main()
