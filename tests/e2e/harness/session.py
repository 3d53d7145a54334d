"""A desktop for the tests: display, D-Bus session, window manager and panel, by tests/session/tray-session."""
import os
import pathlib
import re
import subprocess

from .paths import SESSION


class Session:
    """Lives from construction to stop(). `environment` is what a program needs to run in it."""

    def __init__(self, panel="top", screen="1280x900", desktop="x11", environment=None, monitors=1):
        self.panelPosition = panel
        self.width, self.height = (int(part) for part in screen.split("x"))
        # The command only tells its environment; the session ends when its standard input does.
        self._process = subprocess.Popen(
            [SESSION / "tray-session", "--desktop", desktop, "--panel", panel, "--screen", screen,
             "--monitors", str(monitors), "--",
             "sh", "-c", r"env -0; printf 'READY\0'; exec cat >/dev/null"],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, start_new_session=True,
            env=dict(os.environ, **(environment or {})))
        self.environment = self._readEnvironment()
        self.folder = pathlib.Path(self.environment["VELKIN_SESSION"])

    def _readEnvironment(self):
        told = b""
        while not told.endswith(b"READY\0"):
            some = os.read(self._process.stdout.fileno(), 65536)
            if not some:
                raise RuntimeError(f"the virtual desktop did not come up (exit code {self._process.wait()})")
            told += some
        pairs = (entry.split("=", 1) for entry in told.decode().split("\0")[:-2])
        return dict(pair for pair in pairs if len(pair) == 2)

    def stop(self):
        self._process.stdin.close()
        try:
            self._process.wait(20)
        except subprocess.TimeoutExpired:
            self._process.terminate()
            self._process.wait(20)
        self._process.stdout.close()

    def environmentOf(self, command):
        """What a command finds in its environment that is to see or do something."""
        return self.environment

    def output(self, *command, check=True):
        """The standard output of a command that runs in the session."""
        done = subprocess.run([str(part) for part in command], env=self.environmentOf(command), stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, timeout=60)
        if check and done.returncode != 0:
            raise RuntimeError(f"{' '.join(map(str, command))}: exit code {done.returncode}: {done.stderr.strip()}")
        return done.stdout

    def popen(self, *command, stdout=subprocess.DEVNULL):
        """A program that runs on in the session; the caller ends it."""
        return subprocess.Popen([str(part) for part in command], env=self.environment, stdin=subprocess.DEVNULL,
                                stdout=stdout, stderr=subprocess.DEVNULL)

    def startPanel(self, position="top"):
        """Comes back when the tray takes icons. The position counts the first time only."""
        # Not captured: the panel lives on and would hold the pipe open.
        subprocess.run([SESSION / "tray-panel", "start", position], env=self.environment, check=True,
                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, timeout=60)
        if self.panelPosition == "none":
            self.panelPosition = position

    def killPanel(self):
        self.output(SESSION / "tray-panel", "kill")

    def iconPosition(self, number=0):
        x, y = self.output(SESSION / "tray-panel", "icon", number).split()
        return int(x), int(y)

    def iconIsDrawn(self, number=0):
        """The panel is of one colour where it shows no icon."""
        x, y = self.iconPosition(number)
        return int(self.output("import", "-window", "root", "-crop", f"15x13+{x - 7}+{y - 6}", "-format", "%k",
                               "info:")) > 1

    # D-Bus, by gdbus: what it prints is GVariant text, of which the tests need but strings and numbers.

    def call(self, name, path, method, *arguments, check=True):
        return self.output("gdbus", "call", "--session", "-d", name, "-o", path, "-m", method, "--",
                           *arguments, check=check)

    def trayItems(self):
        """The icons that the tray knows, as "bus name/object path"."""
        told = self.call("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                         "org.freedesktop.DBus.Properties.Get", "org.kde.StatusNotifierWatcher",
                         "RegisteredStatusNotifierItems", check=False)
        return re.findall(r"'([^']+)'", told)
