#!/usr/bin/env python3
"""The installed program, as a fresh user meets it: the first start, a page, and the next login."""
import pathlib
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
        # The box's title is the fourth row from below.
        self.desktop.click(about.x + about.width // 2 + 20, about.bottom - 173)
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


def pids(name):
    return subprocess.run(["pidof", "-x", name], capture_output=True, text=True, check=False).stdout.split()


if __name__ == "__main__":
    unittest.main()
