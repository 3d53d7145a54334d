"""The program under test, in a home of its own."""
import os
import pathlib
import plistlib
import signal
import subprocess
import time

from .paths import PROGRAM
from .waiting import waitFor

BUILD_NUMBER = 23


class Home:
    """A person's home folder: settings, downloads, default browser. It outlives the program, as a real one does."""

    def __init__(self, folder):
        self.folder = folder
        self.config = folder / ".config"
        self.data = folder / ".local" / "share"
        self.cache = folder / ".cache"
        self.downloads = folder / "Downloads"
        for path in (self.config, self.data / "applications", self.cache, self.downloads):
            path.mkdir(parents=True)
        (self.config / "user-dirs.dirs").write_text('XDG_DOWNLOAD_DIR="$HOME/Downloads"\n')
        self._installBrowser()

    @property
    def settingsFile(self):
        return self.config / "velkin" / "com.tarnvale.Velkin.plist"

    def writeSettings(self, **values):
        self.settingsFile.parent.mkdir(mode=0o700, exist_ok=True)
        self.settingsFile.write_bytes(plistlib.dumps(values))
        self.settingsFile.chmod(0o600)

    def readSettings(self):
        return plistlib.loads(self.settingsFile.read_bytes())

    def settled(self, **more):
        """The settings of someone who has seen the first pages: the program starts on chat."""
        self.writeSettings(onboardingCompleted=True, releaseNoteVersion=BUILD_NUMBER, **more)

    def _installBrowser(self):
        """A default browser that only writes down what it was asked to open."""
        self._opened = self.folder / "opened"
        browser = self.folder / "browser"
        browser.write_text(f'#!/bin/sh\nprintf "%s\\n" "$@" >>"{self._opened}"\n')
        browser.chmod(0o755)
        (self.data / "applications" / "test-browser.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Test Browser\nExec={browser} %u\n"
            "MimeType=text/html;x-scheme-handler/http;x-scheme-handler/https;\n")
        (self.config / "mimeapps.list").write_text(
            "[Default Applications]\n"
            "text/html=test-browser.desktop\n"
            "x-scheme-handler/http=test-browser.desktop\n"
            "x-scheme-handler/https=test-browser.desktop\n")

    def openedInBrowser(self):
        return self._opened.read_text().split() if self._opened.exists() else []


class Velkin:
    """A process of the program. `errors` is the path of the file that takes its standard error; `log` is an open file
    that takes it instead."""

    def __init__(self, session, home, errors, environment=None, without=(), log=None):
        if not PROGRAM.exists():
            raise AssertionError(f"{PROGRAM} is not built: ./dev build makes it")
        self.session = session
        self.home = home
        self.errors = pathlib.Path(errors)
        own = dict(session.environment, HOME=str(home.folder), XDG_CONFIG_HOME=str(home.config),
                   XDG_DATA_HOME=str(home.data), XDG_CACHE_HOME=str(home.cache))
        own.update(environment or {})
        for name in without:
            own.pop(name, None)
        self.errors.parent.mkdir(parents=True, exist_ok=True)
        self._log = open(self.errors, "ab")
        log = log or self._log
        self.process = subprocess.Popen([PROGRAM], env=own, cwd=home.folder, stdin=subprocess.DEVNULL,
                                        stdout=log, stderr=log)

    def running(self):
        return self.process.poll() is None

    def errorText(self):
        return self.errors.read_text(errors="replace")

    def waitForEnd(self, seconds=30):
        """The exit code; negative for a signal."""
        waitFor("the program to end", lambda: not self.running(), seconds, describe=lambda: self.errorText()[-2000:])
        return self.process.returncode

    def end(self, how=signal.SIGTERM):
        if self.running():
            self.process.send_signal(how)
            try:
                self.process.wait(10)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait(10)
        self._log.close()

    def icons(self):
        """This process's icons in the tray, as "bus name/object path"."""
        own = []
        for item in self.session.trayItems():
            name = item.split("/")[0]
            told = self.session.call("org.freedesktop.DBus", "/", "org.freedesktop.DBus.GetConnectionUnixProcessID",
                                     name, check=False)
            if f"uint32 {self.process.pid}," in told:
                own.append(item)
        return own

    def waitForIcon(self, seconds=30):
        def there():
            if not self.running():
                raise AssertionError(
                    f"the program ended with {self.process.returncode} instead of showing an icon:\n"
                    + self.errorText()[-3000:])
            return self.icons()

        items = waitFor("the icon in the tray", there, seconds,
                        describe=lambda: f"the tray has {self.session.trayItems()}; {self.errorText()[-2000:]}")
        # The panel draws an icon a moment after it was told of it; a click before that falls on the bare panel.
        waitFor("the panel to draw the icon", self._iconIsDrawn, seconds)
        time.sleep(0.1)
        return items[0]

    def _iconIsDrawn(self):
        items = self.session.trayItems()
        own = [number for number, item in enumerate(items) if item in self.icons()]
        return own and self.session.iconIsDrawn(own[0])

    def descendants(self):
        """(process id, command name) of all processes below this one."""
        children = {}
        names = {}
        for folder in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                stat = (folder / "stat").read_text()
            except OSError:
                continue
            name = stat[stat.index("(") + 1:stat.rindex(")")]
            parent = int(stat[stat.rindex(")") + 2:].split()[1])
            children.setdefault(parent, []).append(int(folder.name))
            names[int(folder.name)] = name
        found, below = [], list(children.get(self.process.pid, []))
        while below:
            process = below.pop()
            found.append((process, names[process]))
            below += children.get(process, [])
        return found

    def webProcesses(self):
        # The kernel keeps 15 characters of "WebKitWebProcess".
        return [process for process, name in self.descendants() if name.startswith("WebKitWebProces")]

    def killWebProcesses(self):
        processes = self.webProcesses()
        for process in processes:
            os.kill(process, signal.SIGKILL)
        return processes

    def activate(self, x=0, y=0):
        """A click on the icon as the tray tells of it, without a pointer."""
        item = self.icons()[0]
        name, path = item.split("/", 1)
        self.session.call(name, "/" + path, "org.kde.StatusNotifierItem.Activate", x, y)

    def clickIcon(self, desktop, button=1):
        desktop.click(*self.session.iconPosition(), button)
